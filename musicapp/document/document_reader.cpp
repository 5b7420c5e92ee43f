#include "musicapp/document/document_reader.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <unordered_map>

#include "foundation/library_error.h"
#include "foundation/plist_scanner.h"
#include "foundation/utf8.h"
#include "musicapp/document/document_playlists.h"
#include "musicapp/document/document_tracks.h"
#include "musicapp/file_url.h"
#include "platform/mapped_file.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

/// One guessed part of the Tracks section.
struct Part {
  size_t start = 0;
  size_t limit = 0;
  TrackRun run;
  std::exception_ptr error;
  bool done = false;
};

/// Parses guessed parts on several threads, each part as soon as a thread is free.
class PartReader {
 public:
  PartReader(string_view document, size_t start, MediaItems& items,
             const DocumentReadOptions& options)
      : document_(document), options_(options) {
    for (size_t from = start; from != string_view::npos;) {
      size_t next = string_view::npos;
      // A stretch without a boundary (a huge comment text) is left to the part before it.
      for (size_t at = from + options.partSize; at < document.size() && next == string_view::npos;
           at += options.partSize)
        next = guessTrackBoundary(document, at);
      parts_.push_back(Part{from, std::min(next, document.size()), {}, nullptr, false});
      from = next;
    }
    unsigned threads = options.threads ? options.threads : std::thread::hardware_concurrency();
    threads =
        static_cast<unsigned>(std::clamp<size_t>(threads, 1, std::max<size_t>(parts_.size(), 1)));
    pool_ = &items.newPool();
    // This thread works too, on what it is waiting for.
    try {
      for (unsigned i = 1; i < threads; ++i)
        workers_.emplace_back([this, pool = &items.newPool()](std::stop_token stop) {
          while (!stop.stop_requested() && parseNext(*pool)) {
          }
        });
    } catch (const std::system_error&) {  // no more threads to be had: those there are will do
    }
  }

  /// The part that was guessed to begin at `start`, parsed; nullptr if none was.
  Part* at(size_t start) {
    const auto part = std::lower_bound(parts_.begin(), parts_.end(), start,
                                       [](const Part& p, size_t s) { return p.start < s; });
    if (part == parts_.end() || part->start != start) return nullptr;
    for (;;) {
      {
        std::unique_lock lock(mutex_);
        if (part->done) return &*part;
        if (next_ >= parts_.size()) {  // every part is taken: this one is in work
          changed_.wait(lock, [&] { return part->done; });
          return &*part;
        }
      }
      parseNext(*pool_);
    }
  }
  /// Where the first part behind `offset` begins, or the document's end.
  size_t nextStart(size_t offset) const {
    const auto part = std::upper_bound(parts_.begin(), parts_.end(), offset,
                                       [](size_t o, const Part& p) { return o < p.start; });
    return part == parts_.end() ? document_.size() : part->start;
  }
  TextPool& pool() { return *pool_; }

 private:
  bool parseNext(TextPool& pool) {
    const size_t index = next_.fetch_add(1);
    if (index >= parts_.size()) return false;
    Part& part = parts_[index];
    TrackRun run;
    std::exception_ptr error;
    try {
      PlistScanner scanner(document_, part.start);
      run = readTracks(scanner, part.limit, pool);
    } catch (...) {
      error = std::current_exception();
    }
    if (options_.finished) options_.finished(part.start, part.limit - part.start);
    {
      const std::lock_guard lock(mutex_);
      part.run = std::move(run);
      part.error = error;
      part.done = true;
    }
    changed_.notify_all();
    return true;
  }

  string_view document_;
  const DocumentReadOptions& options_;
  std::vector<Part> parts_;  // by start
  std::atomic<size_t> next_{0};
  std::mutex mutex_;
  std::condition_variable changed_;
  TextPool* pool_ = nullptr;
  std::vector<std::jthread> workers_;  // last: they stop and join first
};

/// Reads the section whose dictionary `scanner` has just begun; leaves the scanner behind it.
void readTracksSection(string_view document, PlistScanner& scanner, MediaItems& items,
                       AscendingOffsets& ends, std::vector<std::int64_t>& ids,
                       const DocumentReadOptions& options) {
  if (scanner.begunEmpty()) return scanner.skip(PlistType::dictionary);
  size_t offset = scanner.offset();
  PartReader parts(document, offset, items, options);
  for (bool ended = false; !ended;) {
    TrackRun run;
    if (Part* part = parts.at(offset)) {
      if (part->error) std::rethrow_exception(part->error);
      run = std::move(part->run);
    } else {
      // The guess was wrong; go on serially until a guessed beginning is met again.
      PlistScanner serial(document, offset);
      run = readTracks(serial, parts.nextStart(offset), parts.pool());
    }
    for (auto& block : run.blocks) items.append(std::move(block));
    ids.insert(ids.end(), run.trackIDs.begin(), run.trackIDs.end());
    for (size_t i = 0; i < run.ends.size(); ++i) ends.add(run.ends[i]);
    offset = run.end;
    ended = run.sectionEnded;
    if (!ended && offset >= document.size()) {
      PlistScanner(document, offset)
          .fail(Message::tr("expected </dict>, but the document ends here"));
    }
  }
  ends.shrink();
  scanner = PlistScanner(document, offset);
}

/// From Track ID to the item's number. Track IDs are dense in practice, and looked up millions of
/// times, so they index an array unless that would be out of proportion.
class TrackIndex {
 public:
  static constexpr std::uint32_t none = UINT32_MAX;
  std::int64_t largest = -1;

  /// Notes in `replaced` the numbers of items whose Track ID comes again later.
  TrackIndex(const std::vector<std::int64_t>& ids, std::vector<std::uint32_t>& replaced) {
    bool dense = true;
    for (const std::int64_t id : ids) {
      if (id == noTrackID) continue;
      largest = std::max(largest, id);
      dense = dense && id >= 0;
    }
    dense = dense && largest < static_cast<std::int64_t>(ids.size() * 8 + 65536);
    if (dense) table_.assign(static_cast<size_t>(largest + 1), none);
    for (size_t i = 0; i < ids.size(); ++i) {
      if (ids[i] == noTrackID) continue;
      std::uint32_t& number = dense ? table_[static_cast<size_t>(ids[i])]
                                    : map_.try_emplace(ids[i], none).first->second;
      if (number != none) replaced.push_back(number);
      number = static_cast<std::uint32_t>(i);
    }
    std::sort(replaced.begin(), replaced.end());
  }
  [[nodiscard]] std::uint32_t find(std::int64_t id) const noexcept {
    if (id >= 0 && static_cast<std::uint64_t>(id) < table_.size())
      return table_[static_cast<size_t>(id)];
    if (map_.empty()) return none;
    const auto found = map_.find(id);
    return found == map_.end() ? none : found->second;
  }

 private:
  std::vector<std::uint32_t> table_;
  std::unordered_map<std::int64_t, std::uint32_t> map_;
};

/// The kind that membership in one of the application's own lists gives to a song.
std::optional<MediaKind> kindOfMembers(const Playlist& playlist) {
  switch (playlist.distinguishedKind) {
    case 5:
      return MediaKind::audiobook;
    case 6:
      return MediaKind::ringtone;
    case 31:
      return MediaKind::itunesU;
    default:
      return std::nullopt;
  }
}

/// Turns the playlists' Track IDs into persistent IDs and settles what membership decides.
void connect(LibraryDocument& document, std::vector<std::int64_t> ids) {
  std::vector<std::uint32_t>& replaced = document.index->replaced;
  std::vector<std::int64_t>& undefined = document.index->undefinedIDs;
  const TrackIndex index(ids, replaced);
  ids = {};
  std::vector<std::uint64_t> persistentIDs;
  persistentIDs.reserve(document.items->size());
  document.items->forEach(
      [&](const MediaItem& item) { persistentIDs.push_back(item.persistentID); });

  std::vector<MediaKind> byMembership;  // unknown: no membership
  for (Playlist& playlist : *document.playlists) {
    const auto kind = kindOfMembers(playlist);
    if (kind && byMembership.empty()) byMembership.assign(persistentIDs.size(), MediaKind::unknown);
    size_t kept = 0;
    for (const std::uint64_t entry : playlist.items) {
      const auto id = static_cast<std::int64_t>(entry);
      const std::uint32_t number = index.find(id);
      if (number == TrackIndex::none) {
        undefined.push_back(id);
        playlist.unknownAt.push_back(kept);
        continue;
      }
      playlist.items[kept++] = persistentIDs[number];
      if (kind && (byMembership[number] == MediaKind::unknown || *kind < byMembership[number]))
        byMembership[number] = *kind;
    }
    document.droppedItems += playlist.unknownItems();
    playlist.items.resize(kept);
  }
  std::sort(undefined.begin(), undefined.end());
  undefined.erase(std::unique(undefined.begin(), undefined.end()), undefined.end());
  document.index->largestID = std::max(document.index->largestID, index.largest);
  if (byMembership.empty() && replaced.empty()) return;

  std::uint32_t number = 0;
  auto nextReplaced = replaced.begin();
  document.items->editBlocks([&](std::vector<MediaItem>& block) {
    size_t kept = 0;
    for (MediaItem& item : block) {
      if (!byMembership.empty() && byMembership[number] != MediaKind::unknown &&
          item.mediaKind == MediaKind::song)
        item.mediaKind = byMembership[number];
      // A dictionary has one value a key: of two entries with one Track ID, the later counts.
      const bool drop = nextReplaced != replaced.end() && *nextReplaced == number;
      if (drop) ++nextReplaced;
      if (!drop && &block[kept] != &item) block[kept] = item;
      kept += drop ? 0 : 1;
      ++number;
    }
    block.resize(kept);
  });
}

LibraryDocument readUtf8(string_view bytes, const DocumentReadOptions& options) {
  LibraryDocument document;
  document.items = std::make_shared<MediaItems>();
  document.playlists = std::make_shared<std::vector<Playlist>>();
  document.index = std::make_shared<DocumentIndex>();
  DocumentIndex& index = *document.index;
  std::vector<std::int64_t> ids;

  PlistScanner scanner(bytes);
  scanner.beginDocument();
  const size_t root = scanner.offset();
  if (scanner.beginValue() != PlistType::dictionary)
    throw PlistError(root, Message::tr("expected the library's <dict>"));
  index.root = ContainerPlace::begun(bytes, scanner);
  std::string key;
  for (string_view nextKey; scanner.nextKey(nextKey); index.root.last = scanner.offset()) {
    key.assign(nextKey);
    const size_t place = scanner.offset();
    const PlistType type = scanner.beginValue();
    if (key == "Tracks") {
      if (type != PlistType::dictionary)
        throw PlistError(place, Message::tr("expected Tracks to be a <dict>"));
      document.items = std::make_shared<MediaItems>();
      ids.clear();
      index.trackEnds = {};
      index.tracks = ContainerPlace::begun(bytes, scanner);
      readTracksSection(bytes, scanner, *document.items, index.trackEnds, ids, options);
      index.tracks.end = scanner.offset();
      if (const size_t count = index.trackEnds.size())
        index.tracks.last = index.trackEnds[count - 1];
    } else if (key == "Playlists") {
      if (type != PlistType::array)
        throw PlistError(place, Message::tr("expected Playlists to be an <array>"));
      index.playlists = ContainerPlace::begun(bytes, scanner);
      *document.playlists = readPlaylists(scanner, index);
      index.playlists.end = scanner.offset();
      if (!index.playlistEnds.empty()) index.playlists.last = index.playlistEnds.back().offset;
    } else if (type == PlistType::string && key == "Music Folder") {
      const std::string url(scanner.text(type));
      pathOfFileUrl(url, document.musicFolder);
    } else if (type == PlistType::string && key == "Application Version") {
      document.applicationVersion = scanner.text(type);
    } else if (type == PlistType::string && key == "Library Persistent ID") {
      document.persistentID = scanner.text(type);
    } else {
      scanner.skip(type);
    }
  }
  index.root.end = scanner.offset();
  if (!index.tracks.isThere())
    scanner.fail(Message::tr("this property list is no music library: it has no Tracks"));
  scanner.endDocument();
  connect(document, std::move(ids));
  document.items->seal();
  return document;
}

/// Reads `bytes`; when they are not UTF-8, what they convert to, in the room that `convert` makes.
/// Offsets in errors refer to the text that was read.
template <typename Convert>
LibraryDocument readAnyEncoding(string_view bytes, const std::string& name,
                                const DocumentReadOptions& options, Convert convert) {
  if (bytes.empty())
    throw LibraryError(name, {}, Message::tr("the file is empty"),
                       Message::tr("Export the library again."));
  string_view text = bytes;
  try {
    const TextEncoding encoding = encodingOf(bytes);
    if (encoding == TextEncoding::utf8) return readUtf8(bytes, options);
    text = convert(encoding);
    DocumentReadOptions converted = options;
    converted.finished = nullptr;  // speaks of places in the file
    return readUtf8(text, converted);
  } catch (const PlistError& error) {
    throw documentError(name, text, error);
  }
}

}  // namespace

LibraryError documentError(const std::string& name, string_view document, const PlistError& fault) {
  Message remedy = Message::tr("Export the library again, or repair the document at that place.");
  if (document.starts_with("bplist"))
    remedy = Message::tr(
        "Export the library from the music application as XML, or convert the file to an XML "
        "property list.");
  else if (fault.offset >= document.size())
    remedy = Message::tr("The file may be incomplete: export or copy it again.");
  return libraryError(name, document, fault, std::move(remedy));
}

LibraryDocument readLibraryDocument(string_view bytes, const std::string& name,
                                    const DocumentReadOptions& options) {
  std::string utf8;
  return readAnyEncoding(bytes, name, options, [&](TextEncoding encoding) -> string_view {
    convertToUtf8(bytes, encoding, [&](string_view piece) { utf8.append(piece); });
    return utf8;
  });
}

LibraryDocument readLibraryDocument(const MappedFile& file, const std::string& name,
                                    const DocumentReadOptions& options) {
  const string_view bytes(file.bytes().data(), file.bytes().size());
  DocumentReadOptions releasing = options;
  releasing.finished = [&](size_t offset, size_t size) {
    file.release(offset, size);
    if (options.finished) options.finished(offset, size);
  };
  std::optional<MappedFile> utf8;
  return file.checked([&] {
    return readAnyEncoding(bytes, name, releasing, [&](TextEncoding encoding) -> string_view {
      // On the disk, like the file itself: it may not fit into memory.
      ScratchFile scratch;
      convertToUtf8(bytes, encoding, [&](string_view piece) { scratch.append(piece); });
      utf8 = scratch.map();
      return {utf8->bytes().data(), utf8->bytes().size()};
    });
  });
}

}  // namespace kestrel
