#include "platform/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
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

/// Takes all rights to a folder and to the files in it from all but their owner.
void makePrivate(const std::string& folder) {
  std::error_code error;
  constexpr auto others = std::filesystem::perms::group_all | std::filesystem::perms::others_all;
  constexpr auto remove = std::filesystem::perm_options::remove;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    // A file with a second name is not ours alone, such as a library and its backup.
    std::error_code ignored;
    if (entry->symlink_status(ignored).type() == std::filesystem::file_type::regular &&
        entry->hard_link_count(ignored) == 1)
      std::filesystem::permissions(entry->path(), others, remove, ignored);
  }
  std::filesystem::permissions(folder, others, remove, error);
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
  return openForReading(path).readAll(path);
}

MappedFile SystemFiles::map(const std::string& path) const { return MappedFile(path); }

void SystemFiles::writeAtomically(const std::string& path, std::string_view bytes) {
  writeFileAtomically(path, bytes);
}

void SystemFiles::createDirectories(const std::string& path) {
  int code = 0;
  for (std::size_t end = 0; end != std::string::npos;) {
    end = path.find('/', end + 1);
    if (::mkdir(path.substr(0, end).c_str(), 0700) != 0) code = errno;
  }
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0 || !S_ISDIR(info.st_mode))
    throw FileError::fromCode(path, Message::tr("cannot be created"), code);
  if (path.ends_with("/Kestrel") && (info.st_mode & 077U) != 0 && info.st_uid == ::geteuid())
    makePrivate(path);
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
