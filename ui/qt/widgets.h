/// Widgets as the windows have them, made and set up in one call.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

class QLabel;
class QPushButton;
class QSplitter;
class QTreeWidget;
class QWidget;

namespace kestrel {

class ProgressBar;

/// Shows a widget's text in bold letters.
void setBold(QWidget* widget);

/// A label for texts that come from outside: no markup, wrapped, to be selected.
QLabel* newPlainLabel(const QString& accessibleName, const QString& text = {});

/// A button that Return presses only when it has the focus: Return in a table is no consent.
QPushButton* newButton(const QString& title, std::function<void()> pressed,
                       const QString& toolTip = {});

/// The button of a dialog that acts, which is yet to say what it does.
QPushButton* newPrimaryButton(std::function<void()> pressed);

/// A flat list with columns, for reading only.
QTreeWidget* newList(const QStringList& headers, const QString& accessibleName);

/// Gives the first and the third of a list's columns all the width that the second leaves.
void widenOuterColumns(QTreeWidget* list);

/// Parts below each other, or beside each other, without a margin around them. A stretch stands
/// where a part is nullptr, and `growing` takes the room that is left.
QWidget* newColumn(const QList<QWidget*>& parts, const QWidget* growing = nullptr);
QWidget* newRow(const QList<QWidget*>& parts, const QWidget* growing = nullptr);

/// Parts beside each other on a ground of their own: something that matters, with what can be done
/// about it. Hidden at first.
QWidget* newBanner(const QList<QWidget*>& parts, const QWidget* growing = nullptr);

/// Parts that the user may make larger and smaller but not fold away.
QSplitter* newSplitter(Qt::Orientation orientation, const QList<QWidget*>& parts);

/// A place for notes, one a line, that grows with them up to a few lines and is not there without
/// any.
QWidget* newNotesArea(const QString& accessibleName);
void showNotesIn(QWidget* area, const QStringList& notes);

/// Something that moves while `model` is animated.
QWidget* newSpinner(ProgressBar& model);

}  // namespace kestrel
