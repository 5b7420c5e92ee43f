/// Rows of Strawberry's database as texts: each cell with its type, so that a row that has gone
/// comes back as it was.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "platform/sqlite_database.h"

namespace kestrel {

/// A cell, whose type, as SQLite calls it, is in the column before.
nlohmann::json strawberryCell(const SqliteStatement& row, int type);
/// Binds it to the next parameter.
void bindStrawberryCell(SqliteStatement& statement, const nlohmann::json& cell);

/// An entry with all columns that this version has; a text of one line.
std::string strawberryEntry(const SqliteDatabase& database, std::int64_t row);
/// Makes the entry of such a text in this list. False, with nothing done, when that is none.
bool addStrawberryEntry(const SqliteDatabase& database, std::int64_t row, std::uint64_t playlist,
                        std::string_view cells);

}  // namespace kestrel
