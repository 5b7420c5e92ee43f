#include "musicapp/synthetic.h"

#include <utility>

namespace kestrel {

std::uint64_t derivedPersistentID(std::string_view first, std::string_view second) noexcept {
  // FNV-1a, the two texts parted by a byte that neither contains.
  std::uint64_t hash = 0xCBF29CE484222325U;
  const auto add = [&hash](std::string_view text) {
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  };
  add(first);
  add(std::string_view("\0", 1));
  add(second);
  return hash ? hash : 1;
}

std::uint64_t DerivedIDs::of(std::string_view uri) {
  std::string tried(uri);
  for (;; tried += '\0') {
    const std::uint64_t id = derivedPersistentID(sort_, tried);
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
