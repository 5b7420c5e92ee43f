#include "musicapp/document/document_text.h"

#include <algorithm>
#include <utility>

#include "foundation/utf8.h"
#include "platform/files.h"
#include "platform/mapped_file.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

std::optional<ByteRange> findForeignEncodingName(string_view document) {
  const size_t start = document.starts_with("\xEF\xBB\xBF") ? 3 : 0;
  if (!document.substr(start).starts_with("<?xml")) return std::nullopt;
  const string_view declaration = document.substr(0, document.find("?>", start));
  size_t at = declaration.find("encoding", start);
  if (at != string_view::npos) at = declaration.find_first_of("\"'", at);
  if (at == string_view::npos) return std::nullopt;
  const size_t end = declaration.find(declaration[at], at + 1);
  if (end == string_view::npos) return std::nullopt;
  const string_view name = declaration.substr(at + 1, end - at - 1);
  constexpr string_view utf8 = "utf-8";
  const bool same = std::equal(name.begin(), name.end(), utf8.begin(), utf8.end(),
                               [](char a, char b) { return (a | 0x20) == (b | 0x20); });
  return same ? std::nullopt : std::optional(ByteRange{at + 1, end});
}

}  // namespace

DocumentText::DocumentText(MappedFile file) : utf8_(std::move(file)), status_(utf8_.status()) {
  const TextEncoding encoding = encodingOf(bytes());
  if (encoding != TextEncoding::utf8) {
    ScratchFile scratch;
    utf8_ = utf8_.checked([&] {
      convertToUtf8(bytes(), encoding, [&](string_view piece) { scratch.append(piece); });
      return scratch.map();
    });
    isConverted_ = true;
  }
  foreignEncodingName_ = findForeignEncodingName(bytes());
}

bool looksLikeXml(const FileService& files, const std::string& path) {
  const MappedFile file = files.map(path);
  std::string_view start(file.bytes().data(), std::min<std::size_t>(file.bytes().size(), 1024));
  for (const std::string_view mark : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"})
    if (start.starts_with(mark)) start.remove_prefix(mark.size());
  const std::size_t first = start.find_first_not_of(std::string_view(" \t\r\n\0", 5));
  return first != std::string_view::npos && start[first] == '<';
}

}  // namespace kestrel
