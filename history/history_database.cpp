#include "history/history_database.h"

#include <array>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>

#include "history/history.h"
#include "musicapp/file_url.h"
#include "platform/descriptor.h"

namespace kestrel {
namespace {

// Written into the file's header, so that other programs can tell what it is: "Kest".
constexpr int applicationID = 0x4B657374;

constexpr const char* schema = R"(
CREATE TABLE run (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  kind TEXT NOT NULL,
  state TEXT NOT NULL,
  process TEXT NOT NULL,
  started INTEGER NOT NULL,       -- nanoseconds since 1970
  ended INTEGER,
  library_path TEXT NOT NULL,
  library_id TEXT NOT NULL,
  undoes INTEGER REFERENCES run(id)
) STRICT;
CREATE TABLE playlist_change (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  run INTEGER NOT NULL REFERENCES run(id) ON DELETE CASCADE,
  state TEXT NOT NULL,
  lost INTEGER NOT NULL,
  old_playlist INTEGER NOT NULL,  -- the 64 bits of a persistent ID, signed
  new_playlist INTEGER,
  name TEXT NOT NULL,
  folder INTEGER,
  folder_name TEXT NOT NULL,
  old_entries BLOB NOT NULL,
  new_entries BLOB NOT NULL,      -- perhaps as the difference to the old ones
  note TEXT NOT NULL,
  undone_by INTEGER REFERENCES run(id)
) STRICT;
CREATE INDEX playlist_change_run ON playlist_change(run);
CREATE TABLE file_change (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  run INTEGER NOT NULL REFERENCES run(id) ON DELETE CASCADE,
  state TEXT NOT NULL,
  track INTEGER NOT NULL,
  size INTEGER NOT NULL,
  original BLOB NOT NULL,         -- paths are bytes
  trashed BLOB NOT NULL,
  info BLOB NOT NULL,
  note TEXT NOT NULL,
  undone_by INTEGER REFERENCES run(id)
) STRICT;
CREATE INDEX file_change_run ON file_change(run);
)";

// What became of the schema since version 1, a step for each version.
constexpr std::array steps{
    "ALTER TABLE file_change ADD COLUMN fingerprint INTEGER NOT NULL DEFAULT 0;",
    "ALTER TABLE file_change ADD COLUMN modified INTEGER;"  // with the next: by which it is known
    "ALTER TABLE file_change ADD COLUMN content INTEGER;"
    "ALTER TABLE run RENAME COLUMN library_path TO library_uri;"
    "ALTER TABLE run ADD COLUMN reversal BLOB NOT NULL DEFAULT x'';"
    "CREATE TABLE track_change ("
    "id INTEGER PRIMARY KEY AUTOINCREMENT, "
    "run INTEGER NOT NULL REFERENCES run(id) ON DELETE CASCADE, "
    "state TEXT NOT NULL, "
    "track INTEGER NOT NULL, "
    "name TEXT NOT NULL, "
    "undone_by INTEGER REFERENCES run(id)) STRICT;"
    "CREATE INDEX track_change_run ON track_change(run);",
    "CREATE TABLE value_change ("
    "id INTEGER PRIMARY KEY AUTOINCREMENT, "
    "run INTEGER NOT NULL REFERENCES run(id) ON DELETE CASCADE, "
    "state TEXT NOT NULL, "
    "track INTEGER NOT NULL, "
    "name TEXT NOT NULL, "
    "leaves INTEGER NOT NULL, "
    "sorts TEXT NOT NULL, "  // which values, by their words
    "old_values TEXT NOT NULL, "
    "new_values TEXT NOT NULL, "
    "undone_by INTEGER REFERENCES run(id)) STRICT;"
    "CREATE INDEX value_change_run ON value_change(run);",
    // Entries of unknown tracks among the old ones, as lists of IDs are written.
    "ALTER TABLE playlist_change ADD COLUMN unknown_at BLOB NOT NULL DEFAULT x'';",
};
constexpr std::int64_t schemaVersion = 1 + std::int64_t{steps.size()};

[[noreturn]] void throwHistoryError(const SqliteError& error) {
  switch (error.kind) {
    case SqliteError::Kind::damaged:
      throw HistoryError(error.file,
                         Message::tr("the history cannot be read: %1").arg(error.what()), true);
    case SqliteError::Kind::inUse:
      throw HistoryError(error.file,
                         Message::tr("the history is in use by another Kestrel. Try again"), false);
    case SqliteError::Kind::noRoom:
      throw HistoryError(
          error.file,
          Message::tr("the history cannot be written: there is no room. Free some space"), false);
    case SqliteError::Kind::readOnly:
    case SqliteError::Kind::other:
      break;
  }
  throw HistoryError(error.file,
                     Message::tr("the history cannot be used: %1. Check that its folder exists "
                                 "and can be written to")
                         .arg(error.what()),
                     false);
}

/// Makes the file, or what there is of it, the user's alone; the write-ahead log takes that over.
/// What fails shows when the file is opened. Returns the path.
const std::string& closedToOthers(const std::string& path) {
  // Never opened otherwise: closing would end the locks of this program's other connections.
  const Descriptor made(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  for (const char* part : {"", "-wal", "-shm"}) {
    struct stat info {};
    const std::string file = path + part;
    if (::stat(file.c_str(), &info) == 0 && (info.st_mode & 077U) != 0)
      ::chmod(file.c_str(), info.st_mode & 0700U);
  }
  return path;
}

}  // namespace

HistoryDatabase::HistoryDatabase(const std::string& path)
    : SqliteDatabase(closedToOthers(path),
                     {.access = SqliteOptions::Access::create, .onError = throwHistoryError}) {
  std::int64_t version = number("PRAGMA user_version");
  const std::int64_t owner = number("PRAGMA application_id");
  const bool isEmpty = number("SELECT count(*) FROM sqlite_schema") == 0;
  if (!isEmpty && owner != applicationID)
    throw HistoryError(
        path, Message::tr("the history cannot be read: it is another program's file"), true);
  if (version > schemaVersion)
    throw HistoryError(
        path, Message::tr("the history was written by a newer Kestrel. Use that one"), false);
  execute("PRAGMA journal_mode = WAL");
  execute("PRAGMA synchronous = FULL");
  execute("PRAGMA foreign_keys = ON");
  if (version == schemaVersion) return;
  SqliteTransaction transaction(*this);
  // Another program may have been quicker.
  version = number("PRAGMA user_version");
  if (version >= schemaVersion) return;
  if (version == 0) {
    execute(schema);
    execute("PRAGMA application_id = " + std::to_string(applicationID));
    version = 1;
  }
  for (; version < schemaVersion; ++version) execute(steps[static_cast<std::size_t>(version - 1)]);
  nameLibrariesByUri();
  execute("PRAGMA user_version = " + std::to_string(schemaVersion));
  transaction.commit();
}

void HistoryDatabase::nameLibrariesByUri() {
  std::map<std::string, std::string> uris;
  SqliteStatement paths = prepare("SELECT DISTINCT library_uri FROM run");
  while (paths.next())
    if (const std::string path = paths.text(0); path.starts_with('/'))
      uris[path] = fileUrlOfPath(path);
  SqliteStatement name = prepare("UPDATE run SET library_uri = ? WHERE library_uri = ?");
  for (const auto& [path, uri] : uris) name.run(uri, path);
}

}  // namespace kestrel
