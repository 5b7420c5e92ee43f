// Opening libraries and telling of them: the welcome page, the notices, the playlists' tab, the
// settings, and how the window uses its room.

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTreeView>
#include <QTreeWidget>

#include "app/changes/finish_bar.h"
#include "app/libraries/change_notice.h"
#include "app/libraries/connect_dialog.h"
#include "app/libraries/library_button.h"
#include "app/parts/library_title.h"
#include "app/result/result_area.h"
#include "app/result/scope_notice.h"
#include "app/settings_window.h"
#include "platform/files.h"
#include "platform/settings.h"
#include "tests/app/running_program.h"
#include "tests/app/window_tests.h"
#include "ui/qt/playlist_widgets.h"

namespace kestrel::testing {

class LibraryWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { home_.use(QTest::currentTestFunction()); }

  void aFoundLibraryOpensFromTheWelcomePage() {
    const QString name = QTest::currentTestFunction();
    const QString found = home_.write((name + "/home/Music/Exported.xml").toStdString(),
                                      TemporaryFolder::read(library_.toStdString()));
    Running kestrel;
    const auto says = [&](const QString& text) {
      for (QLabel* label : kestrel.window().findChildren<QLabel*>())
        if (label->isVisibleTo(&kestrel.window()) && label->text().contains(text)) return true;
      return false;
    };
    QTRY_VERIFY(says("~/Music · ") && says(" songs · "));
    QVERIFY(!kestrel.window().findChild<FinishBar*>()->isVisible());
    QTest::mouseClick(kestrel.find<QPushButton>("Open Exported.xml"), Qt::LeftButton);
    QTRY_COMPARE(kestrel.delegate().situation(), Situation::notSearched);
    QVERIFY(kestrel.becomesIdle());
    auto* button = kestrel.window().findChild<LibraryButton*>();
    QCOMPARE(button->accessibleName(), "Exported.xml");
    QCOMPARE(button->accessibleDescription(),
             QString("%1 songs · Document").arg(kestrel.delegate().trackCount().value()));
    QVERIFY(kestrel.window().findChild<FinishBar*>()->isVisible());
    // The menu lists it once, though it was found and opened, without a key of its own.
    auto* menu = kestrel.window().findChild<QMenu*>();
    Q_EMIT menu->aboutToShow();
    int listed = 0;
    for (const QAction* action : menu->actions())
      listed += action->text().startsWith("Exported.xml");
    QCOMPARE(listed, 1);
    QVERIFY(!found.isEmpty());
  }

  void librariesAreCalledByWhatTheyAre() {
    SystemFiles files;
    const QString folder = QFileInfo(library_).path();
    const struct {
      std::string address;
      const char *name, *place, *kind;
    } cases[] = {
        {library_.toStdString(), "Library.xml", "", "Document"},
        {folder.toStdString(), "Music", "", "Folder"},
        {"folder://" + folder.toStdString() + "?playlists=/lists", "Music", "", "Folder"},
        {"mpd:", "MPD", "", "MPD"},
        {"mpd://host:6600?music=/m", "MPD", "host:6600", "MPD"},
        {"mpd:/run/mpd/socket", "MPD", "/run/mpd/socket", "MPD"},
        {"rhythmbox:", "Rhythmbox", "", "Rhythmbox"},
        {"strawberry:/a%20b.db", "Strawberry", "/a b.db", "Strawberry"},
    };
    for (const auto& [address, name, place, kind] : cases) {
      const LibraryTitle title = libraryTitle(address, files);
      QCOMPARE(title.name, name);
      QCOMPARE(title.kind, kind);
      QVERIFY(title.icon.startsWith("library-"));
      if (*place) QCOMPARE(title.place, place);
    }
  }

  void whatAnotherProgramChangesIsOfferedToBeReadAgain() {
    const std::string text = TemporaryFolder::read(library_.toStdString());
    const QString path = home_.write("Changing/Library.xml", text);
    Searched kestrel(path);
    auto* notice = kestrel.window().findChild<ChangeNotice*>();
    const auto comesBack = [&] {
      QEvent event(QEvent::WindowActivate);
      QApplication::sendEvent(&kestrel.window(), &event);
    };
    comesBack();
    QTest::qWait(100);
    QVERIFY(!notice->isVisible());
    const std::size_t groups = kestrel.delegate().summary().groups;
    // A copy of the only other one gets another name.
    std::string name;
    const auto& found = kestrel.delegate().groups();
    for (std::uint32_t row = 0; row < kestrel.delegate().content().size() && name.empty(); ++row) {
      const ResultTrack& track = kestrel.delegate().content()[row];
      if (found.members(track.tGroupID).size() == 2)
        name = std::string(track.record->value(TrackKey::tName).text());
      // Some are written with entities.
      if (text.find("<key>Name</key><string>" + name + "</string>") == std::string::npos)
        name.clear();
    }
    QVERIFY(!name.empty());
    std::string changed = text;
    changed.replace(changed.find("<key>Name</key><string>" + name + "</string>"), 23,
                    "<key>Name</key><string>Other ");
    QCOMPARE(home_.write("Changing/Library.xml", changed), path);
    comesBack();
    QTRY_VERIFY(notice->isVisible());
    QTest::mouseClick(kestrel.find<QPushButton>("Reload"), Qt::LeftButton);
    QTRY_VERIFY(!notice->isVisible());
    QVERIFY(kestrel.becomesIdle());
    QTRY_COMPARE(kestrel.delegate().situation(), Situation::result);
    QVERIFY(kestrel.becomesIdle());
    // The table shows what is in the library now.
    QCOMPARE(kestrel.delegate().summary().groups, groups - 1);
  }

  void theLastLibraryOpensAtTheStart() {
    const struct {
      bool wanted, searched, told;
      Situation situation;
    } cases[] = {{true, false, true, Situation::notSearched},
                 {true, true, true, Situation::result},
                 {false, true, true, Situation::noLibrary},
                 {true, true, false, Situation::noLibrary}};
    {
      Running before(library_);
      QVERIFY(before.becomesIdle());
    }
    for (const auto& [wanted, searched, told, situation] : cases) {
      {
        Running settings("", false);
        settings.preferences().set(settings::openLastLibrary, wanted);
        settings.preferences().set(settings::getDupesAtStartup, searched);
      }
      Running kestrel("", told);
      QVERIFY(kestrel.becomesIdle());
      QCOMPARE(kestrel.delegate().situation(), situation);
    }
  }

  void aFilterThatHidesEverythingSaysSo() {
    Searched kestrel(library_);
    auto* words = kestrel.find<QLineEdit>("Filter the table by words");
    words->setFocus();
    words->setText("no song is called this");
    kestrel.find<QPushButton>("Clear Filter");
    QVERIFY(words->hasFocus());
    QVERIFY(words->accessibleDescription().startsWith("0 of "));
    QTest::mouseClick(kestrel.find<QPushButton>("Clear Filter"), Qt::LeftButton);
    QTRY_VERIFY(kestrel.table().isVisible());
    QVERIFY(words->text().isEmpty());
  }

  void aPlaylistShowsItsEntriesAndLimitsTheSearch() {
    Running kestrel;
    kestrel.open(library_);
    kestrel.window().findChild<QTabWidget*>()->setCurrentIndex(1);
    auto* notice = kestrel.window().findChild<ScopeNotice*>();
    QVERIFY(!notice->isVisible());
    auto* outline = kestrel.window().findChild<PlaylistOutlineView*>();
    QTreeView* entries = nullptr;
    for (auto* view : kestrel.window().findChildren<QTreeView*>())
      if (view->accessibleName() == "Entries of the playlist") entries = view;
    QVERIFY(entries);
    QTreeWidgetItem* playlist = nullptr;
    for (QTreeWidgetItemIterator item(outline); *item; ++item)
      if ((*item)->childCount() == 0 && (*item)->text(1).toInt() > 2) playlist = *item;
    QVERIFY(playlist);
    outline->scrollToItem(playlist);
    QTest::mouseClick(outline->viewport(), Qt::LeftButton, {},
                      outline->visualItemRect(playlist).center());
    QTRY_COMPARE(entries->model()->rowCount(), playlist->text(1).toInt());
    QVERIFY(!entries->model()->index(0, 1).data().toString().isEmpty());
    QTRY_VERIFY(notice->isVisible());
    QTest::mouseClick(kestrel.find<QPushButton>("Whole Library"), Qt::LeftButton);
    QTRY_VERIFY(!notice->isVisible());
    QCOMPARE(toQt(kestrel.delegate().chosenPlaylistName()), "Whole library");
  }

  void settingsCountAtOnce() {
    Searched kestrel(library_);
    kestrel.window().showSettings();
    auto* page = kestrel.window().findChild<SettingsWindow*>();
    QVERIFY(page && page->isVisible());
    QCOMPARE(nameless(page), QStringList());
    const auto before = kestrel.ticks();
    const auto choices = page->findChildren<QComboBox*>();
    QCOMPARE(choices.size(), 3);
    choices[0]->setCurrentIndex(1);
    auto inverted = before;
    inverted.flip();
    QTRY_COMPARE(kestrel.ticks(), inverted);
    choices[1]->setCurrentIndex(0);
    QVERIFY(!kestrel.preferences().boolean(settings::openLastLibrary));
    page->findChild<QCheckBox*>()->click();
    QVERIFY(!kestrel.preferences().boolean(settings::colorsByState));
    QTest::keyClick(page, Qt::Key_Escape);
  }

  void theServersAddressHoldsNoPassword() {
    Running kestrel;
    ConnectDialog dialog(
        kestrel.preferences(), [](const QString&, const QString&) {}, nullptr);
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    const auto fields = dialog.findChildren<QLineEdit*>();
    const auto host = fields[0];
    QCOMPARE(dialog.address(), "mpd://localhost:6600");
    host->setText("music.lan");
    dialog.findChild<QSpinBox*>()->setValue(6601);
    for (QLineEdit* field : fields)
      if (field->echoMode() == QLineEdit::Password) field->setText("secret");
    QCOMPARE(dialog.address(), "mpd://music.lan:6601");
    host->setText("/run/mpd/socket");
    QCOMPARE(dialog.address(), "mpd:/run/mpd/socket");
    host->setText("::1");
    QCOMPARE(dialog.address(), "mpd://[::1]:6601");
  }

  void aServerThatAsksForAPasswordIsConnectedToOnceMore() {
    Running kestrel;
    kestrel.delegate().passwordWanted("mpd://[::1]:6601?music=/m%20x",
                                      Message::tr("asks for a password"));
    auto* dialog = kestrel.window().findChild<ConnectDialog*>();
    QVERIFY(dialog && dialog->isVisible());
    QCOMPARE(dialog->address(), "mpd://[::1]:6601?music=/m%20x");
    QStringList shown;
    for (const QLabel* label : dialog->findChildren<QLabel*>())
      if (label->isVisible()) shown << label->text();
    QVERIFY2(shown.join('|').contains("asks for a password."), qPrintable(shown.join('|')));
    QVERIFY(qobject_cast<QLineEdit*>(dialog->focusWidget())->echoMode() == QLineEdit::Password);
    dialog->askAgain("mpd:/run/mpd/socket", "x");
    QCOMPARE(dialog->address(), "mpd:/run/mpd/socket");
    dialog->reject();
  }

  void theWindowUsesItsRoom() {
    Searched kestrel(library_);
    MainWindow& window = kestrel.window();
    auto* result = window.findChild<ResultArea*>();
    QVERIFY2(window.minimumSizeHint().width() <= 1024 && window.minimumSizeHint().height() <= 660,
             qPrintable(QString::number(window.minimumSizeHint().width()) + 'x' +
                        QString::number(window.minimumSizeHint().height())));
    for (const int width : {1024, 2560, 1280, 1500}) {
      window.resize(width, 900);
      QTRY_COMPARE(result->orientation(),
                   width >= ResultArea::wide ? Qt::Horizontal : Qt::Vertical);
      QVERIFY(result->sizes().front() > result->sizes().back());
    }
  }

 private:
  PrivateHome home_;
  const QString library_ = home_.library();
};
const WindowTest<LibraryWindowsTest> libraryWindowsTest("library_windows");

}  // namespace kestrel::testing

#include "library_windows_test.moc"
