#include "platform/mapped_file.h"

#include <algorithm>
#include <cerrno>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

#include "platform/file_error.h"

namespace kestrel {

MappedFile::MappedFile(const std::string& path) : file_(openForReading(path)), path_(path) {
  map(file_, path);
}

MappedFile::MappedFile(const Descriptor& file, const std::string& path) { map(file, path); }

void MappedFile::map(const Descriptor& file, const std::string& path) {
  status_ = file.status(path);
  size_ = static_cast<std::size_t>(status_.size);
  if (size_ == 0) return;
  void* address = ::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, file.number(), 0);
  if (address == MAP_FAILED) throw FileError::fromCode(path, Message::tr("cannot be read"), errno);
  data_ = static_cast<const char*>(address);
  mapped_ = true;
  guard_ = PageGuard(address, size_);
  ::madvise(address, size_, MADV_SEQUENTIAL);
}

MappedFile::MappedFile(std::string bytes, FileStatus status)
    : size_(bytes.size()), status_(status) {
  char* copy = new char[size_];
  std::copy(bytes.begin(), bytes.end(), copy);
  data_ = copy;
}

MappedFile::~MappedFile() {
  guard_ = PageGuard();
  if (mapped_)
    ::munmap(const_cast<char*>(data_), size_);
  else
    delete[] data_;
}

MappedFile::MappedFile(MappedFile&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      mapped_(std::exchange(other.mapped_, false)),
      status_(other.status_),
      file_(std::move(other.file_)),
      path_(std::move(other.path_)),
      guard_(std::move(other.guard_)) {}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept {
  std::swap(data_, other.data_);
  std::swap(size_, other.size_);
  std::swap(mapped_, other.mapped_);
  std::swap(status_, other.status_);
  std::swap(file_, other.file_);
  std::swap(path_, other.path_);
  std::swap(guard_, other.guard_);
  return *this;
}

void MappedFile::checkUnchanged() const {
  if (guard_.hasLostPages() || (file_ && file_.status(path_) != status_))
    throw FileError(path_, Message::tr("was changed by another program while it was read"),
                    Message::tr("Wait until that program is done, then try again."));
}

void MappedFile::release(std::size_t offset, std::size_t length) const noexcept {
  if (!mapped_ || offset >= size_) return;
  // Both ends are moved back to a page's begin, so that ranges given one after the other release
  // everything between them. The page at the end may still be in use and stays.
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  const std::size_t begin = offset / page * page;
  const std::size_t end = length >= size_ - offset ? size_ : (offset + length) / page * page;
  if (end > begin) ::madvise(const_cast<char*>(data_) + begin, end - begin, MADV_DONTNEED);
}

}  // namespace kestrel
