/// Which playlists hold tracks that are not kept, and which tracks take their place: from the dupe
/// groups of a table to a map from keepers to non-keepers, and from that to the user's playlists.
///
/// Nothing here reads settings or windows. Callable from any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/number_table.h"
#include "library/listed_playlist.h"
#include "library/playlist_tree.h"
#include "library/result_track.h"
#include "library/track_store.h"

namespace kestrel {

/// What counts of a row of a results table.
struct SurveyRow {
  std::uint64_t track = 0;  ///< persistent ID
  std::int32_t tGroupID = 0;
  bool tCheckbox = false;
  bool fileMissing = false;  ///< "fileAvail" is "0"

  SurveyRow() = default;
  SurveyRow(std::uint64_t id, std::int32_t group, bool ticked, bool missing)
      : track(id), tGroupID(group), tCheckbox(ticked), fileMissing(missing) {}
  explicit SurveyRow(const ResultTrack& row)
      : SurveyRow(row.record->item().persistentID, row.tGroupID, row.tCheckbox,
                  row.record->availability() == FileAvailability::missing) {}
};

/// A track that the searched playlist lists more than once is one track: of its rows in a group the
/// first that is a keeper counts, else the first. Positions of those that count, ascending.
std::vector<std::uint32_t> rowsThatCount(std::span<const SurveyRow> rows, bool keeperValue);
/// The same, as the rows themselves.
std::vector<const ResultTrack*> rowsThatCount(std::span<const ResultTrack* const> rows,
                                              bool keeperValue);

/// Keepers with their non-keepers, in the order of adding; and whose place each keeper takes.
///
/// A track can be in the set of non-keepers without having a keeper. Where a track stands in the
/// lists of several keepers, which results of one search never make, the first of them counts.
class KeeperTable {
 public:
  [[nodiscard]] std::size_t size() const noexcept { return keepers_.size(); }
  [[nodiscard]] bool empty() const noexcept { return keepers_.empty(); }
  [[nodiscard]] std::uint64_t keeper(std::size_t entry) const { return keepers_[entry]; }
  /// In table order; may hold a track twice, or the keeper itself, when the table does.
  [[nodiscard]] std::span<const std::uint64_t> nonKeepers(std::size_t entry) const {
    return nonKeepers_[entry];
  }

  [[nodiscard]] bool isNonKeeper(std::uint64_t track) const noexcept {
    return numbers_.find(track) != nullptr;
  }
  /// Asks for the memory of a track that will be looked for a few steps later.
  void prefetch(std::uint64_t track) const noexcept { numbers_.prefetch(track); }
  /// Nothing for a track that is no non-keeper, or one without a keeper.
  [[nodiscard]] std::optional<std::uint64_t> keeperOf(std::uint64_t track) const noexcept {
    const std::uint32_t* entry = numbers_.find(track);
    if (!entry || *entry == noKeeper) return std::nullopt;
    return keepers_[*entry];
  }
  /// Every track that stands in the list of a keeper, once, in the order of the lists.
  [[nodiscard]] std::vector<std::uint64_t> allNonKeepers() const;

 private:
  friend class KeeperTableBuilder;
  static constexpr auto noKeeper = static_cast<std::uint32_t>(-1);
  // Apart from each other: look-ups for millions of entries want the keepers close together.
  std::vector<std::uint64_t> keepers_;
  std::vector<std::vector<std::uint64_t>> nonKeepers_;
  IdMap numbers_;  ///< non-keepers to entries
};

struct SkippedGroup {
  enum class Reason : std::uint8_t {
    missingFile,  ///< of one of its rows; the group is skipped whole
    noKeeper,     ///< its non-keepers are found, but nothing can take their place
    severalKeepers,
  };
  std::int32_t tGroupID = 0;
  Reason reason = Reason::missingFile;

  friend bool operator==(const SkippedGroup&, const SkippedGroup&) = default;
};

struct GroupSurvey {
  /// The first group with more than one keeper. There is no map then: nothing may be replaced while
  /// it is not clear what stays.
  std::optional<std::int32_t> severalKeepers;
  std::vector<SkippedGroup> skipped;  ///< in the order in which the table meets them
  KeeperTable keepers;
};

/// What a survey is to see of whole groups, so that no group keeps it from the others.
struct PreparedRows {
  std::vector<SurveyRow> rows;        ///< group by group
  std::vector<SkippedGroup> leftOut;  ///< with several keepers
};
/// Leaves one row of each track of a group. Where the keeper's file is there, or in the cloud, the
/// files of the other rows pass for there too: that they are gone is all the more reason to replace
/// their entries.
PreparedRows preparedRows(std::span<const SurveyRow> rows, bool keeperValue);

/// Takes the groups in the order in which the rows first name them. Rows whose `tCheckbox` is
/// `keeperValue` are keepers. A group with several is reported even where it would be skipped.
GroupSurvey surveyGroups(std::span<const SurveyRow> rows, bool keeperValue);

/// An entry's track and the one that takes its place.
struct KeeperPair {
  std::uint64_t item = 0;
  std::uint64_t keeper = 0;
  friend bool operator==(const KeeperPair&, const KeeperPair&) = default;
};

/// One pair for each track among the items that has a keeper, in playlist order. `seen` is used to
/// tell repeats; what it holds is lost.
std::vector<KeeperPair> keeperPairs(std::span<const std::uint64_t> items,
                                    const KeeperTable& keepers, IdMap& seen);

/// A replaylist playlist record, of a user playlist or a folder. Reads as a string-keyed
/// dictionary, to which "items", "nonKeeperKeeperPairs" and "trackInfo" (where there are pairs),
/// and "Child" by its place in the outline, belong.
class ReplaylistRecord final : public ListedPlaylist {
 public:
  explicit ReplaylistRecord(std::shared_ptr<const Playlist> playlist,
                            std::vector<KeeperPair> pairs = {},
                            std::shared_ptr<const TrackStore> tracks = nullptr)
      : ListedPlaylist(std::move(playlist)), pairs_(std::move(pairs)), tracks_(std::move(tracks)) {}

  /// None for folders, and for playlists whose non-keepers have no keepers.
  [[nodiscard]] const std::vector<KeeperPair>& nonKeeperKeeperPairs() const noexcept {
    return pairs_;
  }
  /// The record of a track of the pairs; nullptr when the snapshot has none of it.
  [[nodiscard]] const TrackRecord* trackInfo(std::uint64_t track) const noexcept {
    return tracks_ ? tracks_->find(track) : nullptr;
  }
  /// What keeps those records alive.
  [[nodiscard]] const std::shared_ptr<const TrackStore>& tracks() const noexcept { return tracks_; }

  /// The keys whose values are texts; absent for others. At top level both parent keys are absent.
  [[nodiscard]] Value value(std::string_view key) const;
  /// Calls `visit(std::string_view name, const Value&)` for each text that the record holds.
  template <typename Visit>
  void forEachKey(Visit&& visit) const {
    forEachText(*this, visit);
  }

 private:
  std::vector<KeeperPair> pairs_;
  std::shared_ptr<const TrackStore> tracks_;
};

using ReplaylistRow = OutlineNode<ReplaylistRecord>;

/// User playlists with a non-keeper, be there a keeper for it or not.
using PlaylistSurvey = AffectedPlaylists<ReplaylistRecord>;

/// Only regular playlists and folders are considered, and none that the application provides.
PlaylistSurvey surveyPlaylists(const Playlists& playlists, const KeeperTable& keepers,
                               const std::shared_ptr<const TrackStore>& tracks);

enum class SurveyOutcome : std::uint8_t {
  none,            ///< no survey has ended yet, or one is running
  severalKeepers,  ///< nothing was surveyed
  noResults,       ///< no playlist holds a non-keeper
  found,
};

/// What came of a survey.
struct SurveyReport {
  SurveyOutcome outcome = SurveyOutcome::none;
  std::optional<std::int32_t> severalKeepers;  ///< the first group with more than one keeper
  std::vector<SkippedGroup> skippedGroups;     ///< those of the prepared rows first
  std::shared_ptr<const KeeperTable> keepers = std::make_shared<const KeeperTable>();
  PlaylistSurvey playlists;
};

/// Surveys rows as they are, or prepared ones. `playlists` is asked for the library's once it is
/// known that no group has several keepers; the pairs' records come from `tracks`.
SurveyReport surveyReplaylist(const PreparedRows& rows, bool keeperValue,
                              const std::function<Playlists()>& playlists,
                              const std::shared_ptr<const TrackStore>& tracks);

/// What is to be replaced in a playlist; at least one pair.
struct PlaylistReplacements {
  std::shared_ptr<const ReplaylistRecord> record;
  std::vector<KeeperPair> pairs;  ///< one for each track, in playlist order
};

/// For each of the chosen records that has a track to be replaced, in their order. A folder takes
/// part like a playlist, by the tracks that it holds; rebuilding it as one is out of the question,
/// which is for the caller to see to. Of playlists that share an ID in a damaged library the last
/// one counts.
std::vector<PlaylistReplacements> replacementsIn(const SharedRecords<ReplaylistRecord>& chosen,
                                                 const KeeperTable& keepers);

}  // namespace kestrel
