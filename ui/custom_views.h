/// What the windows' own views show and do, for the widgets that draw them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

#include "foundation/function_ref.h"
#include "foundation/value.h"
#include "ui/geometry.h"

namespace kestrel {

class Log;
class MusicApplication;
class Preferences;

// The colours of the windows: the platform's own, those that the program's colour assets define by
// name for light and dark, and a few that are the same everywhere.

enum class SystemColor : std::uint8_t {
  label,
  gray,
  blue,
  unemphasizedSelectedTextBackground,
};

/// Defined in the program's colour assets.
struct AssetColor {
  std::string_view name;
  friend bool operator==(const AssetColor&, const AssetColor&) = default;
};

/// Opaque; each part from 0 to 1.
struct FixedColor {
  double red, green, blue;
  friend bool operator==(const FixedColor&, const FixedColor&) = default;
};

using Color = std::variant<SystemColor, AssetColor, FixedColor>;

namespace colors {

inline constexpr AssetColor darkStripe{"mycolor_darkStripe"};
inline constexpr AssetColor lightStripe{"mycolor_lightStripe"};
inline constexpr AssetColor darkblue{"mycolor_darkblue"};
inline constexpr AssetColor darkred{"mycolor_darkred"};
inline constexpr AssetColor darkpurple{"mycolor_darkpurple"};  ///< defined for themes, not applied
inline constexpr AssetColor selectedText{"mycolor_selectedText"};

inline constexpr FixedColor lightBlue{140.0 / 255, 170.0 / 255, 1};
inline constexpr FixedColor lightRed{250.0 / 255, 140.0 / 255, 140.0 / 255};
/// 140/255, 2/3 and 1, in single precision.
inline constexpr FixedColor selectionBorder{0.5490196347236633, 0.6666666865348816, 1};

}  // namespace colors
/// A cell of a table, made from the cell view registered under the column's identifier.
struct CellView {
  std::string_view identifier;
  Color textColor = SystemColor::label;
  std::optional<Color> background{};  ///< of a layer behind the cell; nothing: no layer
  std::optional<Color> borderColor{};
  double borderWidth = 0;

  friend bool operator==(const CellView&, const CellView&) = default;
};

enum class BackgroundStyle : std::uint8_t { normal, emphasized };

/// The text of a cell keeps its colour when its row is selected: the colour says what the row is.
struct KSTableCellView {
  static constexpr BackgroundStyle setBackgroundStyle(BackgroundStyle) noexcept {
    return BackgroundStyle::normal;
  }
};

/// A header whose title stands in the middle of its height; nothing but the title is drawn.
struct KSTableHeaderCell {
  /// `ordinary` is where the title would stand else, `bounds` the header cell.
  static constexpr Rect titleRect(const Rect& ordinary, const Rect& bounds,
                                  double titleHeight) noexcept {
    return {{ordinary.origin.x, bounds.origin.y + (bounds.size.height - titleHeight) / 2},
            ordinary.size};
  }
};

enum class SelectionHighlightStyle : std::uint8_t { none, regular };

/// A rectangle, filled and outlined.
struct SelectionDrawing {
  Rect rect;
  Color fill;
  Color stroke;
  double cornerRadius = 0;
};

/// A row of the results tables.
struct MyNSTableRowView {
  std::optional<Color> backgroundColor;  ///< nothing: the table's own

  /// Nothing to draw for rows that are not selected, and in tables that show no selection.
  [[nodiscard]] static std::optional<SelectionDrawing> drawSelection(bool selected,
                                                                     SelectionHighlightStyle style,
                                                                     const Rect& bounds) {
    if (!selected || style == SelectionHighlightStyle::none) return std::nullopt;
    return SelectionDrawing{bounds, colors::selectedText, colors::selectionBorder};
  }
};

/// The main window.
struct KSWindow {
  /// Key codes are those of the platform that they are named for; bindings translate theirs.
  static constexpr int escapeKeyCode = 53;

  /// Escape asks a running search to stop, and is remembered when none is running. True: the key
  /// is to be interpreted as usual, too, which holds for every key.
  static bool keyDown(int keyCode, Preferences& preferences);
};

/// A window that stays where it was put.
struct ModalInfoWindow {
  /// The origin after one was asked to centre it.
  static constexpr Point center(Point origin) noexcept { return origin; }
};

/// The delegate of the table of the replaylist window that shows each non-keeper next to its
/// keeper, on the main thread. Its log lines are for those who look for faults.
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
