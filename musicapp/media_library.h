/// The read-only side of a music application: all its items and all its playlists.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/message.h"
#include "musicapp/library_identity.h"
#include "musicapp/media_item.h"

namespace kestrel {

/// All items of a library at one moment, in library order. Immutable once published, shared by
/// all who still show an item; owns the texts.
class MediaItems {
 public:
  /// A good size for blocks of many items.
  static constexpr std::size_t itemsPerBlock = 1024;

  /// Appends a block of items whose texts lie in pools of this object.
  void append(std::vector<MediaItem> block) {
    size_ += block.size();
    blocks_.push_back(std::move(block));
  }
  /// Makes a pool that lives as long as this object. One filling thread a pool.
  TextPool& newPool() { return pools_.emplace_back(); }
  /// A copy of a foreign item, its texts stored here, appended as the last item.
  const MediaItem& appendCopy(const MediaItem& item);

  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  /// Calls `edit(std::vector<MediaItem>&)` for each block; it may change and remove items.
  template <typename Edit>
  void editBlocks(Edit&& edit) {
    size_ = 0;
    for (auto& block : blocks_) {
      edit(block);
      size_ += block.size();
    }
  }
  /// Calls `visit(const MediaItem&)` for each item in library order.
  template <typename Visit>
  void forEach(Visit&& visit) const {
    for (const auto& block : blocks_)
      for (const MediaItem& item : block) visit(item);
  }
  /// Ends filling: gives back what only filling needs.
  void seal();
  /// Bytes taken for items and texts.
  [[nodiscard]] std::size_t memory() const noexcept;

 private:
  std::deque<TextPool> pools_;
  std::deque<std::vector<MediaItem>> blocks_;
  std::size_t size_ = 0;
};

/// The interface's numbers of a playlist's `kind`.
enum class PlaylistKind : std::uint8_t { regular = 0, smart = 1, genius = 2, folder = 3 };

struct Playlist {
  std::string name;
  std::uint64_t persistentID = 0;
  std::optional<std::uint64_t> parentID;
  std::vector<std::uint64_t> items;  ///< persistent IDs, in playlist order, repeats included
  std::int64_t distinguishedKind = 0;
  PlaylistKind kind = PlaylistKind::regular;
  bool isMaster = false;
  bool isVisible = true;
  /// Of each entry that names a track which the library does not have, in order, how many of the
  /// items stand before it; `items` is without them.
  std::vector<std::uint64_t> unknownAt;
  [[nodiscard]] std::uint64_t unknownItems() const noexcept { return unknownAt.size(); }
};

/// What the snapshot reads. Both lists are immutable and shared: a later `reload` makes new ones
/// and leaves those that are still held as they are.
class MediaLibrary {
 public:
  MediaLibrary() = default;
  MediaLibrary(const MediaLibrary&) = delete;
  MediaLibrary& operator=(const MediaLibrary&) = delete;
  virtual ~MediaLibrary() = default;

  /// All items of every media kind, in library order.
  virtual std::shared_ptr<const MediaItems> allMediaItems() = 0;
  /// All playlists, in library order.
  virtual std::shared_ptr<const std::vector<Playlist>> allPlaylists() = 0;
  /// Where the application keeps its media and its library file; empty when it does not say.
  virtual std::string mediaFolder() = 0;
  virtual std::string libraryFile() = 0;
  /// Of the library as `allMediaItems` and `allPlaylists` show it, but for what is not durable yet.
  virtual LibraryIdentity identity() { return {}; }
  /// What people are to know of the last reading: what was left out of the library, and why.
  virtual std::vector<Message> notes() { return {}; }
  /// Whether `reload` would find what another program has changed since the library was read: its
  /// songs or playlists, or that it can be written now. For a notice: it asks for times and sizes,
  /// not for contents, so it takes milliseconds and sees what those tell; what this program itself
  /// does is no change. A library that cannot be reached now counts as unchanged. Reads and changes
  /// nothing that others see; on the thread that has the library, like all else. Never throws.
  virtual bool hasChanged() { return false; }
  /// Whether the file of an item is, by its size and time, what it was when this library read its
  /// tags. True for libraries that have what they say of songs from elsewhere. Never throws.
  virtual bool isFileAsRead(const MediaItem& item) {
    static_cast<void>(item);
    return true;
  }
  /// Reads the library again if it may have changed. Throws LibraryError and keeps the earlier
  /// lists when it cannot be read.
  virtual void reload() = 0;
};

}  // namespace kestrel
