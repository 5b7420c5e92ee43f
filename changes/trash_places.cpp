#include "changes/trash_places.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace kestrel {
namespace {

bool isIn(std::string_view path, std::string_view folder) {
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

bool holdsOneOf(std::string_view folder, const std::vector<std::string>& paths) {
  return std::any_of(paths.begin(), paths.end(),
                     [&](const std::string& path) { return isIn(path, folder); });
}

/// The folders that tracks which stay have in common, none of which holds one of `own`.
std::vector<std::string> commonFolders(const MediaItems& items,
                                       const std::unordered_set<std::uint64_t>& leaving,
                                       const std::vector<std::string>& own) {
  std::map<std::string, std::string, std::less<>> common;  // by the uppermost folder that may be
  std::string_view last;
  items.forEach([&](const MediaItem& item) {
    if (item.locationFolder.isNull() || leaving.contains(item.persistentID)) return;
    const std::string_view folder = item.locationFolder.view();
    if (folder == last) return;
    last = folder;
    std::size_t end = 0;
    do {
      if (end >= folder.size()) return;
      end = std::min(folder.find('/', end + 1), folder.size());
    } while (holdsOneOf(folder.substr(0, end), own));
    const std::string_view top = folder.substr(0, end);
    const auto found = common.find(top);
    if (found == common.end())
      common.emplace(top, folder);
    else
      while (!isIn(folder, found->second)) found->second.erase(found->second.rfind('/'));
  });
  std::vector<std::string> folders;
  for (auto& [top, folder] : common) folders.push_back(std::move(folder));
  return folders;
}

}  // namespace

std::optional<FileID> fileID(const std::optional<FileStatus>& status) {
  return status ? std::optional(FileID(status->device, status->inode)) : std::nullopt;
}

TrashPlaces::TrashPlaces(MediaLibrary& library, const std::unordered_set<std::uint64_t>& leaving,
                         const FileService& files)
    : files_(files), document_(fileID(files.status(library.libraryFile()))) {
  std::vector<std::string> own;
  for (auto folder : {files.applicationSupportDirectory(), files.configurationDirectory(),
                      files.stateDirectory(), files.cacheDirectory()})
    if (folder) own.push_back(*folder + "/Kestrel");
  for (const std::string& folder : own)
    if (const auto id = fileID(files.status(folder))) own_.insert(*id);
  if (const auto data = files.applicationSupportDirectory())
    demo_ = fileID(files.status(*data + "/Kestrel/Demo"));

  std::string named = library.mediaFolder();
  while (named.ends_with('/')) named.pop_back();
  const auto status = files.status(named);
  const bool isKnown =
      status && status->kind == FileStatus::Kind::folder && !holdsOneOf(named, own);
  for (const std::string& folder :
       isKnown ? std::vector{named} : commonFolders(*library.allMediaItems(), leaving, own))
    if (const auto id = fileID(files.status(folder))) media_.insert(*id);
}

TrashPlaces::Place TrashPlaces::of(const std::string& path, FileID file) {
  if (file == document_) return Place::document;
  std::string folder = path.substr(0, path.rfind('/') + 1);
  const auto [known, isNew] = known_.try_emplace(std::move(folder), Place::elsewhere);
  if (isNew) known->second = ofFolder(known->first);
  return known->second;
}

/// Goes up from folder to folder, as the disk has them, until there is none above.
TrashPlaces::Place TrashPlaces::ofFolder(const std::string& folder) const {
  Place place = Place::elsewhere;
  bool isDemo = false;
  std::optional<FileID> below;
  for (std::string at = folder;; at += "/..") {
    const auto id = fileID(files_.status(at));
    if (!id || id == below) return place;
    isDemo |= id == demo_;
    if (own_.contains(*id) && !isDemo) return Place::own;
    if (media_.contains(*id)) place = Place::media;
    below = id;
  }
}

}  // namespace kestrel
