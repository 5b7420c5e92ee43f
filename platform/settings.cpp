#include "platform/settings.h"

#include <cstdint>
#include <string>
#include <vector>

#include "platform/preferences.h"

namespace kestrel::settings {

bool isForOneRun(std::string_view key) noexcept {
  return key == completedLaunch || key == trackLibraryInitialized || key == cancelGetDupes;
}

void registerFirstValues(Preferences& preferences) {
  preferences.registerDefault(selectedPlaylistPid, std::string());
  preferences.registerDefault(copyToPlaylist, std::vector<std::string>{"", ""});
  preferences.registerDefault(filterMatrixButton, std::int64_t{1});
  preferences.registerDefault(keeperMode, std::int64_t{0});
  preferences.registerDefault(aproxValue, std::int64_t{1});
}

}  // namespace kestrel::settings
