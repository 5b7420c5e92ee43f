/// The order of names in the tracks panel: as a file manager lists them, so that "Vol. 9" stands
/// before "Vol. 10".
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace kestrel {

/// For each text its place among the different ones, from 1, by the rules of the user's locale:
/// numbers within texts by their value, letter case only where nothing else differs. Texts that
/// compare the same have the same place; the place of an empty text is 0.
std::vector<std::uint32_t> localizedStandardPlaces(std::span<const std::string_view> texts);

}  // namespace kestrel
