#include "foundation/bytes.h"

#include <array>
#include <cstdint>

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace kestrel {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t noDigit = 255;

constexpr auto digitOf = [] {
  std::array<std::uint8_t, 256> table{};
  table.fill(noDigit);
  for (std::size_t i = 0; i < alphabet.size(); ++i)
    table[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
  return table;
}();

}  // namespace

void appendBase64(std::string_view bytes, std::string& out) {
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    std::uint32_t triple = 0;
    for (std::size_t i = 0; i < 3; ++i)
      triple =
          triple << 8 | (at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U);
    for (std::size_t i = 0; i < 4; ++i)
      out.push_back(at + i <= bytes.size() ? alphabet[triple >> (18 - 6 * i) & 63] : '=');
  }
}

std::optional<std::string> bytesOfBase64(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3 + 3);
  std::uint32_t bits = 0;
  std::size_t digits = 0, padding = 0;
  for (const char c : text) {
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r') continue;
    if (c == '=') {
      ++padding;
      continue;
    }
    const std::uint8_t digit = digitOf[static_cast<unsigned char>(c)];
    if (digit == noDigit || padding) return std::nullopt;
    bits = bits << 6 | digit;
    // Of four digits, the last three complete a byte each.
    if (const std::size_t left = digits++ % 4)
      bytes.push_back(static_cast<char>(bits >> (6 - 2 * left) & 0xFF));
  }
  if (digits % 4 == 1 || padding > 2 || (padding && (digits + padding) % 4 != 0))
    return std::nullopt;
  return bytes;
}

void appendNumber(std::uint64_t number, std::string& out) {
  for (; number >= 0x80U; number >>= 7U) out += static_cast<char>(number | 0x80U);
  out += static_cast<char>(number);
}

std::optional<std::uint64_t> takeNumber(std::string_view& bytes) {
  std::uint64_t number = 0;
  for (unsigned shift = 0; shift < 63 && !bytes.empty(); shift += 7) {
    const auto byte = static_cast<unsigned char>(bytes.front());
    bytes.remove_prefix(1);
    number |= static_cast<std::uint64_t>(byte & 0x7FU) << shift;
    if (byte < 0x80U) return number;
  }
  return std::nullopt;
}

void TextSink::append(std::string_view text) {
  if (text.size() >= pieceSize) {
    flush();
    for (; !text.empty(); text.remove_prefix(std::min(pieceSize, text.size())))
      write_(text.substr(0, pieceSize));
    return;
  }
  if (buffer_.size() + text.size() > pieceSize) flush();
  buffer_.append(text);
}

void TextSink::flush() {
  if (!buffer_.empty()) write_(buffer_);
  buffer_.clear();
}

struct ContentHash::State {
  XXH3_state_t state;
};

ContentHash::ContentHash() : state_(std::make_unique<State>()) {
  XXH3_128bits_reset(&state_->state);
}
ContentHash::~ContentHash() = default;
ContentHash::ContentHash(ContentHash&&) noexcept = default;
ContentHash& ContentHash::operator=(ContentHash&&) noexcept = default;

void ContentHash::add(std::string_view bytes) noexcept {
  XXH3_128bits_update(&state_->state, bytes.data(), bytes.size());
}

std::string ContentHash::value() const {
  XXH128_canonical_t bytes;
  XXH128_canonicalFromHash(&bytes, XXH3_128bits_digest(&state_->state));
  return {reinterpret_cast<const char*>(bytes.digest), sizeof bytes.digest};
}

}  // namespace kestrel
