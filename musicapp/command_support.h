/// What applications that carry commands out themselves have in common.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "musicapp/command.h"
#include "musicapp/media_library.h"

namespace kestrel {

class Revealer;

/// What went wrong with a command; nothing was changed by it.
class CommandError : public MessageError {
 public:
  CommandError(int number_, Message message_)
      : MessageError(std::move(message_)), number(number_) {}
  int number;
};

[[noreturn]] void failWithoutPlaylist(std::uint64_t id);
[[noreturn]] void failWithoutTrack(std::uint64_t id);
[[noreturn]] void failWithoutPosition();
/// `why` goes on where the playlist's name ends, such as "is no folder".
[[noreturn]] void refuse(const Playlist& playlist, Message why);
/// Of a playlist whose entries are not the user's.
[[noreturn]] void refuseToFill(const Playlist& playlist);

// What comes of the commands that change nothing. They throw CommandError.

CommandResult cloudStatusOf(const MediaItem& track);
CommandResult filePathOf(const MediaItem& track);
void requireListed(std::uint64_t track, const Playlist& playlist);
/// Without a revealer there is nothing to show it in.
CommandResult revealTrack(const MediaItem& track, Revealer* revealer);
CommandResult revealPlaylist(std::uint64_t playlist, Revealer* revealer);

/// Of an application whose tracks cannot be given values of a sort.
[[noreturn]] void refuseValues(const Message& why);

/// Whether it is an ordinary playlist that the command means by its name.
bool isNamedIn(const command::DeleteSameNamedPlaylists& command, const Playlist& playlist);

inline constexpr std::size_t noEntry = SIZE_MAX;
/// Which entry of `now` becomes each entry of `then`, ascending; `noEntry` for those that are put
/// in. An entry that stays has its track; between what stays at both ends, entries are only taken
/// out, only put in, or else given another track.
std::vector<std::size_t> matchedEntries(std::span<const std::uint64_t> now,
                                        std::span<const std::uint64_t> then);

/// How a playlist gets other entries around those of unknown tracks, which all stay.
struct EntryMatch {
  std::vector<std::size_t> from;  ///< as of `matchedEntries`
  /// How many entries of unknown tracks stand before each; empty: they stay between their
  /// neighbours. What stays has as many before it as now.
  std::vector<std::size_t> unknownBefore;
};
/// `now`: the playlist as it is.
EntryMatch matchedEntries(const Playlist& now, const command::SetEntries& then);

}  // namespace kestrel
