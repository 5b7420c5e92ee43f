/// The windows that change a library, as their users have them: real widgets over a real document
/// in a folder of the test's own, no screen.
#pragma once

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>
#include <array>
#include <filesystem>
#include <memory>

#include "app/changes/playlist_windows.h"
#include "app/controller/app_delegate.h"
#include "app/controller/criteria.h"
#include "musicapp/applications.h"
#include "musicapp/revealer.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "tests/changes/library_world.h"
#include "tools/make_library/audio_files.h"
#include "ui/process.h"
#include "ui/qt/event_loop_queue.h"
#include "ui/qt/text.h"

namespace kestrel::testing {

inline constexpr const char* affected = "Playlists that hold tracks that are not kept";

/// By accessible name: what a screen reader says must lead to the same place.
template <typename Widget>
Widget* named(QWidget* in, const char* name) {
  for (auto* found : in->findChildren<Widget*>())
    if (found->accessibleName() == QLatin1String(name)) return found;
  qFatal("There is nothing named %s", name);
}

inline QAbstractButton* button(QWidget* in, const char* title) {
  for (auto* found : in->findChildren<QAbstractButton*>())
    if (found->isVisible() && found->text().remove(QLatin1Char('&')) == QLatin1String(title))
      return found;
  return nullptr;
}

/// "NAME|CELL|CELL" for each row and what it holds, with "+" or "-" before what can be checked.
inline QStringList rows(const QAbstractItemView* view, const QModelIndex& parent = {}) {
  const QAbstractItemModel& model = *view->model();
  QStringList texts;
  for (int row = 0; row < model.rowCount(parent); ++row) {
    QStringList cells;
    for (int column = 0; column < model.columnCount(parent); ++column)
      cells << model.index(row, column, parent).data().toString();
    const QModelIndex first = model.index(row, 0, parent);
    const QVariant check = first.data(Qt::CheckStateRole);
    const char* sign = !check.isValid() ? "" : check.toInt() == Qt::Checked ? "+" : "-";
    texts << QLatin1String(sign) + cells.join(QLatin1Char('|')) << rows(view, first);
  }
  return texts;
}

/// What a list of this name shows.
inline QStringList listed(QWidget* in, const char* name) {
  return rows(named<QAbstractItemView>(in, name));
}

/// What a label of this name says.
inline QString told(QWidget* in, const char* name) { return named<QLabel>(in, name)->text(); }

inline QTreeWidgetItem* item(QTreeWidget* tree, const char* name) {
  return tree->findItems(QLatin1String(name), Qt::MatchEndsWith | Qt::MatchRecursive).value(0);
}

inline void uncheck(QTreeWidget* tree, const char* name) {
  for (auto* found : tree->findItems(QLatin1String(name), Qt::MatchEndsWith | Qt::MatchRecursive))
    found->setCheckState(0, Qt::Unchecked);
}

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
/// They have been searched for duplicates.
class WindowWorld {
 public:
  explicit WindowWorld(std::vector<PlaylistBuilder> lists = usual()) {
    for (const auto& [variable, folder] :
         {std::pair("XDG_DATA_HOME", "data"), std::pair("XDG_CONFIG_HOME", "config"),
          std::pair("XDG_CACHE_HOME", "cache"), std::pair("HOME", "home")})
      qputenv(variable, QByteArray::fromStdString(disk / folder));
    settings::registerFirstValues(preferences);
    settings::registerAppValues(preferences);
    preferences.set(settings::filterMatrixButton, std::int64_t{2});
    lists.insert(lists.begin(), playlist("Library", 0xF, {1, 2, 3, 4, 5, 6, 7}).master());
    PropertyList document = libraryDocument(lists, 7);
    const std::string sound = make_library::makeAudio("mp3", 264, 32, 440).bytes;
    for (int i = 1; i <= 7; ++i) {
      static constexpr std::array names = {"One", "One", "Two", "Two", "Three", "Three", "Alone"};
      PropertyList& track = *document.find("Tracks")->find(std::to_string(100 + i));
      track.set("Name", names[static_cast<std::size_t>(i - 1)]);
      track.set("Artist", "Band");
      track.set("Kind", "MPEG audio file");
      track.set("Size", 1000);
      track.set("Play Count", i % 2 == 0 ? 9 : 1);
      track.set("Location", "file://" + (disk / fileName(i)));
      if (i != 5) disk.write(fileName(i), sound);
    }
    path = disk.write("Library.xml", writePropertyList(document));
    window.show();
    if (!delegate.openLibrary(path) || !becomesIdle() || !delegate.findDuplicates() ||
        !becomesIdle() || delegate.situation() != Situation::result)
      qFatal("The library could not be searched");
    before = onDisk();
  }
  ~WindowWorld() { worker.waitUntilIdle(); }

  static std::vector<PlaylistBuilder> usual() {
    return {playlist("Mix", 0xA1, {1, 7, 3, 1}),      folder("Folder", 0xF0),
            playlist("Inner", 0xA2, {3, 4}).in(0xF0), playlist("Twin", 0xA3, {1}),
            playlist("Twin", 0xA4, {3, 7}).in(0xF0),  playlist("Missing", 0xA5, {5})};
  }
  static std::string fileName(int track) { return "Media/" + std::to_string(track) + ".mp3"; }

  bool becomesIdle() {
    const auto isIdle = [this] { return !delegate.isBusy(); };
    for (int round = 0; round < 3; ++round) {
      QTest::qWait(20);  // for what is started by what has ended
      if (!QTest::qWaitFor(isIdle, 20000)) return false;
    }
    // What is asked beside tasks.
    worker.waitUntilIdle();
    QTest::qWait(1);
    return true;
  }
  /// The window or question that a command opens, when it has filled.
  template <typename Dialog = QDialog, typename... Arguments>
  Dialog* open(const std::function<void(Arguments...)>& command,
               std::type_identity_t<Arguments>... arguments) {
    command(std::move(arguments)...);
    return becomesIdle() ? dialog<Dialog>() : nullptr;
  }
  template <typename Dialog = QDialog>
  static Dialog* dialog() {
    return dynamic_cast<Dialog*>(QApplication::activeModalWidget());
  }
  /// Presses a button and waits for what it starts.
  void press(QWidget* in, const char* title) {
    QAbstractButton* found = in ? button(in, title) : nullptr;
    QVERIFY2(found && found->isEnabled(), title);
    QTest::mouseClick(found, Qt::LeftButton);
    QVERIFY2(becomesIdle(), title);
  }

  /// The group that a track is in.
  std::int32_t groupOf(std::uint64_t track) {
    for (const ResultTrack& row : process.textSorter.window.bigArrayController.content())
      if (row.record->item().persistentID == track) return row.tGroupID;
    return -1;
  }
  [[nodiscard]] QStringList onDisk() const {
    QStringList texts;
    for (const std::string& text : playlistsOnDisk(path)) texts << toQt(text);
    return texts;
  }

  TemporaryFolder disk;
  std::string path;
  QStringList before;  ///< what was on the disk in the beginning
  SystemFiles files;
  MemoryLog log;
  ManualClock clock;
  SeededRandom random{1};
  Preferences preferences;
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
  AppDelegate delegate{process, worker, [this](const std::string& document, const PathMaps& maps) {
                         return openApplication(document, {.files = files,
                                                           .log = log,
                                                           .random = random,
                                                           .clock = clock,
                                                           .revealer = &revealer,
                                                           .maps = maps});
                       }};
  QWidget window;
  PlaylistCommands commands = playlistCommands(delegate, &window);
  ActionScope scope;  ///< of the next command that asks for one
  std::function<void()> replaylist = [this] { commands.replaylist(scope); };
  std::function<void()> trash = [this] { commands.trash(scope); };
  std::function<void()> remove = [this] { commands.remove(scope); };
};

}  // namespace kestrel::testing
