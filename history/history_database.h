/// The little of SQLite that the history needs, with errors as exceptions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "history/history.h"
#include "platform/clock.h"

struct sqlite3;
struct sqlite3_stmt;

namespace kestrel {

/// Bytes, where a text would be taken for UTF-8. Refers to them.
struct Blob {
  std::string_view bytes;
};

/// A prepared statement on its way through its rows; parameters and columns count from 0.
class HistoryStatement {
 public:
  HistoryStatement(sqlite3* database, const std::string& file, const std::string& sql);
  ~HistoryStatement();
  HistoryStatement(const HistoryStatement&) = delete;
  HistoryStatement& operator=(const HistoryStatement&) = delete;

  /// Binds the next parameter. Texts are copied.
  HistoryStatement& operator<<(std::int64_t value);
  HistoryStatement& operator<<(std::uint64_t value) {
    return *this << static_cast<std::int64_t>(value);  // the same 64 bits
  }
  HistoryStatement& operator<<(std::string_view text);
  HistoryStatement& operator<<(Blob blob);
  template <typename Value>
  HistoryStatement& operator<<(const std::optional<Value>& value) {
    return value ? *this << *value : null();
  }
  HistoryStatement& null();

  /// Goes to the next row; false past the last.
  bool next();
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
  [[nodiscard]] std::optional<std::int64_t> optional(int column) const;
  [[nodiscard]] std::string text(int column) const;  ///< of blobs their bytes

 private:
  void check(int code);
  void finish();
  sqlite3* database_;
  const std::string& file_;
  sqlite3_stmt* statement_ = nullptr;
  int parameter_ = 0;
};

/// An open history file with its schema.
class HistoryDatabase {
 public:
  explicit HistoryDatabase(const std::string& path);
  ~HistoryDatabase();
  HistoryDatabase(const HistoryDatabase&) = delete;
  HistoryDatabase& operator=(const HistoryDatabase&) = delete;

  void execute(const std::string& sql);
  [[nodiscard]] HistoryStatement prepare(const std::string& sql) { return {database_, path_, sql}; }
  [[nodiscard]] std::int64_t lastID() const;

 private:
  void configure();
  /// Until version 3 they were named by their paths.
  void nameLibrariesByUri();
  std::string path_;
  sqlite3* database_ = nullptr;
};

/// A transaction that is undone unless it is committed. On the disk when `commit` returns.
class HistoryTransaction {
 public:
  explicit HistoryTransaction(HistoryDatabase& database);
  ~HistoryTransaction();
  HistoryTransaction(const HistoryTransaction&) = delete;
  HistoryTransaction& operator=(const HistoryTransaction&) = delete;
  void commit();

 private:
  HistoryDatabase& database_;
  bool open_ = true;
};

}  // namespace kestrel
