/// The named colours of the windows as the toolkit paints them, on light and on dark desktops.
#pragma once

#include <QColor>
#include <QPalette>

#include "ui/custom_views.h"

namespace kestrel {

/// Whether the desktop shows light text on dark.
bool isDark(const QPalette& palette);

QColor toQt(const Color& color, const QPalette& palette);

/// What a text of this colour must stand on to be readable; invalid: whatever its row stands on.
QColor backgroundOf(const Color& text, const QPalette& palette);

/// The palette of a table whose rows use the named colours.
QPalette tablePalette(const QPalette& desktop);

}  // namespace kestrel
