/// What belongs to a library document: its identity, the lock that keeps two Kestrels of one user
/// from changing it at once, and its earlier states.
#pragma once

#include <cstddef>
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

/// The earlier states of a library document, or of a playlist file, as numbered files in the
/// application-support folder: "Backups/NAME-HASH/0001.xml" and so on, with the file's ending.
class DocumentBackups {
 public:
  /// Makes the folder. Throws LibraryError when it cannot.
  DocumentBackups(FileService& files, const std::string& document);

  /// Keeps the document's present bytes under the next number, on the disk upon return; a second
  /// name for the same file where the system allows that, else a copy. Until the document is
  /// replaced, the two are one; copying a large one would take seconds. Returns the backup's path.
  /// Throws FileError, with nothing left behind.
  std::string add() { return add(document_); }
  /// The same of another file.
  std::string add(const std::string& file);
  /// Whether the latest backup is that file or its copy, by size and time.
  [[nodiscard]] bool holds(const std::string& file) const;
  /// Removes the latest backup if it is one file with the document: of a commit that was killed
  /// before it replaced the document, it is no earlier state, and would change with it.
  void removeUnreplaced();
  /// Removes all but the latest `kept`, of which there is at least one, and closes them to others.
  /// Throws FileError.
  void prune(std::size_t kept);

  [[nodiscard]] const std::string& folder() const noexcept { return folder_; }

 private:
  [[nodiscard]] std::string latest() const;

  FileService& files_;
  std::string document_;
  std::string folder_;
};

}  // namespace kestrel
