#include "ui/playlist_outline.h"

#include <unordered_map>
#include <unordered_set>

#include "ui/playlist_menus.h"
#include "ui/snapshot.h"

namespace kestrel {
namespace {

/// No interface nests folders this deep; a damaged library must not exhaust the stack.
constexpr std::size_t maximumDepth = 256;

/// Opens folders depth first, by an index from parent to children.
class FolderWalk {
 public:
  explicit FolderWalk(std::span<const PlaylistRecord> nested) {
    for (const PlaylistRecord& record : nested) children_[*record.parentID].push_back(&record);
  }

  std::vector<OutlineRow> open(std::string_view decpid, std::size_t depth = 0) {
    std::vector<OutlineRow> rows;
    const auto found = children_.find(decpid);
    if (found == children_.end() || depth == maximumDepth || !opened_.insert(decpid).second)
      return rows;
    rows.reserve(found->second.size());
    for (const PlaylistRecord* child : found->second)
      rows.push_back(OutlineRow{*child, open(child->decpid, depth + 1)});
    return rows;
  }

 private:
  std::unordered_map<std::string_view, std::vector<const PlaylistRecord*>> children_;
  std::unordered_set<std::string_view> opened_;
};

std::vector<OutlineNode<PlaylistRecord>> nodesOf(std::span<const OutlineRow> rows) {
  std::vector<OutlineNode<PlaylistRecord>> nodes;
  nodes.reserve(rows.size());
  for (const OutlineRow& row : rows) {
    auto& node = nodes.emplace_back();
    node.record = std::make_shared<const PlaylistRecord>(row.record);
    if (row.Child) node.Child = nodesOf(*row.Child);
  }
  return nodes;
}

}  // namespace

Message shownName(const PlaylistRecord& playlist) {
  return playlist.ptype == "0" ? Message::tr("Music") : Message::verbatim(playlist.pnom);
}

OutlineModel<PlaylistRecord>::Content outlineContent(std::span<const OutlineRow> rows) {
  return std::make_shared<const std::vector<OutlineNode<PlaylistRecord>>>(nodesOf(rows));
}

std::vector<PlaylistRecord> KSPlaylistController::formatPlaylists() const {
  const auto stored = TextSorter::storedPlaylistArray();
  return stored ? playlistCatalogue(*stored) : std::vector<PlaylistRecord>();
}

void KSPlaylistController::buildDatasource(std::span<const PlaylistRecord> records) {
  childPlaylists_.clear();
  thePlaylistDataSource_.clear();
  for (const std::string_view type : {"g", "f", "s", "u"})
    for (const PlaylistRecord& record : records)
      if (record.parentID && record.ptype == type) childPlaylists_.push_back(record);

  FolderWalk walk(childPlaylists_);
  for (const std::string_view type : {"f", "g", "s", "u"}) {
    for (const PlaylistRecord& record : records) {
      if (record.parentID || record.ptype != type) continue;
      OutlineRow& row = thePlaylistDataSource_.emplace_back(OutlineRow{record, std::nullopt});
      if (type == "f") row.Child = walk.open(record.decpid);
    }
  }
}

std::vector<OutlineRow> KSPlaylistController::getFolders(std::string_view decpid) const {
  return FolderWalk(childPlaylists_).open(decpid);
}

}  // namespace kestrel
