/// The left pane: everything that the user decides about a search and its keepers.
///
/// Shows the settings and writes them. A changed keeper rule or filter runs the keeper pass again
/// at once; changed criteria count from the next search on.
#pragma once

#include <QScrollArea>
#include <vector>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;
class QVBoxLayout;

namespace kestrel {

class AppDelegate;
class Preferences;

class DecisionPane final : public QScrollArea {
  Q_OBJECT

 public:
  explicit DecisionPane(AppDelegate& delegate);
  /// Shows the settings as they are now.
  void load();
  /// The pane is as wide as its longest line, so that nothing has to scroll sideways.
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  /// Something about what matches has changed.
  void criteriaChanged();

 private:
  void addMatch(QVBoxLayout* column);
  void addKeep(QVBoxLayout* column);
  void addNarrowing(QVBoxLayout* column);
  void addTickMeaning(QVBoxLayout* column);
  void addFolderChooser(QVBoxLayout* column);
  void chooseFolder();
  void storeFolder();
  void updateEnabled();

  struct CriterionBox {
    std::string key;
    QCheckBox* box;
  };

  AppDelegate& delegate_;
  Preferences& preferences_;
  bool loading_ = false;
  std::vector<CriterionBox> criteria_;
  QWidget* moreFields_ = nullptr;
  QCheckBox* filename_ = nullptr;
  QCheckBox* time_ = nullptr;
  QSpinBox* tolerance_ = nullptr;
  QCheckBox* caseSensitive_ = nullptr;
  QLabel* matchProblem_ = nullptr;
  QButtonGroup* rules_ = nullptr;
  QWidget* folderRow_ = nullptr;
  QLineEdit* folder_ = nullptr;
  QCheckBox* useFileType_ = nullptr;
  QComboBox* fileType_ = nullptr;
  QCheckBox* useBitRate_ = nullptr;
  QComboBox* bitRate_ = nullptr;
  QCheckBox* undecided_ = nullptr;
  QComboBox* tickMeaning_ = nullptr;
};

}  // namespace kestrel
