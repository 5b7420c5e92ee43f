/// Reading an XML document from front to back, for files of which no tree is to stand in memory.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace kestrel {

class XmlReader {
 public:
  virtual ~XmlReader() = default;
  /// Throws LibraryError in the name of `file`, with the place, where the text is no XML, or
  /// another element than `root` holds it all. What the operations below throw passes through.
  void read(std::string_view document, std::string_view root, const std::string& file) {
    readPieces({&document, 1}, root, file);
  }
  /// The same of a document in pieces; places count from the beginning of the first.
  void readPieces(std::span<const std::string_view> pieces, std::string_view root,
                  const std::string& file);

 protected:
  struct Tag {
    std::string_view name;
    const char* const* attributes;  ///< names and values by turns, then nullptr
    std::size_t begin, end;         ///< its place in the document
    /// Empty when there is none.
    [[nodiscard]] std::string_view attribute(std::string_view wanted) const noexcept;
  };
  virtual void beginElement(const Tag& tag) = 0;
  /// `tag` is the end tag; of an element without content, nothing behind its one tag.
  virtual void endElement(const Tag& tag) = 0;
  /// A piece of the text within an element.
  virtual void text(std::string_view piece) = 0;

 private:
  struct Handlers;
};

/// A text as it stands in an element or attribute, in ASCII whatever it holds.
std::string xmlEscaped(std::string_view text);

}  // namespace kestrel
