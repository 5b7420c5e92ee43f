/// The file of the history.
#pragma once

#include <string>

#include "platform/sqlite_database.h"

namespace kestrel {

/// An open history file with its schema. Everything throws HistoryError.
class HistoryDatabase : public SqliteDatabase {
 public:
  explicit HistoryDatabase(const std::string& path);

 private:
  /// Until version 3 they were named by their paths.
  void nameLibrariesByUri();
};

}  // namespace kestrel
