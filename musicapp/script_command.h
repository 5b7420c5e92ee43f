/// The commands that scripts are made of, as values: what script_language reads and what an
/// implementation of a music application carries out. IDs are persistent IDs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kestrel::script {

/// Adds a media file, or the playlists of a playlist document.
struct AddFile {
  std::string path;
};
struct TrackCloudStatus {
  std::uint64_t track;
};
struct TrackLocation {
  std::uint64_t track;
};
struct RevealTrack {
  std::uint64_t track;
  std::optional<std::uint64_t> playlist;  ///< in this playlist, else in the library
};
struct RevealPlaylist {
  std::uint64_t playlist;
};
/// Every user playlist of that name but one; smart ones stay.
struct DeleteSameNamedPlaylists {
  std::string name;
  std::optional<std::uint64_t> except;  ///< nothing: what the script names has no playlist's ID
  bool caseSensitive;
};
struct DeletePlaylist {
  std::uint64_t playlist;
};
/// Positions count from 1 and are taken one after the other, so the highest comes first.
struct DeleteEntries {
  std::uint64_t playlist;
  std::vector<std::uint64_t> positions;
};
struct DeleteAllEntries {
  std::uint64_t playlist;
};
/// Appends library tracks to a playlist, in order, repeats included.
struct DuplicateTracks {
  std::vector<std::uint64_t> tracks;
  std::uint64_t playlist;
};
/// From the library and so from every playlist. Files stay.
struct DeleteTracks {
  std::vector<std::uint64_t> tracks;
};
struct MovePlaylist {
  std::uint64_t playlist;
  std::uint64_t folder;
};
/// An empty user playlist at top level; the result is its persistent ID in hexadecimal.
struct CreatePlaylist {
  std::string name;
};
/// Any command on a track or playlist that is named by a text which is no persistent ID: looking it
/// up fails.
struct NoSuchObject {
  std::string id;  ///< the text's start
};

using Command =
    std::variant<AddFile, TrackCloudStatus, TrackLocation, RevealTrack, RevealPlaylist,
                 DeleteSameNamedPlaylists, DeletePlaylist, DeleteEntries, DeleteAllEntries,
                 DuplicateTracks, DeleteTracks, MovePlaylist, CreatePlaylist, NoSuchObject>;

struct Statement {
  Command command;
  bool errorsIgnored = false;  ///< it stands in a `try` block, which ends at its first error
};

}  // namespace kestrel::script
