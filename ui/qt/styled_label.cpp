#include "ui/qt/styled_label.h"

#include <QLabel>

#include "ui/models/styled_text.h"
#include "ui/qt/observe.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

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

}  // namespace

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
  const auto show = [label, &model, text = std::move(inUsersWords)] {
    label->setText(model.text().text.empty() ? QString() : htmlOf(text()));
  };
  observe(label, model.observers, show);
  show();
}

}  // namespace kestrel
