/// The search that find, replaylist, plan and trash begin with.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/record_output.h"
#include "cli/search_options.h"
#include "decisions/apply_decisions.h"
#include "decisions/decisions.h"
#include "dupes/doubts.h"
#include "dupes/group_filter.h"
#include "dupes/grouping.h"
#include "dupes/keeper_facts.h"
#include "dupes/track_sounds.h"
#include "library/playlist_catalogue.h"
#include "library/result_track.h"
#include "musicapp/audio/file_answers.h"

namespace kestrel {

struct FoundGroup {
  std::string tGroupID;
  std::int32_t dupeSort = 0;               ///< of its first row
  std::vector<const ResultTrack*> tracks;  ///< in row order
  std::string reason;                      ///< why the keeper was chosen
  bool random = false;
  PickState picked = PickState::none;  ///< by the user's hand
  std::vector<Doubt> doubts;           ///< why they may be no duplicates

  /// Of the tracks, in their order.
  [[nodiscard]] std::vector<std::uint64_t> ids() const;
  [[nodiscard]] std::vector<const TrackRecord*> records() const;
};

/// Can be moved, but not copied: the groups point to the rows.
struct SearchResult {
  SearchResult() = default;
  SearchResult(SearchResult&&) = default;
  SearchResult(const SearchResult&) = delete;

  std::shared_ptr<const TrackStore> tracks;  ///< of the library
  std::vector<ResultTrack> rows;             ///< in the order of dupeSort
  std::optional<PlaylistRecord> playlist;    ///< what was searched, unless the whole library
  std::uint64_t searched = 0;                ///< the playlist's persistent ID, of any
  std::vector<std::string> criteria;
  FilterSettings settings;                   ///< by which keepers were chosen
  GroupingOptions grouping;                  ///< by which tracks were matched
  std::shared_ptr<const KeeperFacts> facts;  ///< of the library
  std::shared_ptr<FileAnswers> files;        ///< what the files say; nullptr where none are here
  bool knowsCovers = false;                  ///< the files were asked for covers
  Decisions decisions;                       ///< the user's about the library
  AppliedPicks picks;                        ///< of them
  std::vector<std::int32_t> notDuplicates;   ///< groups that are left out
  std::vector<const TrackRecord*> seeds;     ///< by group number; see DupeRows
  std::optional<TrackSounds> sounds;         ///< of the groups' members, if they were listened to
  bool keeperMode = false;                   ///< true: a ticked box marks a track to act on
  std::vector<FoundGroup> groups;            ///< in the order of dupeSort, each number once

  /// "library", or {"playlist":name,"hexpid":".."}
  [[nodiscard]] Json scope() const;
  /// A line that says so, and nothing of the whole library.
  void writeScope(std::ostream& out) const;
  /// The rules that chose keepers, by their words; nullptr for one that stands alone.
  [[nodiscard]] Json chain() const;
  [[nodiscard]] bool isKeeper(const ResultTrack& track) const {
    return track.tCheckbox != keeperMode;
  }
};

/// Has the files of tracks looked at in one go, with progress, before they are asked about.
void prepare(FileAnswers& files, std::span<const TrackRecord* const> tracks, Session& session);

/// Notes on standard error which of the session's maps are for nothing, and that most files are not
/// where the library says, if so, and what to do.
void noteMissingFiles(const Session& session, const TrackStore& tracks);

/// Takes the snapshot of the library, searches it and chooses keepers. Notes on standard error when
/// it covers less than the library. Stops early when the user interrupts, which is for the caller
/// to ask (`Session::interrupted`). Throws UsageError, and LibraryError when there is no playlist.
SearchResult search(Session& session, MediaLibrary& library, const SearchOptions& options);

}  // namespace kestrel
