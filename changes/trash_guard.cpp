#include "changes/trash_guard.h"

#include <algorithm>
#include <map>
#include <vector>

#include "musicapp/audio/audio_facts.h"

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

/// The tracks that a plan takes the files of.
std::unordered_set<std::uint64_t> leavingTracks(const Plan& plan) {
  std::unordered_set<std::uint64_t> tracks;
  for (const PlannedFile& file : plan.files) {
    if (!file.heldBack.empty()) continue;
    tracks.insert(file.track);
    tracks.insert(file.otherTracks.begin(), file.otherTracks.end());
  }
  return tracks;
}

Message differenceTo(const PlannedFile& file, const std::optional<FileStatus>& entry) {
  if (!entry) return Message::tr("it is no longer there");
  if (entry->device != file.device || entry->inode != file.inode || entry->size != file.size)
    return Message::tr("another file has taken its place");
  return {};
}

}  // namespace

std::optional<FileID> fileID(const std::optional<FileStatus>& status) {
  return status ? std::optional(FileID(status->device, status->inode)) : std::nullopt;
}

TrashPlaces::TrashPlaces(MediaLibrary& library, const std::unordered_set<std::uint64_t>& leaving,
                         const FileService& files)
    : files_(files), libraryFile_(fileID(files.status(library.libraryFile()))) {
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
  if (file == libraryFile_) return Place::libraryFile;
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

bool AudioFiles::isAudio(const std::string& path) {
  const auto status = files_.status(path);
  const auto [known, isNew] = known_.try_emplace(path);
  if (isNew || known->second.status != status)
    known->second = {status, status && hasPlayingTime(path)};
  return known->second.isAudio;
}

Message AudioFiles::faultOf(const std::string& path) {
  const auto status = files_.status(path);
  if (!status) return Message::tr("the file that is kept is no longer there");
  if (status->kind != FileStatus::Kind::file)
    return Message::tr("the file that is kept is no regular file");
  if (status->size == 0) return Message::tr("the file that is kept is empty");
  if (!isAudio(path)) return Message::tr("the file that is kept cannot be read as audio");
  return {};
}

void FilesInUse::want(std::string_view name, std::int64_t size, const FileStatus& status) {
  wanted_.insert(*fileID(status));
  names_.insert(folded(name));
  // The library's size is often that of the file before its tags were edited.
  sizes_.insert(size);
  sizes_.insert(static_cast<std::int64_t>(status.size));
}

bool FilesInUse::mayHaveOne(const MediaItem& item) {
  if (wanted_.empty()) return false;
  return (item.fileSize > 0 && sizes_.contains(item.fileSize)) ||
         names_.contains(folded(item.locationName.view()));
}

void FilesInUse::ask(std::string path) {
  const auto [asked, isNew] = paths_.insert(std::move(path));
  if (!isNew) return;
  if (const auto id = fileID(files_.status(*asked)); id && wanted_.contains(*id)) used_.insert(*id);
}

/// Many volumes take a name in any case. For letters beyond ASCII the size must do.
const std::string& FilesInUse::folded(std::string_view name) {
  folded_.assign(name);
  for (char& c : folded_)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  return folded_;
}

Message reasonOfGuard(const std::string& path, FileID file, const std::string& keeperPath,
                      TrashPlaces& places, AudioFiles& audio, const GuardOptions& options) {
  switch (places.of(path, file)) {
    case TrashPlaces::Place::own:
      return Message::tr("it is one of Kestrel's own files");
    case TrashPlaces::Place::libraryFile:
      return Message::tr("it is the library's own file");
    case TrashPlaces::Place::elsewhere:
      if (!options.outsideMediaFolder)
        return Message::tr("it lies outside the library's media folder");
      break;
    case TrashPlaces::Place::media:
      break;
  }
  if (keeperPath.empty()) {
    if (!options.cloudReplaces) return Message::tr("the copy that is kept is only in the cloud");
  } else if (Message fault = audio.faultOf(keeperPath); !fault.empty()) {
    return fault;
  }
  if (!options.otherFiles && !audio.isAudio(path)) return Message::tr("it cannot be read as audio");
  return {};
}

TrashCheck::TrashCheck(const Plan& plan, MediaLibrary& library, const FileService& files,
                       const GuardOptions& options)
    : files_(files),
      options_(options),
      places_(library, leavingTracks(plan), files),
      audio_(files),
      inUse_(files) {
  std::unordered_multimap<std::uint64_t, const PlannedFile*> byTrack, byKeeper;
  std::unordered_map<std::uint64_t, std::unordered_set<std::string_view>> leaving;
  for (const PlannedFile& file : plan.files) {
    if (const auto id = fileID(files.status(file.keeperPath))) keepers_.insert(*id);
    if (!file.heldBack.empty()) continue;
    byTrack.emplace(file.track, &file);
    if (file.keeper) byKeeper.emplace(*file.keeper, &file);
    leaving[file.track].insert(file.path);
    for (const std::uint64_t track : file.otherTracks) leaving[track].insert(file.path);
  }
  const auto items = library.allMediaItems();
  items->forEach([&](const MediaItem& item) {
    for (auto [at, end] = byTrack.equal_range(item.persistentID); at != end; ++at) {
      const PlannedFile& file = *at->second;
      if (filePath(item) != file.path) continue;
      located_.insert(&file);
      if (!library.isFileAsRead(item)) changed_.insert(&file);
      if (const auto status = files.status(file.path))
        inUse_.want(item.locationName.view(), item.fileSize, *status);
    }
    for (auto [at, end] = byKeeper.equal_range(item.persistentID); at != end; ++at) {
      const PlannedFile& file = *at->second;
      if (file.keeperPath.empty() ? item.locationType == LocationType::remote
                                  : filePath(item) == file.keeperPath) {
        replaced_.insert(&file);
        if (!file.keeperPath.empty() && !library.isFileAsRead(item)) changed_.insert(&file);
      }
    }
  });
  items->forEach([&](const MediaItem& item) {
    inUse_.look(item, [&](const std::string& path) {
      const auto found = leaving.find(item.persistentID);
      return found != leaving.end() && found->second.contains(path);
    });
  });
  // Plans of earlier versions do not name the keeper, which cannot be seen then to be in the cloud.
  for (const PlannedFile& file : plan.files)
    if (!file.keeper && !file.keeperPath.empty()) replaced_.insert(&file);
}

Message TrashCheck::reasonToStay(const PlannedFile& file) {
  if (!file.heldBack.empty()) return file.heldBack;
  if (Message difference = differenceTo(file, files_.entryStatus(file.path)); !difference.empty())
    return difference;
  const auto status = files_.status(file.path);
  if (!status || status->kind != FileStatus::Kind::file)
    return Message::tr("it is no regular file");
  if (!located_.contains(&file)) return Message::tr("it is not the file of its track");
  if (keepers_.contains(*fileID(status)))
    return Message::tr("a keeper has the same file under another path");
  if (inUse_.has(*fileID(status)))
    return Message::tr("another track of the library has the same file");
  if (!replaced_.contains(&file))
    return Message::tr("what is kept in its place is not in the library");
  Message reason =
      reasonOfGuard(file.path, *fileID(status), file.keeperPath, places_, audio_, options_);
  if (reason.empty() && changed_.contains(&file))
    reason =
        Message::tr("it, or what is kept in its place, was changed since the library was read");
  return reason;
}

Message TrashCheck::reasonNow(const PlannedFile& file) {
  if (Message difference = differenceTo(file, files_.entryStatus(file.path)); !difference.empty())
    return difference;
  if (file.keeperPath.empty()) return {};
  const auto kept = fileID(files_.status(file.keeperPath));
  if (kept && kept == fileID(files_.status(file.path)))
    return Message::tr("a keeper has the same file under another path");
  return audio_.faultOf(file.keeperPath);
}

}  // namespace kestrel
