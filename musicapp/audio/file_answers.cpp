#include "musicapp/audio/file_answers.h"

#include <vector>

#include "musicapp/audio/audio_index.h"
#include "musicapp/audio/cover.h"

namespace kestrel {

void FileAnswers::look(std::span<const std::string> paths, const LoadWatch& watch) {
  const std::vector<AudioFile> files = audioFilesAt(paths);
  for (const std::string& path : paths) known_.try_emplace(path);
  AudioIndex(files_, log_).read(files, watch, [&](std::size_t file, const AudioFacts& facts) {
    known_[paths[file]] = {{facts.sampleDepth, facts.channels}, true, facts.hasCover != 0};
  });
}

void FileAnswers::prepare(std::span<const std::string> paths, const LoadWatch& watch) {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> asked;
  for (const std::string& path : paths)
    if (!known_.contains(path)) asked.push_back(path);
  if (!asked.empty()) look(asked, watch);
}

FileAnswers::Known FileAnswers::known(const std::string& path) {
  const auto found = known_.find(path);
  if (found != known_.end()) return found->second;
  look({&path, 1}, {});
  return known_[path];
}

std::optional<FileAnswers::Sound> FileAnswers::soundOf(const std::string& path) {
  const std::lock_guard lock(mutex_);
  const Known file = known(path);
  return file.isThere ? std::optional(file.sound) : std::nullopt;
}

std::optional<bool> FileAnswers::hasCover(const std::string& path) {
  const std::lock_guard lock(mutex_);
  const Known file = known(path);
  if (!file.isThere) return std::nullopt;
  if (file.hasCover) return true;
  const std::string folder = path.substr(0, path.rfind('/') + 1);
  const auto [place, isNew] = coverIn_.try_emplace(folder, false);
  if (isNew) place->second = hasCoverIn(folder, files_);
  return place->second;
}

}  // namespace kestrel
