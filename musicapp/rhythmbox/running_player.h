/// Rhythmbox while it runs, as its session's bus reaches it. What it does is seen in its window,
/// and is in its files some seconds later.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/session_bus.h"

namespace kestrel {
class Clock;
}

namespace kestrel::rhythmbox {

/// Never starts the player. Operations throw BusError.
class RunningPlayer {
 public:
  /// `folder` is where the player writes files that only pass entries on: it need not see all of
  /// the disk, but sees its own data.
  RunningPlayer(std::string folder, Clock& clock) : folder_(std::move(folder)), clock_(clock) {}

  [[nodiscard]] bool isRunning();
  /// The names of its lists but for the queue, repeats included. While it starts it has none, or
  /// does not answer: waits, for some seconds, until it answers, and until it has `some`.
  [[nodiscard]] std::vector<std::string> lists(bool some);
  /// Whether the first list of that name is the user's to fill.
  [[nodiscard]] bool isStatic(const std::string& list);
  /// The entries of the first list of that name, but for those whose files are missing.
  [[nodiscard]] std::vector<std::string> entries(const std::string& list);
  /// What it says of a track, by the names of elements in its file; empty when it has none there.
  [[nodiscard]] std::map<std::string, std::string> properties(const std::string& uri);
  /// Has the player read a file into its library and waits, for some seconds, until it has. Returns
  /// its properties; empty when it does not take the file.
  [[nodiscard]] std::map<std::string, std::string> load(const std::string& uri);

  /// Gives a track properties, by the names of elements; an unknown track is an error.
  void setProperties(const std::string& uri,
                     const std::map<std::string, SessionBus::Property>& properties);

  void create(const std::string& list);
  /// Of any sort.
  void remove(const std::string& list);
  /// Makes `current`, which are the entries of the first list of that name, `wanted`, which hold
  /// none twice. At no moment is more than one of the old ones missing. The files of all entries
  /// from the first place on where the order changes must be there, or they are lost.
  void change(const std::string& list, const std::vector<std::string>& current,
              const std::vector<std::string>& wanted);

 private:
  SessionBus& bus();

  std::string folder_;
  Clock& clock_;
  std::optional<SessionBus> bus_;
};

/// From which place of `wanted` on `change` takes entries out and puts them in again.
std::size_t firstMoved(const std::vector<std::string>& current,
                       const std::vector<std::string>& wanted);

}  // namespace kestrel::rhythmbox
