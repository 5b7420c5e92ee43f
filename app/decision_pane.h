/// The left pane: everything that the user decides about a search and its keepers.
///
/// Shows the settings and writes them. A changed keeper rule or filter runs the keeper pass again
/// at once; changed criteria count from the next search on.
#pragma once

#include <QCoreApplication>
#include <QScrollArea>
#include <functional>
#include <string_view>
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
  Q_DECLARE_TR_FUNCTIONS(kestrel::DecisionPane)

 public:
  explicit DecisionPane(AppDelegate& delegate);
  /// Shows the settings as they are now.
  void load();
  /// The pane is as wide as its longest line, so that nothing has to scroll sideways.
  [[nodiscard]] QSize sizeHint() const override;

 private:
  void addMatch(QVBoxLayout* column);
  void addKeep(QVBoxLayout* column);
  void addNarrowing(QVBoxLayout* column);
  void addTickMeaning(QVBoxLayout* column);
  void addFolderChooser(QVBoxLayout* column);
  void chooseFolder();
  void storeFolder();
  /// A box that switches a setting, after which `changed` is called.
  QCheckBox* newBox(const QString& title, std::string_view key, std::function<void()> changed);
  using Items = QList<std::pair<QString, QString>>;  ///< titles, and what settings hold
  /// A choice of what a setting of the rules holds.
  QComboBox* newChoice(const QString& name, std::string_view key, const Items& items);
  void store(std::string_view key, const QComboBox* choice);
  void rulesChanged();
  void updateEnabled();

  AppDelegate& delegate_;
  Preferences& preferences_;
  std::vector<std::function<void()>> loads_;  ///< each shows a setting as it is now
  QCheckBox* time_ = nullptr;
  QSpinBox* tolerance_ = nullptr;
  QLabel* matchProblem_ = nullptr;
  QButtonGroup* rules_ = nullptr;
  QWidget* folderRow_ = nullptr;
  QLineEdit* folder_ = nullptr;
  QCheckBox* useFileType_ = nullptr;
  QComboBox* fileType_ = nullptr;
  QCheckBox* useBitRate_ = nullptr;
  QComboBox* bitRate_ = nullptr;
};

}  // namespace kestrel
