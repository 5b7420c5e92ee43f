#include "cli/listening.h"

#include <array>
#include <cmath>
#include <string>

#include "cli/filtered_output.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

LoadWatch watchOf(Session& session) {
  return {[&session](std::size_t done, std::size_t total) {
            session.progress.show("Listening to the files ... " + std::to_string(done) + " of " +
                                  std::to_string(total));
          },
          [&session] { return session.interrupted(); }};
}

std::string songs(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " song" : " songs");
}

/// Throws when none of the tracks has a file here.
void requireFiles(const TrackSounds& sounds) {
  if (sounds.asked() > 0 && sounds.withoutFile() == sounds.asked())
    throw UsageError("none of the files of " + songs(sounds.asked()) +
                     " is here, so that none can be listened to; say where they are with --map, "
                     "or for a server with ?music=/FOLDER behind its address");
}

}  // namespace

void checkListening(const Session& session, const SearchOptions& options) {
  if (session.withoutFiles && (options.sound || options.bySound))
    throw UsageError(
        "files are listened to, and --without-files looks for none; say where they are with "
        "--map");
}

DupeRows findBySound(Session& session, SearchResult& result, std::span<const std::uint64_t> items) {
  result.sounds.emplace();
  SoundCache cache(session.files, session.log());
  session.progress.show("Listening to the files ...");
  DupeRows rows = findBySound(result.tracks, items, !result.keeperMode, cache, watchOf(session),
                              *result.sounds);
  if (!session.interrupted()) requireFiles(*result.sounds);
  return rows;
}

void listen(Session& session, SearchResult& result) {
  result.sounds.emplace();
  SoundCache cache(session.files, session.log());
  std::vector<const TrackRecord*> tracks;
  for (const ResultTrack& row : result.rows) tracks.push_back(row.record);
  session.progress.show("Listening to the files ...");
  if (result.sounds->listen(tracks, cache, watchOf(session))) requireFiles(*result.sounds);
}

void compareSounds(SearchResult& result, std::span<const std::vector<ResultTrack*>> groups) {
  compareToKeepers(groups, !result.keeperMode, *result.sounds);
  std::vector<TrackSounds::Fault> faults = result.sounds->faults();
  // A search by sound has listened to all songs, not to those of groups.
  std::size_t withoutFile = result.criteria.empty() ? result.sounds->withoutFile() : 0;
  for (const auto& group : groups)
    for (const ResultTrack* row : group) {
      const SoundFault fault = row->sound.ownFault();
      if (fault == SoundFault::noFile)
        ++withoutFile;
      else if (fault != SoundFault::none)
        faults.push_back({row->record, fault});
    }
  if (faults.empty() && withoutFile == 0) return;
  std::string text = songs(faults.size() + withoutFile) + " could not be compared";
  constexpr std::size_t most = 3;
  for (std::size_t i = 0; i < std::min(most, faults.size()); ++i)
    text.append(i == 0 ? ": " : "; ")
        .append(printable(faults[i].track->location()))
        .append(", ")
        .append(explain(faults[i].fault).english());
  if (faults.size() > most)
    text.append("; and ").append(songs(faults.size() - most)).append(" more");
  if (withoutFile > 0)
    text.append(faults.empty() ? ": " : "; ")
        .append(songs(withoutFile))
        .append(" without a file here");
  note(text);
}

Json soundOf(const SearchResult& result, const ResultTrack& track) {
  const Likeness& sound = track.sound;
  const bool hasFault = sound.fault != SoundFault::none;
  if (result.isKeeper(track) && !hasFault) return nullptr;
  Json object = Json::object();
  if (!result.isKeeper(track)) object["kind"] = nameOf(sound.kind);
  if (sound.kind != Likeness::Kind::unknown) {
    object["likeness"] = sound.percent;
    object["later"] = std::round(double{sound.later} * 10) / 10;
    object["longer"] = sound.longer;
    if (sound.part != Likeness::Part::none) object["part"] = nameOf(sound.part);
  }
  if (hasFault) object[sound.isFirstAtFault ? "keptFault" : "fault"] = nameOf(sound.fault);
  return object;
}

Json soundOf(const FoundGroup& group) {
  const Likeness least = leastAlike(group.tracks);
  Json object = {{"kind", nameOf(least.kind)}};
  if (least.kind != Likeness::Kind::unknown) object["likeness"] = least.percent;
  return object;
}

}  // namespace kestrel
