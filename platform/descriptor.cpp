#include "platform/descriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file_error.h"

namespace kestrel {
namespace {

Message unreadable() { return Message::tr("cannot be read"); }

}  // namespace

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
  if (::fstat(number_, &info) != 0) throw FileError::fromCode(path, unreadable(), errno);
  return fileStatus(info);
}

std::string Descriptor::readAll(const std::string& path) const {
  // One byte more than the size shows at once that the end is reached; files that do not know
  // their size (pipes, what the kernel makes up) are read in growing pieces.
  std::string bytes;
  std::size_t piece = std::max<std::size_t>(status(path).size + 1, 65536);
  while (piece <= maximumRead && bytes.size() <= maximumRead) {
    const std::size_t had = bytes.size();
    bytes.resize(had + piece);
    const ssize_t count = ::read(number_, bytes.data() + had, piece);
    const int code = errno;
    bytes.resize(had + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count == 0) return bytes;
    if (count < 0 && code != EINTR) throw FileError::fromCode(path, unreadable(), code);
    piece = std::max<std::size_t>(bytes.size() / 2, 4096);
  }
  throw FileError(path, Message::tr("cannot be read: it is too large"),
                  Message::tr("Give another file."));
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

Descriptor openForReading(const std::string& path) {
  // Without O_NONBLOCK, opening a pipe would wait for a program that writes to it.
  Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file) throw FileError::fromCode(path, unreadable(), errno);
  const FileStatus::Kind kind = file.status(path).kind;
  if (kind == FileStatus::Kind::folder) throw FileError::fromCode(path, unreadable(), EISDIR);
  if (kind != FileStatus::Kind::file)
    throw FileError(path, Message::tr("cannot be read: it is not an ordinary file"),
                    Message::tr("Give another file."));
  return file;
}

int Descriptor::close() noexcept {
  const int number = std::exchange(number_, -1);
  return number >= 0 && ::close(number) != 0 ? errno : 0;
}

}  // namespace kestrel
