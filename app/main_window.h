/// The main window: what the user decides on the left, the result of a search on the right.
#pragma once

#include <QMainWindow>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "app/changes/playlist_windows.h"
#include "ui/review_tables.h"

class QAction;
class QFileDialog;
class QLabel;
class QMenu;
class QPushButton;
class QSplitter;
class QStackedWidget;

namespace kestrel {

class AppDelegate;
class ComparePane;
class ConnectDialog;
class CoverStore;
class DecisionPane;
class EmptyPage;
class FilterField;
class LeftSide;
class LibraryFinder;
class LibraryMenu;
class LogWindow;
class PlaylistsPane;
class Preferences;
class ReadingPage;
class ResultArea;
class ResultTableModel;
class ReviewTableView;
class TickHistory;
class TopBar;
class WelcomePage;
class TrackPlayer;
class WindowLog;
struct Collaborators;

class MainWindow final : public QMainWindow {
  Q_OBJECT

 public:
  /// Both must outlive the window.
  MainWindow(AppDelegate& delegate, WindowLog& log);
  ~MainWindow() override;

  /// Offers these commands from now on.
  void setPlaylistCommands(PlaylistCommands commands);
  /// Shows a playlist in the outline; for what the music application is asked to reveal.
  void revealPlaylist(const std::string& decpid);
  [[nodiscard]] AppDelegate& delegate() const { return delegate_; }

  /// The same commands as the menus'.
  void openDocument();
  void openFolder();
  void connectToServer();
  /// The same again of a server that asks for a password, with what it says.
  void askForPassword(const QString& address, const QString& reason);
  void openPath(const QString& path);
  void openDemo();
  void addFiles();
  void showSelection();
  void addToPlaylist();
  void showSettings();

 protected:
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  struct Actions {
    QAction *open, *openFolder, *connectToServer, *demo, *notes, *settings, *addFiles, *refresh,
        *refreshPlaylists, *quit;
    QAction *find, *stop, *searchAtStart, *replaylist, *replaylistSelection, *cleanUp, *trash;
    QAction *remove, *exportTable, *compareRules, *compareSounds, *compareSoundHere;
    QAction *history, *filter, *selectAll, *showSelection, *makeKeeper, *nextUndecided, *reveal;
    QAction *covers, *play, *notDuplicates;
    QAction *copy, *copyPath, *addToPlaylist, *trashTracks, *log, *legend, *about;
  };

  void makeActions();
  void makeMenus();
  void makeTables();
  void makeResult();
  void makeParts();
  void layOut();
  void makeStatusBar();
  void connectController();

  void reload();
  void reloadPage();
  ConnectDialog* newConnectDialog();
  void showNotes();
  void reloadSummary();
  void reloadFilterCount();
  void restoreSort();
  /// Goes to the track again that the user was at before a search, if that has found it.
  void restoreCurrent();
  /// As a click on the column's header asks for: at once, or on the worker when there are many
  /// rows.
  void sortTable(std::string_view column);
  /// What the model and the view of the upper table ask for.
  void setUpUpperTable();
  void connectComparePane();
  /// Shows the group of the row that the keys are in, and goes on playing with its track.
  void showCurrent();
  void showCovers(bool shown);
  /// Of a row of the upper table's content: empty when its file is not here.
  [[nodiscard]] QString pathOf(std::uint32_t row) const;
  void play(std::uint32_t row);
  /// Takes the groups of the selected tracks out: they are no duplicates.
  void setNotDuplicates();
  /// Listens to the copies of all groups, or of the selected tracks', and tells what came of it.
  void compareSounds(bool ofAll);
  /// The column of what was heard.
  void showSoundColumn(bool shown);
  void tickOnePerGroup(const std::vector<std::uint32_t>& rows);
  /// Shows what follows from ticks in a table, or why they were refused; returns `done`.
  bool tickChanged(ReviewTable clicked, bool done);
  void tellTicksStay();
  /// Of the group whose heading the user is at.
  void showGroupMenu(const QPoint& at);
  void showContextMenu(ReviewTableView& table, const QPoint& at);
  /// That the commands of the menu "Track" are about: the Selection window's while it has the keys
  /// or its context menu is open.
  [[nodiscard]] ReviewTableView& commandTable() const;
  [[nodiscard]] std::vector<std::uint32_t> commandRows() const;
  /// That an action is about, when these rows of the upper table's content are selected;
  /// `takeSelected`: the command names the selection.
  [[nodiscard]] ActionScope scopeOf(const std::vector<std::uint32_t>& selectedRows,
                                    bool takeSelected = false) const;
  void withCommandRow(const std::function<void(std::uint32_t)>& command);
  void copyTracks(bool paths);
  void replaylistSelection();
  void exportTable();
  /// Round the table from the current row on, in the table's order.
  void showNextUndecidedGroup();
  /// The next one that somebody should look at: without a keeper, or else doubtful.
  void reviewNextGroup();
  /// Of those that are wanted; false when there is none beside the group at hand.
  bool showNextGroup(const std::function<bool(std::int32_t)>& isWanted);
  /// In the status bar, for a while.
  void say(const QString& text);
  void showHelp();
  /// To choose a file, in the folder for music at first; closing deletes it.
  QFileDialog* newFileDialog(const QString& title, const QStringList& filters);
  /// What was dropped: opens a library, or adds files.
  void take(const QStringList& files);
  /// Offers the run that adds them to the library.
  void addFiles(const QStringList& paths);
  void keepStateSoon();
  void saveState();
  void restoreState();

  AppDelegate& delegate_;
  WindowLog& log_;
  Preferences& preferences_;
  PlaylistCommands commands_;
  KSMaxDel maxDel_;
  KSMinDel minDel_;
  bool sortRestored_ = false;
  std::string keptColumn_;  ///< that the tracks were sorted by when the library was read again
  bool keptAscending_ = true;
  std::string sortedLibrary_;  ///< the last one of the run before
  std::uint64_t atTrack_ = 0;  ///< where the user is when a search begins; 0: nowhere
  ReviewTableView* contextMenuTable_ = nullptr;  ///< until the menu's command is carried out

  Actions actions_{};
  std::unique_ptr<ResultTableModel> rows_;
  std::unique_ptr<ResultTableModel> lowerRows_;
  QMenu* tableMenu_ = nullptr;
  QMenu* showInMenu_ = nullptr;
  std::unique_ptr<LibraryFinder> finder_;
  LibraryMenu* libraryMenu_ = nullptr;
  TopBar* topBar_ = nullptr;
  FilterField* filter_ = nullptr;
  QSplitter* sides_ = nullptr;
  ResultArea* result_ = nullptr;
  LeftSide* left_ = nullptr;
  DecisionPane* decisions_ = nullptr;
  PlaylistsPane* playlists_ = nullptr;
  QStackedWidget* pages_ = nullptr;
  EmptyPage* empty_ = nullptr;
  WelcomePage* welcome_ = nullptr;
  ReadingPage* reading_ = nullptr;
  QTimer stateDelay_;    ///< until the window's new size is kept
  QTimer readingDelay_;  ///< what is read at once is not announced
  bool readingDue_ = false;
  QWidget* finish_ = nullptr;   ///< with its line
  QWidget* notices_ = nullptr;  ///< bars over the table
  QPushButton* notesButton_ = nullptr;
  ReviewTableView* table_ = nullptr;
  TickHistory* history_ = nullptr;
  ComparePane* info_ = nullptr;
  CoverStore* covers_ = nullptr;
  TrackPlayer* player_ = nullptr;
  QWidget* selection_ = nullptr;  ///< the window of the lower table
  ReviewTableView* lower_ = nullptr;
  LogWindow* logWindow_ = nullptr;
  QLabel* summary_ = nullptr;
};

}  // namespace kestrel
