/// The sheet that shows what every rule and preset would do with the result, and lets one be used.
#pragma once

#include <QDialog>
#include <atomic>
#include <memory>

class QLabel;
class QProgressBar;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;

namespace kestrel {

class AppDelegate;
class RuleOutcomeModel;

/// Begins to compare at once, on the worker; closing it stops that. Deletes itself when closed.
class CompareRulesSheet final : public QDialog {
  Q_OBJECT

 public:
  CompareRulesSheet(AppDelegate& delegate, QWidget* parent);
  void reject() override;

 private:
  void makeTable();
  void compare();
  void tell();
  /// The place of the selected rule in the comparison; -1 without one.
  [[nodiscard]] int selected() const;
  void use();

  AppDelegate& delegate_;
  std::shared_ptr<std::atomic<bool>> cancelled_ = std::make_shared<std::atomic<bool>>(false);
  RuleOutcomeModel* outcomes_;
  QSortFilterProxyModel* sorted_;
  QTableView* table_;
  QLabel* text_;
  QProgressBar* progress_;
  QPushButton* use_;
};

}  // namespace kestrel
