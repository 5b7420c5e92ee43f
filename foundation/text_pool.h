/// Texts of a library, stored once and handed out as 6-byte handles.
///
/// A library of a million tracks holds ten million texts, most of them repeats of a neighbour's
/// (artist, album, folder). A pool appends texts to large blocks and remembers the recently seen
/// ones in a fixed-size cache, so that loading needs no table that grows with the library: a
/// repeat that is missed costs its bytes once more and nothing else.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace kestrel {

/// A text in a pool, valid as long as the pool. Copies freely; the default one is null, which is
/// not the same as empty. Of an address only the 48 bits are kept in which those of programs
/// differ, as an item of a library holds a dozen texts.
class [[gnu::packed]] Text {
 public:
  constexpr Text() = default;

  [[nodiscard]] bool isNull() const noexcept { return address_ == 0; }
  /// The UTF-8 bytes; empty for null.
  [[nodiscard]] std::string_view view() const noexcept {
    if (isNull()) return {};
    const char* place = reinterpret_cast<const char*>(static_cast<std::uintptr_t>(address_));
    const auto size = static_cast<unsigned char>(*place);
    if (size != longer) return {place + 1, size};
    std::uint32_t bytes;
    std::memcpy(&bytes, place + 1, sizeof bytes);
    return {place + 1 + sizeof bytes, bytes};
  }
  /// Equal content; null equals only null.
  friend bool operator==(Text a, Text b) noexcept {
    return a.sameAs(b) || (!a.isNull() && !b.isNull() && a.view() == b.view());
  }
  /// Same place in the same pool: implies equal content, and is cheap enough for hot loops.
  [[nodiscard]] bool sameAs(Text other) const noexcept { return address_ == other.address_; }

 private:
  friend class TextPool;
  explicit Text(const char* place) : address_(reinterpret_cast<std::uintptr_t>(place)) {}
  /// Instead of a length: the length stands behind it in 32 bits.
  static constexpr unsigned char longer = 255;
  std::uint64_t address_ : 48 = 0;  ///< of the length in a byte, then the bytes
};

/// Owns texts. Not thread-safe: each loading thread fills a pool of its own; filled pools are read
/// from any thread.
class TextPool {
 public:
  /// Stores a text of less than 4 GiB, without looking for an equal one.
  Text add(std::string_view text);
  /// Like `add`, but returns the earlier handle when an equal text was stored lately.
  Text share(std::string_view text);
  /// Gives the cache of `share` back; call when filling is over.
  void doneSharing();
  /// Bytes taken from the system for texts and cache.
  [[nodiscard]] std::size_t memory() const noexcept;

 private:
  char* reserve(std::size_t bytes);

  std::vector<std::unique_ptr<char[]>> blocks_;
  char* free_ = nullptr;
  std::size_t left_ = 0;
  std::size_t total_ = 0;
  struct Slot {
    std::uint64_t hash = 0;
    Text text;
  };
  std::vector<Slot> recent_;
};

}  // namespace kestrel
