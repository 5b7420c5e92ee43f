// The windows that change a library, as their users have them: real widgets over a real document in
// a folder of the test's own, no screen.

#include "app/playlist_windows.h"

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSet>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>
#include <filesystem>
#include <latch>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

#include "app/app_delegate.h"
#include "app/history_changes.h"
#include "app/history_entries.h"
#include "app/settings.h"
#include "foundation/identifiers.h"
#include "foundation/property_list.h"
#include "library/process.h"
#include "models/styled_text.h"
#include "musicapp/document_music_application.h"
#include "musicapp/revealer.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/random.h"
#include "platform/settings.h"
#include "tests/platform/temporary_folder.h"
#include "ui/qt/event_loop_queue.h"
#include "ui/qt/styled_label.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

using Ids = std::vector<std::uint64_t>;

struct ListedOnDisk {
  std::string name;
  std::uint64_t id = 0;
  Ids items;
  std::uint64_t folder = 0;
  bool isFolder = false;
};

/// Notes what it is asked to show.
struct RecordingRevealer final : Revealer {
  void revealFile(const std::string& path) override {
    shown << toQt(std::filesystem::path(path).filename().string());
  }
  void revealPlaylist(std::uint64_t playlist) override {
    shown << toQt(TextSorter::decToHex(playlist));
  }
  QStringList shown;
};

/// Tracks 1 to 6 are three pairs of duplicates, "One" twice, "Two" twice, "Three" twice, of which
/// the even ones are played more and so are kept; track 7 has none, and the file of 5 is missing.
class World {
 public:
  explicit World(std::vector<ListedOnDisk> lists = usual()) : lists_(std::move(lists)) {
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString(disk / "data"));
    for (int i = 1; i <= 7; ++i)
      if (i != 5) disk.write(fileName(i), std::string(1000, 'x'));
    writeDocument();
    settings::registerFirstValues(preferences);
    settings::registerAppValues(preferences);
    preferences.set(settings::filterMatrixButton, std::int64_t{2});
    window.show();
  }
  ~World() { worker.waitUntilIdle(); }

  static std::vector<ListedOnDisk> usual() {
    return {{"Mix", 0xA1, {1, 7, 3, 1}, 0, false}, {"Folder", 0xF0, {}, 0, true},
            {"Inner", 0xA2, {3, 4}, 0xF0, false},  {"Twin", 0xA3, {1}, 0, false},
            {"Twin", 0xA4, {3, 7}, 0xF0, false},   {"Missing", 0xA5, {5}, 0, false}};
  }
  static std::string fileName(int track) { return "Media/" + std::to_string(track) + ".mp3"; }

  void writeDocument() {
    static constexpr std::array names = {"One", "One", "Two", "Two", "Three", "Three", "Alone"};
    PropertyList::Dictionary tracks;
    for (int i = 1; i <= 7; ++i)
      tracks.push_back({std::to_string(100 + i),
                        PropertyList::Dictionary{
                            {"Track ID", static_cast<std::int64_t>(100 + i)},
                            {"Name", names[static_cast<std::size_t>(i - 1)]},
                            {"Artist", "Band"},
                            {"Kind", "MPEG audio file"},
                            {"Size", static_cast<std::int64_t>(1000)},
                            {"Play Count", static_cast<std::int64_t>(i % 2 == 0 ? 9 : 1)},
                            {"Persistent ID", TextSorter::decToHex(static_cast<std::uint64_t>(i))},
                            {"Track Type", "File"},
                            {"Location", "file://" + (disk / fileName(i))}}});
    PropertyList::Array lists;
    lists.push_back(entry({"Library", 0xF, {1, 2, 3, 4, 5, 6, 7}, 0, false}));
    lists.back().set("Master", true);
    for (const ListedOnDisk& listed : lists_) lists.push_back(entry(listed));
    path = disk.write("Library.xml", writePropertyList(PropertyList::Dictionary{
                                         {"Major Version", 1},
                                         {"Minor Version", 1},
                                         {"Application Version", "1"},
                                         {"Date", Date{0}},
                                         {"Features", 5},
                                         {"Music Folder", "file://" + (disk / "Media/")},
                                         {"Library Persistent ID", "ABCD"},
                                         {"Tracks", std::move(tracks)},
                                         {"Playlists", std::move(lists)}}));
  }

  bool becomesIdle() {
    const auto isIdle = [this] { return !delegate.isBusy(); };
    for (int round = 0; round < 3; ++round) {
      QTest::qWait(20);  // for what is started by what has ended
      if (!QTest::qWaitFor(isIdle, 20000)) return false;
    }
    return true;
  }
  bool search() {
    return delegate.openLibrary(path) && becomesIdle() && delegate.findDuplicates() &&
           becomesIdle() && delegate.situation() == Situation::result;
  }
  /// The window that a command opens, when it has filled.
  template <typename... Arguments>
  QDialog* open(const std::function<void(Arguments...)>& command,
                std::type_identity_t<Arguments>... arguments) {
    command(std::move(arguments)...);
    return becomesIdle() ? dialog() : nullptr;
  }
  static QDialog* dialog() { return qobject_cast<QDialog*>(QApplication::activeModalWidget()); }

  /// "NAME: 1 2 3" for each playlist of the document but the master, in its folder's place.
  [[nodiscard]] QStringList onDisk() const {
    const PropertyList root = parsePropertyList(TemporaryFolder::read(path), path);
    QStringList texts;
    for (const PropertyList& list : root.find("Playlists")->values()) {
      if (list.find("Master")) continue;
      QString text = toQt(list.textAt("Name"));
      if (list.find("Parent Persistent ID")) text.prepend(QStringLiteral("Folder/"));
      if (const PropertyList* items = list.find("Playlist Items"); items && !list.find("Folder"))
        for (const PropertyList& item : items->values())
          text += QStringLiteral(" %1").arg(item.find("Track ID")->integer() - 100);
      texts << text;
    }
    texts.sort();
    return texts;
  }

  TemporaryFolder disk;
  std::string path;

 private:
  static PropertyList entry(const ListedOnDisk& listed) {
    PropertyList list = PropertyList::Dictionary{{"Name", listed.name}};
    list.set("Playlist Persistent ID", TextSorter::decToHex(listed.id));
    if (listed.folder) list.set("Parent Persistent ID", TextSorter::decToHex(listed.folder));
    if (listed.isFolder) list.set("Folder", true);
    PropertyList::Array items;
    for (const std::uint64_t track : listed.items)
      items.push_back(
          PropertyList::Dictionary{{"Track ID", static_cast<std::int64_t>(100 + track)}});
    list.set("Playlist Items", std::move(items));
    return list;
  }

  std::vector<ListedOnDisk> lists_;

 public:
  SystemFiles files;
  MemoryLog log;
  SystemClock clock;
  SeededRandom random{1};
  InMemoryPreferences preferences;
  RecordingRevealer revealer;
  EventLoopQueue mainQueue;
  WorkerQueue worker;
  Process process{{.openLibrary = nullptr,
                   .preferences = preferences,
                   .mainQueue = mainQueue,
                   .log = log,
                   .clock = clock,
                   .random = random,
                   .files = files,
                   .backgroundQueue = &worker}};
  AppDelegate delegate{process, worker, [this](const std::string& document) {
                         const DocumentServices services{files, log, random, clock, &revealer};
                         return std::make_shared<DocumentMusicApplication>(document, services);
                       }};
  QWidget window;
  PlaylistCommands commands = playlistCommands(delegate, &window);
};

QPushButton* button(QWidget* in, const char* title) {
  for (auto* found : in->findChildren<QPushButton*>())
    if (found->isVisible() && found->text().remove(QLatin1Char('&')) == QLatin1String(title))
      return found;
  return nullptr;
}

void press(QWidget* in, const char* title) {
  QPushButton* found = button(in, title);
  QVERIFY2(found && found->isEnabled(), title);
  QTest::mouseClick(found, Qt::LeftButton);
}

/// By accessible name: what a screen reader says must lead to the same place.
template <typename Widget>
Widget* named(QWidget* in, const char* name) {
  for (auto* found : in->findChildren<Widget*>())
    if (found->accessibleName() == QLatin1String(name)) return found;
  return nullptr;
}

/// "NAME|CELL|CELL" for each row, with "+" or "-" in front of what can be checked.
QStringList rows(const QTreeWidget* tree) {
  QStringList texts;
  for (QTreeWidgetItemIterator it(const_cast<QTreeWidget*>(tree)); *it; ++it) {
    QStringList cells;
    for (int column = 0; column < tree->columnCount(); ++column) cells << (*it)->text(column);
    const bool checks = (*it)->data(0, Qt::CheckStateRole).isValid();
    const QString sign = !checks                               ? QString()
                         : (*it)->checkState(0) == Qt::Checked ? QStringLiteral("+")
                                                               : QStringLiteral("-");
    texts << sign + cells.join(QLatin1Char('|'));
  }
  return texts;
}

QStringList rows(const QTableView* table) {
  QStringList texts;
  for (int row = 0; row < table->model()->rowCount(); ++row) {
    QStringList cells;
    for (int column = 0; column < table->model()->columnCount(); ++column)
      cells << table->model()->index(row, column).data().toString();
    texts << cells.join(QLatin1Char('|'));
  }
  return texts;
}

void check(QTreeWidget* tree, const QString& name, bool checked) {
  for (QTreeWidgetItemIterator it(tree); *it; ++it)
    if ((*it)->text(0).endsWith(name))
      (*it)->setCheckState(0, checked ? Qt::Checked : Qt::Unchecked);
}

QTreeWidgetItem* item(QTreeWidget* tree, const char* name) {
  return tree->findItems(QLatin1String(name), Qt::MatchEndsWith | Qt::MatchRecursive).value(0);
}

constexpr const char* affected = "Playlists that hold tracks that are not kept";
constexpr const char* done = "What was done";

}  // namespace

class PlaylistWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void replaylistShowsReplacesAndTakesBack();
  void replaylistAsksAboutNamesakes_data();
  void replaylistAsksAboutNamesakes();
  void replaylistRefusesTwoKeepers();
  void replaylistTakesTheSelectionOrAll();
  void replaylistLooksAgainWhenTheLibraryChanged();
  void surveysSayWhyTheyShowNothing();
  void foldersAreCheckedWithWhatTheyHold();
  void tracksPanelRevealsByItsHalves();
  void cleanUpDeletesWhatIsChecked();
  void historyUndoesOnePlaylistAndAsksAboutDifferences();
  void trashMovesWhatIsNotHeldBack();
  void runsStopBeforeTheNextPlaylist();
  void brokenOffRunsAreShownAsSuch();
  void unreadableHistoriesArePutAsideOnRequest();
  void everythingHasANameAndTakesKeys();
  void windowsMayCloseBeforeTheirTasksEnd();
  void entriesAreComparedByWhatChanged_data();
  void entriesAreComparedByWhatChanged();
  void styledTextsBecomeMarkup();
};

void PlaylistWindowsTest::replaylistShowsReplacesAndTakesBack() {
  World world;
  QVERIFY(world.search());
  const QStringList before = world.onDisk();
  QDialog* window = world.open(world.commands.replaylist);
  QVERIFY(window);
  auto* outline = named<QTreeWidget>(window, affected);
  // "Missing" has nothing to replace: the survey leaves groups with missing files out.
  QCOMPARE(rows(outline),
           (QStringList{"+Folder||", "+Inner|2|1", "+⚠ Twin|2|1", "+Mix|4|3", "+⚠ Twin|1|1"})
               .replaceInStrings("+Inner", "+⚠ Inner"));
  auto* entries = named<QTableView>(window, "Entries to be replaced");
  outline->setCurrentItem(item(outline, "Mix"));
  QCOMPARE(rows(entries).value(1),
           QStringLiteral("3|Two — Band\nMPEG audio file|Two — Band\nMPEG audio file|"
                          "Most Played: 9 over 1 plays"));
  QVERIFY(named<QLabel>(window, "Warnings and what is left out")
              ->text()
              .contains("1 group is left out, because a file of the group is missing."));

  check(outline, "Mix", false);
  check(outline, "Folder", false);
  check(outline, "Twin", false);
  QTRY_VERIFY(!button(window, "OK")->isEnabled());
  check(outline, "Mix", true);
  QTRY_VERIFY(button(window, "OK")->isEnabled());
  press(window, "OK");
  QVERIFY(world.becomesIdle());
  QStringList after = before;
  after.replaceInStrings("Mix 1 7 3 1", "Mix 2 7 4 2");
  QCOMPARE(world.onDisk(), after);
  QCOMPARE(rows(named<QTreeWidget>(window, done)), QStringList("Mix|✓ Done, entries changed: 3|"));

  press(window, "Undo");
  QVERIFY(world.becomesIdle());
  QCOMPARE(world.onDisk(), before);
  press(window, "Close");
  QVERIFY(!World::dialog());
}

void PlaylistWindowsTest::replaylistAsksAboutNamesakes_data() {
  QTest::addColumn<QString>("answer");
  QTest::addColumn<QStringList>("expected");
  QTest::newRow("left out unless asked for")
      << "Leave Them Out" << QStringList{"Folder",    "Folder/Inner 4 4", "Folder/Twin 3 7",
                                         "Missing 5", "Mix 2 7 4 2",      "Twin 1"};
  QTest::newRow("cancelled") << "Cancel" << QStringList();
  // Each of the two deletes the other, unless it has gone by then: one is left.
  QTest::newRow("asked for") << "Replace and Delete"
                             << QStringList{"Folder", "Folder/Inner 4 4", "Missing 5",
                                            "Mix 2 7 4 2", "Twin 2"};
}

void PlaylistWindowsTest::replaylistAsksAboutNamesakes() {
  QFETCH(QString, answer);
  QFETCH(QStringList, expected);
  World world;
  QVERIFY(world.search());
  if (expected.isEmpty()) expected = world.onDisk();
  QDialog* window = world.open(world.commands.replaylist);
  press(window, "OK");
  auto* question = qobject_cast<QMessageBox*>(World::dialog());
  QVERIFY(question);
  QVERIFY(question->informativeText().contains("Replacing “Folder / Twin” would delete: Twin."));
  QCOMPARE(question->defaultButton()->text(), QStringLiteral("Leave Them Out"));
  const QStringList before = world.onDisk();
  press(question, answer.toUtf8().constData());
  QVERIFY(world.becomesIdle());
  QCOMPARE(world.onDisk(), expected);
  if (!button(window, "Undo")) return;
  press(window, "Undo");
  QVERIFY(world.becomesIdle());
  QCOMPARE(world.onDisk(), before);
}

void PlaylistWindowsTest::replaylistRefusesTwoKeepers() {
  World world;
  QVERIFY(world.search());
  const QStringList before = world.onDisk();
  const auto content = world.process.textSorter.window.bigArrayController.content();
  for (std::uint32_t row = 0; row < content.size(); ++row) world.delegate.setTick(row, true);
  auto* alert = qobject_cast<QMessageBox*>(world.open(world.commands.replaylist));
  QVERIFY(alert);
  QCOMPARE(alert->text(),
           QStringLiteral("One or more Dupe Groups contain more than one Keeper track."));
  QCOMPARE(alert->informativeText(),
           QStringLiteral("Make sure only one track per Dupe Group is designated as a Keeper."));
  press(alert, "OK");
  QTRY_VERIFY(!World::dialog());
  QCOMPARE(world.onDisk(), before);
}

void PlaylistWindowsTest::replaylistTakesTheSelectionOrAll() {
  World world;
  QVERIFY(world.search());
  auto& table = world.process.textSorter.window.bigArrayController;
  const std::vector<std::size_t> onlyOne = {0, 1};
  table.setSelection(onlyOne);
  QDialog* window = world.open(world.commands.replaylist);
  auto* outline = named<QTreeWidget>(window, affected);
  const qsizetype selected = rows(outline).size();
  const QString note = named<QLabel>(window, "Tracks that take part")->text();
  QVERIFY2(note.contains("2 of its 6"), qPrintable(note));
  press(window, "Take All Tracks");
  QVERIFY(world.becomesIdle());
  QVERIFY2(rows(outline).size() > selected, qPrintable(rows(outline).join('\n')));
  QCOMPARE(table.selection(), onlyOne);
}

void PlaylistWindowsTest::replaylistLooksAgainWhenTheLibraryChanged() {
  World world;
  QVERIFY(world.search());
  QDialog* window = world.open(world.commands.replaylist);
  auto* outline = named<QTreeWidget>(window, affected);
  check(outline, "Twin", false);
  check(outline, "Folder", false);
  world.disk.write("Library.xml", TemporaryFolder::read(world.path) + "\n");
  const QStringList before = world.onDisk();
  press(window, "OK");
  QVERIFY(world.becomesIdle());
  auto* alert = qobject_cast<QMessageBox*>(World::dialog());
  QVERIFY(alert && alert->text() == QStringLiteral("Nothing was changed."));
  QVERIFY(!alert->informativeText().isEmpty());
  press(alert, "OK");
  QVERIFY(world.becomesIdle());
  QCOMPARE(world.onDisk(), before);
  check(outline, "Twin", false);
  check(outline, "Folder", false);
  QTRY_VERIFY(button(window, "OK")->isEnabled());
  press(window, "OK");
  QVERIFY(world.becomesIdle());
  QVERIFY(world.onDisk().contains("Mix 2 7 4 2"));
}

void PlaylistWindowsTest::surveysSayWhyTheyShowNothing() {
  World world({{"Kept", 0xA1, {2, 4, 7}, 0, false}});
  QVERIFY(world.search());
  QDialog* window = world.open(world.commands.replaylist);
  QCOMPARE(named<QLabel>(window, "State of the survey")->text(), QStringLiteral("No results."));
  QVERIFY(named<QLabel>(window, "Warnings and what is left out")
              ->text()
              .contains("No playlist of yours holds a track that is not kept."));
  QVERIFY(!button(window, "OK")->isEnabled());
  press(window, "Cancel");
  window = world.open(world.commands.cleanUp);
  QCOMPARE(named<QLabel>(window, "State of the scan")->text(), QStringLiteral("No results."));
  QVERIFY(!button(window, "OK")->isEnabled());
  press(window, "Cancel");
  // To the scans a library that cannot be read has no playlists; users are told the reason.
  std::filesystem::remove(world.path);
  for (const auto* command : {&world.commands.replaylist, &world.commands.cleanUp}) {
    auto* alert = qobject_cast<QMessageBox*>(world.open(*command));
    QVERIFY(alert);
    QCOMPARE(alert->text(), QStringLiteral("The playlists could not be looked through."));
    QVERIFY(alert->informativeText().contains("Library.xml"));
    press(alert, "OK");
    QTRY_VERIFY(!World::dialog());
  }
}

void PlaylistWindowsTest::foldersAreCheckedWithWhatTheyHold() {
  World world;
  QVERIFY(world.search());
  QDialog* window = world.open(world.commands.replaylist);
  auto* outline = named<QTreeWidget>(window, affected);
  const auto chosen = [&] { return named<QLabel>(window, "What is chosen")->text(); };
  QVERIFY(chosen().startsWith("4 of 4 playlists chosen"));
  outline->setFocus();
  outline->setCurrentItem(item(outline, "Folder"));
  QTest::keyClick(outline, Qt::Key_Space);
  QTRY_VERIFY(chosen().startsWith("2 of 4 playlists chosen"));
  item(outline, "Inner")->setCheckState(0, Qt::Checked);
  QCOMPARE(item(outline, "Folder")->checkState(0), Qt::PartiallyChecked);
  QTRY_VERIFY(chosen().startsWith("3 of 4 playlists chosen"));
  press(window, "Check None");
  QTRY_VERIFY(chosen().startsWith("0 of 4 playlists chosen"));
  QVERIFY(!button(window, "OK")->isEnabled());
  press(window, "Check All");
  QTRY_VERIFY(chosen().startsWith("4 of 4 playlists chosen; entries to be replaced: 6"));
  // What is highlighted is told more about, and not what is taken.
  outline->setCurrentItem(item(outline, "Folder"));
  QCOMPARE(named<QLabel>(window, "Selected playlist")->text(),
           QStringLiteral("Select one playlist to see what changes in it."));
  press(window, "Reveal");
  QCOMPARE(world.revealer.shown, QStringList("F0"));
}

void PlaylistWindowsTest::tracksPanelRevealsByItsHalves() {
  World world;
  QVERIFY(world.search());
  QDialog* window = world.open(world.commands.replaylist);
  auto* outline = named<QTreeWidget>(window, affected);
  outline->setCurrentItem(item(outline, "Inner"));
  press(window, "Show Tracks");
  QVERIFY(button(window, "Hide Tracks"));
  auto* pairs = named<QTableView>(window, "Non-keepers and their keepers");
  QVERIFY(pairs->isVisible());
  QCOMPARE(rows(pairs), QStringList("Two - 0:00, Plays: 1|Two - 0:00, Plays: 9"));
  const int y = pairs->rowViewportPosition(0) + 5;
  const auto click = [&](int x) { return QPoint(x, y); };
  QTest::mouseClick(pairs->viewport(), Qt::LeftButton, {}, click(5));
  QVERIFY(world.becomesIdle());
  QVERIFY2(world.revealer.shown.isEmpty(), "a single click does nothing");
  for (const int x : {5, pairs->viewport()->width() - 5}) {
    QTest::mouseDClick(pairs->viewport(), Qt::LeftButton, {}, click(x));
    QVERIFY(world.becomesIdle());
  }
  QCOMPARE(world.revealer.shown.size(), 2);
  QCOMPARE(world.revealer.shown.back(), QStringLiteral("4.mp3"));
  // The same from the keyboard.
  world.revealer.shown.clear();
  pairs->setCurrentIndex(pairs->model()->index(0, 0));
  QTest::keyClick(pairs, Qt::Key_Return, Qt::ShiftModifier);
  QVERIFY(world.becomesIdle());
  QCOMPARE(world.revealer.shown, QStringList("4.mp3"));
}

void PlaylistWindowsTest::cleanUpDeletesWhatIsChecked() {
  World world({{"Rep", 0xA1, {1, 2, 1, 3, 2, 1}, 0, false},
               {"Other", 0xA2, {7, 7}, 0, false},
               {"Folder", 0xF0, {}, 0, true},
               {"Deep", 0xF1, {}, 0xF0, true},
               {"Hidden", 0xA3, {7, 7}, 0xF1, false}});
  QVERIFY(world.search());
  const QStringList before = world.onDisk();
  QDialog* window = world.open(world.commands.cleanUp);
  auto* outline = named<QTreeWidget>(window, "Playlists that list a track more than once");
  QCOMPARE(rows(outline), (QStringList{"+Rep|6|3", "+Other|2|1"}));
  outline->setCurrentItem(item(outline, "Rep"));
  QCOMPARE(rows(named<QTableView>(window, "Entries to be deleted")),
           (QStringList{"3|One — Band\nMPEG audio file|The same track at 1 stays",
                        "5|One — Band\nMPEG audio file|The same track at 2 stays",
                        "6|One — Band\nMPEG audio file|The same track at 1 stays"}));
  QVERIFY(named<QLabel>(window, "What is left out")->text().contains("\"Hidden\""));
  check(outline, "Other", false);
  press(window, "OK");
  QVERIFY(world.becomesIdle());
  QVERIFY(world.onDisk().contains("Rep 1 2 3"));
  QVERIFY2(world.onDisk().contains("Other 7 7"), "not checked");
  press(window, "Undo");
  QVERIFY(world.becomesIdle());
  QCOMPARE(world.onDisk(), before);
}

void PlaylistWindowsTest::historyUndoesOnePlaylistAndAsksAboutDifferences() {
  World world({{"A", 0xA1, {1, 1}, 0, false},
               {"B", 0xA2, {3, 3}, 0, false},
               {"C", 0xA3, {7, 7}, 0, false}});
  QVERIFY(world.search());
  QDialog* window = world.open(world.commands.history);
  QCOMPARE(named<QLabel>(window, "Selected run")->text(),
           QStringLiteral("Nothing has been changed in this library yet."));
  press(window, "Close");
  window = world.open(world.commands.cleanUp);
  press(window, "OK");
  QVERIFY(world.becomesIdle());
  press(window, "Close");
  QCOMPARE(world.onDisk(), (QStringList{"A 1", "B 3", "C 7"}));

  window = world.open(world.commands.history);
  auto* changes = named<QTreeWidget>(window, "What the run changed");
  QCOMPARE(rows(changes),
           (QStringList{"A|As the run left it", "B|As the run left it", "C|As the run left it"}));
  QCOMPARE(rows(named<QTableView>(window, "Entries before and after")),
           QStringList("2|One — Band\nMPEG audio file|(deleted)"));
  press(window, "Undo This Playlist");
  QVERIFY(world.becomesIdle());
  QCOMPARE(world.onDisk(), (QStringList{"A 1 1", "B 3", "C 7"}));
  QCOMPARE(rows(named<QTreeWidget>(window, "Runs, latest first")).size(), 2);

  // Somebody works on B; the rest can still be taken back.
  const std::string text = TemporaryFolder::read(world.path);
  PropertyList root = parsePropertyList(text, world.path);
  std::string changed = text;
  changed.replace(changed.find("<string>B</string>"), 18, "<string>Bee</string>");
  world.disk.write("Library.xml", changed);
  auto* runs = named<QTreeWidget>(window, "Runs, latest first");
  for (const int row : {0, 1}) runs->setCurrentItem(runs->topLevelItem(row));
  QVERIFY(world.becomesIdle());
  QCOMPARE(rows(changes),
           (QStringList{"A|Taken back", "B|⚠ Changed since: it is now called \"Bee\"",
                        "C|As the run left it"}));
  press(window, "Undo Run");
  QVERIFY(world.becomesIdle());
  auto* question = qobject_cast<QMessageBox*>(World::dialog());
  QVERIFY(question && question->informativeText().contains("“B”: it is now called \"Bee\"."));
  QCOMPARE(world.onDisk(), (QStringList{"A 1 1", "Bee 3", "C 7"}));
  press(question, "Take Back the Rest");
  QVERIFY(world.becomesIdle());
  QCOMPARE(world.onDisk(), (QStringList{"A 1 1", "Bee 3", "C 7 7"}));
}

void PlaylistWindowsTest::trashMovesWhatIsNotHeldBack() {
  World world;
  QVERIFY(world.search());
  const auto exists = [&](int track) {
    return std::filesystem::exists(world.disk / World::fileName(track));
  };
  // Of some rows: a keeper among them is no candidate.
  const auto content = world.process.textSorter.window.bigArrayController.content();
  std::vector<std::uint32_t> chosen;
  for (std::uint32_t row = 0; row < content.size(); ++row)
    if (content[row].record->item().persistentID <= 2) chosen.push_back(row);
  QDialog* window = world.open(world.commands.trashTracks, chosen);
  QCOMPARE(named<QLabel>(window, "Question")->text(),
           QStringLiteral("Move 1 file (1 KB) to the trash?"));
  press(window, "Cancel");

  window = world.open(world.commands.trash);
  QCOMPARE(named<QLabel>(window, "Question")->text(),
           QStringLiteral("Move 2 files (2 KB) to the trash?"));
  const QStringList files = rows(named<QTreeWidget>(window, "Files"));
  QCOMPARE(files.filter("Held back (1): its file is missing").size(), 1);
  QVERIFY2(files.contains("1.mp3|1 KB|2.mp3"), qPrintable(files.join('\n')));
  press(window, "Move to Trash");
  QVERIFY(world.becomesIdle());
  QVERIFY(!exists(1) && exists(2) && !exists(3) && exists(4) && exists(6) && exists(7));
  press(window, "Undo");
  QVERIFY(world.becomesIdle());
  QVERIFY(exists(1) && exists(3));
}

void PlaylistWindowsTest::runsStopBeforeTheNextPlaylist() {
  World world({{"A", 0xA1, {1, 1}, 0, false}, {"B", 0xA2, {3, 3}, 0, false}});
  QVERIFY(world.search());
  QDialog* window = world.open(world.commands.cleanUp);
  std::latch held(1);
  world.worker.post([&held] { held.wait(); });
  press(window, "OK");
  QVERIFY2(!button(window, "OK"), "the decision is made");
  // Escape asks to stop, as the button does, and leaves the window to tell what was done.
  QTest::keyClick(window, Qt::Key_Escape);
  const bool isStopping = !button(window, "Stop")->isEnabled();
  held.count_down();
  QVERIFY(world.becomesIdle());
  QVERIFY(isStopping && window->isVisible());
  QCOMPARE(world.onDisk(), (QStringList{"A 1 1", "B 3 3"}));
  QCOMPARE(rows(named<QTreeWidget>(window, done)),
           (QStringList{"A|– Stopped before it|", "B|– Stopped before it|"}));
  QVERIFY(!button(window, "Undo"));
}

void PlaylistWindowsTest::brokenOffRunsAreShownAsSuch() {
  World world({{"A", 0xA1, {1, 1}, 0, false}});
  QVERIFY(world.search());
  press(world.open(world.commands.history), "Close");  // makes the history
  const LibraryIdentity library = currentIdentity(*world.delegate.application());
  const pid_t child = ::fork();
  if (child == 0) {
    History history(world.disk / "data/Kestrel/history.sqlite", world.clock);
    std::vector<PlaylistChange> changes(1);
    changes[0].name = "A";
    changes[0].oldPlaylist = 0xA1;
    changes[0].oldEntries = {1, 1};
    changes[0].newEntries = {1};
    history.begin(RunKind::cleanUp, library, changes, {});
    ::_exit(0);
  }
  QCOMPARE(::waitpid(child, nullptr, 0), child);
  QDialog* window = world.open(world.commands.history);
  QVERIFY(rows(named<QTreeWidget>(window, "Runs, latest first"))
              .value(0)
              .endsWith("Clean-up|⚠ Broke off"));
  QVERIFY(named<QLabel>(window, "Selected run")->text().contains("ended in the middle of it"));
  QCOMPARE(rows(named<QTreeWidget>(window, "What the run changed")),
           QStringList("A|Not changed by the run"));
  QVERIFY(!button(window, "Undo Run")->isEnabled());
}

void PlaylistWindowsTest::unreadableHistoriesArePutAsideOnRequest() {
  World world({{"A", 0xA1, {1, 1}, 0, false}});
  QVERIFY(world.search());
  const std::string file = world.disk.write("data/Kestrel/history.sqlite", "no database at all");
  QDialog* window = world.open(world.commands.cleanUp);
  press(window, "OK");
  QVERIFY(world.becomesIdle());
  auto* question = qobject_cast<QMessageBox*>(World::dialog());
  QVERIFY(question && question->informativeText().contains(toQt(file)));
  QCOMPARE(world.onDisk(), QStringList("A 1 1"));
  press(question, "Put It Aside and Begin Anew");
  QVERIFY(world.becomesIdle());
  QTRY_VERIFY(button(window, "OK") && button(window, "OK")->isEnabled());
  press(window, "OK");
  QVERIFY(world.becomesIdle());
  QCOMPARE(world.onDisk(), QStringList("A 1"));
}

void PlaylistWindowsTest::everythingHasANameAndTakesKeys() {
  World world;
  QVERIFY(world.search());
  for (const auto* command : {&world.commands.replaylist, &world.commands.cleanUp,
                              &world.commands.trash, &world.commands.history}) {
    QDialog* window = world.open(*command);
    QSet<QWidget*> reached;
    for (QWidget* at = window->nextInFocusChain(); !reached.contains(at);
         at = at->nextInFocusChain())
      reached << at;
    for (auto* widget : window->findChildren<QWidget*>()) {
      if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus) continue;
      QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(widget);
      QVERIFY2(interface && !interface->text(QAccessible::Name).isEmpty(),
               widget->metaObject()->className());
      QVERIFY(reached.contains(widget));
      if (auto* pushed = qobject_cast<QPushButton*>(widget))
        QVERIFY2(pushed->text().contains('&'), qPrintable(pushed->text()));
    }
    window->close();
    QVERIFY(world.becomesIdle());
  }
}

void PlaylistWindowsTest::windowsMayCloseBeforeTheirTasksEnd() {
  World world;
  QVERIFY(world.search());
  for (const auto* command : {&world.commands.replaylist, &world.commands.cleanUp,
                              &world.commands.trash, &world.commands.history}) {
    (*command)();
    QDialog* window = World::dialog();
    QVERIFY(window);
    QTest::keyClick(window, Qt::Key_Escape);
    QVERIFY(world.becomesIdle());
    QVERIFY(!World::dialog());
  }
  QVERIFY(world.open(world.commands.cleanUp));
}

void PlaylistWindowsTest::entriesAreComparedByWhatChanged_data() {
  QTest::addColumn<QString>("before");
  QTest::addColumn<QString>("after");
  QTest::addColumn<QString>("expected");
  QTest::newRow("replaced") << "123"
                            << "143"
                            << "1=1 2>4 3=3";
  QTest::newRow("repeats deleted") << "121312"
                                   << "123"
                                   << "1=1 2=2 1- 3=3 1- 2-";
  QTest::newRow("put back") << "12"
                            << "1212"
                            << "1=1 2=2 1+ 2+";
  QTest::newRow("another list") << "12"
                                << "345"
                                << "1>3 2>4 5+";
  QTest::newRow("emptied") << "11"
                           << ""
                           << "1- 1-";
}

void PlaylistWindowsTest::entriesAreComparedByWhatChanged() {
  QFETCH(QString, before);
  QFETCH(QString, after);
  const auto ids = [](const QString& text) {
    Ids list;
    for (const QChar digit : text) list.push_back(static_cast<std::uint64_t>(digit.digitValue()));
    return list;
  };
  QStringList texts;
  for (const EntryRow& row : comparedRows(ids(before), ids(after))) {
    const QString from = row.before ? QString::number(row.before) : QString();
    const QString to = row.after ? QString::number(row.after) : QString();
    switch (row.change) {
      case EntryRow::Change::none:
        texts << from + '=' + to;
        break;
      case EntryRow::Change::replaced:
        texts << from + '>' + to;
        break;
      case EntryRow::Change::deleted:
        texts << from + '-';
        break;
      case EntryRow::Change::added:
        texts << to + '+';
    }
  }
  QTEST(texts.join(' '), "expected");
}

void PlaylistWindowsTest::styledTextsBecomeMarkup() {
  StyledText text{"a<b>\rü😀 bold end", {}};
  text.makeBold(9, 4);
  QCOMPARE(htmlOf(text), QStringLiteral("a&lt;b&gt;<br>ü😀 <span style=\"font-weight:bold;\">bold"
                                        "</span> end"));
  text.centre();
  QVERIFY(htmlOf(text).startsWith("<div align=\"center\">"));
}

}  // namespace kestrel

QTEST_MAIN(kestrel::PlaylistWindowsTest)
#include "playlist_windows_test.moc"
