#include "cli/text_table.h"

#include <algorithm>
#include <ostream>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "foundation/utf8.h"

namespace kestrel {
namespace {

/// Calls `visit(code point, its bytes)`; bytes that are no character come as U+FFFD.
template <typename Visit>
void forEachCharacter(std::string_view text, Visit visit) {
  const auto size = static_cast<std::int32_t>(text.size());
  for (std::int32_t at = 0; at < size;) {
    const std::int32_t start = at;
    UChar32 character;
    U8_NEXT_OR_FFFD(text.data(), at, size, character);
    visit(character,
          text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(at - start)));
  }
}

std::size_t widthOf(UChar32 character) {
  const auto type = u_charType(character);
  if (type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR) return 0;
  const auto width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

/// At most `widest` columns of the text, with a mark where something was cut off.
std::string cut(const std::string& text, std::size_t widest) {
  if (displayWidth(text) <= widest) return text;
  std::string kept;
  std::size_t width = 0;
  bool full = false;
  forEachCharacter(text, [&](UChar32 character, std::string_view bytes) {
    full = full || width + widthOf(character) >= widest;
    if (full) return;
    width += widthOf(character);
    kept.append(bytes);
  });
  return kept + "…";
}

}  // namespace

std::size_t displayWidth(std::string_view utf8) {
  std::size_t width = 0;
  forEachCharacter(utf8, [&](UChar32 character, std::string_view) { width += widthOf(character); });
  return width;
}

void TextTable::add(std::vector<std::string> row) {
  row.resize(columns_.size());
  for (std::size_t i = 0; i < row.size(); ++i) row[i] = cut(printable(row[i]), columns_[i].widest);
  rows_.push_back(std::move(row));
}

void TextTable::write(std::ostream& out, std::string_view indent,
                      FunctionRef<bool()> stopped) const {
  std::vector<std::string> titles;
  std::vector<std::size_t> widths;
  bool titled = false;
  for (const Column& column : columns_) {
    titles.push_back(column.title);
    widths.push_back(displayWidth(column.title));
    titled = titled || !column.title.empty();
  }
  for (const auto& row : rows_)
    for (std::size_t i = 0; i < row.size(); ++i)
      widths[i] = std::max(widths[i], displayWidth(row[i]));

  const auto line = [&](const std::vector<std::string>& row) {
    std::string text(indent);
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string padding(widths[i] - displayWidth(row[i]), ' ');
      if (i) text += "  ";
      text += columns_[i].align == Align::right ? padding + row[i] : row[i] + padding;
    }
    text.erase(text.find_last_not_of(' ') + 1);
    out << text << '\n';
  };
  if (titled) line(titles);
  for (const auto& row : rows_) {
    if (stopped()) return;
    line(row);
  }
}

}  // namespace kestrel
