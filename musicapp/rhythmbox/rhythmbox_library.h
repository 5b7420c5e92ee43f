/// The library of Rhythmbox. Addresses are "rhythmbox:", for the folder where it keeps its data,
/// and "rhythmbox:FOLDER".
///
/// Tracks are read from its file "rhythmdb.xml", which the player writes now and then while it
/// runs, so that play counts and ratings of today may be missing; `valuesOf` asks the player. Its
/// lists are those of "playlists.xml", or what the running player says that they hold by now.
///
/// - Lists that fill themselves are empty here: the file has their rules, and the running player
///   cannot be asked for one that holds nothing without its opening a window. Songs that it has
///   taken in since it wrote its file show where Kestrel added them, or a list that the user fills
///   has them.
/// - A batch changes lists in memory. Committing it writes playlists.xml, with a numbered backup,
///   or has the running player change its lists. The player is never started.
/// - What tracks are given is written into rhythmdb.xml likewise, or the running player takes it,
///   but for comments, which it would write into the audio file.
/// - Only lists that the user fills are changed, and a list never holds a track twice. There are no
///   folders. The play queue is none of the playlists.
/// - The running player cannot take an entry that has no file back in. A change that would move one
///   is refused while it runs, and is possible when it does not.
/// - What the running player is to do is written down first, in the application-support folder
///   ("Rhythmbox/HASH.xml"). If this program ends meanwhile, the next to open the library gives the
///   lists their old entries back, and keeps what was added since.
/// - Tracks are not removed: the player hides those without a file and forgets them in time. It
///   takes new files only while it runs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "musicapp/edited_library.h"
#include "musicapp/library_commit.h"
#include "musicapp/library_files.h"
#include "musicapp/rhythmbox/player_tracks.h"
#include "musicapp/rhythmbox/player_values.h"
#include "musicapp/rhythmbox/playlists_file.h"
#include "musicapp/rhythmbox/running_player.h"

namespace kestrel {

/// One thread at a time; the lists that it hands out may be read by any, and stay as they are.
class RhythmboxLibrary final : public EditedLibrary {
 public:
  /// `folder` is an absolute path. Throws LibraryError when the library cannot be read.
  RhythmboxLibrary(std::string folder, const ApplicationServices& services,
                   CommitOptions options = {});

  [[nodiscard]] Capabilities capabilities() const override;
  /// Of a list, in a file that another program has written, which could not be given back.
  [[nodiscard]] Message reasonNotToChange(std::uint64_t playlist) override;

  std::vector<std::optional<TrackValues>> valuesOf(std::span<const std::uint64_t> tracks) override;

  std::shared_ptr<const MediaItems> allMediaItems() override;
  std::shared_ptr<const std::vector<Playlist>> allPlaylists() override;
  std::string mediaFolder() override { return {}; }
  /// The file of the lists, which says when they were changed; none while the player runs, which
  /// has changed them when it answers and writes the file in its own time.
  std::string libraryFile() override { return isLive_ ? std::string() : playlistsPath_; }
  LibraryIdentity identity() override;
  /// That lists which fill themselves show nothing.
  std::vector<Message> notes() override;
  bool hasChanged() override;
  void reload() override;

 private:
  class Commands;  ///< one operation a command; rhythmbox_commands.cpp
  [[nodiscard]] TrackValueSet takenValues() const;
  using IDs = std::vector<std::uint64_t>;
  using Uris = std::vector<std::string>;

  struct List {
    std::uint64_t id = 0;
    std::string name;
    bool isAutomatic = false;
    IDs entries;                        ///< also of what is no track of the library
    std::optional<std::size_t> stored;  ///< its place among those of the file
    bool hasNamesake = false;           ///< in the running player, which knows lists by name alone
  };
  /// A list that a commit changes.
  struct Change {
    const List* before = nullptr;  ///< nullptr: it is made
    const List* after = nullptr;   ///< nullptr: it is deleted
  };

  // Reading.

  void read();
  rhythmbox::PlayerTracks& tracks();
  [[nodiscard]] std::vector<List> readLists();
  [[nodiscard]] bool isAsWritten(const FileStatus& playlists);
  [[nodiscard]] bool hasOtherSongs(const FileStatus& database);
  void showRunning(std::vector<List>& lists);
  [[nodiscard]] bool mayShow(const List& list);
  void takeShown(List& list, const IDs& shown);
  [[nodiscard]] bool isMissing(std::uint64_t entry);
  void setLists(std::vector<List> lists);
  [[nodiscard]] Playlist playlistOf(const List& list);
  [[nodiscard]] bool playerRuns();
  [[nodiscard]] bool isRunning() { return isUsual_ && playerRuns(); }
  [[nodiscard]] Uris urisOf(const IDs& entries, bool withHidden = true) const;
  [[nodiscard]] IDs idsOf(const Uris& uris);
  [[nodiscard]] std::uint64_t newListID(const std::string& type, const std::string& name,
                                        std::size_t namesakes);

  // Changing.

  /// To be called before anything of `lists_` is changed; locks. Throws LibraryError.
  void change();
  void lock() override;
  CommandResult execute(const Command& command) override;
  [[nodiscard]] bool isChanged() const override { return changed_; }
  [[nodiscard]] const std::string& place() const override { return playlistsPath_; }
  void checkUnchanged();
  void commit(const Batch::Record& record) override;
  [[nodiscard]] std::vector<Change> changes() const;
  void commitValues();
  void giveToPlayer();
  void recall(std::string_view reversal) override;
  void commitToFile(const std::vector<Change>& changes, const Batch::Record& record);
  /// Whether bytes are the file with these changes.
  [[nodiscard]] bool reads(const std::string& bytes, const std::vector<Change>& changes) const;
  void commitToPlayer(const std::vector<Change>& changes);
  /// Throws LibraryError when the running player would lose an entry, or has other ones by now.
  void checkPossible(const std::vector<Change>& changes);
  /// Why it would lose one, or cannot be told from another; empty when the list can be changed.
  [[nodiscard]] Message reasonAgainst(const Change& change, const Uris& names);
  void carryOut(const std::vector<Change>& changes);
  void rollBack() override;
  [[nodiscard]] std::string journalPath() const;
  /// The URIs of songs that Kestrel had the player take in, and that its file may not have yet; in
  /// the application-support folder, beside the journal.
  [[nodiscard]] std::string addedPath() const;
  [[nodiscard]] Uris addedUris() const;
  void keepAdded(const std::string& uri);
  /// Carries out what a journal says, if there is one. The lock is held. Throws LibraryError.
  void restoreBroken();
  [[noreturn]] void fail(Message problem, Message remedy) const;
  static Message closePlayer();

  std::string folder_, databasePath_, playlistsPath_;
  ApplicationServices services_;
  CommitOptions options_;
  rhythmbox::RunningPlayer player_;

  bool isUsual_ = false;  ///< the folder is one where a player of this user keeps its data
  bool isLive_ = false;   ///< that player ran when this was read
  std::optional<FileStatus> databaseStatus_, playlistsStatus_;
  /// Which states of the files, written by the running player, have nothing new.
  std::optional<FileStatus> knownDatabase_, knownPlaylists_;
  DerivedIDs ids_{"track"};  ///< of tracks, and of entries that are none
  DerivedIDs listIDs_{"playlist"};
  std::unique_ptr<rhythmbox::PlayerTracks> tracks_;  ///< none: to be read
  /// Taken by the running player since it wrote its file.
  std::map<std::string, std::map<std::string, std::string>> loaded_;
  std::unordered_set<std::uint64_t> hidden_;  ///< entries that the player has but does not show
  rhythmbox::PlaylistsFile stored_;
  std::map<std::uint64_t, rhythmbox::FormerList> former_;  ///< before what is taken back, by ID
  std::vector<List> kept_, lists_;  ///< as they are in the player, or the file; and with changes
  std::shared_ptr<std::vector<Playlist>> shown_;
  std::set<std::size_t> unshown_;  ///< lists that `shown_` has otherwise

  GivenValues given_;  ///< by the open batch
  GivenValues taken_;  ///< by the running player, whose file may not say so yet
  std::shared_ptr<const MediaItems> items_;  ///< with these; none: to be made

  bool changed_ = false;
};

Application rhythmboxApplication();

}  // namespace kestrel
