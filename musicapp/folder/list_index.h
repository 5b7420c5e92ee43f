/// What playlist files list, kept between runs, so that a file is read once until it changes.
///
/// A table beside that of the audio files (audio_index.h), whose database it takes as it finds it.
/// It has the entries as the files spell them: which tracks they are is looked up each time, so
/// that a song that was renamed shows. Without a database that can be used, files are read each
/// time, which is no error for anyone.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "musicapp/folder/playlist_file.h"
#include "platform/clock.h"
#include "platform/descriptor.h"

namespace kestrel {

class FileService;
class Log;
class SqliteDatabase;

/// One thread at a time. Several programs may use the file.
class ListIndex {
 public:
  /// Reads what is known of files below these folders. Both services must outlive this.
  ListIndex(const FileService& files, Log& log, std::span<const std::string> folders);
  ~ListIndex();
  ListIndex(const ListIndex&) = delete;
  ListIndex& operator=(const ListIndex&) = delete;

  /// What is known of a file in this state; nothing when it is to be read.
  [[nodiscard]] std::optional<ListedPaths> find(const std::string& path, const FileStatus& status);
  /// To be kept by `save`. A file that was changed within the last seconds is not: it may be
  /// changed again without a trace in its time.
  void keep(const std::string& path, const FileStatus& status, const ListedPaths& listed,
            Moment now);
  /// Writes what is new, and drops what was neither found nor kept.
  void save();

  /// Drops what is known of a file, of which it has turned out not to be true.
  static void forget(const FileService& files, Log& log, const std::string& path);

 private:
  struct Known {
    FileStatus status;
    std::string entries;
    enum class Use : std::uint8_t { none, found, changed } use = Use::none;
  };
  template <typename Use>
  void use(Use&& use);

  Log& log_;
  std::unique_ptr<SqliteDatabase> database_;  ///< nullptr when it cannot be used
  std::unordered_map<std::string, Known> known_;
};

}  // namespace kestrel
