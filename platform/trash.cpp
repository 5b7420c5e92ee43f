#include "platform/trash.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "foundation/text_helpers.h"
#include "platform/clock.h"
#include "platform/descriptor.h"
#include "platform/file_error.h"

namespace kestrel {
namespace {

Message notTrashed() { return Message::tr("cannot be moved to the trash"); }

/// Moves without replacing anything. Returns 0, or the system's error number.
int moveAside(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // Some network volumes cannot do both in one step.
  struct stat info {};
  if (::lstat(to.c_str(), &info) == 0) return EEXIST;
  return std::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

/// A path as notes have it.
std::string encodedPath(std::string_view path) { return percentEncoded(path, "-._~/"); }

/// In the user's time zone, as the format wants it.
std::string localTime(Moment moment) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(
      std::chrono::time_point_cast<std::chrono::seconds>(moment));
  std::tm parts{};
  ::localtime_r(&seconds, &parts);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts)};
}

/// "song.mp3", "song 2.mp3", "song 3.mp3" ..., cut so that the note's name fits as well.
std::string numberedName(const std::string& name, int number) {
  constexpr std::size_t longest = 240;
  const std::filesystem::path path(name);
  std::string stem = path.stem().string();
  std::string extension = path.extension().string();
  if (extension.size() > longest / 2) stem += std::exchange(extension, {});
  const std::string addition = number == 1 ? "" : " " + std::to_string(number);
  std::size_t size = std::min(stem.size(), longest - addition.size() - extension.size());
  const auto inCharacter = [&stem](std::size_t i) { return (stem[i] & 0xC0) == 0x80; };
  while (size > 0 && size < stem.size() && inCharacter(size)) --size;
  return stem.substr(0, size) + addition + extension;
}

/// The path with all links in its folder resolved, but not the last component: links are trashed
/// themselves. Throws FileError for what is no full path, and when there is no such folder.
std::string realPath(const std::string& path) {
  if (!path.starts_with('/') || path.find('\0') != std::string::npos)
    throw FileError(path, Message::tr("cannot be moved to the trash: this is not a full path"),
                    Message::tr("Give the path from the root on."));
  std::error_code error;
  const std::filesystem::path given = std::filesystem::path(path).lexically_normal();
  const std::filesystem::path whole = given.has_filename() ? given : given.parent_path();
  const auto folder = std::filesystem::canonical(whole.parent_path(), error);
  if (error) throw FileError::fromCode(path, notTrashed(), error.value());
  return (folder / whole.filename()).string();
}

/// Within a volume files can be renamed. One device may be mounted at several places, each of which
/// is a volume of its own in that.
struct Volume {
  dev_t device = 0;
  std::uint64_t mount = 0;
  friend bool operator==(const Volume&, const Volume&) = default;
};

Volume volumeOf(const std::string& path) {
  struct stat info {};
  if (::lstat(path.c_str(), &info) != 0) throw FileError::fromCode(path, notTrashed(), errno);
  Volume volume{info.st_dev, 0};
  struct statx more {};
  // Systems that do not number their mounts must do without.
  if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_MNT_ID, &more) == 0 &&
      (more.stx_mask & STATX_MNT_ID) != 0)
    volume.mount = more.stx_mnt_id;
  return volume;
}

/// The folder at which the volume of `folder` is mounted.
std::string topOf(const std::string& folder, const Volume& volume) {
  std::filesystem::path top = folder;
  while (top.has_relative_path() && volumeOf(top.parent_path().string()) == volume)
    top = top.parent_path();
  return top.string();
}

/// Makes a folder that only its user may look into; it may exist. Returns whether it is a folder of
/// the user, and no link that was laid there.
bool makePrivateFolder(const std::string& path) {
  if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) return false;
  struct stat info {};
  return ::lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == ::getuid();
}

/// Removes a note of `path` to which there is nothing in the trash.
void removeNote(const std::filesystem::path& note, const std::string& trashedPath,
                const std::string& path) {
  struct stat info {};
  if (::lstat(trashedPath.c_str(), &info) == 0) return;
  std::ifstream file(note, std::ios::binary);
  std::string line;
  if (!std::getline(file, line)) {
    // Cut short before a word was in it: of the path only the name is known.
    const std::filesystem::path name(numberedName(std::filesystem::path(path).filename(), 1));
    if (note.filename().string().starts_with(name.stem().string())) ::unlink(note.c_str());
    return;
  }
  std::getline(file, line);
  constexpr std::string_view key = "Path=";
  if (!line.starts_with(key)) return;
  // On other volumes than the user's own, paths count from their top.
  const std::string encoded = encodedPath(path), noted = line.substr(key.size());
  if (encoded == noted || encoded.ends_with("/" + noted)) ::unlink(note.c_str());
}

}  // namespace

std::vector<TrashResult> Trash::recycle(std::span<const std::string> paths) {
  std::vector<TrashResult> results;
  results.reserve(paths.size());
  for (const std::string& path : paths) {
    TrashResult& result = results.emplace_back();
    result.path = path;
    try {
      TrashedItem item = reserve(path);
      move(item);
      result.item = std::move(item);
    } catch (const FileError& error) {
      result.problem = error.message;
    }
  }
  return results;
}

FreedesktopTrash::FreedesktopTrash(const Clock& clock, std::optional<std::string> dataFolder)
    : clock_(clock), dataFolder_(std::move(dataFolder)) {}

TrashedItem FreedesktopTrash::reserve(const std::string& path) {
  const std::lock_guard lock(mutex_);
  const std::string real = realPath(path);
  struct stat info {};
  if (::lstat(real.c_str(), &info) != 0) throw FileError::fromCode(path, notTrashed(), errno);
  return reserveIn(binFor(real), real);
}

FreedesktopTrash::Bin FreedesktopTrash::binFor(const std::string& path) const {
  const std::string parent = std::filesystem::path(path).parent_path().string();
  const Volume volume = volumeOf(parent);
  if (dataFolder_) {
    std::error_code error;
    std::filesystem::create_directories(*dataFolder_, error);
    const std::string folder = *dataFolder_ + "/Trash";
    if (makePrivateFolder(folder) && volumeOf(folder) == volume) return {folder, "/"};
  }
  const std::string top = topOf(parent, volume);
  const std::string user = std::to_string(::getuid());
  // The administrator's shared folder counts only if users cannot tamper with others' in it.
  const std::string shared = (std::filesystem::path(top) / ".Trash").string();
  struct stat info {};
  if (::lstat(shared.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && (info.st_mode & S_ISVTX) &&
      makePrivateFolder(shared + "/" + user))
    return {shared + "/" + user, top};
  const std::string own = shared + "-" + user;
  if (makePrivateFolder(own)) return {own, top};
  throw FileError(
      path, Message::tr("cannot be moved to the trash: its volume has none and none can be made"),
      Message::tr("Check the permissions of %1, or remove the file by other means.").arg(top));
}

TrashedItem FreedesktopTrash::reserveIn(const Bin& bin, const std::string& path) {
  if (path == bin.folder || bin.folder.starts_with(path + "/"))
    throw FileError(path, Message::tr("cannot be moved to the trash: it holds the trash"),
                    Message::tr("Choose a part of it."));
  const std::string files = bin.folder + "/files";
  const std::string info = bin.folder + "/info";
  for (const std::string& folder : {files, info})
    if (!makePrivateFolder(folder))
      throw FileError(
          path, Message::tr("cannot be moved to the trash: %1 is no folder of yours").arg(folder),
          Message::tr("Check the trash folder."));
  const std::string note =
      "[Trash Info]\nPath=" +
      encodedPath(bin.top == "/"
                      ? path
                      : std::filesystem::path(path).lexically_relative(bin.top).string()) +
      "\nDeletionDate=" + localTime(clock_.now()) + "\n";

  const std::string name = std::filesystem::path(path).filename().string();
  int& number = lastNumbers_[files + "/" + name];
  while (true) {
    const std::string candidate = numberedName(name, ++number);
    TrashedItem item{path, files + "/" + candidate, info + "/" + candidate + ".trashinfo"};
    // The note comes first and claims the name: other programs use the same trash.
    Descriptor noteFile(
        ::open(item.infoPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    int code = noteFile ? 0 : errno;
    if (code == EEXIST) continue;
    if (code) throw FileError::fromCode(path, notTrashed(), code);
    code = noteFile.write(note);
    if (!code) code = noteFile.close();
    struct stat taken {};
    if (!code && ::lstat(item.trashedPath.c_str(), &taken) != 0) return item;
    ::unlink(item.infoPath.c_str());
    if (code) throw FileError::fromCode(path, notTrashed(), code);
  }
}

void FreedesktopTrash::move(const TrashedItem& item) {
  const int code = moveAside(item.originalPath, item.trashedPath);
  if (!code) return;
  release(item);
  throw FileError::fromCode(item.originalPath, notTrashed(), code);
}

bool FreedesktopTrash::release(const TrashedItem& item) {
  namespace fs = std::filesystem;
  const std::lock_guard lock(mutex_);
  std::error_code error;
  try {
    if (!item.infoPath.empty()) {
      const fs::path original(item.originalPath);
      const fs::path folder = fs::weakly_canonical(original.parent_path(), error);
      removeNote(item.infoPath, item.trashedPath, (folder / original.filename()).string());
      return fs::exists(fs::path(item.infoPath).parent_path(), error);
    }
    const std::string path = realPath(item.originalPath);
    const fs::path bin = binFor(path).folder;
    for (const fs::directory_entry& note : fs::directory_iterator(bin / "info", error))
      removeNote(note.path(), (bin / "files" / note.path().stem()).string(), path);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

void FreedesktopTrash::restore(const TrashedItem& item) {
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(item.originalPath).parent_path(),
                                      error);
  int code = error.value();
  if (!code) code = moveAside(item.trashedPath, item.originalPath);
  if (code) throw FileError::fromCode(item.originalPath, Message::tr("cannot be put back"), code);
  ::unlink(item.infoPath.c_str());
}

}  // namespace kestrel
