/// Finds the tracks of a folder by what playlists call their files.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>

#include "musicapp/folder/folder_library.h"

namespace kestrel {

class FolderLibrary::TrackFinder {
 public:
  explicit TrackFinder(const MediaItems& items);

  /// nullptr when there is none.
  [[nodiscard]] const MediaItem* track(std::uint64_t persistentID) const;
  /// By an absolute path: as it stands, then with links in its folders followed, then whatever the
  /// case of its letters and the composition of its accents, if only one has it so.
  [[nodiscard]] const MediaItem* at(const std::string& path);

 private:
  [[nodiscard]] const MediaItem* exactly(const std::string& path) const;

  std::unordered_map<std::string, const MediaItem*> byPath_;
  std::unordered_map<std::uint64_t, const MediaItem*> byID_;
  /// nullptr where several are alike. Made on first use.
  std::optional<std::unordered_map<std::string, const MediaItem*>> byFolded_;
  std::unordered_map<std::string, std::string> realFolders_;
};

}  // namespace kestrel
