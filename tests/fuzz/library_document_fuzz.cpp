// Feeds arbitrary bytes to the library document reader. Beside not crashing, reading in small
// parts must give what reading in one part gives, errors included.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "foundation/library_error.h"
#include "musicapp/document/document_reader.h"

namespace {

using kestrel::LibraryDocument;
using kestrel::MediaItem;

void put(std::string& out, kestrel::Text text) {
  out.append(text.isNull() ? "-" : "+").append(text.view()).append(1, '\n');
}

/// Everything that was read, or the error, as one text.
std::string outcome(std::string_view bytes, std::size_t partSize) {
  std::string out;
  try {
    const LibraryDocument document =
        kestrel::readLibraryDocument(bytes, "fuzz", {.threads = 1, .partSize = partSize});
    document.items->forEach([&out](const MediaItem& item) {
      for (const auto text : {item.title, item.artist, item.album, item.comments, item.kind,
                              item.locationFolder, item.locationName})
        put(out, text);
      for (const std::int64_t number : std::initializer_list<std::int64_t>{
               item.totalTime, item.fileSize, item.year, item.added.seconds,
               static_cast<std::int64_t>(item.mediaKind)})
        out.append(std::to_string(number)).append(1, ' ');
      out.append(std::to_string(item.persistentID)).append(1, '\n');
    });
    for (const auto& playlist : *document.playlists) {
      out.append(playlist.name).append(std::to_string(playlist.persistentID));
      for (const auto item : playlist.items) out.append(1, ' ').append(std::to_string(item));
    }
    out.append(std::to_string(document.droppedItems));
  } catch (const kestrel::LibraryError& error) {
    out = error.what();
  }
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (outcome(bytes, std::size_t{1} << 30) != outcome(bytes, 300)) std::abort();
  return 0;
}
