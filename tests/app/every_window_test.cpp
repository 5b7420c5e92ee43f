// Every window that the main window opens: what keys and screen readers need of it, in English and
// in German.

#include <QAbstractButton>
#include <QDialog>
#include <QDialogButtonBox>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QTabBar>

#include "app/choices/preset_menu.h"
#include "app/libraries/connect_dialog.h"
#include "app/parts/order_editor.h"
#include "app/result/compare_rules_sheet.h"
#include "platform/settings.h"
#include "resources/translations/translations.h"
#include "tests/app/running_program.h"
#include "tests/app/window_tests.h"

namespace kestrel::testing {

class EveryWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { home_.use(QTest::currentTestFunction()); }

  void inEnglish() { lookAtAll(); }
  // The last one: what is installed stays.
  void inGerman() {
    installTranslations(QLocale(QLocale::German));
    lookAtAll();
  }

 private:
  static QStringList titlesIn(QWidget* window) {
    QStringList texts;
    for (QWidget* widget : window->findChildren<QWidget*>()) {
      if (!widget->isVisibleTo(window) || widget->window() != window) continue;
      if (const auto* button = qobject_cast<QAbstractButton*>(widget)) texts << button->text();
      if (const auto* label = qobject_cast<QLabel*>(widget); label && label->buddy())
        texts << label->text();
      if (const auto* tabs = qobject_cast<QTabBar*>(widget))
        for (int i = 0; i < tabs->count(); ++i) texts << tabs->tabText(i);
    }
    return texts;
  }

  void lookAtAll() {
    Searched kestrel(library_, true);
    // Both editors of orders show.
    kestrel.preferences().set(settings::filterMatrixButton, std::int64_t{22});
    kestrel.preferences().set(settings::keeperChain, std::vector<std::string>{"23"});
    kestrel.delegate().savePreset("Mine");
    const auto trigger = [&](const char* key) {
      for (QAction* action : kestrel.window().findChildren<QAction*>())
        if (action->shortcut() == QKeySequence(QLatin1String(key))) return action->trigger();
      qFatal("Nothing has the key %s", key);
    };
    const std::pair<const char*, std::function<void()>> windows[] = {
        {"settings", [&] { kestrel.window().showSettings(); }},
        {"connect", [&] { kestrel.window().connectToServer(); }},
        {"compare rules", [&] { trigger("Ctrl+Shift+D"); }},
        {"what to prefer", [&] { editOrders(kestrel.delegate(), &kestrel.window()); }},
        {"save preset",
         [&] {
           auto* menu = kestrel.window().findChild<PresetMenu*>();
           Q_EMIT menu->aboutToShow();
           menu->actions()[2]->trigger();
         }},
        {"repair", [&] { trigger("Ctrl+R"); }},
        {"clean up", [&] { trigger("Ctrl+U"); }},
        {"trash", [&] { trigger("Ctrl+Del"); }},
        {"remove", [&] { trigger("Ctrl+Shift+Del"); }},
        {"export", [&] { trigger("Ctrl+E"); }},
        {"history", [&] { trigger("Ctrl+H"); }},
    };
    for (const auto& [name, open] : windows) {
      open();
      QVERIFY(kestrel.becomesIdle());
      kestrel.worker().waitUntilIdle();
      QTest::qWait(30);
      QVERIFY(kestrel.becomesIdle());
      auto* window = QApplication::activeModalWidget();
      QVERIFY2(window, name);
      const QStringList same = sameMnemonics(titlesIn(window));
      QVERIFY2(same.isEmpty(), qPrintable(QLatin1String(name) + ": " + same.join(", ")));
      const QStringList without = nameless(window);
      QVERIFY2(without.isEmpty(), qPrintable(QLatin1String(name) + ": " + without.join(", ")));
      const QSize screen = window->screen()->availableSize();
      QVERIFY2(window->width() <= screen.width() && window->height() <= screen.height(), name);
      QTest::keyClick(window, Qt::Key_Escape);
      QTRY_VERIFY2(!QApplication::activeModalWidget(), name);
      QVERIFY(kestrel.becomesIdle());
    }
    QCOMPARE(sameMnemonics(titlesIn(&kestrel.window())), QStringList());
    QCOMPARE(sameMnemonicsInMenus(kestrel.window()), QStringList());
  }

  PrivateHome home_;
  const QString library_ = home_.library();
};
const WindowTest<EveryWindowTest> everyWindow("every_window");

}  // namespace kestrel::testing

#include "every_window_test.moc"
