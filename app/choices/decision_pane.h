/// The left pane: everything that the user decides about a search and its keepers.
///
/// Shows the settings and writes them. A changed keeper rule or filter runs the keeper pass again
/// at once; changed criteria search again.
#pragma once

#include <QCoreApplication>
#include <QScrollArea>
#include <functional>
#include <string_view>
#include <vector>

class QCheckBox;
class QComboBox;
class QVBoxLayout;

namespace kestrel {

class AppDelegate;
class FieldPreviews;
class KeepSection;
class LiveSearch;
class MatchSection;
class Preferences;

class DecisionPane final : public QScrollArea {
  Q_DECLARE_TR_FUNCTIONS(kestrel::DecisionPane)

 public:
  explicit DecisionPane(AppDelegate& delegate);
  /// Shows the settings as they are now.
  void load();
  /// Something else that is searched has changed: searches again when there has been a search.
  void searchAgain();
  [[nodiscard]] QSize sizeHint() const override;
  /// Opens the sheet that compares the rules.
  std::function<void()> compareRules = [] {};
  [[nodiscard]] FieldPreviews& previews() const { return *previews_; }

 private:
  /// To other rules: what they would do, and those that are saved under names.
  void addRuleLinks(QVBoxLayout* column);
  void addNarrowing(QVBoxLayout* column);
  /// A box that switches a setting of the rules.
  QCheckBox* newBox(const QString& title, std::string_view key);
  using Items = QList<std::pair<QString, QString>>;  ///< titles, and what settings hold
  /// A choice of what a setting of the rules holds.
  QComboBox* newChoice(const QString& name, std::string_view key, const Items& items);
  void store(std::string_view key, const QComboBox* choice);
  void rulesChanged();
  void updateEnabled();

  AppDelegate& delegate_;
  Preferences& preferences_;
  LiveSearch* live_;
  std::vector<std::function<void()>> loads_;  ///< each shows a setting as it is now
  MatchSection* match_ = nullptr;
  FieldPreviews* previews_ = nullptr;
  KeepSection* keep_ = nullptr;
  QWidget* among_ = nullptr;
  QCheckBox* useFileType_ = nullptr;
  QComboBox* fileType_ = nullptr;
  QCheckBox* useBitRate_ = nullptr;
  QComboBox* bitRate_ = nullptr;
};

}  // namespace kestrel
