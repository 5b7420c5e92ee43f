#include "sound/likeness.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <span>

#include "foundation/name_table.h"

namespace kestrel {
namespace {

using Items = std::span<const std::uint32_t>;

constexpr int farthestItems = static_cast<int>(30.0 / secondsAnItem);
/// Further apart in length, beside the silence before one of them, they may end differently: what
/// encoders add is less.
constexpr double secondsOfEncoders = 1;
/// Recordings end in as much silence, more or less.
constexpr double secondsOfSilenceAfter = 5;

constexpr NameTable<Likeness::Kind, 5> likenessNames{{{Likeness::Kind::unknown, "unknown"},
                                                      {Likeness::Kind::sameAudio, "sameAudio"},
                                                      {Likeness::Kind::same, "same"},
                                                      {Likeness::Kind::sameInPart, "sameInPart"},
                                                      {Likeness::Kind::different, "different"}}};

constexpr NameTable<Likeness::Part, 5> partNames{{{Likeness::Part::none, "none"},
                                                  {Likeness::Part::beginning, "beginning"},
                                                  {Likeness::Part::stretch, "stretch"},
                                                  {Likeness::Part::end, "end"},
                                                  {Likeness::Part::damaged, "damaged"}}};

/// The parts of two fingerprints that lie on each other when the second one is shifted back.
struct Overlap {
  Overlap(Items a, Items b, int shift)
      : first(a.subspan(shift < 0 ? std::min(a.size(), static_cast<std::size_t>(-shift)) : 0)),
        second(b.subspan(shift > 0 ? std::min(b.size(), static_cast<std::size_t>(shift)) : 0)) {
    const std::size_t size = std::min(first.size(), second.size());
    first = first.first(size);
    second = second.first(size);
  }
  Items first, second;
};

/// The share of bits that differ, of every fourth pair of items: to find the shift.
double roughDifference(const Overlap& overlap) {
  std::uint64_t bits = 0, items = 0;
  const std::size_t size = overlap.first.size();
  for (std::size_t i = 0; i + 1 < size; i += 8) {
    const std::uint64_t one = std::uint64_t{overlap.first[i]} << 32U | overlap.first[i + 1],
                        other = std::uint64_t{overlap.second[i]} << 32U | overlap.second[i + 1];
    bits += static_cast<std::uint64_t>(std::popcount(one ^ other));
    items += 2;
  }
  return items == 0 ? 1 : static_cast<double>(bits) / static_cast<double>(items * 32);
}

/// The same of all items that say something. Nothing to go by is a half.
double difference(const Overlap& overlap) {
  std::uint64_t bits = 0, items = 0;
  const auto& [a, b] = overlap;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (i > 0 && a[i] == a[i - 1] && b[i] == b[i - 1]) continue;
    bits += static_cast<std::uint64_t>(std::popcount(a[i] ^ b[i]));
    ++items;
  }
  const auto fewest = std::max<std::uint64_t>(16, a.size() / 8);
  return items < fewest ? 0.5 : static_cast<double>(bits) / static_cast<double>(items * 32);
}

/// Whether there are six seconds that are no more alike than any two recordings.
bool hasOtherStretch(const Overlap& overlap) {
  constexpr std::size_t window = 48;
  constexpr double leastOther = 0.4;
  const auto& [a, b] = overlap;
  // What goes on unchanged in both counts here: it is equal where both are silent.
  const auto bitsAt = [&](std::size_t i) {
    return static_cast<std::size_t>(std::popcount(a[i] ^ b[i]));
  };
  std::size_t bits = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    bits += bitsAt(i);
    if (i >= window) bits -= bitsAt(i - window);
    if (i + 1 >= window && static_cast<double>(bits) > leastOther * window * 32) return true;
  }
  return false;
}

struct Shifted {
  int shift = 0;
  double difference = 1;
  /// The less shifted of equal ones, so that nothing depends on which is the first.
  friend bool operator<(const Shifted& a, const Shifted& b) {
    if (a.difference != b.difference) return a.difference < b.difference;
    return std::abs(a.shift) != std::abs(b.shift) ? std::abs(a.shift) < std::abs(b.shift)
                                                  : a.shift < b.shift;
  }
};

Shifted bestShift(Items a, Items b) {
  const std::size_t least = std::min(a.size(), b.size()) / 2;
  std::array<Shifted, 4> best;  // ascending
  for (int shift = -farthestItems; shift <= farthestItems; ++shift) {
    const Overlap overlap(a, b, shift);
    if (overlap.first.size() < least) continue;
    const Shifted one{shift, roughDifference(overlap)};
    if (!(one < best.back())) continue;
    best.back() = one;
    std::inplace_merge(best.begin(), best.end() - 1, best.end());
  }
  // Every fourth pair may miss by one place what all items tell.
  Shifted found;
  for (const Shifted& rough : best)
    for (int shift = rough.shift - 1; shift <= rough.shift + 1; ++shift) {
      const Overlap overlap(a, b, shift);
      if (overlap.first.size() >= least)
        found = std::min(found, Shifted{shift, difference(overlap)});
    }
  return found;
}

}  // namespace

Likeness likenessOf(const Sound& first, const Sound& second) {
  Likeness likeness;
  const double longer = static_cast<double>(second.milliseconds - first.milliseconds) / 1000;
  likeness.longer = static_cast<std::int32_t>(std::clamp(longer, -1e9, 1e9));
  if (!first.checksum.empty() && first.checksum == second.checksum) {
    likeness.kind = Likeness::Kind::sameAudio;
    likeness.percent = 100;
    likeness.isOneRecording = true;
    return likeness;
  }
  if (first.fingerprint.empty() || second.fingerprint.empty()) {
    likeness.isFirstAtFault = !second.fingerprint.empty();
    likeness.fault = likeness.isFirstAtFault ? first.fault : second.fault;
    return likeness;
  }
  const Shifted best = bestShift(first.fingerprint, second.fingerprint);
  likeness.percent =
      static_cast<std::uint8_t>(std::lround(100 * std::max(0.0, 1 - 2 * best.difference)));
  const double later = best.shift * secondsAnItem;
  likeness.later = static_cast<float>(later);
  if (likeness.percent < leastOfTheSame) {
    likeness.kind = Likeness::Kind::different;
    return likeness;
  }
  // What the shift does not account for is at the end.
  const double atTheEnd = std::abs(longer - later);
  const double silence = static_cast<double>((later < 0 ? first : second).silence) / 1000;
  const double atTheStart = std::max(0.0, std::abs(later) - silence);
  using Part = Likeness::Part;
  if (atTheStart > secondsOfEncoders)
    likeness.part = Part::beginning;
  else if (hasOtherStretch({first.fingerprint, second.fingerprint, best.shift}))
    likeness.part = Part::stretch;
  else if (first.fault == SoundFault::damaged || second.fault == SoundFault::damaged)
    likeness.part = Part::damaged;
  else if (atTheEnd > secondsOfEncoders)
    likeness.part = Part::end;
  likeness.kind = likeness.part == Part::none ? Likeness::Kind::same : Likeness::Kind::sameInPart;
  likeness.isOneRecording = likeness.part == Part::none ||
                            (likeness.part == Part::end && atTheEnd <= secondsOfSilenceAfter);
  return likeness;
}

std::string_view nameOf(Likeness::Kind kind) noexcept { return nameOf(likenessNames, kind); }
std::string_view nameOf(Likeness::Part part) noexcept { return nameOf(partNames, part); }

Message explainPart(const Likeness& likeness) {
  switch (likeness.part) {
    case Likeness::Part::none:
      break;
    case Likeness::Part::beginning:
      return Message::tr("sounds the same, but one lacks the first %Ln seconds",
                         "sounds the same, but one lacks the first %Ln second",
                         std::lround(std::abs(likeness.later)));
    case Likeness::Part::stretch:
      return Message::tr("sounds the same, but for several seconds in the midst");
    case Likeness::Part::end:
      return Message::tr("sounds the same at first, but the files are %Ln seconds apart",
                         "sounds the same at first, but the files are %Ln second apart",
                         std::abs(std::int64_t{likeness.longer}));
    case Likeness::Part::damaged:
      return Message::tr("sounds the same where it can be read, but a file is damaged");
  }
  return {};
}

Likeness lessAlike(const Likeness& one, const Likeness& other) {
  if (one.kind == Likeness::Kind::unknown) return other;
  if (one.kind != other.kind) return one.kind < other.kind ? other : one;
  return one.percent <= other.percent ? one : other;
}

Message textOf(const Likeness& likeness) {
  if (likeness.kind == Likeness::Kind::unknown)
    return likeness.isFirstAtFault ? Message::tr("not compared") : shortText(likeness.fault);
  if (likeness.kind == Likeness::Kind::sameAudio) return Message::tr("same audio");
  return likeness.kind == Likeness::Kind::sameInPart
             ? Message::tr("%1 % in part").arg(likeness.percent)
             : Message::tr("%1 %").arg(likeness.percent);
}

Message reasonOf(const Likeness& likeness) {
  if (likeness.isFirstAtFault)
    return Message::tr("the kept copy cannot be compared: %1").arg(explain(likeness.fault));
  return explain(likeness.fault);
}

}  // namespace kestrel
