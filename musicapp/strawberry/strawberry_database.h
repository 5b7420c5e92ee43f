/// Strawberry's database: what it says of songs and playlists, and writing changes into it.
///
/// Columns are found by name: of those that a version lacks nothing is known, and those that
/// Kestrel does not know are left as they are. Songs and playlists go by their row numbers.
/// Everything throws LibraryError.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "musicapp/media_library.h"
#include "platform/descriptor.h"
#include "platform/sqlite_database.h"

namespace kestrel {

class FileService;

struct StrawberryEntry {
  std::int64_t row = 0;    ///< 0 until it is in the database
  std::uint64_t song = 0;  ///< 0 when it names nothing that is in the collection
  friend bool operator==(const StrawberryEntry&, const StrawberryEntry&) = default;
};

struct StrawberryPlaylist {
  std::uint64_t id = 0;
  std::string name;
  std::string folder;  ///< names of folders, separated by slashes
  bool isDynamic = false;
  std::vector<StrawberryEntry> entries;
  friend bool operator==(const StrawberryPlaylist&, const StrawberryPlaylist&) = default;
};

/// What the database says of a song's file.
struct SongFile {
  std::int64_t unavailable = 0;
  std::int64_t modified = 0;  ///< seconds since 1970
  /// Strawberry itself keeps the time of a file that has gone. A song that is to be out of the
  /// library has none: should the file be there again, Strawberry reads it and the song is back,
  /// with its number and all that it remembers of it.
  static constexpr SongFile removed() noexcept { return {1, 0}; }
  [[nodiscard]] bool isRemoved() const noexcept { return unavailable != 0 && modified <= 0; }
  friend bool operator==(const SongFile&, const SongFile&) = default;
};

/// What Kestrel changes.
struct StrawberryLists {
  std::vector<StrawberryPlaylist> playlists;
  std::map<std::uint64_t, SongFile> files;  ///< of songs that are removed, or brought back
  GivenValues values;                       ///< that songs were given, until they are written
  friend bool operator==(const StrawberryLists&, const StrawberryLists&) = default;
};

/// What the database says of an entry that goes by the place of its file: Strawberry has taken the
/// file in since.
struct FilePlace {
  std::int64_t type = 0;
  std::optional<std::int64_t> song;
  std::string url;
  std::uint64_t names = 0;  ///< the song that is at this place
  friend bool operator==(const FilePlace&, const FilePlace&) = default;
};

/// An entry that was taken out of its list.
struct RemovedEntry {
  std::int64_t row = 0;
  std::uint64_t playlist = 0, song = 0;
  std::string cells;  ///< all that the database says of it (strawberry_rows.h)
  friend bool operator==(const RemovedEntry&, const RemovedEntry&) = default;
};

/// What a change makes of entries that goes beyond their songs.
struct FormerEntries {
  std::map<std::int64_t, FilePlace> places;  ///< by row
  std::vector<RemovedEntry> removed;
};

/// As the disk has it: what is written lies beside the database first when that is set so.
struct StrawberryStatus {
  FileStatus file;
  std::optional<FileStatus> log;  ///< nothing too when there is nothing in it
  friend bool operator==(const StrawberryStatus&, const StrawberryStatus&) = default;
};
/// Nothing where there is no database.
std::optional<StrawberryStatus> strawberryStatus(const std::string& path, const FileService& files);

struct StrawberryContents {
  std::shared_ptr<MediaItems> songs;  ///< those too that are removed; not sealed yet
  StrawberryLists lists;
  StrawberryStatus status;  ///< as it was read
};

/// May be called while Strawberry runs.
StrawberryContents readStrawberry(const std::string& path, const FileService& files);

/// A transaction over the database, which is still what `expected` says of it. Until `commit`,
/// nothing has taken effect.
class StrawberryChange {
 public:
  StrawberryChange(const std::string& path, const StrawberryLists& expected);
  /// Copies the database as it was before.
  void backUp(const std::string& copy) const;
  /// Writes what differs, and fills in the rows of entries that are new. An entry that gets its
  /// song back, or comes back into its list, is what it was by `former`. Returns what
  /// `decodedFiles` and `decodedEntries` read: the files of the changed songs, and how entries
  /// were.
  std::string write(StrawberryLists& lists, const FormerEntries& former = {});
  void commit() { transaction_.commit(); }

 private:
  void writeEntries(const StrawberryPlaylist& was, StrawberryPlaylist& now,
                    const FormerEntries& former);
  /// Takes those out that are not among the entries any more.
  void removeEntries(const StrawberryPlaylist& was, const StrawberryPlaylist& now);
  void writeValues(std::uint64_t song, TrackValueSet which, const TrackValues& values);

  SqliteDatabase database_;
  SqliteTransaction transaction_;
  const StrawberryLists& expected_;
  std::int64_t lastRow_ = 0;
  FormerEntries left_;
};

/// What songs can be given; a database has no dates added.
inline constexpr TrackValueSet strawberryValues{TrackValue::plays, TrackValue::rating,
                                                TrackValue::comments};
/// The values of songs as they stand in the database, for TrackValues::stored; empty for a song
/// that is not there.
std::vector<std::string> storedValues(const std::string& path,
                                      std::span<const std::uint64_t> songs);

/// The files of songs as they were before a change; empty when the text says none.
std::map<std::uint64_t, SongFile> decodedFiles(std::string_view text);
/// How entries were likewise; `encoded` makes such a text.
FormerEntries decodedEntries(std::string_view text);
std::string encoded(const FormerEntries& entries);

}  // namespace kestrel
