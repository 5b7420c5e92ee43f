#include "ui/dupe_search.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <mutex>
#include <vector>

#include "dupes/asked_of_files.h"
#include "dupes/find_dupes.h"
#include "dupes/keeper_facts.h"
#include "dupes/keeper_pass.h"
#include "dupes/lossless.h"
#include "foundation/identifiers.h"
#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/settings.h"
#include "ui/launch.h"
#include "ui/process.h"

namespace kestrel {

namespace {

/// What rules ask of the library, kept until the library is another one.
struct FactsOfLibrary {
  std::mutex mutex;
  std::shared_ptr<const TrackStore> store;
  std::shared_ptr<const std::vector<Playlist>> playlists;
  std::shared_ptr<const KeeperFacts> facts;
};

/// What files have said since the tracks were read.
struct AnswersOfFiles {
  std::mutex mutex;
  std::shared_ptr<const TrackStore> store;
  std::shared_ptr<FileAnswers> answers;
  bool isPartial = false;  ///< the last reading was stopped
};

template <typename What>
bool asks(const FilterSettings& wanted, const What& what) {
  const auto first = keeperRule(wanted.rule);
  return (first && what(*first)) || std::any_of(wanted.chain.begin(), wanted.chain.end(), what);
}

/// The same for all that ask until tracks are read again.
std::shared_ptr<FileAnswers> fileAnswers() {
  auto store = TextSorter::groomedTracksDictionary();
  auto& known = process().state<AnswersOfFiles>();
  const std::lock_guard lock(known.mutex);
  if (!known.answers || known.store != store) {
    const Collaborators& with = process().with;
    known.answers = std::make_shared<FileAnswers>(with.files, with.log);
    known.store = std::move(store);
    known.isPartial = false;
  }
  return known.answers;
}

}  // namespace

std::shared_ptr<const KeeperFacts> keeperFacts() {
  const std::shared_ptr<MediaLibrary> library = TextSorter::myLibrary();
  auto store = TextSorter::groomedTracksDictionary();
  if (!library || !store) return nullptr;
  auto playlists = library->allPlaylists();
  auto& known = process().state<FactsOfLibrary>();
  const std::lock_guard lock(known.mutex);
  if (known.store != store || known.playlists != playlists) {
    known.facts = std::make_shared<const KeeperFacts>(store, playlists);
    known.store = std::move(store);
    known.playlists = std::move(playlists);
  }
  return known.facts;
}

FilterSettings filterSettings(const Preferences& preferences) {
  FilterSettings wanted;
  wanted.rule = preferences.text(settings::filterMatrixButton);
  wanted.ruleNumber = preferences.integer(settings::filterMatrixButton);
  wanted.keeper.folder = preferences.text(settings::filterFolderLoc);
  wanted.keeper.alwaysUnCheck = preferences.boolean(settings::alwaysUnCheck);
  if (preferences.boolean(settings::useFileType))
    wanted.fileType = preferences.text(settings::thisFileType);
  if (preferences.boolean(settings::useBitType))
    wanted.bitRate = preferences.text(settings::thisBitType);
  wanted.keeper.folders = preferences.textArray(settings::keeperFolders);
  wanted.keeper.kinds = preferences.textArray(settings::keeperKinds);
  for (const std::string& number : preferences.textArray(settings::keeperChain))
    if (const auto rule = keeperRuleNamed(number)) wanted.chain.push_back(*rule);
  if (asks(wanted, needsFacts)) wanted.keeper.facts = keeperFacts();
  // Others are not to open files that nobody has read for them.
  const auto is = [](KeeperRule rule) { return [rule](KeeperRule one) { return one == rule; }; };
  if (asks(wanted, is(KeeperRule::withCover))) wanted.keeper.cover = coversBy(fileAnswers());
  if (asks(wanted, is(KeeperRule::losslessFirst))) wanted.keeper.samples = samplesBy(fileAnswers());
  return wanted;
}

bool readFilesForRules(std::span<const ResultTrack> rows, const LoadWatch& watch) {
  const FilterSettings wanted = filterSettings(process().with.preferences);
  if (!asks(wanted, asksFiles)) return true;
  std::vector<const TrackRecord*> asked;
  for (const ResultTrack& row : rows)
    if (wanted.keeper.cover || isLossless(row.record->item().kind.view()))
      asked.push_back(row.record);
  auto& known = process().state<AnswersOfFiles>();
  {
    const std::lock_guard lock(known.mutex);
    if (std::exchange(known.isPartial, false)) known.answers = nullptr;
  }
  fileAnswers()->prepare(pathsHere(asked), watch);
  const bool isStopped = watch.cancelled && watch.cancelled();
  const std::lock_guard lock(known.mutex);
  known.isPartial = isStopped;
  return !isStopped;
}

GroupingOptions groupingOptions(const Preferences& preferences) {
  GroupingOptions options;
  options.caseSensitive = preferences.boolean(settings::caseSensitive);
  options.loose = looseSetOf(preferences.textArray(settings::looseMatching));
  if (!preferences.boolean(settings::criteriaCBTime) ||
      !preferences.boolean(settings::useAproxValue))
    return options;
  options.toleranceSeconds = toleranceFor(preferences.integer(settings::aproxValue));
  return options;
}

}  // namespace kestrel

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
  postToWindow([shared = std::make_shared<std::vector<ResultTrack>>(std::move(tracks))](
                   MainWindowReferences& window) {
    if (const auto& before = process().textSorter.beforeRows) before();
    window.bigArrayController.add(std::move(*shared));
    window.bigArrayController.setSortOrder({plainSortKey<ResultTrack>(
        "dupeSort", true, [](const ResultTrack& track) { return track.dupeSort; })});
    window.mainProgressBar.setHidden(true);
    window.mainProgressStatus.setText({});
  });
}

/// The number that is written exactly so; -1, which no group has, for another text.
std::int32_t groupNumber(std::string_view text) {
  std::int32_t number = -1;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  const bool isExact = error == std::errc() && stop == end && std::to_string(number) == text;
  return isExact ? number : -1;
}

void showProgress(std::size_t groups, std::int64_t ruleNumber) {
  postToWindow([groups, ruleNumber](MainWindowReferences& window) {
    window.mainProgressSpinner.setMinimum(0);
    window.mainProgressSpinner.setMaximum(static_cast<double>(groups));
    window.mainProgressSpinner.setValue(0);
    window.mainProgressSpinner.setHidden(false);
    const std::optional<KeeperRule> rule = keeperRule(ruleNumber);
    window.mainProgressSpinnerStatus.setText(
        Message::tr("Filtering by %1")
            .arg(rule ? Message::tr(keeperRuleInfo(*rule).name) : Message()));
  });
}

void endProgress() {
  postToWindow([](MainWindowReferences& window) {
    window.mainProgressSpinner.setMaximum(0);
    window.mainProgressSpinner.setValue(0);
    window.mainProgressSpinner.setHidden(true);
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
  showSearching();
  const GroupingOptions options = groupingOptions(preferences);
  const bool checkBox = preferences.integer(settings::keeperMode) == 0;

  const Items items = itemsOfPlaylist(playlist);
  postToWindow([](MainWindowReferences& window) { window.mainProgressBar.startAnimation(); });
  postToWindow([](MainWindowReferences& window) {
    window.mainProgressStatus.setText(Message::tr("Looking for dupes..."));
  });
  // A copy first: the caller may well pass the stored criteria.
  here.textSorter.storedCriteria = std::vector<std::string>(criteria.begin(), criteria.end());
  const std::vector<std::string>& stored = here.textSorter.storedCriteria;
  const auto& cancel = preferences.liveInteger(settings::cancelGetDupes);
  // Ordered here and not by the task that shows them: that would hold up the window.
  DupeRows found = findDupes(store, *items, stored, options, checkBox, log,
                             [&] { return cancel.load(std::memory_order_relaxed) == 1; });
  const std::string count = std::to_string(found.rows.size());
  if (found.cancelled) return count;
  here.textSorter.finalGroupCountAsText = count;
  showResult(std::move(found.rows));
  return count;
}

bool filterArray(std::span<const std::string> groupNumbers,
                 FunctionRef<void(std::string_view, const GroupDecision&)> decided) {
  Process& here = process();
  MainWindowReferences& window = here.textSorter.window;
  const FilterSettings wanted = filterSettings(here.with.preferences);
  showProgress(groupNumbers.size(), wanted.ruleNumber);
  std::vector<ResultTrack*> rows;
  rows.reserve(window.bigArrayController.size());
  for (ResultTrack& row : window.bigArrayController.arrangedRows()) rows.push_back(&row);
  std::vector<std::int32_t> numbers;
  numbers.reserve(groupNumbers.size());
  for (const std::string& text : groupNumbers) numbers.push_back(groupNumber(text));
  setKeepers(rows, numbers, wanted, here.with.preferences.boolean(settings::keeperMode),
             here.with.random, [&](std::size_t group, auto, const GroupDecision& decision) {
               here.with.mainQueue.postAdvance(window.mainProgressSpinner, 1.0);
               decided(groupNumbers[group], decision);
             });
  endProgress();
  return true;
}

}  // namespace kestrel::TextSorter
