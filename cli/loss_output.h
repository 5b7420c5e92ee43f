/// What goes with copies that are not kept, as JSON and in words.
#pragma once

#include <unordered_set>

#include "cli/record_output.h"
#include "cli/search.h"
#include "dupes/losses.h"

namespace kestrel {

/// {"hexpid","keeper", and what is lost of: "plays","rating","added","lastPlayed","comments",
/// "grouping","bpm","lossless","cover","playlists"}
Json json(const Loss& loss);
/// {"copies","plays","ratings","added","lastPlayed","comments","groupings","bpm","lossless",
/// "covers","playlists"}
Json json(const LossTotal& total);

/// Of the groups of a search. `leaving`: the tracks that go, if not all that are not kept.
struct LossLedger {
  LossTotal total;
  std::vector<std::pair<const FoundGroup*, std::vector<Loss>>> groups;  ///< that lose something
};
/// What is carried over is not lost. With a session it asks the files of these groups for covers.
LossLedger ledgerOf(const SearchResult& found,
                    const std::unordered_set<std::uint64_t>* leaving = nullptr,
                    TrackValueSet carried = {}, Session* session = nullptr);
/// {"total":{..},"groups":[{"tGroupID","copies":[..]}]}
Json json(const LossLedger& ledger);

}  // namespace kestrel
