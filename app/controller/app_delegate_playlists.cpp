// The controller's part that is about playlists, and tracks in them.

#include <algorithm>
#include <utility>

#include "app/controller/app_delegate.h"
#include "app/controller/result_changes.h"
#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "musicapp/library_identity.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/settings.h"
#include "ui/process.h"

namespace kestrel {

void AppDelegate::fillPlaylistMenu() {
  playlists_.fillPlaylistPopup();
  libraryObservers.notify();
}

void AppDelegate::refreshPlaylistMenu() {
  playlists_.refreshPopup();
  // The refresh replaces the stored playlists on the worker, which must not be read meanwhile. It
  // reports no end, but a task that is posted after it does.
  process_.with.mainQueue.post([this] {
    whenIdle([this] {
      start(
          Activity::other, [] {},
          [this](const Failure&) {
            end();
            libraryObservers.notify();
          });
    });
  });
}

bool AppDelegate::refreshPlaylists() {
  if (isBusy() || !application_) return false;
  const auto work = [application = application_] { application->library().reload(); };
  return run(work, [this] { refreshPlaylistMenu(); });
}

bool AppDelegate::choosesPart() const {
  return canSearch() && playlists_.returnSelectedPopupItem().ptype != "0";
}

void AppDelegate::playlistChosen() {
  process_.with.preferences.set(settings::selectedPlaylistPid, playlists_.getPIDFromList());
  libraryObservers.notify();
}

void AppDelegate::choosePlaylist(std::string_view decpid) {
  const auto& entries = playlists_.playlistsArray();
  const auto found = std::find_if(entries.begin(), entries.end(), [&](const auto& entry) {
    return entry && entry->decpid == decpid;
  });
  if (found == entries.end()) return;
  process_.state<PlaylistWindowReferences>().mainPlaylistPopup.selectItem(
      static_cast<std::size_t>(found - entries.begin()));
  playlistChosen();
}

Message AppDelegate::chosenPlaylistName() const {
  return canSearch() ? shownName(playlists_.returnSelectedPopupItem()) : Message();
}

bool AppDelegate::canSearch() const {
  const auto index = process_.state<PlaylistWindowReferences>().mainPlaylistPopup.selectedIndex();
  return application_ && index && *index < playlists_.playlistsArray().size();
}

void AppDelegate::fillTargetMenu() {
  process_.state<PlaylistWindowReferences>().selectionToHookPlaylistPopup.removeAllItems();
  playlists_.buildUserPopup();
}

void AppDelegate::targetPlaylistChosen() {
  Preferences& preferences = process_.with.preferences;
  const auto& popup = process_.state<PlaylistWindowReferences>().selectionToHookPlaylistPopup;
  std::vector<std::string> stored = preferences.textArray(settings::copyToPlaylist);
  stored.resize(2);
  if (popup.selectedIndex())
    stored[0] = playlists_.selPlaylistsArray()[*popup.selectedIndex()]->decpid;
  preferences.set(settings::copyToPlaylist, std::move(stored));
}

bool AppDelegate::addToTargetPlaylist(std::vector<std::uint32_t> rows,
                                      std::function<void(std::size_t)> done) {
  const auto target = numberFromHex(playlists_.pidFromSelectedPopup());
  if (isBusy() || !target || rows.empty()) return false;
  std::vector<std::uint64_t> tracks = tracksOf(rows);
  const std::size_t count = tracks.size();
  const auto add = [application = application_, tracks = std::move(tracks), target] {
    const Plan plan = changesOf(*application).additionPlan(*target, tracks);
    const ApplyReport report = applyToLibrary(plan, *application, {});
    if (report.count(Outcome::Kind::done) == 1) return;
    Message problem = report.problem;
    if (!report.outcomes.empty()) problem = joined(problem, report.outcomes.front().reason);
    if (!plan.leftOut.empty()) problem = joined(problem, plan.leftOut.front().reason);
    throw LibraryError(addressText(plan.library.uri), {},
                       Message::tr("The tracks could not be added: %1").arg(std::move(problem)),
                       Message::tr("The library is as it was."));
  };
  return run(add, [this, done = std::move(done), count] {
    refreshPlaylistMenu();
    done(count);
  });
}

bool AppDelegate::reveal(std::uint32_t row, const std::string& playlist) {
  return revealTrack(std::string(content()[row].record->value(TrackKey::hexpid).text()), playlist);
}

bool AppDelegate::revealTrack(const std::string& track, const std::string& playlist) {
  const auto id = numberFromHex(track);
  if (isBusy() || !application_ || !id) return false;
  const command::RevealTrack command{*id, numberFromHex(playlist)};
  const auto result = std::make_shared<CommandResult>();
  const auto failed = [this](const Message& problem) {
    fail(Message::tr("The track could not be shown."), problem);
  };
  return run([this, command, result] { *result = application_->run(command); },
             [result, failed] {
               if (result->failed()) failed(result->failure->message);
             },
             [failed](const TaskFailure& failure) { failed(failure.problem); });
}

}  // namespace kestrel
