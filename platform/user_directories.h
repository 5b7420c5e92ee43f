/// The folders that the desktop gives its users for kinds of files.
#pragma once

#include <string>

namespace kestrel {

class FileService;

/// The folder of a kind ("MUSIC", "DOCUMENTS", "DOWNLOAD") as the desktop's own settings name it,
/// else `usual` in the home folder. Empty without a home, and when it is the home itself, which
/// stands for none. It need not exist.
std::string userDirectory(const FileService& files, const std::string& kind,
                          const std::string& usual);

}  // namespace kestrel
