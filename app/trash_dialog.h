/// Moving the files of tracks that are not kept to the trash: says first which, how much, and what
/// is held back and why.
#pragma once

#include <QDialog>

#include "app/scope.h"
#include "changes/plan.h"

class QLabel;
class QPushButton;
class QStackedWidget;
class QTreeWidget;

namespace kestrel {

class AppDelegate;
class RunPage;
class ScopeBox;

class TrashDialog final : public QDialog {
  Q_OBJECT

 public:
  /// Looks at the files at once.
  TrashDialog(AppDelegate& delegate, ActionScope scope, QWidget* parent);

  /// While files are moved, asks that to stop in place of closing.
  void reject() override;

 private:
  QWidget* makeQuestionPage();
  void look();
  void showPlan(Plan plan);
  void addFiles(const Plan& plan);
  void confirm();

  AppDelegate& delegate_;
  ScopeBox* scope_;
  Plan plan_;
  QString folder_;  ///< that all the files are in
  QStackedWidget* pages_ = nullptr;
  RunPage* runPage_ = nullptr;
  QLabel* question_ = nullptr;
  QLabel* explanation_ = nullptr;
  QTreeWidget* files_ = nullptr;
  QPushButton* move_ = nullptr;
};

}  // namespace kestrel
