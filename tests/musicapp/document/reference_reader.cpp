// A second reader of library documents, as simple as possible: a general XML parser makes a tree,
// and each rule of the mapping is applied to it with maps and plain loops.
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <pugixml.hpp>
#include <set>
#include <stdexcept>

#include "foundation/identifiers.h"
#include "musicapp/document/document_tracks.h"
#include "musicapp/file_url.h"
#include "tests/musicapp/document/described_document.h"

namespace kestrel::testing {
namespace {

using Node = pugi::xml_node;
using Optional = std::optional<std::string>;

std::string textOf(Node node) {
  std::string text;
  for (const Node part : node.children()) text += part.value();
  return text;
}

/// Elements that stand in a container, without the texts between them.
std::vector<Node> elementsOf(Node container) {
  std::vector<Node> elements;
  for (const Node child : container.children())
    if (child.type() == pugi::node_element) elements.push_back(child);
  return elements;
}

/// A dictionary; of a repeated key, the last value counts.
class NodeDictionary {
 public:
  explicit NodeDictionary(Node dict) {
    const std::vector<Node> elements = elementsOf(dict);
    for (std::size_t i = 0; i + 1 < elements.size(); i += 2)
      values_[textOf(elements[i])] = elements[i + 1];
  }
  [[nodiscard]] Node node(const std::string& key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? Node() : found->second;
  }
  [[nodiscard]] bool has(const std::string& key) const { return values_.count(key) > 0; }
  [[nodiscard]] bool isTrue(const std::string& key) const {
    return node(key).name() == std::string("true");
  }
  [[nodiscard]] Optional text(const std::string& key) const {
    if (node(key).name() != std::string("string")) return std::nullopt;
    return textOf(node(key));
  }
  [[nodiscard]] std::int64_t number(const std::string& key) const {
    const std::string name = node(key).name();
    if (name == "integer") return std::strtoll(textOf(node(key)).c_str(), nullptr, 0);
    if (name == "real")
      return static_cast<std::int64_t>(std::strtod(textOf(node(key)).c_str(), nullptr));
    return 0;
  }
  [[nodiscard]] std::int64_t date(const std::string& key) const {
    if (node(key).name() != std::string("date")) return OptionalDate::missing;
    std::tm t{};
    if (std::sscanf(textOf(node(key)).c_str(), "%d-%d-%dT%d:%d:%d", &t.tm_year, &t.tm_mon,
                    &t.tm_mday, &t.tm_hour, &t.tm_min, &t.tm_sec) != 6)
      throw std::runtime_error("a date that is none");
    t.tm_year -= 1900;
    t.tm_mon -= 1;
    return timegm(&t);
  }
  /// A persistent ID, or 0.
  [[nodiscard]] std::uint64_t id(const std::string& key) const {
    const std::string digits = text(key).value_or("");
    if (digits.empty() || digits.size() > 16 ||
        digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
      return 0;
    return std::strtoull(digits.c_str(), nullptr, 16);
  }

 private:
  std::map<std::string, Node> values_;
};

/// The path of a file URL; nothing for another one.
Optional pathOf(const std::string& url) {
  std::string path;
  return pathOfFileUrl(url, path) ? Optional(path) : std::nullopt;
}

std::int64_t mediaKindOf(const NodeDictionary& track, const std::set<int>& lists) {
  for (const auto& [key, kind] : {std::pair{"Podcast", 4},
                                  {"TV Show", 8},
                                  {"Music Video", 7},
                                  {"Movie", 3},
                                  {"Has Video", 12}})
    if (track.isTrue(key)) return kind;
  for (const auto& [list, kind] : {std::pair{5, 5}, {6, 14}, {31, 18}})
    if (lists.count(list)) return kind;
  return 2;
}

std::int64_t cloudStatusOf(const NodeDictionary& track) {
  using enum CloudStatus;
  for (const auto& [key, status] : {std::pair{"Apple Music", subscription},
                                    {"Matched", matched},
                                    {"Uploaded", uploaded},
                                    {"Purchased", purchased}})
    if (track.isTrue(key)) return static_cast<std::int64_t>(status);
  return 0;
}

/// `lists`: the distinguished kinds of the playlists that hold the track.
std::string lineOf(const NodeDictionary& track, std::uint64_t id, const std::set<int>& lists) {
  const Optional location = track.text("Location");
  Optional path = location ? pathOf(*location) : std::nullopt;
  while (path && path->size() > 1 && path->back() == '/') path->pop_back();
  const std::size_t slash = path ? path->rfind('/') : 0;
  const std::string type = track.text("Track Type").value_or("");
  Line line("item");
  line.add("id", static_cast<std::int64_t>(id));
  for (const auto& field : textFields) line.add(field.key, track.text(field.key));
  for (const auto& field : numberFields) line.add(field.key, field.held(track.number(field.key)));
  for (const auto& field : dateFields)
    line.add(field.key, track.date(field.key), OptionalDate::missing);
  line.add("folder", path ? Optional(path->substr(0, slash)) : std::nullopt)
      .add("name", path ? Optional(path->substr(slash + 1)) : location)
      .add("mediaKind", mediaKindOf(track, lists))
      .add("locationType", type == "File"     ? 1
                           : type == "URL"    ? 2
                           : type == "Remote" ? 3
                                              : 0)
      .add("cloud", cloudStatusOf(track))
      .add("compilation", track.isTrue("Compilation") ? 1 : 0);
  return line.take();
}

struct Track {
  NodeDictionary keys;
  std::uint64_t id;
  std::set<int> lists;
};

class Library {
 public:
  explicit Library(const NodeDictionary& root) {
    readTracks(root.node("Tracks"));
    for (const Node playlist : elementsOf(root.node("Playlists")))
      readPlaylist(NodeDictionary(playlist));
  }

  Lines lines(const NodeDictionary& root) {
    Lines lines;
    for (const auto& [trackID, position] : lastOf_) kept_.insert(position);
    for (const std::size_t position : kept_)
      lines.push_back(
          lineOf(tracks_[position].keys, tracks_[position].id, tracks_[position].lists));
    lines.insert(lines.end(), playlists_.begin(), playlists_.end());
    lines.push_back(Line("document")
                        .add("folder", pathOf(root.text("Music Folder").value_or("")).value_or(""))
                        .add("version", root.text("Application Version").value_or(""))
                        .add("id", root.text("Library Persistent ID").value_or(""))
                        .add("dropped", dropped_)
                        .take());
    return lines;
  }

 private:
  void readTracks(Node section) {
    const std::vector<Node> elements = elementsOf(section);
    for (std::size_t i = 0; i + 1 < elements.size(); i += 2) {
      const std::string trackID = textOf(elements[i]);
      NodeDictionary keys(elements[i + 1]);
      std::uint64_t id = keys.id("Persistent ID");
      if (!id) id = derivedPersistentID(trackID, keys.text("Location").value_or(""));
      // The last entry of a Track ID counts, at its own place. Other keys cannot be named.
      char* end = nullptr;
      const std::int64_t number = std::strtoll(trackID.c_str(), &end, 10);
      if (!trackID.empty() && *end == '\0')
        lastOf_[number] = tracks_.size();
      else
        kept_.insert(tracks_.size());
      tracks_.push_back({std::move(keys), id, {}});
    }
  }

  void readPlaylist(const NodeDictionary& keys) {
    const std::string name = keys.text("Name").value_or("");
    std::uint64_t id = keys.id("Playlist Persistent ID");
    if (!id) id = derivedPersistentID(std::to_string(playlists_.size()), name);
    const int distinguished = static_cast<int>(keys.number("Distinguished Kind"));
    const int kind = keys.isTrue("Folder")                                  ? 3
                     : keys.has("Genius Track ID")                          ? 2
                     : keys.has("Smart Info") || keys.has("Smart Criteria") ? 1
                                                                            : 0;
    Line line("playlist");
    line.add("name", name)
        .add("id", static_cast<std::int64_t>(id))
        .add("parent", static_cast<std::int64_t>(keys.id("Parent Persistent ID")))
        .add("distinguished", distinguished)
        .add("kind", kind)
        .add("master", keys.isTrue("Master") ? 1 : 0)
        .add("visible", !keys.has("Visible") || keys.isTrue("Visible") ? 1 : 0);
    for (const Node entry : elementsOf(keys.node("Playlist Items"))) {
      const auto track = lastOf_.find(NodeDictionary(entry).number("Track ID"));
      if (track == lastOf_.end()) {
        ++dropped_;
        continue;
      }
      tracks_[track->second].lists.insert(distinguished);
      line.add("entry", static_cast<std::int64_t>(tracks_[track->second].id), -1);
    }
    playlists_.push_back(line.take());
  }

  std::vector<Track> tracks_;
  std::map<std::int64_t, std::size_t> lastOf_;  // by Track ID: position among the tracks
  std::set<std::size_t> kept_;
  Lines playlists_;
  std::int64_t dropped_ = 0;
};

}  // namespace

Lines expectedLines(std::string_view bytes) {
  pugi::xml_document document;
  const pugi::xml_parse_result result =
      document.load_buffer(bytes.data(), bytes.size(), pugi::parse_default | pugi::parse_ws_pcdata);
  if (!result) throw std::runtime_error(result.description());
  const std::vector<Node> roots = elementsOf(document.child("plist"));
  if (roots.size() != 1) throw std::runtime_error("no property list");
  const NodeDictionary root(roots[0]);
  return Library(root).lines(root);
}

}  // namespace kestrel::testing
