/// What goes with copies that are not kept, as JSON and in words.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "cli/record_output.h"
#include "cli/search.h"
#include "dupes/losses.h"

namespace kestrel {

/// {"hexpid","keeper", and what is lost of: "plays","rating","added","lastPlayed","skips",
/// "lastSkipped","comments","grouping","bpm","lossless","cover","playlists"}
Json json(const Loss& loss);
/// Of the groups of a search. `leaving`: the tracks that go, if not all that are not kept.
struct LossLedger {
  LossTotal total;
  std::vector<std::pair<const FoundGroup*, std::vector<Loss>>> groups;  ///< that lose something
  bool knowsCovers = false;  ///< the files were asked for covers
};
/// What is carried over is not lost. With a session it asks the files of these groups for covers;
/// without one, those count that the search has asked for.
LossLedger ledgerOf(const SearchResult& found,
                    const std::unordered_set<std::uint64_t>* leaving = nullptr,
                    TrackValueSet carried = {}, Session* session = nullptr);
/// {"copies","plays","ratings","added","lastPlayed","skips","lastSkipped","comments","groupings",
/// "bpm","lossless",
/// "covers","playlists"}; null of covers that were not asked for.
Json totalOf(const LossLedger& ledger);
/// {"total":{..},"groups":[{"tGroupID","copies":[..]}]}
Json json(const LossLedger& ledger);
/// What a copy loses, as a table shows it.
class LossTexts {
 public:
  explicit LossTexts(const LossLedger& ledger);
  /// "has alone: 15 plays, lossless", by persistent ID; empty where nothing is lost.
  [[nodiscard]] std::string of(std::uint64_t track) const;

 private:
  std::unordered_map<std::uint64_t, const Loss*> losses_;  ///< of the ledger
};
/// The total in a line behind an introduction; nothing where nothing is lost.
void writeTotal(std::ostream& out, std::string_view introduction, const LossLedger& ledger);

}  // namespace kestrel
