/// Which library it is, and in which state.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "musicapp/file_url.h"

namespace kestrel {

/// Opaque to all but the application that the library belongs to, but that a `uri` which is a file
/// URL names a file. Settings, history, locks and plans go by it.
struct LibraryIdentity {
  std::string uri;  ///< empty for a library that is nowhere
  /// What the library calls itself, wherever it is; empty when it has no such name.
  std::string id;
  /// How names of servers begin: one server may be reached at several addresses.
  static constexpr std::string_view serverName = "server:";
  [[nodiscard]] bool isServer() const noexcept { return id.starts_with(serverName); }
  std::string version;  ///< another one after every change, as far as the application can tell

  friend bool operator==(const LibraryIdentity&, const LibraryIdentity&) = default;
};

/// What an address of a folder begins with that names folders of further playlists too:
/// "folder:///PATH?playlists=/PATH&playlists=...".
inline constexpr std::string_view folderScheme = "folder://";

/// The uri without what an address names beside the library itself: of such a folder the file URL
/// of its path.
inline std::string plainUri(const std::string& uri) {
  if (!uri.starts_with(folderScheme)) return uri;
  const std::size_t begin = folderScheme.size();
  return "file://" + uri.substr(begin, uri.find('?') - begin);
}

/// The uri as people read it: the path of a file.
inline std::string addressText(const std::string& uri) {
  std::string path;
  return pathOfFileUrl(uri, path) ? path : uri;
}

}  // namespace kestrel
