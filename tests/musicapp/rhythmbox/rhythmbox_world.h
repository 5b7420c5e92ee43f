/// A library of Rhythmbox in a folder of a test's own, and a stand-in for the running player on a
/// bus of its own.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "musicapp/rhythmbox/rhythmbox_library.h"
#include "tests/musicapp/application_world.h"

struct sd_bus;
struct sd_bus_message;

namespace kestrel::testing {

/// A bus that no session has, which would start a player that was asked for: `hasStarted`. The
/// address of the session's bus is this one's meanwhile.
class PrivateBus {
 public:
  explicit PrivateBus(const TemporaryFolder& folder);
  ~PrivateBus();
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;
  [[nodiscard]] bool hasStarted() const { return std::filesystem::exists(started_); }

 private:
  std::string started_, address_;
  pid_t daemon_ = -1;
};

/// Does to its lists what the player does; see the tries in the real one.
class StandInPlayer {
 public:
  struct List {
    std::string name;
    std::vector<std::string> uris;
    bool isAutomatic = false;
  };
  explicit StandInPlayer(std::vector<List> lists);
  ~StandInPlayer();
  StandInPlayer(const StandInPlayer&) = delete;
  StandInPlayer& operator=(const StandInPlayer&) = delete;

  /// The first of that name.
  std::vector<std::string> uris(const std::string& list);
  void set(const std::string& list, std::vector<std::string> uris);
  [[nodiscard]] std::string described();
  /// Songs whose properties it tells, and takes.
  void know(const std::string& uri) {
    const std::lock_guard lock(mutex_);
    songs_[uri];
  }
  /// Kills who asks for the change with that number, from 0 on, instead of making it, and may be
  /// told so by a child process; or refuses so many from that on.
  void dieAt(int change) { *dies_ = change; }
  void failAt(int change, int count) {
    fails_ = change;
    failures_ = count;
  }
  std::atomic<int> changes = 0;
  std::atomic<int> windows = 0;  ///< that it opened to say that it cannot export an empty list

 private:
  static int handle(sd_bus_message* message, void* self, void*);
  int answer(sd_bus_message* message);
  int answerProperties(sd_bus_message* message, bool takes);
  List* find(const std::string& name);

  std::mutex mutex_;
  std::vector<List> lists_;
  std::vector<std::string> loaded_;
  std::map<std::string, std::map<std::string, double>> songs_;  ///< numbers by name
  std::atomic<int>* dies_;                                      ///< shared with child processes
  int fails_ = -1, failures_ = 0;
  std::atomic<bool> ends_ = false;
  sd_bus* bus_ = nullptr;
  std::thread thread_;
};

/// The tracks a to d and these playlists: "Mix" with a and b, "Empty", "Inner" with a file that the
/// library does not know and b, an automatic "Smart", the queue, and another "Mix" with d.
class RhythmboxWorld : public ApplicationWorld<RhythmboxLibrary> {
 public:
  RhythmboxWorld();
  ~RhythmboxWorld();
  /// Reads the library, as another run of the program would.
  void open();
  void startPlayer(bool withNamesakes = false);
  void endPlayer() { player.reset(); }
  [[nodiscard]] std::string uri(const std::string& title) const;
  [[nodiscard]] std::string stored() const { return TemporaryFolder::read(playlists); }
  /// The titles of a list's tracks.
  [[nodiscard]] std::string shown(const std::string& name) const;

  CommitOptions options;
  std::string playlists;
  std::unique_ptr<PrivateBus> bus;
  std::unique_ptr<StandInPlayer> player;
};

}  // namespace kestrel::testing
