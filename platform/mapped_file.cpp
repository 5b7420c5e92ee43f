#include "platform/mapped_file.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <mutex>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

#include "platform/file_error.h"

namespace kestrel {
namespace {

std::string temporaryFolder() {
  const char* named = std::getenv("TMPDIR");
  return named && *named ? named : "/tmp";
}

Descriptor openNameless(const std::string& folder) {
  Descriptor file(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
  if (file) return file;
  // Not every file system has nameless files.
  std::string name = folder + "/kestrel-XXXXXX";
  file = Descriptor(::mkostemp(name.data(), O_CLOEXEC));
  if (!file) throw FileError::fromCode(folder, Message::tr("cannot hold a temporary file"), errno);
  ::unlink(name.c_str());
  return file;
}

}  // namespace

/// What the signal handler reads, perhaps amid a change. They are used again but never freed, so
/// that the handler can walk along them at any time.
struct PageGuard::Watch {
  // Set from last to first and reset from first to last, so that no two of them make up a range
  // that never was.
  std::atomic<std::uintptr_t> begin{UINTPTR_MAX}, end{0};
  std::atomic<bool> lost{false};
  bool used = true;  ///< guarded by the mutex
  Watch* next = nullptr;

  static inline std::mutex mutex;
  static inline std::atomic<Watch*> first{nullptr};
  static inline std::uintptr_t pageSize = 0;
  static inline struct sigaction before {};

  /// Whether the address was watched, and can be read now.
  static bool mend(std::uintptr_t address) noexcept;
};

static_assert(std::atomic<std::uintptr_t>::is_always_lock_free &&
              std::atomic<bool>::is_always_lock_free);

bool PageGuard::Watch::mend(std::uintptr_t address) noexcept {
  for (Watch* watch = first.load(); watch; watch = watch->next) {
    const std::uintptr_t end = watch->end.load();
    if (address < watch->begin.load() || address >= end || watch->end.load() != end) continue;
    watch->lost.store(true);
    // To the end at once: a signal for each page of a large file would take long, and pages apart
    // from each other would use up the mappings that a process may have.
    const std::uintptr_t page = address / pageSize * pageSize;
    return ::mmap(reinterpret_cast<void*>(page), end - page, PROT_READ,
                  MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED | MAP_NORESERVE, -1, 0) != MAP_FAILED;
  }
  return false;
}

void PageGuard::onBusError(int signal, void* information, void* context) noexcept {
  auto* info = static_cast<siginfo_t*>(information);
  const bool isFault = info->si_code > 0;  // otherwise a program sent it
  const int code = errno;
  const bool mended = isFault && Watch::mend(reinterpret_cast<std::uintptr_t>(info->si_addr));
  errno = code;
  if (mended) return;
  const struct sigaction& before = Watch::before;
  if ((before.sa_flags & SA_SIGINFO) != 0) return before.sa_sigaction(signal, info, context);
  if (before.sa_handler == SIG_IGN && !isFault) return;
  if (before.sa_handler != SIG_DFL && before.sa_handler != SIG_IGN)
    return before.sa_handler(signal);
  // What faulted is tried again upon return, and then ends the program.
  ::sigaction(signal, &before, nullptr);
  if (!isFault) ::raise(signal);
}

PageGuard::PageGuard(const void* begin, std::size_t size) {
  const std::lock_guard lock(Watch::mutex);
  if (Watch::pageSize == 0) {
    Watch::pageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    struct sigaction action {};
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_RESTART;
    action.sa_sigaction = [](int signal, siginfo_t* info, void* context) {
      onBusError(signal, info, context);
    };
    ::sigaction(SIGBUS, &action, &Watch::before);
  }
  for (watch_ = Watch::first; watch_ && watch_->used; watch_ = watch_->next) {
  }
  const bool isNew = !watch_;
  if (isNew) watch_ = new Watch;
  watch_->used = true;
  watch_->lost = false;
  const auto from = reinterpret_cast<std::uintptr_t>(begin);
  watch_->end = (from + size + Watch::pageSize - 1) / Watch::pageSize * Watch::pageSize;
  watch_->begin = from;
  if (!isNew) return;
  watch_->next = Watch::first;
  Watch::first = watch_;
}

PageGuard::~PageGuard() {
  if (!watch_) return;
  const std::lock_guard lock(Watch::mutex);
  watch_->begin = UINTPTR_MAX;
  watch_->end = 0;
  watch_->used = false;
}

bool PageGuard::hasLostPages() const noexcept { return watch_ && watch_->lost.load(); }

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

ScratchFile::ScratchFile() : folder_(temporaryFolder()), file_(openNameless(folder_)) {}

void ScratchFile::append(std::string_view bytes) {
  if (const int error = file_.write(bytes))
    throw FileError::fromCode(folder_, Message::tr("cannot hold a temporary file"), error);
}

}  // namespace kestrel
