/// The little of SQLite that Kestrel needs, with errors as exceptions.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace kestrel {

/// What a database did not do, in SQLite's words.
class SqliteError : public std::runtime_error {
 public:
  enum class Kind : std::uint8_t { damaged, inUse, noRoom, readOnly, other };
  /// `code` is SQLite's extended one.
  SqliteError(std::string file_, int code_, const char* message);

  std::string file;
  int code;
  Kind kind;
};

struct SqliteOptions {
  enum class Access : std::uint8_t { read, write, create };  ///< `create`: write, and make the file
  Access access = Access::read;
  std::chrono::milliseconds patience{5000};  ///< with those who hold the database's lock
  /// Throws its user's own exception. Without it, SqliteErrors are thrown.
  void (*onError)(const SqliteError& error) = nullptr;
};

/// Bytes, where a text would be taken for UTF-8. Refers to them.
struct Blob {
  std::string_view bytes;
};

class SqliteDatabase;

/// A prepared statement on its way through its rows; parameters and columns count from 0.
class SqliteStatement {
 public:
  SqliteStatement(const SqliteDatabase& database, std::string_view sql);
  ~SqliteStatement();
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;

  /// Binds the next parameter. Texts are copied.
  SqliteStatement& operator<<(std::int64_t value);
  SqliteStatement& operator<<(std::uint64_t value) {
    return *this << static_cast<std::int64_t>(value);  // the same 64 bits
  }
  SqliteStatement& operator<<(double value);
  SqliteStatement& operator<<(std::string_view text);
  SqliteStatement& operator<<(Blob blob);
  template <typename Value>
  SqliteStatement& operator<<(const std::optional<Value>& value) {
    return value ? *this << *value : null();
  }
  SqliteStatement& null();

  /// Goes to the next row; false past the last.
  bool next();
  /// Back before the first row, for other parameters.
  void again();
  /// Binds all parameters and runs a statement that has no rows; it is ready for the next ones
  /// then.
  template <typename... Values>
  void run(const Values&... values) {
    (*this << ... << values);
    finish();
  }

  [[nodiscard]] std::int64_t integer(int column) const;
  [[nodiscard]] std::uint64_t id(int column) const {
    return static_cast<std::uint64_t>(integer(column));
  }
  [[nodiscard]] double real(int column) const;
  [[nodiscard]] bool isNull(int column) const;
  [[nodiscard]] std::optional<std::int64_t> optional(int column) const;
  /// Of blobs their bytes; empty for null. Valid until the next row.
  [[nodiscard]] std::string_view view(int column) const;
  [[nodiscard]] std::string text(int column) const { return std::string(view(column)); }

 private:
  void check(int code);
  void finish();
  const SqliteDatabase& database_;
  sqlite3_stmt* statement_ = nullptr;
  int parameter_ = 0;
};

/// An open database file. One thread at a time; it outlives its statements and transactions.
class SqliteDatabase {
 public:
  explicit SqliteDatabase(const std::string& path, const SqliteOptions& options = {});
  ~SqliteDatabase();
  SqliteDatabase(const SqliteDatabase&) = delete;
  SqliteDatabase& operator=(const SqliteDatabase&) = delete;

  void execute(const std::string& sql);
  [[nodiscard]] SqliteStatement prepare(std::string_view sql) const { return {*this, sql}; }
  /// The first column of the first row; 0 when there is none.
  [[nodiscard]] std::int64_t number(std::string_view sql) const;
  [[nodiscard]] std::int64_t lastID() const;
  /// Writes what is committed, page by page, into a new file, which is on the disk upon return. Row
  /// numbers stay. Another connection of this program may be in a transaction, but not this one.
  void copyTo(const std::string& path) const;

  [[nodiscard]] const std::string& path() const noexcept { return path_; }

 private:
  friend class SqliteStatement;
  friend class SqliteTransaction;
  void check(int code) const;
  [[noreturn]] void fail(int code, const char* message) const;

  std::string path_;
  SqliteOptions options_;
  sqlite3* database_ = nullptr;
};

/// A transaction that is undone unless it is committed. On the disk when `commit` returns.
class SqliteTransaction {
 public:
  explicit SqliteTransaction(SqliteDatabase& database);
  ~SqliteTransaction();
  SqliteTransaction(const SqliteTransaction&) = delete;
  SqliteTransaction& operator=(const SqliteTransaction&) = delete;
  void commit();

 private:
  SqliteDatabase& database_;
  bool open_ = true;
};

}  // namespace kestrel
