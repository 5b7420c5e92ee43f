#include "changes/carrying.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

#include "changes/library_checks.h"
#include "foundation/library_error.h"

namespace kestrel {
namespace {

/// The kept tracks and the copies of a plan, each once.
std::vector<std::uint64_t> tracksOf(const Plan& plan) {
  std::vector<std::uint64_t> tracks;
  std::unordered_set<std::uint64_t> known;
  const auto add = [&](std::uint64_t track) {
    if (known.insert(track).second) tracks.push_back(track);
  };
  for (const PlannedCarry& carry : plan.carried) {
    add(carry.keeper);
    for (const PlannedCarry::Copy& copy : carry.copies) add(copy.track);
  }
  return tracks;
}

/// The tracks that leave as the plan stands.
std::unordered_set<std::uint64_t> leavingAsPlanned(const Plan& plan) {
  std::unordered_set<std::uint64_t> leaving;
  for (const PlannedTrack& track : plan.tracks)
    if (track.heldBack.empty()) leaving.insert(track.track);
  if (plan.kind != RunKind::trash) return leaving;
  for (const PlannedFile& file : plan.files) {
    if (!file.heldBack.empty()) continue;
    leaving.insert(file.track);
    leaving.insert(file.otherTracks.begin(), file.otherTracks.end());
  }
  return leaving;
}

std::vector<CarriedValues> carriedBy(const Plan& plan,
                                     const std::unordered_set<std::uint64_t>& leaving) {
  std::vector<CarriedValues> carried;
  // Each once, whatever a plan that was written by hand names.
  std::unordered_set<std::uint64_t> counted;
  for (const PlannedCarry& carry : plan.carried) {
    std::vector<const TrackValues*> copies;
    for (const PlannedCarry::Copy& copy : carry.copies)
      if (leaving.contains(copy.track) && !leaving.contains(carry.keeper) &&
          counted.insert(copy.track).second)
        copies.push_back(&copy.values);
    TrackValues after = carriedOver(plan.carries, carry.before, copies);
    if (!isSame(plan.carries, carry.before, after)) carried.push_back({&carry, std::move(after)});
  }
  return carried;
}

}  // namespace

Message whyNotCarried(TrackValueSet which, RunKind kind, const Capabilities& can) {
  if (!which.without(can.takesValues).empty()) return can.whyNoOthers;
  if (!which.empty() && kind == RunKind::trash && can.deletesTracks)
    return Message::tr(
        "the tracks stay in the library when only their files go; remove them instead");
  return {};
}

void planCarrying(Plan& plan, TrackValueSet which, MusicApplication& application) {
  if (which.empty()) return;
  if (Message why = whyNotCarried(which, plan.kind, application.capabilities()); !why.empty())
    throw LibraryError(addressText(application.library().identity().uri), {},
                       Message::tr("cannot take over what copies have: %1").arg(std::move(why)),
                       Message::tr("Leave that out."));
  plan.carries = which;
  plan.carried.clear();
  std::unordered_map<std::uint64_t, std::size_t> places;
  std::unordered_set<std::uint64_t> known;
  const auto add = [&](std::uint64_t track, std::optional<std::uint64_t> keeper,
                       std::int64_t group) {
    if (!keeper || *keeper == track || !known.insert(track).second) return;
    const auto [place, isNew] = places.try_emplace(*keeper, plan.carried.size());
    if (isNew) plan.carried.push_back({*keeper, {}, group, {}, {}});
    plan.carried[place->second].copies.push_back({track, {}});
  };
  for (const PlannedTrack& track : plan.tracks)
    if (track.heldBack.empty()) add(track.track, track.keeper, track.group);
  if (plan.kind == RunKind::trash)
    for (const PlannedFile& file : plan.files) {
      if (!file.heldBack.empty()) continue;
      add(file.track, file.keeper, file.group);
      for (const std::uint64_t other : file.otherTracks) add(other, file.keeper, file.group);
    }
  const std::vector<std::uint64_t> tracks = tracksOf(plan);
  const auto values = application.valuesOf(tracks);
  std::unordered_map<std::uint64_t, TrackValues> byTrack;
  for (std::size_t i = 0; i < tracks.size(); ++i)
    if (values[i]) byTrack.emplace(tracks[i], *values[i]).first->second.stored.clear();
  for (PlannedCarry& carry : plan.carried) {
    carry.before = byTrack[carry.keeper];
    for (PlannedCarry::Copy& copy : carry.copies) copy.values = byTrack[copy.track];
  }
  std::unordered_map<std::uint64_t, PlannedCarry*> named;
  for (PlannedCarry& carry : plan.carried) named.emplace(carry.keeper, &carry);
  application.library().allMediaItems()->forEach([&](const MediaItem& item) {
    if (const auto found = named.find(item.persistentID); found != named.end())
      found->second->name = item.title.view();
  });
}

std::vector<CarriedValues> carriedBy(const Plan& plan) {
  return carriedBy(plan, leavingAsPlanned(plan));
}

Message gainOf(const Plan& plan, const std::vector<CarriedValues>& carried) {
  std::int64_t plays = 0, ratings = 0, added = 0, comments = 0;
  for (const auto& [planned, after] : carried) {
    plays += after.plays - planned->before.plays;
    ratings += after.rating != planned->before.rating ? 1 : 0;
    added += after.added == planned->before.added ? 0 : 1;
    comments += after.comments != planned->before.comments ? 1 : 0;
  }
  std::vector<Message> texts;
  if (plays) texts.push_back(Message::tr("%Ln plays", "%Ln play", plays));
  if (ratings) texts.push_back(Message::tr("%Ln ratings", "%Ln rating", ratings));
  if (added)
    texts.push_back(Message::tr("%Ln earlier dates added", "%Ln earlier date added", added));
  if (comments) texts.push_back(Message::tr("%Ln comments", "%Ln comment", comments));
  if (carried.empty() || plan.carries.empty()) return {};
  if (texts.empty()) texts.push_back(Message::tr("later dates played"));
  return listed(texts);
}

void Carrying::holdBackChanged() {
  if (plan_.carries.empty()) return;
  tracks_ = tracksOf(plan_);
  now_ = application_.valuesOf(tracks_);
  std::unordered_map<std::uint64_t, const TrackValues*> byTrack;
  for (std::size_t i = 0; i < tracks_.size(); ++i)
    if (now_[i]) byTrack.emplace(tracks_[i], &*now_[i]);
  const auto isStill = [&](std::uint64_t track, const TrackValues& planned) {
    const auto found = byTrack.find(track);
    return found == byTrack.end() || isSame(plan_.carries, planned, *found->second);
  };
  std::unordered_set<std::uint64_t> changed;
  for (const PlannedCarry& carry : plan_.carried) {
    const bool isKeeperStill = isStill(carry.keeper, carry.before);
    for (const PlannedCarry::Copy& copy : carry.copies)
      if (!isKeeperStill || !isStill(copy.track, copy.values)) changed.insert(copy.track);
  }
  if (changed.empty()) return;
  const auto holdBack = [](Message& heldBack) {
    if (heldBack.empty())
      heldBack = Message::tr(
          "its plays, rating, date added or comments, or those of the copy that is kept, were "
          "changed since the plan was made");
  };
  for (PlannedTrack& track : plan_.tracks)
    if (changed.contains(track.track)) holdBack(track.heldBack);
  for (PlannedFile& file : plan_.files) {
    bool isChanged = changed.contains(file.track);
    for (const std::uint64_t other : file.otherTracks) isChanged |= changed.contains(other);
    if (isChanged) holdBack(file.heldBack);
  }
}

void Carrying::choose(const std::unordered_set<std::uint64_t>& leaving, bool withFiles,
                      ApplyReport& report) {
  std::unordered_map<std::uint64_t, const TrackValues*> byTrack;
  for (std::size_t i = 0; i < tracks_.size(); ++i)
    if (now_[i]) byTrack.emplace(tracks_[i], &*now_[i]);
  for (auto& [planned, after] : carriedBy(plan_, leaving)) {
    const auto now = byTrack.find(planned->keeper);
    if (now == byTrack.end()) continue;  // its copies are held back
    ValueChange& change = changes_.emplace_back();
    change.track = planned->keeper;
    change.name = planned->name;
    change.which = plan_.carries;
    change.before = *now->second;
    change.after = std::move(after);
    outcomes_.push_back(report.outcomes.size());
    Outcome& outcome = report.outcomes.emplace_back();
    outcome.what = Outcome::What::values;
    outcome.id = planned->keeper;
    outcome.name = planned->name;
  }
  if (withFiles) recordLeaving(leaving);
}

void Carrying::recordLeaving(const std::unordered_set<std::uint64_t>& leaving) {
  const TrackValueSet kept = application_.capabilities().takesValues;
  if (kept.empty()) return;
  std::vector<std::uint64_t> tracks;
  std::vector<std::string> names;
  application_.library().allMediaItems()->forEach([&](const MediaItem& item) {
    if (!leaving.contains(item.persistentID)) return;
    tracks.push_back(item.persistentID);
    names.emplace_back(item.title.view());
  });
  const auto values = application_.valuesOf(tracks);
  constexpr std::string_view nothing = "{}";  // stored
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    if (!values[i] || (!hasAny(kept, *values[i]) && values[i]->stored == nothing)) continue;
    ValueChange& change = changes_.emplace_back();
    change.track = tracks[i];
    change.name = std::move(names[i]);
    change.leaves = true;
    change.which = kept;
    change.before = *values[i];
  }
}

void Carrying::carryOut(const std::unordered_set<std::uint64_t>& left, History& history,
                        ApplyReport& report) {
  if (changes_.empty()) return;
  std::unordered_map<std::uint64_t, TrackValues> after;
  for (auto& carried : carriedBy(plan_, left))
    after.emplace(carried.planned->keeper, std::move(carried.after));
  command::SetValues command;
  command.which = plan_.carries;
  std::vector<std::uint64_t> keepers;
  for (ValueChange& change : changes_) {
    if (change.leaves) {
      change.state = left.contains(change.track) ? ChangeState::done : ChangeState::skipped;
    } else if (const auto found = after.find(change.track); found != after.end()) {
      change.after = found->second;
      command.tracks.push_back({change.track, change.after});
      keepers.push_back(change.track);
    } else {
      change.state = ChangeState::skipped;
    }
  }
  history.record(changes_);
  if (!keepers.empty()) {
    kestrel::carryOut(command, application_);
    const auto found = application_.valuesOf(keepers);
    for (std::size_t i = 0; i < keepers.size(); ++i)
      if (!found[i] || !isSame(plan_.carries, *found[i], command.tracks[i].values))
        throw MessageError(Message::tr("the kept tracks did not take over what their copies had"));
  }
  for (std::size_t i = 0; i < changes_.size(); ++i) {
    ValueChange& change = changes_[i];
    if (i >= outcomes_.size()) continue;
    Outcome& outcome = report.outcomes[outcomes_[i]];
    if (change.state == ChangeState::skipped) {
      outcome.kind = Outcome::Kind::skipped;
      outcome.reason = Message::tr("no copy of it left the library");
      continue;
    }
    change.state = ChangeState::done;
    outcome.kind = Outcome::Kind::done;
    outcome.changes = static_cast<std::uint64_t>(
        std::max<std::int64_t>(change.after.plays - change.before.plays, 0));
  }
  history.record(changes_);
}

void carryOverAfterFiles(Carrying& carrying, const std::unordered_set<std::uint64_t>& left,
                         History& history, ApplyReport& report, Batch* batch) {
  try {
    carrying.carryOut(left, history, report);
    if (batch) batch->commit();
  } catch (const std::exception& error) {
    const Message problem =
        Message::tr(
            "what the copies had was not carried over: %1. Undoing the run brings them back")
            .arg(messageOf(error));
    for (Outcome& outcome : report.outcomes)
      if (outcome.what == Outcome::What::values && outcome.kind != Outcome::Kind::skipped) {
        outcome.kind = Outcome::Kind::failed;
        outcome.reason = problem;
      }
    report.problem = report.problem.empty() ? problem : joined(ended(report.problem), problem);
  }
}

}  // namespace kestrel
