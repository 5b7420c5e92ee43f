/// What became of each playlist, track and file of a run, as a list; what was left out comes first,
/// since that is what one has to read.
#pragma once

#include <QWidget>
#include <span>

#include "changes/report.h"

class QLabel;
class QTreeWidget;

namespace kestrel {

class OutcomeList final : public QWidget {
  Q_OBJECT

 public:
  OutcomeList();
  /// `leftOut` took no part in the run, for a reason.
  void load(std::span<const Outcome> outcomes, RunKind kind, std::span<const LeftOut> leftOut = {});

 private:
  QLabel* place_;  ///< the folder that all files share
  QTreeWidget* list_;
};

}  // namespace kestrel
