/// Outlines of playlists as texts, and a process for windows with them.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/dupes/builders.h"
#include "tests/musicapp/playlist_builders.h"
#include "tests/musicapp/recording_application.h"
#include "ui/models/outline_model.h"

namespace kestrel::testing {

/// "F(a b(c)) G() d": names, with children in parentheses.
template <typename Record>
std::string outlineText(const std::vector<OutlineNode<Record>>& rows) {
  std::string text;
  for (const OutlineNode<Record>& row : rows) {
    if (!text.empty()) text += " ";
    text += row.record->playlist().name;
    if (row.Child && (!row.Child->empty() || row.record->isFolder()))
      text += "(" + outlineText(*row.Child) + ")";
  }
  return text;
}

/// The names of the records that the outline does not show.
template <typename Found>
std::string hiddenNames(const Found& found) {
  std::string text;
  for (std::size_t i = 0; i < found.affected.size(); ++i)
    if (!found.shown[i]) text += (text.empty() ? "" : " ") + found.affected[i]->playlist().name;
  return text;
}

/// A test's process with a background queue, and what a window was told, in order.
struct WindowProcess : TestProcess {
  ManualQueue background;
  RecordingApplication application;
  std::shared_ptr<PlaylistLibrary> changing;
  std::vector<std::string> events;

  explicit WindowProcess(std::shared_ptr<const std::vector<Playlist>> made)
      : changing(std::make_shared<PlaylistLibrary>(std::move(made))) {
    library = changing;
    process.with.backgroundQueue = &background;
    process.with.application = &application;
  }

  /// Notes "status: ..." and "spinner on" or "off" at each change.
  void watch(StatusText& status, ProgressBar& spinner) {
    subscriptions_.push_back(
        status.observers.add([this, &status] { events.push_back("status: " + status.text()); }));
    subscriptions_.push_back(spinner.observers.add([this, &spinner] {
      events.push_back(spinner.isAnimating() ? "spinner on" : "spinner off");
    }));
  }
  void watch(Observers& observers, std::string event) {
    subscriptions_.push_back(
        observers.add([this, event = std::move(event)] { events.push_back(event); }));
  }
  /// Runs the background work, then what it posted; returns what the window was told.
  std::vector<std::string> run() {
    background.drain();
    mainQueue.drain();
    return std::exchange(events, {});
  }

 private:
  std::vector<Observers::Subscription> subscriptions_;
};

}  // namespace kestrel::testing
