/// A written library document, read back.
#pragma once

#include <cstdint>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "foundation/property_list.h"
#include "tools/make_library/document.h"

namespace kestrel::make_library {

/// Texts, and numbers and flags as texts; what else there is, is there and empty.
using Values = std::map<std::string, std::string>;

struct WrittenPlaylist {
  Values values;
  std::vector<std::string> trackIds;
  bool operator==(const WrittenPlaylist&) const = default;
};

struct WrittenLibrary {
  std::string bytes;
  std::map<std::string, Values> tracks;  ///< by Track ID
  std::vector<WrittenPlaylist> playlists;
};

inline Values valuesOf(const PropertyList& dictionary) {
  Values values;
  for (const auto& [key, value] : dictionary.entries())
    values[key] = value.isInteger()   ? std::to_string(value.integer())
                  : value.isBoolean() ? (value.boolean() ? "true" : "false")
                                      : std::string(value.text());
  return values;
}

/// Throws LibraryError when the bytes are not a property list.
inline WrittenLibrary readLibrary(std::string bytes) {
  const PropertyList document = parsePropertyList(bytes, "written");
  WrittenLibrary library;
  library.bytes = std::move(bytes);
  for (const auto& [id, track] : document.find("Tracks")->entries())
    library.tracks[id] = valuesOf(track);
  for (const PropertyList& list : document.find("Playlists")->values()) {
    WrittenPlaylist& playlist = library.playlists.emplace_back(WrittenPlaylist{valuesOf(list), {}});
    if (const PropertyList* items = list.find("Playlist Items"))
      for (const PropertyList& item : items->values())
        playlist.trackIds.push_back(valuesOf(item)["Track ID"]);
  }
  return library;
}

inline std::string documentBytes(const Options& options) {
  std::ostringstream out;
  writeDocument(out, options);
  return out.str();
}

inline WrittenLibrary writtenLibrary(const Options& options) {
  return readLibrary(documentBytes(options));
}

}  // namespace kestrel::make_library
