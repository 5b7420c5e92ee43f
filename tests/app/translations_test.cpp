// The languages other than English: nothing is left out, and the windows speak them.

#include "resources/translations/translations.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>
#include <set>

#include "app/controller/app_delegate.h"
#include "app/controller/criteria.h"
#include "app/main_window.h"
#include "app/program.h"
#include "changes/report.h"
#include "changes/undo.h"
#include "dupes/group_filter.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "tests/app/window_tests.h"
#include "ui/process.h"
#include "ui/qt/review_table_view.h"
#include "ui/qt/text.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

struct Translated {
  QString context, source;
  QStringList translations;
  bool finished = true;
};

std::vector<Translated> messagesOf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) qFatal("There is no %s", qPrintable(path));
  std::vector<Translated> messages;
  QString context;
  bool counts = false;
  for (QXmlStreamReader xml(&file); !xml.atEnd(); xml.readNext()) {
    if (!xml.isStartElement()) continue;
    if (xml.name() == QLatin1String("name"))
      context = xml.readElementText();
    else if (xml.name() == QLatin1String("source"))
      messages.push_back({context, xml.readElementText(), {}});
    else if (xml.name() == QLatin1String("message"))
      counts = xml.attributes().hasAttribute("numerus");
    else if (xml.name() == QLatin1String("translation")) {
      messages.back().finished = !xml.attributes().hasAttribute("type");
      if (!counts) messages.back().translations << xml.readElementText();
    } else if (xml.name() == QLatin1String("numerusform"))
      messages.back().translations << xml.readElementText();
  }
  return messages;
}

std::multiset<QString> matches(const QString& text, const char* pattern) {
  std::multiset<QString> found;
  auto each = QRegularExpression(QString::fromLatin1(pattern)).globalMatch(text);
  while (each.hasNext()) found.insert(each.next().captured());
  return found;
}

}  // namespace

class TranslationsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    for (const char* variable :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"})
      qputenv(variable, home_.path().toUtf8());
  }

  void everyTextIsTranslated() {
    const QString copy = home_.filePath("kestrel_de.ts");
    QVERIFY(QFile::copy(german_, copy));
    QProcess lupdate;
    lupdate.setWorkingDirectory(KESTREL_SOURCE_DIR);
    lupdate.start(KESTREL_LUPDATE_PROGRAM, QString(KESTREL_LUPDATE_ARGUMENTS).split(' ')
                                               << "-ts" << copy);
    QVERIFY(lupdate.waitForFinished());
    QCOMPARE(lupdate.exitCode(), 0);
    const std::vector<Translated> messages = messagesOf(copy);
    QVERIFY(messages.size() > 300);
    QStringList open;
    for (const Translated& message : messages)
      if (!message.finished || message.translations.join(QString()).isEmpty())
        open << message.context + ": " + message.source;
    QVERIFY2(open.isEmpty(),
             qPrintable("Build update_translations, then translate\n" + open.join('\n')));
  }

  void translationsKeepWhatTextsAreFilledWith() {
    for (const Translated& message : messagesOf(german_)) {
      for (const char* pattern : {"%\\d", "\n", "&(?=\\S)", "^ | $"})
        for (const QString& translation : message.translations)
          QVERIFY2(matches(message.source, pattern) == matches(translation, pattern),
                   qPrintable(message.source + " is not " + translation));
    }
  }

  void sentencesOfTheCoreAreTranslatedWithAllThatFillsThem() {
    const auto told = [](std::uint64_t count) {
      const Warning warning{
          Warning::Kind::groupLeftOut, {}, count, Message::tr("a file of the group is missing")};
      ApplyReport report;
      report.outcomes = {{Outcome::What::playlist, Outcome::Kind::done, 0, 0, "Größer", count, {}}};
      const Message difference = Message::tr("it is now called %1").arg(inQuotes("%Ln"));
      const std::vector<Message> messages = {
          sentence(warning), report.messages().front(),
          Message::tr("%1: %2.").arg(inQuotes("Rock & 100 %1")).arg(difference)};
      return std::pair(english(messages), toQt(messages));
    };
    const auto qt = [](const std::vector<std::string>& texts) {
      QStringList list;
      for (const std::string& text : texts) list << toQt(text);
      return list;
    };
    const QString named = "\"Rock & 100 %1\": it is now called \"%Ln\".";
    const QStringList one = {"1 group is left out, because a file of the group is missing.",
                             "Replaced 1 entry in 1 playlist.", named};
    QCOMPARE(qt(told(1).first), one);
    // Without a translation, in the quotation marks of print.
    const QString printed = "“Rock & 100 %1”: it is now called “%Ln”.";
    QCOMPARE(told(1).second, (QStringList{one[0], one[1], printed}));

    QLocale::setDefault(QLocale("de_DE"));
    QTranslator german;
    QVERIFY(german.load(compiled_));
    QCoreApplication::installTranslator(&german);
    const QString germanNamed = "„Rock & 100 %1“: heißt jetzt „%Ln“.";
    QCOMPARE(told(1).second,
             QStringList({"1 Gruppe wird ausgelassen, weil eine Datei der Gruppe fehlt.",
                          "1 Eintrag in 1 Wiedergabeliste ersetzt.", germanNamed}));
    QCOMPARE(
        told(12345).second,
        QStringList({"12.345 Gruppen werden ausgelassen, jeweils weil eine Datei der Gruppe fehlt.",
                     "12.345 Einträge in 1 Wiedergabeliste ersetzt.", germanNamed}));
    QCOMPARE(qt(told(12345).first),
             QStringList({"12345 groups are left out, each because a file of the group is missing.",
                          "Replaced 12345 entries in 1 playlist.", named}));
    QCoreApplication::removeTranslator(&german);
    QLocale::setDefault(QLocale::c());
  }

  void whatTablesOfTheCoreNameIsTranslated() {
    QTranslator german;
    QVERIFY(german.load(compiled_));
    const auto verify = [&](std::string_view text) {
      QVERIFY2(!german.translate("Message", std::string(text).c_str()).isEmpty(), text.data());
    };
    for (const TableColumn& column : tableColumns()) verify(column.title);
    for (const KeeperRuleInfo& rule : keeperRules()) {
      verify(rule.name);
      verify(keeperAttribute(rule.rule).name);
    }
    for (const std::string_view type : fileTypeChoices()) verify(type);
    for (const Criterion& criterion : criterionChoices()) {
      verify(criterion.title);
      verify(criterion.name);
    }
  }

  void theFirstLanguageThatThereIsCounts() {
    for (const auto& [languages, text] : {std::pair("de_AT", "Verlauf"),
                                          {"en_GB:de", "History"},
                                          {"eo:de:en", "Verlauf"},
                                          {"eo", "History"}}) {
      // What the system says is asked for only once in a process.
      QProcess kestrel;
      QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
      environment.insert("LANGUAGE", QLatin1String(languages));
      environment.insert("LANG", QString::fromLatin1(languages).section(':', 0, 0) + ".UTF-8");
      for (const char* other : {"LC_ALL", "LC_MESSAGES"}) environment.remove(QLatin1String(other));
      environment.insert("KESTREL_TELL", "1");
      kestrel.setProcessEnvironment(environment);
      kestrel.start(QCoreApplication::applicationFilePath(), {});
      QVERIFY(kestrel.waitForFinished());
      QCOMPARE(QString::fromUtf8(kestrel.readAllStandardOutput()), QLatin1String(text));
    }
  }

  void theMainWindowSpeaksGerman() {
    installTranslations(QLocale("de"));
    Program program;
    MainWindow& window = program.window();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QStringList menus;
    for (const QAction* action : window.menuBar()->actions()) menus << action->text();
    QCOMPARE(menus, QStringList({"&Bibliothek", "&Duplikate", "Bearbe&iten", "&Titel", "&Ansicht",
                                 "&Hilfe"}));
    for (const auto* button : window.findChildren<QRadioButton*>())
      for (const KeeperRuleInfo& rule : keeperRules())
        QVERIFY2(button->text() != toQt(rule.name), rule.name);
    // Choices are shown in German and stored in English.
    for (auto* types : window.findChildren<QComboBox*>())
      if (const int cloud = types->findText("Cloud-Titel"); cloud >= 0)
        types->setCurrentIndex(cloud);
    QCOMPARE(program.preferences().text(settings::thisFileType), std::string("Cloud tracks"));
    StatusText& status = program.delegate().process().textSorter.window.mainProgressStatus;
    status.setText(Message::tr("Looking for dupes..."));
    QStringList labels;
    for (const QLabel* label : window.findChildren<QLabel*>()) labels << label->text();
    QVERIFY(labels.contains("Finden Sie die Duplikate in Ihrer Musik"));
    QVERIFY(labels.contains("Duplikate werden gesucht…"));
    QCOMPARE(std::string(status.text()), std::string("Looking for dupes..."));
    const auto& table = *window.findChild<ReviewTableView*>("upperTable");
    QCOMPARE(table.model()->headerData(1, Qt::Horizontal).toString(), "Gruppe");
    QCOMPARE(MainWindow::tr("Tracks added: %n.", "", 1), "1 Titel hinzugefügt.");

    QCOMPARE(testing::sameMnemonicsInMenus(window), QStringList());
  }

 private:
  QTemporaryDir home_;
  const QString compiled_ = ":/kestrel/translations/kestrel_de.qm";
  QString german_ = QStringLiteral(KESTREL_SOURCE_DIR "/resources/translations/kestrel_de.ts");
};

}  // namespace kestrel

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsSet("KESTREL_TELL")) {
    const QCoreApplication application(argc, argv);
    kestrel::installTranslations(QLocale::system());
    std::fputs(qPrintable(kestrel::MainWindow::tr("&History…").remove('&').remove(u'…')), stdout);
    return 0;
  }
  const QApplication application(argc, argv);
  kestrel::TranslationsTest test;
  return QTest::qExec(&test, argc, argv);
}

#include "translations_test.moc"
