/// Finds the tracks of a folder by what playlists call their files.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "musicapp/folder/folder_library.h"

namespace kestrel {

class FolderLibrary::TrackFinder {
 public:
  /// The items must outlive this.
  explicit TrackFinder(const MediaItems& items);

  /// nullptr when there is none.
  [[nodiscard]] const MediaItem* track(std::uint64_t persistentID);
  /// By an absolute path as it stands.
  [[nodiscard]] const MediaItem* exactly(std::string_view path) const;
  /// As it stands, then with links in its folders followed, then whatever the case of its letters
  /// and the composition of its accents, if only one has it so.
  [[nodiscard]] const MediaItem* at(const std::string& path);

 private:
  /// By their paths, which are put together nowhere.
  struct Path {
    std::string_view folder, name;
    explicit Path(const MediaItem& item)
        : folder(item.locationFolder.view()), name(item.locationName.view()) {}
    explicit Path(std::string_view path)
        : folder(path.substr(0, std::min(path.rfind('/'), path.size()))),
          name(path.substr(std::min(path.rfind('/') + 1, path.size()))) {}
    friend bool operator==(const Path&, const Path&) = default;
  };
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(const Path& path) const noexcept {
      const std::hash<std::string_view> hash;
      return hash(path.name) + 31 * hash(path.folder);
    }
    std::size_t operator()(const MediaItem* item) const noexcept { return (*this)(Path(*item)); }
  };
  struct Equal {
    using is_transparent = void;
    bool operator()(const MediaItem* a, const MediaItem* b) const noexcept {
      return Path(*a) == Path(*b);
    }
    bool operator()(const Path& a, const MediaItem* b) const noexcept { return a == Path(*b); }
    bool operator()(const MediaItem* a, const Path& b) const noexcept { return Path(*a) == b; }
  };

  const MediaItems& items_;
  std::unordered_set<const MediaItem*, Hash, Equal> byPath_;
  // Made on first use.
  std::unordered_map<std::uint64_t, const MediaItem*> byID_;
  /// nullptr where several are alike.
  std::optional<std::unordered_map<std::string, const MediaItem*>> byFolded_;
  std::unordered_map<std::string, std::string> realFolders_;
};

}  // namespace kestrel
