#include "musicapp/mpd/mpd_list_edit.h"

#include <algorithm>
#include <chrono>
#include <mpd/protocol.h>
#include <optional>
#include <span>
#include <thread>
#include <utility>

#include "musicapp/mpd/mpd_list_merge.h"

namespace kestrel {
namespace {

using Kind = MpdStep::Kind;

/// As one list of commands, into which no other client comes: as many as the server, which answers
/// nobody meanwhile, carries out in some seconds.
constexpr std::size_t stepsAtOnce = 1000;

void apply(const MpdStep& step, MpdEntries& entries) {
  const auto at = entries.begin() + static_cast<std::ptrdiff_t>(step.position);
  if (step.kind == Kind::add)
    entries.insert(at, step.uri);
  else
    entries.erase(at);
}

/// Another program has changed the list since it was read.
struct ForeignChange {
  MpdEntries found;
};

class Editing {
 public:
  Editing(MpdConnection& connection, const std::string& list, const MpdEntries& entries,
          const std::vector<MpdStep>& steps)
      : connection_(connection), list_(list), before_(entries), steps_(steps), now_(entries) {}

  void carryOut() {
    if (steps_.empty()) return;
    Message problem;
    bool isRefused = false;
    try {
      send({steps_.data(), 1});
      send(std::span(steps_).subspan(1));
      return;
    } catch (ForeignChange& change) {
      takeOutOf(std::move(change.found));
      throw MpdEditError(Message::tr("another program changed the list while it was written: what "
                                     "that made of it stands"),
                         true, true);
    } catch (const MpdRefusal& refusal) {
      isRefused = refusal.code == MPD_SERVER_ERROR_PLAYLIST_MAX ||
                  (refusal.code == MPD_SERVER_ERROR_ARG && refusal.command == 0);
      problem = refusal.code == MPD_SERVER_ERROR_PLAYLIST_MAX
                    ? Message::tr(
                          "the list is as long as the server allows, and to change it takes "
                          "an entry more: raise max_playlist_length in its settings")
                : refusal.code == MPD_SERVER_ERROR_ARG && refusal.command == 0
                    ? Message::tr(
                          "the list may be longer than the server allows: raise "
                          "max_playlist_length in its settings")
                    : refusal.message;
    } catch (const LibraryError& error) {
      problem = error.message;
      reconnect(problem);
    }
    if (takeBack()) throw MpdEditError(std::move(problem), true, isRefused);
  }

 private:
  /// In lists of commands, at whose end the list is read back.
  void send(std::span<const MpdStep> steps) {
    while (!steps.empty()) {
      const auto part = steps.first(std::min(steps.size(), stepsAtOnce));
      std::vector<MpdConnection::Words> commands;
      MpdEntries expected = now_;
      for (const MpdStep& step : part) {
        append(commands, step, expected.size());
        apply(step, expected);
      }
      // Read back with them, before any other client may change it.
      const std::size_t reading = commands.size();
      commands.push_back({"listplaylist", list_});
      // The server lets other clients in between two lists of commands, and takes every position as
      // one in the list that it has by then.
      MpdEntries found = readMpdEntries(connection_, list_);
      if (found != now_) throw ForeignChange{std::move(found)};
      found.clear();
      connection_.askEach(commands,
                          [&](std::size_t command, std::string_view name, std::string_view value) {
                            if (command == reading && name == "file") found.emplace_back(value);
                          });
      now_ = std::move(found);
      if (now_ != expected) failDifferent();
      steps = steps.subspan(part.size());
      done_ += part.size();
    }
  }

  /// Leaves what another program has made of the list, without what was done here.
  void takeOutOf(MpdEntries found) {
    const auto done = std::span(steps_).first(done_);
    const auto steps = stepsOf(found, changesWithout(done, before_, found));
    try {
      now_ = std::move(found);
      send(steps);
    } catch (const ForeignChange&) {
      failDifferent();
    } catch (const LibraryError& error) {
      throw MpdEditError(Message::tr("%1 The list was changed in part").arg(error.message), false);
    }
  }

  void append(std::vector<MpdConnection::Words>& commands, const MpdStep& step,
              std::size_t length) const {
    const std::string position = std::to_string(step.position);
    if (step.kind == Kind::remove) {
      commands.push_back({"playlistdelete", list_, position});
    } else if (connection_.isAtLeast(0, 23, 3)) {
      commands.push_back({"playlistadd", list_, step.uri, position});
    } else {
      commands.push_back({"playlistadd", list_, step.uri});
      if (step.position < length)
        commands.push_back({"playlistmove", list_, std::to_string(length), position});
    }
  }

  /// The server may be starting again.
  void reconnect(const Message& problem) {
    using std::chrono::milliseconds;
    for (const milliseconds pause : {milliseconds(0), milliseconds(300), milliseconds(1500)}) {
      std::this_thread::sleep_for(pause);
      try {
        connection_ = MpdConnection(connection_.server());
        return;
      } catch (const LibraryError&) {
      }
    }
    throw MpdEditError(Message::tr("%1 What became of the list is not known").arg(problem), false);
  }

 public:
  /// Undoes the steps that were carried out, the last first; false when all were.
  bool takeBack() {
    try {
      const MpdEntries found = readMpdEntries(connection_, list_);
      const auto done = stepsDone(found, before_, steps_);
      if (!done) failDifferent();
      if (*done == steps_.size()) return false;
      std::vector<MpdStep> inverse(
          steps_.rbegin() + static_cast<std::ptrdiff_t>(steps_.size() - *done), steps_.rend());
      for (MpdStep& step : inverse) step.kind = step.kind == Kind::add ? Kind::remove : Kind::add;
      now_ = found;
      send(inverse);
      return true;
    } catch (const ForeignChange&) {
      failDifferent();
    } catch (const LibraryError& error) {
      throw MpdEditError(Message::tr("%1 The list was changed in part").arg(error.message), false);
    }
  }

 private:
  [[noreturn]] static void failDifferent() {
    throw MpdEditError(
        Message::tr("the list is not what was written to it: another program changes "
                    "it, or the server"),
        false);
  }

  MpdConnection& connection_;
  const std::string& list_;
  const MpdEntries& before_;
  const std::vector<MpdStep>& steps_;
  MpdEntries now_;        ///< as it was read last
  std::size_t done_ = 0;  ///< steps
};

}  // namespace

std::map<std::string, std::string> mpdListTimes(MpdConnection& connection) {
  std::map<std::string, std::string> times;
  std::string list;
  connection.ask({"listplaylists"}, [&](std::string_view name, std::string_view value) {
    if (name == "playlist") list = value;
    times[list] = value;
  });
  return times;
}

MpdEntries readMpdEntries(MpdConnection& connection, const std::string& list) {
  MpdEntries entries;
  connection.ask({"listplaylist", list}, [&](std::string_view name, std::string_view value) {
    if (name == "file") entries.emplace_back(value);
  });
  return entries;
}

std::vector<MpdStep> stepsOf(const MpdEntries& entries, const std::vector<MpdChange>& changes) {
  std::vector<MpdStep> steps;
  for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
    if (!change->added.empty())
      steps.push_back({Kind::add, change->position + (change->removes ? 1 : 0), change->added});
    if (change->removes)
      steps.push_back({Kind::remove, change->position, entries[change->position]});
  }
  // An entry that is there again for a while shows whether the list has a place for it.
  if (!steps.empty() && steps.front().kind == Kind::remove) {
    const std::string& probe = steps.front().uri;
    const std::size_t end = steps.front().position + 1;
    steps.insert(steps.begin(), {{Kind::add, end, probe}, {Kind::remove, end, probe}});
  }
  return steps;
}

MpdEntries afterSteps(MpdEntries entries, const std::vector<MpdStep>& steps) {
  for (const MpdStep& step : steps) apply(step, entries);
  return entries;
}

std::optional<std::size_t> stepsDone(const MpdEntries& found, const MpdEntries& before,
                                     const std::vector<MpdStep>& steps) {
  MpdEntries entries = before;
  std::size_t done = 0;
  while (entries != found && done < steps.size()) apply(steps[done++], entries);
  return entries == found ? std::optional(done) : std::nullopt;
}

void takeBackMpdEdit(MpdConnection& connection, const std::string& list, const MpdEntries& entries,
                     const std::vector<MpdStep>& steps) {
  Editing(connection, list, entries, steps).takeBack();
}

void editMpdList(MpdConnection& connection, const std::string& list, const MpdEntries& entries,
                 const std::vector<MpdStep>& steps) {
  Editing(connection, list, entries, steps).carryOut();
}

}  // namespace kestrel
