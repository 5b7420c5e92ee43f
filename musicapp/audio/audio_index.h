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
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "foundation/function_ref.h"
#include "musicapp/audio/audio_facts.h"
#include "musicapp/audio/file_cache.h"

namespace kestrel {

/// One thread at a time. Several programs may use the file.
class AudioIndex {
 public:
  /// Both must outlive this.
  AudioIndex(const FileService& files, Log& log);

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

  /// Hands over what is known of files below a folder, without a look at the files, in order of
  /// their paths; nullptr of those without audio that can be read.
  void readKnown(std::string_view folder,
                 FunctionRef<void(AudioFile&& file, const AudioFacts* facts)> found);

  /// Drops what is known of files below a folder other than these, which are in order of paths.
  void forgetOthers(std::string_view folder, std::span<const AudioFile> files) {
    cache_.forgetOthers(folder, files);
  }

 private:
  FileCache cache_;
};

}  // namespace kestrel
