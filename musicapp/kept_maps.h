/// Path maps in the settings, where they are kept for each library.
#pragma once

#include <string>

#include "musicapp/path_maps.h"

namespace kestrel {

class Preferences;

/// The maps of the library at an address.
PathMaps keptMaps(const Preferences& preferences, const std::string& address);
void keepMaps(Preferences& preferences, const std::string& address, const PathMaps& maps);

}  // namespace kestrel
