#include "app/log_window.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QVBoxLayout>

#include "ui/qt/observe.h"
#include "ui/qt/text.h"
#include "ui/qt/window_log.h"

namespace kestrel {

LogWindow::LogWindow(QWidget* parent, WindowLog& log)
    : QWidget(parent, Qt::Window), log_(log), text_(new QPlainTextEdit) {
  setWindowTitle(tr("Log"));
  resize(720, 420);
  text_->setReadOnly(true);
  text_->setUndoRedoEnabled(false);
  text_->setMaximumBlockCount(static_cast<int>(log.kept()));
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text_->setAccessibleName(tr("Log lines"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(text_);
  observe(this, log_.observers, [this] { appendNew(); });
  appendNew();
}

void LogWindow::appendNew() {
  QScrollBar* bar = text_->verticalScrollBar();
  const bool atEnd = bar->value() == bar->maximum();
  for (const std::string& line : log_.takeNew()) text_->appendPlainText(toQt(line));
  if (atEnd) bar->setValue(bar->maximum());
}

}  // namespace kestrel
