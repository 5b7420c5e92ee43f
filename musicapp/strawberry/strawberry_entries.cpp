// Writing the entries of a list, and how they were before.
#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "musicapp/strawberry/strawberry_database.h"
#include "musicapp/strawberry/strawberry_rows.h"

namespace kestrel {
namespace {

using std::int64_t;
using std::string_view;

// In the text that keeps entries.
constexpr string_view placeMark = "entry", removedMark = "removed";
constexpr char none[] = "none";

/// Nothing of an entry that goes by the number of its song.
std::optional<FilePlace> placeOf(const SqliteDatabase& database, int64_t row, std::uint64_t song) {
  SqliteStatement entry = database.prepare(
      "SELECT type, collection_id, url FROM playlist_items WHERE rowid = ? AND type <> 2");
  entry << row;
  if (!entry.next()) return std::nullopt;
  return FilePlace{entry.integer(0), entry.optional(1), entry.text(2), song};
}

}  // namespace

void StrawberryChange::removeEntries(const StrawberryPlaylist& was, const StrawberryPlaylist& now) {
  std::unordered_set<int64_t> kept;
  for (const StrawberryEntry& entry : now.entries) kept.insert(entry.row);
  SqliteStatement remove = database_.prepare("DELETE FROM playlist_items WHERE rowid = ?");
  for (const StrawberryEntry& entry : was.entries) {
    if (kept.contains(entry.row)) continue;
    left_.removed.push_back({entry.row, was.id, entry.song, strawberryEntry(database_, entry.row)});
    remove.run(entry.row);
  }
}

namespace {

/// The entries that a list had before, for those that come in.
class Returning {
 public:
  Returning(const SqliteDatabase& database, const StrawberryPlaylist& list,
            const FormerEntries& former)
      : isTaken_(database.prepare("SELECT 1 FROM playlist_items WHERE rowid = ?")),
        nextKept_(list.entries.size(), INT64_MAX) {
    for (const RemovedEntry& entry : former.removed)
      if (entry.playlist == list.id) bySong_[entry.song].push_back(&entry);
    for (std::size_t i = list.entries.size(); i-- > 1;)
      nextKept_[i - 1] = list.entries[i].row ? list.entries[i].row : nextKept_[i];
  }

  /// What the entry at a place was; nullptr when it was not in the list.
  const RemovedEntry* entry(std::uint64_t song) {
    const auto found = bySong_.find(song);
    if (found == bySong_.end() || found->second.empty()) return nullptr;
    const RemovedEntry* first = found->second.front();
    found->second.erase(found->second.begin());
    return first;
  }
  /// Whether its row is free, and between those before and behind that place.
  bool fits(const RemovedEntry& entry, std::size_t place, int64_t last) {
    if (entry.row <= last || entry.row >= nextKept_[place]) return false;
    isTaken_.again();
    isTaken_ << entry.row;
    return !isTaken_.next();
  }

 private:
  SqliteStatement isTaken_;
  std::vector<int64_t> nextKept_;  ///< behind each place
  std::unordered_map<std::uint64_t, std::vector<const RemovedEntry*>> bySong_;
};

}  // namespace

/// Rows stay where they are as long as that keeps their order, which is that of the list; all that
/// they say of what is no song moves with them.
void StrawberryChange::writeEntries(const StrawberryPlaylist& was, StrawberryPlaylist& now,
                                    const FormerEntries& former) {
  std::unordered_map<int64_t, std::uint64_t> old;
  for (const StrawberryEntry& entry : was.entries) old.emplace(entry.row, entry.song);
  removeEntries(was, now);

  SqliteStatement replace = database_.prepare(
      "UPDATE playlist_items SET type = 2, collection_id = ?, url = '' WHERE rowid = ?");
  SqliteStatement putBack = database_.prepare(
      "UPDATE playlist_items SET type = ?, collection_id = ?, url = ? WHERE rowid = ?");
  SqliteStatement move = database_.prepare("UPDATE playlist_items SET rowid = ? WHERE rowid = ?");
  SqliteStatement add = database_.prepare(
      "INSERT INTO playlist_items(rowid, playlist, type, collection_id, url) "
      "VALUES(?, ?, 2, ?, '')");
  Returning returning(database_, now, former);
  int64_t last = 0;
  for (std::size_t i = 0; i < now.entries.size(); ++i) {
    StrawberryEntry& entry = now.entries[i];
    if (entry.row == 0) {
      const RemovedEntry* before = returning.entry(entry.song);
      if (before && returning.fits(*before, i, last))
        lastRow_ = std::max(lastRow_, entry.row = before->row);
      else
        entry.row = ++lastRow_;
      if (!before || !addStrawberryEntry(database_, entry.row, now.id, before->cells))
        add.run(entry.row, now.id, entry.song);
    } else {
      const std::uint64_t earlier = old.at(entry.row);
      std::optional<FilePlace> left;
      if (earlier != entry.song) {
        left = placeOf(database_, entry.row, earlier);
        const auto place = former.places.find(entry.row);
        if (place != former.places.end() && place->second.names == entry.song)
          putBack.run(place->second.type, place->second.song, place->second.url, entry.row);
        else
          replace.run(entry.song, entry.row);
      }
      if (entry.row < last) {
        const int64_t from = std::exchange(entry.row, ++lastRow_);
        move.run(entry.row, from);
      }
      if (left) left_.places.emplace(entry.row, std::move(*left));
    }
    last = entry.row;
  }
}

std::string encoded(const FormerEntries& entries) {
  std::ostringstream out;
  for (const RemovedEntry& entry : entries.removed)
    out << removedMark << ' ' << entry.row << ' ' << entry.playlist << ' ' << entry.song << ' '
        << entry.cells << '\n';
  for (const auto& [row, place] : entries.places)
    out << placeMark << ' ' << row << ' ' << place.type << ' '
        << (place.song ? std::to_string(*place.song) : none) << ' ' << place.names << ' '
        << place.url << '\n';
  return out.str();
}

FormerEntries decodedEntries(string_view text) {
  FormerEntries entries;
  std::istringstream in{std::string(text)};
  for (std::string line, mark; std::getline(in, line);) {
    std::istringstream words(line);
    words >> mark;
    if (mark == removedMark) {
      RemovedEntry entry;
      if (!(words >> entry.row >> entry.playlist >> entry.song)) continue;
      words.get();  // a space
      std::getline(words, entry.cells);
      entries.removed.push_back(std::move(entry));
    } else if (mark == placeMark) {
      int64_t row = 0;
      std::string song;
      FilePlace place;
      if (!(words >> row >> place.type >> song >> place.names)) continue;
      if (song != none) place.song = std::strtoll(song.c_str(), nullptr, 10);
      words.get();
      std::getline(words, place.url);
      entries.places.emplace(row, std::move(place));
    }
  }
  return entries;
}

}  // namespace kestrel
