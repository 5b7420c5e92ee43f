/// What the tracks of a library sound like, where that was asked for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "dupes/find_dupes.h"
#include "library/result_track.h"
#include "sound/sound_cache.h"

namespace kestrel {

/// The sounds of tracks, by persistent ID, and what came of listening to them.
class TrackSounds {
 public:
  struct Fault {
    const TrackRecord* track = nullptr;
    SoundFault fault = SoundFault::none;
  };

  /// Listens to those tracks that it does not know yet: of files on this machine, once each. Of the
  /// others it then knows that they have none. False when the watch cancelled it; what was heard by
  /// then is in the cache.
  bool listen(std::span<const TrackRecord* const> tracks, SoundCache& cache,
              const LoadWatch& watch);

  /// nullptr when nothing is known.
  [[nodiscard]] const Sound* of(const TrackRecord& track) const;
  /// The file of a track as it was when it was listened to; nullptr when it was not.
  [[nodiscard]] const AudioFile* fileOf(std::uint64_t track) const;
  /// How the second one sounds beside the first.
  [[nodiscard]] Likeness between(const TrackRecord& first, const TrackRecord& second) const;

  /// Of a search by sound, in the order of the tracks that were asked for.
  [[nodiscard]] const std::vector<Fault>& faults() const noexcept { return faults_; }
  /// Files that were listened to now, and that could be.
  [[nodiscard]] std::size_t heard() const noexcept { return heard_; }
  /// Tracks that were asked for, and those of them without a file here.
  [[nodiscard]] std::size_t asked() const noexcept { return asked_; }
  [[nodiscard]] std::size_t withoutFile() const noexcept { return withoutFile_; }

 private:
  friend DupeRows findBySound(const std::shared_ptr<const TrackStore>& store,
                              std::span<const std::uint64_t> items, bool checkBox,
                              SoundCache& cache, const LoadWatch& watch, TrackSounds& sounds);
  /// The files of those tracks that have one here; `tracks` is left with these.
  std::vector<AudioFile> filesOf(std::vector<const TrackRecord*>& tracks);
  /// Takes in their sounds; false when cancelled.
  bool hear(std::span<const TrackRecord* const> tracks, std::span<const AudioFile> files,
            SoundCache& cache, const LoadWatch& watch);

  struct Heard {
    Sound sound;
    AudioFile file;
  };
  std::unordered_map<std::uint64_t, Heard> sounds_;
  std::vector<Fault> faults_;
  std::size_t heard_ = 0, asked_ = 0, withoutFile_ = 0;
};

/// Sets how each row of the groups sounds beside what is kept of its group: beside the least alike
/// of several. Keepers are beside none, nor is anything where one of them is unknown; a keeper that
/// others cannot be compared to has its fault. With all cores. A row is a keeper when its
/// `tCheckbox` equals `keeperValue`.
void compareToKeepers(std::span<const std::vector<ResultTrack*>> groups, bool keeperValue,
                      const TrackSounds& sounds);
/// How that row sounds which is least like what is kept.
Likeness leastAlike(std::span<const ResultTrack* const> group);

/// As `findDupes`, but by what files sound like, whatever their tags say: `soundGroups` of the
/// tracks in the order of `items`, each once. Listens to all of them, and leaves in `sounds` those
/// of the groups' members. Rows are in the order of groups.
DupeRows findBySound(const std::shared_ptr<const TrackStore>& store,
                     std::span<const std::uint64_t> items, bool checkBox, SoundCache& cache,
                     const LoadWatch& watch, TrackSounds& sounds);

}  // namespace kestrel
