/// Writes an XML property list as it goes, in constant memory.
///
/// Calls mirror the document from top to bottom; a key is followed by its value. Nothing checks
/// that the calls make sense: the callers are few and their output is read back in the tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

namespace kestrel::make_library {

/// How the elements are set out: `tabs` as music applications do (key and value on one line),
/// `crlf` the same with the line ends of Windows, `spaces` as other programs re-indent it (a line
/// for every element), `compact` without a single space or line break.
enum class Layout { tabs, crlf, spaces, compact };

class PlistWriter {
 public:
  PlistWriter(std::ostream& out, Layout layout);
  PlistWriter(const PlistWriter&) = delete;
  PlistWriter& operator=(const PlistWriter&) = delete;

  void beginDict() { open("dict"); }
  void endDict() { close("dict"); }
  void beginArray() { open("array"); }
  void endArray() { close("array"); }

  void key(std::string_view name);
  void text(std::string_view value);
  void integer(std::int64_t value);
  void boolean(bool value);
  /// Seconds since 1970, UTC.
  void date(std::int64_t seconds);
  void data(std::string_view bytes);

  void text(std::string_view name, std::string_view value) { key(name), text(value); }
  void integer(std::string_view name, std::int64_t value) { key(name), integer(value); }
  void boolean(std::string_view name, bool value) { key(name), boolean(value); }
  void date(std::string_view name, std::int64_t value) { key(name), date(value); }

  /// Writes the end of the document. Throws std::runtime_error when the stream took not all.
  void finish();

 private:
  void open(std::string_view tag);
  void close(std::string_view tag);
  void value(std::string_view tag, std::string_view content);
  void startLine();
  void endLine() { buffer_ += lineEnd_; }
  void startValue();
  void escaped(std::string_view content);
  void flush();

  std::ostream& out_;
  std::string buffer_;
  std::string_view lineEnd_, indent_;
  std::size_t depth_ = 0;
  bool valueOnKeyLine_;
  bool afterKey_ = false;
};

}  // namespace kestrel::make_library
