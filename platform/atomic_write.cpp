#include "platform/atomic_write.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <memory>
#include <optional>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

#include "foundation/identifiers.h"
#include "platform/file_error.h"

namespace kestrel {
namespace {

constexpr const char* accessList = "system.posix_acl_access";

Message notWritten() { return Message::tr("cannot be written"); }

/// The file behind links, or the path itself when nothing is there yet.
std::string resolved(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), std::free);
  if (real) return real.get();
  const int code = errno;
  struct stat info {};
  // A link to nowhere must not silently become a file.
  if (code != ENOENT || ::lstat(path.c_str(), &info) == 0)
    throw FileError::fromCode(path, notWritten(), code);
  return path;
}

[[noreturn]] void throwOwnerIsLost(const std::string& path, const struct stat& info) {
  const passwd* user = ::getpwuid(info.st_uid);
  const group* members = ::getgrgid(info.st_gid);
  throw FileError(
      path,
      Message::tr("belongs to the user %1 and the group %2, and would become yours by the change")
          .arg(user ? user->pw_name : std::to_string(info.st_uid))
          .arg(members ? members->gr_name : std::to_string(info.st_gid)),
      Message::tr("Make the change as that user, or in a copy of your own."), EPERM);
}

bool isMember(gid_t group) {
  std::vector<gid_t> groups(static_cast<std::size_t>(std::max(::getgroups(0, nullptr), 0)));
  const int count = ::getgroups(static_cast<int>(groups.size()), groups.data());
  groups.resize(static_cast<std::size_t>(std::max(count, 0)));
  return group == ::getegid() || std::find(groups.begin(), groups.end(), group) != groups.end();
}

/// Copies the access list and what other programs have attached to a file. Returns 0, or the
/// system's error number.
int copyAttributes(const std::string& from, int to) {
  // A folder may give new files an access list that the old one does not have.
  if (::fremovexattr(to, accessList) != 0 && errno != ENODATA && errno != ENOTSUP) return errno;
  const ssize_t size = ::listxattr(from.c_str(), nullptr, 0);
  if (size <= 0) return size < 0 && errno != ENOTSUP ? errno : 0;
  std::string names(static_cast<std::size_t>(size), '\0');
  if (::listxattr(from.c_str(), names.data(), names.size()) != size) return errno;
  for (std::size_t at = 0; at < names.size(); at += std::string_view(&names[at]).size() + 1) {
    const std::string_view name = &names[at];
    std::string value(std::size_t{64} << 10, '\0');  // more the system does not take
    const ssize_t length = ::getxattr(from.c_str(), name.data(), value.data(), value.size());
    if (length >= 0 &&
        ::fsetxattr(to, name.data(), value.data(), static_cast<std::size_t>(length), 0) == 0)
      continue;
    // The rest is the system's own, which gives new files what they need.
    if (name.starts_with("user.") || name == accessList) return errno;
  }
  return 0;
}

}  // namespace

void checkOwnerCanBeKept(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0 || ::geteuid() == 0) return;
  if (info.st_uid != ::geteuid() || !isMember(info.st_gid)) throwOwnerIsLost(path, info);
}

SuccessorFile::SuccessorFile(std::string target, const std::string& prefix)
    : target_(std::move(target)) {
  const std::size_t slash = target_.rfind('/');
  folder_ = slash == std::string::npos ? "./" : target_.substr(0, slash + 1);
  prefix_ = folder_ + prefix;
}

SuccessorFile::~SuccessorFile() {
  if (!path_.empty()) ::unlink(path_.c_str());
}

void SuccessorFile::check(int code) const {
  if (code) throw FileError::fromCode(target_, notWritten(), code);
}

void SuccessorFile::create() {
  // Other threads, and leftovers of a program that was killed, may have the first names.
  for (int number = 0; number < 1000; ++number) {
    std::string path = prefix_ + std::to_string(::getpid()) + "-" + std::to_string(number);
    file_ = Descriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file_ && errno == EEXIST) continue;
    if (!file_) check(errno);
    path_ = std::move(path);
    // Where there are no locks there is only the name. Until it was locked, another program may
    // have taken it for a leftover.
    static_cast<void>(::flock(file_.number(), LOCK_EX));
    struct stat info {};
    if (::fstat(file_.number(), &info) != 0) check(errno);
    if (info.st_nlink > 0) return;
    path_.clear();
  }
  check(EEXIST);
}

void SuccessorFile::takeOver() {
  struct stat old {
  }, own{};
  if (::stat(target_.c_str(), &old) != 0 || ::fstat(file_.number(), &own) != 0) check(errno);
  // Not every file system lets its owner and permissions be set, even to what they are.
  if ((own.st_uid != old.st_uid || own.st_gid != old.st_gid) &&
      ::fchown(file_.number(), old.st_uid, old.st_gid) != 0) {
    if (errno == EPERM) throwOwnerIsLost(target_, old);
    check(errno);
  }
  check(copyAttributes(target_, file_.number()));
  // Last: the mode's group rights are the access list's mask.
  if (::fstat(file_.number(), &own) != 0) check(errno);
  if (own.st_mode != old.st_mode && ::fchmod(file_.number(), old.st_mode & 07777U) != 0)
    check(errno);
}

void SuccessorFile::sync() {
  if (::fsync(file_.number()) != 0) check(errno);
}

void SuccessorFile::openLikeFolder() {
  struct stat info {};
  if (::stat(folder_.c_str(), &info) != 0 || ::fchmod(file_.number(), info.st_mode & 0666U) != 0)
    check(errno);
}

void SuccessorFile::close() {
  closed_ = status();
  check(file_.close());
}

void SuccessorFile::place() {
  if (::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE) != 0) {
    // Where the system cannot do that, a second name does the same.
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) check(errno);
    if (::link(path_.c_str(), target_.c_str()) != 0) check(errno);
    ::unlink(path_.c_str());
  }
  path_.clear();
}

void SuccessorFile::replace() {
  if (std::rename(path_.c_str(), target_.c_str()) != 0) check(errno);
  path_.clear();
}

bool SuccessorFile::exchange() {
  // A hidden name that says the number of another file than it leads to has been exchanged.
  std::string path = path_ + "-" + std::to_string(status().inode);
  if (std::rename(path_.c_str(), path.c_str()) != 0) check(errno);
  path_ = std::move(path);
  if (::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target_.c_str(), RENAME_EXCHANGE) == 0)
    return true;
  if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) check(errno);
  return false;
}

void SuccessorFile::putBack() {
  const bool done =
      ::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target_.c_str(), RENAME_EXCHANGE) == 0;
  struct stat info {};
  if (done && ::lstat(path_.c_str(), &info) == 0 && info.st_ino == status().inode) return;
  path_.clear();
}

int SuccessorFile::syncFolder() const {
  const Descriptor folder(::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder) return errno == EACCES ? 0 : errno;
  // Some file systems cannot do so for folders; there is nothing better to be done on them.
  return ::fsync(folder.number()) != 0 && errno != EINVAL ? errno : 0;
}

void clearLeftovers(const std::string& target, const std::string& prefix,
                    const std::function<void(const std::string&)>& keep) {
  const auto inodeOf = [](const std::string& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0 ? info.st_ino : 0;
  };
  const auto isFree = [](const Descriptor& file, int lock) {
    return file && ::flock(file.number(), lock | LOCK_NB) == 0;
  };
  std::error_code error;
  for (std::filesystem::directory_iterator
           entry(std::filesystem::path(target).parent_path(), error),
       end;
       !error && entry != end; entry.increment(error)) {
    const std::string path = entry->path().string(), name = entry->path().filename().string();
    if (!name.starts_with(prefix)) continue;
    const Descriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat info {};
    if (!file || ::fstat(file.number(), &info) != 0) continue;
    // "PID-NUMBER", and "-INODE" from when it was about to take the target's place.
    const std::string rest = name.substr(prefix.size());
    const std::size_t last = rest.rfind('-');
    const auto inode = last == rest.find('-')
                           ? std::optional<std::uint64_t>(info.st_ino)
                           : numberFromDecimal(std::string_view(rest).substr(last + 1));
    if (inode == info.st_ino) {
      if (isFree(file, LOCK_EX) && inodeOf(path) == info.st_ino) ::unlink(path.c_str());
    } else {
      // As long as the program lives that put the successor there, that one is locked. Once it is
      // not, the two are not exchanged any more.
      const Descriptor successor(::open(target.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
      if (isFree(successor, LOCK_SH) && inodeOf(path) == info.st_ino) keep(path);
    }
  }
}

void writeFileAtomically(const std::string& path, std::string_view bytes) {
  const std::string target = resolved(path);
  struct stat old {};
  const bool replaces = ::stat(target.c_str(), &old) == 0;
  if (replaces && S_ISDIR(old.st_mode)) throw FileError::fromCode(path, notWritten(), EISDIR);
  if (replaces && !S_ISREG(old.st_mode))
    throw FileError(path, Message::tr("cannot be written: it is not an ordinary file"),
                    Message::tr("Give another file."));
  SuccessorFile file(target, ".kestrel-");
  try {
    file.create();
    if (replaces) file.takeOver();
    file.write(bytes);
    file.sync();
    file.replace();
  } catch (const FileError& error) {
    throw FileError(path, error.problem, error.remedy, error.code);
  }
  if (const int code = file.syncFolder())
    throw FileError::fromCode(path, Message::tr("was written, but may not outlast a power cut"),
                              code);
}

}  // namespace kestrel
