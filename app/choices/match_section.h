/// By which fields songs match, with what each further one would do to the number of groups.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class QCheckBox;
class QLabel;
class QSpinBox;
class QVBoxLayout;

namespace kestrel {

class Preferences;

/// Counts of groups, as far as they are known.
struct FieldPreview {
  std::optional<std::size_t> now;  ///< with what is ticked
  /// Of these, those in the table: some may be left out as no duplicates, or have gone.
  std::optional<std::size_t> shown;
  std::vector<std::optional<std::size_t>> withField;  ///< in the order of `previewFields`
  /// Likewise with a field less; known where what is ticked finds nothing.
  std::vector<std::optional<std::size_t>> withoutField;
  /// Likewise with something more that is passed over, in the order of `loosenings`.
  std::vector<std::optional<std::size_t>> withLoose;
};
/// The key texts that a preview is made of: of the choices, and last of the playing time.
std::vector<std::string> previewFields();

class MatchSection final : public QWidget {
  Q_OBJECT

 public:
  explicit MatchSection(Preferences& preferences);
  /// Shows the settings as they are now.
  void load();
  void showPreview(const FieldPreview& preview);

 Q_SIGNALS:
  /// By the user; the settings are as shown.
  void changed();

 private:
  struct Field {
    std::string key;
    QCheckBox* box;
    QLabel* effect;
  };
  /// A line with its effect at the end.
  Field newField(QVBoxLayout* column, std::string key, QWidget* title, QCheckBox* box);
  void addTime(QVBoxLayout* column);
  void addLooseness(QVBoxLayout* column);
  void tell();

  Preferences& preferences_;
  std::vector<Field> fields_;
  std::vector<Field> looseness_;  ///< in the order of `loosenings`
  std::vector<std::function<void()>> loads_;
  QCheckBox* time_ = nullptr;
  QSpinBox* tolerance_ = nullptr;
  QCheckBox* filename_ = nullptr;
  QLabel* problem_ = nullptr;
};

}  // namespace kestrel
