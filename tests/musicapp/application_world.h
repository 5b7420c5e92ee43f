/// A folder of a test's own with an application in it and all that the application needs, and what
/// tests ask of its library.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "musicapp/music_application.h"
#include "musicapp/revealer.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/random.h"
#include "tests/musicapp/playlist_builders.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {

struct ShowsNothing : Revealer {
  void revealFile(const std::string&) override {}
  void revealPlaylist(std::uint64_t) override {}
};

inline std::map<std::uint64_t, std::string> titlesIn(MediaLibrary& library) {
  std::map<std::uint64_t, std::string> titles;
  library.allMediaItems()->forEach(
      [&](const MediaItem& item) { titles[item.persistentID] = item.title.view(); });
  return titles;
}
/// The track of that title; 0 when there is none.
inline std::uint64_t trackCalled(MediaLibrary& library, std::string_view wanted) {
  for (const auto& [id, title] : titlesIn(library))
    if (title == wanted) return id;
  return 0;
}
/// Those that there are of tracks whose titles are single letters.
inline std::vector<std::uint64_t> tracksCalled(MediaLibrary& library, std::string_view letters) {
  std::vector<std::uint64_t> ids;
  for (const char letter : letters)
    if (const auto id = trackCalled(library, {&letter, 1})) ids.push_back(id);
  return ids;
}
/// The first of that name.
inline Playlist listCalled(MediaLibrary& library, std::string_view name) {
  for (const Playlist& playlist : *library.allPlaylists())
    if (playlist.name == name) return playlist;
  ADD_FAILURE() << "no playlist " << name;
  return {};
}

template <typename App>
class ApplicationWorld {
 public:
  explicit ApplicationWorld(
      const std::filesystem::path& parent = std::filesystem::temp_directory_path())
      : folder(parent) {
    ::setenv("XDG_DATA_HOME", (folder / "support").c_str(), 1);
    ::setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
  }

  [[nodiscard]] ApplicationServices services() {
    return {files, log, random, clock, revealer, watch};
  }
  [[nodiscard]] std::uint64_t track(std::string_view title) const {
    return trackCalled(app->library(), title);
  }
  [[nodiscard]] Playlist list(std::string_view name) const {
    return listCalled(app->library(), name);
  }
  [[nodiscard]] std::uint64_t id(std::string_view name) const { return list(name).persistentID; }
  /// What `playlistTexts` says, with a "?" for each unknown entry at the end, separated by "; ".
  [[nodiscard]] std::string playlists() const {
    const auto lists = app->library().allPlaylists();
    const auto texts = playlistTexts(*lists, titlesIn(app->library()));
    std::string all;
    for (std::size_t i = 0; i < texts.size(); ++i) {
      const std::size_t unknown = (*lists)[i].unknownItems();
      all += (i ? "; " : "") + texts[i] + (unknown ? " " : "") + std::string(unknown, '?');
    }
    return all;
  }
  /// Why the command fails; empty when it does not.
  std::string failureOf(const Command& command) const {
    const CommandResult result = app->run(command);
    return result.failed() ? lineOf(result.failure->message) : "";
  }

  TemporaryFolder folder;
  SystemFiles files;
  MemoryLog log;
  ManualClock clock{Moment(std::chrono::seconds(1'700'000'000))};
  SeededRandom random{1};
  Revealer* revealer = nullptr;
  LoadWatch watch;
  std::unique_ptr<App> app;
};

}  // namespace kestrel::testing
