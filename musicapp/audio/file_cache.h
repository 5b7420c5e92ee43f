/// What was found out about files, kept between runs by what the disk says of them, so that a file
/// is read once until it changes.
///
/// An SQLite file in Kestrel's cache folder with a row a file. One that is damaged, or of another
/// version, is begun anew; without one that can be used, files are read each time. Neither is an
/// error for anyone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/function_ref.h"
#include "musicapp/load_watch.h"
#include "platform/sqlite_database.h"

namespace kestrel {

class FileService;
class Log;

/// A file as the disk has it; with the same values it is taken for unchanged. All but the path are
/// 0 where there is no file.
struct AudioFile {
  std::string path;
  std::uint64_t size = 0;     ///< bytes
  std::int64_t modified = 0;  ///< nanoseconds since 1970
  std::uint64_t inode = 0;
  friend bool operator==(const AudioFile&, const AudioFile&) = default;
};
/// Asks the disk, after following links; one result a path, in order.
std::vector<AudioFile> audioFilesAt(std::span<const std::string> paths);

/// One thread at a time. Several programs may use the file.
class FileCache {
 public:
  struct Table {
    const char* name;     ///< of the file in the cache folder
    int version;          ///< to be raised when the same file gives another row, or columns change
    std::string columns;  ///< of what is kept of a file, with commas
  };
  /// Both must outlive this.
  FileCache(Table table, const FileService& files, Log& log);
  FileCache(const FileCache&) = delete;
  FileCache& operator=(const FileCache&) = delete;

  /// The place of the table's first column in a row, behind those that tell the file.
  static constexpr int firstColumn = 4;

  /// Called with a file's place among those that are asked for, in the order of paths, and its row.
  using Known = FunctionRef<void(std::size_t file, const SqliteStatement& row)>;
  /// The same of one without a row; `earlier` is that of another state of the file, or nullptr.
  using Unknown = FunctionRef<void(std::size_t file, const SqliteStatement* earlier)>;
  void lookUp(std::span<const AudioFile> files, Known known, Unknown unknown);

  /// Hands over all that is known of files below a folder, in order of their paths.
  void forEachBelow(std::string_view folder,
                    FunctionRef<void(AudioFile&& file, const SqliteStatement& row)> known);

  /// What reading a file has come to.
  struct Finding {
    bool isFinal = true;  ///< it is to be kept
    /// Called once and one at a time: hands over what was found, then binds the table's columns
    /// when there is a row to keep it in.
    std::function<void(SqliteStatement* row)> deliver;
  };
  struct Reading {
    std::size_t done = 0;  ///< files that were opened
    bool isCancelled = false;
  };
  /// Reads files by their places with all cores, in this order. `read` is called from any thread,
  /// several at once, and must not throw; a finding without `deliver` is none, and counts as not
  /// read. What was read is kept, also when the watch cancels the rest. Progress is told as of all
  /// files, of which the others are done.
  Reading readAnew(std::span<const AudioFile> files, std::span<const std::size_t> places,
                   const LoadWatch& watch, FunctionRef<Finding(std::size_t file)> read);

  /// Drops what is known of files below a folder other than these, which are in order of paths.
  void forgetOthers(std::string_view folder, std::span<const AudioFile> files);

  /// Looks at so many rows, going on from where the last look ended, and drops those of files that
  /// are gone: so that the cache stays in proportion to what there is. What may lie on a disk that
  /// is not there now stays.
  void forgetGone(std::size_t rows);

 private:
  void open(const FileService& files);
  void begin();
  template <typename Use>
  void use(Use&& use);
  void removeIfDamaged(const SqliteError& error) const;

  Table table_;
  Log& log_;
  std::string path_;                          ///< empty without a cache folder
  std::unique_ptr<SqliteDatabase> database_;  ///< nullptr when it cannot be used
};

}  // namespace kestrel
