/// What an action is about: all groups of the result, those that the filter shows, or those that
/// are selected. A copy that is shown or selected stands for its group.
#pragma once

#include <QWidget>
#include <cstdint>
#include <optional>
#include <vector>

namespace kestrel {

class AppDelegate;
class Segments;

/// The groups by their numbers, each once, ascending.
struct ActionScope {
  std::optional<std::vector<std::int32_t>> shown;  ///< nothing without a filter
  std::vector<std::int32_t> selected;
  bool takeSelected = false;  ///< the command names the selection: it is what is taken at first
};

/// The first line of a dialog that acts: which groups take part, to be seen and to be chosen.
class ScopeBox final : public QWidget {
  Q_OBJECT

 public:
  /// All groups are taken at first, unless the command names the selection: what a filter shows is
  /// a way to look at them. Not to be seen while there is nothing to choose and the whole library
  /// was searched.
  ScopeBox(AppDelegate& delegate, ActionScope scope);

  /// How many groups are chosen.
  [[nodiscard]] std::size_t groups() const;
  /// The rows of the chosen groups, by position in the upper table's content, ascending.
  [[nodiscard]] std::vector<std::uint32_t> rows() const;

 Q_SIGNALS:
  void changed();

 private:
  enum Choice { all, shown, selected };

  AppDelegate& delegate_;
  ActionScope scope_;
  Segments* choices_;
};

}  // namespace kestrel
