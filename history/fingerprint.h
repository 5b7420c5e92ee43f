/// What entries, tracks and files are known by long after they were seen.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/descriptor.h"

namespace kestrel {

/// A hash in which every bit of what was added, and the order, counts. Fixed for good: plans and
/// the history hold its results.
class Fingerprint {
 public:
  void add(std::uint64_t word) noexcept {
    hash_ ^= word;
    hash_ *= 0x9E3779B97F4A7C15U;
    hash_ ^= hash_ >> 32U;
  }
  void add(std::string_view text) noexcept {
    add(text.size());
    for (const char c : text) add(static_cast<unsigned char>(c));
  }
  void add(std::span<const std::uint64_t> words) noexcept {
    add(words.size());
    for (const std::uint64_t word : words) add(word);
  }
  [[nodiscard]] std::uint64_t value() const noexcept { return hash_; }

 private:
  std::uint64_t hash_ = 0x6A09E667F3BCC908U;
};

/// Of a file. Not the numbers that a system gives it: they change when a disk is plugged in again,
/// and are given to others when the file is gone.
struct FileMark {
  std::uint64_t size = 0;  ///< bytes; 0 for a link
  Moment modified;
  /// Stands for all the bytes of a small file, for beginning, middle and end of a large one, for
  /// where a link leads. Fixed for good: the history holds it.
  std::uint64_t content = 0;
  friend bool operator==(const FileMark&, const FileMark&) = default;
};

/// Nothing when there is no file or link, or it cannot be read. Never waits for a pipe.
std::optional<FileMark> markOf(const std::string& path);

/// Whether size and time are those of the mark. Times may have been rounded to whole seconds by a
/// disk meanwhile, to even ones by some.
bool mayBe(const FileMark& mark, const FileStatus& status) noexcept;
/// Whether the file at `path` is the marked one; reads it.
bool isMarked(const std::string& path, const FileMark& mark);

}  // namespace kestrel
