#include "tests/musicapp/document/described_document.h"

#include <algorithm>

#include "foundation/library_error.h"

namespace kestrel::testing {
namespace {

std::optional<std::string> optional(Text text) {
  if (text.isNull()) return std::nullopt;
  return std::string(text.view());
}

std::string lineOf(const MediaItem& item) {
  Line line("item");
  line.add("id", static_cast<std::int64_t>(item.persistentID));
  for (const auto& field : textFields) line.add(field.key, optional(item.*field.value));
  for (const auto& field : numberFields) line.add(field.key, field.value(item));
  for (const auto& field : dateFields)
    line.add(field.key, (item.*field.value).seconds, OptionalDate::missing);
  line.add("folder", optional(item.locationFolder))
      .add("name", optional(item.locationName))
      .add("mediaKind", static_cast<std::int64_t>(item.mediaKind))
      .add("locationType", static_cast<std::int64_t>(item.locationType))
      .add("cloud", static_cast<std::int64_t>(item.cloudStatus))
      .add("compilation", item.isCompilation ? 1 : 0);
  return line.take();
}

std::string lineOf(const Playlist& playlist) {
  Line line("playlist");
  line.add("name", playlist.name)
      .add("id", static_cast<std::int64_t>(playlist.persistentID))
      .add("parent", static_cast<std::int64_t>(playlist.parentID.value_or(0)))
      .add("distinguished", playlist.distinguishedKind)
      .add("kind", static_cast<std::int64_t>(playlist.kind))
      .add("master", playlist.isMaster ? 1 : 0)
      .add("visible", playlist.isVisible ? 1 : 0);
  for (const std::uint64_t item : playlist.items)
    line.add("entry", static_cast<std::int64_t>(item), -1);
  return line.take();
}

}  // namespace

Line& Line::add(std::string_view name, const std::optional<std::string>& value) {
  if (value) text_.append(" | ").append(name).append("=").append(*value);
  return *this;
}

Line& Line::add(std::string_view name, std::int64_t value, std::int64_t unset) {
  return value == unset ? *this : add(name, std::to_string(value));
}

Lines described(const LibraryDocument& document) {
  Lines lines;
  document.items->forEach([&](const MediaItem& item) { lines.push_back(lineOf(item)); });
  for (const Playlist& playlist : *document.playlists) lines.push_back(lineOf(playlist));
  lines.push_back(Line("document")
                      .add("folder", document.musicFolder)
                      .add("version", document.applicationVersion)
                      .add("id", document.persistentID)
                      .add("dropped", static_cast<std::int64_t>(document.droppedItems))
                      .take());
  return lines;
}

Lines outcome(std::string_view bytes, unsigned threads, std::size_t partSize) {
  try {
    return described(readLibraryDocument(
        bytes, "test", {.threads = threads, .partSize = partSize, .finished = {}}));
  } catch (const LibraryError& error) {
    return {error.what()};
  }
}

std::string firstDifference(const Lines& expected, const Lines& actual) {
  const std::size_t common = std::min(expected.size(), actual.size());
  for (std::size_t i = 0; i < common; ++i)
    if (expected[i] != actual[i])
      return "line " + std::to_string(i) + "\nexpected " + expected[i] + "\nactual   " + actual[i];
  if (expected.size() == actual.size()) return {};
  return std::to_string(expected.size()) + " lines expected, " + std::to_string(actual.size()) +
         " are there";
}

}  // namespace kestrel::testing
