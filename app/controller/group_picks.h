/// The groups whose keepers the user has picked by hand, as commands change them and take that
/// back.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "decisions/decisions_file.h"

namespace kestrel {

/// How a group stands: what of it can be put back.
struct GroupState {
  std::int32_t group = 0;
  PickState picked = PickState::none;  ///< none: the rules have decided
  std::vector<std::uint64_t> keepers;  ///< tracks, in the order of the table's content
  friend bool operator==(const GroupState&, const GroupState&) = default;
};

/// What one command of the user has changed of groups.
struct PickChange {
  std::vector<GroupState> before, after;
  std::vector<TrackIDs> members;  ///< of each of these groups
  /// The keeper pass that `before` and `after` follow: a later one may decide otherwise where the
  /// user has picked nothing.
  std::uint64_t pass = 0;
  /// The search that has numbered the groups; in the result of another one they are found by their
  /// members.
  std::uint64_t search = 0;
};
/// Shared with the worker, which keeps it for later searches.
using SharedPickChange = std::shared_ptr<const PickChange>;

/// Decisions about the library at hand, for what runs on the worker.
///
/// Loading, changing and reading are for tasks of the worker, one after the other; so a search sees
/// every pick that was made before it began.
class KeptDecisions {
 public:
  explicit KeptDecisions(DecisionsFile file) : file_(std::move(file)) {}

  /// Throws LibraryError or FileError; then nothing is known, and nothing is written over what
  /// cannot be read.
  void load() { decisions_ = file_.load(); }
  /// The change is made, to what is known if not to the file. Throws as `load` does.
  void change(const std::function<void(Decisions&)>& edit) {
    try {
      decisions_ = file_.change(edit);
    } catch (...) {
      edit(decisions_);
      throw;
    }
  }
  [[nodiscard]] const Decisions& known() const noexcept { return decisions_; }

 private:
  DecisionsFile file_;
  Decisions decisions_;
};

}  // namespace kestrel
