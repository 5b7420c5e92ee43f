#include <algorithm>
#include <utility>

#include "musicapp/folder/playlist_lines.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

constexpr string_view information = "#EXTINF:";

/// A path a line; lines that begin with "#" are comments, of which those that begin with "#EXT" say
/// something of the path that follows, or of the whole list.
class M3uFile final : public PlaylistLines {
 public:
  M3uFile(std::string bytes, bool isUtf8) : PlaylistLines(std::move(bytes), isUtf8) {
    Place place;
    for (size_t i = 0; i < lines_.size(); ++i) {
      const string_view line = text(i);
      if (line.empty()) continue;
      if (line.front() != '#') {
        place.path = i;
        places_.push_back(std::exchange(place, {}));
        // A name may begin with white space.
        lines_[i].begin = lines_[i].indent;
        entries_.emplace_back(text(i));
      } else if (line.starts_with(information)) {
        place.information = i;
        hasInformation_ = true;
      } else if (line.starts_with("#EXTVLCOPT") || line.starts_with("#KODIPROP")) {
        place.options.push_back(i);
      } else if (line.starts_with("#EXTM3U")) {
        header_ = i;
        hasInformation_ = true;
      }
    }
  }

  [[nodiscard]] std::string written(std::span<const PlaylistSlot> slots) const override {
    Edits edits;
    std::optional<size_t> last = header_;  // the line behind which new entries come
    size_t next = 0;                       // the entry that comes next in the file
    for (const PlaylistSlot& slot : slots) {
      if (slot.from == PlaylistSlot::added) {
        std::string lines;
        if (hasInformation_)
          lines = line(std::string(information) + describedLength({}, *slot.now) + "," +
                       describedTrack({}, slot));
        lines += line(slot.now->location);
        (last ? edits.behind[*last] : edits.first) += lines;
        continue;
      }
      for (; next < slot.from; ++next) drop(places_[next], edits);
      const Place& place = places_[next++];
      last = place.path;
      if (!slot.now) continue;
      edits.lines[place.path] = encoded(slot.now->location, text(place.path));
      if (place.information && !slot.onlyLocation)
        edits.lines[*place.information] = corrected(text(*place.information), slot);
    }
    for (; next < places_.size(); ++next) drop(places_[next], edits);
    return edited(edits);
  }

 private:
  /// The lines of an entry.
  struct Place {
    size_t path = 0;
    std::optional<size_t> information;
    std::vector<size_t> options;
  };

  static void drop(const Place& place, Edits& edits) {
    edits.lines[place.path] = std::nullopt;
    if (place.information) edits.lines[*place.information] = std::nullopt;
    for (const size_t option : place.options) edits.lines[option] = std::nullopt;
  }

  /// "#EXTINF:LENGTH ATTRIBUTES,TEXT" for another track.
  [[nodiscard]] std::string corrected(string_view line, const PlaylistSlot& slot) const {
    line.remove_prefix(information.size());
    const size_t lengthEnd = std::min(line.find_first_of(" ,"), line.size());
    bool isQuoted = false;
    size_t comma = lengthEnd;
    for (; comma < line.size() && (isQuoted || line[comma] != ','); ++comma)
      isQuoted ^= line[comma] == '"';
    const string_view earlier = line.substr(std::min(comma + 1, line.size()));
    const size_t start = std::min(earlier.find_first_not_of(' '), earlier.size());
    return std::string(information) + describedLength(line.substr(0, lengthEnd), *slot.now) +
           std::string(line.substr(lengthEnd, comma - lengthEnd)) + "," +
           std::string(earlier.substr(0, start)) +
           encoded(describedTrack(description(earlier.substr(start)), slot), earlier);
  }

  std::vector<Place> places_;
  std::optional<size_t> header_;
  bool hasInformation_ = false;
};

}  // namespace

std::unique_ptr<PlaylistFile> readM3u(std::string bytes, bool isUtf8) {
  return std::make_unique<M3uFile>(std::move(bytes), isUtf8);
}

}  // namespace kestrel
