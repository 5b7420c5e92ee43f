/// The part of an undo that takes back what kept tracks were given (carrying.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "changes/undo.h"

namespace kestrel {

/// For one undo, from the choice to the last word on each track. Everything throws what the
/// application does.
class UndoneValues {
 public:
  explicit UndoneValues(MusicApplication& application) : application_(application) {}

  /// Settles what is taken back of the run, with an outcome for each track. `isFileGone`: a copy
  /// cannot come back with its file, so that its plays have no other place than the kept track.
  void take(const RunRecord& run, bool isFileGone, UndoReport& report);
  /// Gives the kept tracks back what they had, and those that have come back with their files what
  /// was forgotten with them. Without all files nothing is changed.
  void restore(bool areFilesBack, UndoReport& report);
  /// Instead of that, when the library was made what it was to the byte.
  void areBack(UndoReport& report);

  /// For the history: of the undo.
  [[nodiscard]] std::vector<ValueChange>& changes() noexcept { return changes_; }
  [[nodiscard]] const std::vector<ValueChange>& changes() const noexcept { return changes_; }
  /// The changes of the run that are taken back, by number.
  [[nodiscard]] const std::vector<std::int64_t>& undone() const noexcept { return undone_; }

 private:
  void done(std::size_t number, UndoReport& report);
  [[nodiscard]] std::vector<std::optional<TrackValues>> valuesNow(
      const std::vector<ValueChange>& changes);

  MusicApplication& application_;
  std::vector<ValueChange> changes_;
  std::vector<std::int64_t> originals_;  ///< what each of them takes back
  std::vector<std::size_t> outcomes_;    ///< of each, in the report
  std::vector<std::int64_t> undone_;
};

}  // namespace kestrel
