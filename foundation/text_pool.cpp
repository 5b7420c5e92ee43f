#include "foundation/text_pool.h"

#include <algorithm>
#include <stdexcept>

namespace kestrel {
namespace {

constexpr std::size_t blockSize = std::size_t{1} << 20;
// 32 Ki slots of 16 bytes stay within a core's second-level cache.
constexpr std::size_t recentSlots = std::size_t{1} << 15;

__extension__ using Wide = unsigned __int128;

/// Multiply-and-fold over 8-byte words; only has to spread recent texts over the slots.
std::uint64_t hashOf(std::string_view text) noexcept {
  const auto mix = [](std::uint64_t a, std::uint64_t b) {
    const auto product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
  };
  std::uint64_t hash = 0x9e3779b97f4a7c15U ^ text.size();
  const char* p = text.data();
  std::size_t left = text.size();
  for (; left >= 8; p += 8, left -= 8) {
    std::uint64_t word;
    std::memcpy(&word, p, 8);
    hash = mix(hash ^ word, 0xd6e8feb86659fd93U);
  }
  if (left) {
    std::uint64_t word = 0;
    std::memcpy(&word, p, left);
    hash = mix(hash ^ word, 0xa0761d6478bd642fU);
  }
  return hash;
}

}  // namespace

char* TextPool::reserve(std::size_t bytes) {
  if (bytes > left_) {
    const std::size_t size = bytes > blockSize / 4 ? bytes : blockSize;
    auto block = std::make_unique_for_overwrite<char[]>(size);
    char* start = block.get();
    blocks_.push_back(std::move(block));
    total_ += size;
    if (size != blockSize) return start;  // a large text has a block to itself
    free_ = start;
    left_ = size;
  }
  char* place = free_;
  free_ += bytes;
  left_ -= bytes;
  return place;
}

Text TextPool::add(std::string_view text) {
  if (text.size() > UINT32_MAX) throw std::length_error("text of 4 GiB or more");
  const auto size = static_cast<std::uint32_t>(text.size());
  const bool isLong = size >= Text::longer;
  char* place = reserve(1 + (isLong ? sizeof size : 0) + text.size());
  char* end = place;
  *end++ = static_cast<char>(isLong ? Text::longer : size);
  if (isLong) end = std::copy_n(reinterpret_cast<const char*>(&size), sizeof size, end);
  std::copy(text.begin(), text.end(), end);
  return Text(place);
}

Text TextPool::share(std::string_view text) {
  if (recent_.empty()) recent_.resize(recentSlots);
  const std::uint64_t hash = hashOf(text);
  Slot& slot = recent_[hash % recentSlots];
  if (slot.hash != hash || slot.text.isNull() || slot.text.view() != text) slot = {hash, add(text)};
  return slot.text;
}

void TextPool::doneSharing() {
  recent_.clear();
  recent_.shrink_to_fit();
}

std::size_t TextPool::memory() const noexcept {
  return total_ + recent_.capacity() * sizeof(Slot) + blocks_.capacity() * sizeof(blocks_[0]);
}

}  // namespace kestrel
