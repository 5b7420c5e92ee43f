/// Small parts that the windows over playlists share.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <unordered_set>

#include "changes/plan.h"

class QLabel;
class QPushButton;
class QTreeWidget;
class QWidget;

namespace kestrel {

class ProgressBar;

/// A label for texts that come from outside: no markup, wrapped, to be selected.
QLabel* newPlainLabel(const QString& accessibleName);

/// A byte count as people read it.
QString sizeText(std::uint64_t bytes);

/// Something that moves while `model` is animated.
QWidget* newSpinner(ProgressBar& model);

/// The row at the foot of a window that waits for a decision, from left to right.
struct DecisionRow {
  QPushButton* more = nullptr;  ///< what else the window can do
  ProgressBar* working = nullptr;
  QLabel* status = nullptr;
  QLabel* chosen = nullptr;
  QPushButton* cancel = nullptr;
  QPushButton* ok = nullptr;
};

/// Parts below each other, of which `growing` takes the room that is left, over the row.
QWidget* newDecisionPage(const QList<QWidget*>& parts, const QWidget* growing,
                         const DecisionRow& row);

/// Highlights the first playlist of an outline, and not the folder above it.
void highlightFirstPlaylist(QTreeWidget* outline);

/// What was shown is what is applied: the plan with the confirmed playlists alone.
Plan confirmedPlan(Plan plan, const std::unordered_set<std::uint64_t>& confirmed);

/// A place for notes that grows with them up to a few lines, and is not there without any.
QWidget* newNotesArea(QLabel* notes);
void showNotesIn(QWidget* area, QLabel* notes, const QStringList& texts);

}  // namespace kestrel
