#include "musicapp/folder/folder_library.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "foundation/bytes.h"
#include "foundation/library_error.h"
#include "musicapp/file_url.h"
#include "musicapp/folder/known_songs.h"
#include "musicapp/folder/track_finder.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/user_directories.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

constexpr std::int64_t nanoseconds = 1'000'000'000;  // of a second
constexpr string_view listParameter = "playlists=";

/// The folder of the tracks, and those of further playlists.
std::vector<std::string> foldersOf(string_view address) {
  if (!address.starts_with(folderScheme)) return {std::string(address)};
  address.remove_prefix(folderScheme.size());
  std::vector<std::string> folders(1);
  const size_t query = std::min(address.find('?'), address.size());
  appendDecoded(address.substr(0, query), folders.front());
  address.remove_prefix(std::min(query + 1, address.size()));
  while (!address.empty()) {
    const size_t end = std::min(address.find('&'), address.size());
    if (address.starts_with(listParameter))
      appendDecoded(address.substr(listParameter.size(), end - listParameter.size()),
                    folders.emplace_back());
    address.remove_prefix(std::min(end + 1, address.size()));
  }
  return folders;
}

/// What a folder keeps when it is moved on its disk; its place where the disk has nothing such.
std::string folderID(const std::string& path) {
  struct statx info {};
  if (::statx(AT_FDCWD, path.c_str(), 0, STATX_INO | STATX_BTIME, &info) != 0) return path;
  std::string id = "folder-" + std::to_string(info.stx_ino);
  if (info.stx_mask & STATX_BTIME)
    id +=
        "-" + std::to_string(info.stx_btime.tv_sec) + "." + std::to_string(info.stx_btime.tv_nsec);
  return id;
}

bool hasOtherNames(const std::string& file) {
  struct stat info {};
  return ::stat(file.c_str(), &info) == 0 && info.st_nlink > 1;
}

LibraryBackups backupsOf(const std::string& list, FileService& files) {
  return {files, list, list.substr(list.rfind('.'))};
}

std::string folderOfFile(const std::string& path) { return path.substr(0, path.rfind('/')); }

Message leftOutNote(Message counted, const std::string& first) {
  return Message::tr("%1, such as %2").arg(std::move(counted)).arg(first);
}

}  // namespace

FolderLibrary::FolderLibrary(const std::string& address, const ApplicationServices& services,
                             CommitOptions options)
    : services_(services), options_(std::move(options)) {
  for (const std::string& folder : foldersOf(address)) {
    std::string real = realPathOf(folder);
    if (!std::filesystem::is_directory(real))
      throw LibraryError(folder, {}, Message::tr("is no folder"), Message::tr("Name a folder."));
    const bool isKnown = std::any_of(roots_.begin(), roots_.end(),
                                     [&](const auto& root) { return liesIn(real, root); });
    if (!isKnown) roots_.push_back(std::move(real));
  }
  root_ = roots_.front();
  read();
}

FolderLibrary::~FolderLibrary() = default;

Capabilities FolderLibrary::capabilities() const {
  return {.name = "a folder of audio files",
          .changesPlaylists = true,
          .editsInPlace = true,
          .tracksAreFiles = true,
          .reveals = services_.revealer != nullptr,
          .takesValues = {},
          .whyNoOthers = whyNoValues()};
}

Message FolderLibrary::whyNoValues() {
  return Message::tr(
      "a folder of audio files has only the files themselves to write them into, and "
      "they are left as they are");
}

Message FolderLibrary::reasonNotToChange(std::uint64_t playlist) {
  const std::string* const uri = listIDs_.uriOf(playlist);
  if (!uri) return {};
  const std::string listed = pathOfUri(*uri);
  if (!services_.files.exists(listed)) return {};  // it is made by the batch
  try {
    const std::string path = realPathOf(listed);
    checkWritable(path, hasOtherNames(path) ? backupsOf(path, services_.files).unreplaced() : 0);
    if (::access(folderOfFile(path).c_str(), W_OK) == 0) return {};
  } catch (const LibraryError& error) {
    return Message::tr("its file %1").arg(error.problem);
  }
  return Message::tr("its folder is closed to changes");
}

bool FolderLibrary::revert(std::string_view reversal) {
  if (isChanged() || reversion_) return false;
  reversion_ = changesBack(reversal, root_, services_.files);
  return reversion_.has_value();
}

bool FolderLibrary::hasChanged() {
  const std::vector<ListFile>& lists = committed_ ? committedLists_ : lists_;
  if (!services_.files.exists(root_)) return false;
  const auto differs = [this](const std::string& path, const std::optional<FileStatus>& status) {
    return status && services_.files.status(path) != status;
  };
  return std::any_of(contents_.folders.begin(), contents_.folders.end(),
                     [&](const auto& folder) { return differs(folder.first, folder.second); }) ||
         std::any_of(lists.begin(), lists.end(),
                     [&](const ListFile& list) { return differs(list.path, list.status); }) ||
         hasOtherSongs();
}

bool FolderLibrary::isFileAsRead(const MediaItem& item) {
  const auto status = services_.files.status(filePath(item));
  return status && status->size == static_cast<std::uint64_t>(item.fileSize) &&
         OptionalDate{status->modified.time_since_epoch().count() / nanoseconds}.seconds ==
             item.modified.seconds;
}

/// Looks at some of the songs. One that is gone shows in its folder, if it is not this program's
/// doing.
bool FolderLibrary::hasOtherSongs() {
  constexpr auto patience = std::chrono::milliseconds(20);
  constexpr size_t betweenLooks = 32;  // at the clock
  const auto end = std::chrono::steady_clock::now() + patience;
  if (nextLooked_ >= items_->size()) nextLooked_ = 0;
  const size_t first = nextLooked_;
  size_t at = 0;
  bool isOther = false, isOver = false;
  items_->forEach([&](const MediaItem& item) {
    if (at++ < first || isOver) return;
    isOther = !isFileAsRead(item) && services_.files.exists(filePath(item));
    isOver =
        isOther || ((at - first) % betweenLooks == 0 && std::chrono::steady_clock::now() > end);
    nextLooked_ = isOther ? at - 1 : at;
  });
  return isOther;
}

std::vector<std::string> FolderLibrary::unchangedFoldersOf(std::span<const ListChange> changes) {
  std::set<std::string> folders;
  std::error_code error;
  for (const ListChange& change : changes) {
    folders.insert(folderOfFile(change.path));
    // Where it is a link.
    folders.insert(folderOfFile(std::filesystem::weakly_canonical(change.path, error).string()));
  }
  std::erase_if(folders, [this](const std::string& folder) {
    const FileStatus* known = knownFolder(folder);
    return !known || services_.files.status(folder) != *known;
  });
  return {folders.begin(), folders.end()};
}

FileStatus* FolderLibrary::knownFolder(const std::string& path) {
  const auto found = std::lower_bound(
      contents_.folders.begin(), contents_.folders.end(), path,
      [](const auto& folder, const std::string& wanted) { return folder.first < wanted; });
  return found != contents_.folders.end() && found->first == path ? &found->second : nullptr;
}

void FolderLibrary::takeFolders(std::span<const std::string> folders) {
  for (const std::string& path : folders)
    if (FileStatus* const known = knownFolder(path))
      *known = services_.files.status(path).value_or(*known);
}

void FolderLibrary::filesMoved(std::span<const std::string> paths, const std::function<bool()>&) {
  std::set<std::string> folders;
  for (const std::string& path : paths) folders.insert(folderOfFile(path));
  takeFolders(std::vector(folders.begin(), folders.end()));
}

void FolderLibrary::reload() {
  if (isChanged()) throwChangedMeanwhile(root_);
  read();
}

void FolderLibrary::read() {
  auto items = std::make_shared<MediaItems>();
  TextPool& texts = items->newPool();
  AudioIndex index(services_.files, services_.log);
  KnownSongs known(index, root_, texts, services_.files, services_.log, roots_);
  FolderListing contents = walkFolder(root_, roots_, services_.watch);
  for (size_t i = 1; i < roots_.size(); ++i) {
    FolderListing more = walkFolder(roots_[i], roots_, services_.watch);
    contents.lists.insert(contents.lists.end(), more.lists.begin(), more.lists.end());
    contents.withLeftovers.insert(contents.withLeftovers.end(), more.withLeftovers.begin(),
                                  more.withLeftovers.end());
    contents.listStates.merge(more.listStates);
    contents.isCancelled |= more.isCancelled;
  }
  const auto refuseIf = [this](bool isCancelled) {
    if (isCancelled)
      throw LibraryError(root_, {}, Message::tr("was not read to its end, as you stopped it"),
                         Message::tr("Open it again to go on from there."));
  };
  refuseIf(contents.isCancelled);
  if (contents.audio.empty())
    throw LibraryError(root_, {}, Message::tr("holds no audio files that Kestrel can read"),
                       Message::tr("Name the folder in which your music is."));

  known.wait();
  std::vector<MediaItem> all(contents.audio.size());
  std::vector<size_t> unknown;  // places
  std::vector<AudioFile> toRead;
  for (size_t i = 0; i < all.size(); ++i) {
    if (auto item = known.take(contents.audio[i])) {
      all[i] = *item;
    } else {
      unknown.push_back(i);
      toRead.push_back(contents.audio[i]);
    }
  }
  const auto reading = index.read(
      toRead, services_.watch,
      [&](size_t file, const AudioFacts& facts) { fillItem(facts, all[unknown[file]], texts); });
  refuseIf(reading.isCancelled);
  if (reading.readAnew > 0) index.forgetOthers(root_, contents.audio);

  DerivedIDs ids("track");
  ContentHash version;
  std::vector<std::string> failed;
  for (size_t i = 0; i < all.size(); ++i) {
    const AudioFile& file = contents.audio[i];
    const string_view within = string_view(file.path).substr(root_ == "/" ? 1 : root_.size() + 1);
    MediaItem& item = all[i];
    item.persistentID = ids.of(within);
    setLocation(file.path, item, texts);
    item.fileSize = static_cast<std::int64_t>(file.size);
    item.modified = OptionalDate{file.modified / nanoseconds};
    item.isSeen = true;
    if (item.kind.isNull()) failed.push_back(file.path);
    version.add(within);
    version.add("/" + std::to_string(file.size) + "/" + std::to_string(file.modified) + "\n");
  }
  std::erase_if(all, [](const MediaItem& item) { return item.kind.isNull(); });  // no audio
  items->append(std::move(all));
  items->seal();

  contents_ = std::move(contents);
  clearLeftovers();
  items_ = std::move(items);
  id_ = folderID(root_);
  version_ = version.value();
  finder_.reset();
  notes_.clear();
  if (!failed.empty())
    notes_.push_back(leftOutNote(Message::tr("%Ln files have no audio that can be read",
                                             "%Ln file has no audio that can be read",
                                             static_cast<std::int64_t>(failed.size())),
                                 failed.front()));
  if (!contents_.closed.empty())
    notes_.push_back(leftOutNote(Message::tr("%Ln files and folders are closed to you",
                                             "%Ln file or folder is closed to you",
                                             static_cast<std::int64_t>(contents_.closed.size())),
                                 contents_.closed.front()));
  if (contents_.linksOut > 0)
    notes_.push_back(Message::tr("%Ln links lead out of the folder and were not followed",
                                 "%Ln link leads out of the folder and was not followed",
                                 static_cast<std::int64_t>(contents_.linksOut)));
  std::int64_t untagged = 0;
  items_->forEach([&](const MediaItem& item) { untagged += item.title.isNull() ? 1 : 0; });
  if (untagged > 0)
    notes_.push_back(Message::tr("%Ln files have no title in their tags",
                                 "%Ln file has no title in its tags", untagged));
  notesOfTracks_ = notes_.size();
  readLists(known.takeLists());
  for (const Message& note : notes_) services_.log.line(root_ + ": " + note.english());
  contents_.audio = {};
  contents_.listStates = {};
}

/// What a program that was ended has left beside the lists that it wrote. One that still runs keeps
/// its own.
void FolderLibrary::clearLeftovers() {
  if (contents_.withLeftovers.empty()) return;
  const std::set<std::string> folders(contents_.withLeftovers.begin(),
                                      contents_.withLeftovers.end());
  std::optional<LibraryLock> ours = std::nullopt;  // else their backups may be another's at work
  try {
    if (!lock_) ours.emplace(services_.files, root_);
  } catch (const LibraryError&) {
  }
  for (const std::string& list : contents_.lists) {
    const std::string real = realPathOf(list);
    if (!folders.contains(folderOfFile(real))) continue;
    clearLeftoversOf(real, services_.files, services_.log);
    try {
      if (ours && hasOtherNames(real)) backupsOf(real, services_.files).removeUnreplaced();
    } catch (const MessageError& error) {  // the next change tries again
      services_.log.line(error.what());
    }
  }
  takeFolders(contents_.withLeftovers);
}

LibraryIdentity FolderLibrary::identity() {
  ContentHash version;
  version.add(version_);
  for (const ListFile& list : committed_ ? committedLists_ : lists_)
    if (list.status)
      version.add(uriOf(list.path) + "/" + std::to_string(list.status->size) + "/" +
                  std::to_string(list.status->modified.time_since_epoch().count()) + "/" +
                  std::to_string(list.status->inode) + "\n");
  std::string text;
  appendBase64(version.value(), text);
  std::string uri = fileUrlOfPath(root_);
  if (roots_.size() > 1) {
    const size_t scheme = sizeof "file://" - 1;
    uri = std::string(folderScheme) + uri.substr(scheme);
    for (size_t i = 1; i < roots_.size(); ++i)
      uri += (i == 1 ? "?" : "&") + std::string(listParameter) +
             fileUrlOfPath(roots_[i]).substr(scheme);
  }
  return {std::move(uri), id_, std::move(text)};
}

Application folderApplication() {
  const auto recognises = [](const std::string& address, const FileService& files) {
    if (address.starts_with(folderScheme)) return true;
    const auto status = files.status(address);
    return status && status->kind == FileStatus::Kind::folder;
  };
  const auto open = [](const std::string& address, const ApplicationServices& services) {
    return std::unique_ptr<MusicApplication>(std::make_unique<FolderLibrary>(address, services));
  };
  const auto found = [](const ApplicationServices& services) {
    std::vector<std::string> folders;
    std::string folder = userDirectory(services.files, "MUSIC", "Music");
    if (!folder.empty() && hasAudioBelow(folder)) folders.push_back(std::move(folder));
    return folders;
  };
  return {Message::tr("Folders of audio files"),
          "",
          recognises,
          open,
          found,
          Message::tr("Folder"),
          "library-folder"};
}

}  // namespace kestrel
