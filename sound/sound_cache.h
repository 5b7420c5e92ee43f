/// The sounds of files, kept between runs, so that a file is listened to once until it changes.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "foundation/function_ref.h"
#include "musicapp/audio/file_cache.h"
#include "sound/sound.h"

namespace kestrel {

/// A file in Kestrel's cache folder (file_cache.h) that takes some 4 kilobytes a song; songs whose
/// files are gone leave it as others come in. One thread at a time; several programs may use it.
class SoundCache {
 public:
  /// Both must outlive this.
  SoundCache(const FileService& files, Log& log);

  /// Called with a file's place, once each, in no order and from any thread, one at a time. Must
  /// not throw.
  using Found = FunctionRef<void(std::size_t file, Sound&& sound)>;
  /// Hands over the sounds of all files, those first that are known, then the others, which are
  /// listened to with all cores; the faults of those that cannot be are kept too. The watch is
  /// asked also within a file. What was read is kept when it cancels the rest.
  FileCache::Reading read(std::span<const AudioFile> files, const LoadWatch& watch, Found found);

  /// The same of what is known already: opens no file.
  void readKnown(std::span<const AudioFile> files, Found found);

 private:
  FileCache cache_;
};

}  // namespace kestrel
