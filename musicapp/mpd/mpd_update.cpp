#include "musicapp/mpd/mpd_update.h"

#include <algorithm>
#include <chrono>
#include <mpd/protocol.h>
#include <thread>
#include <vector>

#include "foundation/identifiers.h"

namespace kestrel {
namespace {

using std::size_t;
using Places = std::set<std::string>;

std::string folderAbove(const std::string& place) {
  const size_t slash = place.rfind('/');
  return slash == std::string::npos ? std::string() : place.substr(0, slash);
}

bool liesBelow(const std::string& place, const std::string& folder) {
  return folder.empty() || place == folder || place.starts_with(folder + "/");
}

/// It forgets folders without songs, says of them what it would of empty ones, and cannot look into
/// one that it has forgotten. `known`: folders that it does know.
std::string updatableFor(MpdConnection& connection, std::string uri, Places& known) {
  for (size_t slash; (slash = uri.rfind('/')) != std::string::npos; uri.resize(slash)) {
    const std::string folder = uri.substr(0, slash);
    if (known.contains(folder)) break;
    try {
      bool hasContents = false;
      connection.ask({"lsinfo", folder},
                     [&](std::string_view, std::string_view) { hasContents = true; });
      if (hasContents) {
        known.insert(folder);
        break;
      }
    } catch (const MpdRefusal&) {  // unknown: the next one up
    }
  }
  return uri;
}

/// The number of the look that the server is at; 0 while it has none.
std::uint64_t jobIn(MpdConnection& connection) {
  return numberFromDecimal(connection.value({"status"}, "updating_db")).value_or(0);
}

}  // namespace

Places mpdPlacesToUpdate(MpdConnection& connection, std::span<const std::string> uris, size_t most,
                         const std::function<bool(const std::string& folder)>& isAsKnown) {
  Places known, places;
  for (const std::string& uri : uris) places.insert(updatableFor(connection, uri, known));
  Places shared = places;
  while (shared.size() > most) {
    const auto depthOf = [](const std::string& place) {
      return std::count(place.begin(), place.end(), '/');
    };
    std::ptrdiff_t deepest = 0;
    for (const std::string& place : shared) deepest = std::max(deepest, depthOf(place));
    Places next;
    for (const std::string& place : shared)
      next.insert(depthOf(place) == deepest ? folderAbove(place) : place);
    shared = std::move(next);
  }
  Places all;
  for (const std::string& place : shared) {
    const auto isBelow = [&](const std::string& one) { return liesBelow(one, place); };
    if (places.contains(place) || isAsKnown(place))
      all.insert(place);
    else
      std::copy_if(places.begin(), places.end(), std::inserter(all, all.end()), isBelow);
  }
  return all;
}

void updateMpd(MpdConnection& connection, const Places& places,
               const std::function<bool()>& cancelled) {
  constexpr auto patience = std::chrono::minutes(10);
  const auto end = std::chrono::steady_clock::now() + patience;
  std::chrono::milliseconds pause(5);
  const auto mayWait = [&] {
    if ((cancelled && cancelled()) || std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(pause);
    pause = std::min(pause * 2, std::chrono::milliseconds(100));
    return true;
  };
  std::uint64_t last = 0;
  for (const std::string& place : places)
    for (bool isTaken = false; !isTaken;) {
      try {
        last = numberFromDecimal(connection.value({"update", place}, "updating_db")).value_or(0);
        isTaken = true;
      } catch (const MpdRefusal& refusal) {
        // It takes only so many at once.
        if (refusal.code != MPD_SERVER_ERROR_UPDATE_ALREADY) throw;
        if (!mayWait()) return;
      }
    }
  for (std::uint64_t job; (job = jobIn(connection)) != 0 && job <= last;)
    if (!mayWait()) return;
}

}  // namespace kestrel
