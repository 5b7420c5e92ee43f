#include "platform/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/atomic_write.h"
#include "platform/descriptor.h"
#include "platform/file_error.h"

namespace kestrel {
namespace {

/// The folder that the variable names, or `belowHome` in the user's home. Variables that do not
/// hold an absolute path count as unset.
std::optional<std::string> userFolder(const char* variable, const char* belowHome) {
  const auto absolute = [](const char* name) -> std::optional<std::string> {
    const char* value = std::getenv(name);
    if (!value || value[0] != '/') return std::nullopt;
    return value;
  };
  if (auto folder = absolute(variable)) return folder;
  auto home = absolute("HOME");
  if (home) *home += belowHome;
  return home;
}

}  // namespace

std::optional<Moment> FileService::modificationDate(const std::string& path) const {
  const auto found = status(path);
  return found ? std::optional(found->modified) : std::nullopt;
}

bool SystemFiles::reachable(const char* path) const noexcept { return ::access(path, F_OK) == 0; }

std::optional<FileStatus> SystemFiles::status(const std::string& path) const {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return std::nullopt;
  return fileStatus(info);
}

std::optional<FileStatus> SystemFiles::entryStatus(const std::string& path) const {
  struct stat info {};
  if (::lstat(path.c_str(), &info) != 0) return std::nullopt;
  if (S_ISLNK(info.st_mode)) info.st_size = 0;
  return fileStatus(info);
}

std::string SystemFiles::readAll(const std::string& path) const {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) throw FileError::fromCode(path, Message::tr("cannot be read"), errno);
  const FileStatus status = file.status(path);
  std::string bytes;
  // One byte more than the size shows at once that the end is reached; files that do not know
  // their size (pipes, what the kernel makes up) are read in growing pieces.
  std::size_t piece = std::max<std::size_t>(status.size + 1, 4096);
  if (status.kind != FileStatus::Kind::file) piece = 65536;
  while (true) {
    const std::size_t had = bytes.size();
    bytes.resize(had + piece);
    const ssize_t count = ::read(file.number(), bytes.data() + had, piece);
    const int code = errno;
    bytes.resize(had + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count == 0) return bytes;
    if (count < 0 && code != EINTR)
      throw FileError::fromCode(path, Message::tr("cannot be read"), code);
    piece = std::max<std::size_t>(bytes.size() / 2, 4096);
  }
}

MappedFile SystemFiles::map(const std::string& path) const { return MappedFile(path); }

void SystemFiles::writeAtomically(const std::string& path, std::string_view bytes) {
  writeFileAtomically(path, bytes);
}

void SystemFiles::createDirectories(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (error) throw FileError::fromCode(path, Message::tr("cannot be created"), error.value());
}

bool SystemFiles::remove(const std::string& path) {
  if (std::remove(path.c_str()) == 0) return true;
  if (errno == ENOENT) return false;
  throw FileError::fromCode(path, Message::tr("cannot be removed"), errno);
}

void SystemFiles::rename(const std::string& from, const std::string& to) {
  if (std::rename(from.c_str(), to.c_str()) != 0)
    throw FileError::fromCode(from, Message::tr("cannot be moved to %1").arg(to), errno);
}

std::vector<std::string> SystemFiles::list(const std::string& folder) const {
  std::error_code error;
  std::vector<std::string> names;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error))
    names.push_back(entry->path().filename().string());
  if (error) throw FileError::fromCode(folder, Message::tr("cannot be listed"), error.value());
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<std::string> SystemFiles::applicationSupportDirectory() const {
  return userFolder("XDG_DATA_HOME", "/.local/share");
}

std::optional<std::string> SystemFiles::configurationDirectory() const {
  return userFolder("XDG_CONFIG_HOME", "/.config");
}

std::optional<std::string> SystemFiles::stateDirectory() const {
  return userFolder("XDG_STATE_HOME", "/.local/state");
}

std::optional<std::string> SystemFiles::cacheDirectory() const {
  return userFolder("XDG_CACHE_HOME", "/.cache");
}

}  // namespace kestrel
