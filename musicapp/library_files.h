/// What belongs to a library that is a file: its identity, the lock that keeps two Kestrels of one
/// user from changing it at once, and its earlier states.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "musicapp/library_identity.h"
#include "platform/descriptor.h"

namespace kestrel {

class FileService;

/// The file behind links. Throws LibraryError when there is none.
std::string realPathOf(const std::string& library);

/// The error of a library that is not the one that was read.
[[noreturn]] void throwChangedMeanwhile(const std::string& library);

/// Kestrel's own folder in the user's application-support folder, made when it is missing. Throws
/// LibraryError, in the name of `library`, when there can be none.
std::string supportFolder(FileService& files, const std::string& library,
                          const std::string& subfolder);

/// `id` is what the library calls itself. Two states of it have one version only if its file has
/// the same size, time and place on the disk.
LibraryIdentity fileIdentity(const std::string& path, std::string id, const FileStatus& status);

/// A name for what belongs to a library: the same for the same real path.
std::string libraryHash(const std::string& realPath);

/// Held until it is destroyed, or the program ends in whatever way.
class LibraryLock {
 public:
  /// Throws LibraryError when another program, or another lock of this one, holds it.
  LibraryLock(FileService& files, std::string realPath);

  [[nodiscard]] const std::string& library() const noexcept { return library_; }

 private:
  std::string library_;
  Descriptor file_;
};

/// The earlier states of a library, as numbered files in the application-support folder:
/// "Backups/NAME-HASH/0001.xml" and so on, with the ending that is given.
class LibraryBackups {
 public:
  /// Makes the folder. Throws LibraryError when it cannot.
  LibraryBackups(FileService& files, const std::string& library, std::string ending = ".xml");

  /// Keeps the library's present bytes under the next number, on the disk upon return; a second
  /// name for the same file where the system allows that, else a copy. Until the library is
  /// replaced, the two are one; copying a large one would take seconds. Returns the backup's path.
  /// Throws FileError, with nothing left behind.
  std::string add() { return add(library_); }
  /// The same of another file.
  std::string add(const std::string& file);
  /// Whether the latest backup is that file or its copy, by size and time.
  [[nodiscard]] bool holds(const std::string& file) const;
  /// Removes backups that are one file with the library: of a commit that was killed before it
  /// replaced the library, they are no earlier state, and would change with it.
  void removeUnreplaced();
  /// How many backups are that.
  [[nodiscard]] std::size_t unreplaced() const { return unreplacedOnes().size(); }
  /// Removes all but the latest `kept`, of which there is at least one, and closes them to others.
  /// Throws FileError.
  void prune(std::size_t kept);

  [[nodiscard]] const std::string& folder() const noexcept { return folder_; }

 private:
  [[nodiscard]] std::vector<std::pair<std::uint64_t, std::string>> numbered() const;
  [[nodiscard]] std::string latest() const;
  [[nodiscard]] std::vector<std::string> unreplacedOnes() const;

  FileService& files_;
  std::string library_;
  std::string ending_;
  std::string folder_;
};

}  // namespace kestrel
