#include "platform/sqlite_database.h"

#include <sqlite3.h>
#include <utility>

namespace kestrel {
namespace {

SqliteError::Kind kindOf(int code) {
  switch (code & 0xFF) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      return SqliteError::Kind::damaged;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return SqliteError::Kind::inUse;
    case SQLITE_FULL:
      return SqliteError::Kind::noRoom;
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return SqliteError::Kind::readOnly;
    default:
      return SqliteError::Kind::other;
  }
}

/// A connection is for one thread at a time: it needs no lock of SQLite's own.
int flagsOf(SqliteOptions::Access access) {
  switch (access) {
    case SqliteOptions::Access::read:
      return SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX;
    case SqliteOptions::Access::write:
      return SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
    case SqliteOptions::Access::create:
      break;
  }
  return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
}

}  // namespace

SqliteError::SqliteError(std::string file_, int code_, const char* message)
    : std::runtime_error(message), file(std::move(file_)), code(code_), kind(kindOf(code_)) {}

SqliteDatabase::SqliteDatabase(const std::string& path, const SqliteOptions& options)
    : path_(path), options_(options) {
  const int code = sqlite3_open_v2(path.c_str(), &database_, flagsOf(options.access), nullptr);
  try {
    if (code != SQLITE_OK) fail(code, database_ ? sqlite3_errmsg(database_) : "no memory");
    sqlite3_extended_result_codes(database_, 1);
    sqlite3_busy_timeout(database_, static_cast<int>(options.patience.count()));
  } catch (...) {
    sqlite3_close_v2(database_);
    throw;
  }
}

SqliteDatabase::~SqliteDatabase() { sqlite3_close_v2(database_); }

void SqliteDatabase::fail(int code, const char* message) const {
  const SqliteError error(path_, code, message);
  if (options_.onError) options_.onError(error);
  throw error;
}

void SqliteDatabase::check(int code) const {
  if (code != SQLITE_OK) fail(code, sqlite3_errmsg(database_));
}

void SqliteDatabase::execute(const std::string& sql) {
  check(sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr));
}

std::int64_t SqliteDatabase::number(std::string_view sql) const {
  SqliteStatement statement = prepare(sql);
  return statement.next() ? statement.integer(0) : 0;
}

std::int64_t SqliteDatabase::lastID() const { return sqlite3_last_insert_rowid(database_); }

void SqliteDatabase::copyTo(const std::string& path) const {
  SqliteOptions options = options_;
  options.access = SqliteOptions::Access::create;
  const SqliteDatabase copy(path, options);
  sqlite3_backup* backup = sqlite3_backup_init(copy.database_, "main", database_, "main");
  if (!backup) copy.check(sqlite3_extended_errcode(copy.database_));
  sqlite3_backup_step(backup, -1);
  copy.check(sqlite3_backup_finish(backup));
}

SqliteTransaction::SqliteTransaction(SqliteDatabase& database) : database_(database) {
  database_.execute("BEGIN IMMEDIATE");
}

SqliteTransaction::~SqliteTransaction() {
  // That it fails means that the error that brought us here has ended it already.
  if (open_) sqlite3_exec(database_.database_, "ROLLBACK", nullptr, nullptr, nullptr);
}

void SqliteTransaction::commit() {
  database_.execute("COMMIT");
  open_ = false;
}

SqliteStatement::SqliteStatement(const SqliteDatabase& database, std::string_view sql)
    : database_(database) {
  check(sqlite3_prepare_v2(database_.database_, sql.data(), static_cast<int>(sql.size()),
                           &statement_, nullptr));
}

SqliteStatement::~SqliteStatement() { sqlite3_finalize(statement_); }

void SqliteStatement::check(int code) { database_.check(code); }

SqliteStatement& SqliteStatement::operator<<(std::int64_t value) {
  check(sqlite3_bind_int64(statement_, ++parameter_, value));
  return *this;
}

SqliteStatement& SqliteStatement::operator<<(double value) {
  check(sqlite3_bind_double(statement_, ++parameter_, value));
  return *this;
}

SqliteStatement& SqliteStatement::operator<<(std::string_view text) {
  check(sqlite3_bind_text64(statement_, ++parameter_, text.data() ? text.data() : "", text.size(),
                            SQLITE_TRANSIENT, SQLITE_UTF8));
  return *this;
}

SqliteStatement& SqliteStatement::operator<<(Blob blob) {
  check(sqlite3_bind_blob64(statement_, ++parameter_, blob.bytes.data() ? blob.bytes.data() : "",
                            blob.bytes.size(), SQLITE_TRANSIENT));
  return *this;
}

SqliteStatement& SqliteStatement::null() {
  check(sqlite3_bind_null(statement_, ++parameter_));
  return *this;
}

bool SqliteStatement::next() {
  const int code = sqlite3_step(statement_);
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) check(code);
  return false;
}

void SqliteStatement::again() {
  check(sqlite3_reset(statement_));
  parameter_ = 0;
}

void SqliteStatement::finish() {
  while (next()) {
  }
  again();
}

std::int64_t SqliteStatement::integer(int column) const {
  return sqlite3_column_int64(statement_, column);
}

double SqliteStatement::real(int column) const { return sqlite3_column_double(statement_, column); }

bool SqliteStatement::isNull(int column) const {
  return sqlite3_column_type(statement_, column) == SQLITE_NULL;
}

std::optional<std::int64_t> SqliteStatement::optional(int column) const {
  return isNull(column) ? std::nullopt : std::optional(integer(column));
}

std::string_view SqliteStatement::view(int column) const {
  const void* bytes = sqlite3_column_type(statement_, column) == SQLITE_BLOB
                          ? sqlite3_column_blob(statement_, column)
                          : sqlite3_column_text(statement_, column);
  const int size = sqlite3_column_bytes(statement_, column);
  return bytes ? std::string_view(static_cast<const char*>(bytes), static_cast<std::size_t>(size))
               : std::string_view();
}

}  // namespace kestrel
