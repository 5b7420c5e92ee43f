#include "dupes/asked_of_files.h"

#include <algorithm>
#include <utility>

namespace kestrel {
namespace {

/// The path of a file of this machine; empty of others.
std::string hereOf(const TrackRecord& record) {
  return record.availability() == FileAvailability::reachable ? record.location() : std::string();
}

}  // namespace

bool asksFiles(KeeperRule rule) noexcept {
  return rule == KeeperRule::withCover || rule == KeeperRule::losslessFirst;
}

std::vector<std::string> pathsHere(std::span<const TrackRecord* const> tracks) {
  std::vector<std::string> paths;
  for (const TrackRecord* track : tracks)
    if (std::string path = hereOf(*track); !path.empty()) paths.push_back(std::move(path));
  std::sort(paths.begin(), paths.end());
  paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
  return paths;
}

std::function<std::optional<SampleForm>(const TrackRecord&)> samplesBy(
    std::shared_ptr<FileAnswers> files) {
  return [files = std::move(files)](const TrackRecord& record) -> std::optional<SampleForm> {
    const std::string path = files ? hereOf(record) : std::string();
    if (path.empty()) return std::nullopt;
    const auto sound = files->soundOf(path);
    return sound ? std::optional(SampleForm{sound->bitDepth, sound->channels}) : std::nullopt;
  };
}

std::function<std::optional<bool>(const TrackRecord&)> coversBy(
    std::shared_ptr<FileAnswers> files) {
  return [files = std::move(files)](const TrackRecord& record) -> std::optional<bool> {
    const std::string path = files ? hereOf(record) : std::string();
    return path.empty() ? std::nullopt : files->hasCover(path);
  };
}

}  // namespace kestrel
