/// Keeps two Kestrels of one user from changing the same library document at once.
#pragma once

#include <string>

#include "musicapp/library_identity.h"
#include "platform/descriptor.h"

namespace kestrel {

class FileService;

/// The file behind links. Throws LibraryError when there is none.
std::string realPathOf(const std::string& document);

/// Kestrel's own folder in the user's application-support folder, made when it is missing. Throws
/// LibraryError, in the name of `document`, when there can be none.
std::string supportFolder(FileService& files, const std::string& document,
                          const std::string& subfolder);

/// `id` is what the document calls its library. Two states of a document have one version only if
/// its file has the same size, time and place on the disk.
LibraryIdentity documentIdentity(const std::string& path, std::string id, const FileStatus& status);

/// A name for what belongs to a document: the same for the same real path.
std::string documentHash(const std::string& realPath);

/// Held until it is destroyed, or the program ends in whatever way.
class DocumentLock {
 public:
  /// Throws LibraryError when another program, or another lock of this one, holds it.
  DocumentLock(FileService& files, std::string realPath);

  [[nodiscard]] const std::string& document() const noexcept { return document_; }

 private:
  std::string document_;
  Descriptor file_;
};

}  // namespace kestrel
