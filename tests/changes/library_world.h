/// A library document on a disk, written as what matters about its playlists, with a process, a
/// music application and a history for runs over it:
///
///     LibraryWorld world({playlist("Mix", 0xA1, {1, 2, 1})});
///
/// Its tracks have the persistent IDs 1 to 9 and the Track IDs 101 to 109.
#pragma once

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "changes/apply.h"
#include "changes/library_changes.h"
#include "changes/undo.h"
#include "cleanup/repeats.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "foundation/property_list.h"
#include "history/history.h"
#include "musicapp/document/document_library.h"
#include "platform/files.h"
#include "tests/cleanup/playlist_builders.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {

constexpr std::uint64_t worldTracks = 9;

inline PropertyList libraryDocument(const std::vector<PlaylistBuilder>& playlists,
                                    std::uint64_t trackCount = worldTracks) {
  PropertyList::Dictionary tracks;
  for (std::uint64_t i = 1; i <= trackCount; ++i)
    tracks.push_back(
        {std::to_string(100 + i),
         PropertyList::Dictionary{{"Track ID", static_cast<std::int64_t>(100 + i)},
                                  {"Name", "T" + std::to_string(i)},
                                  {"Persistent ID", TextSorter::decToHex(i)},
                                  {"Track Type", "File"},
                                  {"Location", "file:///music/" + std::to_string(i) + ".mp3"}}});
  PropertyList::Array lists;
  for (const auto& [made] : playlists) {
    PropertyList& list = lists.emplace_back();
    list.set("Name", made.name);
    list.set("Playlist Persistent ID", TextSorter::decToHex(made.persistentID));
    if (made.parentID) list.set("Parent Persistent ID", TextSorter::decToHex(*made.parentID));
    if (made.isMaster) list.set("Master", true);
    if (made.kind == PlaylistKind::folder) list.set("Folder", true);
    if (made.kind == PlaylistKind::smart) list.set("Smart Info", PropertyList::Data{"x"});
    PropertyList::Array items;
    for (const std::uint64_t track : made.items)
      items.push_back(
          PropertyList::Dictionary{{"Track ID", static_cast<std::int64_t>(100 + track)}});
    list.set("Playlist Items", std::move(items));
  }
  return PropertyList::Dictionary{{"Major Version", 1},
                                  {"Library Persistent ID", "ABCD"},
                                  {"Tracks", std::move(tracks)},
                                  {"Playlists", std::move(lists)}};
}

/// "FOLDER/NAME: 1 2 3" for each playlist but the master, sorted, since a replaced playlist goes
/// to the end of the library; from the document on the disk.
inline std::vector<std::string> playlistsOnDisk(const std::string& path) {
  const PropertyList root = parsePropertyList(TemporaryFolder::read(path), path);
  const PropertyList& playlists = *root.find("Playlists");
  std::vector<std::string> texts;
  for (const PropertyList& list : playlists.values()) {
    if (list.find("Master")) continue;
    std::string text;
    for (const PropertyList& other : playlists.values())
      if (const PropertyList* parent = list.find("Parent Persistent ID");
          parent &&
          numberFromHex(parent->text()) == numberFromHex(other.textAt("Playlist Persistent ID")))
        text.append(other.textAt("Name")).append("/");
    text.append(list.textAt("Name")).append(":");
    if (const PropertyList* items = list.find("Playlist Items"))
      for (const PropertyList& item : items->values()) {
        // Libraries list tracks that they do not have; nobody sees those entries.
        const auto id = std::to_string(item.find("Track ID")->integer());
        if (const PropertyList* track = root.find("Tracks")->find(id))
          text += " " + std::to_string(*numberFromHex(track->textAt("Persistent ID")));
      }
    texts.push_back(std::move(text));
  }
  std::sort(texts.begin(), texts.end());
  return texts;
}

class LibraryWorld {
 public:
  explicit LibraryWorld(const std::vector<PlaylistBuilder>& playlists,
                        std::uint64_t trackCount = worldTracks)
      : LibraryWorld(writePropertyList(libraryDocument(playlists, trackCount))) {}
  explicit LibraryWorld(const std::string& document)
      : path(disk.write("Music/Library.xml", document)),
        historyPath(disk.write("history/.keep", "")) {
    ::setenv("XDG_DATA_HOME", (disk / "support").c_str(), 1);
    historyPath = disk / "history/history.sqlite";
    open();
  }

  /// Reads the document and the history anew, as another run of the program would.
  void open(CommitOptions options = {}) {
    process.with.application = nullptr;
    app = std::make_unique<DocumentLibrary>(path, ApplicationServices{files, log, random, clock},
                                            std::move(options));
    process.with.application = app.get();
    history.reset();
    history.emplace(historyPath, clock);
  }

  /// As copies: the application changes its lists in place.
  [[nodiscard]] std::vector<Playlist> lists() const { return *app->library().allPlaylists(); }
  [[nodiscard]] RepeatScan repeats() const { return findRepeats(app->library().allPlaylists()); }
  [[nodiscard]] LibraryIdentity identity() { return app->library().identity(); }
  /// Replaces tracks in the chosen playlists, all of them when none is given.
  Plan replaylist(const std::unordered_map<std::uint64_t, std::uint64_t>& keepers,
                  std::vector<std::uint64_t> chosen = {}) {
    std::vector<ReplaylistChoice> choices;
    if (chosen.empty())
      for (const Playlist& list : lists())
        if (list.kind == PlaylistKind::regular && !list.isMaster)
          chosen.push_back(list.persistentID);
    for (const std::uint64_t id : chosen) choices.push_back({id, true, keepers});
    Plan plan = planReplaylist(lists(), choices, {});
    plan.library = identity();
    return plan;
  }
  Plan cleanUp() {
    Plan plan = planCleanUp(lists(), choicesOf(repeats(), true));
    plan.library = identity();
    return plan;
  }
  ApplyReport apply(const Plan& plan, const ApplyOptions& options = {}) {
    return applyPlan(plan, *app, *history, options);
  }
  UndoReport undo(std::int64_t run, const UndoOptions& options = {}, Trash* trash = nullptr) {
    return undoRun(run, *app, files, *history, trash, options);
  }
  std::string undoError(std::int64_t run, const UndoOptions& options = {}) {
    return errorOf([&] { undo(run, options); });
  }

  [[nodiscard]] std::vector<std::string> onDisk() const { return playlistsOnDisk(path); }
  /// The message of the LibraryError that `act` throws; "none" when it throws none.
  template <typename Act>
  static std::string errorOf(Act&& act) {
    try {
      act();
    } catch (const LibraryError& error) {
      return error.what();
    }
    return "none";
  }

  TemporaryFolder disk{TemporaryFolder::inMemory()};
  SystemFiles files;
  MemoryLog log;
  ManualClock clock{Moment(std::chrono::seconds(1'700'000'000))};
  SeededRandom random{1};
  Preferences preferences;
  InlineQueue queue;
  std::string path, historyPath;
  Process process{{{}, preferences, queue, log, clock, random, files}};
  std::unique_ptr<DocumentLibrary> app;
  std::optional<History> history;
};

}  // namespace kestrel::testing
