#include "platform/atomic_write.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/descriptor.h"
#include "platform/file_error.h"

namespace kestrel {
namespace {

Message failed() { return Message::tr("cannot be written"); }

/// The file behind links, or the path itself when nothing is there yet.
std::string resolved(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), std::free);
  if (real) return real.get();
  const int code = errno;
  struct stat info {};
  // A link to nowhere must not silently become a file.
  if (code != ENOENT || ::lstat(path.c_str(), &info) == 0)
    throw FileError::fromCode(path, failed(), code);
  return path;
}

/// A file beside the one to be replaced, removed unless it is kept.
class TemporaryFile {
 public:
  TemporaryFile(const std::string& besides, mode_t mode) {
    const std::size_t slash = besides.rfind('/');
    folder_ = slash == std::string::npos ? "." : besides.substr(0, slash + 1);
    const std::string start = (slash == std::string::npos ? "" : folder_) + ".kestrel-" +
                              std::to_string(::getpid()) + "-";
    // Other threads, and leftovers of a program that was killed, may have the first names.
    for (int number = 0; !file_ && number < 1000; ++number) {
      path_ = start + std::to_string(number);
      file_ = Descriptor(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
      if (!file_ && errno != EEXIST) break;
    }
    if (!file_) throw FileError::fromCode(besides, failed(), errno);
  }
  ~TemporaryFile() {
    if (!path_.empty()) ::unlink(path_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  Descriptor& file() noexcept { return file_; }
  /// Returns 0, or the system's error number.
  int moveTo(const std::string& target) {
    if (std::rename(path_.c_str(), target.c_str()) != 0) return errno;
    path_.clear();
    return 0;
  }
  /// Makes the move last through a power cut. File systems that cannot do so for folders say
  /// EINVAL; there is nothing better to be done on them.
  int syncFolder() const noexcept {
    const Descriptor folder(::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) return errno == EACCES ? 0 : errno;
    return ::fsync(folder.number()) != 0 && errno != EINVAL ? errno : 0;
  }

 private:
  std::string folder_;
  std::string path_;
  Descriptor file_;
};

/// Gives the new file the owner and permissions of the one that it replaces.
int takeOver(const Descriptor& file, const struct stat& old) noexcept {
  // Only root may give files away; everybody else keeps their own.
  if (::fchown(file.number(), old.st_uid, old.st_gid) != 0 && errno != EPERM) return errno;
  return ::fchmod(file.number(), old.st_mode & 07777U) != 0 ? errno : 0;
}

}  // namespace

void writeFileAtomically(const std::string& path, std::string_view bytes) {
  const std::string target = resolved(path);
  struct stat old {};
  const bool replaces = ::stat(target.c_str(), &old) == 0;
  if (replaces && S_ISDIR(old.st_mode)) throw FileError::fromCode(path, failed(), EISDIR);
  // Nobody may look into a private file's successor before it is private too.
  TemporaryFile temporary(target, replaces ? 0600 : 0666);
  int code = replaces ? takeOver(temporary.file(), old) : 0;
  if (!code) code = temporary.file().write(bytes);
  if (!code && ::fsync(temporary.file().number()) != 0) code = errno;
  if (!code) code = temporary.file().close();
  if (!code) code = temporary.moveTo(target);
  if (code) throw FileError::fromCode(path, failed(), code);
  if (code = temporary.syncFolder(); code)
    throw FileError::fromCode(path, Message::tr("was written, but may not outlast a power cut"),
                              code);
}

}  // namespace kestrel
