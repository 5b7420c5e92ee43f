/// Tracks that a run added to the library: how to know them again, and whether they are still as
/// they came.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "history/history.h"
#include "musicapp/media_library.h"

namespace kestrel {

/// Stands for what a user may change about a track: the texts, rating, counts, numbers and path.
std::uint64_t fingerprintOf(const MediaItem& item) noexcept;

/// The tracks of such a run in the library of today. Made by one pass over tracks and playlists.
class AddedTracks {
 public:
  AddedTracks(std::span<const FileChange> changes, MediaLibrary& library);

  [[nodiscard]] bool isThere(const FileChange& change) const {
    return found_.contains(change.track);
  }
  /// Why the track must stay, as a sentence without full stop; empty when it is as it was added.
  /// One that a playlist of the user's lists by now has become a part of the user's work.
  [[nodiscard]] Message difference(const FileChange& change) const;

 private:
  struct Found {
    std::uint64_t fingerprint = 0;
    std::string playlist;  ///< the first that lists it
    std::size_t playlists = 0;
  };
  std::unordered_map<std::uint64_t, Found> found_;
};

}  // namespace kestrel
