/// The two text forms of a persistent ID, and IDs for what has none.
///
/// A music library numbers every track and playlist with an unsigned 64-bit integer. Records,
/// menus and settings hold it in decimal digits, the keys of the groomed tracks, playlist documents
/// and scripts in upper-case hexadecimal digits; neither form has a sign, a prefix or leading
/// zeros. Everything here is stateless and may be called from any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel {

/// The decimal form.
std::string decimalText(std::uint64_t number);
/// The number behind decimal digits, leading zeros allowed. Nothing for an empty text, any other
/// character, or a number that does not fit 64 bits.
std::optional<std::uint64_t> numberFromDecimal(std::string_view text) noexcept;
/// The same for hexadecimal digits of either case: documents pad the form to sixteen digits.
std::optional<std::uint64_t> numberFromHex(std::string_view text) noexcept;
/// Sixteen hexadecimal digits, as documents and the names of files have them.
std::string paddedHex(std::uint64_t number);

/// A persistent ID for what has none: the same for the same texts, never 0.
std::uint64_t derivedPersistentID(std::string_view first, std::string_view second) noexcept;

}  // namespace kestrel

namespace kestrel::TextSorter {

/// The hexadecimal form: 0 gives "0", 255 gives "FF".
std::string decToHex(std::uint64_t number);
/// The hexadecimal form of each number, in order, repeats included.
std::vector<std::string> batchDecToHex(std::span<const std::uint64_t> numbers);

}  // namespace kestrel::TextSorter
