/// Where things stand in the windows, in points: the visible part of a table, icons on a canvas of
/// another size, and the buttons of a panel.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace kestrel {

class Log;

struct Point {
  double x = 0, y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  double width = 0, height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
  Point origin;
  Size size;
  friend bool operator==(const Rect&, const Rect&) = default;
};

/// A table of rows of equal height; y grows downwards from the first row's upper edge.
struct TableGeometry {
  std::size_t rows = 0;
  double rowHeight = 0;
  double width = 0;
  Size visibleSize;  ///< of the scroll area around the table
  Point visibleOrigin;
  std::optional<std::size_t> selectedRow;

  /// All zeros without a selected row.
  [[nodiscard]] Rect selectedRect() const noexcept;
};

/// The visible origin that puts a row in the middle of what is seen, but not above the first row.
/// There is no such limit at the table's end: what is seen may reach beyond the last row.
Point centringOrigin(const Rect& row, const Size& visible) noexcept;

/// The two results tables as they were when an operation last worked on them. They live as long as
/// the process: `process().state<ResultsTableReferences>()`.
struct ResultsTableReferences {
  TableGeometry maxTableView;  ///< the upper one
  TableGeometry minTableView;
};

/// Draw the source rectangle of the icon over the whole canvas: copied, not blended, opaque, with
/// smooth scaling. What of the source lies outside the icon is transparent.
struct IconDrawing {
  Rect source;
  Size canvas;
  friend bool operator==(const IconDrawing&, const IconDrawing&) = default;
};

/// For the items of playlist menus, which draw an icon at the right end of a wide canvas: that
/// indents what lies in a folder. A canvas wider than high takes a source rectangle that begins
/// left of the icon. An icon without a size has nothing to draw: its rectangle is all zeros.
IconDrawing menuIconDrawing(const Size& icon, const Size& canvas) noexcept;

/// The closed pop-up, which cuts the right end of the canvas off again.
struct KSPopupButtonCell {
  /// The icon's rightmost 15 points. Logs the rectangle, and icons that are wider.
  static IconDrawing resizeImage(const Size& icon, const Size& canvas, Log& log);

  /// How to draw the image of the chosen item in the cell's frame, before the title: cut to 15 by
  /// 15. `image` and `representedObject` are names for the log, which gets them and the frame.
  static IconDrawing drawTitle(std::string_view image, const Size& icon,
                               std::string_view representedObject, const Rect& frame, Log& log);
};

/// A button, as far as its place goes; the origin is the panel's lower left.
struct PanelButton {
  Rect frame;
};

}  // namespace kestrel

namespace kestrel::TextSorter {

/// Selects that row alone, in the upper results table or, without `withMain`, in the lower one, and
/// centres it. The other table is left alone, as are both when there is no such row. On the main
/// thread, as are all operations here.
void selectInTable(std::size_t row, bool withMain);

/// Scrolls to the selected row; to the origin without one. Nothing happens without a table.
void scrollToCenter(TableGeometry* table);

/// Where the two buttons of a confirmation panel stand. The panel has two forms, for playlists and
/// for everything; in both the buttons abut and end at the same right edge.
inline void adjustAltButtonForPlaylist(PanelButton& button) {
  button.frame = {{220, 13}, {132, 32}};
}
inline void adjustDefButtonForPlaylist(PanelButton& button) {
  button.frame = {{352, 13}, {132, 32}};
}
inline void adjustAltButtonForAll(PanelButton& button) { button.frame = {{292, 13}, {96, 32}}; }
inline void adjustDefButtonForAll(PanelButton& button) { button.frame = {{388, 13}, {96, 32}}; }

}  // namespace kestrel::TextSorter
