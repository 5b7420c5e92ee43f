/// The playlists in the main window: two pop-up menus, what is chosen in them, and the outline.
///
/// The main pop-up says which playlist a search works in: the whole library, then the tree of
/// folders and playlists. The target pop-up offers the user's ordinary playlists as a destination.
/// Beside each stands an array whose entry N is the playlist shown as item N.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "library/playlist_catalogue.h"
#include "ui/geometry.h"
#include "ui/models/outline_model.h"
#include "ui/models/popup_menu.h"
#include "ui/models/view_models.h"

namespace kestrel {

using PlaylistPopup = PopupMenu<PlaylistRecord>;

/// What a playlist is called where people read it: the whole library in the user's language.
Message shownName(const PlaylistRecord& playlist);

/// The parts of the main window that show playlists. They live as long as the process, so that its
/// tasks reach them: `process().state<PlaylistWindowReferences>()`.
struct PlaylistWindowReferences {
  OutlineModel<PlaylistRecord> playlistsOutlineView;  ///< and its `playlistTreeController`
  PlaylistPopup mainPlaylistPopup;
  PlaylistPopup selectionToHookPlaylistPopup;
  StatusLabel mainFilterStatus;  ///< hidden while playlists are refreshed
  ProgressBar mainProgressWheel;
  StatusText progressWheelStatusMain;
};

/// All operations are called by tasks of the main queue, but for `formatPlaylists`,
/// `buildDatasource`, `getFolders` and `decToHex`, which any one thread may call while no other
/// uses the controller. It must outlive the tasks that it posts.
class KSPlaylistController {
 public:
  /// An entry of a parallel array; nullptr in the place of a separator.
  using Entry = std::shared_ptr<const PlaylistRecord>;

  /// Gives item 0 of the main pop-up, if it has one already, the library's icon.
  void awakeFromNib() const;

  // The main pop-up.

  /// Rebuilds the main pop-up from the stored playlists, restores what was chosen, and posts the
  /// outline's new content. A stored choice that is gone shows as item 2.
  void fillPlaylistPopup();
  /// Reads the library's playlists again on the background queue, then rebuilds the main pop-up;
  /// what goes on is shown meanwhile.
  void actionPlaylistPopup();
  /// Has `actionPlaylistPopup` run by the main queue, without waiting.
  void refreshPopup();
  /// `decpid` of the chosen playlist. std::out_of_range when nothing is chosen: ask only once the
  /// menu is filled.
  [[nodiscard]] std::string getPIDFromList() const;
  /// The same of the whole record.
  [[nodiscard]] PlaylistRecord returnSelectedPopupItem() const;
  /// The names of the user's ordinary playlists, in catalogue order.
  [[nodiscard]] std::vector<std::string> userPlaylistNames() const;

  void insertNewItem(const PlaylistRecord& record, std::string_view keyEquivalent);
  /// The icon is drawn at the right end of a canvas of this size.
  void addNewItem(const PlaylistRecord& record, const Size& iconSize);
  /// Does nothing behind another separator.
  void insertMenuSeparator();
  /// Adds the rows and what they hold, from level 1 on.
  void fillUpThePopup(std::span<const OutlineRow> rows, int level);

  // The target pop-up.

  /// Fills the target pop-up behind the items that it has (the caller has emptied it), restores
  /// what was chosen, and stores what is chosen then.
  void buildUserPopup();
  /// `hexpid` of the chosen playlist. std::out_of_range when nothing is chosen.
  [[nodiscard]] std::string pidFromSelectedPopup() const;
  void addNewSelItem(const PlaylistRecord& record, const Size& iconSize);
  /// The same as in the main pop-up, without empty folders.
  void fillSelectPopup(std::span<const OutlineRow> rows, int level);

  // Catalogue and outline.

  /// The catalogue of the stored playlists, in catalogue order.
  [[nodiscard]] std::vector<PlaylistRecord> formatPlaylists() const;

  /// Fills `childPlaylists` and `thePlaylistDataSource` from catalogue records; see
  /// `playlistOutline`.
  void buildDatasource(std::span<const PlaylistRecord> records);

  /// The children of the folder with this decimal ID, each with its own, recursively. In a damaged
  /// library, where folders may share an ID or contain themselves, each ID is opened once.
  [[nodiscard]] std::vector<OutlineRow> getFolders(std::string_view decpid) const;

  static IconDrawing resizeImage(const Size& icon, const Size& canvas) noexcept {
    return menuIconDrawing(icon, canvas);
  }
  static std::string decToHex(std::uint64_t number);

  // The containers, empty at first.

  [[nodiscard]] const std::vector<Entry>& playlistsArray() const { return playlistsArray_; }
  [[nodiscard]] const std::vector<PlaylistRecord>& formattedPlaylists() const {
    return formattedPlaylists_;
  }
  /// The top level of the tree.
  [[nodiscard]] const std::vector<OutlineRow>& thePlaylistDataSource() const {
    return *thePlaylistDataSource_;
  }
  /// What the target pop-up offers.
  [[nodiscard]] const std::vector<OutlineRow>& collection() const { return collection_; }
  [[nodiscard]] const std::vector<Entry>& selPlaylistsArray() const { return selPlaylistsArray_; }
  /// All playlists inside a folder: genius, folders, smart, user.
  [[nodiscard]] const SharedRecords<PlaylistRecord>& childPlaylists() const {
    return childPlaylists_;
  }
  /// Kept for those who choose playlists; the menus do not look at it.
  [[nodiscard]] std::string& lastSelectedPlaylist() { return lastSelectedPlaylist_; }

 private:
  void addItem(Entry record, std::string_view keyEquivalent, const Size& iconSize);
  void restoreMainChoice();

  std::vector<Entry> playlistsArray_;
  std::vector<PlaylistRecord> formattedPlaylists_;
  std::shared_ptr<const std::vector<OutlineRow>> thePlaylistDataSource_ =
      std::make_shared<const std::vector<OutlineRow>>();
  std::vector<OutlineRow> collection_;
  std::vector<Entry> selPlaylistsArray_;
  SharedRecords<PlaylistRecord> childPlaylists_;
  std::string lastSelectedPlaylist_;
};

}  // namespace kestrel
