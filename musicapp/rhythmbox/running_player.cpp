#include "musicapp/rhythmbox/running_player.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "musicapp/file_url.h"
#include "platform/clock.h"

namespace kestrel::rhythmbox {
namespace {

using std::string;
using Uris = std::vector<string>;

constexpr char name[] = "org.gnome.Rhythmbox3";
const BusObject& playlistManager() {
  static const BusObject object{name, "/org/gnome/Rhythmbox3/PlaylistManager",
                                "org.gnome.Rhythmbox3.PlaylistManager"};
  return object;
}

/// A folder in which something passes from one program to another.
class Exchange {
 public:
  explicit Exchange(const string& parent) : path_(parent + "/.kestrel-XXXXXX") {
    if (!::mkdtemp(path_.data())) throw BusError("System.Error", parent + ": not writable");
  }
  ~Exchange() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;
  [[nodiscard]] string file() const { return path_ + "/list.pls"; }

 private:
  string path_;
};

/// The entries of a playlist file; as many as it says, or something was lost on the way.
Uris entriesIn(const string& path) {
  std::ifstream file(path);
  Uris uris;
  std::size_t count = 0;
  for (string line; std::getline(file, line);) {
    constexpr std::string_view countKey = "NumberOfEntries=";
    if (line.starts_with(countKey)) count = std::strtoull(&line[countKey.size()], nullptr, 10);
    const string key = "File" + std::to_string(uris.size() + 1) + "=";
    if (line.starts_with(key)) uris.push_back(line.substr(key.size()));
  }
  const bool areUris = std::all_of(
      uris.begin(), uris.end(), [](const string& uri) { return uri.find("://") != string::npos; });
  if (uris.size() != count || !areUris) throw BusError("Export.Error", path);
  return uris;
}

}  // namespace

std::size_t firstMoved(const Uris& current, const Uris& wanted) {
  const std::unordered_set<std::string_view> listed(wanted.begin(), wanted.end());
  std::size_t place = 0;
  for (const string& uri : current) {
    if (!listed.contains(uri)) continue;
    if (place == wanted.size() || uri != wanted[place]) return place;
    ++place;
  }
  return place;
}

SessionBus& RunningPlayer::bus() {
  if (!bus_) throw BusError("", "");
  return *bus_;
}

bool RunningPlayer::isRunning() {
  try {
    if (bus_) return bus_->hasOwner(name);
  } catch (const BusError&) {  // the connection was lost
  }
  bus_ = SessionBus::open();
  return bus_ && bus_->hasOwner(name);
}

Uris RunningPlayer::lists(bool some) {
  Uris found;
  for (int tries = 200; tries > 0 && found.empty(); --tries) {
    if (tries < 200) clock_.sleepFor(std::chrono::milliseconds(50));
    try {
      found = bus().texts(playlistManager(), "GetPlaylists");
      if (!some) break;
    } catch (const BusError&) {
      if (tries == 1 || !isRunning()) throw;
    }
  }
  return found;
}

bool RunningPlayer::isStatic(const string& list) {
  try {
    // It has no such entry, and so does nothing but to say whether it could.
    bus().call(playlistManager(), "RemoveFromPlaylist", {list, "kestrel:none"});
    return true;
  } catch (const BusError&) {
    return false;
  }
}

Uris RunningPlayer::entries(const string& list) {
  const Exchange exchange(folder_);
  bus().call(playlistManager(), "ExportPlaylist", {list, fileUrlOfPath(exchange.file()), false});
  // Of a list without entries it writes none.
  return std::filesystem::exists(exchange.file()) ? entriesIn(exchange.file()) : Uris();
}

void RunningPlayer::setProperties(const string& uri,
                                  const std::map<string, SessionBus::Property>& properties) {
  bus().setProperties({name, "/org/gnome/Rhythmbox3/RhythmDB", "org.gnome.Rhythmbox3.RhythmDB"},
                      "SetEntryProperties", uri, properties);
}

std::map<string, string> RunningPlayer::properties(const string& uri) {
  try {
    return bus().properties(
        {name, "/org/gnome/Rhythmbox3/RhythmDB", "org.gnome.Rhythmbox3.RhythmDB"},
        "GetEntryProperties", {uri});
  } catch (const BusError&) {
    if (!isRunning()) throw;
    return {};
  }
}

std::map<string, string> RunningPlayer::load(const string& uri) {
  bus().activate(name, "/org/gnome/Rhythmbox3", "load-uri", {uri, false});
  std::map<string, string> found;
  for (int tries = 200; tries > 0 && found.empty(); --tries) {
    if (tries < 200) clock_.sleepFor(std::chrono::milliseconds(50));
    found = properties(uri);
  }
  return found;
}

void RunningPlayer::create(const string& list) {
  bus().call(playlistManager(), "CreatePlaylist", {list});
}

void RunningPlayer::remove(const string& list) {
  bus().call(playlistManager(), "DeletePlaylist", {list});
}

void RunningPlayer::change(const string& list, const Uris& current, const Uris& wanted) {
  const std::unordered_set<std::string_view> old(current.begin(), current.end()),
      listed(wanted.begin(), wanted.end());
  const auto take = [&](const string& uri) {
    bus().call(playlistManager(), "RemoveFromPlaylist", {list, uri});
  };
  for (std::size_t i = firstMoved(current, wanted); i < wanted.size(); ++i) {
    if (old.contains(wanted[i])) take(wanted[i]);
    bus().call(playlistManager(), "AddToPlaylist", {list, wanted[i]});
  }
  for (const string& uri : current)
    if (!listed.contains(uri)) take(uri);
}

}  // namespace kestrel::rhythmbox
