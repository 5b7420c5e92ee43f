#include "cli/filtered_output.h"

#include <algorithm>
#include <iostream>
#include <string>

#include "foundation/utf8.h"

namespace kestrel {

FilteredStream::FilteredStream(std::ostream& stream)
    : stream_(stream), behind_(stream.rdbuf(this)) {}

FilteredStream::~FilteredStream() {
  stream_.flush();
  stream_.rdbuf(behind_);
}

std::streamsize FilteredStream::xsputn(const char* text, std::streamsize size) {
  // Most is plain and passes as it is: a large library makes hundreds of megabytes of JSON.
  const bool isPlain =
      std::all_of(text, text + size, [](char c) { return (c >= ' ' && c <= '~') || c == '\n'; });
  if (isPlain) return behind_->sputn(text, size);
  const std::string shown = printableLines({text, static_cast<std::size_t>(size)});
  const auto length = static_cast<std::streamsize>(shown.size());
  return behind_->sputn(shown.data(), length) == length ? size : 0;
}

FilteredStream::int_type FilteredStream::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof())) return 0;
  const char c = traits_type::to_char_type(character);
  return xsputn(&c, 1) == 1 ? character : traits_type::eof();
}

int FilteredStream::sync() { return behind_->pubsync(); }

void complain(std::string_view problem) {
  std::cerr << "kestrel-cli: " + printable(problem) + '\n';
}

void note(std::string_view text) { complain("note: " + std::string(text)); }

}  // namespace kestrel
