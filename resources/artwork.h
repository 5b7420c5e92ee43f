/// Kestrel's artwork as Qt paints it: sharp at any size, readable on light and dark desktops.
///
/// For the main thread, with a QGuiApplication. A name that there is no drawing of gives a null
/// image and a warning in Qt's log.
#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QString>

namespace kestrel {

/// The drawing resources/icons/`name`.svg in the palette's text colour at the time of painting, so
/// that it follows a change between light and dark; paler while disabled.
QIcon toolbarIcon(const QString& name);

/// The same drawing in one colour, `size` by `size` device-independent pixels.
QPixmap iconPixmap(const QString& name, const QColor& color, int size, qreal devicePixelRatio = 1);

/// The icon of a playlist type, `size` by `size` device-independent pixels. `code` is the name in
/// the playlist's record: "u", "f", "g", "s" or "4". Coloured, the same on light and dark.
QImage playlistIcon(const QString& code, int size, qreal devicePixelRatio = 1);

/// The kestrel; at 24 pixels and less its head alone.
QIcon applicationIcon();

}  // namespace kestrel
