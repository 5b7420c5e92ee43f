#include "cli/choices.h"

#include <algorithm>

#include "cli/command.h"
#include "library/playlist_catalogue.h"
#include "library/track_keys.h"

namespace kestrel {
namespace {

std::string textInQuotes(std::string_view text) {
  return std::string("\"").append(text).append("\"");
}

}  // namespace

std::string listed(std::span<const std::string_view> texts) {
  std::string list;
  for (const std::string_view text : texts) list.append(list.empty() ? "" : ", ").append(text);
  return list;
}

std::string wrapped(std::string text) {
  constexpr std::size_t width = 80;
  for (std::size_t begin = 0; text.size() - begin > width;) {
    const std::size_t space = text.rfind(' ', begin + width);
    if (space == std::string::npos || space <= begin) break;
    text[space] = '\n';
    begin = space + 1;
  }
  return text;
}

void checkCriteria(std::span<const std::string> criteria) {
  for (const std::string& criterion : criteria) {
    if (criterion == "Filename") continue;
    const auto key = trackKey(criterion);
    if (key && trackKeys()[static_cast<std::size_t>(*key)].origin == TrackKeyOrigin::record)
      continue;
    throw UsageError("--match: no track has a key " + textInQuotes(criterion) +
                     "; the nearest are: " + listed(nearestTrackKeys(criterion)));
  }
}

void checkFileType(std::string_view text) {
  const auto choices = fileTypeChoices();
  const bool known = std::any_of(choices.begin(), choices.end(), [&](std::string_view choice) {
    return text.size() >= 2 && choice.substr(0, 2) == text.substr(0, 2);
  });
  if (!known)
    throw UsageError("--file-type: " + textInQuotes(text) + " is none of: " + listed(choices));
}

std::size_t choosePlaylist(std::span<const Playlist> playlists, std::string_view wanted) {
  const auto catalogue = playlistCatalogue(playlists);
  if (wanted.empty()) {
    if (const auto usual = defaultPlaylist(catalogue)) return *usual;
    throw UsageError(
        "the library has neither a list of all its songs nor a playlist of the user's; choose one "
        "by --playlist");
  }
  std::vector<std::size_t> byName, byShownName;
  for (std::size_t i = 0; i < playlists.size(); ++i) {
    if (catalogue[i].decpid == wanted) return i;
    if (playlists[i].name == wanted) byName.push_back(i);
    if (catalogue[i].pnom == wanted) byShownName.push_back(i);
  }
  const auto& found = byName.empty() ? byShownName : byName;
  if (found.empty())
    throw UsageError("--playlist: the library has no playlist " + textInQuotes(wanted) +
                     "; kestrel-cli playlists lists them");
  if (found.size() == 1) return found.front();
  std::vector<std::string_view> ids;
  for (const std::size_t place : found) ids.push_back(catalogue[place].decpid);
  throw UsageError("--playlist: several playlists are called " + textInQuotes(wanted) +
                   "; name one by its decimal ID: " + listed(ids));
}

}  // namespace kestrel
