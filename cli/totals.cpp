#include "cli/totals.h"

#include <string>
#include <unordered_set>

namespace kestrel {
namespace {

void add(Totals& totals, std::unordered_set<std::string>& files, const SearchResult& result,
         const FoundGroup& group) {
  ++totals.groups;
  totals.doubtful += group.doubts.empty() ? 0 : 1;
  std::size_t keepers = 0;
  for (const ResultTrack* track : group.tracks) {
    ++totals.tracks;
    const TrackRecord& record = *track->record;
    const bool isHere = record.availability() == FileAvailability::reachable;
    totals.missing += record.availability() == FileAvailability::missing ? 1 : 0;
    if (result.isKeeper(*track)) {
      ++keepers;
      continue;
    }
    ++totals.toActOn;
    if (!isHere || !files.insert(record.location()).second) continue;
    ++totals.files;
    totals.bytes = sizesAdded(totals.bytes, record.item().fileSize);
  }
  totals.withoutKeeper += keepers == 0 ? 1 : 0;
  totals.severalKeepers += keepers > 1 ? 1 : 0;
}

}  // namespace

Totals totalsOf(const SearchResult& result) {
  Totals totals;
  std::unordered_set<std::string> files;
  for (const FoundGroup& group : result.groups) add(totals, files, result, group);
  return totals;
}

Totals totalsOf(const SearchResult& result, const FoundGroup& group) {
  Totals totals;
  std::unordered_set<std::string> files;
  add(totals, files, result, group);
  return totals;
}

Json json(const Totals& totals) {
  return {{"groups", totals.groups},
          {"tracks", totals.tracks},
          {"toActOn", totals.toActOn},
          {"files", totals.files},
          {"bytes", totals.bytes},
          {"missing", totals.missing},
          {"withoutKeeper", totals.withoutKeeper},
          {"severalKeepers", totals.severalKeepers},
          {"doubtful", totals.doubtful}};
}

}  // namespace kestrel
