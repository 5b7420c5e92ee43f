/// The earlier states of a library document, as numbered files in the application-support folder:
/// "Backups/NAME-HASH/0001.xml" and so on.
#pragma once

#include <cstddef>
#include <string>

namespace kestrel {

class FileService;

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
