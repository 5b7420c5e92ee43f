#include "musicapp/document/playlist_import.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "musicapp/document/document_index.h"
#include "musicapp/document/document_reader.h"
#include "musicapp/document/document_text.h"
#include "musicapp/document/edited_tracks.h"
#include "platform/files.h"

namespace kestrel {

ImportedPlaylists readPlaylistDocument(const FileService& files, const std::string& path) {
  MappedFile file = files.map(path);
  const LibraryDocument document = readLibraryDocument(file, path);
  // The reader has persistent IDs only, which may repeat; the Track IDs are in the index.
  const DocumentText text(std::move(file));
  const DocumentIndex index(text.bytes());
  text.checkUnchanged();

  ImportedPlaylists imported;
  imported.tracks.reserve(index.tracks().size());
  auto track = index.tracks().begin();
  document.items->forEach([&](const MediaItem& item) {
    imported.tracks.emplace((track++)->trackID, ImportedTrack{item.persistentID, locationOf(item)});
  });
  for (std::size_t i = 0; i < index.playlists().size(); ++i) {
    ImportedPlaylists::List& list = imported.lists.emplace_back();
    list.name = (*document.playlists)[i].name;
    for (const EntryPlace& entry : entriesOf(text.bytes(), index.playlists()[i]))
      if (imported.tracks.contains(entry.trackID)) list.trackIDs.push_back(entry.trackID);
  }
  return imported;
}

bool looksLikeXml(const FileService& files, const std::string& path) {
  const MappedFile file = files.map(path);
  std::string_view start(file.bytes().data(), std::min<std::size_t>(file.bytes().size(), 1024));
  for (const std::string_view mark : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"})
    if (start.starts_with(mark)) start.remove_prefix(mark.size());
  const std::size_t first = start.find_first_not_of(std::string_view(" \t\r\n\0", 5));
  return first != std::string_view::npos && start[first] == '<';
}

}  // namespace kestrel
