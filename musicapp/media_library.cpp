#include "musicapp/media_library.h"

namespace kestrel {

const MediaItem& MediaItems::appendCopy(const MediaItem& item) {
  if (pools_.empty()) newPool();
  TextPool& pool = pools_.back();
  MediaItem copy = item;
  for (Text* text : {&copy.title, &copy.artist, &copy.albumArtist, &copy.album, &copy.composer,
                     &copy.genre, &copy.grouping, &copy.comments, &copy.kind, &copy.locationFolder,
                     &copy.locationName, &copy.originalLocation})
    if (!text->isNull()) *text = pool.share(text->view());
  // A block of its own keeps the addresses of the earlier ones.
  append({copy});
  return blocks_.back().back();
}

void MediaItems::seal() {
  for (TextPool& pool : pools_) pool.doneSharing();
}

std::size_t MediaItems::memory() const noexcept {
  std::size_t bytes = 0;
  for (const TextPool& pool : pools_) bytes += pool.memory();
  for (const auto& block : blocks_) bytes += block.capacity() * sizeof(MediaItem);
  return bytes;
}

}  // namespace kestrel
