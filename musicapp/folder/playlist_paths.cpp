#include "musicapp/folder/playlist_paths.h"

#include <algorithm>
#include <cctype>

#include "foundation/utf8.h"
#include "musicapp/file_url.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

/// The scheme of a file URL with what stands before its path; empty for other texts. A host other
/// than this machine is another machine.
string_view fileScheme(string_view text) {
  constexpr string_view name = "file:";
  if (text.size() < name.size() ||
      !std::equal(name.begin(), name.end(), text.begin(),
                  [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); }))
    return {};
  size_t path = name.size();
  if (text.substr(path).starts_with("//")) path = text.find('/', path + 2);
  if (path >= text.size() || text[path] != '/') return {};
  const string_view host = text.substr(name.size(), path - name.size());
  return host.empty() || host == "//" || host == "//localhost" ? text.substr(0, path)
                                                               : string_view();
}

/// Whether it begins like "http://", "C:" or "cdda:": an address that is no relative path.
bool hasScheme(string_view text) {
  const size_t colon = text.find("://");
  return colon != string_view::npos && colon > 1 &&
         std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(colon),
                     [](unsigned char c) { return std::isalnum(c) || c == '+' || c == '-'; });
}

/// Whether readers take what stands before its first colon for a scheme, or a drive.
bool beginsLikeScheme(string_view text) {
  return text.substr(0, text.find('/')).find(':') != string_view::npos;
}

std::string decoded(string_view text) {
  std::string path;
  appendDecoded(text, path);
  return path;
}

std::string encoded(string_view path) { return fileUrlOfPath(path).substr(sizeof "file://" - 1); }

std::string relativeTo(string_view folder, string_view path) {
  size_t common = 0;  // behind the last slash that both have
  const std::string base = std::string(folder) + "/";
  for (size_t i = 0; i < std::min(base.size(), path.size()) && base[i] == path[i]; ++i)
    if (path[i] == '/') common = i + 1;
  std::string relative;
  for (auto up = std::count(base.begin() + static_cast<std::ptrdiff_t>(common), base.end(), '/');
       up > 0; --up)
    relative += "../";
  return relative.append(path.substr(common));
}

/// Of the bytes 0x80 to 0x9F; 0 where there is none.
constexpr char16_t windowsCharacters[] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

}  // namespace

std::string withoutDots(string_view path) {
  std::string result;
  while (!path.empty()) {
    const size_t end = std::min(path.find('/'), path.size());
    const string_view part = path.substr(0, end);
    if (part == "..")
      result.resize(std::min(result.rfind('/'), result.size()));
    else if (!part.empty() && part != ".")
      result.append(1, '/').append(part);
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return result;
}

namespace {

/// At most so many of the readings of an entry.
std::vector<PathReading> readings(string_view text, string_view folder, bool isUrl, size_t most) {
  std::vector<PathReading> readings;
  const auto add = [&](std::string path, PathStyle style) {
    const bool isNew = std::none_of(readings.begin(), readings.end(),
                                    [&](const auto& reading) { return reading.path == path; });
    if (isNew && !path.empty()) readings.push_back({std::move(path), std::move(style)});
    return readings.size() == most;
  };
  if (text.empty() || text.find('\0') != string_view::npos) return readings;
  if (const string_view scheme = fileScheme(text); !scheme.empty()) {
    const string_view path = text.substr(scheme.size());
    for (const bool isEncoded : {true, false})
      if (add(withoutDots(isEncoded ? decoded(path) : std::string(path)),
              {std::string(scheme), true, isEncoded, false, '/'}))
        break;
    return readings;
  }
  if (hasScheme(text)) return readings;
  for (const char separator : {'/', '\\'}) {
    if (separator == '\\' && text.find('\\') == string_view::npos) break;
    for (const bool isEncoded : {isUrl, !isUrl}) {
      std::string path = isEncoded ? decoded(text) : std::string(text);
      if (separator != '/') std::replace(path.begin(), path.end(), '\\', '/');
      const bool isAbsolute = path.starts_with('/');
      const bool hasDot = path.starts_with("./");
      if (add(withoutDots(isAbsolute ? path : std::string(folder) + "/" + path),
              {{}, isAbsolute, isEncoded, hasDot, separator}))
        return readings;
    }
  }
  return readings;
}

}  // namespace

std::vector<PathReading> readingsOf(string_view text, string_view folder, bool isUrl) {
  return readings(text, folder, isUrl, SIZE_MAX);
}

std::optional<PathReading> likeliestReading(string_view text, string_view folder, bool isUrl) {
  auto first = readings(text, folder, isUrl, 1);
  return first.empty() ? std::nullopt : std::optional(std::move(first.front()));
}

std::string spelled(const std::string& path, string_view folder, const PathStyle& style) {
  std::string text = style.isAbsolute ? path : relativeTo(folder, path);
  if (style.hasDot && !style.isAbsolute && !text.starts_with("../")) text.insert(0, "./");
  if (!style.isAbsolute && beginsLikeScheme(text)) text.insert(0, "./");
  if (style.isEncoded) return style.scheme + encoded(text);
  // A text of its own meaning, or an end that readers cut off.
  const bool isMisread = !style.isAbsolute && (text.starts_with('#') || text.starts_with(' '));
  if (isMisread) text.insert(0, "./");
  const bool isCut =
      std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20; }) ||
      text.ends_with(' ') || (style.separator == '\\' && text.find('\\') != std::string::npos);
  if (isCut) return fileUrlOfPath(path);
  if (style.separator == '\\') std::replace(text.begin(), text.end(), '/', '\\');
  return style.scheme + text;
}

std::string toUtf8(string_view bytes, ListEncoding encoding) {
  if (encoding == ListEncoding::utf8) return std::string(bytes);
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    const char16_t special = byte >= 0x80 && byte < 0xA0 ? windowsCharacters[byte - 0x80] : 0;
    appendUtf8(special ? special : byte, text);
  }
  return text;
}

std::string fromUtf8(string_view text, ListEncoding encoding, bool* isWhole) {
  if (encoding == ListEncoding::utf8) return std::string(text);
  std::string bytes;
  while (!text.empty()) {
    const auto first = static_cast<unsigned char>(text.front());
    const size_t size = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    char32_t character = size == 1 ? first : first & (0x7FU >> size);
    for (size_t i = 1; i < std::min(size, text.size()); ++i)
      character = character << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
    text.remove_prefix(std::min(size, text.size()));
    const auto* special = std::find(std::begin(windowsCharacters), std::end(windowsCharacters),
                                    static_cast<char16_t>(character));
    if (character < 0x80 || (character >= 0xA0 && character < 0x100)) {
      bytes += static_cast<char>(character);
    } else if (character < 0x10000 && special != std::end(windowsCharacters)) {
      bytes += static_cast<char>(0x80 + (special - windowsCharacters));
    } else {
      bytes += '?';
      if (isWhole) *isWhole = false;
    }
  }
  return bytes;
}

}  // namespace kestrel
