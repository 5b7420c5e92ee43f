#include "ui/custom_views.h"

#include <string>

#include "musicapp/requests.h"
#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/settings.h"

namespace kestrel {

bool KSWindow::keyDown(int keyCode, Preferences& preferences) {
  if (keyCode == escapeKeyCode) preferences.set(settings::cancelGetDupes, true);
  return true;
}

CellView KSRepTrackTableDel::viewForTableColumn(std::string_view column, Log& log) {
  log.line("COLUMN");
  CellView cell{column};
  if (column == "nonkeeper") {
    cell.background = SystemColor::unemphasizedSelectedTextBackground;
    cell.borderColor = SystemColor::blue;  // shows only where a theme gives the border a width
  }
  return cell;
}

bool KSRepTrackTableDel::shouldSelectRow(Log& log) {
  log.line("SHOULD SELECT");
  return true;
}

void KSRepTrackTableView::mouseDown(const TablePress& press, PairValue pair) const {
  log_.line("mmous down");
  if (press.clickCount != 2 || press.row < 0) return;
  const auto row = static_cast<std::size_t>(press.row);
  const auto text = [&](std::string_view keyPath) {
    return std::string(pair(row, keyPath).text());
  };
  if (press.onNonkeeper())
    request::revealTrackInPlaylist(application_, log_, text("playlistPID"),
                                   text("nonkeeper.hexpid"));
  else
    request::revealTrack(application_, log_, text("keeper.hexpid"));
}

}  // namespace kestrel
