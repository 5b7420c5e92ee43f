#include "musicapp/file_url.h"

#include <algorithm>
#include <cstring>

namespace kestrel {
namespace {

int hexDigit(char c) noexcept {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

bool startsWithIgnoringCase(std::string_view text, std::string_view lowerPrefix) noexcept {
  return text.size() >= lowerPrefix.size() &&
         std::equal(lowerPrefix.begin(), lowerPrefix.end(), text.begin(),
                    [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + 32 : b); });
}

}  // namespace

bool pathOfFileUrl(std::string_view url, std::string& path) {
  path.clear();
  if (!startsWithIgnoringCase(url, "file://")) return false;
  // The system would take the part before it for the whole path.
  if (url.find('\0') != std::string_view::npos) return false;
  url.remove_prefix(7);
  const std::size_t slash = url.find('/');  // what stands before is the host
  if (slash == std::string_view::npos) return false;
  url.remove_prefix(slash);
  path.reserve(url.size());
  appendDecoded(url, path);
  return true;
}

void appendDecoded(std::string_view part, std::string& path) {
  while (!part.empty()) {
    const std::size_t percent = std::min(part.find('%'), part.size());
    path.append(part.substr(0, percent));
    part.remove_prefix(percent);
    if (part.empty()) break;
    const int high = part.size() > 2 ? hexDigit(part[1]) : -1;
    const int low = part.size() > 2 ? hexDigit(part[2]) : -1;
    const bool decodes = high >= 0 && low >= 0 && (high | low) != 0;
    path.push_back(decodes ? static_cast<char>(high << 4 | low) : '%');
    part.remove_prefix(decodes ? 3 : 1);
  }
}

std::string fileUrlOfPath(std::string_view path) {
  static constexpr char hex[] = "0123456789ABCDEF";
  std::string url = "file://";
  for (const char c : path) {
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                       (c && std::strchr("/-_.!~*'()+,:=@&$;", c));
    if (plain) {
      url.push_back(c);
    } else {
      const auto byte = static_cast<unsigned char>(c);
      url.append({'%', hex[byte >> 4], hex[byte & 15]});
    }
  }
  return url;
}

}  // namespace kestrel
