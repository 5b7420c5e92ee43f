/// What the windows' own views show and do, for the widgets that draw them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "ui/named_colors.h"
#include "ui/rect.h"

namespace kestrel {

class Preferences;

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
  /// The origin after somebody has asked to centre it.
  static constexpr Point center(Point origin) noexcept { return origin; }
};

}  // namespace kestrel
