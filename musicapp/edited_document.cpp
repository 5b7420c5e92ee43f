#include "musicapp/edited_document.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

#include "platform/random.h"

namespace kestrel {

EditedDocument::EditedDocument(DocumentText text, std::shared_ptr<const MediaItems> items,
                               std::shared_ptr<const std::vector<Playlist>> playlists,
                               Random& random)
    : text_(std::move(text)),
      index_(text_.bytes()),
      layout_(layoutOf(text_.bytes(), index_)),
      tracks_(index_, std::move(items)),
      playlists_(text_.bytes(), index_, tracks_, std::move(playlists)),
      random_(random),
      largestID_(index_.largestID()) {
  text_.release(0, text_.bytes().size());
}

std::uint64_t EditedDocument::newPersistentID() {
  for (;;) {
    std::uint64_t id = 0;
    for (int i = 0; i < 4; ++i) id = id << 16 | random_.below(0x10000);
    const auto& list = playlists_.list();
    if (id != 0 && !tracks_.byPersistentID(id) &&
        std::none_of(list.begin(), list.end(), [id](const Playlist& playlist) {
          return playlist.persistentID == id || playlist.parentID == id;
        }))
      return id;
  }
}

std::int64_t EditedDocument::newID() {
  if (largestID_ == std::numeric_limits<std::int64_t>::max())
    throw std::overflow_error("the library has no IDs left");
  return ++largestID_;
}

void EditedDocument::write(TextSink& sink) const {
  try {
    std::vector<Splice> splices;
    if (const auto& name = text_.foreignEncodingName())
      splices.push_back({*name, [](TextSink& out) { out.append("UTF-8"); }});
    tracks_.appendSplices(text_.bytes(), layout_, splices);
    playlists_.appendSplices(layout_, splices);
    writeSpliced(text_.bytes(), std::move(splices), sink,
                 [this](std::size_t offset, std::size_t size) { text_.release(offset, size); });
    text_.checkUnchanged();
  } catch (...) {
    text_.checkUnchanged();
    throw;
  }
}

}  // namespace kestrel
