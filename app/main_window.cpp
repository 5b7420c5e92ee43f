#include "app/main_window.h"

#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QVBoxLayout>

#include "app/changes/finish_bar.h"
#include "app/changes/run_bar.h"
#include "app/choices/decision_pane.h"
#include "app/choices/field_previews.h"
#include "app/choices/left_side.h"
#include "app/choices/playlists_pane.h"
#include "app/controller/app_delegate.h"
#include "app/controller/criteria.h"
#include "app/libraries/change_notice.h"
#include "app/libraries/files_elsewhere_bar.h"
#include "app/libraries/library_finder.h"
#include "app/libraries/library_menu.h"
#include "app/libraries/reading_page.h"
#include "app/libraries/welcome_page.h"
#include "app/log_window.h"
#include "app/result/compare_pane.h"
#include "app/result/empty_page.h"
#include "app/result/filter_field.h"
#include "app/result/result_area.h"
#include "app/result/result_bar.h"
#include "app/result/scope_notice.h"
#include "app/result/tick_history.h"
#include "app/result/track_player.h"
#include "app/top_bar.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "resources/artwork.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/cover_store.h"
#include "ui/qt/look.h"
#include "ui/qt/playlist_widgets.h"
#include "ui/qt/review_table_view.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

constexpr int firstWidth = 1280;
constexpr int firstHeight = 800;

}  // namespace

MainWindow::MainWindow(AppDelegate& delegate, WindowLog& log)
    : delegate_(delegate),
      log_(log),
      preferences_(delegate.process().with.preferences),
      maxDel_(preferences_),
      minDel_(preferences_) {
  if (!delegate_.recentLibraries().empty()) sortedLibrary_ = delegate_.recentLibraries().front();
  setWindowTitle(QStringLiteral("Kestrel"));
  setWindowIcon(applicationIcon());
  setAcceptDrops(true);
  resizeWithinScreen(this, {firstWidth, firstHeight});
  makeActions();
  makeResult();
  makeParts();
  layOut();
  makeMenus();
  makeStatusBar();
  connectController();
  restoreState();
  reloadSummary();
  reload();
  // The page takes the keys from there, when it has something for them.
  pages_->setFocus();
  qApp->installEventFilter(this);
}

MainWindow::~MainWindow() {
  // A table that is still there may be painted, so the tables go before the rows that they show.
  delete table_;
  delete selection_;
}

void MainWindow::makeTables() {
  MainWindowReferences& window = delegate_.process().textSorter.window;
  const auto sortUpper = [this](std::string_view column) { sortTable(column); };
  const auto sortLower = [this](std::string_view column) {
    delegate_.whenIdle(
        [this, column] { clickColumnHeader(minDel_, lowerRows_->controller(), column); });
  };
  rows_ = std::make_unique<ResultTableModel>(
      window.bigArrayController, maxDel_, ReviewTable::upper, preferences_,
      [this](std::span<const std::uint32_t> rows, bool ticked) {
        return tickChanged(ReviewTable::upper, delegate_.setTicks(rows, ticked));
      });
  table_ = new ReviewTableView(*rows_, maxDel_, ReviewTable::upper, sortUpper);
  table_->setObjectName(QStringLiteral("upperTable"));
  table_->setAccessibleName(tr("Duplicates"));
  table_->setFrameShape(QFrame::NoFrame);
  setUpUpperTable();

  // Tracks that the user has picked out of the result.
  lowerRows_ = std::make_unique<ResultTableModel>(
      window.lilArrayController, minDel_, ReviewTable::lower, preferences_,
      [this](std::span<const std::uint32_t> rows, bool ticked) {
        return tickChanged(ReviewTable::lower, delegate_.setTicksInSelection(rows, ticked));
      });
  lower_ = new ReviewTableView(*lowerRows_, minDel_, ReviewTable::lower, sortLower);
  connect(lower_, &ReviewTableView::tickOnePerGroupRequested, this,
          [this](std::vector<std::uint32_t> rows) {
            for (std::uint32_t& row : rows) row = delegate_.upperRowOf(row);
            tickOnePerGroup(rows);
          });
  lower_->setObjectName(QStringLiteral("lowerTable"));
  lower_->setAccessibleName(tr("Selected tracks"));
  selection_ = new QWidget(this, Qt::Window);
  selection_->setWindowTitle(tr("Selection"));
  selection_->resize(860, 320);
  auto* layout = new QVBoxLayout(selection_);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(lower_);
}

void MainWindow::makeResult() {
  makeTables();
  covers_ = new CoverStore(delegate_.process().with.files, this);
  player_ = new TrackPlayer(newAudioBackend(), this);
  info_ = new ComparePane(delegate_, *covers_, *player_);
  QWidget* result = newColumn({new ResultBar(delegate_, *rows_), table_}, table_);
  result->layout()->setSpacing(0);
  result_ = new ResultArea(result, info_);
  connect(table_, &ReviewTableView::tracksSelected, this, [this] { showCurrent(); });
  connect(table_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this] { showCurrent(); });
  connectComparePane();
  connect(lower_, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
    const std::uint32_t row = lowerRows_->contentRow(index.row());
    table_->selectInMiddle(rows_->rowOfContent(delegate_.upperRowOf(row)));
  });
  for (ReviewTableView* table : {table_, lower_}) {
    connect(table, &ReviewTableView::contextMenuRequested, this,
            [this, table](const QPoint& at) { showContextMenu(*table, at); });
    connect(table, &ReviewTableView::makeOnlyKeeperRequested, this,
            [this, table](std::uint32_t row) {
              if (!delegate_.makeOnlyKeeper(table == table_ ? row : delegate_.upperRowOf(row)))
                tellTicksStay();
            });
  }
  connect(rows_.get(), &QAbstractItemModel::modelReset, this, [this] { reloadFilterCount(); });
  connect(rows_.get(), &QAbstractItemModel::layoutChanged, this, [this] { reloadFilterCount(); });
}

void MainWindow::makeParts() {
  const auto useFileNames = [this] {
    delegate_.useFileNames();
    decisions_->load();
    delegate_.findDuplicates();
  };
  // What the table shows and the bars say is about what is chosen.
  const auto wholeLibrary = [this] {
    if (!delegate_.canSearch()) return;
    delegate_.process().state<PlaylistWindowReferences>().mainPlaylistPopup.selectItem(0);
    delegate_.playlistChosen();
    decisions_->searchAgain();
  };
  const auto find = [this] { delegate_.findDuplicates(); };
  const Process& process = delegate_.process();
  finder_ = std::make_unique<LibraryFinder>(process.with.files, process.with.clock,
                                            process.with.mainQueue);
  EmptyPage::Commands next;
  next.open = [this] { openDocument(); };
  next.find = find;
  next.stop = [this] { delegate_.cancel(); };
  next.clearFilter = [this] {
    filter_->clear();
    table_->setFocus();
  };
  next.wholeLibrary = wholeLibrary;
  next.useFileNames = useFileNames;
  next.without = [this](std::size_t field) {
    const auto choices = criterionChoices();
    if (field < choices.size())
      setCriterion(preferences_, choices[field].key, false);
    else
      preferences_.set(settings::criteriaCBTime, false);
    decisions_->load();
    decisions_->previews().outdate();
    delegate_.findDuplicates();
  };
  empty_ = new EmptyPage(delegate_, std::move(next));
  welcome_ = new WelcomePage(
      delegate_, *finder_,
      {[this] { openFolder(); }, [this] { openDocument(); }, [this] { connectToServer(); },
       [this] { openDemo(); }, [this](const QString& address) { openPath(address); }});
  reading_ = new ReadingPage(delegate_);
  logWindow_ = new LogWindow(this, log_);
  decisions_ = new DecisionPane(delegate_);
  decisions_->compareRules = [this] { actions_.compareRules->trigger(); };
  connect(&decisions_->previews(), &FieldPreviews::counted, empty_, &EmptyPage::showPreview);
  PlaylistsPane::Commands ofPlaylists;
  ofPlaylists.find = find;
  ofPlaylists.showInPlayer = [this](const std::string& track) { delegate_.revealTrack(track); };
  playlists_ = new PlaylistsPane(delegate_, std::move(ofPlaylists));
  connect(&playlists_->outline(), &PlaylistOutlineView::playlistChosen, this,
          [this](const std::string& decpid) {
            if (!delegate_.canSearch() || delegate_.playlists().getPIDFromList() == decpid) return;
            delegate_.choosePlaylist(decpid);
            decisions_->searchAgain();
          });
  left_ = new LeftSide(decisions_, playlists_);

  libraryMenu_ = new LibraryMenu(
      delegate_, *finder_, [this](const QString& address) { openPath(address); }, this);
  topBar_ = new TopBar(delegate_, actions_.find, actions_.history, libraryMenu_);
  filter_ = &topBar_->filter();
  filter_->installEventFilter(this);
  connect(filter_, &QLineEdit::textChanged, rows_.get(), &ResultTableModel::setFilter);
  connect(&topBar_->playlists(), &PlaylistPopupBox::playlistChosen, this, [this] {
    delegate_.playlistChosen();
    decisions_->searchAgain();
  });
  // The key that the pop-up names for the whole library.
  auto* wholeKey = new QShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_M, this);
  connect(wholeKey, &QShortcut::activated, this, wholeLibrary);
  notices_ = newColumn({new FilesElsewhereBar(delegate_), new ChangeNotice(delegate_),
                        new ScopeNotice(delegate_, wholeLibrary)});
  notices_->layout()->setSpacing(0);
}

void MainWindow::layOut() {
  pages_ = new QStackedWidget;
  for (QWidget* page : QList<QWidget*>{welcome_, reading_, empty_}) pages_->addWidget(page);
  pages_->addWidget(result_);
  sides_ = new QSplitter;
  sides_->addWidget(left_);
  sides_->addWidget(pages_);
  sides_->setStretchFactor(1, 1);
  sides_->setChildrenCollapsible(false);
  sides_->setHandleWidth(1);

  auto* bar = new FinishBar(
      delegate_, {[this] { reviewNextGroup(); }, [this] { actions_.replaylist->trigger(); },
                  [this] { actions_.remove->trigger(); }, [this] { actions_.trash->trigger(); }});
  finish_ = newColumn({new RunBar(delegate_, [this] { commands_.history(); }),
                       new DividingLine(Qt::Horizontal), bar});
  finish_->layout()->setSpacing(0);
  QWidget* all =
      newColumn({topBar_, new DividingLine(Qt::Horizontal), notices_, sides_, finish_}, sides_);
  all->layout()->setSpacing(0);
  setCentralWidget(all);
  stateDelay_.setSingleShot(true);
  stateDelay_.setInterval(1000);
  connect(&stateDelay_, &QTimer::timeout, this, &MainWindow::saveState);
  for (const QSplitter* parts : {sides_, static_cast<QSplitter*>(result_)})
    connect(parts, &QSplitter::splitterMoved, this, &MainWindow::keepStateSoon);
  for (const ReviewTableView* table : {table_, lower_})
    for (const auto change : {&QHeaderView::sectionResized, &QHeaderView::sectionMoved})
      connect(table->horizontalHeader(), change, this, &MainWindow::keepStateSoon);
  readingDelay_.setSingleShot(true);
  readingDelay_.setInterval(300);
  connect(&readingDelay_, &QTimer::timeout, this, [this] { reloadPage(); });
  observe(this, delegate_.process().textSorter.window.mainLaunchProgressWindow.observers,
          [this] { reloadPage(); });
}

void MainWindow::makeStatusBar() {
  MainWindowReferences& window = delegate_.process().textSorter.window;
  auto& playlists = delegate_.process().state<PlaylistWindowReferences>();
  summary_ = new QLabel;
  summary_->setAccessibleName(tr("Result"));
  summary_->setToolTip(tr("F1 lists the keys and the symbols."));
  summary_->setContentsMargins(6, 0, 0, 0);
  StatusLabel& summary = playlists.mainFilterStatus;
  observe(summary_, summary.observers, [this, &summary] {
    summary_->setText(toQt(summary.message()));
    summary_->setVisible(!summary.isHidden());
  });
  statusBar()->addWidget(summary_, 1);
  notesButton_ = newButton(
      {}, [this] { showNotes(); }, tr("What was left out when the library was read"));
  notesButton_->setFlat(true);
  notesButton_->setFont(smallFont(font()));
  notesButton_->hide();
  statusBar()->addPermanentWidget(notesButton_);
  const auto addProgress = [this](ProgressBar& bar, StatusText& text, const QString& name) {
    auto* label = new QLabel;
    auto* progress = new QProgressBar;
    progress->setTextVisible(false);
    progress->setFixedWidth(120);
    progress->setMaximumHeight(label->sizeHint().height() + 2);
    progress->setAccessibleName(name);
    statusBar()->addPermanentWidget(label);
    statusBar()->addPermanentWidget(progress);
    bind(label, text);
    bind(progress, bar);
  };
  addProgress(window.mainProgressBar, window.mainProgressStatus, tr("Progress of the search"));
  addProgress(window.mainProgressSpinner, window.mainProgressSpinnerStatus,
              tr("Progress of choosing keepers"));
  addProgress(playlists.mainProgressWheel, playlists.progressWheelStatusMain,
              tr("Progress of reading playlists"));
}

void MainWindow::connectController() {
  bind(this, delegate_.alerts);
  delegate_.passwordWanted = [this](const std::string& address, const Message& reason) {
    askForPassword(toQt(address), toQt(ended(Message::tr("%1: %2").arg(address).arg(reason))));
  };
  observe(this, delegate_.observers, [this] { reload(); });
  observe(this, delegate_.libraryObservers, [this] {
    topBar_->reload();
    // What is searched, which is not what is stored when that is gone.
    playlists_->showPlaylist(delegate_.canSearch() ? delegate_.playlists().getPIDFromList()
                                                   : std::string());
    decisions_->load();
    reloadPage();
  });
  observe(this, delegate_.summaryObservers, [this] {
    reloadSummary();
    info_->reload();
  });
  observe(this, delegate_.flagObservers, [this] {
    table_->reloadFlags();
    if (selection_->isVisible()) lower_->reloadFlags();
  });
}

void MainWindow::tellTicksStay() {
  say(tr("Ticks stay as they are while a task is running."));
  // The status bar may be behind the Selection window.
  QApplication::beep();
}

bool MainWindow::tickChanged(ReviewTable clicked, bool done) {
  if (!done) {
    tellTicksStay();
    return false;
  }
  const bool lowerVisible = selection_->isVisible();
  const std::vector<TableReload> reloads = clicked == ReviewTable::upper
                                               ? maxDel_.clickedACheckBox(lowerVisible)
                                               : minDel_.clickedACheckBox(lowerVisible);
  // A reload keeps the selection: only what is painted is asked for again.
  for (const TableReload& reload : reloads)
    (reload.table == ReviewTable::upper ? *table_ : *lower_).reloadFlags();
  return true;
}

}  // namespace kestrel
