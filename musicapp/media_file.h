/// What a media file tells of itself.
#pragma once

#include <optional>
#include <string>

#include "musicapp/media_item.h"

namespace kestrel {

/// A track as its file's tags describe it. The item's texts lie in `texts`.
struct MediaFile {
  TextPool texts;
  MediaItem item;
};

/// Whether a file can be read as audio of some length. Opens it, if it is a regular one.
bool hasPlayingTime(const std::string& path);

/// Reads length, rates and tags; the title is the file's name when it has none. Without what only
/// a library knows: IDs and dates. Nothing when there is no audio in it that can be read.
std::optional<MediaFile> readMediaFile(const std::string& path);

}  // namespace kestrel
