// The tracks panel on the screen: its titles, and the table of the non-keepers next to their
// keepers.

#include "ui/tracks_panel.h"

#include <QAbstractTableModel>
#include <QAbstractTextDocumentLayout>
#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTextDocument>
#include <array>
#include <map>
#include <utility>

#include "app/changes/playlist_windows.h"
#include "app/controller/app_delegate.h"
#include "musicapp/requests.h"
#include "ui/custom_views.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/table_painting.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"
#include "ui/replaylist_control.h"

namespace kestrel {
namespace {

struct PanelTexts {
  Q_DECLARE_TR_FUNCTIONS(kestrel::PairsTable)
};

constexpr std::array<std::string_view, 2> columnIdentifiers = {"nonkeeper", "keeper"};
constexpr int cellMargin = 5;

class PairsModel final : public QAbstractTableModel {
 public:
  PairsModel(ArrayController<TracksPanelRow>& rows, QObject* parent)
      : QAbstractTableModel(parent), rows_(rows) {
    // What was there is gone when the observer is told.
    observe(this, rows_.observers, [this] {
      beginResetModel();
      count_ = static_cast<int>(rows_.size());
      endResetModel();
    });
    count_ = static_cast<int>(rows_.size());
  }
  [[nodiscard]] int rowCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : count_;
  }
  [[nodiscard]] int columnCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : static_cast<int>(columnIdentifiers.size());
  }
  [[nodiscard]] TrackTexts texts(const QModelIndex& index) const {
    const TracksPanelRow& row = rows_.arrangedRows()[static_cast<std::size_t>(index.row())];
    return index.column() == 0 ? ReplaylistControl::nonkeeperTexts(row, inUsersWords)
                               : ReplaylistControl::keeperTexts(row, inUsersWords);
  }
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::AccessibleTextRole)
      return {};
    const TrackTexts held = texts(index);
    QStringList parts{toQt(held.nameTime)};
    for (const std::string* text : {&held.tkInfo, &held.dcInfo, &held.mess.text})
      if (!text->empty()) parts << toQt(*text);
    return parts.join(role == Qt::ToolTipRole ? QStringLiteral("\n") : QStringLiteral(", "));
  }
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override {
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::TextAlignmentRole) return int(Qt::AlignLeft | Qt::AlignVCenter);
    if (role != Qt::DisplayRole) return {};
    return section == 0 ? PanelTexts::tr("Non-Keeper") : PanelTexts::tr("Keeper");
  }

 private:
  ArrayController<TracksPanelRow>& rows_;
  int count_ = 0;
};

/// Draws the texts of a cell in three lines: name and time, numbers, caption.
class PairsPainter final : public QStyledItemDelegate {
 public:
  PairsPainter(Log& log, const PairsModel& model, QObject* parent)
      : QStyledItemDelegate(parent), log_(log) {
    connect(&model, &QAbstractItemModel::modelReset, this, [this] { cells_.clear(); });
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const CellView& cell = cellAt(index);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->fillRect(option.rect, cell.background ? toQt(*cell.background, option.palette)
                                                   : option.palette.color(QPalette::Base));
    QTextDocument document;
    lay(document, static_cast<const PairsModel&>(*index.model()).texts(index), option.font);
    painter->setClipRect(option.rect);
    painter->translate(option.rect.left() + cellMargin, option.rect.top() + cellMargin);
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = option.palette;
    // Cells keep their looks when selected; only the frame around the row tells.
    const bool inverted = KSTableCellView::setBackgroundStyle(selected ? BackgroundStyle::emphasized
                                                                       : BackgroundStyle::normal) ==
                          BackgroundStyle::emphasized;
    context.palette.setColor(
        QPalette::Text,
        option.palette.color(inverted ? QPalette::HighlightedText : QPalette::WindowText));
    document.documentLayout()->draw(painter, context);
    painter->restore();
    if (!selected) return;
    painter->setPen(QPen(option.palette.color(QPalette::Highlight), 2));
    const QRect frame = option.rect.adjusted(0, 1, 0, -1);
    painter->drawLine(frame.topLeft(), frame.topRight());
    painter->drawLine(frame.bottomLeft(), frame.bottomRight());
  }

  static void lay(QTextDocument& document, const TrackTexts& texts, const QFont& font) {
    // The captions come in this size, which the rest of the cell must not fall behind.
    QFont large = font;
    large.setPointSize(11);
    document.setDefaultFont(large);
    document.setDocumentMargin(0);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    document.setDefaultTextOption(option);
    QStringList numbers;
    for (const std::string* text : {&texts.tkInfo, &texts.dcInfo})
      if (!text->empty()) numbers << toQt(*text).toHtmlEscaped();
    document.setHtml(QStringList{toQt(texts.nameTime).toHtmlEscaped(),
                                 numbers.join(QStringLiteral(" · ")), htmlOf(texts.mess)}
                         .join(QStringLiteral("<br>")));
  }

 private:
  /// Asked for when a cell is seen for the first time, and kept as long as the rows stay.
  const CellView& cellAt(const QModelIndex& index) const {
    const auto [found, isNew] = cells_.try_emplace({index.row(), index.column()});
    if (isNew)
      found->second = KSRepTrackTableDel::viewForTableColumn(
          columnIdentifiers[static_cast<std::size_t>(index.column())], log_);
    return found->second;
  }

  Log& log_;
  mutable std::map<std::pair<int, int>, CellView> cells_;
};

QString whyNotShown(const TrackRecord& track) {
  if (track.availability() == FileAvailability::cloud)
    return PanelTexts::tr("It is in the cloud: there is no local file.");
  const QString path = pathToQt(filePath(track.item()));
  return path.isEmpty() ? PanelTexts::tr("The library names no file for it.")
                        : PanelTexts::tr("Its file is missing: %1").arg(path);
}

int pairHeight(const QFont& font) {
  TrackTexts tallest{{"X", {}}, "X", "X", {}};
  tallest.mess.setPoints(11);
  QTextDocument document;
  PairsPainter::lay(document, tallest, font);
  return static_cast<int>(document.size().height()) + 2 * cellMargin;
}

/// A single click does nothing; a double click shows a track in the music application, the
/// non-keeper in the left half, the keeper in the right one. Return and Shift with Return do the
/// same for the row that the arrow keys lead to.
class PairsTable final : public QTableView {
  Q_DECLARE_TR_FUNCTIONS(kestrel::PairsTable)

 public:
  PairsTable(AppDelegate& delegate, ReplaylistWindowReferences& window)
      : delegate_(delegate), window_(window) {
    setHorizontalHeader(new TitleHeader(this));
    auto* model = new PairsModel(window.knkArrayController, this);
    setModel(model);
    setItemDelegate(new PairsPainter(delegate.process().with.log, *model, this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setTabKeyNavigation(false);
    setVerticalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(pairHeight(font()));
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    horizontalHeader()->setHighlightSections(false);
    setAccessibleName(tr("Non-keepers and their keepers"));
    setToolTip(
        tr("Double-click a non-keeper to show it in its playlist, a keeper to show it in the "
           "library"));
  }

 protected:
  void changeEvent(QEvent* event) override {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
      verticalHeader()->setDefaultSectionSize(pairHeight(font()));
  }

  void mousePressEvent(QMouseEvent* event) override {
    press(1, event->position().x(), rowAt(event->position().toPoint().y()));
  }

  void mouseDoubleClickEvent(QMouseEvent* event) override {
    press(2, event->position().x(), rowAt(event->position().toPoint().y()));
  }

  void mouseMoveEvent(QMouseEvent*) override {}

  void keyPressEvent(QKeyEvent* event) override {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && currentIndex().isValid())
      return press(2, event->modifiers().testFlag(Qt::ShiftModifier) ? viewport()->width() : 0,
                   currentIndex().row());
    QTableView::keyPressEvent(event);
  }

  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override {
    QTableView::currentChanged(current, previous);
    if (current.isValid()) KSRepTrackTableDel::shouldSelectRow(delegate_.process().with.log);
  }

 private:
  void press(int clickCount, double x, int row) {
    Process& process = delegate_.process();
    MusicApplication* application = process.with.application;
    const TablePress press{clickCount, x, static_cast<double>(viewport()->width()), row};
    if (clickCount < 2 || row < 0) {
      KSRepTrackTableView(application, process.with.log)
          .mouseDown(press, [](std::size_t, std::string_view) { return Value(); });
      return;
    }
    // The application may take its time.
    const TracksPanelRow pair =
        window_.knkArrayController.arrangedRows()[static_cast<std::size_t>(row)];
    delegate_.run(
        [application, &log = process.with.log, press, pair] {
          if (press.onNonkeeper())
            request::revealPlaylist(application, log, pair.value("playlistPID").text());
          KSRepTrackTableView(application, log)
              .mouseDown(press, [&](std::size_t, std::string_view keyPath) {
                return pair.value(keyPath);
              });
        },
        [table = QPointer(this), press, pair] {
          const TrackRecord* track = press.onNonkeeper() ? pair.nonkeeper : pair.keeper;
          if (!table || !track || track->availability() == FileAvailability::reachable) return;
          showAlert(table->window(), tr("The track could not be shown."), whyNotShown(*track),
                    {tr("OK")}, [](int) {});
        });
  }

  AppDelegate& delegate_;
  ReplaylistWindowReferences& window_;
};

}  // namespace

QWidget* newTracksPanel(AppDelegate& delegate, ReplaylistWindowReferences& window) {
  auto* title = new QLabel;
  title->setTextFormat(Qt::PlainText);
  title->setAccessibleName(PanelTexts::tr("Playlist"));
  setBold(title);
  auto* keeperTitle = new QLabel;
  keeperTitle->setAccessibleName(PanelTexts::tr("Keeper rule"));
  bind(title, window.tracksPanelTitle);
  bind(keeperTitle, window.tracksPanelKeeperTitle,
       [] { return ReplaylistControl::configureKeepersTitle(inUsersWords); });
  auto* table = new PairsTable(delegate, window);
  QWidget* panel = newColumn({title, keeperTitle, table}, table);
  follow(panel, window.tracksPanel.observers,
         [panel, &window] { panel->setVisible(window.tracksPanel.isVisible()); });
  return panel;
}

}  // namespace kestrel
