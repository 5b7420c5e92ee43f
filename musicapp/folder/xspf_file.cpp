#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <utility>

#include "foundation/bytes.h"
#include "foundation/library_error.h"
#include "foundation/utf8.h"
#include "musicapp/folder/playlist_file.h"
#include "musicapp/folder/playlist_paths.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

/// A tag of a document; comments, declarations and the like are passed over.
struct Tag {
  size_t begin = 0, end = 0;
  string_view name;                     ///< without its prefix
  string_view prefix;                   ///< with the colon
  bool isStart = false, isEnd = false;  ///< both: an empty element
};

/// Finds the tags of an XML document, which is not checked further than that.
class TagScanner {
 public:
  explicit TagScanner(string_view document) : document_(document) {}

  /// Nothing at the end. Throws PlistError where a tag does not end.
  std::optional<Tag> next() {
    for (;;) {
      Tag tag;
      tag.begin = document_.find('<', at_);
      if (tag.begin == string_view::npos) return std::nullopt;
      const string_view rest = document_.substr(tag.begin);
      if (rest.starts_with("<!--")) {
        pass(tag.begin, "-->");
      } else if (rest.starts_with("<![CDATA[")) {
        pass(tag.begin, "]]>");
      } else if (rest.starts_with("<?")) {
        pass(tag.begin, "?>");
      } else if (rest.starts_with("<!")) {
        const bool hasSubset = rest.find('[') < rest.find('>');
        pass(tag.begin, hasSubset ? "]" : ">");
        if (hasSubset) pass(at_, ">");
      } else {
        read(tag);
        return tag;
      }
    }
  }

 private:
  [[noreturn]] static void fail(size_t place) {
    throw PlistError(place, Message::tr("a tag that does not end"));
  }
  void pass(size_t from, string_view end) {
    const size_t found = document_.find(end, from);
    if (found == string_view::npos) fail(from);
    at_ = found + end.size();
  }
  void read(Tag& tag) {
    char quote = 0;
    size_t at = tag.begin + 1;
    for (; at < document_.size() && (quote || document_[at] != '>'); ++at) {
      const char c = document_[at];
      if (quote)
        quote = c == quote ? '\0' : quote;
      else if (c == '"' || c == '\'')
        quote = c;
    }
    if (at == document_.size()) fail(tag.begin);
    tag.end = at_ = at + 1;
    string_view inner = document_.substr(tag.begin + 1, at - tag.begin - 1);
    tag.isEnd = inner.starts_with('/') || inner.ends_with('/');
    tag.isStart = !inner.starts_with('/');
    if (!tag.isStart) inner.remove_prefix(1);
    tag.name = inner.substr(0, inner.find_first_of(" \t\r\n/"));
    const size_t colon = tag.name.find(':');
    if (colon == string_view::npos) return;
    tag.prefix = tag.name.substr(0, colon + 1);
    tag.name.remove_prefix(colon + 1);
  }

  string_view document_;
  size_t at_ = 0;
};

/// The text of an element that has nothing but text, without the white space around it.
std::string unescaped(string_view content) {
  std::string text;
  while (!content.empty()) {
    if (content.starts_with("<![CDATA[")) {
      const size_t end = std::min(content.find("]]>"), content.size());
      text.append(content.substr(9, end - 9));
      content.remove_prefix(std::min(end + 3, content.size()));
    } else if (content.front() == '<') {
      content.remove_prefix(std::min(content.find('>'), content.size() - 1) + 1);
    } else if (const size_t end = content.find(';');
               content.front() == '&' && end != string_view::npos) {
      static constexpr std::pair<string_view, char> names[] = {
          {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
      const std::string name(content.substr(1, end - 1));
      const auto* known = std::find_if(std::begin(names), std::end(names),
                                       [&](const auto& entry) { return entry.first == name; });
      if (known != std::end(names)) {
        text += known->second;
      } else if (name.starts_with('#')) {
        const bool isHex = name.size() > 1 && (name[1] == 'x' || name[1] == 'X');
        const unsigned long number =
            std::strtoul(name.c_str() + (isHex ? 2 : 1), nullptr, isHex ? 16 : 10);
        if (number > 0 && number < 0x110000) appendUtf8(static_cast<char32_t>(number), text);
      }
      content.remove_prefix(end + 1);
    } else {
      text += content.front();
      content.remove_prefix(1);
    }
  }
  const size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") + 1 - first);
}

/// A `trackList` of `track`s with elements of their own.
class XspfFile final : public PlaylistFile {
 public:
  XspfFile(const std::string& path, std::string bytes) : PlaylistFile(std::move(bytes)) {
    try {
      const TextEncoding encoding = encodingOf(bytes_);
      if (encoding != TextEncoding::utf8 && encoding != TextEncoding::latin1)
        throw LibraryError(path, {},
                           Message::tr("is a playlist in UTF-16, which Kestrel does not read"),
                           Message::tr("Save it in UTF-8."));
      isLatin1_ = encoding == TextEncoding::latin1;
      readTags();
    } catch (const PlistError& error) {
      throw libraryError(path, bytes_, error,
                         Message::tr("Repair the file at that place, or copy it again."));
    }
  }

  [[nodiscard]] bool hasUrls() const noexcept override { return true; }
  [[nodiscard]] bool canHold(const std::string& location, size_t) const override {
    return writableText(location) == location;
  }

  [[nodiscard]] std::string written(std::span<const PlaylistSlot> slots) const override {
    Edits edits;
    size_t next = 0;
    size_t last = listStart_.end;  // behind what new entries come
    for (const PlaylistSlot& slot : slots) {
      if (slot.from == PlaylistSlot::added) {
        insert(last, slot, edits);
        continue;
      }
      for (; next < slot.from; ++next) drop(tracks_[next].element, edits);
      const Track& track = tracks_[next++];
      last = track.element.end;
      if (slot.now) replace(track, slot, edits);
    }
    for (; next < tracks_.size(); ++next) drop(tracks_[next].element, edits);
    if (listStart_.isEnd && !edits.empty()) {  // <trackList/> gets contents
      edits.insert(edits.begin(), {{listStart_.end - 2, listStart_.end}, ">"});
      edits.push_back(
          {{listStart_.end, listStart_.end},
           before(listStart_.begin) + "</" + std::string(listStart_.prefix) + "trackList>"});
    }
    // What comes in before what goes there.
    std::stable_sort(edits.begin(), edits.end(), [](const Edit& a, const Edit& b) {
      return std::pair(a.place.begin, a.place.end) < std::pair(b.place.begin, b.place.end);
    });
    std::string out;
    size_t at = 0;
    for (const Edit& edit : edits) {
      out.append(bytes_, at, edit.place.begin - at).append(edit.text);
      at = edit.place.end;
    }
    return out.append(bytes_, at);
  }

 private:
  struct Range {
    size_t begin = 0, end = 0;
  };
  struct Edit {
    Range place;
    std::string text;
  };
  using Edits = std::vector<Edit>;
  enum Part : std::uint8_t { location, title, creator, album, duration };
  static constexpr std::array<string_view, 5> parts{"location", "title", "creator", "album",
                                                    "duration"};
  struct Element {
    Range whole, content;
  };
  struct Track {
    Range element;
    std::array<std::optional<Element>, parts.size()> elements;
    std::vector<Range> otherLocations;
    std::optional<size_t> firstChild;
  };

  void readTags() {
    TagScanner scanner(bytes_);
    std::vector<string_view> open;
    size_t part = parts.size();  // of the element that is open; that many: another one
    Element element;
    const auto isIn = [&](size_t depth) {  // of the list of tracks, or of a track there
      return open.size() == depth && open[1] == "trackList" && (depth < 3 || open[2] == "track");
    };
    while (const auto tag = scanner.next()) {
      if (tag->isStart) {
        if (open.size() == 1 && tag->name == "trackList") listStart_ = *tag;
        if (isIn(2) && tag->name == "track")
          tracks_.push_back({{tag->begin, tag->end}, {}, {}, {}});
        if (isIn(3)) {
          part =
              static_cast<size_t>(std::find(parts.begin(), parts.end(), tag->name) - parts.begin());
          element = {{tag->begin, tag->end}, {tag->end, tag->end}};
          if (!tracks_.back().firstChild) tracks_.back().firstChild = tag->begin;
        }
        open.push_back(tag->name);
      }
      if (!tag->isEnd) continue;
      if (open.empty() || open.back() != tag->name)
        throw PlistError(tag->begin, Message::tr("an end tag that ends nothing"));
      open.pop_back();
      if (isIn(2) && tag->name == "track") tracks_.back().element.end = tag->end;
      if (isIn(3) && part < parts.size()) {
        element.whole.end = tag->end;
        element.content.end = tag->isStart ? element.content.begin : tag->begin;
        Track& track = tracks_.back();
        if (!track.elements[part])
          track.elements[part] = element;
        else if (part == location)
          track.otherLocations.push_back(element.whole);
        part = parts.size();
      }
    }
    if (!open.empty() || listStart_.name.empty())
      throw PlistError(bytes_.size(), Message::tr("no list of tracks that ends"));
    for (const Track& track : tracks_) entries_.push_back(valueOf(track, location));
  }

  [[nodiscard]] std::string valueOf(const Track& track, Part part) const {
    if (!track.elements[part]) return {};
    const auto [begin, end] = track.elements[part]->content;
    const string_view content = string_view(bytes_).substr(begin, end - begin);
    if (!isLatin1_) return unescaped(content);
    std::string utf8;
    for (const char c : content) appendUtf8(static_cast<unsigned char>(c), utf8);
    return unescaped(utf8);
  }

  /// As content of an element. Bytes that are no characters cannot stand in XML.
  [[nodiscard]] std::string escaped(const std::string& text) const {
    std::string content;
    for (const char c : writableText(text)) {
      const bool isPlain = c != '&' && c != '<' && c != '>';
      content += isPlain ? std::string(1, c) : c == '&' ? "&amp;" : c == '<' ? "&lt;" : "&gt;";
    }
    if (!isLatin1_) return content;
    std::string references;
    for (size_t i = 0; i < content.size();) {
      const auto first = static_cast<unsigned char>(content[i]);
      const size_t size = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
      char32_t character = size == 1 ? first : first & (0x7FU >> size);
      for (size_t j = 1; j < size; ++j)
        character = character << 6U | (static_cast<unsigned char>(content[i + j]) & 0x3FU);
      references += size == 1 ? std::string(1, content[i])
                              : "&#" + std::to_string(static_cast<std::uint32_t>(character)) + ";";
      i += size;
    }
    return references;
  }

  static std::string textOf(const PlaylistSlot& slot, Part part) {
    const ListedTrack& now = *slot.now;
    switch (part) {
      case location:
        return now.location;
      case title:
        return now.title;
      case creator:
        return now.artist;
      case album:
        return now.album;
      case duration:
        return std::to_string(now.milliseconds);
    }
    return {};
  }

  void replace(const Track& track, const PlaylistSlot& slot, Edits& edits) const {
    for (size_t part = location; part < parts.size(); ++part) {
      if (!track.elements[part] || (slot.onlyLocation && part != location)) continue;
      const Element& element = *track.elements[part];
      const std::string value = escaped(textOf(slot, static_cast<Part>(part)));
      if (element.content.begin == element.whole.end)  // <title/>
        edits.push_back({element.whole, tagged(part, value)});
      else
        edits.push_back({element.content, value});
    }
    // They name the track that went.
    for (const Range& other : track.otherLocations) drop(other, edits);
  }

  [[nodiscard]] std::string tagged(size_t part, const std::string& value) const {
    const std::string name = std::string(listStart_.prefix) + std::string(parts[part]);
    return "<" + name + ">" + value + "</" + name + ">";
  }

  /// The white space before a place, with its line end.
  [[nodiscard]] std::string before(size_t place) const {
    const size_t text = bytes_.find_last_not_of(" \t\r\n", place - 1) + 1;
    return bytes_.substr(text, place - text);
  }

  void drop(const Range& element, Edits& edits) const {
    edits.push_back({{element.begin - before(element.begin).size(), element.end}, {}});
  }

  /// In the layout of the first track, or else of the list.
  void insert(size_t behind, const PlaylistSlot& slot, Edits& edits) const {
    std::string outer = before(listStart_.begin) + "  ", inner = outer + "  ";
    if (!tracks_.empty() && tracks_.front().firstChild) {
      outer = before(tracks_.front().element.begin);
      inner = before(*tracks_.front().firstChild);
    }
    const std::string name = std::string(listStart_.prefix) + "track";
    std::string text = outer + "<" + name + ">";
    for (size_t part = location; part < parts.size(); ++part)
      if (const std::string value = textOf(slot, static_cast<Part>(part));
          !value.empty() && value != "0")
        text += inner + tagged(part, escaped(value));
    edits.push_back({{behind, behind}, text + outer + "</" + name + ">"});
  }

  Tag listStart_;
  std::vector<Track> tracks_;
  bool isLatin1_ = false;
};

}  // namespace

std::unique_ptr<PlaylistFile> readXspf(const std::string& path, std::string bytes) {
  return std::make_unique<XspfFile>(path, std::move(bytes));
}

}  // namespace kestrel
