/// Keeps a program alive that looks at mapped pages which the file no longer has.
///
/// When another program cuts a mapped file short, or its disk fails, the system ends whoever looks
/// at the lost pages by SIGBUS. Within watched memory, that signal instead puts zeros in the place
/// of the lost page and all behind it, and is remembered. Everywhere else it does what it did
/// before.
#pragma once

#include <cstddef>
#include <utility>

namespace kestrel {

/// Watches a mapping from its making until this object goes, which must be before the mapping does.
/// Readers in any thread are protected and do not wait.
class PageGuard {
 public:
  /// Watches nothing.
  PageGuard() = default;
  PageGuard(const void* begin, std::size_t size);
  ~PageGuard();
  PageGuard(PageGuard&& other) noexcept : watch_(std::exchange(other.watch_, nullptr)) {}
  PageGuard& operator=(PageGuard&& other) noexcept {
    std::swap(watch_, other.watch_);
    return *this;
  }

  /// Whether zeros were seen where the file had lost its pages.
  [[nodiscard]] bool hasLostPages() const noexcept;

 private:
  struct Watch;
  static void onBusError(int signal, void* info, void* context) noexcept;

  Watch* watch_ = nullptr;
};

}  // namespace kestrel
