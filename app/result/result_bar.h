/// The line above the table: what of the result the user has decided, and how its groups stand.
#pragma once

#include <QWidget>

class QComboBox;
class QLabel;
class QToolButton;

namespace kestrel {

class AppDelegate;
class ResultTableModel;

class ResultBar final : public QWidget {
  Q_OBJECT

 public:
  /// Both must outlive it.
  ResultBar(AppDelegate& delegate, ResultTableModel& rows);

  void reload();

 private:
  void order(int choice);
  void reloadDoubtful();
  void showDoubtful(bool alone);

  AppDelegate& delegate_;
  ResultTableModel& rows_;
  QLabel* decided_;
  QToolButton* doubtful_;
  QComboBox* order_;
  QToolButton* fold_;
};

}  // namespace kestrel
