/// Playlist documents: library documents that are read for their playlists.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace kestrel {

class FileService;

struct ImportedTrack {
  std::uint64_t persistentID = 0;
  std::string location;  ///< file-system path, or the URL of what is no file
};

struct ImportedPlaylists {
  struct List {
    std::string name;
    std::vector<std::int64_t> trackIDs;  ///< those that the document defines, in order
  };
  std::vector<List> lists;
  std::unordered_map<std::int64_t, ImportedTrack> tracks;  ///< by Track ID
};

/// Throws LibraryError, or FileError, when the file is no such document.
ImportedPlaylists readPlaylistDocument(const FileService& files, const std::string& path);

/// Whether a file is XML by the look of its first bytes.
bool looksLikeXml(const FileService& files, const std::string& path);

}  // namespace kestrel
