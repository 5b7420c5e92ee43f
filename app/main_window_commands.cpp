// The main window's menus and toolbar, and the commands that are about no track.

#include <QActionGroup>
#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QProcess>
#include <QStandardPaths>
#include <QStatusBar>

#include "app/appearance.h"
#include "app/controller/app_delegate.h"
#include "app/filter_field.h"
#include "app/left_side.h"
#include "app/library_title.h"
#include "app/log_window.h"
#include "app/main_window.h"
#include "app/tick_history.h"
#include "app/top_bar.h"
#include "musicapp/applications.h"
#include "musicapp/library_identity.h"
#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/preferences.h"
#include "platform/programs.h"
#include "platform/settings.h"
#include "resources/artwork.h"
#include "ui/process.h"
#include "ui/qt/playlist_widgets.h"
#include "ui/qt/review_table_view.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

constexpr int messageTime = 5000;  // milliseconds

/// The program that writes invented libraries: beside this one, or where packages put helpers.
std::string libraryMaker() {
  const QString folder = QCoreApplication::applicationDirPath();
  for (const QString& place : {folder, folder + QStringLiteral("/../libexec/kestrel")})
    if (const QFileInfo file(place + QStringLiteral("/kestrel-make-library")); file.isExecutable())
      return pathFromQt(file.absoluteFilePath());
  return "kestrel-make-library";
}

/// The path of the demo library, a small invented one with real media files, which is written to
/// the user's data folder when it is not there yet. Throws FileError. From any thread.
std::string writeDemoLibrary(FileService& files) {
  const auto data = files.applicationSupportDirectory();
  if (!data)
    throw FileError("the demo library", Message::tr("has no place: there is no home folder"),
                    Message::tr("Set HOME."));
  const std::string folder = *data + "/Kestrel/Demo";
  const std::string path = folder + "/Library.xml";
  if (files.exists(path)) return path;
  files.createDirectories(folder);
  SystemPrograms programs;
  ProgramCall call;
  call.program = libraryMaker();
  call.arguments = {"--demo", path};
  call.oneOutput = true;
  const ProgramResult result = programs.run(call);
  if (result.status != 0)
    throw FileError(path, Message::tr("could not be written: %1").arg(result.output),
                    Message::tr("See whether there is room on the disk."));
  return path;
}

}  // namespace

void MainWindow::makeActions() {
  const auto add = [this](const QString& title, const QKeySequence& key, auto command,
                          const char* icon = nullptr, const QString& toolTip = {}) {
    auto* action = new QAction(title, this);
    action->setShortcut(key);
    if (icon) action->setIcon(toolbarIcon(QLatin1String(icon)));
    if (!toolTip.isEmpty()) action->setToolTip(toolTip);
    connect(action, &QAction::triggered, this, command);
    return action;
  };
  Actions& a = actions_;
  a.open = add(
      tr("&Open Library…"), QKeySequence::Open, [this] { openLibrary(); }, "open");
  a.demo = add(tr("Open &Demo Library"), {}, [this] { openDemo(); });
  a.addFiles = add(tr("&Add Files to Library…"), {}, [this] { addFiles(); });
  a.refresh = add(tr("Re&fresh Library"), Qt::Key_F5, [this] { delegate_.refresh(); });
  a.refreshPlaylists = add(tr("Refresh &Playlists"), Qt::SHIFT | Qt::Key_F5,
                           [this] { delegate_.refreshPlaylists(); });
  a.quit = add(tr("&Quit"), QKeySequence::Quit, [this] { close(); });
  a.find = add(
      tr("&Find Duplicates"), Qt::CTRL | Qt::Key_D, [this] { delegate_.findDuplicates(); }, "find",
      tr("Search the chosen playlist for duplicates (Ctrl+D)"));
  a.stop = add(tr("&Stop Searching (Esc)"), {}, [this] { delegate_.cancel(); });
  a.searchAtStart = add(tr("Find Duplicates at St&art"), {}, [] {});
  a.searchAtStart->setCheckable(true);
  a.searchAtStart->setChecked(preferences_.boolean(settings::getDupesAtStartup));
  connect(a.searchAtStart, &QAction::toggled, this,
          [this](bool on) { preferences_.set(settings::getDupesAtStartup, on); });
  a.replaylist = add(
      tr("&Replaylist…"), Qt::CTRL | Qt::Key_R,
      [this] { commands_.replaylist(scopeOf(table_->selectedRows())); }, "replaylist",
      tr("Put keepers into the playlists that hold other copies (Ctrl+R)"));
  a.replaylistSelection = add(tr("Replaylist the Se&lection…"), Qt::CTRL | Qt::SHIFT | Qt::Key_L,
                              [this] { replaylistSelection(); });
  a.cleanUp = add(
      tr("&Clean Up…"), Qt::CTRL | Qt::Key_U, [this] { commands_.cleanUp(); }, "cleanup",
      tr("Find playlists that list a track more than once (Ctrl+U)"));
  a.trash = add(
      tr("&Trash…"), Qt::CTRL | Qt::Key_Delete,
      [this] { commands_.trash(scopeOf(table_->selectedRows())); }, "trash",
      tr("Move the files of tracks that are not kept to the trash (Ctrl+Delete)"));
  a.history = add(
      tr("&History…"), Qt::CTRL | Qt::Key_H, [this] { commands_.history(); }, "history",
      tr("What was changed, and undoing it (Ctrl+H)"));
  a.filter = add(tr("F&ilter"), QKeySequence::Find, [this] {
    activateWindow();
    filter_->setFocus(Qt::ShortcutFocusReason);
    filter_->selectAll();
  });
  a.selectAll = add(tr("Select &All"), QKeySequence::SelectAll, [this] { table_->selectAll(); });
  a.showSelection = add(tr("Show &Selection"), Qt::CTRL | Qt::Key_L, [this] { showSelection(); });
  a.covers = add(tr("Show C&overs"), {}, [] {});
  a.covers->setCheckable(true);
  connect(a.covers, &QAction::toggled, this, &MainWindow::showCovers);
  a.play = add(tr("Play o&r Pause (P)"), {},
               [this] { withCommandRow([this](std::uint32_t row) { play(row); }); });
  a.notDuplicates = add(tr("Not &Duplicates"), {}, [this] { setNotDuplicates(); });
  a.makeKeeper = add(tr("&Keep This One (K)"), {}, [this] {
    withCommandRow([this](std::uint32_t row) { delegate_.makeOnlyKeeper(row); });
  });
  a.nextUndecided = add(tr("&Next Group Without Keeper"), Qt::CTRL | Qt::Key_G,
                        [this] { showNextUndecidedGroup(); });
  a.reveal = add(tr("Show in &Folder"), Qt::CTRL | Qt::SHIFT | Qt::Key_R,
                 [this] { withCommandRow([this](std::uint32_t row) { delegate_.reveal(row); }); });
  a.copy = add(tr("&Copy"), QKeySequence::Copy, [this] { copyTracks(false); });
  a.copyPath =
      add(tr("Copy P&ath"), Qt::CTRL | Qt::SHIFT | Qt::Key_C, [this] { copyTracks(true); });
  a.addToPlaylist = add(tr("Add to Pla&ylist…"), {}, [this] { addToPlaylist(); });
  a.trashTracks = add(tr("Move to &Trash…"), QKeySequence::Delete, [this] {
    if (const auto rows = commandRows(); !rows.empty()) commands_.trash(scopeOf(rows, true));
  });
  a.log = add(
      tr("&Log"), {},
      [this] {
        logWindow_->show();
        logWindow_->raise();
      },
      "log");
  a.legend = add(tr("&Colours and Symbols"), QKeySequence::HelpContents, [this] { showLegend(); });
  a.about = add(tr("&About Kestrel"), {}, [this] {
    QMessageBox::about(this, tr("About Kestrel"),
                       tr("<h3>Kestrel %1</h3><p>Finds the duplicate songs of a music library.</p>")
                           .arg(QCoreApplication::applicationVersion()));
  });
}

void MainWindow::makeMenus() {
  const Actions& a = actions_;
  QMenu* library = libraryMenu_;
  menuBar()->addMenu(library);
  library->addActions({a.open, a.demo});
  recentMenu_ = library->addMenu(tr("Open &Recent"));
  library->addSeparator();
  library->addActions({a.addFiles, a.refresh, a.refreshPlaylists});
  library->addSeparator();
  library->addActions({a.history, a.quit});

  QMenu* duplicates = menuBar()->addMenu(tr("&Duplicates"));
  duplicates->addActions({a.find, a.stop, a.searchAtStart});
  duplicates->addSeparator();
  duplicates->addActions({a.replaylist, a.replaylistSelection, a.cleanUp, a.trash});

  QMenu* edit = menuBar()->addMenu(tr("Edit"));
  edit->addActions({history_->undoAction(), history_->redoAction()});
  edit->addSeparator();
  edit->addActions({a.copy, a.selectAll});

  tableMenu_ = menuBar()->addMenu(tr("T&rack"));
  tableMenu_->addActions({a.makeKeeper, a.notDuplicates, a.nextUndecided, a.play, a.reveal});
  showInMenu_ = tableMenu_->addMenu(tr("Show in &Playlist"));
  tableMenu_->addSeparator();
  tableMenu_->addActions({a.copy, a.copyPath, a.addToPlaylist, a.replaylistSelection});
  tableMenu_->addSeparator();
  tableMenu_->addAction(a.trashTracks);
  // Keys work in the window that an action belongs to.
  selection_->addActions(tableMenu_->actions());
  selection_->addAction(a.filter);
  connect(showInMenu_, &QMenu::aboutToShow, this, [this] {
    showInMenu_->clear();
    withCommandRow([this](std::uint32_t row) {
      for (const PlaylistRecord& playlist : delegate_.playlistsHolding(row)) {
        QAction* action = showInMenu_->addAction(toQt(playlist.pnom).replace('&', "&&"));
        connect(action, &QAction::triggered, this, [this, row, playlist] {
          delegate_.reveal(row, playlist.hexpid);
          revealPlaylist(playlist.decpid);
        });
      }
    });
    if (showInMenu_->isEmpty()) showInMenu_->addAction(tr("In no playlist"))->setEnabled(false);
  });

  QMenu* view = menuBar()->addMenu(tr("&View"));
  view->addActions({a.filter, a.selectAll, a.showSelection});
  view->addSeparator();
  view->addAction(a.covers);
  QMenu* columns = view->addMenu(tr("&Columns"));
  connect(columns, &QMenu::aboutToShow, this, [this, columns] {
    columns->clear();
    QMenu* made = table_->makeColumnMenu(columns);
    columns->addActions(made->actions());
  });
  QMenu* appearance = view->addMenu(tr("A&ppearance"));
  auto* appearances = new QActionGroup(appearance);
  const auto addAppearance = [&](const QString& title, AppearanceChoice choice) {
    QAction* action = appearance->addAction(title);
    action->setActionGroup(appearances);
    action->setCheckable(true);
    action->setChecked(chosenAppearance(preferences_) == choice);
    connect(action, &QAction::triggered, this,
            [this, choice] { chooseAppearance(choice, preferences_); });
  };
  addAppearance(tr("Like the &Desktop"), AppearanceChoice::desktop);
  addAppearance(tr("&Light"), AppearanceChoice::light);
  addAppearance(tr("D&ark"), AppearanceChoice::dark);
  view->addSeparator();
  view->addAction(a.log);

  QMenu* help = menuBar()->addMenu(tr("&Help"));
  help->addActions({a.legend, a.about});
}

void MainWindow::reloadLibraryMenu() {
  recentMenu_->clear();
  for (const std::string& address : delegate_.recentLibraries()) {
    const QString shown = pathToQt(addressText(address));
    connect(recentMenu_->addAction(QString(shown).replace('&', "&&")), &QAction::triggered, this,
            [this, shown] { openPath(shown); });
  }
  topBar_->reload();
}

void MainWindow::setPlaylistCommands(PlaylistCommands commands) {
  commands_ = std::move(commands);
  reload();
}

void MainWindow::revealPlaylist(const std::string& decpid) {
  left_->setCurrentWidget(outline_);
  if (!outline_->showPlaylist(decpid)) say(tr("The outline does not show this playlist."));
}

void MainWindow::say(const QString& text) { statusBar()->showMessage(text, messageTime); }

QFileDialog* MainWindow::newFileDialog(const QString& title, const QStringList& filters) {
  auto* dialog =
      new QFileDialog(this, title, QStandardPaths::writableLocation(QStandardPaths::MusicLocation));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::ExistingFile);
  dialog->setNameFilters(filters + QStringList(tr("All files (*)")));
  return dialog;
}

void MainWindow::openLibrary() {
  QStringList filters;
  for (const Application& application : applications())
    if (!application.pattern.empty())
      filters << toQt(application.name) + " (" + toQt(application.pattern) + ")";
  QFileDialog* dialog = newFileDialog(tr("Open Library"), filters);
  if (!delegate_.libraryPath().empty())
    dialog->setDirectory(QFileInfo(pathToQt(delegate_.libraryPath())).path());
  connect(dialog, &QFileDialog::fileSelected, this, &MainWindow::openPath);
  dialog->open();
}

void MainWindow::addFiles() {
  QFileDialog* dialog =
      newFileDialog(tr("Add Files to Library"),
                    {tr("Audio files (*.mp3 *.m4a *.aac *.wav *.aif *.aiff *.flac *.ogg *.opus)")});
  dialog->setFileMode(QFileDialog::ExistingFiles);
  connect(dialog, &QFileDialog::filesSelected, this,
          [this](const QStringList& paths) { addFiles(paths); });
  dialog->open();
}

void MainWindow::addFiles(const QStringList& paths) {
  std::vector<std::string> files;
  for (const QString& path : paths) files.push_back(pathFromQt(QFileInfo(path).absoluteFilePath()));
  if (!files.empty()) commands_.addFiles(std::move(files));
}

void MainWindow::openPath(const QString& path) {
  if (path.isEmpty()) return;
  // Not all addresses are paths.
  const QFileInfo file(path);
  const bool isAddress = path.contains(':') && !file.exists();
  delegate_.whenIdle([this, library = pathFromQt(isAddress ? path : file.absoluteFilePath())] {
    delegate_.openLibrary(library);
  });
}

void MainWindow::openDemo() {
  const auto path = std::make_shared<std::string>();
  delegate_.run([this, path] { *path = writeDemoLibrary(delegate_.process().with.files); },
                [this, path] { delegate_.openLibrary(*path); });
}

QString MainWindow::legendText() {
  return tr(
      "◆  the track that is kept: dark text\n"
      "no ◆  a track to act on: grey text\n"
      "☁  in the cloud, without a local file: blue text\n"
      "⚠  the file is missing: red text\n"
      "Stripes tell neighbouring groups apart while the table is sorted by group.");
}

void MainWindow::showLegend() {
  const QString keys =
      tr("Space ticks and unticks, K makes the track the only keeper of its group, "
         "Ctrl+G goes to the next group without a keeper, Ctrl+F filters, F5 reads the library "
         "again, Esc stops a search.");
  auto* box = new QMessageBox(QMessageBox::Information, tr("Colours and Symbols"),
                              tr("Colours and symbols of the table"), QMessageBox::Ok, this);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setInformativeText(legendText() + QStringLiteral("\n\n") + keys);
  box->open();
}

}  // namespace kestrel
