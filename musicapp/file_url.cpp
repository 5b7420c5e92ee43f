#include "musicapp/file_url.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "foundation/collation.h"
#include "foundation/text_helpers.h"

namespace kestrel {

bool pathOfFileUrl(std::string_view url, std::string& path) {
  path.clear();
  if (!sameIgnoringCase(url.substr(0, 7), "file://")) return false;
  // The system would take the part before it for the whole path.
  if (url.find('\0') != std::string_view::npos) return false;
  url.remove_prefix(7);
  const std::size_t slash = url.find('/');  // what stands before is the host
  if (slash == std::string_view::npos) return false;
  const std::string_view host = url.substr(0, slash);
  path.reserve(2 + url.size());
  if (!host.empty() && !sameIgnoringCase(host, "localhost")) path.append("//").append(host);
  url.remove_prefix(slash);
  appendDecoded(url, path);
  return true;
}

void appendDecoded(std::string_view part, std::string& path) {
  while (!part.empty()) {
    const std::size_t percent = std::min(part.find('%'), part.size());
    path.append(part.substr(0, percent));
    part.remove_prefix(percent);
    if (part.empty()) break;
    std::uint8_t byte = 0;
    const char* end = part.data() + std::min<std::size_t>(part.size(), 3);
    const auto [stop, error] = std::from_chars(part.data() + 1, end, byte, 16);
    const bool decodes = error == std::errc() && stop == part.data() + 3 && byte != 0;
    path.push_back(decodes ? static_cast<char>(byte) : '%');
    part.remove_prefix(decodes ? 3 : 1);
  }
}

std::string fileUrlOfPath(std::string_view path) {
  return "file://" + percentEncoded(path, "/-_.!~*'()+,:=@&$;");
}

}  // namespace kestrel
