/// The playlists of a library at one moment, to check afterwards that a run changed what it was to
/// change and nothing else.
///
/// Between the two a music application carried out commands, and playlists are what people spend
/// years on.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "changes/plan.h"
#include "foundation/message.h"
#include "musicapp/media_library.h"

namespace kestrel {

/// Holds no entries, only their fingerprint.
struct PlaylistImage {
  std::string name;
  std::optional<std::uint64_t> folder;
  std::uint64_t entries = 0;
  PlaylistKind kind = PlaylistKind::regular;
  friend bool operator==(const PlaylistImage&, const PlaylistImage&) = default;
};

class LibraryImage {
 public:
  /// Of which playlists the entries count. The application keeps the others itself: whatever adds
  /// or deletes tracks changes them.
  enum class Of : std::uint8_t { all, user };
  explicit LibraryImage(const std::vector<Playlist>& playlists, Of entries = Of::all);
  /// nullptr when there is no such playlist.
  [[nodiscard]] const PlaylistImage* find(std::uint64_t playlist) const;

  /// What the library is to become.
  void expectGone(std::uint64_t playlist) { playlists_.erase(playlist); }
  void expect(std::uint64_t playlist, PlaylistImage image) {
    playlists_.insert_or_assign(playlist, std::move(image));
  }
  /// What is otherwise in the library, as a sentence without full stop; empty when nothing is. The
  /// entries of folders are the application's to keep.
  [[nodiscard]] Message differenceTo(const LibraryImage& found) const;

  friend bool operator==(const LibraryImage&, const LibraryImage&) = default;

 private:
  std::unordered_map<std::uint64_t, PlaylistImage> playlists_;
};

/// The tracks that a plan puts into playlists and that the library does not have.
class MissingTracks {
 public:
  MissingTracks(const Plan& plan, MediaLibrary& library);
  [[nodiscard]] bool has(std::uint64_t track) const { return missing_.contains(track); }

 private:
  std::unordered_set<std::uint64_t> missing_;
};

/// The persistent IDs that several playlists, or several tracks, of a damaged library have.
/// Commands name everything by its ID, and would get hold of another one.
class SharedIDs {
 public:
  explicit SharedIDs(MediaLibrary& library);
  [[nodiscard]] bool has(const Playlist& playlist) const;
  /// The first of these tracks' IDs that is another track's too; nothing when none is.
  [[nodiscard]] std::optional<std::uint64_t> firstAmong(
      std::span<const std::uint64_t> tracks) const;

 private:
  std::vector<std::uint64_t> playlists_, tracks_;  ///< ascending
};

}  // namespace kestrel
