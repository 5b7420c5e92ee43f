/// What the sections of the left pane are made of.
#pragma once

#include <QString>

class QToolButton;
class QVBoxLayout;
class QWidget;

namespace kestrel {

/// The column of a section under its title.
QVBoxLayout* newSection(QWidget* section, const QString& title);
/// A line that shows and hides `content`, which is hidden at first.
QToolButton* newFold(const QString& title, QWidget* content);
/// A button that reads like a link.
QToolButton* newLink(const QString& title);

}  // namespace kestrel
