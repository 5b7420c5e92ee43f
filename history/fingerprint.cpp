#include "history/fingerprint.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/descriptor.h"

namespace kestrel {
namespace {

// What is read at most of a file, in three parts. Part of the meaning of `content`.
constexpr std::uint64_t partSize = 65536;

/// Adds `size` bytes from `offset` on; false when they cannot be had.
bool addPart(Fingerprint& fingerprint, int file, std::uint64_t offset, std::uint64_t size) {
  std::string bytes(size, '\0');
  for (std::uint64_t had = 0; had < size;) {
    const ssize_t count =
        ::pread(file, bytes.data() + had, size - had, static_cast<off_t>(offset + had));
    if (count <= 0) return false;
    had += static_cast<std::uint64_t>(count);
  }
  fingerprint.add(std::string_view(bytes));
  return true;
}

std::optional<FileMark> markOfLink(const std::string& path) {
  struct stat info {};
  std::error_code error;
  const std::filesystem::path target = std::filesystem::read_symlink(path, error);
  if (error || ::lstat(path.c_str(), &info) != 0) return std::nullopt;
  Fingerprint fingerprint;
  fingerprint.add(std::string_view(target.native()));
  return FileMark{0, fileStatus(info).modified, fingerprint.value()};
}

}  // namespace

std::optional<FileMark> markOf(const std::string& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!file) return markOfLink(path);
  struct stat info {};
  if (::fstat(file.number(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  const FileStatus status = fileStatus(info);
  Fingerprint fingerprint;
  const bool isRead =
      status.size <= 3 * partSize
          ? addPart(fingerprint, file.number(), 0, status.size)
          : addPart(fingerprint, file.number(), 0, partSize) &&
                addPart(fingerprint, file.number(), (status.size - partSize) / 2, partSize) &&
                addPart(fingerprint, file.number(), status.size - partSize, partSize);
  if (!isRead) return std::nullopt;
  return FileMark{status.size, status.modified, fingerprint.value()};
}

bool mayBe(const FileMark& mark, const FileStatus& status) noexcept {
  using std::chrono::seconds;
  const auto difference = std::chrono::abs(status.modified - mark.modified);
  const bool isRounded = status.modified.time_since_epoch() % seconds(1) == seconds(0);
  return mark.size == status.size &&
         difference < (isRounded ? seconds(2) : std::chrono::nanoseconds(1));
}

bool isMarked(const std::string& path, const FileMark& mark) {
  const auto found = markOf(path);
  return found && found->content == mark.content &&
         mayBe(mark, {FileStatus::Kind::file, found->size, found->modified, 0, 0});
}

}  // namespace kestrel
