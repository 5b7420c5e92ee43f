/// Bytes of any sort: their text form, a hash of them, and writing them in pieces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kestrel {

/// Appends `bytes` in Base64, the text form that they have in property lists, padded, without line
/// breaks.
void appendBase64(std::string_view bytes, std::string& out);

/// The bytes of a text in Base64. White space may stand anywhere, the padding may be missing.
/// Nothing when the text holds anything else or ends within a byte.
std::optional<std::string> bytesOfBase64(std::string_view text);

/// Appends a number in seven bits a byte, the lowest first; the last byte lacks the top bit.
void appendNumber(std::uint64_t number, std::string& out);
/// Takes such a number from the front; nothing when it does not end or has more than 63 bits.
std::optional<std::uint64_t> takeNumber(std::string_view& bytes);

/// Collects small texts and passes them on in large pieces; large ones pass as they are.
class TextSink {
 public:
  static constexpr std::size_t pieceSize = std::size_t{4} << 20;

  explicit TextSink(std::function<void(std::string_view)> write) : write_(std::move(write)) {}
  void append(std::string_view text);
  void flush();

 private:
  std::function<void(std::string_view)> write_;
  std::string buffer_;
};

/// A number that tells contents apart: equal for the same bytes, in whatever pieces they come. XXH3
/// with 128 bits, which its authors keep the same for good: the history holds its results. Not made
/// to withstand an attacker.
class ContentHash {
 public:
  ContentHash();
  ~ContentHash();
  ContentHash(ContentHash&&) noexcept;
  ContentHash& operator=(ContentHash&&) noexcept;

  void add(std::string_view bytes) noexcept;
  /// Of what was added so far, as sixteen bytes.
  [[nodiscard]] std::string value() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace kestrel
