/// A written library document, read back with a general XML parser.
#pragma once

#include <cstdint>
#include <map>
#include <pugixml.hpp>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tools/make_library/document.h"

namespace kestrel::make_library {

/// Texts of the values; flags are "true" and "false", data keeps its white space.
using Values = std::map<std::string, std::string>;

struct WrittenPlaylist {
  Values values;
  std::vector<std::string> trackIds;
  bool hasItems = false;
};

struct WrittenLibrary {
  std::string bytes;
  Values values;
  std::map<std::string, Values> tracks;  ///< by Track ID
  std::vector<WrittenPlaylist> playlists;
};

inline std::string valueText(const pugi::xml_node& value) {
  const std::string tag = value.name();
  return tag == "true" || tag == "false" ? tag : value.child_value();
}

/// Calls `use(key, value element)` for each pair of a dict.
template <typename Use>
void forEachPair(const pugi::xml_node& dict, const Use& use) {
  for (pugi::xml_node node = dict.first_child(); node; node = node.next_sibling()) {
    if (node.type() == pugi::node_pcdata) continue;  // the white space of an empty dict
    const std::string key = node.child_value();
    if (std::string{node.name()} != "key") throw std::runtime_error("value without a key");
    node = node.next_sibling();
    if (!node || std::string{node.name()} == "key") throw std::runtime_error("no value: " + key);
    use(key, node);
  }
}

inline WrittenPlaylist readPlaylist(const pugi::xml_node& dict) {
  WrittenPlaylist playlist;
  forEachPair(dict, [&](const std::string& key, const pugi::xml_node& value) {
    if (key != "Playlist Items") {
      playlist.values[key] = valueText(value);
      return;
    }
    playlist.hasItems = true;
    for (const pugi::xml_node item : value.children()) {
      forEachPair(item, [&](const std::string&, const pugi::xml_node& id) {
        playlist.trackIds.emplace_back(id.child_value());
      });
    }
  });
  return playlist;
}

/// Throws std::runtime_error when the bytes are not a well-formed property list.
inline WrittenLibrary readLibrary(std::string bytes) {
  pugi::xml_document document;
  const auto result = document.load_buffer(bytes.data(), bytes.size(),
                                           pugi::parse_default | pugi::parse_ws_pcdata_single);
  if (!result) throw std::runtime_error(result.description());
  WrittenLibrary library;
  library.bytes = std::move(bytes);
  forEachPair(document.child("plist").child("dict"),
              [&](const std::string& key, const pugi::xml_node& value) {
                if (key == "Tracks") {
                  forEachPair(value, [&](const std::string& id, const pugi::xml_node& track) {
                    Values& values = library.tracks[id];
                    forEachPair(track, [&](const std::string& name, const pugi::xml_node& node) {
                      values[name] = valueText(node);
                    });
                  });
                } else if (key == "Playlists") {
                  for (const pugi::xml_node playlist : value.children()) {
                    library.playlists.push_back(readPlaylist(playlist));
                  }
                } else {
                  library.values[key] = valueText(value);
                }
              });
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
