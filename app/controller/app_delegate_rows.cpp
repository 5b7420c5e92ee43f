// The controller's part that is about rows of the tables: their ticks, and which there are.

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "app/controller/app_delegate.h"
#include "changes/apply.h"
#include "dupes/pick_explanation.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/launch.h"
#include "ui/process.h"

namespace kestrel {

std::span<const ResultTrack> AppDelegate::content() const {
  return process_.textSorter.window.bigArrayController.content();
}

std::vector<std::vector<PlaylistRecord>> AppDelegate::playlistsHoldingEach(
    std::span<const std::uint32_t> rows) const {
  if (isBusy()) return {};
  const auto playlists = TextSorter::storedPlaylistArray();
  if (!playlists) return {};
  std::vector<std::uint64_t> tracks;
  for (const std::uint32_t row : rows)
    tracks.push_back(row < content().size() ? content()[row].record->item().persistentID : 0);
  std::vector<std::vector<Playlist>> holding(tracks.size());
  for (const Playlist& playlist : *playlists) {
    if (playlist.isMaster || playlist.distinguishedKind != 0) continue;
    std::vector<bool> met(tracks.size());
    for (const std::uint64_t item : playlist.items)
      for (std::size_t i = 0; i < tracks.size(); ++i)
        if (tracks[i] == item) met[i] = true;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
      if (!met[i]) continue;
      Playlist& copy = holding[i].emplace_back();
      copy.name = playlist.name;
      copy.persistentID = playlist.persistentID;
      copy.parentID = playlist.parentID;
      copy.kind = playlist.kind;
    }
  }
  std::vector<std::vector<PlaylistRecord>> records;
  for (const auto& held : holding) records.push_back(playlistCatalogue(held));
  return records;
}

std::vector<PlaylistRecord> AppDelegate::playlistsHolding(std::uint32_t row) const {
  auto each = playlistsHoldingEach({&row, 1});
  return each.empty() ? std::vector<PlaylistRecord>() : std::move(each.front());
}

std::vector<std::uint64_t> AppDelegate::tracksOf(std::span<const std::uint32_t> rows) const {
  std::vector<std::uint64_t> tracks;
  std::unordered_set<std::uint64_t> known;
  for (const std::uint32_t row : rows)
    if (const std::uint64_t track = content()[row].record->item().persistentID;
        known.insert(track).second)
      tracks.push_back(track);
  return tracks;
}

void AppDelegate::setKeeperMode(int mode) {
  whenIdle([this, mode] {
    const bool before = keeperValueBy(process_.with.preferences);
    process_.with.preferences.set(settings::keeperMode, std::int64_t{mode});
    if (before == keeperValueBy(process_.with.preferences)) return;
    groups_.invertFlags();
    flagsChanged();
  });
}

void AppDelegate::copyFlagsToSelection() {
  const auto lower = rowsOf(process_.textSorter.window.lilArrayController);
  for (std::size_t i = 0; i < lower.size(); ++i) {
    const ResultTrack& upper = content()[selectionSource_[i]];
    lower[i].tCheckbox = upper.tCheckbox;
    lower[i].sound = upper.sound;
  }
}

void AppDelegate::flagsChanged() {
  copyFlagsToSelection();
  flagObservers.notify();
  summaryObservers.notify();
}

bool AppDelegate::setTicksInSelection(std::span<const std::uint32_t> rows, bool ticked) {
  std::vector<std::uint32_t> upper;
  upper.reserve(rows.size());
  for (const std::uint32_t row : rows) upper.push_back(selectionSource_[row]);
  return setTicks(upper, ticked);
}

void AppDelegate::takeOut(std::function<bool(const ResultTrack&)> isGone) {
  whenIdle([this, isGone = std::move(isGone)] { takeOutNow(isGone); });
}

AppDelegate::RowsLeft AppDelegate::rowsWithout(
    const std::function<bool(const ResultTrack&)>& isGone) const {
  const auto content = this->content();
  constexpr std::uint32_t out = static_cast<std::uint32_t>(-1);
  RowsLeft left;
  std::vector<std::uint32_t> newRows(content.size());
  std::unordered_map<std::int32_t, std::uint32_t> counts;  // of the groups that lose some
  for (std::uint32_t row = 0; row < content.size(); ++row)
    if (isGone(content[row])) {
      newRows[row] = out;
      counts.try_emplace(content[row].tGroupID, 0);
    }
  if (counts.empty()) return left;
  for (std::uint32_t row = 0; row < content.size(); ++row)
    if (const auto group = counts.find(content[row].tGroupID);
        group != counts.end() && newRows[row] != out)
      ++group->second;
  for (std::uint32_t row = 0; row < content.size(); ++row) {
    const auto group = counts.find(content[row].tGroupID);
    if (newRows[row] == out || (group != counts.end() && group->second < 2)) {
      newRows[row] = out;
    } else {
      newRows[row] = static_cast<std::uint32_t>(left.rows.size());
      left.rows.push_back(content[row]);
    }
  }
  left.newRows = std::move(newRows);
  left.groups = groups_;
  left.groups.replaceRows(left.rows);
  return left;
}

void AppDelegate::takeOutNow(const std::function<bool(const ResultTrack&)>& isGone,
                             const std::function<void()>& then) {
  const auto left = std::make_shared<RowsLeft>();
  const auto find = [this, left, isGone] { *left = rowsWithout(isGone); };
  const auto take = [this, left, then] {
    replaceRows(*left);
    if (then) then();
  };
  if (content().size() <= mostAtOnce) {
    find();
    return take();
  }
  start(Activity::other, find, [this, take](const Failure& failure) {
    if (!failure) take();
    end();
    if (failure) fail(Message::tr("That did not work."), failure->problem);
  });
}

void AppDelegate::replaceRows(RowsLeft& left) {
  if (left.newRows.empty()) return;
  ArrayController<ResultTrack>& upper = process_.textSorter.window.bigArrayController;
  std::vector<std::uint32_t> selection;
  for (const std::uint32_t row : selectionSource_)
    if (left.newRows[row] != static_cast<std::uint32_t>(-1)) selection.push_back(left.newRows[row]);
  if (left.rows.empty()) situation_ = Situation::notSearched;
  waitForLearning();
  groups_ = {};  // else who is told of the rows would ask it about those that are gone
  upper.removeAll();
  upper.add(std::move(left.rows));
  groups_ = std::move(left.groups);
  groups_.moveTo(rowsOf(upper));
  showSelection(selection);
  flagsChanged();
  observers.notify();
  knowledgeDue_ = situation_ == Situation::result;
  learn();
}

void AppDelegate::removed(const std::vector<Outcome>& outcomes) {
  std::unordered_set<std::uint64_t> tracks;
  std::unordered_set<std::string> paths;
  for (const Outcome& outcome : outcomes) {
    if (outcome.kind != Outcome::Kind::done || outcome.what == Outcome::What::playlist ||
        outcome.what == Outcome::What::values)
      continue;
    tracks.insert(outcome.id);
    paths.insert(outcome.name);
  }
  if (tracks.empty()) return;
  refreshDue_ = true;
  takeOut([tracks = std::move(tracks), paths = std::move(paths)](const ResultTrack& row) {
    const MediaItem& item = row.record->item();
    return tracks.contains(item.persistentID) || paths.contains(filePath(item));
  });
}

void AppDelegate::setSearchDue() noexcept {
  refreshDue_ = true;
  searchDue_ = hasSearched_;
}

void AppDelegate::setLastRun(std::optional<LastRun> run) {
  lastRun_ = std::move(run);
  runObservers.notify();
}

void AppDelegate::takenBack(std::int64_t run) {
  if (lastRun_ && lastRun_->run == run) setLastRun({});
}

void AppDelegate::showSelection(std::span<const std::uint32_t> rows) {
  ArrayController<ResultTrack>& lower = process_.textSorter.window.lilArrayController;
  std::vector<ResultTrack> tracks;
  for (const std::uint32_t row : rows) tracks.push_back(content()[row]);
  lower.removeAll();
  selectionSource_.assign(rows.begin(), rows.end());
  lower.add(std::move(tracks));
}

Message AppDelegate::keptBecause(std::uint32_t row) const {
  if (row >= content().size() || isBusy()) return {};
  return reasonOf(content()[row].tGroupID);
}

Message AppDelegate::reasonOf(std::int32_t group) const {
  if (groups_.isUndecided(group))
    return Message::tr("two groups in which you chose have become one: choose again");
  if (groups_.isPicked(group) && groups_.facts(group).keepers == 0)
    return Message::tr("you keep no copy, so nothing is done about this group");
  if (groups_.isPicked(group)) return Message::tr("chosen by you");
  return explain(groups_.decision(group, passSettings_));
}

}  // namespace kestrel
