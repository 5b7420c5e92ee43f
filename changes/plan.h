/// A plan: what a run would change, as data, before anything is changed.
///
/// A plan is made from a library, shown to the user, perhaps saved as a file (plan_json.h), and
/// applied (apply.h) to that same library and no other. It says of every playlist which entries
/// change and why, and of everything that is left out why it is. IDs are persistent IDs; positions
/// count from 1.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "foundation/message.h"
#include "history/history.h"
#include "musicapp/library_identity.h"
#include "musicapp/media_library.h"
#include "musicapp/track_values.h"
#include "platform/clock.h"

namespace kestrel {

/// Why `now` is not the library that `planned` was; empty when it is.
Message differenceOf(const LibraryIdentity& planned, const LibraryIdentity& now);
/// Throws LibraryError when there is a difference: a plan is applied to what it was made from.
void requireSame(const LibraryIdentity& planned, const LibraryIdentity& now);

/// Stands for a list of entries where the list itself would be too much. Order counts.
std::uint64_t fingerprintOf(std::span<const std::uint64_t> entries) noexcept;

/// An entry that gets another track.
struct Replacement {
  std::uint64_t position = 0;
  std::uint64_t oldTrack = 0;
  std::uint64_t newTrack = 0;
  std::string reason;  ///< of the keeper's pick, a sentence without full stop; may be empty
  friend bool operator==(const Replacement&, const Replacement&) = default;
};

/// A track that the new list names more than once where the old one did not.
struct CreatedRepeat {
  std::uint64_t track = 0;
  std::vector<std::uint64_t> positions;
  friend bool operator==(const CreatedRepeat&, const CreatedRepeat&) = default;
};

struct PlannedPlaylist {
  std::uint64_t playlist = 0;
  std::string name;
  std::optional<std::uint64_t> folder;
  std::string folderName;        ///< empty at top level, and when the folder is not in the library
  bool shown = true;             ///< whether the window's outline can show it
  std::uint64_t entryCount = 0;  ///< of the playlist as it is
  std::uint64_t entries = 0;     ///< their fingerprint
  std::vector<Replacement> replacements;     ///< by position
  std::vector<CreatedRepeat> repeats;        ///< by the replacements
  std::vector<std::uint64_t> deleteIndexes;  ///< positions, ascending
  std::vector<std::uint64_t> additions;      ///< tracks that are added at the end
  friend bool operator==(const PlannedPlaylist&, const PlannedPlaylist&) = default;
};

/// A file of the trash plan, to be moved or held back; or one to be added to the library, of which
/// only the path is known before.
struct PlannedFile {
  std::string path;
  std::uint64_t track = 0;
  std::string name;  ///< of the track
  std::int64_t group = 0;
  std::uint64_t size = 0;    ///< bytes
  std::uint64_t device = 0;  ///< the file's identity when planned, so that nothing else that has
  std::uint64_t inode = 0;   ///< taken its place is moved
  std::string keeperPath;    ///< of the file that stays in its place; empty for a cloud track
  Message heldBack;          ///< why it stays; empty: it goes
  std::optional<std::uint64_t> keeper{};     ///< the track that is kept; nothing in earlier plans
  std::vector<std::uint64_t> otherTracks{};  ///< not kept either, with the same path
  friend bool operator==(const PlannedFile&, const PlannedFile&) = default;
};

/// A track that is to leave the library, or stays.
struct PlannedTrack {
  std::uint64_t track = 0;
  std::string name;
  std::int64_t group = 0;
  std::optional<std::uint64_t> keeper;  ///< the track that is kept in its place
  Message heldBack;                     ///< why it stays; empty: it goes
  friend bool operator==(const PlannedTrack&, const PlannedTrack&) = default;
};

/// A track that is kept, and what it may be given of copies that leave (track_values.h).
struct PlannedCarry {
  struct Copy {
    std::uint64_t track = 0;
    TrackValues values;  ///< as it had them when planned
    friend bool operator==(const Copy&, const Copy&) = default;
  };
  std::uint64_t keeper = 0;
  std::string name;
  std::int64_t group = 0;
  TrackValues before;        ///< what it had itself
  std::vector<Copy> copies;  ///< in the order of the plan
  friend bool operator==(const PlannedCarry&, const PlannedCarry&) = default;
};

/// A file that was listened to, as it was then (heard_files.h).
struct HeardFile {
  std::uint64_t track = 0;
  std::string path;
  std::uint64_t size = 0;     ///< bytes
  std::int64_t modified = 0;  ///< nanoseconds since 1970
  friend bool operator==(const HeardFile&, const HeardFile&) = default;
};

/// Something that a user may have expected to take part and that does not.
struct LeftOut {
  enum class What : std::uint8_t {
    group,
    playlist,
    folder,
    automatic,  ///< a playlist that the application fills
  };
  What what = What::group;
  std::string id;    ///< `tGroupID`, or hexadecimal persistent ID
  std::string name;  ///< of a playlist or folder
  Message reason;    ///< a clause: "a file of the group is missing"
  friend bool operator==(const LeftOut&, const LeftOut&) = default;
};

struct Plan {
  RunKind kind = RunKind::replaylist;
  LibraryIdentity library;
  Moment made;
  std::vector<PlannedPlaylist> playlists;  ///< in library order
  std::vector<PlannedTrack> tracks;        ///< of a removal
  std::vector<PlannedFile> files;          ///< of a removal and of a plan about files
  std::vector<HeardFile> heard;            ///< where only what sounds the same goes
  std::vector<LeftOut> leftOut;
  TrackValueSet carries;              ///< which values kept tracks are given
  std::vector<PlannedCarry> carried;  ///< carrying.h
  friend bool operator==(const Plan&, const Plan&) = default;
};

/// Why a keeper was picked, by the track that it replaces.
using KeeperReasons = std::unordered_map<std::uint64_t, std::string>;

/// A playlist that the user chose, with the tracks that are to be replaced in it.
struct ReplaylistChoice {
  std::uint64_t playlist = 0;
  bool shown = true;
  std::unordered_map<std::uint64_t, std::uint64_t> keepers;  ///< by the track that each replaces
};

/// The chosen playlists among `library`'s, as plans. What is chosen and is no ordinary playlist (a
/// folder in place of what it holds), or has another one's ID, is not changed; it comes under
/// `leftOut`, and so does what has another one's name where changing it would delete the other
/// (`editsInPlace`: see Capabilities). Where a playlist lists a track once, what its keeper would
/// repeat is deleted (`keepsRepeats`, there too). `reasons` says by non-keeper why its keeper was
/// picked. The plan's other members are the caller's.
Plan planReplaylist(std::span<const Playlist> library, std::span<const ReplaylistChoice> choices,
                    const KeeperReasons& reasons, bool editsInPlace = true,
                    bool keepsRepeats = true);

struct CleanUpChoice {
  std::uint64_t playlist = 0;
  bool shown = true;
  std::vector<std::uint64_t> deleteIndexes;  ///< positions, ascending
  std::uint64_t entries = 0;                 ///< fingerprint of the entries that these are of
};
/// A playlist that has other entries by now comes under `leftOut`.
Plan planCleanUp(std::span<const Playlist> library, std::span<const CleanUpChoice> choices);

/// Whether a playlist's entries are the user's to choose.
bool isUserPlaylist(const Playlist& playlist) noexcept;

/// Adds library tracks at the end of a playlist, in this order, repeats included unless it lists a
/// track once.
Plan planAddToPlaylist(std::span<const Playlist> library, std::uint64_t playlist,
                       std::vector<std::uint64_t> tracks, bool keepsRepeats = true);
/// Adds media files to the library, each once. Relative paths count from the current folder.
Plan planAddToLibrary(std::span<const std::string> paths);

/// The entries of a playlist after its plan. `entries` must be those that it was made from.
std::vector<std::uint64_t> newEntries(const PlannedPlaylist& planned,
                                      std::span<const std::uint64_t> entries);

/// Deletes what would come to list a track again, instead of replacing it. `entries` as above.
void dropRepeats(PlannedPlaylist& planned, std::span<const std::uint64_t> entries);

/// The IDs, of playlists or tracks, that are there more than once, ascending and each once. What
/// has one cannot be told from another in a command.
std::vector<std::uint64_t> repeatedIDs(std::vector<std::uint64_t> ids);
std::vector<std::uint64_t> repeatedIDs(std::span<const Playlist> playlists);

}  // namespace kestrel
