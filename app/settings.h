/// Settings of the program's own windows, beside those that the operations read.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/preferences.h"

namespace kestrel::settings {

inline constexpr std::string_view criteria = "criteria";  ///< list of key texts
/// Addresses (LibraryIdentity), latest first; earlier versions wrote paths.
inline constexpr std::string_view recentLibraries = "recentLibraries";
/// What the first of them calls itself.
inline constexpr std::string_view recentLibraryID = "recentLibraryID";

inline void registerAppValues(Preferences& preferences) {
  preferences.registerDefault(criteria, std::vector<std::string>{"tName", "tArtist"});
}

}  // namespace kestrel::settings
