/// The words by which files and other programs know the values of an enumeration.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace kestrel {

template <typename Value, std::size_t size>
using NameTable = std::array<std::pair<Value, const char*>, size>;

/// Empty for a value without a name.
template <typename Value, std::size_t size>
constexpr std::string_view nameOf(const NameTable<Value, size>& names, Value value) noexcept {
  for (const auto& [held, name] : names)
    if (held == value) return name;
  return {};
}

/// Nothing for a word that is no name.
template <typename Value, std::size_t size>
constexpr std::optional<Value> valueNamed(const NameTable<Value, size>& names,
                                          std::string_view word) noexcept {
  for (const auto& [value, name] : names)
    if (word == name) return value;
  return std::nullopt;
}

}  // namespace kestrel
