/// How playlist files spell where a track is, read and written.
///
/// Programs write paths or file URLs, from the root or from the playlist's folder, with either
/// slash, and with or without percent signs. What is written in the place of a path follows it in
/// all of this. Paths are bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel {

struct PathStyle {
  std::string scheme;  ///< of a URL with what stands before the path: "file://"; empty for paths
  bool isAbsolute = false;
  bool isEncoded = false;  ///< in percent signs
  bool hasDot = false;     ///< relative ones begin with "./"
  char separator = '/';
  friend bool operator==(const PathStyle&, const PathStyle&) = default;
};

/// A way to read an entry.
struct PathReading {
  std::string path;  ///< absolute and without "." and ".."
  PathStyle style;
};

/// The ways to read an entry of a playlist in `folder`, the likeliest first; none for addresses of
/// other things than files. `isUrl`: whether the format has URLs rather than paths.
std::vector<PathReading> readingsOf(std::string_view text, std::string_view folder, bool isUrl);
/// The first of them, for who is content with it: most entries are paths below the folder.
std::optional<PathReading> likeliestReading(std::string_view text, std::string_view folder,
                                            bool isUrl);

/// An absolute path in a style, as an entry of a playlist in `folder`. Where a line of text cannot
/// hold the path so, it becomes a URL.
std::string spelled(const std::string& path, std::string_view folder, const PathStyle& style);

/// An absolute path without ".", ".." and empty parts.
std::string withoutDots(std::string_view path);

/// The encodings in which playlists come.
enum class ListEncoding : std::uint8_t {
  utf8,
  windows,  ///< 1252, and with it Latin-1
};
std::string toUtf8(std::string_view bytes, ListEncoding encoding);
/// What the encoding does not have becomes "?"; `isWhole`, if given, then becomes false.
std::string fromUtf8(std::string_view text, ListEncoding encoding, bool* isWhole = nullptr);

}  // namespace kestrel
