// The main window's menus, toolbar and commands.

#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QProcess>
#include <QShortcut>
#include <QStandardPaths>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

#include "app/app_delegate.h"
#include "app/appearance.h"
#include "app/demo_library.h"
#include "app/log_window.h"
#include "app/main_window_actions.h"
#include "app/selection_window.h"
#include "app/target_playlist_dialog.h"
#include "library/process.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "resources/artwork.h"
#include "ui/qt/playlist_widgets.h"
#include "ui/qt/review_table_view.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

constexpr int messageTime = 5000;  // milliseconds

}  // namespace

void MainWindow::makeActions() {
  const auto add = [this](const QString& title, const QKeySequence& key, auto command) {
    auto* action = new QAction(title, this);
    action->setShortcut(key);
    connect(action, &QAction::triggered, this, command);
    return action;
  };
  Actions& a = *actions_;
  a.open = add(tr("&Open Library Document…"), QKeySequence::Open, [this] { openDocument(); });
  a.demo = add(tr("Open &Demo Library"), {}, [this] { openDemo(); });
  a.refresh = add(tr("&Refresh Library"), Qt::Key_F5, [this] { delegate_.refresh(); });
  a.refreshPlaylists = add(tr("Refresh &Playlists"), Qt::SHIFT | Qt::Key_F5,
                           [this] { delegate_.refreshPlaylists(); });
  a.quit = add(tr("&Quit"), QKeySequence::Quit, [this] { close(); });
  a.find =
      add(tr("&Find Duplicates"), Qt::CTRL | Qt::Key_D, [this] { delegate_.findDuplicates(); });
  a.stop = add(tr("&Stop Searching (Esc)"), {}, [this] { delegate_.cancel(); });
  a.searchAtStart = add(tr("Find Duplicates at S&tart"), {}, [] {});
  a.searchAtStart->setCheckable(true);
  a.searchAtStart->setChecked(preferences_.boolean(settings::getDupesAtStartup));
  connect(a.searchAtStart, &QAction::toggled, this,
          [this](bool on) { preferences_.set(settings::getDupesAtStartup, on); });
  a.replaylist = add(tr("&Replaylist…"), Qt::CTRL | Qt::Key_R, [this] { commands_.replaylist(); });
  a.replaylistSelection =
      add(tr("Replaylist the &Selection…"), {}, [this] { commands_.replaylistSelection(); });
  a.cleanUp = add(tr("&Clean Up…"), Qt::CTRL | Qt::Key_U, [this] { commands_.cleanUp(); });
  a.trash = add(tr("&Trash…"), Qt::CTRL | Qt::Key_Delete, [this] { commands_.trash(); });
  a.history = add(tr("&History…"), Qt::CTRL | Qt::Key_H, [this] { commands_.history(); });
  a.filter = add(tr("F&ilter"), QKeySequence::Find, [this] {
    filter_->setFocus(Qt::ShortcutFocusReason);
    filter_->selectAll();
  });
  a.selectAll = add(tr("Select &All"), QKeySequence::SelectAll, [this] { table_->selectAll(); });
  a.showSelection = add(tr("Show &Selection"), Qt::CTRL | Qt::Key_L, [this] { showSelection(); });
  a.makeKeeper = add(tr("Make &Keeper (K)"), {}, [this] { makeOnlyKeeper(); });
  a.reveal = add(tr("Show in &Folder"), Qt::CTRL | Qt::SHIFT | Qt::Key_R,
                 [this] { withCommandRow([this](std::uint32_t row) { delegate_.reveal(row); }); });
  a.copy = add(tr("&Copy"), QKeySequence::Copy, [this] { copyTracks(false); });
  a.copyPath =
      add(tr("Copy &Path"), Qt::CTRL | Qt::SHIFT | Qt::Key_C, [this] { copyTracks(true); });
  a.addToPlaylist = add(tr("Add to Play&list…"), {}, [this] { addToPlaylist(); });
  a.trashTracks = add(tr("Move to &Trash…"), QKeySequence::Delete, [this] { trashTracks(); });
  a.log = add(tr("&Log"), {}, [this] {
    logWindow_->show();
    logWindow_->raise();
  });
  a.legend = add(tr("&Colours and Symbols"), QKeySequence::HelpContents, [this] { showLegend(); });
  a.about = add(tr("&About Kestrel"), {}, [this] {
    QMessageBox::about(this, tr("About Kestrel"),
                       tr("<h3>Kestrel %1</h3><p>Finds the duplicate songs of a music library.</p>")
                           .arg(QCoreApplication::applicationVersion()));
  });
  a.open->setIcon(toolbarIcon(QStringLiteral("open")));
  a.find->setIcon(toolbarIcon(QStringLiteral("find")));
  a.replaylist->setIcon(toolbarIcon(QStringLiteral("replaylist")));
  a.cleanUp->setIcon(toolbarIcon(QStringLiteral("cleanup")));
  a.trash->setIcon(toolbarIcon(QStringLiteral("trash")));
  a.history->setIcon(toolbarIcon(QStringLiteral("history")));
  a.log->setIcon(toolbarIcon(QStringLiteral("log")));
  a.find->setToolTip(tr("Search the chosen playlist for duplicates (Ctrl+D)"));
  a.replaylist->setToolTip(tr("Put keepers into the playlists that hold other copies (Ctrl+R)"));
  a.cleanUp->setToolTip(tr("Find playlists that list a track more than once (Ctrl+U)"));
  a.trash->setToolTip(tr("Move the files of tracks that are not kept to the trash (Ctrl+Delete)"));
  a.history->setToolTip(tr("What was changed, and undoing it (Ctrl+H)"));
}

void MainWindow::makeMenus() {
  const Actions& a = *actions_;
  QMenu* library = menuBar()->addMenu(tr("&Library"));
  library->addActions({a.open, a.demo});
  recentMenu_ = library->addMenu(tr("Open &Recent"));
  library->addSeparator();
  library->addActions({a.refresh, a.refreshPlaylists});
  library->addSeparator();
  library->addActions({a.history, a.quit});
  libraryButton_->setMenu(library);

  QMenu* duplicates = menuBar()->addMenu(tr("&Duplicates"));
  duplicates->addActions({a.find, a.stop, a.searchAtStart});
  duplicates->addSeparator();
  duplicates->addActions({a.replaylist, a.replaylistSelection, a.cleanUp, a.trash});

  tableMenu_ = menuBar()->addMenu(tr("&Track"));
  tableMenu_->addActions({a.makeKeeper, a.reveal});
  showInMenu_ = tableMenu_->addMenu(tr("Show in &Playlist"));
  tableMenu_->addSeparator();
  tableMenu_->addActions({a.copy, a.copyPath, a.addToPlaylist});
  tableMenu_->addSeparator();
  tableMenu_->addAction(a.trashTracks);
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
  QMenu* columns = view->addMenu(tr("&Columns"));
  connect(columns, &QMenu::aboutToShow, this, [this, columns] {
    columns->clear();
    QMenu* made = table_->makeColumnMenu(columns);
    columns->addActions(made->actions());
  });
  QMenu* appearance = view->addMenu(tr("&Appearance"));
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

void MainWindow::makeToolBar() {
  QToolBar* bar = addToolBar(tr("Commands"));
  bar->setObjectName(QStringLiteral("commands"));
  bar->setMovable(false);
  bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  bar->setContextMenuPolicy(Qt::PreventContextMenu);

  libraryButton_ = new QToolButton;
  libraryButton_->setIcon(actions_->open->icon());
  libraryButton_->setText(tr("Library"));
  libraryButton_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  libraryButton_->setPopupMode(QToolButton::InstantPopup);
  bar->addWidget(libraryButton_);
  bar->addSeparator();

  Process& process = delegate_.process();
  auto& references = process.state<PlaylistWindowReferences>();
  playlistPopup_ = new PlaylistPopupBox(references.mainPlaylistPopup, process.with.log);
  playlistPopup_->setAccessibleName(tr("Playlist to search"));
  auto* label = new QLabel(tr("Look &in "));
  label->setBuddy(playlistPopup_);
  bar->addWidget(label);
  bar->addWidget(playlistPopup_);
  connect(playlistPopup_, &PlaylistPopupBox::playlistChosen, this,
          [this] { delegate_.playlistChosen(); });
  // The key that the menu names for the whole library.
  auto* wholeLibrary = new QShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_M, this);
  connect(wholeLibrary, &QShortcut::activated, this, [this, &references] {
    if (!references.mainPlaylistPopup.selectedIndex()) return;
    references.mainPlaylistPopup.selectItem(0);
    delegate_.playlistChosen();
  });

  bar->addAction(actions_->find);
  bar->addSeparator();
  for (QAction* action :
       {actions_->replaylist, actions_->cleanUp, actions_->trash, actions_->history})
    bar->addAction(action);
  auto* space = new QWidget;
  space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  bar->addWidget(space);
  filter_ = new QLineEdit;
  filter_->setPlaceholderText(tr("Filter"));
  filter_->setAccessibleName(tr("Filter the table by words"));
  filter_->setClearButtonEnabled(true);
  filter_->setMaximumWidth(240);
  filter_->installEventFilter(this);
  connect(filter_, &QLineEdit::textChanged, rows_.get(), &ResultTableModel::setFilter);
  bar->addWidget(filter_);
}

void MainWindow::reloadLibraryMenu() {
  recentMenu_->clear();
  for (const std::string& path : delegate_.recentLibraries()) {
    const QString shown = pathToQt(path);
    connect(recentMenu_->addAction(QString(shown).replace('&', "&&")), &QAction::triggered, this,
            [this, shown] { openPath(shown); });
  }
  const QString path = pathToQt(delegate_.libraryPath());
  const QString name = QFileInfo(path).fileName();
  libraryButton_->setText(path.isEmpty() ? tr("Library") : QString(name).replace('&', "&&"));
  libraryButton_->setToolTip(path);
}

void MainWindow::setPlaylistCommands(PlaylistCommands commands) {
  commands_ = std::move(commands);
  reload();
}

void MainWindow::revealPlaylist(const std::string& decpid) {
  leftTabs_->setCurrentWidget(outline_);
  if (!outline_->showPlaylist(decpid))
    statusBar()->showMessage(tr("The outline does not show this playlist."), messageTime);
}

void MainWindow::openDocument() {
  auto* dialog = new QFileDialog(this, tr("Open Library Document"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::ExistingFile);
  dialog->setNameFilters({tr("Library documents (*.xml)"), tr("All files (*)")});
  const QString music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
  dialog->setDirectory(delegate_.libraryPath().empty()
                           ? music
                           : QFileInfo(pathToQt(delegate_.libraryPath())).path());
  connect(dialog, &QFileDialog::fileSelected, this, &MainWindow::openPath);
  dialog->open();
}

void MainWindow::openPath(const QString& path) {
  if (!path.isEmpty()) delegate_.openLibrary(pathFromQt(QFileInfo(path).absoluteFilePath()));
}

void MainWindow::openDemo() {
  const auto path = std::make_shared<std::string>();
  delegate_.run([this, path] { *path = writeDemoLibrary(delegate_.process().with.files); },
                [this, path] { delegate_.openLibrary(*path); });
}

std::vector<std::uint32_t> MainWindow::commandRows() const {
  std::vector<std::uint32_t> rows = commandTable_->selectedRows();
  if (commandTable_ != table_)
    for (std::uint32_t& row : rows) row = delegate_.upperRowOf(row);
  return rows;
}

void MainWindow::withCommandRow(const std::function<void(std::uint32_t)>& command) {
  const auto row = commandTable_->commandRow();
  if (!row) return;
  const std::uint32_t content = commandTable_->rows().contentRow(*row);
  command(commandTable_ == table_ ? content : delegate_.upperRowOf(content));
}

void MainWindow::showContextMenu(ReviewTableView& table, const QPoint& at) {
  commandTable_ = &table;
  // Back to the upper table, which the menu bar is about, once a command has been carried out.
  connect(
      tableMenu_, &QMenu::aboutToHide, this,
      [this] {
        QMetaObject::invokeMethod(
            this, [this] { commandTable_ = table_; }, Qt::QueuedConnection);
      },
      Qt::SingleShotConnection);
  tableMenu_->popup(at);
}

void MainWindow::makeOnlyKeeper() {
  withCommandRow([this](std::uint32_t row) { delegate_.makeOnlyKeeper(row); });
}

void MainWindow::showSelection() {
  delegate_.showSelection(table_->selectedRows());
  reload();
  selection_->show();
  selection_->raise();
  selection_->activateWindow();
}

void MainWindow::copyTracks(bool paths) {
  const auto content = delegate_.process().textSorter.window.bigArrayController.content();
  QStringList lines;
  for (const std::uint32_t row : commandRows()) {
    const TrackRecord& record = *content[row].record;
    if (paths) {
      const std::string path = record.location();
      if (!path.empty()) lines << pathToQt(path);
      continue;
    }
    QStringList fields;
    for (const TrackKey key : {TrackKey::tName, TrackKey::tArtist, TrackKey::tAlbum})
      fields << toQt(record.value(key).text());
    lines << fields.join(QLatin1Char('\t'));
  }
  if (!lines.isEmpty()) QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void MainWindow::addToPlaylist() {
  const std::vector<std::uint32_t> rows = commandRows();
  if (rows.empty()) return;
  auto* dialog = new TargetPlaylistDialog(this, delegate_, rows.size());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QDialog::accepted, this, [this, rows] {
    delegate_.addToTargetPlaylist(rows, [this](std::size_t count) {
      statusBar()->showMessage(tr("Tracks added: %n.", "", static_cast<int>(count)), messageTime);
    });
  });
  dialog->open();
}

void MainWindow::trashTracks() {
  std::vector<std::uint32_t> rows = commandRows();
  if (!rows.empty()) commands_.trashTracks(std::move(rows));
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
         "Ctrl+F filters, F5 reads the library again, Esc stops a search.");
  auto* box = new QMessageBox(QMessageBox::Information, tr("Colours and Symbols"),
                              tr("Colours and symbols of the table"), QMessageBox::Ok, this);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setInformativeText(legendText() + QStringLiteral("\n\n") + keys);
  box->open();
}

}  // namespace kestrel
