#include "musicapp/library_files.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "musicapp/file_url.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

Message notKept() { return Message::tr("cannot be kept as a backup"); }

/// The file's name, cut so that the folder's is not too long for the system.
std::string shortName(const std::string& path) {
  std::string name = path.substr(path.rfind('/') + 1);
  std::size_t length = std::min<std::size_t>(name.size(), 100);
  while (length < name.size() && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80)
    --length;  // within a character
  name.resize(length);
  return name;
}

/// Returns 0, or the system's error number.
int copyFile(const std::string& from, const std::string& to) {
  const Descriptor source(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
  if (!source) return errno;
  Descriptor target(::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  if (!target) return errno;
  for (;;) {
    const ssize_t copied =
        ::sendfile(target.number(), source.number(), nullptr, std::size_t{16} << 20);
    if (copied == 0) break;
    if (copied < 0 && errno != EINTR) return errno;
  }
  struct stat info {};
  if (::fstat(source.number(), &info) != 0) return errno;
  const timespec times[] = {info.st_atim, info.st_mtim};
  if (::futimens(target.number(), times) != 0 || ::fsync(target.number()) != 0) return errno;
  return target.close();
}

/// Makes names in a folder outlast a power cut, as far as its file system can do that.
void syncFolder(const std::string& folder) {
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor) static_cast<void>(::fsync(descriptor.number()));
}

}  // namespace

std::string realPathOf(const std::string& library) {
  std::error_code error;
  const auto real = std::filesystem::canonical(library, error);
  if (error) throw FileError::fromCode(library, Message::tr("cannot be found"), error.value());
  return real.string();
}

LibraryIdentity fileIdentity(const std::string& path, std::string id, const FileStatus& status) {
  std::error_code error;
  const auto real = std::filesystem::canonical(path, error);
  std::string version;
  for (const std::uint64_t number :
       {status.size, static_cast<std::uint64_t>(status.modified.time_since_epoch().count()),
        status.device, status.inode})
    version.append(version.empty() ? "" : "-").append(std::to_string(number));
  return {fileUrlOfPath(error ? path : real.string()), std::move(id), std::move(version)};
}

void throwChangedMeanwhile(const std::string& library) {
  throw LibraryError(
      library, {},
      Message::tr("was changed by another program since it was read, so nothing was written to it"),
      Message::tr("Reload the library and try again."));
}

std::string supportFolder(FileService& files, const std::string& library,
                          const std::string& subfolder) {
  const auto support = files.applicationSupportDirectory();
  if (!support)
    throw LibraryError(
        library, {},
        Message::tr("cannot be changed: there is no folder for backups, as the system does not "
                    "say where the user's home is"),
        Message::tr("Set HOME."));
  std::string folder = *support + "/Kestrel/" + subfolder;
  try {
    files.createDirectories(*support + "/Kestrel");
    files.createDirectories(folder);
  } catch (const FileError& error) {
    throw LibraryError(
        library, {},
        Message::tr("cannot be changed: Kestrel's folder %1 %2").arg(folder).arg(error.problem),
        error.remedy);
  }
  return folder;
}

std::string libraryHash(const std::string& realPath) {
  return paddedHex(derivedPersistentID(realPath, {}));
}

LibraryLock::LibraryLock(FileService& files, std::string realPath) : library_(std::move(realPath)) {
  const std::string path =
      supportFolder(files, library_, "Locks") + "/" + libraryHash(library_) + ".lock";
  file_ = Descriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  const bool opened = static_cast<bool>(file_);
  if (opened && ::flock(file_.number(), LOCK_EX | LOCK_NB) == 0) return;
  if (opened && errno == EWOULDBLOCK)
    throw LibraryError(library_, {}, Message::tr("another Kestrel is changing this library"),
                       Message::tr("Wait until it has finished, or close it."));
  const FileError error = FileError::fromCode(path, Message::tr("cannot be locked"), errno);
  throw LibraryError(library_, {},
                     Message::tr("cannot be changed: %1: %2").arg(path).arg(error.problem),
                     error.remedy);
}

LibraryBackups::LibraryBackups(FileService& files, const std::string& library, std::string ending)
    : files_(files),
      library_(library),
      ending_(std::move(ending)),
      folder_(supportFolder(files, library,
                            "Backups/" + shortName(library) + "-" + libraryHash(library))) {}

std::vector<std::pair<std::uint64_t, std::string>> LibraryBackups::numbered() const {
  std::vector<std::pair<std::uint64_t, std::string>> found;
  for (const std::string& name : files_.list(folder_)) {
    if (!name.ends_with(ending_)) continue;
    if (const auto number =
            numberFromDecimal(std::string_view(name).substr(0, name.size() - ending_.size())))
      found.emplace_back(*number, name);
  }
  std::sort(found.begin(), found.end());
  return found;
}

std::string LibraryBackups::latest() const {
  const auto backups = numbered();
  return backups.empty() ? std::string() : folder_ + "/" + backups.back().second;
}

std::string LibraryBackups::add(const std::string& file) {
  const auto earlier = numbered();
  std::string name = decimalText(earlier.empty() ? 1 : earlier.back().first + 1);
  name.insert(0, 4 - std::min<std::size_t>(name.size(), 4), '0');
  std::string backup = folder_ + "/" + name + ending_;
  if (::link(file.c_str(), backup.c_str()) != 0) {
    if (errno == EEXIST) throw FileError::fromCode(library_, notKept(), errno);
    // Another volume, or one without second names. The copy gets its name when it is whole.
    const std::string unfinished = folder_ + "/unfinished";
    int code = copyFile(file, unfinished);
    if (!code && ::rename(unfinished.c_str(), backup.c_str()) != 0) code = errno;
    if (code) {
      ::unlink(unfinished.c_str());
      throw FileError::fromCode(library_, notKept(), code);
    }
  }
  syncFolder(folder_);
  return backup;
}

bool LibraryBackups::holds(const std::string& file) const {
  const auto one = files_.entryStatus(file), other = files_.entryStatus(latest());
  return one && other && one->size == other->size && one->modified == other->modified;
}

std::vector<std::string> LibraryBackups::unreplacedOnes() const {
  std::vector<std::string> paths;
  const auto library = files_.entryStatus(library_);
  for (const auto& [number, name] : numbered())
    if (std::string path = folder_ + "/" + name; library && files_.entryStatus(path) == library)
      paths.push_back(std::move(path));
  return paths;
}

void LibraryBackups::removeUnreplaced() {
  for (const std::string& backup : unreplacedOnes()) files_.remove(backup);
}

void LibraryBackups::prune(std::size_t kept) {
  const auto backups = numbered();
  kept = std::max<std::size_t>(kept, 1);
  for (std::size_t i = 0; i < backups.size(); ++i) {
    const std::string backup = folder_ + "/" + backups[i].second;
    if (i + kept < backups.size())
      files_.remove(backup);
    else
      ::chmod(backup.c_str(), 0600);
  }
}

}  // namespace kestrel
