#include "musicapp/document/found_documents.h"

#include <algorithm>
#include <string_view>

#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/user_directories.h"

namespace kestrel {
namespace {

constexpr std::size_t mostFound = 8;
/// A home may hold anything; more folders, and more files of one, are not looked at.
constexpr std::size_t mostFolders = 200, mostFiles = 2000;

bool isLibraryDocument(const FileService& files, const std::string& path) {
  const MappedFile file = files.map(path);
  const std::string_view start(file.bytes().data(),
                               std::min<std::size_t>(file.bytes().size(), 4096));
  return start.find("<plist") != std::string_view::npos &&
         start.find("<key>Tracks</key>") != std::string_view::npos;
}

/// The names in a folder, sorted; none when it cannot be read.
std::vector<std::string> namesIn(const FileService& files, const std::string& folder,
                                 std::size_t most) {
  std::vector<std::string> names;
  try {
    names = files.list(folder);
  } catch (const FileError&) {
    return {};
  }
  std::sort(names.begin(), names.end());
  if (names.size() > most) names.resize(most);
  return names;
}

}  // namespace

std::vector<std::string> foundDocuments(const FileService& files) {
  std::vector<std::string> folders;
  const std::string music = userDirectory(files, "MUSIC", "Music");
  for (const std::string& folder : {music, userDirectory(files, "DOCUMENTS", "Documents"),
                                    userDirectory(files, "DOWNLOAD", "Downloads")})
    if (!folder.empty()) folders.push_back(folder);
  if (!music.empty())
    for (const std::string& name : namesIn(files, music, mostFolders)) {
      const auto status = files.status(music + '/' + name);
      if (!name.starts_with('.') && status && status->kind == FileStatus::Kind::folder)
        folders.push_back(music + '/' + name);
    }
  std::vector<std::string> found;
  for (const std::string& folder : folders)
    for (const std::string& name : namesIn(files, folder, mostFiles)) {
      if (!name.ends_with(".xml") || found.size() == mostFound) continue;
      const std::string path = folder + '/' + name;
      try {
        if (isLibraryDocument(files, path)) found.push_back(path);
      } catch (const FileError&) {  // what cannot be read is none that can be offered
      }
    }
  return found;
}

}  // namespace kestrel
