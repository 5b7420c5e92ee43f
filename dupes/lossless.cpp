#include "dupes/lossless.h"

#include <algorithm>
#include <array>
#include <string>

#include "foundation/collation.h"

namespace kestrel {
namespace {

/// Kinds that keep every bit, as their names tell; letters in lower case.
bool isLosslessKind(std::string_view kind) {
  constexpr std::array words = {"lossless", "flac", "alac", "aiff",    "wav",
                                "monkey",   "tta",  "dsf",  "wavpack", "pcm"};
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) {
    return kind.find(word) != std::string_view::npos;
  });
}

}  // namespace

bool isLossless(std::string_view kind) {
  // Libraries have few kinds, and mostly ask for the same again.
  thread_local std::string known;
  thread_local bool lossless = false;
  if (kind != known) {
    lossless = isLosslessKind(lowercase(kind));
    known = kind;
  }
  return lossless;
}

}  // namespace kestrel
