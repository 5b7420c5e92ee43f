/// Playlist files (M3U, PLS, XSPF), taken apart so that single entries can be changed.
///
/// What is not touched stays byte for byte as it was: order, comments, elements that are not known
/// here, line ends, encoding and byte order mark. Of a changed entry, only its path and what the
/// file says of the track beside it (title, length ...) are written anew.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel {

/// A track as a playlist describes it; texts in UTF-8, empty where it has none.
struct ListedTrack {
  std::string location;  ///< as the entry is to spell it
  std::string title, artist, album;
  std::int64_t milliseconds = 0;
};

/// An entry of the playlist that is written.
struct PlaylistSlot {
  static constexpr std::size_t added = SIZE_MAX;
  std::size_t from = added;           ///< the entry of the file that it is, or replaces
  const ListedTrack* now = nullptr;   ///< what comes in its place; nullptr: it stays
  const ListedTrack* then = nullptr;  ///< what stood there, if that is known
  bool onlyLocation = false;          ///< the same track under another path
};

/// The entries of a playlist file, as far as finding their tracks goes.
struct ListedPaths {
  struct Spelling {
    std::string text;     ///< as the file has it
    std::string decoded;  ///< in UTF-8; empty where that is the same
  };
  std::vector<Spelling> entries;
  bool areUrls = false;
};

class PlaylistFile {
 public:
  /// Whether a file's name is that of a playlist.
  static bool isName(std::string_view name) noexcept;
  /// Throws LibraryError, in the name of `path`, for what is no such file.
  static std::unique_ptr<PlaylistFile> read(const std::string& path, std::string bytes);
  /// The bytes of one without entries.
  static std::string empty(std::string_view path);

  PlaylistFile(const PlaylistFile&) = delete;
  PlaylistFile& operator=(const PlaylistFile&) = delete;
  virtual ~PlaylistFile() = default;

  /// Where the tracks are, in the file's spelling. Of M3U and PLS in whatever encoding the file
  /// has; `decoded` turns them into UTF-8.
  [[nodiscard]] const std::vector<std::string>& entries() const noexcept { return entries_; }
  [[nodiscard]] virtual std::string decoded(std::string_view text) const;
  [[nodiscard]] ListedPaths listed() const;
  /// Whether a path can be written as it is, in the place of an entry or as an added one.
  [[nodiscard]] virtual bool canHold(const std::string& location, std::size_t entry) const;
  [[nodiscard]] virtual bool hasUrls() const noexcept { return false; }

  /// The file with these entries. Those that are of the file keep their order.
  [[nodiscard]] virtual std::string written(std::span<const PlaylistSlot> slots) const = 0;

 protected:
  explicit PlaylistFile(std::string bytes) : bytes_(std::move(bytes)) {}

  std::string bytes_;
  std::vector<std::string> entries_;
};

// For the formats.

std::unique_ptr<PlaylistFile> readM3u(std::string bytes, bool isUtf8);
std::unique_ptr<PlaylistFile> readPls(std::string bytes);
std::unique_ptr<PlaylistFile> readXspf(const std::string& path, std::string bytes);

/// The one text that says what a track is: "Artist - Title", or only its title where the text of
/// the earlier track was that.
std::string describedTrack(std::string_view earlier, const PlaylistSlot& slot);
/// Its length as a text in seconds; programs that never know it write the same for all.
std::string describedLength(std::string_view earlier, const ListedTrack& track);

}  // namespace kestrel
