#include "ui/playlist_menus.h"

#include <algorithm>
#include <exception>
#include <stdexcept>

#include "foundation/identifiers.h"
#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/settings.h"
#include "ui/launch.h"
#include "ui/process.h"

namespace kestrel {
namespace {

PlaylistWindowReferences& window() { return process().state<PlaylistWindowReferences>(); }

/// Wider canvases indent what lies in folders. Playlists take 17 points, "4" lists 16.
Size iconSizeFor(const PlaylistRecord& record, int level) {
  const double height = record.ptype == "4" ? 16 : 17;
  return {level == 1 ? height : 10.0 * level, height};
}

PopupItem<PlaylistRecord> itemFor(const PlaylistRecord& record, const Size& size) {
  PopupItem<PlaylistRecord> item;
  item.title = record.pnom;
  item.icon = {record.playlistIcon, size.width, size.height};
  return item;
}

/// The record beside the chosen item.
const PlaylistRecord* chosen(const PlaylistPopup& popup,
                             const std::vector<KSPlaylistController::Entry>& entries) {
  const auto index = popup.selectedIndex();
  return index && *index < entries.size() ? entries[*index].get() : nullptr;
}

const PlaylistRecord& required(const PlaylistRecord* record) {
  if (!record) throw std::out_of_range("no playlist is chosen in the menu");
  return *record;
}

}  // namespace

Message shownName(const PlaylistRecord& playlist) {
  return playlist.ptype == "0" ? Message::tr("Whole library") : Message::verbatim(playlist.pnom);
}

void KSPlaylistController::awakeFromNib() const {
  window().mainPlaylistPopup.setIcon(0, {"4", 16, 16});
}

void KSPlaylistController::fillPlaylistPopup() {
  PlaylistPopup& popup = window().mainPlaylistPopup;
  const PlaylistPopup::Update update(popup);
  popup.removeAllItems();
  playlistsArray_.clear();
  formattedPlaylists_ = formatPlaylists();
  const auto library =
      std::find_if(formattedPlaylists_.begin(), formattedPlaylists_.end(),
                   [](const PlaylistRecord& record) { return record.ptype == "0"; });
  if (library != formattedPlaylists_.end()) insertNewItem(*library, "M");
  insertMenuSeparator();
  buildDatasource(formattedPlaylists_);
  process().with.mainQueue.post(
      [content = thePlaylistDataSource_] { window().playlistsOutlineView.setContent(content); });
  fillUpThePopup(*thePlaylistDataSource_, 1);
  restoreMainChoice();
}

void KSPlaylistController::restoreMainChoice() {
  PlaylistPopup& popup = window().mainPlaylistPopup;
  Preferences& preferences = process().with.preferences;
  // Never set at all is not the same as set to "": then nothing is stored.
  const bool set = preferences.contains(settings::selectedPlaylistPid);
  const std::string wanted = preferences.text(settings::selectedPlaylistPid);
  if (set && wanted.empty()) {
    // A pop-up shows its first item by itself: the library, or else the first playlist.
    if (const PlaylistRecord* first = chosen(popup, playlistsArray_))
      preferences.set(settings::selectedPlaylistPid, first->decpid);
    return;
  }
  const auto found =
      std::find_if(playlistsArray_.begin(), playlistsArray_.end(),
                   [&](const Entry& entry) { return entry && entry->decpid == wanted; });
  // A playlist that is gone may come back, so the setting stays. What is searched meanwhile is the
  // first playlist below the separator, not the whole library.
  constexpr std::size_t firstPlaylist = 2;
  popup.selectItem(found == playlistsArray_.end()
                       ? firstPlaylist
                       : static_cast<std::size_t>(found - playlistsArray_.begin()));
}

void KSPlaylistController::actionPlaylistPopup() {
  const auto refresh = [this] {
    TaskQueue& mainQueue = process().with.mainQueue;
    mainQueue.post([] {
      PlaylistWindowReferences& shown = window();
      shown.mainFilterStatus.setHidden(true);
      shown.mainProgressWheel.setIndeterminate(true);
      shown.mainProgressWheel.setHidden(false);
      shown.mainProgressWheel.startAnimation();
      shown.progressWheelStatusMain.setText(Message::tr("Refreshing playlists..."));
    });
    try {
      TextSorter::refreshPlaylists();
    } catch (const std::exception& error) {
      // Of little memory, say: the menus then show what there is.
      process().with.log.line(error.what());
    }
    mainQueue.post([this] { fillPlaylistPopup(); });
    mainQueue.post([] {
      PlaylistWindowReferences& shown = window();
      shown.mainProgressWheel.stopAnimation();
      shown.mainProgressWheel.setHidden(true);
      shown.mainProgressWheel.setIndeterminate(false);
      shown.progressWheelStatusMain.setText({});
      shown.mainFilterStatus.setHidden(false);
    });
  };
  if (TaskQueue* background = process().with.backgroundQueue)
    background->post(refresh);
  else
    refresh();
}

void KSPlaylistController::refreshPopup() {
  process().with.mainQueue.post([this] { actionPlaylistPopup(); });
}

std::string KSPlaylistController::getPIDFromList() const {
  return required(chosen(window().mainPlaylistPopup, playlistsArray_)).decpid;
}

PlaylistRecord KSPlaylistController::returnSelectedPopupItem() const {
  return required(chosen(window().mainPlaylistPopup, playlistsArray_));
}

std::vector<std::string> KSPlaylistController::userPlaylistNames() const {
  std::vector<std::string> names;
  for (const PlaylistRecord& record : formattedPlaylists_)
    if (record.ptype == "u") names.push_back(record.pnom);
  return names;
}

void KSPlaylistController::addItem(Entry record, std::string_view keyEquivalent,
                                   const Size& iconSize) {
  auto item = itemFor(*record, iconSize);
  item.keyEquivalent = keyEquivalent;
  item.representedObject = record;
  playlistsArray_.push_back(std::move(record));
  window().mainPlaylistPopup.addItem(std::move(item));
}

void KSPlaylistController::insertNewItem(const PlaylistRecord& record,
                                         std::string_view keyEquivalent) {
  addItem(std::make_shared<const PlaylistRecord>(record), keyEquivalent, {16, 16});
}

void KSPlaylistController::addNewItem(const PlaylistRecord& record, const Size& iconSize) {
  addItem(std::make_shared<const PlaylistRecord>(record), {}, iconSize);
}

void KSPlaylistController::insertMenuSeparator() {
  PlaylistPopup& popup = window().mainPlaylistPopup;
  if (!popup.items().empty() && popup.items().back().isSeparator) return;
  playlistsArray_.push_back(nullptr);
  popup.addSeparator();
}

void KSPlaylistController::fillUpThePopup(std::span<const OutlineRow> rows, int level) {
  for (const OutlineRow& row : rows) {
    addItem(row.record, {}, iconSizeFor(*row.record, level));
    if (row.Child) fillUpThePopup(*row.Child, level + 1);
  }
}

void KSPlaylistController::buildUserPopup() {
  PlaylistPopup& popup = window().selectionToHookPlaylistPopup;
  const PlaylistPopup::Update update(popup);
  childPlaylists_.clear();
  selPlaylistsArray_.clear();
  collection_.clear();
  // Playlists without entries are offered too: they make good destinations.
  for (const PlaylistRecord& record : formattedPlaylists_)
    if (record.ptype == "u")
      collection_.push_back({std::make_shared<const PlaylistRecord>(record), std::nullopt});
  fillSelectPopup(collection_, 1);

  Preferences& preferences = process().with.preferences;
  std::vector<std::string> stored = preferences.textArray(settings::copyToPlaylist);
  stored.resize(2);
  if (stored[0].empty()) {
    popup.selectItem(0);
  } else {
    // The last playlist is never compared: a choice of it is not restored.
    for (std::size_t i = 0; i + 1 < selPlaylistsArray_.size(); ++i) {
      if (selPlaylistsArray_[i]->decpid != stored[0]) continue;
      popup.selectItem(i);
      break;
    }
  }
  // Without a playlist there is nothing to choose; the earlier choice waits for better times.
  if (const PlaylistRecord* record = chosen(popup, selPlaylistsArray_))
    preferences.set(settings::copyToPlaylist, std::vector<std::string>{record->decpid, stored[1]});
}

std::string KSPlaylistController::pidFromSelectedPopup() const {
  return required(chosen(window().selectionToHookPlaylistPopup, selPlaylistsArray_)).hexpid;
}

void KSPlaylistController::addNewSelItem(const PlaylistRecord& record, const Size& iconSize) {
  selPlaylistsArray_.push_back(std::make_shared<const PlaylistRecord>(record));
  window().selectionToHookPlaylistPopup.addItem(itemFor(record, iconSize));
}

void KSPlaylistController::fillSelectPopup(std::span<const OutlineRow> rows, int level) {
  for (const OutlineRow& row : rows) {
    if (row.record->ptype == "f" && row.Child && row.Child->empty()) continue;
    addNewSelItem(*row.record, iconSizeFor(*row.record, level));
    if (row.Child) fillSelectPopup(*row.Child, level + 1);
  }
}

std::vector<PlaylistRecord> KSPlaylistController::formatPlaylists() const {
  const auto stored = TextSorter::storedPlaylistArray();
  return stored ? playlistCatalogue(*stored) : std::vector<PlaylistRecord>();
}

void KSPlaylistController::buildDatasource(std::span<const PlaylistRecord> records) {
  PlaylistOutline outline = playlistOutline(records);
  childPlaylists_ = std::move(outline.childPlaylists);
  thePlaylistDataSource_ = std::make_shared<const std::vector<OutlineRow>>(std::move(outline.rows));
}

std::vector<OutlineRow> KSPlaylistController::getFolders(std::string_view decpid) const {
  const auto folder = numberFromDecimal(decpid);
  if (!folder || decimalText(*folder) != decpid) return {};
  return FolderContents<PlaylistRecord>(childPlaylists_).open(*folder);
}

std::string KSPlaylistController::decToHex(std::uint64_t number) {
  return TextSorter::decToHex(number);
}

}  // namespace kestrel
