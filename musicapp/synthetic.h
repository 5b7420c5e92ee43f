/// What a music application may lack and every library must have: persistent IDs, and a playlist
/// of everything.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "musicapp/media_library.h"

namespace kestrel {

/// The persistent IDs of one library's tracks or playlists, each derived from its URI. Two URIs
/// never share one; asked in the same order, such as that of the URIs, they get the same at each
/// opening. Library documents go without: IDs that they lack are derived from what each entry says
/// of itself, so that several threads can read them, and no table of URIs is needed for those they
/// have.
class DerivedIDs {
 public:
  /// `sort` keeps tracks and playlists of one URI apart.
  explicit DerivedIDs(std::string_view sort) : sort_(sort) {}
  std::uint64_t of(std::string_view uri) { return of(uri, usual(uri)); }
  /// The one that a URI has unless another has it, which any thread may ask for.
  [[nodiscard]] std::uint64_t usual(std::string_view uri) const;
  std::uint64_t of(std::string_view uri, std::uint64_t usual);
  /// Of those that were asked for: the ID of a URI, and the URI of an ID; nothing and nullptr for
  /// others.
  [[nodiscard]] std::optional<std::uint64_t> find(std::string_view uri) const;
  [[nodiscard]] const std::string* uriOf(std::uint64_t id) const;

 private:
  std::string sort_;
  std::unordered_map<std::uint64_t, std::string> uris_;
};

/// The list of all items, in library order, for an application that has none.
Playlist masterPlaylist(const MediaItems& items, std::string name);

}  // namespace kestrel
