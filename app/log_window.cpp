#include "app/log_window.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QVBoxLayout>
#include <iterator>
#include <new>
#include <utility>

#include "platform/queues.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

namespace kestrel {

void WindowLog::line(std::string_view text) noexcept {
  try {
    bool tell = false;
    {
      const std::lock_guard lock(mutex_);
      lines_.emplace_back(text);
      if (lines_.size() > kept) lines_.pop_front();
      tell = !std::exchange(told_, true);
    }
    if (tell) mainQueue_.post([this] { observers.notify(); });
  } catch (const std::bad_alloc&) {  // a line that there is no room for is dropped
  }
}

std::vector<std::string> WindowLog::takeNew() {
  const std::lock_guard lock(mutex_);
  told_ = false;
  std::vector<std::string> lines(std::make_move_iterator(lines_.begin()),
                                 std::make_move_iterator(lines_.end()));
  lines_.clear();
  return lines;
}

LogWindow::LogWindow(QWidget* parent, WindowLog& log)
    : QWidget(parent, Qt::Window), log_(log), text_(new QPlainTextEdit) {
  setWindowTitle(tr("Log"));
  resize(720, 420);
  text_->setReadOnly(true);
  text_->setUndoRedoEnabled(false);
  text_->setMaximumBlockCount(int{WindowLog::kept});
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text_->setAccessibleName(tr("Log lines"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(text_);
  follow(this, log_.observers, [this] { appendNew(); });
}

void LogWindow::appendNew() {
  QScrollBar* bar = text_->verticalScrollBar();
  const bool atEnd = bar->value() == bar->maximum();
  for (const std::string& line : log_.takeNew()) text_->appendPlainText(toQt(line));
  if (atEnd) bar->setValue(bar->maximum());
}

}  // namespace kestrel
