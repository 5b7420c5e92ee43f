#include "library/playlist_catalogue.h"

#include <array>

#include "foundation/identifiers.h"

namespace kestrel {
namespace {

PlaylistRecord recordOf(const Playlist& playlist) {
  PlaylistRecord record;
  record.pnom = playlist.name;
  record.hexpid = TextSorter::decToHex(playlist.persistentID);
  record.decpid = decimalText(playlist.persistentID);
  record.ptype = record.playlistIcon = "u";
  if (playlist.parentID) {
    record.hexParentID = TextSorter::decToHex(*playlist.parentID);
    record.parentID = decimalText(*playlist.parentID);
  }
  record.itemCount = static_cast<std::int64_t>(playlist.items.size());
  if (playlist.isMaster) {
    record.ptype = "0";
    record.pnom = "Music";
    record.playlistIcon = "4";
  }
  // A distinguished list keeps the icon it has so far, whatever its kind.
  if (playlist.distinguishedKind != 0) {
    record.ptype = std::to_string(playlist.distinguishedKind);
    return record;
  }
  switch (playlist.kind) {
    case PlaylistKind::folder:
      record.ptype = record.playlistIcon = "f";
      break;
    case PlaylistKind::genius:
      record.ptype = record.playlistIcon = "g";
      break;
    case PlaylistKind::smart:
      record.ptype = record.playlistIcon = "s";
      break;
    case PlaylistKind::regular:
      break;
  }
  return record;
}

}  // namespace

Value PlaylistRecord::value(std::string_view key) const {
  const auto optional = [](const std::optional<std::string>& text) {
    return text ? Value(std::string_view(*text)) : Value();
  };
  if (key == "pnom") return std::string_view(pnom);
  if (key == "hexpid") return std::string_view(hexpid);
  if (key == "decpid") return std::string_view(decpid);
  if (key == "ptype") return std::string_view(ptype);
  if (key == "playlistIcon") return std::string_view(playlistIcon);
  if (key == "hexParentID") return optional(hexParentID);
  if (key == "parentID") return optional(parentID);
  if (key == "itemCount") return itemCount;
  return {};
}

std::vector<PlaylistRecord> playlistCatalogue(std::span<const Playlist> playlists) {
  std::vector<PlaylistRecord> records;
  records.reserve(playlists.size());
  for (const Playlist& playlist : playlists) records.push_back(recordOf(playlist));
  return records;
}

std::uint64_t idOf(const PlaylistRecord& record) {
  return numberFromDecimal(record.decpid).value_or(0);
}

std::optional<std::uint64_t> parentOf(const PlaylistRecord& record) {
  return record.parentID ? numberFromDecimal(*record.parentID) : std::nullopt;
}

PlaylistOutline playlistOutline(std::span<const PlaylistRecord> catalogue) {
  PlaylistOutline outline;
  SharedRecords<PlaylistRecord> top;
  const auto gather = [&](SharedRecords<PlaylistRecord>& records, bool nested, auto types) {
    for (const std::string_view type : types)
      for (const PlaylistRecord& record : catalogue)
        if (record.ptype == type && parentOf(record).has_value() == nested)
          records.push_back(std::make_shared<const PlaylistRecord>(record));
  };
  gather(outline.childPlaylists, true, std::array{"g", "f", "s", "u"});
  gather(top, false, std::array{"f", "g", "s", "u"});
  FolderContents<PlaylistRecord> contents(outline.childPlaylists);
  for (const auto& record : top) {
    OutlineRow& row = outline.rows.emplace_back(OutlineRow{record, std::nullopt});
    if (record->ptype == "f") row.Child = contents.open(idOf(*record));
  }
  return outline;
}

std::optional<std::size_t> defaultPlaylist(std::span<const PlaylistRecord> catalogue) {
  for (const std::string_view type : {"0", "f", "g", "s", "u"})
    for (std::size_t i = 0; i < catalogue.size(); ++i)
      if (catalogue[i].ptype == type && (type == "0" || !catalogue[i].parentID)) return i;
  return std::nullopt;
}

}  // namespace kestrel
