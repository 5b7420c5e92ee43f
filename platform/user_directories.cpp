#include "platform/user_directories.h"

#include <cstdlib>
#include <fstream>

#include "platform/files.h"

namespace kestrel {

std::string userDirectory(const FileService& files, const std::string& kind,
                          const std::string& usual) {
  const char* home = std::getenv("HOME");
  if (!home || *home != '/') return {};
  std::string folder = std::string(home) + '/' + usual;
  // Lines like XDG_MUSIC_DIR="$HOME/Music".
  std::ifstream settings(files.configurationDirectory().value_or("") + "/user-dirs.dirs");
  const std::string key = "XDG_" + kind + "_DIR=\"";
  for (std::string line; std::getline(settings, line);) {
    if (!line.starts_with(key)) continue;
    folder = line.substr(key.size(), line.rfind('"') - key.size());
    if (folder.starts_with("$HOME")) folder.replace(0, 5, home);
  }
  while (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
  return folder.starts_with('/') && folder != home ? folder : std::string();
}

}  // namespace kestrel
