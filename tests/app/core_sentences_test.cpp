// Sentences that the core makes, in windows of another language.

#include <QLocale>
#include <QTest>
#include <QTranslator>

#include "replaylist/undo.h"
#include "replaylist/warnings.h"
#include "ui/qt/text.h"

namespace kestrel {

class CoreSentencesTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void areTranslatedWithAllThatFillsThem() {
    const auto told = [](std::uint64_t count) {
      Warning warning{
          Warning::Kind::groupLeftOut, {}, count, Message::tr("a file of the group is missing")};
      ApplyReport report;
      report.outcomes = {{Outcome::Kind::done, 0, 0, "Größer", count, {}}};
      UndoItem item;
      item.name = "Rock & 100 %1";
      item.difference = Message::tr("it is now called %1").arg(inQuotes("%Ln"));
      const std::vector<Message> messages = {
          sentence(warning), report.messages().front(),
          Message::tr("%1: %2.").arg(inQuotes(item.name)).arg(item.difference)};
      return std::pair(english(messages), toQt(messages));
    };
    const auto qt = [](const std::vector<std::string>& texts) {
      QStringList list;
      for (const std::string& text : texts) list << toQt(text);
      return list;
    };
    const QString named = QStringLiteral("\"Rock & 100 %1\": it is now called \"%Ln\".");
    const QStringList one = {"1 group is left out, because a file of the group is missing.",
                             "Replaced 1 entry in 1 playlist.", named};
    QCOMPARE(told(1).second, one);  // Without a translation.
    QCOMPARE(qt(told(1).first), one);

    QLocale::setDefault(QLocale(QStringLiteral("de_DE")));
    QTranslator german;
    QVERIFY(german.load(QStringLiteral(":/kestrel/translations/kestrel_de.qm")));
    QCoreApplication::installTranslator(&german);
    const QString germanNamed = QStringLiteral("„Rock & 100 %1“: heißt jetzt „%Ln“.");
    QCOMPARE(told(1).second,
             QStringList({"1 Gruppe wird ausgelassen, weil eine Datei der Gruppe fehlt.",
                          "1 Eintrag in 1 Wiedergabeliste ersetzt.", germanNamed}));
    QCOMPARE(told(12345).second,
             QStringList({"12.345 Gruppen werden ausgelassen, weil eine Datei der Gruppe fehlt.",
                          "12.345 Einträge in 1 Wiedergabeliste ersetzt.", germanNamed}));
    QCOMPARE(qt(told(12345).first),
             QStringList({"12345 groups are left out, because a file of the group is missing.",
                          "Replaced 12345 entries in 1 playlist.", named}));
    QCoreApplication::removeTranslator(&german);
    QLocale::setDefault(QLocale::c());
  }
};

}  // namespace kestrel

QTEST_GUILESS_MAIN(kestrel::CoreSentencesTest)

#include "core_sentences_test.moc"
