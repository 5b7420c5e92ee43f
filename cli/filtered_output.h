/// What the program says reaches a terminal through one filter: names and paths of a library,
/// wherever they turn up, must not move the cursor, change the terminal's state or fake a line.
#pragma once

#include <ostream>
#include <streambuf>
#include <string_view>

namespace kestrel {

/// While it lives, a stream's controls come out as `printableLines` shows them. Its lines stay: who
/// writes a name that may hold a line end writes it by `printable`. Each piece that is written
/// counts by itself, so that a character must not be cut in two.
class FilteredStream : private std::streambuf {
 public:
  explicit FilteredStream(std::ostream& stream);
  ~FilteredStream() override;

 private:
  std::streamsize xsputn(const char* text, std::streamsize size) override;
  int_type overflow(int_type character) override;
  int sync() override;

  std::ostream& stream_;
  std::streambuf* behind_;
};

/// One line on standard error, as the program's.
void complain(std::string_view problem);
/// The same of what the user may not expect and is no error.
void note(std::string_view text);

}  // namespace kestrel
