/// Which runs are at work, so that one that was broken off can be told from them.
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "platform/descriptor.h"

namespace kestrel {

/// The locks of the runs of a history: a byte of a file beside it for each, at the run's number.
/// The system lets go of a lock when its program ends in whatever way, and shows it to programs
/// that do not see each other's processes. Not thread-safe.
class RunLocks {
 public:
  explicit RunLocks(std::string path) : path_(std::move(path)) {}

  /// Locks a run's byte until `release`, or until this object goes. Returns what is to be written
  /// down for `isAlive`: where there are no locks, which process it is.
  std::string hold(std::int64_t run);
  void release(std::int64_t run);
  /// Whether a run is at work, by what was written down of it; by its process if an earlier version
  /// wrote it. False for texts that say neither.
  [[nodiscard]] bool isAlive(std::int64_t run, const std::string& written) const;

 private:
  [[nodiscard]] bool open() const;

  std::string path_;
  mutable Descriptor file_;
  std::set<std::int64_t> held_;  ///< the system does not show us our own
};

}  // namespace kestrel
