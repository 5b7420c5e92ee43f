/// Library documents as lines of text, so that two readings can be compared and shown, and random
/// ones.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "musicapp/document/document_reader.h"

namespace kestrel::testing {

/// What an item holds as the document spells it, by its key there.
template <typename T>
struct Field {
  const char* key;
  T MediaItem::*value;
};
inline constexpr Field<Text> textFields[] = {
    {"Name", &MediaItem::title},        {"Artist", &MediaItem::artist},
    {"Album", &MediaItem::album},       {"Album Artist", &MediaItem::albumArtist},
    {"Composer", &MediaItem::composer}, {"Genre", &MediaItem::genre},
    {"Grouping", &MediaItem::grouping}, {"Comments", &MediaItem::comments},
    {"Kind", &MediaItem::kind}};
/// Numbers beyond the range of their field are held to it.
template <auto member>
std::int64_t heldIn(std::int64_t number) {
  MediaItem item;
  item.*member = number;
  return item.*member;
}
struct NumberField {
  const char* key;
  std::int64_t (*value)(const MediaItem&);
  std::int64_t (*held)(std::int64_t);
};
inline constexpr NumberField numberFields[] = {
    {"Year", numberOf<&MediaItem::year>, heldIn<&MediaItem::year>},
    {"Rating", numberOf<&MediaItem::rating>, heldIn<&MediaItem::rating>},
    {"Bit Rate", numberOf<&MediaItem::bitrate>, heldIn<&MediaItem::bitrate>},
    {"Sample Rate", numberOf<&MediaItem::sampleRate>, heldIn<&MediaItem::sampleRate>},
    {"Play Count", numberOf<&MediaItem::playCount>, heldIn<&MediaItem::playCount>},
    {"Skip Count", numberOf<&MediaItem::skipCount>, heldIn<&MediaItem::skipCount>},
    {"BPM", numberOf<&MediaItem::beatsPerMinute>, heldIn<&MediaItem::beatsPerMinute>},
    {"Track Number", numberOf<&MediaItem::trackNumber>, heldIn<&MediaItem::trackNumber>},
    {"Track Count", numberOf<&MediaItem::trackCount>, heldIn<&MediaItem::trackCount>},
    {"Disc Number", numberOf<&MediaItem::discNumber>, heldIn<&MediaItem::discNumber>},
    {"Disc Count", numberOf<&MediaItem::discCount>, heldIn<&MediaItem::discCount>},
    {"Total Time", numberOf<&MediaItem::totalTime>, heldIn<&MediaItem::totalTime>},
    {"Size", numberOf<&MediaItem::fileSize>, heldIn<&MediaItem::fileSize>}};
inline constexpr Field<OptionalDate> dateFields[] = {{"Date Added", &MediaItem::added},
                                                     {"Date Modified", &MediaItem::modified},
                                                     {"Play Date UTC", &MediaItem::lastPlayed},
                                                     {"Skip Date", &MediaItem::skipped}};

/// One item or playlist: "name=value" for everything that it holds, absent values left out.
class Line {
 public:
  explicit Line(std::string_view what) : text_(what) {}
  Line& add(std::string_view name, const std::optional<std::string>& value);
  /// Left out when it is `unset`.
  Line& add(std::string_view name, std::int64_t value, std::int64_t unset = 0);
  [[nodiscard]] std::string take() { return std::move(text_); }

 private:
  std::string text_;
};

using Lines = std::vector<std::string>;

/// Every value of a document that was read.
Lines described(const LibraryDocument& document);

/// The document's lines, or the error as one line.
Lines outcome(std::string_view bytes, unsigned threads, std::size_t partSize);

/// The first line that differs, from both sides; empty when none does.
std::string firstDifference(const Lines& expected, const Lines& actual);

/// A part size that no test document reaches: reads from start to end.
inline constexpr std::size_t onePart = std::size_t{1} << 40;

/// What the reader should read from a document without faults. Throws std::runtime_error when the
/// XML parser refuses it.
Lines expectedLines(std::string_view bytes);

/// The same document for the same arguments. Layout, encoding, order of sections and keys, and the
/// spelling of every element and text are drawn by `seed`; half of the documents are laid out in
/// the usual way, so that the reader's short cuts are taken too. `tracks` is the largest number.
std::string randomDocument(std::uint32_t seed, int tracks);

}  // namespace kestrel::testing
