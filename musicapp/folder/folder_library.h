/// A folder of audio files with playlist files as a music application.
///
/// Tracks are the audio files below the folder, in the order of their paths, with what their tags
/// tell; they are never written. Playlists are the playlist files below it (playlist_file.h), named
/// like the files, with the ending where two differ in that alone. Those that lie in a folder below
/// stand in a playlist folder of that name, such as "Artist/Album": one deep, so that every one of
/// them can be chosen and changed. IDs go by the path within the folder: moved as a whole, it keeps
/// them. Its `id` for the history is the folder's own number and birth on its disk, which it keeps
/// when it is moved or renamed there.
///
/// Addresses are the folder's path, or "folder:///PATH?playlists=/PATH&playlists=...", percent
/// signs as in other URLs, which names folders elsewhere for further playlists.
///
/// What commands do where their descriptions leave it open:
/// - A track is removed by moving its file to the trash, not by a command. Files come into the
///   library by lying in the folder, when it is read again.
/// - A changed entry is spelled like the one that it replaces, an added one like its neighbours.
/// - A new playlist lies in the folder itself; a moved one has another ID, as its path is another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "musicapp/edited_library.h"
#include "musicapp/folder/folder_walk.h"
#include "musicapp/folder/list_commit.h"
#include "musicapp/folder/playlist_file.h"
#include "musicapp/folder/playlist_paths.h"
#include "musicapp/library_commit.h"
#include "musicapp/library_files.h"
#include "musicapp/synthetic.h"
#include "musicapp/unread_playlists.h"

namespace kestrel {

class ListIndex;

/// One thread at a time; the lists that it hands out may be read by any, and stay as they are.
class FolderLibrary final : public EditedLibrary, public UnreadPlaylists {
 public:
  /// Throws LibraryError when there is no such folder, it holds no audio, or the watch cancels.
  FolderLibrary(const std::string& address, const ApplicationServices& services,
                CommitOptions options = {});
  ~FolderLibrary() override;

  [[nodiscard]] Capabilities capabilities() const override;
  [[nodiscard]] Message reasonNotToChange(std::uint64_t playlist) override;

  std::shared_ptr<const MediaItems> allMediaItems() override { return items_; }
  std::shared_ptr<const std::vector<Playlist>> allPlaylists() override { return playlists_; }
  std::string mediaFolder() override { return root_; }
  /// Its files have no one among them that says when the library was written.
  std::string libraryFile() override { return {}; }
  LibraryIdentity identity() override;
  std::vector<Message> notes() override { return notes_; }
  std::vector<std::string> unreadPlaylists() override { return unread_; }
  /// By the times of all folders and playlist files. Songs whose tags were edited in place show it
  /// in their files alone, of which there may be very many: each call looks at as many as it can in
  /// some hundredths of a second, and the next goes on from there. Before a file goes to the trash,
  /// and before a list is written, those at hand are looked at in any case.
  bool hasChanged() override;
  bool isFileAsRead(const MediaItem& item) override;
  void filesMoved(std::span<const std::string> paths,
                  const std::function<bool()>& cancelled) override;
  /// Walks the folder, and reads what has changed. Throws LibraryError, with nothing changed, while
  /// there are changes that are not on the disk.
  void reload() override;

 private:
  /// Why its tracks can be given no values.
  static Message whyNoValues();
  class Commands;  ///< one operation a command; folder_commands.cpp
  class TrackFinder;

  /// A playlist file by its path, and in which state it was read.
  struct ListFile {
    std::string path;
    std::optional<FileStatus> status;  ///< nothing for one that is still to be made
  };
  /// An entry of a playlist that is changed.
  struct Entry {
    std::size_t from = PlaylistSlot::added;  ///< in the file
    std::uint64_t track = 0;                 ///< 0 when the library does not have it
    std::uint64_t then = 0;                  ///< the track of the file's entry
    PathStyle style;
    std::string path;  ///< likeliest, of one whose track the library does not have
  };
  struct EditedList {
    ListFile then;  ///< without a path: a new one
    std::string bytes;
    std::unique_ptr<PlaylistFile> file;
    std::vector<Entry> entries;
    std::optional<PathStyle> style;  ///< of the first entry whose track is known
  };

  void read();
  void clearLeftovers();
  /// Without an index, opens one.
  void readLists(std::unique_ptr<ListIndex> index = nullptr);
  [[nodiscard]] std::vector<Entry> entriesOf(const ListedPaths& listed, const std::string& path);
  [[nodiscard]] TrackFinder& finder();
  /// The path by which a playlist is known, its folder's within that, and its ID.
  [[nodiscard]] std::string uriOf(const std::string& listPath) const;
  [[nodiscard]] std::string pathOfUri(const std::string& uri) const;
  [[nodiscard]] Playlist playlistOf(const std::string& path, const std::vector<Entry>& entries);
  /// Gives a playlist the items that entries say.
  static void show(const std::vector<Entry>& entries, Playlist& list);
  /// Of a list that does not lie at the top: its folder within that; else empty.
  [[nodiscard]] std::string folderWithin(const std::string& listPath) const;
  [[nodiscard]] std::uint64_t folderOf(const std::string& listPath);
  static void tellApart(std::vector<Playlist>& playlists, std::span<const ListFile> lists);
  static void fill(std::vector<Playlist>& playlists);

  void lock() override;
  CommandResult execute(const Command& command) override;
  bool revert(std::string_view reversal) override;
  [[nodiscard]] const std::string& place() const override { return root_; }
  void checkUnchanged() const;
  /// The playlists, to be changed.
  std::vector<Playlist>& ownPlaylists();
  /// To be called before anything of a playlist is changed. Throws LibraryError.
  EditedList& edit(std::size_t playlist);
  /// Has the lists show what was done to the entries.
  void showEntries(std::size_t playlist);
  void remove(std::size_t playlist);
  [[nodiscard]] std::string written(const EditedList& list, const std::string& path);
  [[nodiscard]] std::vector<ListChange> changes();
  [[nodiscard]] bool hasOtherSongs();
  void checkSongs();
  [[nodiscard]] bool isChanged() const override { return !edited_.empty() || !removed_.empty(); }
  void commit(const Batch::Record& record) override;
  void fillFolders();
  /// As it was listed; nullptr of one that was not.
  FileStatus* knownFolder(const std::string& path);
  /// Those of the lists that none has changed since they were listed.
  [[nodiscard]] std::vector<std::string> unchangedFoldersOf(std::span<const ListChange> changes);
  /// What they hold by now is this program's doing.
  void takeFolders(std::span<const std::string> folders);
  void rollBack() override;

  ApplicationServices services_;
  CommitOptions options_;
  std::string root_;                ///< a real path
  std::vector<std::string> roots_;  ///< and the folders with further playlists

  FolderListing contents_;
  std::string id_, version_;
  std::vector<Message> notes_;
  std::vector<std::string> unread_;  ///< paths of playlist files that cannot be read
  std::size_t notesOfTracks_ = 0;    ///< the others are of playlists
  std::shared_ptr<const MediaItems> items_;
  std::shared_ptr<const std::vector<Playlist>> playlists_;
  std::size_t nextLooked_ = 0;   ///< the song at which `hasChanged` goes on
  std::vector<ListFile> lists_;  ///< by place among the playlists; without a path: no file
  DerivedIDs listIDs_{"playlist"}, folderIDs_{"folder"};
  std::unique_ptr<TrackFinder> finder_;  ///< while there is a use for it

  std::map<std::size_t, EditedList> edited_;  ///< by place, since the last commit
  std::vector<EditedList> removed_;
  std::optional<std::vector<ListChange>> reversion_;  ///< to be carried out by the next commit
  std::shared_ptr<const std::vector<Playlist>> committed_;  ///< as on the disk, while edited
  std::vector<ListFile> committedLists_;
};

/// Recognises existing folders. Finds the user's music folder, if it has audio files.
Application folderApplication();

}  // namespace kestrel
