#include <algorithm>
#include <string>
#include <utility>

#include "changes/apply.h"
#include "foundation/text_helpers.h"

namespace kestrel {
namespace {

Message what(RunKind kind, std::size_t count) {
  const auto number = static_cast<std::int64_t>(count);
  if (kind == RunKind::undo) return Message::tr("%Ln changes", "%Ln change", number);
  if (kind == RunKind::remove) return Message::tr("%Ln tracks", "%Ln track", number);
  return isAboutFiles(kind) ? Message::tr("%Ln files", "%Ln file", number)
                            : Message::tr("%Ln playlists", "%Ln playlist", number);
}

/// `changes`: entries, or bytes.
Message whatWasDone(RunKind kind, std::uint64_t changes, Message what) {
  const auto number = static_cast<std::int64_t>(changes);
  switch (kind) {
    case RunKind::replaylist:
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
      return Message::tr("Took back %1.").arg(std::move(what));
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

/// Of a removal, playlists and files are told beside the tracks.
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
  Message text = hadNothing
                     ? Message::tr("There was nothing to take back.")
                     : whatWasDone(report.kind, changesOf(subject), counted(Outcome::Kind::done));
  const auto add = [&](Message sentence) { text = joined(std::move(text), std::move(sentence)); };
  if (report.kind == RunKind::remove)
    for (const auto& [other, like] : {std::pair(Outcome::What::playlist, RunKind::replaylist),
                                      std::pair(Outcome::What::file, RunKind::trash)})
      if (const std::size_t count = report.count(other, Outcome::Kind::done))
        add(whatWasDone(like, changesOf(other), what(like, count)));
  if (has(Outcome::Kind::skipped))
    add(Message::tr("%1 left out.").arg(counted(Outcome::Kind::skipped)));
  if (has(Outcome::Kind::failed))
    add(Message::tr("%1 failed.").arg(counted(Outcome::Kind::failed)));
  if (report.state == RunState::cancelled)
    add(Message::tr("Cancelled before %1.").arg(counted(Outcome::Kind::notReached)));
  if (report.state == RunState::brokenOff && has(Outcome::Kind::notReached))
    add(Message::tr("Broke off before %1.").arg(counted(Outcome::Kind::notReached)));
  if (report.run)
    add(Message::tr("This is run %1 of the history.").arg(std::to_string(*report.run)));
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
