/// Plain text tables for a terminal.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/function_ref.h"

namespace kestrel {

/// Columns that a terminal needs for a text: East Asian wide characters and emoji take two,
/// combining marks none. Controls count one, since `printable` replaces them.
std::size_t displayWidth(std::string_view utf8);

/// Collects rows, then writes them with aligned columns.
class TextTable {
 public:
  static constexpr auto never = [] { return false; };
  enum class Align { left, right };
  struct Column {
    std::string title;
    Align align = Align::left;
    std::size_t widest = 40;  ///< longer texts are cut and end in "…"
  };

  explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}
  /// One text a column; missing ones are empty.
  void add(std::vector<std::string> row);
  /// Writes the titles, if any is not empty, and the rows, each behind `indent`, until `stopped`
  /// says so.
  void write(std::ostream& out, std::string_view indent = "",
             FunctionRef<bool()> stopped = never) const;

 private:
  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace kestrel
