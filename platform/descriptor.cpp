#include "platform/descriptor.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file_error.h"

namespace kestrel {

FileStatus fileStatus(const struct stat& info) noexcept {
  using Kind = FileStatus::Kind;
  FileStatus status;
  status.kind = S_ISREG(info.st_mode)   ? Kind::file
                : S_ISDIR(info.st_mode) ? Kind::folder
                                        : Kind::other;
  status.size = static_cast<std::uint64_t>(info.st_size);
  status.modified = Moment(std::chrono::seconds(info.st_mtim.tv_sec) +
                           std::chrono::nanoseconds(info.st_mtim.tv_nsec));
  status.device = info.st_dev;
  status.inode = info.st_ino;
  return status;
}

FileStatus Descriptor::status(const std::string& path) const {
  struct stat info {};
  if (::fstat(number_, &info) != 0)
    throw FileError::fromCode(path, Message::tr("cannot be read"), errno);
  return fileStatus(info);
}

int Descriptor::write(std::string_view bytes) const noexcept {
  while (!bytes.empty()) {
    const ssize_t written = ::write(number_, bytes.data(), bytes.size());
    if (written >= 0)
      bytes.remove_prefix(static_cast<std::size_t>(written));
    else if (errno != EINTR)
      return errno;
  }
  return 0;
}

int Descriptor::close() noexcept {
  const int number = std::exchange(number_, -1);
  return number >= 0 && ::close(number) != 0 ? errno : 0;
}

}  // namespace kestrel
