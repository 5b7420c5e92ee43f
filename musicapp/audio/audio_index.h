/// The facts of audio files, kept between runs, so that a file is read once until it changes.
///
/// For every library whose files are here: a folder asks for all of it, a player's library for what
/// the player does not tell. Ask in one call, not file by file:
///
///     AudioIndex index(services.files, services.log);
///     const std::vector<AudioFile> files = audioFilesAt(paths);
///     index.read(files, services.watch, [&](std::size_t file, const AudioFacts& facts) {
///       fillItem(facts, items[file], texts);
///     });
///
/// An SQLite file in Kestrel's cache folder. One that is damaged, or of another version, is begun
/// anew; without one that can be used, files are read each time. Neither is an error for anyone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/function_ref.h"
#include "musicapp/audio/audio_facts.h"
#include "musicapp/load_watch.h"

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
};
/// Asks the disk, after following links; one result a path, in order.
std::vector<AudioFile> audioFilesAt(std::span<const std::string> paths);

/// One thread at a time. Several programs may use the file.
class AudioIndex {
 public:
  /// Both must outlive this.
  AudioIndex(const FileService& files, Log& log);
  ~AudioIndex();
  AudioIndex(const AudioIndex&) = delete;
  AudioIndex& operator=(const AudioIndex&) = delete;

  struct Reading {
    std::size_t readAnew = 0;         ///< files that had to be opened
    std::vector<std::size_t> failed;  ///< ascending places of those without audio that can be read
    bool isCancelled = false;
  };
  /// Called with a file's place, once each, in no order and from any thread, one at a time. Must
  /// not throw.
  using Found = FunctionRef<void(std::size_t file, const AudioFacts& facts)>;
  /// Hands over the facts of all files, those first that are known, then the others, which are read
  /// with all cores. What was read is kept, also when the watch cancels the rest.
  Reading read(std::span<const AudioFile> files, const LoadWatch& watch, Found found);

  /// Drops what is known of files below a folder other than these, which are in order of paths.
  void forgetOthers(std::string_view folder, std::span<const AudioFile> files);

 private:
  class Database;
  struct Wanted;

  void open(const FileService& files);
  template <typename Use>
  void use(Use&& use);
  void readKnown(Wanted& wanted, Found found);
  void readAnew(Wanted& wanted, const LoadWatch& watch, Found found);

  Log& log_;
  std::string path_;                    ///< empty without a cache folder
  std::unique_ptr<Database> database_;  ///< nullptr when it cannot be used
};

}  // namespace kestrel
