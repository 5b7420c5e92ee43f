#include "ui/dupe_search.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

#include "dupes/grouping.h"
#include "dupes/ordering.h"
#include "dupes/read_ahead.h"
#include "foundation/identifiers.h"
#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/settings.h"
#include "ui/process.h"
#include "ui/snapshot.h"

namespace kestrel::TextSorter {
namespace {

/// A task of the main queue that changes the main window.
template <typename Change>
void postToWindow(Change change) {
  process().with.mainQueue.post(
      [change = std::move(change)] { change(process().textSorter.window); });
}

/// The snapshot's records; an empty store when the library cannot be read.
std::shared_ptr<const TrackStore> tracksOfLibrary() {
  if (const auto store = groomedTracksDictionary(); !store || store->empty()) buildLibrary();
  if (auto store = groomedTracksDictionary()) return store;
  return std::make_shared<const TrackStore>(std::make_shared<const DateFormatter>());
}

using Items = std::shared_ptr<const std::vector<std::uint64_t>>;

/// Persistent IDs in playlist order; none when no playlist has this decimal persistent ID.
Items itemsOfPlaylist(std::string_view decimalID) {
  const auto none = std::make_shared<const std::vector<std::uint64_t>>();
  const std::shared_ptr<MediaLibrary> library = myLibrary();
  if (!library) return none;
  const auto playlists = library->allPlaylists();
  const auto found = std::find_if(
      playlists->begin(), playlists->end(),
      [&](const Playlist& playlist) { return decimalText(playlist.persistentID) == decimalID; });
  return found == playlists->end() ? none : Items(playlists, &found->items);
}

/// The records of the items that are groomed tracks, repeats included.
std::vector<const TrackRecord*> recordsOf(std::span<const std::uint64_t> items,
                                          const TrackStore& store) {
  std::vector<const TrackRecord*> tracks;
  tracks.reserve(items.size());
  const std::vector<TrackRecord>& records = store.records();
  // The master playlist follows the library's order, so the next record is mostly the one wanted,
  // and is at hand without the table that finds any.
  std::size_t next = 0;
  for (const std::uint64_t item : items) {
    const TrackRecord* track = next < records.size() && records[next].item().persistentID == item
                                   ? &records[next]
                                   : store.find(item);
    if (!track) continue;
    next = static_cast<std::size_t>(track - records.data()) + 1;
    tracks.push_back(track);
  }
  return tracks;
}

GroupingOptions groupingOptions(const Preferences& preferences) {
  GroupingOptions options;
  options.caseSensitive = preferences.boolean(settings::caseSensitive);
  if (!preferences.boolean(settings::criteriaCBTime) ||
      !preferences.boolean(settings::useAproxValue))
    return options;
  // Plus one, deliberately: times are rounded to seconds, so that recordings a moment apart may
  // differ by one although the user tolerates no difference.
  constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
  options.toleranceSeconds = std::min(preferences.integer(settings::aproxValue), most) + 1;
  return options;
}

std::string joined(std::span<const std::string> texts) {
  std::string out = "(";
  for (const std::string& text : texts) out.append(out.size() > 1 ? ", " : "").append(text);
  return out + ")";
}

std::vector<ResultTrack> resultTracks(const Grouping& grouping,
                                      const std::shared_ptr<const TrackStore>& store,
                                      bool checkBox) {
  std::vector<ResultTrack> tracks;
  tracks.reserve(grouping.members.size());
  for (std::size_t i = 0; i < grouping.members.size(); ++i) {
    readAhead(i, grouping.members.size(),
              [&](std::size_t at) { return grouping.members[at].record; });
    const GroupMember& member = grouping.members[i];
    const bool tCheckbox = member.record->value(TrackKey::tCheckbox).number() != 0;
    tracks.push_back({member.record, store, member.group, 0, checkBox, tCheckbox});
  }
  return tracks;
}

void showSearching() {
  postToWindow([](MainWindowReferences& window) {
    window.mainProgressStatus.setText(Message::tr("Looking for dupes..."));
    window.mainProgressBar.setIndeterminate(true);
    window.mainProgressBar.setMinimum(0);
    window.mainProgressBar.setMaximum(0);
    window.mainProgressBar.setValue(0);
    window.mainProgressBar.setHidden(false);
  });
}

void showResult(std::vector<ResultTrack> tracks) {
  postToWindow([](MainWindowReferences& window) {
    window.mainProgressBar.stopAnimation();
    window.mainProgressBar.setIndeterminate(false);
    window.mainProgressBar.setMinimum(0);
    window.mainProgressBar.setValue(0);
  });
  // Ordered here and not by the task: that would hold up the window for as long as it takes.
  establishDupeSort(tracks);
  postToWindow([shared = std::make_shared<std::vector<ResultTrack>>(std::move(tracks))](
                   MainWindowReferences& window) {
    window.bigArrayController.add(std::move(*shared));
    window.bigArrayController.setSortOrder({plainSortKey<ResultTrack>(
        "dupeSort", true, [](const ResultTrack& track) { return track.dupeSort; })});
    window.mainProgressBar.setHidden(true);
    window.mainProgressStatus.setText({});
  });
}

}  // namespace

std::string getDupeGroupsWithCriteria(std::span<const std::string> criteria) {
  return getDupeGroupsWithCriteria(criteria,
                                   process().with.preferences.text(settings::selectedPlaylistPid));
}

std::string getDupeGroupsWithCriteria(std::span<const std::string> criteria,
                                      std::string_view playlist) {
  Process& here = process();
  Log& log = here.with.log;
  Preferences& preferences = here.with.preferences;

  const std::shared_ptr<const TrackStore> store = tracksOfLibrary();
  log.line("--- LIBRARY TRACK COUNT = " + std::to_string(store->size()));
  showSearching();
  const GroupingOptions options = groupingOptions(preferences);
  const bool checkBox = preferences.integer(settings::keeperMode) == 0;

  const Items items = itemsOfPlaylist(playlist);
  postToWindow([](MainWindowReferences& window) { window.mainProgressBar.startAnimation(); });
  log.line("--- TARGET TRACKS COUNT = " + std::to_string(items->size()));
  postToWindow([](MainWindowReferences& window) {
    window.mainProgressStatus.setText(Message::tr("Looking for dupes..."));
  });
  // A copy first: the caller may well pass the stored criteria.
  here.textSorter.storedCriteria = std::vector<std::string>(criteria.begin(), criteria.end());
  const std::vector<std::string>& stored = here.textSorter.storedCriteria;
  log.line("--> Criteria: " + joined(stored));

  const std::vector<const TrackRecord*> tracks = recordsOf(*items, *store);
  const auto& cancel = preferences.liveInteger(settings::cancelGetDupes);
  const Grouping grouping = groupTracks(
      *store, tracks, stored, options, [&] { return cancel.load(std::memory_order_relaxed) == 1; });
  const std::string count = std::to_string(grouping.members.size());
  if (grouping.cancelled) return count;
  here.textSorter.finalGroupCountAsText = count;
  showResult(resultTracks(grouping, store, checkBox));
  return count;
}

std::vector<ResultTrack>& establishDupeSort(std::vector<ResultTrack>& tracks) {
  orderGroups(tracks, process().textSorter.storedCriteria);
  return tracks;
}

}  // namespace kestrel::TextSorter
