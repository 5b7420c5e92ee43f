/// Replacing a file of a library: the new bytes stand there completely or not at all.
///
/// The new file is written beside the old one, made durable, and then takes its name; the old one
/// is kept as a backup first. A program that is ended at any moment leaves the old file or the new
/// one, and at worst a hidden file, which goes when the library is next opened.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "platform/descriptor.h"

namespace kestrel {

class FileService;
class Log;
class TextSink;

/// What a commit is about to do. For tests, which let it fail or end the program there.
enum class CommitStep : std::uint8_t {
  check,       ///< that the file is as it was read
  create,      ///< the new file
  write,       ///< a piece of it; comes many times
  protect,     ///< owner and permissions of the old one
  sync,        ///< the new file to the disk
  backUp,      ///< the old one
  checkAgain,  ///< that it still is
  replace,
  compare,     ///< what was replaced with what was read; it is put back if they differ
  syncFolder,  ///< from here on the new file counts; what fails is only logged
  prune,       ///< the oldest backups
};

struct CommitOptions {
  std::size_t keptBackups = 10;  ///< at least one is kept
  std::function<void(CommitStep)> onStep;
};

struct CommitTarget {
  std::string file;     ///< the real path, links followed
  FileStatus expected;  ///< as it was read
};

/// Replaces the file by what `content` writes and returns the new file's status. Throws
/// LibraryError, with the old file untouched, when it is read-only, was changed by another
/// program, or cannot be written; what `content` and `onStep` throw passes through likewise.
FileStatus replaceLibraryFile(const CommitTarget& target, FileService& files, Log& log,
                              const CommitOptions& options,
                              const std::function<void(TextSink&)>& content);

/// Throws LibraryError when the file is read-only, whether or not its folder would let it be
/// replaced; when it belongs to another user or group, who would lose it; and when the file has
/// other names, which would keep the old bytes; `ownNames` of these are its backups.
void checkWritable(const std::string& library, std::size_t ownNames = 0);

/// Removes what commits that were killed have left beside the file. A change by another
/// program that such a commit was about to put back becomes a backup. To be called whenever a
/// library is opened; what cannot be removed stays, and is logged where it is of worth.
void clearLeftoversOf(const std::string& path, FileService& files, Log& log);

}  // namespace kestrel
