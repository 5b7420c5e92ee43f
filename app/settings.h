/// Settings of the program's own windows, beside those that the operations read.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/preferences.h"

namespace kestrel::settings {

inline constexpr std::string_view criteria = "criteria";                ///< list of key texts
inline constexpr std::string_view recentLibraries = "recentLibraries";  ///< paths, latest first

inline void registerAppValues(Preferences& preferences) {
  preferences.registerDefault(criteria, std::vector<std::string>{"tName", "tArtist"});
}

}  // namespace kestrel::settings
