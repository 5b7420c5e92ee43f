#include "musicapp/synthetic.h"

#include <utility>

#include "foundation/identifiers.h"

namespace kestrel {

std::uint64_t DerivedIDs::usual(std::string_view uri) const {
  return derivedPersistentID(sort_, uri);
}

std::uint64_t DerivedIDs::of(std::string_view uri, std::uint64_t usual) {
  if (uris_.try_emplace(usual, uri).first->second == uri) return usual;
  std::string tried(uri);
  for (;;) {
    tried += '\0';
    const std::uint64_t id = this->usual(tried);
    if (uris_.try_emplace(id, uri).first->second == uri) return id;
  }
}

std::optional<std::uint64_t> DerivedIDs::find(std::string_view uri) const {
  std::string tried(uri);
  for (;; tried += '\0') {
    const std::uint64_t id = derivedPersistentID(sort_, tried);
    const std::string* known = uriOf(id);
    if (!known) return std::nullopt;
    if (*known == uri) return id;
  }
}

const std::string* DerivedIDs::uriOf(std::uint64_t id) const {
  const auto found = uris_.find(id);
  return found == uris_.end() ? nullptr : &found->second;
}

Playlist masterPlaylist(const MediaItems& items, std::string name) {
  Playlist list;
  list.persistentID = derivedPersistentID("master", {});
  list.name = std::move(name);
  list.isMaster = true;
  list.items.reserve(items.size());
  items.forEach([&](const MediaItem& item) { list.items.push_back(item.persistentID); });
  return list;
}

}  // namespace kestrel
