#include "ui/models/styled_text.h"

#include <algorithm>

#include "foundation/text_helpers.h"

namespace kestrel {

template <typename Edit>
void StyledText::edit(std::size_t start, std::size_t length, Edit&& edit) {
  const std::size_t size = utf16Length(text);
  start = std::min(start, size);
  const std::size_t end = start + std::min(length, size - start);
  if (start == end) return;
  if (runs.empty()) runs.push_back({0, size, {}});

  std::vector<StyledRun> edited;
  const auto append = [&](std::size_t from, std::size_t to, const TextStyle& style) {
    if (from >= to) return;
    if (!edited.empty() && edited.back().style == style)
      edited.back().length += to - from;
    else
      edited.push_back({from, to - from, style});
  };
  for (const StyledRun& run : runs) {
    const std::size_t runEnd = run.start + run.length;
    TextStyle changed = run.style;
    edit(changed);
    append(run.start, std::min(runEnd, start), run.style);
    append(std::max(run.start, start), std::min(runEnd, end), changed);
    append(std::max(run.start, end), runEnd, run.style);
  }
  runs = std::move(edited);
}

StyledText& StyledText::makeBold(std::size_t start, std::size_t length) {
  edit(start, length, [](TextStyle& style) { style.bold = true; });
  return *this;
}

StyledText& StyledText::setPoints(int points) {
  edit(0, utf16Length(text), [points](TextStyle& style) { style.points = points; });
  return *this;
}

StyledText& StyledText::centre() {
  edit(0, utf16Length(text), [](TextStyle& style) { style.centred = true; });
  return *this;
}

std::size_t byteOffset(std::string_view utf8, std::size_t utf16Position) noexcept {
  std::size_t offset = 0;
  for (std::size_t units = 0; offset < utf8.size();) {
    std::size_t next = offset + 1;
    while (next < utf8.size() && (static_cast<unsigned char>(utf8[next]) & 0xC0) == 0x80) ++next;
    units += utf16Length(utf8.substr(offset, next - offset));
    if (units > utf16Position) break;
    offset = next;
  }
  return offset;
}

}  // namespace kestrel
