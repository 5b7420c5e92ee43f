/// Asks to which playlist tracks are to be added.
#pragma once

#include <QDialog>
#include <cstdint>
#include <vector>

#include "app/scope.h"

namespace kestrel {

class AppDelegate;
class ScopeBox;

class TargetPlaylistDialog final : public QDialog {
  Q_OBJECT

 public:
  /// Fills the target pop-up.
  TargetPlaylistDialog(QWidget* parent, AppDelegate& delegate, ActionScope scope);
  /// Whose tracks are to be added, by position in the upper table's content.
  [[nodiscard]] std::vector<std::uint32_t> rows() const;

 private:
  ScopeBox* scope_;
};

}  // namespace kestrel
