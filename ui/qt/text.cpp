#include "ui/qt/text.h"

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>
#include <array>
#include <limits>
#include <mutex>
#include <optional>

#include "foundation/dates.h"
#include "foundation/text_helpers.h"
#include "ui/process.h"

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

struct UsersDates {
  std::mutex mutex;
  std::array<std::optional<ShortDateTimeFormatter>, 3> formatters;  ///< by detail
};

QString toQt(const Message::Argument& argument) {
  switch (argument.kind) {
    case Message::Argument::Kind::number:
      return QLocale().toString(qlonglong{argument.number});
    case Message::Argument::Kind::message:
      return kestrel::toQt(argument.message);
    case Message::Argument::Kind::moment:
      return usersDate(argument.text);
    case Message::Argument::Kind::text:
      break;
  }
  return kestrel::toQt(std::string_view(argument.text));
}

}  // namespace

QString toQt(const Message& message) {
  const auto arguments = message.arguments();
  if (!message.pattern()) return arguments.empty() ? QString() : toQt(arguments.front());
  QString pattern = translated(message);
  // English windows have the quotation marks of print; terminals and logs those of keyboards.
  if (pattern == QLatin1String("\"%1\"")) pattern = QStringLiteral("“%1”");
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

QString usersDate(std::string_view local) {
  static constexpr std::array<std::size_t, 3> lengths{10, 16, 19};  // by detail
  const auto* length = std::find(lengths.begin(), lengths.end(), local.size());
  std::string text(local);
  if (length != lengths.end()) text += std::string_view("0000-00-00 00:00:00").substr(text.size());
  if (text.size() == lengths.back()) text[lengths.front()] = 'T';
  const auto seconds = parseIsoDate(text + 'Z');
  if (length == lengths.end() || !seconds) return toQt(local);
  auto& dates = process().state<UsersDates>();
  const std::lock_guard lock(dates.mutex);
  auto& formatter = dates.formatters[static_cast<std::size_t>(length - lengths.begin())];
  // Local times are written as they stand, also those that a zone's clocks leap over.
  if (!formatter)
    formatter.emplace(std::string(), "UTC", static_cast<DateDetail>(length - lengths.begin()));
  return toQt(formatter->text(*seconds));
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
