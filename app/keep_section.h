/// By which rules one copy of each group is kept: the first decides, the next where it leaves
/// several.
#pragma once

#include <QWidget>
#include <vector>

class QComboBox;
class QLineEdit;
class QToolButton;
class QVBoxLayout;

namespace kestrel {

class Preferences;

class KeepSection final : public QWidget {
  Q_OBJECT

 public:
  explicit KeepSection(Preferences& preferences);
  /// Shows the settings as they are now.
  void load();

 Q_SIGNALS:
  /// By the user; the settings are as shown.
  void changed();

 private:
  [[nodiscard]] std::vector<int> rules() const;
  void setRules(const std::vector<int>& rules);
  void makeRow(std::size_t place, int rule);
  void addFolderChooser(QVBoxLayout* column);
  void storeFolder();
  void chooseFolder();

  Preferences& preferences_;
  QVBoxLayout* rows_;
  std::vector<QWidget*> lines_;
  QToolButton* then_;
  QWidget* folderRow_ = nullptr;
  QLineEdit* folder_ = nullptr;
};

}  // namespace kestrel
