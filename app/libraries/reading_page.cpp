#include "app/libraries/reading_page.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/controller/app_delegate.h"
#include "app/parts/library_title.h"
#include "resources/artwork.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {

ReadingPage::ReadingPage(AppDelegate& delegate)
    : delegate_(delegate), title_(new QLabel), cancel_(newButton(tr("Cancel"), [this] {
        delegate_.cancel();
        cancel_->setEnabled(false);
      })) {
  setGround(this, "paneGround");
  MainWindowReferences& window = delegate_.process().textSorter.window;
  title_->setFont(titleFont(font(), 1.3));
  title_->setAccessibleName(tr("What is going on"));
  auto* status = new QLabel;
  status->setAccessibleName(tr("How far it is"));
  status->setAlignment(Qt::AlignCenter);
  setTextColor(status, "grayText");
  auto* bar = new QProgressBar;
  bar->setTextVisible(false);
  bar->setFixedSize(40 * gridStep, gridStep);
  bar->setAccessibleName(tr("Progress of reading the library"));
  bind(bar, window.mainLaunchProgressBar);
  bind(status, window.mainLaunchProgressStatus);
  cancel_->setMinimumHeight(4 * gridStep);
  auto* column = new QVBoxLayout(this);
  column->setSpacing(2 * gridStep);
  column->addStretch(2);
  for (QWidget* part : QList<QWidget*>{title_, bar, status, cancel_})
    column->addWidget(part, 0, Qt::AlignHCenter);
  column->addStretch(3);
}

void ReadingPage::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  const std::string& address = delegate_.openingPath();
  const QString name = libraryTitle(address, delegate_.process().with.files).name;
  title_->setText(delegate_.activity() == Activity::opening || !delegate_.trackCount()
                      ? tr("Reading %1").arg(name)
                      : tr("Reading %1 again").arg(name));
  cancel_->setEnabled(true);
}

}  // namespace kestrel
