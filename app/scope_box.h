/// The first line of a dialog that acts: which groups take part, to be seen and to be chosen.
#pragma once

#include <QWidget>
#include <cstdint>
#include <vector>

#include "app/scope.h"

class QButtonGroup;

namespace kestrel {

class AppDelegate;

class ScopeBox final : public QWidget {
  Q_OBJECT

 public:
  /// What the filter shows is taken at first, without a filter all. Not to be seen while there is
  /// nothing to choose and the whole library was searched.
  ScopeBox(AppDelegate& delegate, ActionScope scope);

  /// The rows of the chosen groups, by position in the upper table's content, ascending.
  [[nodiscard]] std::vector<std::uint32_t> rows() const;

 Q_SIGNALS:
  void changed();

 private:
  enum Choice { all, shown, selected };

  AppDelegate& delegate_;
  ActionScope scope_;
  QButtonGroup* choices_;
};

}  // namespace kestrel
