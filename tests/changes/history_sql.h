/// Changing a history behind Kestrel's back, so that it cannot be written any more.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <string>

namespace kestrel::testing {

/// From now on, writing what became of a row of `table` fails.
inline void letUpdatesFail(const std::string& history, const std::string& table) {
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(history.c_str(), &database), SQLITE_OK);
  const std::string trigger =
      "CREATE TRIGGER fails BEFORE UPDATE ON " + table + " BEGIN SELECT RAISE(FAIL, 'broken'); END";
  EXPECT_EQ(sqlite3_exec(database, trigger.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(database);
}

}  // namespace kestrel::testing
