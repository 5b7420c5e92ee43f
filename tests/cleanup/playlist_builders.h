/// Playlists for tests, and outlines as texts:
///
///     Playlists library = playlists({folder("F", 10), playlist("Mix", 1, {1, 2, 1}).in(10)});
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "musicapp/media_library.h"
#include "platform/log.h"
#include "tests/dupes/builders.h"
#include "tests/musicapp/recording_application.h"
#include "ui/models/outline_model.h"

namespace kestrel::testing {

struct PlaylistBuilder {
  Playlist made;

  PlaylistBuilder& in(std::uint64_t folder) { return set(made.parentID, folder); }
  PlaylistBuilder& kind(PlaylistKind kind) { return set(made.kind, kind); }
  PlaylistBuilder& master() { return set(made.isMaster, true); }
  PlaylistBuilder& distinguished(std::int64_t kind) { return set(made.distinguishedKind, kind); }

 private:
  template <typename Member, typename T>
  PlaylistBuilder& set(Member& member, T value) {
    member = value;
    return *this;
  }
};

inline PlaylistBuilder playlist(std::string name, std::uint64_t id,
                                std::vector<std::uint64_t> items) {
  PlaylistBuilder builder;
  builder.made.name = std::move(name);
  builder.made.persistentID = id;
  builder.made.items = std::move(items);
  return builder;
}

inline PlaylistBuilder folder(std::string name, std::uint64_t id,
                              std::vector<std::uint64_t> items = {}) {
  return playlist(std::move(name), id, std::move(items)).kind(PlaylistKind::folder);
}

inline std::shared_ptr<const std::vector<Playlist>> playlists(
    const std::vector<PlaylistBuilder>& builders) {
  std::vector<Playlist> made;
  for (const PlaylistBuilder& builder : builders) made.push_back(builder.made);
  return std::make_shared<const std::vector<Playlist>>(std::move(made));
}

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
