/// The program with its real main window and files in a private home.
#pragma once

#include <QComboBox>
#include <QHeaderView>
#include <QTest>

#include "app/controller/app_delegate.h"
#include "app/main_window.h"
#include "app/program.h"
#include "tests/platform/temporary_folder.h"
#include "tools/make_library/demo.h"
#include "ui/qt/review_table_view.h"
#include "ui/table_columns.h"

namespace kestrel::testing {

inline int columnOf(std::string_view identifier) {
  const auto columns = tableColumns();
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (columns[i].identifier == identifier) return static_cast<int>(i);
  return -1;
}

/// A home of the test's own with a library in it.
class PrivateHome {
 public:
  PrivateHome() {
    make_library::Options options;
    options.tracks = 120;
    options.seed = make_library::kDemoSeed;
    options.duplicatePercent = 30;
    make_library::writeDemo(library().toStdString(), options);
  }
  [[nodiscard]] QString path(const QString& name) const {
    return QString::fromStdString(folder_ / name.toStdString());
  }
  /// Returns the file's path.
  [[nodiscard]] QString write(const std::string& name, const std::string& text) const {
    return QString::fromStdString(folder_.write(name, text));
  }
  [[nodiscard]] QString library() const { return path("Music/Library.xml"); }
  /// Programs started from now on find their settings and data nowhere else.
  void use(const QString& name) const {
    for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
      qputenv(variable, (path(name) + '/' + QString(variable).toLower()).toUtf8());
  }

 private:
  TemporaryFolder folder_;
};

/// A running program.
class Running {
 public:
  explicit Running(const QString& library = {}, bool opensLast = true) {
    program_.begin(library, opensLast);
    // Shortcuts and focus are the active window's.
    QVERIFY2(QTest::qWaitForWindowActive(&window(), 20000), "no window");
  }

  MainWindow& window() { return program_.window(); }
  AppDelegate& delegate() { return program_.delegate(); }
  Preferences& preferences() { return program_.preferences(); }
  WorkerQueue& worker() { return program_.worker(); }
  bool becomesIdle() {
    return QTest::qWaitFor([this] { return !delegate().isBusy(); }, 20000);
  }
  void open(const QString& path) {
    window().openPath(path);
    QVERIFY(becomesIdle());
  }
  void search() {
    QVERIFY(delegate().findDuplicates());
    QVERIFY(becomesIdle());
    QCOMPARE(delegate().situation(), Situation::result);
  }

  /// The visible widget of a sort with this text, mnemonics left out; or accessible name.
  template <typename Widget>
  Widget* find(const QString& text) {
    Widget* found = nullptr;
    const bool there = QTest::qWaitFor([&] {
      for (Widget* widget : window().findChildren<Widget*>())
        if (widget->isVisibleTo(&window()) &&
            (widget->property("text").toString().remove('&') == text ||
             widget->accessibleName() == text))
          found = widget;
      return found != nullptr;
    });
    if (!there) qFatal("There is no %s", qPrintable(text));
    return found;
  }
  ReviewTableView& table() { return *window().findChild<ReviewTableView*>("upperTable"); }
  /// The table of the Selection window.
  ReviewTableView& lower() { return *window().findChild<ReviewTableView*>("lowerTable"); }
  ResultTableModel& rows() { return table().rows(); }
  std::vector<bool> ticks() {
    std::vector<bool> ticks;
    for (const ResultTrack& track : rows().controller().content()) ticks.push_back(track.tCheckbox);
    return ticks;
  }
  QString text(int row, std::string_view column) {
    return rows().index(row, columnOf(column)).data().toString();
  }
  void click(int row, int column) { click(table(), row, column); }
  static void click(ReviewTableView& table, int row, int column) {
    const QRect cell = table.visualRect(table.rows().index(row, column));
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, cell.center());
  }
  void clickBox(int row) {
    const QRect box = keepMarkPlace(table().visualRect(rows().index(row, 0)), false);
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, box.center());
  }
  void clickHeader(std::string_view column) {
    QHeaderView* header = table().horizontalHeader();
    const int section = columnOf(column);
    table().scrollTo(rows().index(0, section));
    const QPoint at(header->sectionViewportPosition(section) + header->sectionSize(section) / 2,
                    header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, at);
  }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&table(), key, modifiers);
  }

 private:
  Program program_;
};

/// A running program that shows the duplicates of a library.
class Searched : public Running {
 public:
  /// Without headings row numbers are those of tracks.
  explicit Searched(const QString& library, bool headings = false) {
    open(library);
    rows().setHeadings(headings);
    search();
  }
};

}  // namespace kestrel::testing
