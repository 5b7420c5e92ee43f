// The main window's menus and toolbar, and the commands that are about no track.

#include <QActionGroup>
#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>

#include "app/appearance.h"
#include "app/choices/left_side.h"
#include "app/choices/playlists_pane.h"
#include "app/controller/app_delegate.h"
#include "app/libraries/library_menu.h"
#include "app/log_window.h"
#include "app/main_window.h"
#include "app/result/compare_rules_sheet.h"
#include "app/result/filter_field.h"
#include "app/result/tick_history.h"
#include "app/shortcut_help.h"
#include "app/top_bar.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "resources/artwork.h"
#include "ui/process.h"
#include "ui/qt/playlist_widgets.h"
#include "ui/qt/review_table_view.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

constexpr int messageTime = 5000;  // milliseconds

/// For a key that only some widgets take: it stands where menus show keys.
QString withKey(const QString& title, Qt::Key key) {
  return title + QLatin1Char('\t') + QKeySequence(key).toString(QKeySequence::NativeText);
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
      tr("&Open Document…"), QKeySequence::Open, [this] { openDocument(); }, "library-document");
  a.openFolder = add(
      tr("Open &Folder…"), Qt::CTRL | Qt::SHIFT | Qt::Key_O, [this] { openFolder(); },
      "library-folder");
  a.connectToServer = add(
      tr("&Connect to MPD…"), {}, [this] { connectToServer(); }, "library-server");
  a.notes = add(tr("&Notes on This Library…"), {}, [this] { showNotes(); });
  a.settings = add(tr("S&ettings…"), Qt::CTRL | Qt::Key_Comma, [this] { showSettings(); });
  a.demo = add(tr("Open &Demo Library"), {}, [this] { openDemo(); });
  a.addFiles = add(tr("&Add Files to Library…"), {}, [this] { addFiles(); });
  a.refresh = add(tr("Re&fresh Library"), Qt::Key_F5, [this] { delegate_.renew(); });
  a.refreshPlaylists = add(tr("Refresh &Playlists"), Qt::SHIFT | Qt::Key_F5,
                           [this] { delegate_.refreshPlaylists(); });
  a.quit = add(tr("&Quit"), QKeySequence::Quit, [this] { close(); });
  a.find = add(
      tr("&Find Duplicates"), Qt::CTRL | Qt::Key_D, [this] { delegate_.findDuplicates(); }, "find",
      tr("Search the chosen playlist for duplicates (Ctrl+D)"));
  a.compareSounds = add(tr("Compare the S&ound"), {}, [this] { compareSounds(true); });
  a.compareSounds->setToolTip(tr("Listen to the files of all groups, and compare them"));
  a.compareSoundHere = add(tr("Compare the S&ound"), {}, [this] { compareSounds(false); });
  a.stop = add(withKey(tr("&Stop"), Qt::Key_Escape), {}, [this] { delegate_.cancel(); });
  a.searchAtStart = add(tr("Find Duplicates at St&art"), {}, [] {});
  a.searchAtStart->setCheckable(true);
  a.searchAtStart->setChecked(preferences_.boolean(settings::getDupesAtStartup));
  connect(a.searchAtStart, &QAction::toggled, this,
          [this](bool on) { preferences_.set(settings::getDupesAtStartup, on); });
  a.replaylist = add(
      tr("&Repair Playlists…"), Qt::CTRL | Qt::Key_R,
      [this] { commands_.replaylist(scopeOf(table_->selectedRows())); }, "replaylist",
      tr("Put the copies that are kept into the playlists that list others (Ctrl+R)"));
  a.replaylistSelection = add(tr("Repair Playlists for the Se&lection…"),
                              Qt::CTRL | Qt::SHIFT | Qt::Key_L, [this] { replaylistSelection(); });
  a.cleanUp = add(
      tr("&Clean Up…"), Qt::CTRL | Qt::Key_U, [this] { commands_.cleanUp(); }, "cleanup",
      tr("Find playlists that list a track more than once (Ctrl+U)"));
  a.trash = add(
      tr("&Trash…"), Qt::CTRL | Qt::Key_Delete,
      [this] { commands_.trash(scopeOf(table_->selectedRows())); }, "trash",
      tr("Move the files of tracks that are not kept to the trash (Ctrl+Delete)"));
  a.remove = add(
      tr("Re&move Copies…"), Qt::CTRL | Qt::SHIFT | Qt::Key_Delete,
      [this] { commands_.remove(scopeOf(table_->selectedRows())); }, "trash",
      tr("Take the copies that are not kept out of the library, and their files to the trash "
         "(Ctrl+Shift+Delete)"));
  a.compareRules = add(tr("Compare R&ules…"), Qt::CTRL | Qt::SHIFT | Qt::Key_D,
                       [this] { (new CompareRulesSheet(delegate_, this))->open(); });
  a.exportTable = add(tr("E&xport Table…"), Qt::CTRL | Qt::Key_E, [this] { exportTable(); });
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
  a.play = add(withKey(tr("Play o&r Pause"), Qt::Key_P), {},
               [this] { withCommandRow([this](std::uint32_t row) { play(row); }); });
  a.notDuplicates = add(tr("Not &Duplicates"), {}, [this] { setNotDuplicates(); });
  a.makeKeeper = add(withKey(tr("&Keep This One"), Qt::Key_K), {}, [this] {
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
  a.legend = add(tr("&Keys and Symbols"), QKeySequence::HelpContents, [this] { showHelp(); });
  a.about = add(tr("&About Kestrel"), {}, [this] {
    QMessageBox::about(this, tr("About Kestrel"),
                       tr("<h3>Kestrel %1</h3><p>Finds the duplicate songs of a music library.</p>")
                           .arg(QCoreApplication::applicationVersion()));
  });
}

void MainWindow::makeMenus() {
  const Actions& a = actions_;
  menuBar()->addMenu(libraryMenu_);
  libraryMenu_->setActions(
      {a.open, a.openFolder, a.connectToServer, a.demo},
      {a.addFiles, a.refresh, a.refreshPlaylists, a.notes, a.history, nullptr, a.settings, a.quit});

  QMenu* duplicates = menuBar()->addMenu(tr("&Duplicates"));
  duplicates->addActions({a.find, a.stop, a.searchAtStart, a.compareRules, a.compareSounds});
  duplicates->addSeparator();
  duplicates->addActions({a.replaylist, a.replaylistSelection, a.cleanUp, a.remove, a.trash});
  duplicates->addSeparator();
  duplicates->addAction(a.exportTable);

  QMenu* edit = menuBar()->addMenu(tr("&Edit"));
  edit->addActions({history_->undoAction(), history_->redoAction()});
  edit->addSeparator();
  edit->addActions({a.copy, a.selectAll});

  tableMenu_ = menuBar()->addMenu(tr("T&rack"));
  tableMenu_->addActions(
      {a.makeKeeper, a.notDuplicates, a.nextUndecided, a.play, a.compareSoundHere, a.reveal});
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

void MainWindow::setPlaylistCommands(PlaylistCommands commands) {
  commands_ = std::move(commands);
  reload();
}

void MainWindow::revealPlaylist(const std::string& decpid) {
  left_->setCurrentWidget(playlists_);
  if (!playlists_->showPlaylist(decpid)) say(tr("The outline does not show this playlist."));
}

void MainWindow::say(const QString& text) { statusBar()->showMessage(text, messageTime); }

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

void MainWindow::showHelp() {
  QList<QMenu*> menus;
  for (const QAction* action : menuBar()->actions())
    if (action->menu()) menus << action->menu();
  (new ShortcutHelp(menus, this))->open();
}

}  // namespace kestrel
