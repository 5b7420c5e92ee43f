/// Streaming scanner over an XML property list in memory: the hot path of loading a library.
///
/// The caller asks for what it expects (`nextKey`, `beginValue`, `text`, ...) and gets views into
/// the document, so that nothing is built that is not wanted. The usual spelling of every element
/// is recognised by one comparison; any other legal one (attributes, comments, CDATA, references,
/// CRLF, self-closed elements) takes the slower path with the same result. Entity definitions are
/// passed over and never expanded. Control characters in texts are accepted, since real libraries
/// contain them; malformed UTF-8 is not.
///
/// The format is that of the property list DTD, version 1.0: plist, dict, array, key, string,
/// integer, real, date, data, true, false.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/library_error.h"

namespace kestrel {

enum class PlistType : std::uint8_t {
  dictionary,
  array,
  string,
  integer,
  real,
  date,
  data,
  boolTrue,
  boolFalse,
};

/// Every operation throws PlistError on a document that is not a property list. Views that it
/// returns last until the next call of the same operation.
class PlistScanner {
 public:
  /// Containers within containers; more is taken for an attack.
  static constexpr std::size_t maximumDepth = 512;

  /// `document` is UTF-8 and must outlive the scanner. With `start`, scanning begins there.
  explicit PlistScanner(std::string_view document, std::size_t start = 0) noexcept
      : begin_(document.data()),
        p_(document.data() + start),
        end_(document.data() + document.size()) {}

  /// Passes byte order mark, declaration, document type and the opening plist tag.
  void beginDocument();
  /// Passes the closing plist tag; nothing but comments and white space may follow.
  void endDocument();

  /// Enters the next value. Booleans are complete then; containers are continued by `nextKey` or
  /// `nextItem`, scalars by `text` or `integer`, everything by `skip`.
  PlistType beginValue();
  /// Whether the value begun last is a self-closed element; what it holds is then nothing, and no
  /// closing tag follows.
  [[nodiscard]] bool begunEmpty() const noexcept { return emptyElement_; }
  /// In a dictionary: the next key, or false past its end.
  bool nextKey(std::string_view& key);
  /// In an array: enters the next value, or returns false past its end.
  bool nextItem(PlistType& type);
  /// The content of a begun string, integer, real, date or data, references resolved and line
  /// ends made LF.
  std::string_view text(PlistType type);
  /// The content of a begun integer; fails when it does not fit 64 bits, signed.
  std::int64_t integer();
  /// Passes what is left of a begun value.
  void skip(PlistType type);

  /// Bytes from the start of the document.
  [[nodiscard]] std::size_t offset() const noexcept {
    return static_cast<std::size_t>(p_ - begin_);
  }
  [[noreturn]] void fail(Message problem) const { failAt(p_, std::move(problem)); }

 private:
  struct Tag {
    std::string_view name;
    bool closing = false;
    bool selfClosed = false;
  };

  [[noreturn]] void failAt(const char* place, Message problem) const;
  /// "expected X" with what stands there instead.
  [[noreturn]] void failExpecting(Message expected) const;

  void skipSpace() noexcept {
    while (p_ != end_ && (*p_ == '\n' || *p_ == '\t' || *p_ == ' ' || *p_ == '\r')) ++p_;
  }
  /// White space, comments and processing instructions.
  void skipMisc();
  void skipComment();
  void skipInstruction();
  void skipDocumentType();
  Tag readTag();
  PlistType beginValueSlowly();
  bool nextKeySlowly(std::string_view& key);
  /// What stands before `closing`, a literal such as "</key>".
  template <std::size_t size>
  std::string_view content(const char (&closing)[size], std::string& scratch);
  std::string_view contentSlowly(const char* start, std::string_view name, std::string& scratch);
  void appendReference(std::string& out);
  void checkUtf8(const char* from, const char* to) const;

  template <std::size_t size>
  [[nodiscard]] bool at(const char (&literal)[size]) const noexcept {
    return static_cast<std::size_t>(end_ - p_) >= size - 1 &&
           std::memcmp(p_, literal, size - 1) == 0;
  }

  const char* begin_;
  const char* p_;
  const char* end_;
  bool emptyElement_ = false;  ///< the value begun last was self-closed
  std::string keyScratch_;
  std::string textScratch_;
};

}  // namespace kestrel
