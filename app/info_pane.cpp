#include "app/info_pane.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>

#include "app/controller/app_delegate.h"
#include "ui/launch.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/table_painting.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

constexpr int followDelay = 60;  // milliseconds
constexpr int restDelay = 200;
/// The delegate reckons with lines of this height in a row of that one.
constexpr double lineHeight = 15;

/// The tables' tags: what the track's file is.
int tagOf(FileAvailability availability) {
  if (availability == FileAvailability::missing) return 0;
  return availability == FileAvailability::cloud ? 2 : 1;
}

}  // namespace

InfoPane::InfoPane(AppDelegate& delegate)
    : delegate_(delegate),
      title_(newPlainLabel(tr("Selected track"))),
      reason_(newPlainLabel(tr("Why it is kept"))),
      playlists_(newPlainLabel(tr("Playlists that hold it"))),
      table_(new QTableWidget(0, 2)) {
  setBold(title_);
  playlists_->setTextFormat(Qt::RichText);
  playlists_->setTextInteractionFlags(Qt::TextBrowserInteraction);
  connect(playlists_, &QLabel::linkActivated, this, &InfoPane::playlistActivated);

  table_->setHorizontalHeader(new TitleHeader(table_));
  table_->setHorizontalHeaderLabels({tr("Field"), tr("Value")});
  table_->horizontalHeaderItem(0)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  table_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  table_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table_->setShowGrid(false);
  table_->setFrameShape(QFrame::NoFrame);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setSelectionMode(KSInfoDel::selectionShouldChangeInTableView()
                               ? QAbstractItemView::SingleSelection
                               : QAbstractItemView::NoSelection);
  table_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  table_->setTabKeyNavigation(false);
  table_->setAccessibleName(tr("Track information"));

  auto* words = new QWidget;
  auto* column = new QVBoxLayout(words);
  column->addWidget(title_);
  column->addWidget(reason_);
  column->addWidget(playlists_);
  column->addStretch(1);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(words, 2);
  layout->addWidget(table_, 3);

  for (QTimer* timer : {&delay_, &rest_}) timer->setSingleShot(true);
  delay_.setInterval(followDelay);
  rest_.setInterval(restDelay);
  connect(&delay_, &QTimer::timeout, this, &InfoPane::showNow);
  connect(&rest_, &QTimer::timeout, this, &InfoPane::ask);
  observe(this, delegate_.libraryObservers, [this] { answer_.reset(); });
  showNow();
}

void InfoPane::showTracks(std::size_t count, std::uint32_t row) {
  count_ = count;
  row_ = row;
  delay_.start();
}

void InfoPane::showNow() {
  // A task may be changing what this tells of; at its end the pane is asked again.
  if (delegate_.isBusy()) return;
  rest_.stop();
  shownPid_.clear();
  const auto content = delegate_.content();
  if (count_ != 1 || row_ >= content.size()) {
    title_->setText(count_ > 1 ? tr("%n tracks are selected.", "", static_cast<int>(count_))
                               : tr("Select a track to see why it is kept or not."));
    reason_->clear();
    playlists_->clear();
    table_->setRowCount(0);
    table_->hide();
    return;
  }
  const ResultTrack& track = content[row_];
  const QString name = toQt(track.value(TrackKey::tName).text());
  const QString artist = toQt(track.value(TrackKey::tArtist).text());
  title_->setText(artist.isEmpty() ? name : name + QStringLiteral(" — ") + artist);

  const QString why = toQt(delegate_.keptBecause(row_));
  const QString kept = delegate_.groups().isKeeper(row_) ? tr("◆ Kept because: %1")
                                                         : tr("Not kept. The group's keeper: %1");
  reason_->setText(why.isEmpty() ? why : kept.arg(why));

  QStringList links;
  for (const PlaylistRecord& playlist : delegate_.playlistsHolding(row_))
    links << QStringLiteral("<a href=\"%1\">%2</a>")
                 .arg(toQt(playlist.decpid), toQt(playlist.pnom).toHtmlEscaped());
  playlists_->setText(links.isEmpty() ? tr("In no playlist.")
                                      : tr("In %1").arg(links.join(QStringLiteral(", "))));
  shownPid_ = track.value(TrackKey::hexpid).text();
  showTable(track);
  if (!answer_ || answer_->hexpid != shownPid_) rest_.start();
}

void InfoPane::ask() {
  if (shownPid_.empty()) return;
  const auto answer = std::make_shared<Answer>();
  answer->hexpid = shownPid_;
  const auto question = [answer] {
    answer->cloudStatus = TextSorter::cloudStatusByTrackPid(answer->hexpid).value_or("");
    answer->location = TextSorter::locationByTrackPid(answer->hexpid).value_or("");
  };
  delegate_.ask(question, [pane = QPointer(this), answer] {
    if (!pane) return;
    pane->answer_ = *answer;
    // The user may have gone on to another track meanwhile, which is asked about by itself.
    if (pane->shownPid_ == answer->hexpid) pane->delay_.start();
  });
}

std::vector<TrackInfoRow> InfoPane::rowsOf(const ResultTrack& track) {
  std::vector<TrackInfoRow> rows = trackInfoRows(track, dates_, inUsersWords);
  if (!answer_ || answer_->hexpid != shownPid_) return rows;
  const auto tell = [&rows](std::string_view label, const std::string& value, bool replaces) {
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [&](const auto& row) { return row.tLabel == label; });
    if (value.empty()) return;
    if (found == rows.end())
      rows.push_back({std::string(label), value});
    else if (replaces)
      found->tValue = value;
  };
  if (answer_->cloudStatus != "Unknown")
    tell("Cloud Status", inUsersWords(worded(answer_->cloudStatus)), true);
  tell("Location", answer_->location, track.record->location().empty());
  return rows;
}

void InfoPane::showTable(const ResultTrack& track) {
  const std::vector<TrackInfoRow> rows = rowsOf(track);
  const int tag = tagOf(track.record->availability());
  const QPalette palette = QGuiApplication::palette();
  table_->setPalette(tablePalette(palette));
  table_->setRowCount(static_cast<int>(rows.size()));
  const auto cell = [&](std::string_view column, const QString& text) {
    auto* item = new QTableWidgetItem(text);
    item->setForeground(toQt(KSInfoDel::viewForTableColumn(column, tag).textColor, palette));
    item->setFlags(Qt::ItemIsEnabled);
    return item;
  };
  for (int i = 0; i < table_->rowCount(); ++i) {
    const TrackInfoRow& row = rows[static_cast<std::size_t>(i)];
    table_->setItem(i, 0, cell("tLabel", translated(row.tLabel)));
    table_->setItem(i, 1, cell("tValue", toQt(row.tValue)));
  }
  table_->show();
  setRowHeights();
}

void InfoPane::setRowHeights() {
  const QFontMetrics metrics(table_->font());
  const auto textHeight = [&](std::string_view text, double width, double height) {
    const QRect box(0, 0, static_cast<int>(width), static_cast<int>(height));
    const int needed = metrics.boundingRect(box, Qt::TextWordWrap, toQt(text)).height();
    return lineHeight * needed / metrics.height();
  };
  const int margin = 8;
  for (int i = 0; i < table_->rowCount(); ++i) {
    const TrackInfoRow row{{}, fromQt(table_->item(i, 1)->text())};
    const double height = KSInfoDel::heightOfRow(row, table_->columnWidth(1) - margin, textHeight);
    table_->setRowHeight(i, static_cast<int>(height * metrics.height() / lineHeight));
    // A label stands beside the first line of its value.
    const bool isOneLine = table_->rowHeight(i) < 2 * metrics.height();
    const Qt::Alignment vertical = isOneLine ? Qt::AlignVCenter : Qt::AlignTop;
    table_->item(i, 0)->setTextAlignment(Qt::AlignRight | vertical);
    table_->item(i, 1)->setTextAlignment(Qt::AlignLeft | vertical);
  }
}

void InfoPane::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  setRowHeights();
}

}  // namespace kestrel
