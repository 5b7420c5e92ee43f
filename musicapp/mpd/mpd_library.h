/// A Music Player Daemon as a music application: the songs of its database, its stored playlists,
/// and a playlist of everything, which it does not have itself.
///
/// Songs and playlists go by their URIs and names: their IDs stay the same until a file is moved or
/// a playlist is renamed. Playlists lie at top level, have names of their own, and are changed
/// where they are (mpd_list_edit.h); what is not in the database stays in them.
///
/// What commands do where their descriptions leave it open:
/// - A file is added by having the server look at it, which it does below its folder of music only.
///   Playlist documents are not added.
/// - A song leaves the database when its file does: tracks cannot be deleted, but when their files
///   have gone to the trash, or come back, the server is asked to look (`filesMoved`).
/// - An empty playlist is made with a song, which is then taken out of it.
/// - One Kestrel at a time changes what servers have. What a broken-off edit left half changed gets
///   its old entries back when the library is opened or changed next (mpd_journal.h).
/// - Each command has taken effect when it returns. One that fails has changed nothing, or its
///   message says that it may have; then the playlist shows here what it was to become.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "musicapp/library_files.h"
#include "musicapp/mpd/mpd_connection.h"
#include "musicapp/mpd/mpd_songs.h"
#include "musicapp/music_application.h"

namespace kestrel {

/// One thread at a time; the lists that it hands out may be read by any, and stay as they are.
class MpdLibrary final : public MusicApplication, public MediaLibrary {
 public:
  /// Reads the library of the first server that answers. Throws LibraryError, and PasswordError
  /// where another password, or one at all, may help.
  MpdLibrary(const std::string& address, const ApplicationServices& services);

  MediaLibrary& library() override { return *this; }
  CommandResult run(const Command& command) override;
  [[nodiscard]] Capabilities capabilities() const override;
  /// Nothing is left for it to commit. Throws LibraryError when the server's songs or playlists
  /// are not as they were read, as far as the whole seconds that it tells show; commands look
  /// again, at the entries of the list that they change.
  std::unique_ptr<kestrel::Batch> beginBatch() override;
  /// As the server has noted them by now.
  std::vector<std::optional<TrackValues>> valuesOf(std::span<const std::uint64_t> tracks) override;
  void filesMoved(std::span<const std::string> paths,
                  const std::function<bool()>& cancelled) override;

  std::shared_ptr<const MediaItems> allMediaItems() override;
  std::shared_ptr<const std::vector<Playlist>> allPlaylists() override;
  std::string mediaFolder() override { return musicFolder_; }
  std::string libraryFile() override { return {}; }
  LibraryIdentity identity() override;
  /// Lists that are likely to stand at the server's limit, which it does not tell.
  std::vector<Message> notes() override;
  bool hasChanged() override;
  void reload() override { read(); }

 private:
  /// Why songs can be given no values of the other sorts.
  [[nodiscard]] Message whyNoOtherValues() const;
  class Batch;
  class Commands;  ///< one operation a command; mpd_commands.cpp

  struct Lists {
    std::shared_ptr<const std::vector<Playlist>> playlists;  ///< first the one of everything
    std::vector<std::uint64_t> fingerprints;                 ///< of their entries, by place
    std::map<std::string, std::string> times;  ///< of the stored ones' last change, by name
  };

  void open();
  void read();
  [[nodiscard]] bool isAsRead(MpdConnection& connection) const;
  void readAgainIfDue() noexcept;
  /// Holds other Kestrels off until it is destroyed, and gives lists that an edit left half changed
  /// their old entries back, after which the library is not as it was read. Nothing when the batch
  /// holds it. Throws LibraryError.
  [[nodiscard]] std::optional<LibraryLock> locked();
  /// For one command: the batch's, if the server has not ended it for idleness, or `own`, which is
  /// made then.
  MpdConnection& connected(std::optional<MpdConnection>& own);
  Lists readLists(MpdConnection& connection, const MpdSongs& songs) const;
  /// The ID, items and number of unknown entries by the URIs.
  static void fill(Playlist& playlist, const std::vector<std::string>& entries,
                   const MpdSongs& songs);
  static std::uint64_t fingerprintOf(const std::vector<std::string>& entries) noexcept;
  /// Whether the files of all songs in that place, by its path below the music, but for those that
  /// were `moved`, are as the server knows them.
  [[nodiscard]] bool isAsKnown(const std::string& place, std::span<const std::string> moved) const;
  /// The path of a file below the folder of music; empty when it is not there.
  [[nodiscard]] std::string uriOf(const std::string& path) const;

  ApplicationServices services_;
  MpdServer server_;
  std::string name_;         ///< whatever its address
  std::string musicFolder_;  ///< without a slash at the end; empty when it is not known
  MpdSongs songs_;
  Lists lists_;
  bool notesValues_ = false;         ///< the server keeps stickers
  bool isStale_ = false;             ///< the server has been asked to look at files
  std::optional<LibraryLock> lock_;  ///< the batch's
  /// The one that a batch keeps from command to command, and when it was last used.
  std::optional<MpdConnection> kept_;
  std::chrono::steady_clock::time_point keptAt_;
};

/// Recognises "mpd:" and what begins with it; finds a server that answers at once.
Application mpdApplication();

}  // namespace kestrel
