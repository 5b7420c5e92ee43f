/// Playlists as a tree of folders, and the outline of those that a scan or survey has found:
/// top-level folders with what they hold, then top-level playlists.
///
/// Of a record, `idOf` and `parentOf` must say the persistent IDs of its playlist and of the folder
/// around it. Nothing here changes a record; what is inside a row is said by the row.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "foundation/identifiers.h"

namespace kestrel {

/// A record in its place. `Child` is absent in rows that were never asked for children.
template <typename Record>
struct OutlineNode {
  std::shared_ptr<const Record> record;
  std::optional<std::vector<OutlineNode>> Child;
};

template <typename Record>
using SharedRecords = std::vector<std::shared_ptr<const Record>>;

/// The records inside the folder with this persistent ID, in the order of `nested`, each with its
/// own, recursively. In a damaged library, where folders may share an ID or contain themselves,
/// each ID is opened once.
template <typename Record>
class FolderContents {
 public:
  explicit FolderContents(const SharedRecords<Record>& nested) {
    for (const auto& record : nested) children_[*parentOf(*record)].push_back(record);
  }

  std::vector<OutlineNode<Record>> open(std::uint64_t folder, std::size_t depth = 0) {
    std::vector<OutlineNode<Record>> rows;
    const auto found = children_.find(folder);
    if (found == children_.end() || depth == maximumDepth || !opened_.insert(folder).second)
      return rows;
    for (const auto& record : found->second)
      rows.push_back({record, open(idOf(*record), depth + 1)});
    return rows;
  }

 private:
  /// No interface nests folders this deep; a damaged library must not exhaust the stack.
  static constexpr std::size_t maximumDepth = 256;

  std::unordered_map<std::uint64_t, SharedRecords<Record>> children_;
  std::unordered_set<std::uint64_t> opened_;
};

/// The same by the folder's hexadecimal ID, which must be written exactly so.
template <typename Record>
std::vector<OutlineNode<Record>> openFolder(const SharedRecords<Record>& nested,
                                            std::string_view hexpid) {
  const std::optional<std::uint64_t> folder = numberFromHex(hexpid);
  if (!folder || TextSorter::decToHex(*folder) != hexpid) return {};
  return FolderContents<Record>(nested).open(*folder);
}

template <typename Record>
struct PlaylistTree {
  SharedRecords<Record> justFolders;     ///< the parents of affected playlists
  SharedRecords<Record> childPlaylists;  ///< what may stand inside a folder
  std::vector<OutlineNode<Record>> outline;
};

/// Whether a parent folder that is itself in a folder may stand in the outline.
enum class NestedFolders : bool { leftOut, listed };

/// From the affected playlists and all folders, both in library order. Only the direct parents of
/// affected playlists take part: no search for the parents' parents is made, so that a branch whose
/// top is not such a parent is missing. `shownRecords` tells what is missing.
template <typename Record>
PlaylistTree<Record> playlistTree(const SharedRecords<Record>& affected,
                                  const SharedRecords<Record>& folders, NestedFolders nested) {
  PlaylistTree<Record> tree;
  std::unordered_set<std::uint64_t> parents;
  for (const auto& record : affected)
    if (const auto parent = parentOf(*record)) parents.insert(*parent);
  for (const auto& folder : folders)
    if (parents.contains(idOf(*folder))) tree.justFolders.push_back(folder);

  const auto addChildren = [&tree](const SharedRecords<Record>& records) {
    for (const auto& record : records)
      if (parentOf(*record)) tree.childPlaylists.push_back(record);
  };
  addChildren(affected);
  if (nested == NestedFolders::listed) addChildren(tree.justFolders);

  FolderContents<Record> contents(tree.childPlaylists);
  for (const auto& folder : tree.justFolders)
    if (!parentOf(*folder)) tree.outline.push_back({folder, contents.open(idOf(*folder))});
  for (const auto& record : affected)
    if (!parentOf(*record)) tree.outline.push_back({record, std::nullopt});
  return tree;
}

/// For each of the records whether it stands anywhere in the outline.
template <typename Record>
std::vector<bool> shownRecords(const SharedRecords<Record>& records,
                               const std::vector<OutlineNode<Record>>& outline) {
  std::unordered_set<const Record*> standing;
  std::vector<const std::vector<OutlineNode<Record>>*> levels = {&outline};
  while (!levels.empty()) {
    const auto* level = levels.back();
    levels.pop_back();
    for (const OutlineNode<Record>& row : *level) {
      standing.insert(row.record.get());
      if (row.Child) levels.push_back(&*row.Child);
    }
  }
  std::vector<bool> shown;
  shown.reserve(records.size());
  for (const auto& record : records) shown.push_back(standing.contains(record.get()));
  return shown;
}

/// The outline with all folders above the affected playlists, however deep, in the order of
/// `playlistTree`; what stands in no folder that there is stands at the top.
template <typename Record>
std::vector<OutlineNode<Record>> wholeOutline(const SharedRecords<Record>& affected,
                                              const SharedRecords<Record>& folders) {
  std::unordered_map<std::uint64_t, std::shared_ptr<const Record>> byID;
  for (const auto& folder : folders) byID.try_emplace(idOf(*folder), folder);
  std::unordered_set<std::uint64_t> above;
  for (const auto& record : affected)
    for (auto parent = parentOf(*record); parent && byID.contains(*parent);
         parent = parentOf(*byID.at(*parent)))
      if (!above.insert(*parent).second) break;
  SharedRecords<Record> nested, top;
  const auto place = [&](const std::shared_ptr<const Record>& record) {
    const auto parent = parentOf(*record);
    (parent && byID.contains(*parent) ? nested : top).push_back(record);
  };
  for (const auto& record : affected) place(record);
  const std::size_t playlists = top.size();
  for (const auto& folder : folders)
    if (above.contains(idOf(*folder)) && byID.at(idOf(*folder)) == folder) place(folder);
  std::rotate(top.begin(), top.begin() + static_cast<std::ptrdiff_t>(playlists), top.end());
  FolderContents<Record> contents(nested);
  std::vector<OutlineNode<Record>> outline;
  for (const auto& record : top)
    if (above.contains(idOf(*record)))
      outline.push_back({record, contents.open(idOf(*record))});
    else
      outline.push_back({record, std::nullopt});
  // Folders that contain each other are in none.
  std::vector<bool> shown = shownRecords(affected, outline);
  for (std::size_t i = 0; i < affected.size(); ++i)
    if (!shown[i]) outline.push_back({affected[i], std::nullopt});
  return outline;
}

/// The playlists that a scan or survey has found, each list in library order.
template <typename Record>
struct AffectedPlaylists {
  SharedRecords<Record> affected;
  /// Of each affected playlist, whether the outline shows it.
  std::vector<bool> shown;
  SharedRecords<Record> justFolders, childPlaylists;
  std::shared_ptr<const std::vector<OutlineNode<Record>>> outline =
      std::make_shared<const std::vector<OutlineNode<Record>>>();

  /// Makes all the rest from `affected`, which is complete, and from all folders.
  void arrange(const SharedRecords<Record>& folders, NestedFolders nested) {
    PlaylistTree<Record> tree = playlistTree(affected, folders, nested);
    shown = shownRecords(affected, tree.outline);
    justFolders = std::move(tree.justFolders);
    childPlaylists = std::move(tree.childPlaylists);
    outline = std::make_shared<const std::vector<OutlineNode<Record>>>(std::move(tree.outline));
  }
};

}  // namespace kestrel
