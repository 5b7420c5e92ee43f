/// A music folder of a test's own, "Music" in a temporary one, with all that an application needs.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "musicapp/folder/folder_library.h"
#include "tests/musicapp/application_world.h"
#include "tests/musicapp/audio/sample_audio.h"

namespace kestrel::testing {

class FolderWorld : public ApplicationWorld<FolderLibrary> {
 public:
  /// A file of half a second, called by its name.
  void song(const std::filesystem::path& path) const {
    tag(folder.write(path, sampleAudio("mp3")), {{"TITLE", path.stem()}});
  }
  /// Reads the folder as it is now, as another run of the program would.
  void open() {
    app.reset();
    app = std::make_unique<FolderLibrary>(address.empty() ? folder / "Music" : address, services(),
                                          options);
  }
  /// Name and bytes of every file that is no audio.
  [[nodiscard]] std::string lists() const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder / "Music"))
      if (entry.is_regular_file() && !isAudioName(entry.path().filename().string()))
        found.push_back(entry.path().string() + ": " + TemporaryFolder::read(entry.path()));
    std::sort(found.begin(), found.end());
    std::string all;
    for (const std::string& one : found) all += one;
    return all;
  }

  CommitOptions options;
  std::string address;
};

}  // namespace kestrel::testing
