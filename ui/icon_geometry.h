/// Which part of an icon is drawn on a canvas of another size.
///
/// Playlist menus draw an icon at the right end of a wide canvas, which indents what lies in a
/// folder; the closed pop-up cuts that end off again. All sizes in points. An icon without a size
/// has nothing to draw: its rectangle is all zeros.
#pragma once

#include <string_view>

#include "ui/rect.h"

namespace kestrel {

class Log;

/// Draw the source rectangle of the icon over the whole canvas: copied, not blended, opaque, with
/// smooth scaling. What of the source lies outside the icon is transparent.
struct IconDrawing {
  Rect source;
  Size canvas;
  friend bool operator==(const IconDrawing&, const IconDrawing&) = default;
};

/// For the items of playlist menus. A canvas wider than high takes a source rectangle that begins
/// left of the icon, so that the icon itself is drawn at its right end.
IconDrawing menuIconDrawing(const Size& icon, const Size& canvas) noexcept;

/// The closed pop-up.
struct KSPopupButtonCell {
  /// The icon's rightmost 15 points. Logs the rectangle, and icons that are wider.
  static IconDrawing resizeImage(const Size& icon, const Size& canvas, Log& log);

  /// How to draw the image of the chosen item in the cell's frame, before the title: cut to 15 by
  /// 15. `image` and `representedObject` are names for the log, which gets them and the frame.
  static IconDrawing drawTitle(std::string_view image, const Size& icon,
                               std::string_view representedObject, const Rect& frame, Log& log);
};

}  // namespace kestrel
