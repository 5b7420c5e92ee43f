#include "dupes/track_sounds.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <unordered_set>
#include <utility>

#include "dupes/criteria_preview.h"
#include "platform/all_cores.h"
#include "sound/sound_groups.h"

namespace kestrel {

std::vector<AudioFile> TrackSounds::filesOf(std::vector<const TrackRecord*>& tracks) {
  std::vector<std::string> paths;
  for (const TrackRecord* track : tracks)
    paths.push_back(track->availability() == FileAvailability::reachable ? track->location() : "");
  std::vector<AudioFile> files = audioFilesAt(paths);
  std::size_t count = 0;
  for (std::size_t i = 0; i < files.size(); ++i) {
    if (files[i].inode == 0) continue;  // not there
    tracks[count] = tracks[i];
    if (count != i) files[count] = std::move(files[i]);
    ++count;
  }
  asked_ += files.size();
  withoutFile_ += files.size() - count;
  files.resize(count);
  tracks.resize(count);
  return files;
}

bool TrackSounds::hear(std::span<const TrackRecord* const> tracks, std::span<const AudioFile> files,
                       SoundCache& cache, const LoadWatch& watch) {
  const auto reading = cache.read(files, watch, [&](std::size_t file, Sound&& sound) {
    sounds_.insert_or_assign(tracks[file]->item().persistentID,
                             Heard{std::move(sound), files[file]});
  });
  heard_ += reading.done;
  return !reading.isCancelled;
}

bool TrackSounds::listen(std::span<const TrackRecord* const> asked, SoundCache& cache,
                         const LoadWatch& watch) {
  std::vector<const TrackRecord*> tracks;
  std::unordered_set<std::uint64_t> met;
  for (const TrackRecord* track : asked) {
    const Sound* known = of(*track);
    if ((!known || known->fault == SoundFault::noFile) &&
        met.insert(track->item().persistentID).second)
      tracks.push_back(track);
  }
  std::vector<const TrackRecord*> here = tracks;
  const std::vector<AudioFile> files = filesOf(here);
  auto next = here.begin();  // in the same order
  for (const TrackRecord* track : tracks)
    if (next != here.end() && *next == track)
      ++next;
    else
      sounds_[track->item().persistentID].sound.fault = SoundFault::noFile;
  return hear(here, files, cache, watch);
}

const Sound* TrackSounds::of(const TrackRecord& track) const {
  const auto found = sounds_.find(track.item().persistentID);
  return found == sounds_.end() ? nullptr : &found->second.sound;
}

const AudioFile* TrackSounds::fileOf(std::uint64_t track) const {
  const auto found = sounds_.find(track);
  return found == sounds_.end() || found->second.file.path.empty() ? nullptr : &found->second.file;
}

Likeness TrackSounds::between(const TrackRecord& first, const TrackRecord& second) const {
  const Sound *one = of(first), *other = of(second);
  return one && other ? likenessOf(*one, *other) : Likeness();
}

void compareToKeepers(std::span<const std::vector<ResultTrack*>> groups, bool keeperValue,
                      const TrackSounds& sounds) {
  withAllCores(groups.size(), [&](std::size_t i) {
    for (ResultTrack* row : groups[i]) row->sound = {};
    for (ResultTrack* row : groups[i]) {
      if (row->tCheckbox == keeperValue) continue;
      for (ResultTrack* keeper : groups[i]) {
        if (keeper->tCheckbox != keeperValue) continue;
        const Likeness beside = sounds.between(*keeper->record, *row->record);
        row->sound = lessAlike(row->sound, beside);
        if (beside.kind != Likeness::Kind::unknown) continue;
        row->sound = beside;
        if (beside.isFirstAtFault) keeper->sound.fault = beside.fault;
        break;
      }
    }
  });
}

Likeness leastAlike(std::span<const ResultTrack* const> group) {
  Likeness least;
  for (const ResultTrack* row : group) least = lessAlike(least, row->sound);
  return least;
}

DupeRows findBySound(const std::shared_ptr<const TrackStore>& store,
                     std::span<const std::uint64_t> items, bool checkBox, SoundCache& cache,
                     const LoadWatch& watch, TrackSounds& sounds) {
  std::vector<const TrackRecord*> tracks;
  std::unordered_set<std::uint64_t> met;
  for (const TrackRecord* track : tracksOf(*store, items))
    if (met.insert(track->item().persistentID).second) tracks.push_back(track);
  const std::vector<AudioFile> files = sounds.filesOf(tracks);

  DupeRows found;
  SoundIndex index;
  std::vector<SoundFault> faults(tracks.size());
  const auto reading = cache.read(files, watch, [&](std::size_t file, Sound&& sound) {
    index.add(static_cast<std::uint32_t>(file), sound);
    faults[file] = sound.fault;
  });
  sounds.heard_ += reading.done;
  found.cancelled = reading.isCancelled;
  if (found.cancelled) return found;
  for (std::size_t i = 0; i < tracks.size(); ++i)
    if (faults[i] != SoundFault::none) sounds.faults_.push_back({tracks[i], faults[i]});

  std::mutex mutex;
  const auto stopped = [&] {
    const std::scoped_lock lock(mutex);
    return watch.cancelled && watch.cancelled();
  };
  const std::vector<SoundPair> candidates = index.candidates(stopped);
  // Only these are held in memory, whole.
  std::vector<const TrackRecord*> needed;
  std::vector<AudioFile> neededFiles;
  std::unordered_set<std::uint32_t> isNeeded;
  for (const auto& [one, other] : candidates)
    for (const std::uint32_t file : {one, other})
      if (isNeeded.insert(file).second) {
        needed.push_back(tracks[file]);
        neededFiles.push_back(files[file]);
      }
  LoadWatch quietly;
  quietly.cancelled = watch.cancelled;
  found.cancelled = !sounds.hear(needed, neededFiles, cache, quietly);
  const auto groups = soundGroups(
      candidates,
      [&](std::uint32_t one, std::uint32_t other) {
        return sounds.between(*tracks[one], *tracks[other]).isOneRecording;
      },
      stopped);
  found.cancelled = found.cancelled || stopped();
  if (found.cancelled) return found;

  std::int32_t number = 0;
  std::unordered_map<std::uint64_t, TrackSounds::Heard> kept;
  for (const std::vector<std::uint32_t>& group : groups) {
    found.seeds.push_back(tracks[group.front()]);
    for (const std::uint32_t file : group) {
      const TrackRecord* record = tracks[file];
      const bool tCheckbox = record->value(TrackKey::tCheckbox).number() != 0;
      found.rows.push_back({record, store, number, number + 1, checkBox, tCheckbox});
      const std::uint64_t id = record->item().persistentID;
      kept.insert(sounds.sounds_.extract(id));
    }
    ++number;
  }
  sounds.sounds_ = std::move(kept);
  return found;
}

}  // namespace kestrel
