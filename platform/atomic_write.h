/// Replacing a file so that other programs find the old one or the new one, and never half of it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/descriptor.h"

namespace kestrel {

/// See FileService::writeAtomically. Throws FileError.
void writeFileAtomically(const std::string& path, std::string_view bytes);

/// Throws FileError when the file belongs to a user or group that a new file in its place could
/// not be given to. Nothing when there is no such file.
void checkOwnerCanBeKept(const std::string& path);

/// The next state of a file: written beside it under a hidden name, then put into its place.
/// Removed if that never happens. Everything throws FileError in the name of `target`.
///
/// It is locked as long as this object lives: without a lock, a file with such a name is a leftover
/// of a program that was killed (`clearLeftovers`).
class SuccessorFile {
 public:
  /// `target` is a real path; hidden names begin with `prefix`. Makes nothing yet.
  SuccessorFile(std::string target, const std::string& prefix);
  ~SuccessorFile();
  SuccessorFile(const SuccessorFile&) = delete;
  SuccessorFile& operator=(const SuccessorFile&) = delete;

  /// Makes the file, for the user alone.
  void create();
  void write(std::string_view bytes) { check(file_.write(bytes)); }
  /// Takes over owner, group, permissions, access list and extended attributes of the target.
  /// Throws when the system does not allow one of them.
  void takeOver();
  void sync();
  /// Gives a file without a target the rights that its folder has.
  void openLikeFolder();
  /// Lets go of the file and its lock, where many are made at once. Only what holds a lock of its
  /// own then keeps `clearLeftovers` away.
  void close();
  /// Puts the file in the place of the target, or where there is none.
  void replace();
  /// Puts the file where there is none. Throws when something has come there.
  void place();
  /// The same, but the target gets the hidden name. False, with nothing done, where the file system
  /// cannot do that.
  [[nodiscard]] bool exchange();
  /// Undoes `exchange`. If yet another file has come into the place, it stays under a hidden name.
  void putBack();
  /// Makes the replacing last through a power cut. Returns 0, or the system's error number.
  [[nodiscard]] int syncFolder() const;

  /// The hidden name's full path; after `exchange` it leads to the file that was replaced.
  [[nodiscard]] const std::string& path() const noexcept { return path_; }
  [[nodiscard]] FileStatus status() const { return closed_ ? *closed_ : file_.status(target_); }

 private:
  void check(int code) const;

  std::string target_, folder_, prefix_, path_;
  Descriptor file_;
  std::optional<FileStatus> closed_;
};

/// Removes what programs that were killed have left of their successors of `target`. What had the
/// target's place already is handed to `keep` instead. Leaves alone what a living program works on,
/// and what cannot be removed. Never throws unless `keep` does.
void clearLeftovers(const std::string& target, const std::string& prefix,
                    const std::function<void(const std::string& path)>& keep);

}  // namespace kestrel
