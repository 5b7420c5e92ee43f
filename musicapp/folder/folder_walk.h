/// What a folder holds, at whatever depth.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "musicapp/audio/audio_index.h"
#include "platform/descriptor.h"

namespace kestrel {

struct FolderListing {
  std::vector<std::pair<std::string, FileStatus>> folders;  ///< the listed ones, by path
  std::vector<AudioFile> audio;                             ///< by path
  std::vector<std::string> lists;                           ///< playlist files, by path
  /// As the disk has those that are no links.
  std::unordered_map<std::string, FileStatus> listStates;
  std::vector<std::string> closed;  ///< folders that cannot be listed, and files without a status
  std::size_t linksOut = 0;         ///< links to what lies outside
  /// Folders with what a Kestrel that was ended while it wrote playlists has left; by path.
  std::vector<std::string> withLeftovers;
  bool isCancelled = false;
};

/// Lists the folder `root`, a real path. Links are not followed: what they lead to inside is met
/// where it lies, and what lies outside is not read. Only playlist files may be links, to a file
/// below one of `roots`. Passed over are hidden files and folders, trashes, and what systems and
/// devices keep for themselves.
FolderListing walkFolder(const std::string& root, const std::vector<std::string>& roots,
                         const LoadWatch& watch);

/// Whether there is an audio file below, among the first entries that come up.
bool hasAudioBelow(const std::string& root);

/// Whether a path is that of a folder, or of what lies below it.
bool liesIn(std::string_view path, std::string_view folder) noexcept;

}  // namespace kestrel
