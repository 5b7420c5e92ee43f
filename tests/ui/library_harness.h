/// A library document in memory and a process over it, for tests that take snapshots.
#pragma once

#include <memory>
#include <string>

#include "musicapp/applications.h"
#include "platform/settings.h"
#include "tests/dupes/builders.h"
#include "ui/launch.h"

namespace kestrel::testing {

/// `<key>Name</key><string>Value</string>` and the like.
inline std::string text(const std::string& key, const std::string& value) {
  return "<key>" + key + "</key><string>" + value + "</string>";
}
inline std::string number(const std::string& key, long long value) {
  return "<key>" + key + "</key><integer>" + std::to_string(value) + "</integer>";
}
inline std::string date(const std::string& key, const std::string& value) {
  return "<key>" + key + "</key><date>" + value + "</date>";
}
inline std::string flag(const std::string& key) { return "<key>" + key + "</key><true/>"; }

/// An entry of Tracks. `file` is a path; empty for a track without a location.
inline std::string song(int id, const std::string& hexpid, const std::string& file,
                        const std::string& more = {}) {
  return "<key>" + std::to_string(id) + "</key><dict>" + number("Track ID", id) +
         text("Persistent ID", hexpid) + text("Track Type", file.empty() ? "Remote" : "File") +
         (file.empty() ? std::string() : text("Location", "file://" + file)) + more + "</dict>";
}

inline std::string playlist(const std::string& name, const std::string& hexpid,
                            const std::string& more = {}, const std::vector<int>& items = {}) {
  std::string entries;
  for (const int id : items) entries += "<dict>" + number("Track ID", id) + "</dict>";
  return "<dict>" + text("Name", name) + text("Playlist Persistent ID", hexpid) + more +
         "<key>Playlist Items</key><array>" + entries + "</array></dict>";
}

/// A document with these entries.
inline std::string libraryText(const std::string& tracks, const std::string& playlists) {
  return "<plist version=\"1.0\"><dict><key>Tracks</key><dict>" + tracks +
         "</dict><key>Playlists</key><array>" + playlists + "</array></dict></plist>";
}

struct LibraryHarness : TestProcess {
  LibraryHarness() {
    process.with.openLibrary = [this] { return openLibrary(path, {files, log, random, clock}); };
  }

  /// Writes the document anew.
  void document(const std::string& tracks, const std::string& playlists = {}) {
    files.put(path, libraryText(tracks, playlists));
  }
  /// What the record with this `hexpid` holds; absent when there is no record.
  [[nodiscard]] Value value(std::string_view hexpid, std::string_view key) const {
    const auto store = TextSorter::groomedTracksDictionary();
    const TrackRecord* record = store ? store->find(hexpid) : nullptr;
    return record ? record->value(key) : Value();
  }

  const std::string path = "/home/Library.xml";
};

}  // namespace kestrel::testing
