#include "app/selection_window.h"

#include <QVBoxLayout>

#include "app/app_delegate.h"
#include "ui/process.h"

namespace kestrel {

SelectionWindow::SelectionWindow(QWidget* parent, AppDelegate& delegate)
    : QWidget(parent, Qt::Window),
      delegate_(delegate.process().with.preferences),
      rows_(delegate.process().textSorter.window.lilArrayController, delegate_, ReviewTable::lower,
            delegate.process().with.preferences,
            [this, &delegate](std::span<const std::uint32_t> rows, bool ticked) {
              const bool done = delegate.setTicksInSelection(rows, ticked);
              emit this->ticked(done);
              return done;
            }),
      table_(new ReviewTableView(rows_, delegate_, ReviewTable::lower,
                                 [&delegate](auto action) { delegate.whenIdle(action); })) {
  setWindowTitle(tr("Selection"));
  resize(860, 320);
  table_->setObjectName(QStringLiteral("lowerTable"));
  table_->setAccessibleName(tr("Selected tracks"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(table_);
}

}  // namespace kestrel
