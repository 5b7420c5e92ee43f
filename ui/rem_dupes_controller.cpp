#include "ui/rem_dupes_controller.h"

#include <utility>

#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "musicapp/requests.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/queues.h"
#include "ui/background.h"
#include "ui/launch.h"
#include "ui/process.h"

namespace kestrel::RemDupesController {
namespace {

/// A task of the main queue that changes the clean-up window.
template <typename Change>
void postToWindow(Change change) {
  process().with.mainQueue.post([change = std::move(change)] { change(state().window); });
}

void scan() {
  postToWindow([](RemDupesWindowReferences& window) {
    window.remdupesProgressStatus.setText(Message::tr("Fetching playlists..."));
    window.remdupesProgressSpinner.startAnimation();
  });
  RemDupesState& kept = state();
  const Playlists playlists = freshPlaylists(TextSorter::storedLib(), process().with.log);
  kept.storedJustFolders.clear();
  kept.lastScan = findRepeats(playlists);
  const RepeatScan& found = kept.lastScan;
  for (const auto& record : found.affected)
    process().with.log.line("+ + + PLAYLIST: " + record->playlist().name);
  if (found.affected.empty()) {
    postToWindow([](RemDupesWindowReferences& window) {
      window.remdupesProgressStatus.setText(Message::tr("No results."));
      window.remdupesProgressSpinner.stopAnimation();
    });
    return;
  }
  kept.storedJustFolders = found.justFolders;
  kept.childPlaylists = found.childPlaylists;
  kept.storedPlaylistArray = found.outline;
  postToWindow([content = found.outline](RemDupesWindowReferences& window) {
    window.remdupesTreeController.setContent(content);
    window.remdupesTreeController.expandAll();
    window.remdupesProgressSpinner.stopAnimation();
    window.remdupesProgressStatus.setText({});
  });
}

}  // namespace

RemDupesState& state() { return process().state<RemDupesState>(); }

void beginRemDupes() { runInBackground(scan, state().failure); }

const std::vector<RemDupesRow>& storedPlaylistArray() { return *state().storedPlaylistArray; }
const SharedRecords<RemDupesRecord>& storedJustFolders() { return state().storedJustFolders; }
const SharedRecords<RemDupesRecord>& childPlaylists() { return state().childPlaylists; }
PropertyList& storedXML() { return state().storedXML; }

std::vector<RemDupesRow> getFolders(std::string_view hexpid) {
  return openFolder(state().childPlaylists, hexpid);
}

void containerIDsLoop(const SharedRecords<RemDupesRecord>&, const SharedRecords<RemDupesRecord>&) {}

void doubleClickedAction() {
  const auto selected = state().window.remdupesTreeController.selectedRecords();
  if (selected.empty()) return;
  // Behind what else asks the application something, which takes one question at a time.
  runInBackground(
      [pid = selected.front()->hexpid()] {
        const Collaborators& with = process().with;
        request::revealPlaylist(with.application, with.log, pid);
      },
      state().failure);
}

std::optional<PropertyList> returnContentsOfFile(const std::string& path) {
  try {
    return parsePropertyList(process().with.files.readAll(path), path);
  } catch (const LibraryError&) {
  }
  return std::nullopt;
}

std::string decToHex(std::optional<std::uint64_t> number) {
  return TextSorter::decToHex(number.value_or(0));
}

std::vector<std::string> batchDecToHex(std::span<const std::uint64_t> numbers) {
  return TextSorter::batchDecToHex(numbers);
}

}  // namespace kestrel::RemDupesController
