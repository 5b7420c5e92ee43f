#include "platform/page_guard.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <mutex>
#include <sys/mman.h>
#include <unistd.h>

namespace kestrel {

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

}  // namespace kestrel
