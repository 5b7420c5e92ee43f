#include "platform/log.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "foundation/utf8.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {

StreamLog::StreamLog() : StreamLog(std::cerr) {}

StreamLog::StreamLog(std::ostream& stream) : stream_(stream) {}

void StreamLog::line(std::string_view text) noexcept {
  const std::lock_guard lock(mutex_);
  try {
    stream_ << printable(text) + '\n' << std::flush;
  } catch (const std::ios_base::failure&) {
    // A log that cannot be written must not stop the work that it describes.
  }
}

FileLog::FileLog(std::string path, std::uint64_t maxBytes, int kept)
    : path_(std::move(path)), maxBytes_(maxBytes), kept_(kept) {
  SystemFiles().createDirectories(std::filesystem::path(path_).parent_path().string());
  open();
  if (!file_) throw FileError::fromCode(path_, Message::tr("cannot be opened for the log"), errno);
}

void FileLog::open() {
  file_ = Descriptor(::open(path_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
  struct stat info {};
  if (file_) ::fchmod(file_.number(), 0600);
  size_ =
      file_ && ::fstat(file_.number(), &info) == 0 ? static_cast<std::uint64_t>(info.st_size) : 0;
}

void FileLog::rotate() {
  file_.close();
  const auto numbered = [this](int number) {
    return number == 0 ? path_ : path_ + "." + std::to_string(number);
  };
  if (kept_ <= 0) ::unlink(path_.c_str());
  for (int number = kept_; number > 0; --number)
    std::rename(numbered(number - 1).c_str(), numbered(number).c_str());
  open();
}

void FileLog::line(std::string_view text) noexcept {
  const std::lock_guard lock(mutex_);
  try {
    const std::string bytes = std::string(text) + '\n';
    if (file_ && size_ > 0 && size_ + bytes.size() > maxBytes_) rotate();
    if (!file_) return;
    // One write call a line, so that lines of two programs do not mix.
    if (const ssize_t written = ::write(file_.number(), bytes.data(), bytes.size()); written > 0)
      size_ += static_cast<std::uint64_t>(written);
  } catch (const std::bad_alloc&) {
    // As above: the line is lost, the work goes on.
  }
}

void MemoryLog::line(std::string_view text) noexcept {
  const std::lock_guard lock(mutex_);
  lines_.emplace_back(text);
}

std::vector<std::string> MemoryLog::lines() const {
  const std::lock_guard lock(mutex_);
  return lines_;
}

}  // namespace kestrel
