/// Styled texts as plain ones.
#pragma once

#include <string>

#include "ui/models/styled_text.h"

namespace kestrel::testing {

/// Bold runs between "<" and ">", "[12]" before runs with a size, "|" before centred ones.
inline std::string marked(const StyledText& styled) {
  std::string out;
  for (const StyledRun& run : styled.runs) {
    const std::size_t begin = byteOffset(styled.text, run.start);
    const std::size_t end = byteOffset(styled.text, run.start + run.length);
    const std::string part = styled.text.substr(begin, end - begin);
    if (run.style.points) out += "[" + std::to_string(run.style.points) + "]";
    out += (run.style.centred ? "|" : "") + (run.style.bold ? "<" + part + ">" : part);
  }
  return styled.runs.empty() ? styled.text : out;
}

}  // namespace kestrel::testing
