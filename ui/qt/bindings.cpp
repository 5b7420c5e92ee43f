#include "ui/qt/bindings.h"

#include <QCoreApplication>
#include <QDialog>
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
#include "ui/models/styled_text.h"
#include "ui/models/view_models.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// A child of the widget, so that it goes when the widget goes.
class Observation final : public QObject {
 public:
  Observation(QObject* owner, Observers& observers, std::function<void()> changed)
      : QObject(owner), subscription_(observers.add(std::move(changed))) {}

 private:
  Observers::Subscription subscription_;
};

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

/// Line breaks are carriage returns in these texts.
QString escaped(const QString& text) {
  QString html = text.toHtmlEscaped();
  html.replace(QLatin1Char('\r'), QStringLiteral("<br>"));
  html.replace(QLatin1Char('\n'), QStringLiteral("<br>"));
  return html;
}

QString styled(const QString& text, const TextStyle& style) {
  QString css;
  if (style.bold) css += QStringLiteral("font-weight:bold;");
  if (style.points > 0) css += QStringLiteral("font-size:%1pt;").arg(style.points);
  if (css.isEmpty()) return escaped(text);
  return QStringLiteral("<span style=\"%1\">%2</span>").arg(css, escaped(text));
}

/// The progress panel of the launch.
class ProgressSheet final : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(kestrel::ProgressSheet)

 public:
  ProgressSheet(QWidget* window, Sheet& sheet, ProgressBar& bar, StatusText& status)
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
  void reject() override {}
};

}  // namespace

void observe(QObject* owner, Observers& observers, std::function<void()> changed) {
  new Observation(owner, observers, std::move(changed));
}

void follow(QObject* owner, Observers& observers, std::function<void()> show) {
  show();
  observe(owner, observers, std::move(show));
}

void bind(QProgressBar* bar, ProgressBar& model) {
  follow(bar, model.observers, [bar, &model] { show(bar, model); });
}

void bind(QLabel* label, StatusText& model) {
  follow(label, model.observers, [label, &model] { label->setText(toQt(model.message())); });
}

QString htmlOf(const StyledText& text) {
  const QString whole = toQt(text.text);
  QString html;
  qsizetype told = 0;
  bool centred = false;
  for (const StyledRun& run : text.runs) {
    const auto start = static_cast<qsizetype>(run.start);
    const auto length = static_cast<qsizetype>(run.length);
    html += escaped(whole.mid(told, start - told)) + styled(whole.mid(start, length), run.style);
    told = start + length;
    centred = centred || run.style.centred;
  }
  html += escaped(whole.mid(told));
  return centred ? QStringLiteral("<div align=\"center\">%1</div>").arg(html) : html;
}

void bind(QLabel* label, StyledLabel& model, std::function<StyledText()> inUsersWords) {
  label->setTextFormat(Qt::RichText);
  follow(label, model.observers, [label, &model, text = std::move(inUsersWords)] {
    label->setText(model.text().text.empty() ? QString() : htmlOf(text()));
  });
}

void bind(QWidget* window, AlertPanel& panel) {
  observe(window, panel.observers, [window, &panel] {
    if (panel.alert()) showAlert(window, *panel.alert(), [&panel](int) { panel.dismiss(); });
  });
}

void showAlert(QWidget* window, const Alert& alert, std::function<void(int)> pressed) {
  showAlert(window, toQt(alert.message), toQt(alert.informativeText), toQt(alert.buttons),
            std::move(pressed));
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

void bindProgressSheet(QWidget* window, Sheet& sheet, ProgressBar& bar, StatusText& status) {
  new ProgressSheet(window, sheet, bar, status);
}

}  // namespace kestrel
