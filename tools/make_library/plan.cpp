#include "tools/make_library/plan.h"

#include <algorithm>
#include <array>
#include <limits>

#include "tools/make_library/random.h"

namespace kestrel::make_library {
namespace {

constexpr std::uint32_t kMaxPercent = 90;
constexpr std::uint32_t kNearMissPercent = 2;
constexpr std::uint32_t kLongestRun = 14;
// The songs that turn up again and again.
constexpr std::uint32_t kFavourites = 24;

constexpr std::array kCopies{Variant::otherBitRate, Variant::otherKind, Variant::otherFolder,
                             Variant::letterCase,   Variant::otherTime, Variant::numberedFile,
                             Variant::cloudCopy,    Variant::otherYear};
constexpr std::array kNearMisses{Variant::decomposed, Variant::concert, Variant::otherArtist,
                                 Variant::noArtist};

class Planner {
 public:
  explicit Planner(const Options& options)
      : options_(options),
        percent_(std::min(options.duplicatePercent, kMaxPercent)),
        random_(options.seed, Stream::plan) {}

  Plan make() {
    plan_.entries.reserve(options_.tracks);
    copyCount_.reserve(options_.tracks);
    std::uint64_t copies = 0;
    std::uint64_t nearMisses = 0;
    while (!full()) {
      const std::uint64_t next = plan_.entries.size() + 1;
      const bool mayCopy = plan_.songs > 0;
      if (mayCopy && copies * 100 < (next - 1) * percent_) {
        copies += addRun(random_.pick(kCopies));
      } else if (mayCopy && percent_ > 0 && nearMisses * 100 < (next - 1) * kNearMissPercent) {
        nearMisses += addRun(random_.pick(kNearMisses));
      } else {
        copyCount_.push_back(0);
        plan_.entries.push_back({plan_.songs++, 0, Variant::original});
      }
    }
    return std::move(plan_);
  }

 private:
  bool full() const { return plan_.entries.size() >= options_.tracks; }

  std::uint32_t addRun(Variant variant) {
    const std::uint32_t roll = random_.below(100);
    std::uint32_t first = random_.below(plan_.songs);
    std::uint32_t length = 1;
    if (roll < 8) {
      first = random_.popular(std::min(kFavourites, plan_.songs));
    } else if (roll < 30) {
      first = lastCopied_;
    } else if (roll < 60) {
      length = random_.between(2, kLongestRun);
    }
    std::uint32_t added = 0;
    for (; added < length && first + added < plan_.songs && !full(); ++added) {
      const std::uint32_t song = first + added;
      if (copyCount_[song] < std::numeric_limits<std::uint16_t>::max()) ++copyCount_[song];
      plan_.entries.push_back({song, copyCount_[song], variant});
    }
    lastCopied_ = first;
    return added;
  }

  const Options& options_;
  const std::uint32_t percent_;
  Random random_;
  Plan plan_;
  std::vector<std::uint16_t> copyCount_;  // by song
  std::uint32_t lastCopied_ = 0;
};

}  // namespace

Plan makePlan(const Options& options) { return Planner(options).make(); }

}  // namespace kestrel::make_library
