/// The search for files that sound the same, whatever their tags.
///
/// An index finds pairs that may: each file enters it under some of the items of its fingerprint,
/// chosen by the items themselves, so that the same passage is found wherever it begins. Files that
/// have several in common, all of them later by the same time, are candidates. No pair is looked at
/// that has none, and an item that many files have joins each with the next few only, so that
/// neither memory nor time grow faster than the number of files. Candidates are then compared as
/// `likenessOf` does.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "foundation/function_ref.h"
#include "sound/likeness.h"

namespace kestrel {

/// Two files by their numbers, the lower one first.
using SoundPair = std::pair<std::uint32_t, std::uint32_t>;

class SoundIndex {
 public:
  /// Each number once, in any order; below 2^24. Some 2 kilobytes a file.
  void add(std::uint32_t file, const Sound& sound);
  /// Pairs that may sound the same, ascending, the same for any order of adding; ends the index.
  /// With all cores. `stopped` is asked now and then, from any thread; nothing is returned then.
  std::vector<SoundPair> candidates(FunctionRef<bool()> stopped);

 private:
  /// Item, file and place; by a part of the item, so that each can be sorted by itself.
  static constexpr std::size_t shards = 8;
  std::array<std::vector<std::uint64_t>, shards> postings_;
  std::vector<std::pair<std::string, std::uint32_t>> checksums_;
  std::uint32_t files_ = 0;  ///< one more than the highest
};

/// Groups of files that sound the same, each ascending, in the order of their first files. The
/// lowest file that no group has taken takes all that sound the same as itself and that candidates
/// lead to, directly or by way of others that it has taken; so likeness does not chain from file to
/// file. `soundSame` is asked about a pair once at most for each first file, in no order and from
/// any thread, several at once.
std::vector<std::vector<std::uint32_t>> soundGroups(
    std::span<const SoundPair> candidates,
    FunctionRef<bool(std::uint32_t, std::uint32_t)> soundSame, FunctionRef<bool()> stopped);

}  // namespace kestrel
