#include "ui/qt/bindings.h"

#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>
#include <vector>

#include "ui/models/alert.h"
#include "ui/models/view_models.h"
#include "ui/qt/observe.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

void show(QProgressBar* bar, const ProgressBar& model) {
  if (model.isIndeterminate()) {
    bar->setRange(0, 0);
  } else {
    // To the toolkit a range of nothing means busy.
    const int minimum = static_cast<int>(model.minimum());
    const int maximum = std::max(static_cast<int>(model.maximum()), minimum + 1);
    bar->setRange(minimum, maximum);
    bar->setValue(std::clamp(static_cast<int>(model.value()), minimum, maximum));
  }
  bar->setVisible(!model.isHidden());
}

}  // namespace

void bind(QProgressBar* bar, ProgressBar& model) {
  observe(bar, model.observers, [bar, &model] { show(bar, model); });
  show(bar, model);
}

void bind(QLabel* label, StatusText& model) {
  observe(label, model.observers, [label, &model] { label->setText(toQt(model.message())); });
  label->setText(toQt(model.message()));
}

void bind(QWidget* window, AlertPanel& panel) {
  observe(window, panel.observers, [window, &panel] {
    if (panel.alert()) showAlert(window, *panel.alert(), [&panel](int) { panel.dismiss(); });
  });
}

void showAlert(QWidget* window, const Alert& alert, std::function<void(int)> pressed) {
  QStringList buttons;
  for (const Message& title : alert.buttons) buttons << toQt(title);
  showAlert(window, toQt(alert.message), toQt(alert.informativeText), buttons, std::move(pressed));
}

void showAlert(QWidget* window, const QString& message, const QString& informativeText,
               const QStringList& titles, std::function<void(int)> pressed) {
  auto* box = new QMessageBox(window);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setIcon(titles.size() > 1 ? QMessageBox::Question : QMessageBox::Warning);
  box->setTextFormat(Qt::PlainText);
  box->setText(message);
  box->setInformativeText(informativeText);
  std::vector<QAbstractButton*> buttons;
  for (const QString& title : titles)
    // The roles make every desktop put the first one where its default button stands.
    buttons.push_back(
        box->addButton(title, buttons.empty() ? QMessageBox::AcceptRole : QMessageBox::RejectRole));
  if (!buttons.empty()) {
    box->setDefaultButton(static_cast<QPushButton*>(buttons.front()));
    box->setEscapeButton(buttons.back());
  }
  QObject::connect(box, &QDialog::finished, box, [box, buttons, pressed = std::move(pressed)] {
    const auto found = std::find(buttons.begin(), buttons.end(), box->clickedButton());
    const auto number = static_cast<int>(found - buttons.begin());
    pressed(std::min(number, static_cast<int>(buttons.size()) - 1));
  });
  box->open();
}

ProgressSheet::ProgressSheet(QWidget* window, Sheet& sheet, ProgressBar& bar, StatusText& status)
    : QDialog(window, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
  setWindowTitle(tr("Reading the library"));
  auto* layout = new QVBoxLayout(this);
  auto* text = new QLabel;
  text->setMinimumWidth(360);
  auto* progress = new QProgressBar;
  progress->setTextVisible(false);
  progress->setAccessibleName(tr("Progress"));
  layout->addWidget(text);
  layout->addWidget(progress);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  bind(text, status);
  bind(progress, bar);

  // Small libraries are read before anybody could read what the sheet says.
  auto* delay = new QTimer(this);
  delay->setSingleShot(true);
  delay->setInterval(150);
  connect(delay, &QTimer::timeout, this, &QDialog::open);
  observe(this, sheet.observers, [this, delay, &sheet] {
    if (sheet.isOpen()) {
      if (!isVisible()) delay->start();
    } else {
      delay->stop();
      hide();
    }
  });
}

}  // namespace kestrel
