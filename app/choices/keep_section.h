/// By which rules one copy of each group is kept: the first decides, the next where it leaves
/// several.
#pragma once

#include <QWidget>
#include <vector>

#include "decisions/decisions.h"

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
  /// Offers these behind the rules.
  void setPresets(const std::vector<Preset>& presets);

 Q_SIGNALS:
  /// By the user; the settings are as shown.
  void changed();
  /// By the user, by its place; the settings are as they were.
  void presetChosen(std::size_t number);

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
  std::vector<Preset> presets_;
  QToolButton* then_;
  QWidget* folderRow_ = nullptr;
  QLineEdit* folder_ = nullptr;
};

}  // namespace kestrel
