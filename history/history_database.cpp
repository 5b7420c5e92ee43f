#include "history/history_database.h"

#include <array>
#include <fcntl.h>
#include <map>
#include <sqlite3.h>
#include <sys/stat.h>

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
};
constexpr std::int64_t schemaVersion = 1 + std::int64_t{steps.size()};

[[noreturn]] void fail(const std::string& file, int code, const char* message) {
  switch (code & 0xFF) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      throw HistoryError(file, Message::tr("the history cannot be read: %1").arg(message), true);
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      throw HistoryError(file, Message::tr("the history is in use by another Kestrel. Try again"),
                         false);
    case SQLITE_FULL:
      throw HistoryError(
          file, Message::tr("the history cannot be written: there is no room. Free some space"),
          false);
    default:
      throw HistoryError(file,
                         Message::tr("the history cannot be used: %1. Check that its folder exists "
                                     "and can be written to")
                             .arg(message),
                         false);
  }
}

/// Makes the file, or what there is of it, the user's alone; the write-ahead log takes that over.
/// What fails shows when the file is opened.
void closeToOthers(const std::string& path) {
  // Never opened otherwise: closing would end the locks of this program's other connections.
  const Descriptor made(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  for (const char* part : {"", "-wal", "-shm"}) {
    struct stat info {};
    const std::string file = path + part;
    if (::stat(file.c_str(), &info) == 0 && (info.st_mode & 077U) != 0)
      ::chmod(file.c_str(), info.st_mode & 0700U);
  }
}

}  // namespace

HistoryDatabase::HistoryDatabase(const std::string& path) : path_(path) {
  closeToOthers(path);
  const int code = sqlite3_open_v2(path.c_str(), &database_,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  try {
    if (code != SQLITE_OK) fail(path_, code, database_ ? sqlite3_errmsg(database_) : "no memory");
    configure();
  } catch (...) {
    sqlite3_close_v2(database_);
    throw;
  }
}

HistoryDatabase::~HistoryDatabase() { sqlite3_close_v2(database_); }

void HistoryDatabase::configure() {
  sqlite3_extended_result_codes(database_, 1);
  sqlite3_busy_timeout(database_, 5000);
  const auto pragma = [&](const char* sql) {
    HistoryStatement statement = prepare(sql);
    return statement.next() ? statement.integer(0) : 0;
  };
  std::int64_t version = pragma("PRAGMA user_version");
  const std::int64_t owner = pragma("PRAGMA application_id");
  const bool isEmpty = pragma("SELECT count(*) FROM sqlite_schema") == 0;
  if (!isEmpty && owner != applicationID)
    throw HistoryError(
        path_, Message::tr("the history cannot be read: it is another program's file"), true);
  if (version > schemaVersion)
    throw HistoryError(
        path_, Message::tr("the history was written by a newer Kestrel. Use that one"), false);
  execute("PRAGMA journal_mode = WAL");
  execute("PRAGMA synchronous = FULL");
  execute("PRAGMA foreign_keys = ON");
  if (version == schemaVersion) return;
  HistoryTransaction transaction(*this);
  // Another program may have been quicker.
  version = pragma("PRAGMA user_version");
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
  HistoryStatement paths = prepare("SELECT DISTINCT library_uri FROM run");
  while (paths.next())
    if (const std::string path = paths.text(0); path.starts_with('/'))
      uris[path] = fileUrlOfPath(path);
  HistoryStatement name = prepare("UPDATE run SET library_uri = ? WHERE library_uri = ?");
  for (const auto& [path, uri] : uris) name.run(uri, path);
}

void HistoryDatabase::execute(const std::string& sql) {
  const int code = sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) fail(path_, code, sqlite3_errmsg(database_));
}

std::int64_t HistoryDatabase::lastID() const { return sqlite3_last_insert_rowid(database_); }

HistoryTransaction::HistoryTransaction(HistoryDatabase& database) : database_(database) {
  database_.execute("BEGIN IMMEDIATE");
}

HistoryTransaction::~HistoryTransaction() {
  if (!open_) return;
  try {
    database_.execute("ROLLBACK");
  } catch (const HistoryError&) {  // the error that brought us here has ended it already
  }
}

void HistoryTransaction::commit() {
  database_.execute("COMMIT");
  open_ = false;
}

HistoryStatement::HistoryStatement(sqlite3* database, const std::string& file,
                                   const std::string& sql)
    : database_(database), file_(file) {
  check(sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement_, nullptr));
}

HistoryStatement::~HistoryStatement() { sqlite3_finalize(statement_); }

void HistoryStatement::check(int code) {
  if (code != SQLITE_OK) fail(file_, code, sqlite3_errmsg(database_));
}

HistoryStatement& HistoryStatement::operator<<(std::int64_t value) {
  check(sqlite3_bind_int64(statement_, ++parameter_, value));
  return *this;
}

HistoryStatement& HistoryStatement::operator<<(std::string_view text) {
  check(sqlite3_bind_text64(statement_, ++parameter_, text.data() ? text.data() : "", text.size(),
                            SQLITE_TRANSIENT, SQLITE_UTF8));
  return *this;
}

HistoryStatement& HistoryStatement::operator<<(Blob blob) {
  check(sqlite3_bind_blob64(statement_, ++parameter_, blob.bytes.data() ? blob.bytes.data() : "",
                            blob.bytes.size(), SQLITE_TRANSIENT));
  return *this;
}

HistoryStatement& HistoryStatement::null() {
  check(sqlite3_bind_null(statement_, ++parameter_));
  return *this;
}

bool HistoryStatement::next() {
  const int code = sqlite3_step(statement_);
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) fail(file_, code, sqlite3_errmsg(database_));
  return false;
}

void HistoryStatement::finish() {
  while (next()) {
  }
  check(sqlite3_reset(statement_));
  parameter_ = 0;
}

std::int64_t HistoryStatement::integer(int column) const {
  return sqlite3_column_int64(statement_, column);
}

std::optional<std::int64_t> HistoryStatement::optional(int column) const {
  if (sqlite3_column_type(statement_, column) == SQLITE_NULL) return std::nullopt;
  return integer(column);
}

std::string HistoryStatement::text(int column) const {
  const void* bytes = sqlite3_column_blob(statement_, column);
  const int size = sqlite3_column_bytes(statement_, column);
  return bytes ? std::string(static_cast<const char*>(bytes), static_cast<std::size_t>(size))
               : std::string();
}

}  // namespace kestrel
