/// A music folder of a test's own, "Music" in a temporary one, with all that an application needs.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "musicapp/folder/folder_library.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/random.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {

class FolderWorld {
 public:
  FolderWorld() {
    ::setenv("XDG_DATA_HOME", (folder / "support").c_str(), 1);
    ::setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
  }

  [[nodiscard]] ApplicationServices services() {
    return {files, log, random, clock, revealer, watch};
  }
  /// Reads the folder as it is now, as another run of the program would.
  void open() {
    app.reset();
    app = std::make_unique<FolderLibrary>(address.empty() ? folder / "Music" : address, services(),
                                          options);
  }
  /// "NAME: TRACK TRACK" for each playlist, separated by "; ", with "FOLDER/" before the name, the
  /// file names of tracks without their endings, and a "?" for each unknown entry at the end.
  [[nodiscard]] std::string playlists() const {
    const auto lists = app->allPlaylists();
    std::ostringstream out;
    for (const Playlist& list : *lists) {
      out << (&list == &lists->front() ? "" : "; ");
      for (const Playlist& other : *lists)
        if (list.parentID == other.persistentID) out << other.name << "/";
      out << list.name << ":";
      for (const std::uint64_t id : list.items)
        app->allMediaItems()->forEach([&](const MediaItem& item) {
          const std::string_view name = item.locationName.view();
          if (item.persistentID == id) out << " " << name.substr(0, name.rfind('.'));
        });
      out << (list.unknownItems ? " " : "") << std::string(list.unknownItems, '?');
    }
    return out.str();
  }
  [[nodiscard]] std::uint64_t track(std::string_view name) const {
    std::uint64_t id = 0;
    app->allMediaItems()->forEach([&](const MediaItem& item) {
      if (item.locationName.view() == name) id = item.persistentID;
    });
    return id;
  }
  [[nodiscard]] std::uint64_t list(std::string_view name) const {
    for (const Playlist& list : *app->allPlaylists())
      if (list.name == name) return list.persistentID;
    return 0;
  }
  /// Name and bytes of every file that is no audio.
  [[nodiscard]] std::string lists() const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder / "Music"))
      if (entry.is_regular_file() && !isAudioName(entry.path().filename().string()))
        found.push_back(entry.path().string() + ": " + TemporaryFolder::read(entry.path()));
    std::sort(found.begin(), found.end());
    std::string all;
    for (const std::string& one : found) all += one;
    return all;
  }

  TemporaryFolder folder;
  SystemFiles files;
  MemoryLog log;
  SeededRandom random{1};
  ManualClock clock{Moment(std::chrono::seconds(1'700'000'000))};
  Revealer* revealer = nullptr;
  LoadWatch watch;
  CommitOptions options;
  std::string address;
  std::unique_ptr<FolderLibrary> app;
};

}  // namespace kestrel::testing
