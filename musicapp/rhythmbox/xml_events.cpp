#include "musicapp/rhythmbox/xml_events.h"

#include <algorithm>
#include <exception>
#include <expat.h>
#include <memory>
#include <utility>

#include "foundation/library_error.h"
#include "foundation/utf8.h"

namespace kestrel {

/// Exceptions must not pass through the parser: they wait until it has stopped.
struct XmlReader::Handlers {
  XmlReader& reader;
  XML_Parser parser;
  std::string_view root;
  std::exception_ptr problem;
  bool isOther = false;

  template <typename Act>
  void guarded(Act&& act) {
    if (problem) return;
    try {
      act();
    } catch (...) {
      problem = std::current_exception();
      XML_StopParser(parser, XML_FALSE);
    }
  }
  [[nodiscard]] Tag tag(const char* name, const char** attributes) const {
    const auto begin = static_cast<std::size_t>(XML_GetCurrentByteIndex(parser));
    return {name, attributes, begin,
            begin + static_cast<std::size_t>(XML_GetCurrentByteCount(parser))};
  }
  static void begin(void* self, const char* name, const char** attributes) {
    auto& handlers = *static_cast<Handlers*>(self);
    if (!handlers.root.empty() && name != std::exchange(handlers.root, {})) {
      handlers.isOther = true;
      XML_StopParser(handlers.parser, XML_FALSE);
    } else {
      handlers.guarded([&] { handlers.reader.beginElement(handlers.tag(name, attributes)); });
    }
  }
  static void end(void* self, const char* name) {
    auto& handlers = *static_cast<Handlers*>(self);
    handlers.guarded([&] { handlers.reader.endElement(handlers.tag(name, nullptr)); });
  }
  static void text(void* self, const char* piece, int length) {
    auto& handlers = *static_cast<Handlers*>(self);
    handlers.guarded([&] { handlers.reader.text({piece, static_cast<std::size_t>(length)}); });
  }
};

std::string_view XmlReader::Tag::attribute(std::string_view wanted) const noexcept {
  for (const char* const* pair = attributes; pair && *pair; pair += 2)
    if (*pair == wanted) return pair[1];
  return {};
}

void XmlReader::readPieces(std::span<const std::string_view> pieces, std::string_view root,
                           const std::string& file) {
  const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate(nullptr),
                                                                       XML_ParserFree);
  if (!parser) throw std::bad_alloc();
  Handlers handlers{*this, parser.get(), root, nullptr};
  XML_SetUserData(parser.get(), &handlers);
  XML_SetElementHandler(parser.get(), Handlers::begin, Handlers::end);
  XML_SetCharacterDataHandler(parser.get(), Handlers::text);
  // The parser copies what it is given: pieces that stay in the processor's cache.
  constexpr std::size_t most = std::size_t{1} << 16;
  const auto parse = [&](std::string_view piece, bool isLast) {
    if (XML_Parse(parser.get(), piece.data(), static_cast<int>(piece.size()), isLast) !=
        XML_STATUS_ERROR)
      return;
    if (handlers.problem) std::rethrow_exception(handlers.problem);
    const XML_Index place = XML_GetCurrentByteIndex(parser.get());
    throw LibraryError(
        file, placeOf(pieces.front(), static_cast<std::size_t>(std::max<XML_Index>(place, 0))),
        handlers.isOther ? Message::tr("expected the element %1").arg(inQuotes(root))
                         : Message::tr("cannot be read as XML: %1")
                               .arg(XML_ErrorString(XML_GetErrorCode(parser.get()))),
        Message::tr("Put a copy of the file in its place, or have its program write it again."));
  };
  for (const std::string_view whole : pieces)
    for (std::size_t at = 0; at < whole.size(); at += most) parse(whole.substr(at, most), false);
  parse({}, true);
}

std::string xmlEscaped(std::string_view text) {
  std::string escaped;
  const std::string clean = writableText(text);
  for (std::size_t i = 0; i < clean.size();) {
    const auto lead = static_cast<unsigned char>(clean[i]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    for (std::size_t k = 1; k < length; ++k)
      character = character << 6U | (static_cast<unsigned char>(clean[i + k]) & 0x3FU);
    i += length;
    if (character >= 0x80 ||
        std::string_view("<>&\"'").find(static_cast<char>(character)) != std::string_view::npos)
      escaped.append("&#")
          .append(std::to_string(static_cast<std::uint32_t>(character)))
          .append(";");
    else
      escaped.push_back(static_cast<char>(character));
  }
  return escaped;
}

}  // namespace kestrel
