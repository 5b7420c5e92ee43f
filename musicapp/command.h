/// What a music application can be asked for, as values; see MusicApplication. IDs are persistent
/// IDs, positions in playlists count from 1.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "foundation/message.h"
#include "musicapp/track_values.h"

namespace kestrel {
namespace command {

/// Adds a media file, or the playlists of a playlist document.
struct AddFile {
  std::string path;
  friend bool operator==(const AddFile&, const AddFile&) = default;
};
struct TrackCloudStatus {
  std::uint64_t track;
  friend bool operator==(const TrackCloudStatus&, const TrackCloudStatus&) = default;
};
struct TrackLocation {
  std::uint64_t track;
  friend bool operator==(const TrackLocation&, const TrackLocation&) = default;
};
struct RevealTrack {
  std::uint64_t track;
  std::optional<std::uint64_t> playlist;  ///< in this playlist, else in the library
  friend bool operator==(const RevealTrack&, const RevealTrack&) = default;
};
struct RevealPlaylist {
  std::uint64_t playlist;
  friend bool operator==(const RevealPlaylist&, const RevealPlaylist&) = default;
};
/// Every user playlist of that name but one; smart ones stay.
struct DeleteSameNamedPlaylists {
  std::string name;
  std::optional<std::uint64_t> except;
  bool caseSensitive;
  friend bool operator==(const DeleteSameNamedPlaylists&,
                         const DeleteSameNamedPlaylists&) = default;
};
struct DeletePlaylist {
  std::uint64_t playlist;
  friend bool operator==(const DeletePlaylist&, const DeletePlaylist&) = default;
};
/// Gives entries other tracks. The others, and those of tracks that the library does not have, stay
/// as they are.
struct ReplaceEntries {
  struct Entry {
    std::uint64_t position;
    std::uint64_t track;
    friend bool operator==(const Entry&, const Entry&) = default;
  };
  std::uint64_t playlist;
  std::vector<Entry> entries;  ///< by position, each once
  friend bool operator==(const ReplaceEntries&, const ReplaceEntries&) = default;
};
/// Makes these the entries of a playlist, changing as few as that takes; those of tracks that the
/// library does not have stay.
struct SetEntries {
  std::uint64_t playlist;
  std::vector<std::uint64_t> tracks;
  /// Where those are to be, as `Playlist::unknownAt` says it. Of another number than there are it
  /// says nothing, and they stay between their neighbours.
  std::vector<std::uint64_t> unknownAt = {};
  friend bool operator==(const SetEntries&, const SetEntries&) = default;
};
/// Positions are taken one after the other, so the highest comes first.
struct DeleteEntries {
  std::uint64_t playlist;
  std::vector<std::uint64_t> positions;
  friend bool operator==(const DeleteEntries&, const DeleteEntries&) = default;
};
struct DeleteAllEntries {
  std::uint64_t playlist;
  friend bool operator==(const DeleteAllEntries&, const DeleteAllEntries&) = default;
};
/// Appends library tracks to a playlist, in order, repeats included.
struct DuplicateTracks {
  std::vector<std::uint64_t> tracks;
  std::uint64_t playlist;
  friend bool operator==(const DuplicateTracks&, const DuplicateTracks&) = default;
};
/// From the library and so from every playlist. Files stay.
struct DeleteTracks {
  std::vector<std::uint64_t> tracks;
  friend bool operator==(const DeleteTracks&, const DeleteTracks&) = default;
};
/// Brings back the tracks that a batch deleted, as its reversal (MusicApplication's Batch) has
/// them, each at its place and in the playlists that deleting it took it out of. Those that the
/// library has again are left out.
struct RestoreTracks {
  std::string reversal;
  friend bool operator==(const RestoreTracks&, const RestoreTracks&) = default;
};
/// Gives tracks values of these sorts; what they had of them is gone, and the others stay. With
/// what an application has `stored` it gives them back as they stood there.
struct SetValues {
  struct Track {
    std::uint64_t track;
    TrackValues values;
    friend bool operator==(const Track&, const Track&) = default;
  };
  TrackValueSet which;
  std::vector<Track> tracks;
  friend bool operator==(const SetValues&, const SetValues&) = default;
};
struct MovePlaylist {
  std::uint64_t playlist;
  std::uint64_t folder;
  friend bool operator==(const MovePlaylist&, const MovePlaylist&) = default;
};
/// An empty user playlist at top level.
struct CreatePlaylist {
  std::string name;
  friend bool operator==(const CreatePlaylist&, const CreatePlaylist&) = default;
};

}  // namespace command

using Command =
    std::variant<command::AddFile, command::TrackCloudStatus, command::TrackLocation,
                 command::RevealTrack, command::RevealPlaylist, command::DeleteSameNamedPlaylists,
                 command::DeletePlaylist, command::ReplaceEntries, command::SetEntries,
                 command::DeleteEntries, command::DeleteAllEntries, command::DuplicateTracks,
                 command::DeleteTracks, command::RestoreTracks, command::SetValues,
                 command::MovePlaylist, command::CreatePlaylist>;

/// Whether a command changes the library, rather than to ask something or to show it.
[[nodiscard]] inline bool changesLibrary(const Command& command) noexcept {
  return !std::holds_alternative<command::TrackCloudStatus>(command) &&
         !std::holds_alternative<command::TrackLocation>(command) &&
         !std::holds_alternative<command::RevealTrack>(command) &&
         !std::holds_alternative<command::RevealPlaylist>(command);
}

struct CommandFailure {
  Message message;  ///< for people: what failed and, where it helps, what to do
  int number = 0;   ///< the application's, 0 when it gives none

  // The numbers that music applications give for the same.
  static constexpr int fileNotFound = -43;
  static constexpr int wrongFile = -1731;  ///< of a sort that cannot be added
  static constexpr int noSuchPosition = -1719;
  static constexpr int noSuchObject = -1728;
  static constexpr int notAllowed = -10004;
  static constexpr int failed = -10000;

  /// Message and number.
  [[nodiscard]] Message whole() const {
    return number == 0 ? message : Message::tr("%1 (%2)").arg(message).arg(std::to_string(number));
  }
};

/// What came of a command.
struct CommandResult {
  std::optional<std::string> text;        ///< what was asked for, if there is an answer
  std::optional<std::uint64_t> playlist;  ///< that was made, or stands in the changed one's place
  std::optional<CommandFailure> failure;  ///< nothing was changed

  [[nodiscard]] bool failed() const noexcept { return failure.has_value(); }
  static CommandResult failing(Message message, int number) {
    return {{}, {}, CommandFailure{std::move(message), number}};
  }
};

}  // namespace kestrel
