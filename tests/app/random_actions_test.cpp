// Anything in any order, through all windows and over several sorts of libraries: nothing may break
// off, hang, or leave a window that cannot be closed. KESTREL_RANDOM_ACTIONS sets how many, and
// KESTREL_RANDOM_SEED which.

#include <QAbstractButton>
#include <QCheckBox>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QStandardPaths>
#include <functional>
#include <optional>
#include <random>

#include "app/choices/preset_menu.h"
#include "musicapp/file_url.h"
#include "platform/settings.h"
#include "tests/app/running_program.h"
#include "tests/app/window_tests.h"
#include "tests/musicapp/mpd/mpd_server.h"
#include "tests/musicapp/strawberry/strawberry_world.h"
#include "tools/make_library/audio_files.h"

namespace kestrel::testing {

class RandomActionsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { home_.use(QTest::currentTestFunction()); }

  void throughAllWindowsAndLibraries() {
    const int wanted = qEnvironmentVariableIntValue("KESTREL_RANDOM_ACTIONS");
    const StrawberryWorld strawberry(std::string(smallCollection) +
                                     "UPDATE songs SET artist = 'One', title = 'a';");
    std::optional<MpdTestServer> mpd;
    if (MpdTestServer::isInstalled()) mpd.emplace();
    QStringList libraries{home_.library(), "strawberry:" + QString::fromStdString(strawberry.path),
                          rhythmboxLibrary()};
    if (mpd) libraries << QString::fromStdString(mpd->address());
    kestrel_.emplace();
    kestrel_->open(libraries.front());
    const std::vector<std::function<void()>> actions = {
        [&] { openSomething(); },
        [&] { openSomething(); },
        [&] { below(6) == 0 && kestrel_->delegate().findDuplicates(); },
        [&] {
          if (below(12) == 0) kestrel_->window().openPath(libraries[below(libraries.size())]);
        },
        [&] {
          static constexpr std::array fields = {"tName", "tArtist", "tAlbum"};
          kestrel_->preferences().set(settings::criteria,
                                      std::vector<std::string>{fields[std::size_t(below(3))]});
        },
        [&] {
          kestrel_->preferences().set(settings::filterMatrixButton, std::int64_t{1 + below(24)});
          kestrel_->delegate().rulesChanged();
        },
        [&] { kestrel_->delegate().savePreset("Preset " + std::to_string(below(3))); },
        [&] {
          if (!kestrel_->delegate().presets().empty())
            kestrel_->delegate().usePreset(kestrel_->delegate().presets().front());
        },
        [&] {
          if (const int rows = kestrel_->rows().rowCount()) kestrel_->clickBox(below(rows));
        },
        [&] { kestrel_->table().selectAll(); },
        [&] { trigger(below(3) == 0 ? "Ctrl+Shift+Z" : "Ctrl+Z"); },
        [&] { press(&kestrel_->table()); },
        [&] { press(&kestrel_->table()); },
    };
    for (int step = 0; step < (wanted > 0 ? wanted : 250); ++step) {
      if (QWidget* modal = QApplication::activeModalWidget())
        actIn(modal);
      else
        actions[random_() % actions.size()]();
      if (below(3) == 0) QTest::qWait(1);
      if (below(20) == 0) QVERIFY(kestrel_->becomesIdle());
    }
    // Whatever is open can be closed, and the program searches as ever.
    for (int tries = 0; tries < 200 && QApplication::activeModalWidget(); ++tries) {
      QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
      QTest::qWait(20);
      QVERIFY(kestrel_->becomesIdle());
    }
    QVERIFY2(!QApplication::activeModalWidget(),
             QApplication::activeModalWidget()
                 ? qPrintable(QApplication::activeModalWidget()->windowTitle())
                 : "");
    kestrel_->preferences().set(settings::criteria, std::vector<std::string>{"tName", "tArtist"});
    kestrel_->open(home_.write("Last/Library.xml", original_));
    kestrel_->search();
    QTRY_COMPARE(kestrel_->rows().shownTracks(), kestrel_->delegate().summary().tracks);
    kestrel_.reset();
  }

 private:
  int below(qsizetype limit) { return static_cast<int>(random_() % std::size_t(limit)); }

  /// As the player has it while it does not run.
  [[nodiscard]] QString rhythmboxLibrary() const {
    std::string songs, locations;
    const std::string sound = make_library::makeAudio("mp3", 264, 32, 440).bytes;
    for (const char* name : {"1", "2", "3"}) {
      const QString path = home_.write(std::string("Rhythmbox/Music/") + name + ".mp3", sound);
      const std::string location = "<location>" + fileUrlOfPath(path.toStdString()) + "</location>";
      songs += "<entry type=\"song\"><title>a</title><artist>One</artist>" + location + "</entry>";
      locations += location;
    }
    const QString database =
        home_.write("Rhythmbox/rhythmdb.xml",
                    "<?xml version=\"1.0\"?><rhythmdb version=\"2.0\">" + songs + "</rhythmdb>");
    const QString lists = home_.write(
        "Rhythmbox/playlists.xml",
        "<?xml version=\"1.0\"?><rhythmdb-playlists><playlist name=\"Mix\" type=\"static\">" +
            locations + "</playlist></rhythmdb-playlists>");
    if (database.isEmpty() || lists.isEmpty()) qFatal("There is no library of Rhythmbox");
    return "rhythmbox:" + home_.path("Rhythmbox");
  }

  void press(QWidget* widget) {
    static constexpr std::array keys = {Qt::Key_Down, Qt::Key_Up,   Qt::Key_Space, Qt::Key_K,
                                        Qt::Key_End,  Qt::Key_Left, Qt::Key_Tab,   Qt::Key_Right};
    QTest::keyClick(widget, keys[random_() % keys.size()]);
  }

  void openSomething() {
    static constexpr std::array shortcuts = {"Ctrl+R", "Ctrl+U", "Ctrl+Del",    "Ctrl+Shift+Del",
                                             "Ctrl+E", "Ctrl+H", "Ctrl+Shift+D"};
    if (below(8) == 0) return kestrel_->window().showSettings();
    trigger(shortcuts[random_() % shortcuts.size()]);
  }

  void trigger(const char* shortcut) {
    const QKeySequence key{QString::fromLatin1(shortcut)};
    for (QAction* action : kestrel_->window().findChildren<QAction*>())
      if (action->shortcut() == key && action->isEnabled()) return action->trigger();
  }

  void actIn(QWidget* modal) {
    // What leads out of the program's own windows is not for a test.
    if (qobject_cast<QFileDialog*>(modal) || below(6) == 0) {
      QTest::keyClick(modal, Qt::Key_Escape);
      return;
    }
    if (below(2) == 0) {
      QList<QAbstractButton*> buttons;
      for (auto* button : modal->findChildren<QAbstractButton*>())
        if (button->isVisible() && button->isEnabled() && !button->text().contains("Connect"))
          buttons << button;
      if (!buttons.isEmpty()) buttons[below(buttons.size())]->click();
      return;
    }
    QWidget* focused = modal->focusWidget();
    press(focused ? focused : modal);
  }

  PrivateHome home_;
  const std::string original_ = TemporaryFolder::read(home_.library().toStdString());
  std::mt19937 random_{qEnvironmentVariableIsSet("KESTREL_RANDOM_SEED")
                           ? unsigned(qEnvironmentVariableIntValue("KESTREL_RANDOM_SEED"))
                           : 20U};
  std::optional<Running> kestrel_;
};
const WindowTest<RandomActionsTest> randomActions("random_actions");

}  // namespace kestrel::testing

#include "random_actions_test.moc"
