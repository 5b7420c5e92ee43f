/// The media library that a library document describes.
#pragma once

#include <memory>
#include <string>

#include "musicapp/document/document_reader.h"
#include "musicapp/media_library.h"
#include "platform/file_status.h"

namespace kestrel {

class FileService;
class Log;

/// Reads the document when it is made. Not thread-safe; what it hands out is.
class DocumentLibrary : public MediaLibrary {
 public:
  /// Throws LibraryError when the document cannot be read.
  DocumentLibrary(std::string path, FileService& files, Log& log);

  std::shared_ptr<const MediaItems> allMediaItems() override { return document_.items; }
  std::shared_ptr<const std::vector<Playlist>> allPlaylists() override {
    return document_.playlists;
  }
  std::string mediaFolder() override { return document_.musicFolder; }
  std::string libraryFile() override { return path_; }
  LibraryIdentity identity() override;
  /// Reads the document again when the file was written to or replaced.
  void reload() override;
  /// The rest of what the document says of itself.
  [[nodiscard]] const LibraryDocument& document() const noexcept { return document_; }

 private:
  void read();

  std::string path_;
  FileService& files_;
  Log& log_;
  LibraryDocument document_;
  FileStatus status_;
};

}  // namespace kestrel
