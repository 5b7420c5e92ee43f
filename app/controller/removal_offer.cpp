#include "app/controller/removal_offer.h"

#include <algorithm>
#include <map>
#include <utility>

#include "app/controller/result_changes.h"
#include "app/controller/result_groups.h"
#include "changes/carrying.h"
#include "changes/heard_files.h"
#include "dupes/group_index.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/dupe_search.h"
#include "ui/process.h"

namespace kestrel {
namespace {

/// Nothing goes that the user has not been asked about.
constexpr GuardOptions strictGuard{false, false, false};
constexpr GuardOptions looseGuard{true, true, true};

using FilesByTrack = std::unordered_map<std::uint64_t, const PlannedFile*>;

FilesByTrack filesByTrack(const Plan& plan) {
  FilesByTrack files;
  for (const PlannedFile& file : plan.files) {
    files.try_emplace(file.track, &file);
    for (const std::uint64_t other : file.otherTracks) files.try_emplace(other, &file);
  }
  return files;
}

/// By what the two guards say.
void judge(OfferedCopy& copy, const Message& loose, const Message& strict) {
  if (!loose.empty()) {
    copy.state = OfferedCopy::State::stays;
    copy.reason = loose;
  } else if (!strict.empty()) {
    copy.state = OfferedCopy::State::unsafe;
    copy.reason = strict;
  }
  copy.isTaken = copy.state == OfferedCopy::State::safe;
}

}  // namespace

Message goesOnListing(const OfferedCopy& copy) {
  return Message::tr("the playlist %1 still lists it").arg(inQuotes(copy.listedBy));
}

namespace {

/// Of a copy that could go.
Message reasonToStay(const OfferedCopy& copy) {
  if (!copy.listedBy.empty()) return goesOnListing(copy);
  return copy.reason.empty() || copy.fileStays ? Message::tr("you left it out") : copy.reason;
}

}  // namespace

LeftAsTheyAre::Left& LeftAsTheyAre::of(const PlannedPlaylist& playlist) {
  Left& left = left_[playlist.playlist];
  if (left.entries != playlist.entries) left = {playlist.entries, false, {}};
  return left;
}

const LeftAsTheyAre::Left* LeftAsTheyAre::find(const PlannedPlaylist& playlist) const {
  const auto found = left_.find(playlist.playlist);
  return found == left_.end() || found->second.entries != playlist.entries ? nullptr
                                                                           : &found->second;
}

void LeftAsTheyAre::setPlaylist(const PlannedPlaylist& playlist, bool left) {
  of(playlist).isWhole = left;
}

void LeftAsTheyAre::setEntry(const PlannedPlaylist& playlist, std::uint64_t position, bool left) {
  if (left)
    of(playlist).positions.insert(position);
  else
    of(playlist).positions.erase(position);
}

bool LeftAsTheyAre::hasPlaylist(const PlannedPlaylist& playlist) const {
  const Left* left = find(playlist);
  return left && left->isWhole;
}

bool LeftAsTheyAre::hasEntry(const PlannedPlaylist& playlist, std::uint64_t position) const {
  const Left* left = find(playlist);
  return left && left->positions.contains(position);
}

RemovalOffer RemovalOffer::make(Kind kind, MusicApplication& application,
                                const std::vector<std::uint32_t>& rows, TrackValueSet carry,
                                const TrackSounds* sounds) {
  RemovalOffer offer;
  offer.kind_ = kind;
  offer.carry_ = carry;
  const auto content = process().textSorter.window.bigArrayController.content();
  const bool keeperValue = keeperValueBy(process().with.preferences);
  std::vector<const ResultTrack*> all, chosen;
  std::vector<SurveyRow> surveyed;
  for (const ResultTrack& row : content) all.push_back(&row);
  for (const std::uint32_t row : rows) {
    if (row >= content.size()) continue;
    chosen.push_back(all[row]);
    surveyed.emplace_back(content[row]);
  }
  if (chosen.empty()) return offer;
  application.library().reload();
  offer.mustDrop_ = !application.capabilities().keepsRepeats;
  offer.survey_ = surveyReplaylist(
      preparedRows(surveyed, keeperValue), keeperValue,
      [&] { return application.library().allPlaylists(); }, chosen.front()->store);
  LibraryChanges changes = changesOf(application);
  GuardOptions guard = strictGuard;
  guard.onlySameSound = process().with.preferences.boolean(settings::onlySameSound) &&
                        std::any_of(chosen.begin(), chosen.end(), [](const ResultTrack* row) {
                          return row->sound.kind != Likeness::Kind::unknown;
                        });
  Plan strict;
  if (kind == Kind::trash) {
    offer.plan_ = changes.trashPlan(all, keeperValue, looseGuard, chosen, carry);
    strict = changes.trashPlan(all, keeperValue, guard, chosen);
    offer.addFiles(offer.plan_, strict);
  } else {
    const auto choices = choicesOf(offer.survey_);
    offer.plan_ =
        changes.removalPlan(chosen, keeperValue, choices, {}, {true, false, looseGuard, carry});
    strict = changes.removalPlan(chosen, keeperValue, choices, {}, {true, false, guard});
    offer.addTracks(offer.plan_, strict);
  }
  if (guard.onlySameSound && sounds) noteHeardFiles(offer.plan_, *sounds);
  // What goes comes first, then what may.
  std::stable_sort(offer.copies_.begin(), offer.copies_.end(),
                   [](const auto& a, const auto& b) { return a.state < b.state; });
  offer.addPlaylists(application.library().allPlaylists());
  offer.addLosses(chosen, keeperValue);
  return offer;
}

void RemovalOffer::addFiles(const Plan& loose, const Plan& strict) {
  const FilesByTrack guarded = filesByTrack(strict);
  for (const PlannedFile& file : loose.files) {
    OfferedCopy& copy = copies_.emplace_back();
    copy.tracks = {file.track};
    copy.tracks.insert(copy.tracks.end(), file.otherTracks.begin(), file.otherTracks.end());
    copy.name = file.name;
    copy.path = file.path;
    copy.keeperPath = file.keeperPath;
    copy.hasKeeper = file.keeper.has_value();
    copy.size = file.size;
    const auto found = guarded.find(file.track);
    judge(copy, file.heldBack, found == guarded.end() ? Message() : found->second->heldBack);
  }
}

void RemovalOffer::addTracks(const Plan& loose, const Plan& strict) {
  const FilesByTrack files = filesByTrack(loose), guarded = filesByTrack(strict);
  std::unordered_map<std::uint64_t, const Message*> reasons;
  for (const PlannedTrack& track : strict.tracks) reasons.try_emplace(track.track, &track.heldBack);
  for (const PlannedTrack& track : loose.tracks) {
    OfferedCopy& copy = copies_.emplace_back();
    copy.tracks = {track.track};
    copy.name = track.name;
    copy.hasKeeper = track.keeper.has_value();
    judge(copy, track.heldBack, *reasons.at(track.track));
    const auto file = files.find(track.track);
    // What is in the cloud only has none to stay.
    if (file == files.end() || file->second->path.empty()) continue;
    copy.path = file->second->path;
    copy.keeperPath = file->second->keeperPath;
    copy.size = file->second->size;
    if (copy.state != OfferedCopy::State::safe) continue;
    if (!file->second->heldBack.empty()) {
      // The track goes all the same.
      copy.fileStays = true;
      copy.fileIsGone = !process().with.files.exists(copy.path);
      copy.reason = file->second->heldBack;
    } else {
      judge(copy, {}, guarded.at(track.track)->heldBack);
    }
  }
}

void RemovalOffer::addPlaylists(const Playlists& playlists) {
  playlists_ = playlists;
  for (const OfferedCopy& copy : copies_)
    if (copy.state != OfferedCopy::State::stays)
      for (const std::uint64_t track : copy.tracks) listings_.try_emplace(track);
  for (std::uint32_t i = 0; i < playlists->size(); ++i) {
    const Playlist& playlist = (*playlists)[i];
    const bool isMade = playlist.kind == PlaylistKind::genius;
    if (!isMade && !isUserPlaylist(playlist)) continue;
    for (const std::uint64_t track : playlist.items)
      if (const auto found = listings_.find(track); found != listings_.end())
        (isMade ? madeListings_[track] : found->second).push_back(i);
  }
  for (std::uint32_t i = 0; i < copies_.size(); ++i)
    if (copies_[i].state != OfferedCopy::State::stays)
      for (const std::uint64_t track : copies_[i].tracks) copyOf_.emplace(track, i);
  Plan repair = planReplaylist(*playlists, choicesOf(survey_), {});
  for (PlannedPlaylist& planned : repair.playlists) {
    if (!mustDrop_) repeating_ += planned.repeats.empty() ? 0 : 1;
    std::erase_if(planned.replacements,
                  [&](const Replacement& change) { return !copyOf_.contains(change.oldTrack); });
    if (!planned.replacements.empty()) repairs_.push_back(std::move(planned));
  }
  isRepairing_ = kind_ == Kind::remove;
}

void RemovalOffer::setRepairs(bool repairs) {
  isRepairing_ = repairs || kind_ == Kind::remove;
  findListed();
}

void RemovalOffer::leave(LeftAsTheyAre left) {
  left_ = std::move(left);
  findListed();
}

void RemovalOffer::findListed() {
  for (OfferedCopy& copy : copies_) copy.listedBy.clear();
  if (!isRepairing_) return;
  for (const PlannedPlaylist& planned : repairs_) {
    const bool whole = left_.hasPlaylist(planned);
    for (const Replacement& change : planned.replacements)
      if (whole || left_.hasEntry(planned, change.position)) {
        OfferedCopy& copy = copies_[copyOf_.at(change.oldTrack)];
        if (copy.listedBy.empty()) copy.listedBy = planned.name;
      }
  }
}

const OfferedCopy* RemovalOffer::copyOf(std::uint64_t track) const {
  const auto found = copyOf_.find(track);
  return found == copyOf_.end() ? nullptr : &copies_[found->second];
}

void RemovalOffer::take(std::size_t copy, bool taken) {
  if (copies_[copy].state != OfferedCopy::State::stays) copies_[copy].isTaken = taken;
}

RemovalOffer::Sums RemovalOffer::sums() const {
  Sums sums;
  std::unordered_set<std::uint32_t> playlists;
  for (const OfferedCopy& copy : copies_) {
    if (!copy.goes()) {
      ++sums.stay;
      continue;
    }
    ++sums.copies;
    if (!copy.path.empty() && !copy.fileStays) {
      ++sums.files;
      sums.bytes += copy.size;
    }
    for (const std::uint64_t track : copy.tracks)
      if (const auto found = listings_.find(track); found != listings_.end()) {
        sums.entries += found->second.size();
        playlists.insert(found->second.begin(), found->second.end());
      }
  }
  sums.playlists = playlists.size();
  return sums;
}

void RemovalOffer::addLosses(std::span<const ResultTrack* const> rows, bool keeperValue) {
  facts_ = keeperFacts();
  if (!facts_) return;
  const GroupIndex groups(rows.size(), [&](std::size_t row) { return rows[row]->tGroupID; });
  const auto isKeeper = [&](const ResultTrack& row) { return row.tCheckbox == keeperValue; };
  std::vector<const ResultTrack*> members;
  for (const std::int32_t group : groups.numbers()) {
    members.clear();
    for (const std::uint32_t row : groups.members(group)) members.push_back(rows[row]);
    for (Loss& loss : lossesOf(members, *facts_, isKeeper)) {
      // Playlists get the kept copy; a track whose file goes stays in the library with all else.
      loss.playlists = 0;
      if (kind_ == Kind::trash) {
        Loss ofFile;
        ofFile.track = loss.track;
        ofFile.keeper = loss.keeper;
        ofFile.lossless = loss.lossless;
        loss = ofFile;
      }
      if (!loss.isNothing()) losses_.try_emplace(loss.track->item().persistentID, loss);
    }
  }
  LossesBesideCarrying beside(carry_);
  for (OfferedCopy& copy : copies_)
    for (const std::uint64_t track : copy.tracks)
      if (const auto found = losses_.find(track); found != losses_.end()) {
        Loss loss = found->second;
        beside.leaveOut(loss);
        if (!loss.isNothing()) copy.loss = explain(loss);
      }
}

Message RemovalOffer::gain() const {
  if (carry_.empty()) return {};
  const Plan taken = plan(false);
  return gainOf(taken, carriedBy(taken));
}

LossTotal RemovalOffer::losses() const {
  LossTotal total;
  LossesBesideCarrying beside(carry_);
  for (const OfferedCopy& copy : copies_)
    if (copy.goes())
      for (const std::uint64_t track : copy.tracks)
        if (const auto found = losses_.find(track); found != losses_.end()) {
          Loss loss = found->second;
          beside.leaveOut(loss);
          total.add(loss);
        }
  return total;
}

std::vector<RemovalOffer::Loser> RemovalOffer::losers() const {
  std::map<std::uint32_t, std::size_t> entries;
  for (const OfferedCopy& copy : copies_)
    if (copy.goes())
      for (const std::uint64_t track : copy.tracks)
        if (const auto found = madeListings_.find(track); found != madeListings_.end())
          for (const std::uint32_t playlist : found->second) ++entries[playlist];
  std::vector<Loser> losers;
  for (const auto& [playlist, count] : entries)
    losers.push_back({(*playlists_)[playlist].name, count});
  return losers;
}

std::unordered_set<std::uint64_t> RemovalOffer::tracksThat(bool go) const {
  std::unordered_set<std::uint64_t> tracks;
  for (const OfferedCopy& copy : copies_)
    if (copy.goes() == go) tracks.insert(copy.tracks.begin(), copy.tracks.end());
  return tracks;
}

void RemovalOffer::drop(Plan& plan) const {
  std::unordered_map<std::uint64_t, const Playlist*> byID;
  for (const Playlist& playlist : *playlists_) byID.try_emplace(playlist.persistentID, &playlist);
  for (PlannedPlaylist& planned : plan.playlists)
    dropRepeats(planned, byID.at(planned.playlist)->items);
}

Plan RemovalOffer::plan(bool dropsRepeats) const {
  Plan plan = plan_;
  std::unordered_map<std::uint64_t, const OfferedCopy*> left;
  for (const OfferedCopy& copy : copies_)
    if (!copy.goes())
      for (const std::uint64_t track : copy.tracks) left.emplace(track, &copy);
  const auto isLeftOut = [&](std::uint64_t track) { return left.contains(track); };
  // Told of in the end, as is what stays for reasons of its own.
  const auto holdBack = [&](Message& heldBack, std::uint64_t track) {
    if (const auto found = left.find(track); found != left.end() && heldBack.empty())
      heldBack = reasonToStay(*found->second);
  };
  for (PlannedTrack& track : plan.tracks) holdBack(track.heldBack, track.track);
  std::erase_if(plan.files, [](const PlannedFile& file) { return file.path.empty(); });
  for (PlannedFile& file : plan.files) {
    holdBack(file.heldBack, file.track);
    for (const std::uint64_t track : file.otherTracks) holdBack(file.heldBack, track);
  }
  for (PlannedPlaylist& planned : plan.playlists)
    std::erase_if(planned.replacements,
                  [&](const Replacement& change) { return isLeftOut(change.oldTrack); });
  std::erase_if(plan.playlists,
                [](const PlannedPlaylist& planned) { return planned.replacements.empty(); });
  // What the user takes against advice goes whatever it sounds like.
  std::erase_if(plan.heard, [&](const HeardFile& heard) {
    const OfferedCopy* copy = copyOf(heard.track);
    return copy && copy->state != OfferedCopy::State::safe;
  });
  if (dropsRepeats || mustDrop_) drop(plan);
  return plan;
}

Plan RemovalOffer::repairingPlan(MusicApplication& application, bool dropsRepeats) const {
  std::vector<ReplaylistChoice> choices = choicesOf(survey_);
  const auto taken = tracksThat(true);
  for (ReplaylistChoice& choice : choices)
    std::erase_if(choice.keepers, [&](const auto& pair) { return !taken.contains(pair.first); });
  std::erase_if(choices, [](const ReplaylistChoice& choice) { return choice.keepers.empty(); });
  Plan repair = changesOf(application).replaylistPlan(survey_, choices);
  if (dropsRepeats) drop(repair);
  Plan plan = this->plan(false);
  plan.playlists = std::move(repair.playlists);
  return plan;
}

GuardOptions RemovalOffer::guard() const {
  const bool any = std::any_of(copies_.begin(), copies_.end(), [](const OfferedCopy& copy) {
    return copy.goes() && copy.state == OfferedCopy::State::unsafe;
  });
  return any ? looseGuard : strictGuard;
}

}  // namespace kestrel
