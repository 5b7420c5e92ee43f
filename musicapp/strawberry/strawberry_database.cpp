#include "musicapp/strawberry/strawberry_database.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <unordered_map>
#include <utility>

#include "foundation/library_error.h"
#include "foundation/utf8.h"
#include "musicapp/file_url.h"
#include "musicapp/library_files.h"
#include "musicapp/strawberry/strawberry_rows.h"
#include "platform/files.h"

namespace kestrel {
namespace {

using std::int64_t;
using std::string_view;

[[noreturn]] void throwStrawberryError(const SqliteError& error) {
  const auto failure = [&](Message problem, Message remedy) {
    return LibraryError(error.file, {}, std::move(problem), std::move(remedy));
  };
  switch (error.kind) {
    case SqliteError::Kind::inUse:
      throw failure(Message::tr("is in use by another program"),
                    Message::tr("Close Strawberry first, then try again."));
    case SqliteError::Kind::damaged:
      throw failure(Message::tr("cannot be read: %1").arg(error.what()),
                    Message::tr("It is damaged, or no database: put a backup in its place."));
    case SqliteError::Kind::noRoom:
      throw failure(Message::tr("cannot be written: there is no room"),
                    Message::tr("Free some space and try again."));
    case SqliteError::Kind::readOnly:
      throw failure(Message::tr("is read-only"),
                    Message::tr("Allow writing to it, then try again."));
    case SqliteError::Kind::other:
      break;
  }
  throw failure(Message::tr("cannot be used: %1").arg(error.what()),
                Message::tr("Check the permissions of the file and its folder."));
}

// As Strawberry numbers them. What an MP4 file holds it does not say.
constexpr string_view kinds[] = {"",     "WAV",   "FLAC", "WavPack", "FLAC", "Ogg Vorbis",
                                 "Opus", "Speex", "MPEG", "AAC",     "WMA",  "AIFF",
                                 "MPC",  "TTA",   "DSF",  "DFF",     "PCM",  "APE"};

/// A song on its way out of a row.
struct Reading {
  MediaItem& item;
  TextPool& pool;
  const SqliteStatement& row;
  int column;
  [[nodiscard]] int64_t number() const { return std::max<int64_t>(row.integer(column), 0); }
};

template <auto member>
void takeText(const Reading& from) {
  if (const string_view text = from.row.view(from.column); !text.empty())
    from.item.*member = from.pool.share(text);
}
/// Unset numbers are -1.
template <auto member>
void takeNumber(const Reading& from) {
  from.item.*member = from.number();
}
template <auto member>
void takeDate(const Reading& from) {
  if (const int64_t seconds = from.number()) from.item.*member = OptionalDate{seconds};
}

void takeLocation(const Reading& from) {
  static thread_local std::string path;
  const string_view url = from.row.view(from.column);
  if (pathOfFileUrl(url, path)) {
    const std::size_t slash = path.rfind('/');
    from.item.locationFolder = from.pool.share(string_view(path).substr(0, slash));
    from.item.locationName = from.pool.add(string_view(path).substr(slash + 1));
    from.item.locationType = LocationType::file;
  } else if (!url.empty()) {
    from.item.locationName = from.pool.add(url);
    from.item.locationType = LocationType::url;
  }
}

struct Column {
  const char* name;
  void (*take)(const Reading& from);
};
const Column songColumns[] = {
    {"title", takeText<&MediaItem::title>},
    {"artist", takeText<&MediaItem::artist>},
    {"albumartist", takeText<&MediaItem::albumArtist>},
    {"album", takeText<&MediaItem::album>},
    {"composer", takeText<&MediaItem::composer>},
    {"genre", takeText<&MediaItem::genre>},
    {"grouping", takeText<&MediaItem::grouping>},
    {"comment", takeText<&MediaItem::comments>},
    {"year", takeNumber<&MediaItem::year>},
    {"track", takeNumber<&MediaItem::trackNumber>},
    {"disc", takeNumber<&MediaItem::discNumber>},
    {"bitrate", takeNumber<&MediaItem::bitrate>},
    {"samplerate", takeNumber<&MediaItem::sampleRate>},
    {"bitdepth", takeNumber<&MediaItem::sampleDepth>},
    {"playcount", takeNumber<&MediaItem::playCount>},
    {"skipcount", takeNumber<&MediaItem::skipCount>},
    {"filesize", takeNumber<&MediaItem::fileSize>},
    {"lastplayed", takeDate<&MediaItem::lastPlayed>},
    {"mtime", takeDate<&MediaItem::modified>},
    {"url", takeLocation},
    {"length", [](const Reading& from) { from.item.totalTime = from.number() / 1'000'000; }},
    {"rating",
     [](const Reading& from) {
       from.item.rating = std::lround(std::max(from.row.real(from.column), 0.0) * 100);
     }},
    {"compilation_effective",
     [](const Reading& from) { from.item.isCompilation = from.number() != 0; }},
    {"filetype",
     [](const Reading& from) {
       if (const auto kind = static_cast<std::size_t>(from.number());
           kind < std::size(kinds) && kind)
         from.item.kind = from.pool.share(std::string(kinds[kind]) + " audio file");
     }},
};

std::set<std::string> columnsOf(const SqliteDatabase& database, const std::string& table) {
  std::set<std::string> names;
  SqliteStatement column = database.prepare("PRAGMA table_info(" + table + ")");
  while (column.next()) names.insert(column.text(1));
  return names;
}

/// The column, or what stands for it where there is none.
std::string orElse(const std::set<std::string>& columns, const char* name, const char* instead) {
  return columns.contains(name) ? name : instead;
}

void checkIsStrawberrys(const SqliteDatabase& database) {
  const auto songs = columnsOf(database, "songs"), entries = columnsOf(database, "playlist_items");
  if (songs.contains("url") && songs.contains("title") && entries.contains("collection_id") &&
      entries.contains("type") && columnsOf(database, "playlists").contains("name"))
    return;
  throw LibraryError(database.path(), {}, Message::tr("is no database of Strawberry's"),
                     Message::tr("Give the path of its strawberry.db."));
}

/// Of what the database does not have - totals of tracks and discs, beats per minute, the codec of
/// an MP4 file - nothing is known here: that is filled in from the files afterwards.
void readSongs(const SqliteDatabase& database, StrawberryContents& contents) {
  const auto columns = columnsOf(database, "songs");
  std::string sql = "SELECT rowid, " + orElse(columns, "unavailable", "0") + ", " +
                    orElse(columns, "mtime", "1") + ", " + orElse(columns, "source", "2");
  const int first = 4;
  std::vector<const Column*> taken;
  for (const Column& column : songColumns) {
    if (!columns.contains(column.name)) continue;
    sql.append(", ").append(column.name);
    taken.push_back(&column);
  }
  contents.songs = std::make_shared<MediaItems>();
  TextPool& pool = contents.songs->newPool();
  std::vector<MediaItem> block;
  SqliteStatement row = database.prepare(sql + " FROM songs ORDER BY rowid");
  while (row.next()) {
    MediaItem& item = block.emplace_back();
    item.persistentID = row.id(0);
    if (const SongFile file{row.integer(1), row.integer(2)}; file.isRemoved())
      contents.lists.files.emplace(item.persistentID, file);
    for (std::size_t i = 0; i < taken.size(); ++i)
      taken[i]->take({item, pool, row, first + static_cast<int>(i)});
    if (row.integer(3) != 2 && item.locationType == LocationType::url)
      item.locationType = LocationType::remote;
    if (block.size() == MediaItems::itemsPerBlock) contents.songs->append(std::exchange(block, {}));
  }
  contents.songs->append(std::move(block));
}

std::vector<StrawberryPlaylist> readPlaylists(const SqliteDatabase& database) {
  const auto columns = columnsOf(database, "playlists");
  std::vector<StrawberryPlaylist> playlists;
  std::unordered_map<int64_t, std::size_t> places;
  SqliteStatement row = database.prepare("SELECT rowid, name, " + orElse(columns, "ui_path", "''") +
                                         ", " + orElse(columns, "dynamic_playlist_type", "0") +
                                         " FROM playlists ORDER BY rowid");
  while (row.next()) {
    places.emplace(row.integer(0), playlists.size());
    playlists.push_back({row.id(0), row.text(1), row.text(2), row.integer(3) > 0, {}});
  }
  // An entry of a file that is in the collection by now still goes by its place. Parts of one file
  // share theirs, so that it says nothing.
  SqliteStatement entry = database.prepare(
      "SELECT rowid, playlist, CASE WHEN type = 2 "
      "THEN (SELECT rowid FROM songs WHERE rowid = collection_id) "
      "ELSE (SELECT max(rowid) FROM songs WHERE url = playlist_items.url HAVING count(*) = 1) END "
      "FROM playlist_items ORDER BY rowid");
  while (entry.next())
    if (const auto place = places.find(entry.integer(1)); place != places.end())
      playlists[place->second].entries.push_back({entry.integer(0), entry.id(2)});
  return playlists;
}

StrawberryContents readAll(const std::string& path, const FileService& files,
                           SqliteOptions::Access access) {
  SqliteDatabase database(path, {.access = access});
  // All of one moment: while it is read, none can write.
  database.execute("BEGIN");
  checkIsStrawberrys(database);
  StrawberryContents contents;
  contents.status = strawberryStatus(path, files).value_or(StrawberryStatus{});
  readSongs(database, contents);
  contents.lists.playlists = readPlaylists(database);
  return contents;
}

}  // namespace

std::optional<StrawberryStatus> strawberryStatus(const std::string& path,
                                                 const FileService& files) {
  const auto file = files.status(path);
  if (!file) return std::nullopt;
  auto log = files.status(path + "-wal");
  if (log && log->size == 0) log.reset();
  return StrawberryStatus{*file, log};
}

StrawberryContents readStrawberry(const std::string& path, const FileService& files) {
  try {
    try {
      return readAll(path, files, SqliteOptions::Access::read);
    } catch (const SqliteError& error) {
      if (error.kind != SqliteError::Kind::readOnly) throw;
    }
    // A program was ended while it wrote: what it had begun is taken back first.
    return readAll(path, files, SqliteOptions::Access::write);
  } catch (const SqliteError& error) {
    throwStrawberryError(error);
  }
}

StrawberryChange::StrawberryChange(const std::string& path, const StrawberryLists& expected)
    : database_(path, {.access = SqliteOptions::Access::write, .onError = throwStrawberryError}),
      transaction_(database_),
      expected_(expected) {
  if (readPlaylists(database_) != expected.playlists) throwChangedMeanwhile(path);
  lastRow_ = database_.number("SELECT max(rowid) FROM playlist_items");
}

void StrawberryChange::backUp(const std::string& copy) const {
  SqliteDatabase(database_.path(), {.onError = throwStrawberryError}).copyTo(copy);
}

std::string StrawberryChange::write(StrawberryLists& lists, const FormerEntries& former) {
  std::unordered_map<std::uint64_t, const StrawberryPlaylist*> old;
  for (const StrawberryPlaylist& was : expected_.playlists) old.emplace(was.id, &was);
  const auto columns = columnsOf(database_, "playlists");
  for (StrawberryPlaylist& now : lists.playlists) {
    StrawberryPlaylist made{now.id, now.name, {}, false, {}};
    const auto found = old.find(now.id);
    const StrawberryPlaylist& was = found == old.end() ? made : *found->second;
    if (found == old.end()) {
      database_.prepare("INSERT INTO playlists(rowid, name) VALUES(?, ?)").run(now.id, now.name);
      // It has a tab, and stays when that is closed.
      if (columns.contains("ui_order") && columns.contains("is_favorite"))
        database_
            .prepare(
                "UPDATE playlists SET is_favorite = 1, "
                "ui_order = (SELECT max(ui_order) FROM playlists) + 1 WHERE rowid = ?")
            .run(now.id);
    }
    if (now.folder != was.folder)
      database_.prepare("UPDATE playlists SET ui_path = ? WHERE rowid = ?").run(now.folder, now.id);
    if (now.entries != was.entries) writeEntries(was, now, former);
    if (found != old.end()) old.erase(found);
  }
  for (const auto& [id, gone] : old) {
    StrawberryPlaylist none{id, {}, {}, false, {}};
    writeEntries(*gone, none, former);
    database_.prepare("DELETE FROM playlists WHERE rowid = ?").run(id);
  }
  for (const auto& [song, given] : lists.values) {
    const auto found = expected_.values.find(song);
    if (found == expected_.values.end() || !(found->second == given))
      writeValues(song, given.first, given.second);
  }
  std::ostringstream before;
  for (const auto& [song, file] : lists.files) {
    const auto found = expected_.files.find(song);
    if (found != expected_.files.end() && found->second == file) continue;
    SqliteStatement row = database_.prepare("SELECT unavailable, mtime FROM songs WHERE rowid = ?");
    row << song;
    if (!row.next()) throwChangedMeanwhile(database_.path());
    before << song << ' ' << row.integer(0) << ' ' << row.integer(1) << '\n';
    database_.prepare("UPDATE songs SET unavailable = ?, mtime = ? WHERE rowid = ?")
        .run(file.unavailable, file.modified, song);
  }
  return before.str() + encoded(left_);
}

namespace {

/// The columns of values; a version may lack some.
constexpr std::pair<const char*, TrackValue> valueColumns[] = {{"playcount", TrackValue::plays},
                                                               {"lastplayed", TrackValue::plays},
                                                               {"rating", TrackValue::rating},
                                                               {"comment", TrackValue::comments}};

/// A cell as Strawberry writes it; unset numbers are -1.
nlohmann::json cellOf(string_view column, const TrackValues& values) {
  if (column == "playcount") return values.plays;
  if (column == "lastplayed") return values.lastPlayed ? values.lastPlayed.seconds : int64_t{-1};
  if (column == "comment") return values.comments;
  if (values.rating == 0) return -1;
  return static_cast<double>(values.rating) / 100;
}

}  // namespace

void StrawberryChange::writeValues(std::uint64_t song, TrackValueSet which,
                                   const TrackValues& values) {
  const auto columns = columnsOf(database_, "songs");
  const auto stored = nlohmann::json::parse(values.stored, nullptr, false);
  for (const auto& [column, value] : valueColumns) {
    if (!which.has(value) || !columns.contains(column)) continue;
    const nlohmann::json cell =
        stored.is_object() && stored.contains(column) ? stored.at(column) : cellOf(column, values);
    SqliteStatement set =
        database_.prepare("UPDATE songs SET " + std::string(column) + " = ? WHERE rowid = ?");
    bindStrawberryCell(set, cell);
    set.run(song);
  }
}

std::vector<std::string> storedValues(const std::string& path,
                                      std::span<const std::uint64_t> songs) {
  const SqliteDatabase database(path, {.onError = throwStrawberryError});
  const auto columns = columnsOf(database, "songs");
  std::string sql;
  std::vector<const char*> taken;
  for (const auto& [column, value] : valueColumns) {
    if (!columns.contains(column)) continue;
    const std::string name = column;
    sql += (sql.empty() ? "SELECT " : ", ") + ("typeof(" + name + "), " + name);
    taken.push_back(column);
  }
  std::vector<std::string> found;
  for (const std::uint64_t song : songs) {
    std::string& text = found.emplace_back();
    SqliteStatement row = database.prepare(sql + " FROM songs WHERE rowid = ?");
    row << song;
    if (taken.empty() || !row.next()) continue;
    nlohmann::json cells = nlohmann::json::object();
    for (std::size_t i = 0; i < taken.size(); ++i) {
      cells[taken[i]] = strawberryCell(row, static_cast<int>(2 * i));
    }
    text = cells.dump();
  }
  return found;
}

std::map<std::uint64_t, SongFile> decodedFiles(string_view text) {
  std::map<std::uint64_t, SongFile> files;
  std::istringstream in{std::string(text)};
  std::uint64_t song = 0;
  for (SongFile file; in >> song >> file.unavailable >> file.modified;) files.emplace(song, file);
  return files;
}

}  // namespace kestrel
