#include "ui/operations_for_scripts.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "dupes/find_dupes.h"
#include "musicapp/requests.h"
#include "ui/dupe_search.h"
#include "ui/process.h"

namespace kestrel::TextSorter {

const ResultTrack* filterThisDupeGroup(std::span<const ResultTrack* const> candidates,
                                       std::string_view opt) {
  const Collaborators& with = process().with;
  return chooseKeeper(candidates, keeperRule(opt), filterSettings(with.preferences).keeper,
                      with.random)
      .keeper;
}

std::vector<ResultTrack>& establishDupeSort(std::vector<ResultTrack>& tracks) {
  orderGroups(tracks, process().textSorter.storedCriteria);
  return tracks;
}

bool anyDead(std::span<const ResultTrack* const> tracks) noexcept {
  return std::any_of(tracks.begin(), tracks.end(), [](const ResultTrack* track) {
    return track->record->availability() == FileAvailability::missing;
  });
}

void setAllEntries(std::span<ResultTrack* const> tracks, bool keeperVal) noexcept {
  for (ResultTrack* track : tracks) track->tCheckbox = keeperVal;
}

void addtohook(std::string_view path) {
  request::addFile(process().with.application, process().with.log, path);
}

const PropertyList& returnPlaylistRowIn(std::span<const PropertyList> playlists,
                                        std::string_view pid) {
  for (const PropertyList& playlist : playlists) {
    const PropertyList* held = playlist.find("Playlist Persistent ID");
    if (held && held->isText() && held->text() == pid) return playlist;
  }
  throw std::out_of_range("no playlist has the persistent ID " + std::string(pid));
}

}  // namespace kestrel::TextSorter
