/// The table of the replaylist window that shows each non-keeper next to its keeper.
#pragma once

#include <cstddef>
#include <string_view>

#include "foundation/function_ref.h"
#include "foundation/value.h"
#include "ui/custom_views.h"

namespace kestrel {

class Log;
class MusicApplication;

/// The delegate of the table, on the main thread. Its log lines are for those who look for faults.
struct KSRepTrackTableDel {
  /// Non-keepers stand on a ground of their own.
  static CellView viewForTableColumn(std::string_view column, Log& log);
  static bool shouldSelectRow(Log& log);
};

/// A press of the mouse on the table.
struct TablePress {
  int clickCount = 1;
  double x = 0;             ///< in the table's coordinates
  double tableWidth = 0;    ///< of what these go over, without a border or a scroll bar
  std::ptrdiff_t row = -1;  ///< under the pointer; -1 below the last row

  /// Whether it is on the non-keeper's half; the middle is the keeper's.
  [[nodiscard]] bool onNonkeeper() const noexcept { return x < tableWidth / 2; }
};

/// The table itself.
class KSRepTrackTableView {
 public:
  /// A pair's value by key path: "playlistPID", "nonkeeper.hexpid" or "keeper.hexpid".
  using PairValue = FunctionRef<Value(std::size_t row, std::string_view keyPath)>;

  /// `application` may be nullptr.
  KSRepTrackTableView(MusicApplication* application, Log& log)
      : application_(application), log_(log) {}

  /// Not to be passed on to the table's own handling: a single press does nothing. A double click
  /// has the music application show the non-keeper in its playlist, or, in the table's right half,
  /// the keeper in the library. Waits for the application; failures show in the log only.
  void mouseDown(const TablePress& press, PairValue pair) const;

 private:
  MusicApplication* application_;
  Log& log_;
};

}  // namespace kestrel
