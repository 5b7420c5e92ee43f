/// Which rows of a table a typed text leaves: those that hold each of its words somewhere.
///
/// Works in slices, so that typing stays smooth over a million rows, and only looks again at what
/// is still left when the text grows. Rows are known by their position in the table's content: the
/// result stays right however the table is sorted. Knows no toolkit.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "library/result_track.h"

namespace kestrel {

class RowFilter {
 public:
  /// Begins to look for `text` in `rows`, which must stay as they are until it is done. Texts
  /// match without regard to letter case.
  void start(std::string_view text, std::span<const ResultTrack> rows);
  /// Looks at the next `most` rows. Returns whether rows remain.
  bool work(std::size_t most);
  /// Looks at everything anew next time: there are other rows.
  void reset();

  /// Whether a text is asked for at all. Without one every row matches.
  [[nodiscard]] bool isActive() const noexcept { return !words_.empty(); }
  [[nodiscard]] bool isDone() const noexcept { return next_ == rows_.size(); }
  /// Whether these are the rows that it was started with.
  [[nodiscard]] bool isOver(std::span<const ResultTrack> rows) const noexcept {
    return rows.data() == rows_.data() && rows.size() == rows_.size();
  }
  [[nodiscard]] bool matches(std::size_t row) const { return words_.empty() || matching_[row]; }

 private:
  struct Word {
    std::string lower;
    bool ascii = false;
  };
  [[nodiscard]] bool rowHolds(const ResultTrack& row, const Word& word);
  [[nodiscard]] bool holds(std::string_view text, const Word& word);

  std::span<const ResultTrack> rows_;
  std::string text_;  ///< lower case
  std::vector<Word> words_;
  std::vector<bool> matching_;
  std::size_t next_ = 0;
  std::string lowered_;  // a buffer
};

}  // namespace kestrel
