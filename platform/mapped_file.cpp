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

/// Mapped memory that is watched for pages which its file has lost. When another program cuts a
/// mapped file short, or its disk fails, the system ends a program that looks at the lost pages by
/// SIGBUS. Here that signal puts zeros in the place of the lost page and all behind it, and is
/// remembered. Everywhere else it does what it did before.
///
/// The signal handler reads these, perhaps amid a change. They are used again but never freed, so
/// that it can walk along them at any time.
struct Watch {
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
};

static_assert(std::atomic<std::uintptr_t>::is_always_lock_free &&
              std::atomic<bool>::is_always_lock_free);

/// Whether the address was watched, and can be read now.
bool mend(std::uintptr_t address) noexcept {
  for (Watch* watch = Watch::first.load(); watch; watch = watch->next) {
    const std::uintptr_t end = watch->end.load();
    if (address < watch->begin.load() || address >= end || watch->end.load() != end) continue;
    watch->lost.store(true);
    // To the end at once: a signal for each page of a large file would take long, and pages apart
    // from each other would use up the mappings that a process may have.
    const std::uintptr_t page = address / Watch::pageSize * Watch::pageSize;
    return ::mmap(reinterpret_cast<void*>(page), end - page, PROT_READ,
                  MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED | MAP_NORESERVE, -1, 0) != MAP_FAILED;
  }
  return false;
}

void onBusError(int signal, siginfo_t* info, void* context) noexcept {
  const bool isFault = info->si_code > 0;  // otherwise a program sent it
  const int code = errno;
  const bool mended = isFault && mend(reinterpret_cast<std::uintptr_t>(info->si_addr));
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

/// The pages of a file, watched as long as they are mapped.
class Mapping {
 public:
  Mapping(const Descriptor& file, std::size_t size, const std::string& path)
      : address_(::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.number(), 0)), size_(size) {
    if (address_ == MAP_FAILED)
      throw FileError::fromCode(path, Message::tr("cannot be read"), errno);
    watch();
    ::madvise(address_, size_, MADV_SEQUENTIAL);
  }
  ~Mapping() {
    {
      const std::lock_guard lock(Watch::mutex);
      watch_->begin = UINTPTR_MAX;
      watch_->end = 0;
      watch_->used = false;
    }
    ::munmap(address_, size_);
  }
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;

  [[nodiscard]] std::span<const char> bytes() const {
    return {static_cast<const char*>(address_), size_};
  }
  [[nodiscard]] const std::atomic<bool>& lost() const { return watch_->lost; }

 private:
  void watch() {
    const std::lock_guard lock(Watch::mutex);
    if (Watch::pageSize == 0) {
      Watch::pageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
      struct sigaction action {};
      action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_RESTART;
      action.sa_sigaction = onBusError;
      ::sigaction(SIGBUS, &action, &Watch::before);
    }
    for (watch_ = Watch::first; watch_ && watch_->used; watch_ = watch_->next) {
    }
    const bool isNew = !watch_;
    if (isNew) watch_ = new Watch;
    watch_->used = true;
    watch_->lost = false;
    const auto from = reinterpret_cast<std::uintptr_t>(address_);
    watch_->end = (from + size_ + Watch::pageSize - 1) / Watch::pageSize * Watch::pageSize;
    watch_->begin = from;
    if (!isNew) return;
    watch_->next = Watch::first;
    Watch::first = watch_;
  }

  void* address_;
  std::size_t size_;
  Watch* watch_ = nullptr;
};

}  // namespace

MappedFile::MappedFile(const std::string& path) : file_(openForReading(path)), path_(path) {
  map(file_, path);
}

MappedFile::MappedFile(const Descriptor& file, const std::string& path) { map(file, path); }

void MappedFile::map(const Descriptor& file, const std::string& path) {
  status_ = file.status(path);
  if (status_.size == 0) return;
  const auto mapping =
      std::make_shared<const Mapping>(file, static_cast<std::size_t>(status_.size), path);
  bytes_ = mapping->bytes();
  lost_ = &mapping->lost();
  owner_ = mapping;
}

MappedFile::MappedFile(const std::string& bytes, FileStatus status) : status_(status) {
  // Of just this size, so that tools see who reads beyond it.
  const std::shared_ptr<char[]> copy(new char[bytes.size()]);
  std::copy(bytes.begin(), bytes.end(), copy.get());
  bytes_ = {copy.get(), bytes.size()};
  owner_ = copy;
}

void MappedFile::checkUnchanged() const {
  if ((lost_ && lost_->load()) || (file_ && file_.status(path_) != status_))
    throw FileError(path_, Message::tr("was changed by another program while it was read"),
                    Message::tr("Wait until that program is done, then try again."));
}

void MappedFile::release(std::size_t offset, std::size_t length) const noexcept {
  if (!lost_ || offset >= bytes_.size()) return;
  // Both ends are moved back to a page's begin, so that ranges given one after the other release
  // everything between them. The page at the end may still be in use and stays.
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  const std::size_t begin = offset / page * page;
  const std::size_t end =
      length >= bytes_.size() - offset ? bytes_.size() : (offset + length) / page * page;
  if (end > begin) ::madvise(const_cast<char*>(bytes_.data()) + begin, end - begin, MADV_DONTNEED);
}

ScratchFile::ScratchFile() : folder_(temporaryFolder()), file_(openNameless(folder_)) {}

void ScratchFile::append(std::string_view bytes) {
  if (const int error = file_.write(bytes))
    throw FileError::fromCode(folder_, Message::tr("cannot hold a temporary file"), error);
}

}  // namespace kestrel
