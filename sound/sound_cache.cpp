#include "sound/sound_cache.h"

#include <atomic>
#include <cstring>
#include <exception>
#include <mutex>
#include <utility>

namespace kestrel {
namespace {

using std::size_t;

/// To be raised whenever the same file gives another sound, or the table changes.
constexpr int soundVersion = 2;

void bindRow(SqliteStatement& row, const Sound& sound) {
  row << static_cast<std::int64_t>(sound.fault) << sound.milliseconds
      << std::string_view(sound.checksum)
      << Blob{{reinterpret_cast<const char*>(sound.fingerprint.data()),
               sound.fingerprint.size() * sizeof(std::uint32_t)}}
      << sound.silence;
}

/// Numbers that no version has written count as files that cannot be read.
Sound soundOf(const SqliteStatement& row) {
  Sound sound;
  int column = FileCache::firstColumn;
  const std::int64_t fault = row.integer(column++);
  const bool isKnown = fault >= 0 && fault <= static_cast<std::int64_t>(SoundFault::damaged);
  sound.fault = isKnown ? static_cast<SoundFault>(fault) : SoundFault::noAudio;
  sound.milliseconds = row.integer(column++);
  sound.checksum = row.text(column++);
  const std::string_view bytes = row.view(column++);
  sound.fingerprint.resize(bytes.size() / sizeof(std::uint32_t));
  if (!bytes.empty())
    std::memcpy(sound.fingerprint.data(), bytes.data(),
                sound.fingerprint.size() * sizeof(std::uint32_t));
  sound.silence = row.integer(column);
  return sound;
}

}  // namespace

SoundCache::SoundCache(const FileService& files, Log& log)
    : cache_({"sounds.sqlite", soundVersion, "fault,milliseconds,checksum,fingerprint,silence"},
             files, log) {}

void SoundCache::readKnown(std::span<const AudioFile> files, Found found) {
  cache_.lookUp(
      files, [&](size_t file, const SqliteStatement& row) { found(file, soundOf(row)); },
      [](size_t, const SqliteStatement*) {});
}

FileCache::Reading SoundCache::read(std::span<const AudioFile> files, const LoadWatch& watch,
                                    Found found) {
  std::vector<size_t> unknown;
  cache_.lookUp(
      files, [&](size_t file, const SqliteStatement& row) { found(file, soundOf(row)); },
      [&](size_t file, const SqliteStatement*) { unknown.push_back(file); });

  // A file takes seconds, and the watch is for one thread at a time.
  std::mutex mutex;
  std::atomic<bool> isStopped{false};
  const auto stopped = [&] {
    if (isStopped || !watch.cancelled) return isStopped.load();
    const std::scoped_lock lock(mutex);
    if (watch.cancelled()) isStopped = true;
    return isStopped.load();
  };
  LoadWatch guarded;
  if (watch.progress)
    guarded.progress = [&](size_t done, size_t total) {
      const std::scoped_lock lock(mutex);
      watch.progress(done, total);
    };
  guarded.cancelled = stopped;

  const auto listenTo = [&](size_t file) {
    std::optional<Sound> sound;
    try {
      sound = readSound(files[file].path, stopped);
    } catch (const std::exception&) {  // a damaged file that asks for too much memory
      sound = Sound{};
      sound->fault = SoundFault::noAudio;
    }
    FileCache::Finding finding;
    if (!sound) return finding;
    finding.isFinal = sound->fault != SoundFault::noAudio;
    // Delivered last, since it is given away.
    finding.deliver = [&found, file, sound = std::move(*sound)](SqliteStatement* row) mutable {
      if (row) bindRow(*row, sound);
      found(file, std::move(sound));
    };
    return finding;
  };
  const FileCache::Reading reading = cache_.readAnew(files, unknown, guarded, listenTo);
  // Twice what has come in, so that what goes is found out sooner than more comes.
  constexpr size_t atLeast = 100;
  if (reading.done > 0) cache_.forgetGone(atLeast + 2 * reading.done);
  return reading;
}

}  // namespace kestrel
