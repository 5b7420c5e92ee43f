/// Writes what a search found: as tables to read, as JSON and as CSV.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "library/result_track.h"

namespace kestrel {

struct FoundGroup {
  std::string tGroupID;
  std::int32_t dupeSort = 0;
  std::vector<const ResultTrack*> tracks;  ///< in row order
  std::string reason;                      ///< why the keeper was chosen
  bool random = false;
};

struct FindResult {
  std::string count;  ///< tracks in groups, as the search returned it
  std::vector<std::string> criteria;
  std::int64_t rule = 0;
  bool keeperMode = false;         ///< true: a ticked box marks a track to act on
  std::vector<FoundGroup> groups;  ///< in the order of dupeSort
};

void writeText(std::ostream& out, const FindResult& result);
void writeJson(std::ostream& out, const FindResult& result);
/// A line of titles, then one line per track: group, keeper and reason, then every record key.
void writeCsv(std::ostream& out, const FindResult& result);

}  // namespace kestrel
