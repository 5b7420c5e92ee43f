/// A choice of few that are all in sight, side by side in one frame.
#pragma once

#include <QWidget>

class QButtonGroup;
class QHBoxLayout;

namespace kestrel {

/// Arrow keys go from one to the next, as between radio buttons.
class Segments final : public QWidget {
  Q_OBJECT

 public:
  explicit Segments(const QString& accessibleName);

  /// Titles may have mnemonics.
  void add(int id, const QString& title);
  void choose(int id);
  /// -1 while nothing is.
  [[nodiscard]] int chosen() const;

 Q_SIGNALS:
  /// By the user or by `choose`.
  void changed();

 private:
  QButtonGroup* group_;
  QHBoxLayout* line_;
};

}  // namespace kestrel
