/// What a library was, is and should be: the checks around a run.
///
/// While a run is at work, a music application carries out commands, and playlists are what people
/// spend years on: afterwards it must have changed what it was to change and nothing else.
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
#include "history/history.h"
#include "musicapp/media_library.h"
#include "musicapp/music_application.h"

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

/// Throws MessageError when the command failed, naming what it was about.
void requireDone(const CommandResult& result, const std::string& about = {});
/// Carries out a command of a run. Throws MessageError when it fails, naming what it was about.
CommandResult carryOut(const Command& command, MusicApplication& application,
                       const std::string& about = {});

}  // namespace kestrel
