#include "ui/rem_dupes_controller.h"

#include "platform/log.h"
#include "ui/launch.h"
#include "ui/process.h"

namespace kestrel::RemDupesController {
namespace {

void scan() {
  postToWindow<RemDupesState>([](RemDupesWindowReferences& window) {
    window.remdupesProgressStatus.setText(Message::tr("Fetching playlists..."));
    window.remdupesProgressSpinner.startAnimation();
  });
  RemDupesState& kept = state();
  const Playlists playlists = freshPlaylists(TextSorter::storedLib(), process().with.log);
  kept.lastScan = findRepeats(playlists);
  const RepeatScan& found = kept.lastScan;
  for (const auto& record : found.affected)
    process().with.log.line("+ + + PLAYLIST: " + record->playlist().name);
  if (found.affected.empty()) {
    postToWindow<RemDupesState>([](RemDupesWindowReferences& window) {
      window.remdupesProgressStatus.setText(Message::tr("No results."));
      window.remdupesProgressSpinner.stopAnimation();
    });
    return;
  }
  kept.found = found;
  postToWindow<RemDupesState>([content = found.outline](RemDupesWindowReferences& window) {
    window.remdupesTreeController.setContent(content);
    window.remdupesTreeController.expandAll();
    window.remdupesProgressSpinner.stopAnimation();
    window.remdupesProgressStatus.setText({});
  });
}

}  // namespace

RemDupesState& state() { return process().state<RemDupesState>(); }

void beginRemDupes() { runInBackground(scan, state().failure); }

const std::vector<RemDupesRow>& storedPlaylistArray() { return *state().found.outline; }
const SharedRecords<RemDupesRecord>& storedJustFolders() { return state().lastScan.justFolders; }
const SharedRecords<RemDupesRecord>& childPlaylists() { return state().found.childPlaylists; }

void doubleClickedAction() {
  const auto selected = state().window.remdupesTreeController.selectedRecords();
  if (!selected.empty()) revealInBackground(selected.front()->hexpid(), state().failure);
}

}  // namespace kestrel::RemDupesController
