#include "changes/heard_files.h"

#include <optional>
#include <set>
#include <unordered_set>

namespace kestrel {

void noteHeardFiles(Plan& plan, const TrackSounds& sounds) {
  std::set<std::uint64_t> tracks;
  const auto add = [&](const auto& planned) {
    if (!planned.heldBack.empty()) return;
    tracks.insert(planned.track);
    if (planned.keeper) tracks.insert(*planned.keeper);
  };
  for (const PlannedTrack& track : plan.tracks) add(track);
  for (const PlannedFile& file : plan.files) {
    add(file);
    if (file.heldBack.empty()) tracks.insert(file.otherTracks.begin(), file.otherTracks.end());
  }
  for (const std::uint64_t track : tracks)
    if (const AudioFile* file = sounds.fileOf(track))
      plan.heard.push_back({track, file->path, file->size, file->modified});
}

void holdBackOtherSounds(Plan& plan, const FileService& files) {
  std::unordered_set<std::uint64_t> changed;
  for (const HeardFile& heard : plan.heard) {
    const auto now = files.status(heard.path);
    if (!now || now->size != heard.size ||
        now->modified.time_since_epoch().count() != heard.modified)
      changed.insert(heard.track);
  }
  if (changed.empty()) return;
  const auto check = [&](auto& planned) {
    if (planned.heldBack.empty() &&
        (changed.contains(planned.track) || (planned.keeper && changed.contains(*planned.keeper))))
      planned.heldBack =
          Message::tr("it, or what is kept in its place, was changed since it was listened to");
  };
  for (PlannedTrack& track : plan.tracks) check(track);
  for (PlannedFile& file : plan.files) check(file);
}

}  // namespace kestrel
