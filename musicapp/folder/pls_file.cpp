#include <algorithm>
#include <array>
#include <charconv>
#include <map>

#include "foundation/collation.h"
#include "musicapp/folder/playlist_lines.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

/// "FileN=PATH", "TitleN=TEXT" and "LengthN=SECONDS" in any order; an entry's number says where it
/// stands.
class PlsFile final : public PlaylistLines {
 public:
  explicit PlsFile(std::string bytes) : PlaylistLines(std::move(bytes), false) {
    std::map<std::uint32_t, Place> byNumber;
    for (size_t i = 0; i < lines_.size(); ++i) {
      const string_view line = text(i);
      const size_t equals = line.find('=');
      if (line.starts_with('[') && !start_) start_ = i;
      if (equals == string_view::npos) continue;
      string_view name = line.substr(0, equals);
      name = name.substr(0, name.find_last_not_of(" \t") + 1);
      const size_t digits = name.find_last_not_of("0123456789") + 1;
      if (sameIgnoringCase(name, "NumberOfEntries")) count_ = i;
      std::uint32_t number = 0;
      if (std::from_chars(name.data() + digits, name.data() + name.size(), number).ec !=
          std::errc())
        continue;
      Place& place = byNumber[number];
      place.number = number;
      place.lines.push_back(i);
      for (size_t key = 0; key < keys.size(); ++key)
        if (sameIgnoringCase(name.substr(0, digits), keys[key]) && !place.values[key])
          place.values[key] = i;
    }
    for (auto& [number, place] : byNumber)
      if (place.values[file]) {
        entries_.emplace_back(value(*place.values[file]));
        places_.push_back(std::move(place));
      }
  }

  [[nodiscard]] std::string written(std::span<const PlaylistSlot> slots) const override {
    Edits edits;
    const bool isRenumbered = slots.size() != places_.size() ||
                              std::any_of(slots.begin(), slots.end(), [](const PlaylistSlot& slot) {
                                return slot.from == PlaylistSlot::added;
                              });
    std::vector<bool> stays(places_.size());
    std::optional<size_t> last = start_;
    for (size_t i = 0; i < slots.size(); ++i) {
      const PlaylistSlot& slot = slots[i];
      const std::string number = std::to_string(i + 1);
      if (slot.from == PlaylistSlot::added) {
        (last ? edits.behind[*last] : edits.first) +=
            line("File" + number + "=" + slot.now->location) +
            line("Title" + number + "=" + describedTrack({}, slot)) +
            line("Length" + number + "=" + describedLength({}, *slot.now));
        continue;
      }
      const Place& place = places_[slot.from];
      stays[slot.from] = true;
      last = place.end();
      if (slot.now) replace(place, slot, edits);
      if (isRenumbered && place.number != i + 1) renumber(place, number, edits);
    }
    for (size_t i = 0; i < places_.size(); ++i)
      if (!stays[i])
        for (const size_t line : places_[i].lines) edits.lines[line] = std::nullopt;
    if (isRenumbered && count_) edits.lines[*count_] = with(*count_, std::to_string(slots.size()));
    return edited(edits);
  }

 private:
  enum Key : std::uint8_t { file, title, length };
  static constexpr std::array<string_view, 3> keys{"File", "Title", "Length"};
  struct Place {
    std::uint32_t number = 0;
    std::array<std::optional<size_t>, keys.size()> values;  ///< lines
    std::vector<size_t> lines;                              ///< all that have the number, ascending
    /// The line behind which the next entry comes: the last, where the lines stand together.
    [[nodiscard]] size_t end() const {
      const bool isTogether = lines.back() - lines.front() + 1 == lines.size();
      return isTogether ? lines.back() : *values[file];
    }
  };

  /// Where the value of a line begins.
  [[nodiscard]] size_t valueStart(string_view line) const {
    const size_t equals = line.find('=') + 1;
    return std::min(line.find_first_not_of(" \t", equals), line.size());
  }
  [[nodiscard]] string_view value(size_t line) const {
    return text(line).substr(valueStart(text(line)));
  }
  /// A line with another value.
  [[nodiscard]] std::string with(size_t line, string_view value) const {
    return std::string(text(line).substr(0, valueStart(text(line)))) +
           encoded(value, this->value(line));
  }

  void replace(const Place& place, const PlaylistSlot& slot, Edits& edits) const {
    const auto put = [&](Key key, const std::string& value) {
      if (place.values[key]) edits.lines[*place.values[key]] = with(*place.values[key], value);
    };
    put(file, slot.now->location);
    if (slot.onlyLocation) return;
    if (place.values[title])
      put(title, describedTrack(description(value(*place.values[title])), slot));
    if (place.values[length]) put(length, describedLength(value(*place.values[length]), *slot.now));
  }

  void renumber(const Place& place, const std::string& number, Edits& edits) const {
    for (const size_t i : place.lines) {
      const auto edit = edits.lines.find(i);
      std::string line = edit != edits.lines.end() ? *edit->second : std::string(text(i));
      const size_t end = line.find_last_not_of(" \t", line.find('=') - 1) + 1;
      const size_t begin = line.find_last_not_of("0123456789", end - 1) + 1;
      edits.lines[i] = line.replace(begin, end - begin, number);
    }
  }

  std::vector<Place> places_;
  std::optional<size_t> start_, count_;
};

}  // namespace

std::unique_ptr<PlaylistFile> readPls(std::string bytes) {
  return std::make_unique<PlsFile>(std::move(bytes));
}

}  // namespace kestrel
