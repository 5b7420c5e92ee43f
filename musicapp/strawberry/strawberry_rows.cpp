#include "musicapp/strawberry/strawberry_rows.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "foundation/utf8.h"

namespace kestrel {
namespace {

using Json = nlohmann::json;

std::vector<std::string> entryColumns(const SqliteDatabase& database) {
  std::vector<std::string> names;
  SqliteStatement column = database.prepare("PRAGMA table_info(playlist_items)");
  while (column.next()) names.push_back(column.text(1));
  return names;
}

std::string quoted(const std::string& name) {
  std::string text = "\"";
  for (const char c : name) text.append(c == '"' ? 2 : 1, c);
  return text + '"';
}

}  // namespace

Json strawberryCell(const SqliteStatement& row, int type) {
  const int cell = type + 1;
  const std::string_view name = row.view(type);
  if (name == "integer") return row.integer(cell);
  if (name == "real") return row.real(cell);
  if (name == "null") return nullptr;
  const std::string_view bytes = row.view(cell);
  if (name == "text" && firstInvalidUtf8(bytes) == std::string_view::npos) return bytes;
  return Json{{std::string(name), std::vector<std::uint8_t>(bytes.begin(), bytes.end())}};
}

void bindStrawberryCell(SqliteStatement& statement, const Json& cell) {
  if (cell.is_number_float()) {
    statement << cell.get<double>();
  } else if (cell.is_number()) {
    statement << cell.get<std::int64_t>();
  } else if (cell.is_string()) {
    statement << std::string_view(cell.get_ref<const std::string&>());
  } else if (cell.is_object() && !cell.empty() && cell.begin()->is_array()) {
    const auto values = cell.begin()->get<std::vector<std::uint8_t>>();
    const std::string bytes(values.begin(), values.end());
    cell.begin().key() == "text" ? statement << std::string_view(bytes) : statement << Blob{bytes};
  } else {
    statement.null();
  }
}

std::string strawberryEntry(const SqliteDatabase& database, std::int64_t row) {
  const auto names = entryColumns(database);
  std::string sql;
  for (const std::string& name : names)
    sql += (sql.empty() ? "SELECT typeof(" : ", typeof(") + quoted(name) + "), " + quoted(name);
  SqliteStatement found = database.prepare(sql + " FROM playlist_items WHERE rowid = ?");
  found << row;
  Json cells = Json::object();
  if (found.next())
    for (std::size_t i = 0; i < names.size(); ++i)
      cells[names[i]] = strawberryCell(found, static_cast<int>(2 * i));
  return cells.dump();
}

bool addStrawberryEntry(const SqliteDatabase& database, std::int64_t row, std::uint64_t playlist,
                        std::string_view cells) {
  Json found = Json::parse(cells, nullptr, false);
  if (!found.is_object() || !found.contains("type")) return false;
  found["playlist"] = playlist;
  std::string names = "INSERT INTO playlist_items(rowid", marks = ") VALUES(?";
  std::vector<const Json*> values;
  for (const std::string& name : entryColumns(database)) {
    if (!found.contains(name)) continue;
    names += ", " + quoted(name);
    marks += ", ?";
    values.push_back(&found.at(name));
  }
  SqliteStatement add = database.prepare(names + marks + ")");
  add << row;
  for (const Json* value : values) bindStrawberryCell(add, *value);
  add.next();
  return true;
}

}  // namespace kestrel
