/// The picture of an audio file: embedded in it, or lying beside it.
#pragma once

#include <optional>
#include <string>

namespace kestrel {

class FileService;

struct Cover {
  std::string bytes;
  std::string mime;  ///< by the bytes, such as "image/jpeg"
};

/// The embedded picture, of several the front cover; else the one beside the file that is called
/// like a cover ("cover.jpg", "Folder.png" ...), links aside. Nothing when there is none that is
/// JPEG, PNG, GIF or WebP. Opens the file each time. Callable from any thread.
std::optional<Cover> coverOf(const std::string& path, const FileService& files);
/// The same of the pictures beside the files of a folder; looks into the folder, and into those
/// that are called so.
bool hasCoverIn(const std::string& folder, const FileService& files);

}  // namespace kestrel
