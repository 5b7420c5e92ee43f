/// What keeper rules and reports ask of the files of tracks, where the library does not say it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "dupes/keeper_rules.h"
#include "musicapp/audio/file_answers.h"

namespace kestrel {

/// Whether the rule looks into files.
bool asksFiles(KeeperRule rule) noexcept;

/// The paths of those tracks whose files are here, each once: for `FileAnswers::prepare`.
std::vector<std::string> pathsHere(std::span<const TrackRecord* const> tracks);

/// For `KeeperOptions`. Nothing of a track whose file is not here, nor without `files`. From any
/// thread; of a file that was not prepared it is opened now.
std::function<std::optional<bool>(const TrackRecord&)> coversBy(std::shared_ptr<FileAnswers> files);
std::function<std::optional<SampleForm>(const TrackRecord&)> samplesBy(
    std::shared_ptr<FileAnswers> files);

}  // namespace kestrel
