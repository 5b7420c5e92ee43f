#include "ui/qt/text.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>
#include <algorithm>
#include <limits>

#include "foundation/text_helpers.h"

namespace kestrel {
namespace {

constexpr const char* context = "Message";

/// The pattern that fits the count, with the count in it.
QString translated(const Message& message) {
  if (!message.patternForOne()) return QCoreApplication::translate(context, message.pattern());
  // Beyond it only the number would be wrong, and nothing is counted so far.
  const auto count = static_cast<int>(
      std::clamp<std::int64_t>(message.count(), 0, std::numeric_limits<int>::max()));
  const QString found =
      QCoreApplication::translate(context, message.pattern(), message.patternForOne(), count);
  if (count != 1) return found;
  // Without a translation the answer is the pattern for several.
  const auto filled = [](const char* pattern) {
    return QString::fromUtf8(pattern).replace(QLatin1String("%Ln"), QLocale().toString(1));
  };
  return found == filled(message.pattern()) ? filled(message.patternForOne()) : found;
}

QString toQt(const Message::Argument& argument) {
  switch (argument.kind) {
    case Message::Argument::Kind::number:
      return QLocale().toString(qlonglong{argument.number});
    case Message::Argument::Kind::message:
      return kestrel::toQt(argument.message);
    case Message::Argument::Kind::text:
      break;
  }
  return kestrel::toQt(std::string_view(argument.text));
}

}  // namespace

QString toQt(const Message& message) {
  const auto arguments = message.arguments();
  if (!message.pattern()) return arguments.empty() ? QString() : toQt(arguments.front());
  const QString pattern = translated(message);
  QString text;
  for (qsizetype i = 0; i < pattern.size(); ++i) {
    const auto place = pattern[i] == u'%' && i + 1 < pattern.size()
                           ? static_cast<std::size_t>(pattern[i + 1].unicode()) - u'1'
                           : arguments.size();
    if (place < arguments.size()) {
      text += toQt(arguments[place]);
      ++i;
    } else {
      text += pattern[i];
    }
  }
  return text;
}

std::string inUsersWords(const Message& message) { return fromQt(toQt(message)); }

QString translated(std::string_view english) {
  return QCoreApplication::translate(context, std::string(english).c_str());
}

QStringList toQt(std::span<const Message> messages) {
  QStringList texts;
  for (const Message& message : messages) texts << toQt(message);
  return texts;
}

QString numberText(std::size_t number) { return QLocale().toString(qulonglong{number}); }

QString withUsersDates(QString sentence) {
  static const QRegularExpression moment(
      QStringLiteral("\\b\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\b"));
  qsizetype from = 0;
  for (QRegularExpressionMatch match = moment.match(sentence, from); match.hasMatch();
       match = moment.match(sentence, from)) {
    const QDateTime when =
        QDateTime::fromString(match.captured(), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    const QString text =
        when.isValid() ? QLocale().toString(when, QLocale::ShortFormat) : match.captured();
    sentence.replace(match.capturedStart(), match.capturedLength(), text);
    from = match.capturedStart() + text.size();
  }
  return sentence;
}

QString breakable(QString text) {
  return text.replace(QLatin1Char('/'), QStringLiteral("/\u200b"));
}

QString sizeText(std::uint64_t bytes) {
  const auto count = static_cast<std::int64_t>(bytes);
  if (bytes == 0) return toQt(Message::tr("Zero KB"));
  if (bytes < 1000) return toQt(Message::tr("%Ln bytes", "%Ln byte", count));
  return toQt(ByteCountFormatter({}).text(count));
}

}  // namespace kestrel
