#include "musicapp/command_support.h"

#include <algorithm>
#include <utility>

#include "foundation/collation.h"
#include "foundation/identifiers.h"
#include "musicapp/revealer.h"
#include "platform/file_error.h"

namespace kestrel {
namespace {

using Failure = CommandFailure;
using std::size_t;

template <typename Show>
CommandResult reveal(Revealer* revealer, Show&& show) {
  if (!revealer)
    throw CommandError(Failure::failed, Message::tr("There is nothing here to show it in"));
  try {
    show(*revealer);
  } catch (const FileError& error) {
    throw CommandError(Failure::failed, error.message);
  }
  return {};
}

}  // namespace

void failWithoutPlaylist(std::uint64_t id) {
  throw CommandError(
      Failure::noSuchObject,
      Message::tr("There is no playlist with the persistent ID %1").arg(TextSorter::decToHex(id)));
}

void failWithoutTrack(std::uint64_t id) {
  throw CommandError(
      Failure::noSuchObject,
      Message::tr("There is no track with the persistent ID %1").arg(TextSorter::decToHex(id)));
}

void failWithoutPosition() {
  throw CommandError(Failure::noSuchPosition,
                     Message::tr("The playlist has no entry at a position"));
}

void refuse(const Playlist& playlist, Message why) {
  throw CommandError(
      Failure::notAllowed,
      Message::tr("The playlist %1 %2").arg(inQuotes(playlist.name)).arg(std::move(why)));
}

void refuseToFill(const Playlist& playlist) {
  refuse(playlist, Message::tr("fills itself: its entries cannot be changed"));
}

void refuseValues(const Message& why) { throw CommandError(Failure::notAllowed, why); }

CommandResult cloudStatusOf(const MediaItem& track) {
  static constexpr const char* names[] = {"unknown", "matched", "purchased", "uploaded",
                                          "subscription"};
  return {names[static_cast<size_t>(track.cloudStatus)], {}, {}};
}

CommandResult filePathOf(const MediaItem& track) {
  const std::string path = filePath(track);
  return path.empty() ? CommandResult() : CommandResult{path, {}, {}};
}

void requireListed(std::uint64_t track, const Playlist& playlist) {
  if (std::find(playlist.items.begin(), playlist.items.end(), track) == playlist.items.end())
    failWithoutTrack(track);
}

CommandResult revealTrack(const MediaItem& track, Revealer* revealer) {
  const std::string path = filePath(track);
  if (path.empty())
    throw CommandError(Failure::failed, Message::tr("The track has no file that could be shown"));
  return reveal(revealer, [&](Revealer& in) { in.revealFile(path); });
}

CommandResult revealPlaylist(std::uint64_t playlist, Revealer* revealer) {
  return reveal(revealer, [&](Revealer& in) { in.revealPlaylist(playlist); });
}

bool isNamedIn(const command::DeleteSameNamedPlaylists& command, const Playlist& playlist) {
  return playlist.kind == PlaylistKind::regular && playlist.persistentID != command.except &&
         (command.caseSensitive ? playlist.name == command.name
                                : sameIgnoringCase(playlist.name, command.name));
}

std::vector<size_t> matchedEntries(std::span<const std::uint64_t> now,
                                   std::span<const std::uint64_t> then) {
  const auto first = std::mismatch(now.begin(), now.end(), then.begin(), then.end());
  const auto begin = static_cast<size_t>(first.first - now.begin());
  size_t oldEnd = now.size(), newEnd = then.size();
  while (oldEnd > begin && newEnd > begin && now[oldEnd - 1] == then[newEnd - 1])
    --oldEnd, --newEnd;

  const auto from = now.subspan(begin, oldEnd - begin), to = then.subspan(begin, newEnd - begin);
  // The places in `whole` of all of `part`, in order; fewer when `whole` does not hold it.
  const auto placesIn = [](std::span<const std::uint64_t> whole,
                           std::span<const std::uint64_t> part) {
    std::vector<size_t> places;
    for (size_t i = 0; i < whole.size() && places.size() < part.size(); ++i)
      if (whole[i] == part[places.size()]) places.push_back(i);
    return places;
  };
  std::vector<size_t> matched(then.size(), noEntry);
  for (size_t j = 0; j < begin; ++j) matched[j] = j;
  if (const auto kept = placesIn(from, to); kept.size() == to.size()) {
    for (size_t j = 0; j < to.size(); ++j) matched[begin + j] = begin + kept[j];
  } else if (const auto old = placesIn(to, from); old.size() == from.size()) {
    for (size_t i = 0; i < from.size(); ++i) matched[begin + old[i]] = begin + i;
  } else {
    for (size_t j = 0; j < std::min(from.size(), to.size()); ++j) matched[begin + j] = begin + j;
  }
  for (size_t j = newEnd; j < then.size(); ++j) matched[j] = oldEnd + (j - newEnd);
  return matched;
}

EntryMatch matchedEntries(const Playlist& now, const command::SetEntries& then) {
  EntryMatch match;
  const auto& unknownNow = now.unknownAt;
  const auto& unknownThen = then.unknownAt;
  const bool isTold = unknownNow.size() == unknownThen.size() &&
                      std::is_sorted(unknownThen.begin(), unknownThen.end()) &&
                      (unknownThen.empty() || unknownThen.back() <= then.tracks.size());
  if (!isTold) {
    match.from = matchedEntries(now.items, then.tracks);
    return match;
  }
  // What stands between two of them stays there.
  size_t begin = 0, newBegin = 0;
  for (size_t before = 0; before <= unknownThen.size(); ++before) {
    const bool isLast = before == unknownThen.size();
    const size_t end = isLast ? now.items.size() : unknownNow[before];
    const size_t newEnd = isLast ? then.tracks.size() : unknownThen[before];
    for (const size_t entry :
         matchedEntries(std::span(now.items).subspan(begin, end - begin),
                        std::span(then.tracks).subspan(newBegin, newEnd - newBegin))) {
      match.from.push_back(entry == noEntry ? noEntry : begin + entry);
      match.unknownBefore.push_back(before);
    }
    begin = end;
    newBegin = newEnd;
  }
  return match;
}

}  // namespace kestrel
