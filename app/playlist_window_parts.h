/// Small parts that the windows over playlists share.
#pragma once

#include <QString>
#include <QStringList>

class QLabel;
class QWidget;

namespace kestrel {

class ProgressBar;

/// A label for texts that come from outside: no markup, wrapped, to be selected.
QLabel* newPlainLabel(const QString& accessibleName);

/// Something that moves while `model` is animated.
QWidget* newSpinner(ProgressBar& model);

/// A place for notes that grows with them up to a few lines, and is not there without any.
QWidget* newNotesArea(QLabel* notes);
void showNotesIn(QWidget* area, QLabel* notes, const QStringList& texts);

}  // namespace kestrel
