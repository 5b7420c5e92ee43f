#include "changes/report.h"

#include <algorithm>
#include <map>
#include <span>
#include <utility>

#include "changes/apply.h"
#include "foundation/text_helpers.h"

namespace kestrel {
namespace {

using Kind = Warning::Kind;

/// Names that a sentence still lists.
constexpr std::size_t mostListed = 5;

Message namesOf(std::span<const std::string> names) {
  std::vector<Message> parts;
  // One more is listed in place of being counted.
  const bool all = names.size() <= mostListed + 1;
  for (const std::string& name : names.first(all ? names.size() : mostListed))
    parts.push_back(inQuotes(name));
  return listed(parts, names.size() - parts.size());
}

std::string located(const std::string& name, const std::string& folder) {
  return folder.empty() ? name : folder + " / " + name;
}

void warnOfPlaylists(const Plan& plan, std::vector<Warning>& warnings) {
  std::vector<std::string> notShown;
  for (const PlannedPlaylist& planned : plan.playlists)
    if (!planned.shown) notShown.push_back(located(planned.name, planned.folderName));
  for (const PlannedPlaylist& planned : plan.playlists)
    if (!planned.repeats.empty())
      warnings.push_back({Kind::createsRepeats,
                          {located(planned.name, planned.folderName)},
                          planned.repeats.size(),
                          {}});
  if (!notShown.empty()) {
    const std::size_t count = notShown.size();
    warnings.push_back({Kind::notShown, std::move(notShown), count, {}});
  }
}

/// What is left out, in the order of the English reasons.
class Reasons {
 public:
  void add(const Message& reason, const std::string& name) {
    Warning& warning = byReason_[reason.english()];
    if (warning.count++ == 0) warning.reason = reason;
    warning.names.push_back(name);
  }
  void addTo(std::vector<Warning>& warnings, Kind kind) {
    for (auto& [reason, warning] : byReason_) {
      warning.kind = kind;
      warnings.push_back(std::move(warning));
    }
  }

 private:
  std::map<std::string, Warning> byReason_;
};

}  // namespace

std::vector<Warning> warningsOf(const Plan& plan) {
  std::vector<Warning> warnings;
  warnOfPlaylists(plan, warnings);
  // Grouped by reason: a library may leave out thousands of groups for two.
  Reasons groups, playlists;
  std::vector<std::string> folders, automatic;
  for (const LeftOut& left : plan.leftOut) {
    if (left.what == LeftOut::What::group) groups.add(left.reason, left.id);
    if (left.what == LeftOut::What::playlist)
      playlists.add(left.reason, left.name.empty() ? left.id : left.name);
    if (left.what == LeftOut::What::folder) folders.push_back(left.name);
    if (left.what == LeftOut::What::automatic) automatic.push_back(left.name);
  }
  if (const std::size_t count = folders.size())
    warnings.push_back({Kind::folderStandsIn, std::move(folders), count, {}});
  playlists.addTo(warnings, Kind::playlistLeftOut);
  if (const std::size_t count = automatic.size())
    warnings.push_back({Kind::automaticLeftOut, std::move(automatic), count, {}});
  groups.addTo(warnings, Kind::groupLeftOut);

  Reasons heldTracks, held;
  std::size_t toMove = 0;
  for (const PlannedTrack& track : plan.tracks) {
    toMove += track.heldBack.empty() ? 1 : 0;
    if (!track.heldBack.empty()) heldTracks.add(track.heldBack, track.name);
  }
  heldTracks.addTo(warnings, Kind::tracksHeldBack);
  for (const PlannedFile& file : plan.files) {
    toMove += file.heldBack.empty() ? 1 : 0;
    if (!file.heldBack.empty()) held.add(file.heldBack, file.path.empty() ? file.name : file.path);
  }
  held.addTo(warnings, Kind::filesHeldBack);
  if (plan.playlists.empty() && toMove == 0) warnings.push_back({Kind::nothingToDo, {}, 0, {}});
  return warnings;
}

Message sentence(const Warning& warning) {
  const std::span<const std::string> names = warning.names;
  const auto count = static_cast<std::int64_t>(warning.count);
  switch (warning.kind) {
    case Kind::createsRepeats:
      return Message::tr("%1 will list %Ln tracks more than once.",
                         "%1 will list %Ln track more than once.", count)
          .arg(inQuotes(warning.names.at(0)));
    case Kind::notShown:
      return Message::tr("The outline does not show %1, which are in a folder within a folder.",
                         "The outline does not show %1, which is in a folder within a folder.",
                         count)
          .arg(namesOf(names));
    case Kind::folderStandsIn:
      return Message::tr("Chosen for the playlists in them, not rebuilt: %1.",
                         "Chosen for the playlists in it, not rebuilt: %1.", count)
          .arg(namesOf(names));
    case Kind::groupLeftOut:
      return Message::tr("%Ln groups are left out, each because %1.",
                         "%Ln group is left out, because %1.", count)
          .arg(warning.reason);
    case Kind::playlistLeftOut:
      return Message::tr("Left out, because %1: %2.").arg(warning.reason).arg(namesOf(names));
    case Kind::automaticLeftOut:
      return Message::tr("%Ln automatic playlists are not changed: %1.",
                         "%Ln automatic playlist is not changed: %1.", count)
          .arg(namesOf(names));
    case Kind::filesHeldBack:
      return Message::tr("%Ln files stay, each because %1: %2.", "%Ln file stays, because %1: %2.",
                         count)
          .arg(warning.reason)
          .arg(namesOf(names));
    case Kind::tracksHeldBack:
      return Message::tr("%Ln tracks stay, each because %1: %2.",
                         "%Ln track stays, because %1: %2.", count)
          .arg(warning.reason)
          .arg(namesOf(names));
    case Kind::nothingToDo:
      return Message::tr("There is nothing to do.");
  }
  return {};
}

namespace {

Message what(RunKind kind, std::size_t count) {
  const auto number = static_cast<std::int64_t>(count);
  if (kind == RunKind::undo) return Message::tr("%Ln changes", "%Ln change", number);
  if (kind == RunKind::remove) return Message::tr("%Ln tracks", "%Ln track", number);
  return isAboutFiles(kind) ? Message::tr("%Ln files", "%Ln file", number)
                            : Message::tr("%Ln playlists", "%Ln playlist", number);
}

/// `changes`: entries, or bytes; `deleted`: of those entries.
Message whatWasDone(RunKind kind, std::uint64_t changes, std::uint64_t deleted, Message what) {
  const auto number = static_cast<std::int64_t>(changes);
  switch (kind) {
    case RunKind::replaylist:
      if (deleted > 0)
        return Message::tr("Replaced %1 and deleted %2 in %3.")
            .arg(Message::tr("%Ln entries", "%Ln entry",
                             static_cast<std::int64_t>(changes - deleted)))
            .arg(Message::tr("%Ln repeats", "%Ln repeat", static_cast<std::int64_t>(deleted)))
            .arg(std::move(what));
      return Message::tr("Replaced %1 in %2.")
          .arg(Message::tr("%Ln entries", "%Ln entry", number))
          .arg(std::move(what));
    case RunKind::cleanUp:
      return Message::tr("Deleted %1 from %2.")
          .arg(Message::tr("%Ln repeated entries", "%Ln repeated entry", number))
          .arg(std::move(what));
    case RunKind::trash:
      return Message::tr("Moved to the trash (%1): %2.")
          .arg(byteCountText(number))
          .arg(std::move(what));
    case RunKind::undo:
      return Message::tr("Undone: %1.").arg(std::move(what));
    case RunKind::addToPlaylist:
      return Message::tr("Added %1 to %2.")
          .arg(Message::tr("%Ln tracks", "%Ln track", number))
          .arg(std::move(what));
    case RunKind::remove:
      return Message::tr("Removed from the library: %1.").arg(std::move(what));
    case RunKind::addToLibrary:
      return Message::tr("Added to the library (%1): %2.")
          .arg(byteCountText(number))
          .arg(std::move(what));
  }
  return {};
}

/// Of what else a removal or a trash run does is told beside it.
Outcome::What subjectOf(RunKind kind) {
  if (kind == RunKind::remove) return Outcome::What::track;
  return isAboutFiles(kind) ? Outcome::What::file : Outcome::What::playlist;
}

Message summary(const ApplyReport& report) {
  const auto changesOf = [&](Outcome::What what) {
    std::uint64_t changes = 0;
    for (const Outcome& outcome : report.outcomes)
      if (outcome.what == what && outcome.kind == Outcome::Kind::done) changes += outcome.changes;
    return changes;
  };
  const auto deletedOf = [&](Outcome::What what) {
    std::uint64_t deleted = 0;
    for (const Outcome& outcome : report.outcomes)
      if (outcome.what == what && outcome.kind == Outcome::Kind::done) deleted += outcome.deleted;
    return deleted;
  };
  const Outcome::What subject = subjectOf(report.kind);
  const auto counted = [&](Outcome::Kind kind) {
    return what(report.kind,
                report.kind == RunKind::undo ? report.count(kind) : report.count(subject, kind));
  };
  const auto has = [&](Outcome::Kind kind) {
    return report.kind == RunKind::undo ? report.count(kind) > 0 : report.count(subject, kind) > 0;
  };
  const bool hadNothing =
      report.kind == RunKind::undo && !has(Outcome::Kind::done) && has(Outcome::Kind::asBefore);
  Message text = hadNothing ? Message::tr("There was nothing to undo.")
                            : whatWasDone(report.kind, changesOf(subject), deletedOf(subject),
                                          counted(Outcome::Kind::done));
  const auto add = [&](Message sentence) { text = joined(std::move(text), std::move(sentence)); };
  if (report.kind == RunKind::remove || report.kind == RunKind::trash)
    for (const auto& [other, like] : {std::pair(Outcome::What::playlist, RunKind::replaylist),
                                      std::pair(Outcome::What::file, RunKind::trash)})
      if (const std::size_t count = report.count(other, Outcome::Kind::done);
          count > 0 && other != subject)
        add(whatWasDone(like, changesOf(other), deletedOf(other), what(like, count)));
  if (const std::size_t count = report.count(Outcome::What::values, Outcome::Kind::done);
      count > 0 && report.kind != RunKind::undo)
    add(Message::tr("%Ln kept tracks took over what their copies had.",
                    "%Ln kept track took over what its copies had.",
                    static_cast<std::int64_t>(count)));
  if (has(Outcome::Kind::skipped))
    add(Message::tr("%1 left out.").arg(counted(Outcome::Kind::skipped)));
  if (has(Outcome::Kind::failed))
    add(Message::tr("%1 failed.").arg(counted(Outcome::Kind::failed)));
  if (report.state == RunState::cancelled)
    add(Message::tr("Cancelled before %1.").arg(counted(Outcome::Kind::notReached)));
  if (report.state == RunState::brokenOff && has(Outcome::Kind::notReached))
    add(Message::tr("Broke off before %1.").arg(counted(Outcome::Kind::notReached)));
  if (report.number > 0)
    add(Message::tr("This is run %1 of the history.").arg(std::to_string(report.number)));
  return text;
}

}  // namespace

std::size_t ApplyReport::count(Outcome::Kind wanted) const noexcept {
  return static_cast<std::size_t>(
      std::count_if(outcomes.begin(), outcomes.end(),
                    [&](const Outcome& outcome) { return outcome.kind == wanted; }));
}

std::size_t ApplyReport::count(Outcome::What what, Outcome::Kind wanted) const noexcept {
  return static_cast<std::size_t>(std::count_if(
      outcomes.begin(), outcomes.end(),
      [&](const Outcome& outcome) { return outcome.what == what && outcome.kind == wanted; }));
}

Message summaryOf(const ApplyReport& report) {
  ApplyReport unnumbered;
  unnumbered.kind = report.kind;
  unnumbered.state = report.state;
  unnumbered.outcomes = report.outcomes;
  unnumbered.problem = report.problem;
  return unnumbered.messages().front();
}

std::vector<Message> ApplyReport::messages() const {
  if (state == RunState::failed)
    return {Message::tr("Nothing was changed: %1").arg(ended(problem))};
  std::vector<Message> lines{summary(*this)};
  for (const Outcome& outcome : outcomes)
    if (!outcome.reason.empty())
      lines.push_back(Message::tr("%1: %2").arg(inQuotes(outcome.name)).arg(ended(outcome.reason)));
  if (!problem.empty()) lines.push_back(ended(problem));
  return lines;
}

}  // namespace kestrel
