/// A library document in memory, written as what matters about its playlists, with a music
/// application and a history for runs over it:
///
///     LibraryWorld world({playlist("Mix", 0xA1, {1, 2, 1})});
///
/// Its tracks have the persistent IDs 1 to 9 and the Track IDs 101 to 109.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "changes/apply.h"
#include "changes/library_changes.h"
#include "changes/undo.h"
#include "cleanup/repeats.h"
#include "foundation/library_error.h"
#include "history/history.h"
#include "tests/musicapp/document/document_world.h"

namespace kestrel::testing {

constexpr std::uint64_t worldTracks = 9;

/// "FOLDER/NAME: 1 2 3" for each playlist but the master, sorted, since a replaced playlist goes
/// to the end of the library; from the document on the disk.
inline std::vector<std::string> playlistsOnDisk(const std::string& path) {
  std::vector<Playlist> lists = *readLibraryDocument(TemporaryFolder::read(path), path).playlists;
  std::erase_if(lists, [](const Playlist& list) { return list.isMaster; });
  std::vector<std::string> texts = playlistTexts(lists, {});
  std::sort(texts.begin(), texts.end());
  return texts;
}

class LibraryWorld : public DocumentWorld {
 public:
  explicit LibraryWorld(const std::vector<PlaylistBuilder>& playlists,
                        std::uint64_t trackCount = worldTracks)
      : LibraryWorld(writePropertyList(libraryDocument(playlists, trackCount))) {}
  explicit LibraryWorld(const std::string& document)
      : DocumentWorld(document, TemporaryFolder::inMemory()) {
    open();
  }

  /// Reads the document and the history anew, as another run of the program would.
  void open(CommitOptions with = {}) {
    options = std::move(with);
    DocumentWorld::open();
    history.reset();
    history.emplace(historyPath, clock);
  }

  /// As copies: the application changes its lists in place.
  [[nodiscard]] std::vector<Playlist> lists() const { return *app->library().allPlaylists(); }
  [[nodiscard]] RepeatScan repeats() const { return findRepeats(app->library().allPlaylists()); }
  [[nodiscard]] LibraryIdentity identity() { return app->library().identity(); }
  Plan ofThis(Plan plan) {
    plan.library = identity();
    return plan;
  }
  /// Replaces tracks in the chosen playlists, all of them when none is given.
  Plan replaylist(const std::unordered_map<std::uint64_t, std::uint64_t>& keepers,
                  std::vector<std::uint64_t> chosen = {}) {
    std::vector<ReplaylistChoice> choices;
    if (chosen.empty())
      for (const Playlist& list : lists())
        if (list.kind == PlaylistKind::regular && !list.isMaster)
          chosen.push_back(list.persistentID);
    for (const std::uint64_t id : chosen) choices.push_back({id, true, keepers});
    return ofThis(planReplaylist(lists(), choices, {}));
  }
  Plan cleanUp() { return ofThis(planCleanUp(lists(), choicesOf(repeats()))); }
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

  std::string historyPath = folder / "history.sqlite";
  std::optional<History> history;
};

}  // namespace kestrel::testing
