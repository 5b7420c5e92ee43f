#include "musicapp/document/edited_document.h"

#include <algorithm>
#include <limits>
#include <map>
#include <stdexcept>
#include <unordered_map>
#include <utility>

#include "musicapp/document/document_reader.h"
#include "musicapp/document/document_tracks.h"
#include "platform/random.h"

namespace kestrel {

EditedDocument::EditedDocument(DocumentText text, std::shared_ptr<const DocumentIndex> index,
                               std::shared_ptr<const MediaItems> items,
                               std::shared_ptr<const std::vector<Playlist>> playlists,
                               Random& random)
    : text_(std::move(text)),
      index_(std::move(index)),
      layout_(layoutOf(text_.bytes(), *index_)),
      tracks_(text_.bytes(), *index_, std::move(items)),
      playlists_(text_.bytes(), *index_, tracks_, std::move(playlists)),
      random_(random),
      largestID_(index_->largestID) {}

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

void EditedDocument::removeTracks(std::span<const TrackNumber> tracks) {
  auto lost = playlists_.removeTracks(tracks);
  lostEntries_.insert(lostEntries_.end(), lost.begin(), lost.end());
  for (const TrackNumber track : tracks) tracks_.remove(track);
}

namespace {

/// Replaces the text that follows the first `before` in `entry`, up to the next tag.
void replaceNumber(std::string& entry, std::string_view before, std::int64_t number) {
  const std::size_t found = entry.find(before);
  if (found == std::string::npos) return;
  const std::size_t begin = found + before.size();
  entry.replace(begin, entry.find('<', begin) - begin, std::to_string(number));
}

}  // namespace

void EditedDocument::restoreTracks(const DocumentReversal& reversal) {
  // Read as a document of its own, which knows all spellings.
  std::string document = "<plist version=\"1.0\"><dict><key>Tracks</key><dict>";
  std::vector<const DocumentReversal::Track*> wanted;
  for (const DocumentReversal::Track& track : reversal.tracks)
    if (!tracks_.byPersistentID(track.persistentID)) {
      wanted.push_back(&track);
      document += track.entry;
    }
  document += "</dict></dict></plist>";
  const LibraryDocument read = readLibraryDocument(document, "tracks of the history");
  if (read.index->trackCount() != wanted.size())
    throw std::invalid_argument("the history's tracks share their Track IDs");

  std::map<std::size_t, std::vector<EditedPlaylists::InsertedEntry>> entries;
  std::unordered_map<std::uint64_t, std::size_t> places;
  for (std::size_t i = 0; i < playlists_.list().size(); ++i)
    places.try_emplace(playlists_.list()[i].persistentID, i);
  std::size_t next = 0;
  read.items->forEach([&](const MediaItem& item) {
    const DocumentReversal::Track& track = *wanted[next];
    std::int64_t trackID = read.index->trackID(document, next++);
    std::string entry = track.entry;
    if (trackID == noTrackID || tracks_.byTrackID(trackID)) {
      trackID = newID();
      replaceNumber(entry, "<key>", trackID);
      replaceNumber(entry, "<key>Track ID</key><integer>", trackID);
    }
    const TrackNumber number = tracks_.restore(item, trackID, std::move(entry), track.behind);
    for (const auto& [playlist, position] : track.positions)
      if (const auto place = places.find(playlist); place != places.end())
        entries[place->second].push_back({position, number});
  });
  for (auto& [playlist, inserted] : entries) {
    std::stable_sort(inserted.begin(), inserted.end(),
                     [](const auto& a, const auto& b) { return a.position < b.position; });
    playlists_.insertEntries(playlist, inserted);
  }
}

DocumentReversal EditedDocument::write(TextSink& sink) const {
  try {
    DocumentReversal reversal = writeChanged(sink);
    text_.checkUnchanged();
    return reversal;
  } catch (...) {
    text_.checkUnchanged();
    throw;
  }
}

DocumentReversal EditedDocument::writeChanged(TextSink& sink) const {
  std::vector<Splice> splices;
  if (const auto& name = text_.foreignEncodingName())
    splices.push_back({*name, [](TextSink& out) { out.append("UTF-8"); }});
  tracks_.appendSplices(layout_, splices);
  playlists_.appendSplices(layout_, splices);
  DocumentReversal reversal =
      writeSpliced(text_.bytes(), std::move(splices), sink,
                   [this](std::size_t offset, std::size_t size) { text_.release(offset, size); });

  std::unordered_map<std::uint64_t, std::size_t> places;
  for (const EditedTracks::Removed& removed : tracks_.removed()) {
    const std::uint64_t id = tracks_.item(removed.track).persistentID;
    places.try_emplace(id, reversal.tracks.size());
    reversal.tracks.push_back({id,
                               removed.behind,
                               std::string(text_.bytes().substr(
                                   removed.entry.begin, removed.entry.end - removed.entry.begin)),
                               {}});
  }
  for (const EditedPlaylists::LostEntry& lost : lostEntries_)
    if (const auto place = places.find(lost.track); place != places.end())
      reversal.tracks[place->second].positions.push_back({lost.playlist, lost.position});
  return reversal;
}

DocumentReversal EditedDocument::write(TextSink& sink, std::string_view file) const {
  DocumentReversal reversal = write(sink);
  ContentHash before;
  before.add(file);
  reversal.before = before.value();
  reversal.pieces = {{{0, reversal.size}, std::string(file)}};
  return reversal;
}

}  // namespace kestrel
