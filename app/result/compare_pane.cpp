#include "app/result/compare_pane.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QPushButton>
#include <QResizeEvent>
#include <QScrollArea>
#include <algorithm>
#include <memory>

#include "app/controller/app_delegate.h"
#include "app/result/compare_words.h"
#include "app/result/group_comparison.h"
#include "app/result/track_player.h"
#include "ui/library_files.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/look.h"
#include "ui/qt/result_row_painter.h"
#include "ui/qt/table_painting.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

constexpr int followDelay = 60;  // milliseconds
constexpr int restDelay = 200;
constexpr std::size_t mostCopies = 12;
constexpr int coverSide = 160;
constexpr int leastCopyWidth = 80, mostCopyWidth = 200;
constexpr int betweenColumns = 8, paneMargin = 16;
constexpr int scrollBarWidth = 18;
constexpr int lowPane = 320, lowestPaneWithCovers = 192, smallCover = 48;
constexpr int lastLine = 100;  // beyond all fields: takes the room that is left

QString accentDot() {
  return QStringLiteral("<span style=\"color:%1\">●</span> ")
      .arg(lookColor("accent", QGuiApplication::palette()).name());
}

QLabel* newValue(const QString& text, bool isBetter) {
  auto* label = new QLabel;
  const QString shown = breakable(text);
  label->setTextFormat(isBetter ? Qt::RichText : Qt::PlainText);
  label->setWordWrap(true);
  label->setText(isBetter ? accentDot() + shown.toHtmlEscaped() : shown);
  label->setAlignment(Qt::AlignLeading | Qt::AlignTop);
  if (isBetter) setBold(label);
  if (!isBetter) return label;
  label->setAccessibleName(ComparePane::tr("%1, the better one").arg(text));
  return label;
}

QLabel* newQuietLabel(const QString& text = {}) {
  auto* label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  setTextColor(label, "grayText");
  return label;
}

QPixmap framed(const QPixmap& cover, int side, bool isSelected, const QWidget* widget) {
  const double ratio = widget->devicePixelRatioF();
  QPixmap picture(QSize(side, side) * ratio);
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath frame;
  frame.addRoundedRect(QRectF(0, 0, side, side), gridStep, gridStep);
  painter.setClipPath(frame);
  painter.fillPath(frame, lookColor("badgeGround", QGuiApplication::palette()));
  if (cover.isNull())
    paintNote(painter, QRect(0, 0, side, side));
  else
    painter.drawPixmap(QRect(0, 0, side, side), cover);
  if (isSelected) {
    painter.setClipping(false);
    painter.setPen(QPen(lookColor("accent", QGuiApplication::palette()), 2));
    painter.drawRoundedRect(QRectF(1, 1, side - 2, side - 2), gridStep - 1, gridStep - 1);
  }
  return picture;
}

/// What is so already, and can be pressed all the same: words that begin where all others of its
/// column do.
class StateButton final : public QPushButton {
 public:
  explicit StateButton(const QString& state) : QPushButton(state) {
    setBold(this);
    setAttribute(Qt::WA_Hover);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette desktop = QGuiApplication::palette();
    if (isDown() || underMouse()) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(lookColor("badgeGround", desktop));
      painter.drawRoundedRect(rect(), 4, 4);
    }
    painter.setPen(QPen(lookColor("accent", desktop), 1));
    painter.setBrush(Qt::NoBrush);
    if (hasFocus()) painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    painter.drawText(rect().adjusted(2, 0, -2, 0), Qt::AlignVCenter | Qt::AlignLeading, text());
  }
};

QString timeText(qint64 milliseconds) {
  const qint64 seconds = milliseconds / 1000;
  return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

}  // namespace

ComparePane::ComparePane(AppDelegate& delegate, CoverSource& covers, TrackPlayer& player)
    : delegate_(delegate),
      covers_(covers),
      player_(player),
      parts_(new QBoxLayout(QBoxLayout::TopToBottom)),
      words_(new CompareWords(delegate)),
      tablePlace_(new QWidget) {
  setAccessibleName(tr("Comparison of the copies"));
  auto* place = new QVBoxLayout(tablePlace_);
  place->setContentsMargins(0, 0, 0, 0);
  parts_->setContentsMargins(paneMargin, paneMargin, paneMargin, paneMargin);
  parts_->setSpacing(paneMargin);
  parts_->addWidget(tablePlace_, 0, Qt::AlignTop);
  parts_->addWidget(words_, 1, Qt::AlignTop);
  connect(words_, &CompareWords::grown, this, &ComparePane::takeRoom);
  auto* inside = new QWidget;
  inside->setLayout(parts_);
  auto* scroll = new QScrollArea;
  scroll->setWidget(inside);
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setAccessibleName(tr("Comparison of the copies"));
  setGround(scroll->viewport(), "paneGround");
  setGround(inside, "paneGround");
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(scroll);

  for (QTimer* timer : {&delay_, &rest_}) timer->setSingleShot(true);
  delay_.setInterval(followDelay);
  rest_.setInterval(restDelay);
  connect(&delay_, &QTimer::timeout, this, &ComparePane::showNow);
  connect(&rest_, &QTimer::timeout, this, [this] {
    askPlaylists();
    if (!answer_ || answer_->hexpid != shownPid_) ask();
  });
  connect(&player_, &TrackPlayer::changed, this, &ComparePane::reloadPlayer);
  connect(&player_, &TrackPlayer::moved, this, &ComparePane::reloadPlayer);
  observe(this, delegate_.libraryObservers, [this] {
    answer_.reset();
    delay_.start();
  });
  showNow();
}

void ComparePane::showTracks(std::size_t count, std::uint32_t row) {
  count_ = count;
  row_ = row;
  delay_.start();
}

void ComparePane::clear() {
  rest_.stop();
  shownPid_.clear();
  copies_.clear();
  delete table_;
  table_ = nullptr;
  grid_ = nullptr;
  cells_.clear();
}

void ComparePane::showNow() {
  // A task may be changing what this tells of; at its end the pane is asked again.
  if (delegate_.isBusy()) return;
  clear();
  const auto content = delegate_.content();
  if (count_ == 0 || row_ >= content.size()) return words_->showNothing();
  const ResultTrack& track = content[row_];
  shownPid_ = track.value(TrackKey::hexpid).text();
  addCopies(track.tGroupID);
  std::vector<const ResultTrack*> tracks;
  for (const Copy& copy : copies_) tracks.push_back(&content[copy.row]);
  const GroupComparison comparison = compareCopies(tracks, dates_);
  addFields(comparison);
  std::vector<std::uint32_t> rows;
  for (const Copy& copy : copies_) rows.push_back(copy.row);
  words_->show(row_, rows, comparison);
  showAnswer();
  reloadCovers();
  reloadPlayer();
  takeRoom();
  rest_.start();
}

void ComparePane::addCopies(std::int32_t group) {
  const ResultGroups& groups = delegate_.groups();
  const auto found = groups.members(group);
  std::vector<std::uint32_t> members(found.begin(), found.end());
  // Whatever there is room for, what is kept is seen.
  std::stable_partition(members.begin(), members.end(),
                        [&](std::uint32_t row) { return groups.isKeeper(row); });
  const Capabilities can =
      delegate_.application() ? delegate_.application()->capabilities() : Capabilities{};
  table_ = new QWidget;
  grid_ = new QGridLayout(table_);
  grid_->setContentsMargins(0, 0, 0, 0);
  grid_->setHorizontalSpacing(betweenColumns);
  grid_->setVerticalSpacing(6);
  tablePlace_->layout()->addWidget(table_);
  const std::size_t shown = std::min(members.size(), mostCopies);
  hidden_ = static_cast<int>(members.size() - shown);
  for (std::size_t i = 0; i < shown; ++i) {
    const std::uint32_t row = members[i];
    const ResultTrack& track = delegate_.content()[row];
    Copy copy;
    copy.row = row;
    if (track.record->availability() == FileAvailability::reachable)
      copy.path = pathToQt(filePath(track.record->item()));
    const QString number = numberText(i + 1);
    copy.cover = new QLabel;
    copy.cover->setAccessibleName(tr("Cover of copy %1").arg(number));

    const bool kept = groups.isKeeper(row);
    // Pressed for one that is kept it says that the user wants so, whatever the rules say.
    auto* keep = kept ? new StateButton(tr("✓ Kept")) : new QPushButton(tr("Keep"));
    keep->setAccessibleName(kept ? tr("Copy %1 is kept").arg(number)
                                 : tr("Keep copy %1").arg(number));
    connect(keep, &QPushButton::clicked, this, [this, row] { Q_EMIT keepRequested(row); });
    copy.play = new QPushButton;
    copy.play->setAccessibleName(tr("Play copy %1").arg(number));
    connect(copy.play, &QPushButton::clicked, this, [this, row] { Q_EMIT playRequested(row); });
    auto* show = new QPushButton(tr("Show"));
    show->setToolTip(tr("Show in Folder"));
    show->setAccessibleName(tr("Show copy %1 in its folder").arg(number));
    show->setEnabled(can.reveals && !copy.path.isEmpty());
    connect(show, &QPushButton::clicked, this, [this, row] { Q_EMIT revealRequested(row); });
    for (QPushButton* button : {keep, copy.play, show}) button->setAutoDefault(false);
    // Letters wider than the room must not push the columns apart.
    for (QPushButton* button : {copy.play, show}) button->setMinimumWidth(4 * gridStep);
    cells_.push_back(keep);
    copy.playlists = newValue({}, false);
    copy.playlists->setTextFormat(Qt::RichText);
    copy.playlists->setTextInteractionFlags(Qt::TextBrowserInteraction);
    copy.playlists->setAccessibleName(tr("Playlists that hold copy %1").arg(number));
    connect(copy.playlists, &QLabel::linkActivated, this, &ComparePane::playlistActivated);
    cells_.push_back(copy.playlists);
    const int column = static_cast<int>(i) + 1;
    grid_->addWidget(copy.cover, 0, column, Qt::AlignLeading);
    grid_->addWidget(keep, 1, column);
    auto* both = newRow({copy.play, show}, show);
    cells_.push_back(both);
    grid_->addWidget(both, 2, column);
    copies_.push_back(copy);
  }
  grid_->setColumnStretch(static_cast<int>(shown) + 1, 1);
  grid_->setRowStretch(lastLine, 1);
}

void ComparePane::addFields(const GroupComparison& comparison) {
  int line = 4;
  for (const ComparedField& field : comparison.differing) {
    QLabel* title = newQuietLabel(field.title);
    title->setWordWrap(true);
    title->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    grid_->addWidget(title, line, 0);
    for (qsizetype i = 0; i < field.values.size(); ++i) {
      const auto copy = static_cast<std::size_t>(i);
      const bool better = copy < field.better.size() && field.better[copy];
      cells_.push_back(newValue(field.values[i], better));
      grid_->addWidget(cells_.back(), line, static_cast<int>(i) + 1);
    }
    ++line;
  }
  QLabel* title = newQuietLabel(tr("Playlists"));
  title->setAlignment(Qt::AlignLeading | Qt::AlignTop);
  grid_->addWidget(title, line, 0);
  for (std::size_t i = 0; i < copies_.size(); ++i)
    grid_->addWidget(copies_[i].playlists, line, static_cast<int>(i) + 1);
  if (hidden_ > 0) {
    const Message more = Message::tr("and %Ln more copies", "and %Ln more copy", hidden_);
    grid_->addWidget(newQuietLabel(toQt(more)), line + 1, 1, 1, -1);
  }
}

void ComparePane::showAnswer() {
  QStringList parts;
  if (answer_ && answer_->hexpid == shownPid_) {
    if (!answer_->cloudStatus.empty() && answer_->cloudStatus != "Unknown")
      parts << tr("In the cloud: %1")
                   .arg(QString::fromStdString(inUsersWords(worded(answer_->cloudStatus))));
    if (!answer_->location.empty() && row_ < delegate_.content().size() &&
        delegate_.content()[row_].record->location().empty())
      parts << pathToQt(answer_->location);
  }
  words_->tell(parts.join(QStringLiteral(" · ")));
}

void ComparePane::reloadCovers() {
  if (row_ >= delegate_.content().size() || delegate_.isBusy()) return;
  // Where there is little height the fields matter more.
  const int side = height() < lowPane ? smallCover : std::min(coverSide, copyWidth());
  // Where there is next to none, the table's covers have to do.
  const bool shown = height() >= lowestPaneWithCovers;
  const int pixels = qRound(coverSide * devicePixelRatioF());
  for (const Copy& copy : copies_) {
    if (copy.row >= delegate_.content().size()) continue;
    copy.cover->setVisible(shown);
    copy.cover->setFixedSize(side, side);
    copy.cover->setPixmap(framed(covers_.cover(delegate_.content()[copy.row], pixels), side,
                                 copy.row == row_ && copies_.size() > 1, this));
  }
  if (grid_) grid_->setRowMinimumHeight(0, shown ? side + gridStep : 0);
}

void ComparePane::reloadPlayer() {
  if (copies_.empty()) return;
  const QString why = player_.unavailable();
  for (const Copy& copy : copies_) {
    const bool playing = player_.isPlaying(copy.path);
    copy.play->setIcon(playIcon(playing, QGuiApplication::palette()));
    copy.play->setText(player_.isAtHand(copy.path) ? timeText(player_.position()) : QString());
    copy.play->setEnabled(why.isEmpty() && !copy.path.isEmpty());
    copy.play->setToolTip(!why.isEmpty()        ? why
                          : copy.path.isEmpty() ? tr("There is no file to play.")
                                                : tr("Plays this copy, and pauses it (P)"));
  }
}

void ComparePane::askPlaylists() {
  std::vector<std::uint32_t> rows;
  for (const Copy& copy : copies_) rows.push_back(copy.row);
  const auto held = delegate_.playlistsHoldingEach(rows);
  for (std::size_t i = 0; i < held.size(); ++i) {
    QStringList links;
    for (const PlaylistRecord& playlist : held[i])
      links << QStringLiteral("<a href=\"%1\" style=\"text-decoration:none\">%2</a>")
                   .arg(toQt(playlist.decpid), toQt(playlist.pnom).toHtmlEscaped());
    copies_[i].playlists->setText(links.isEmpty() ? tr("none") : links.join(QStringLiteral(", ")));
  }
  takeRoom();
}

void ComparePane::ask() {
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
    if (!pane->delegate_.isBusy()) pane->showAnswer();
  });
}

void ComparePane::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  // Below the table there is more width than height.
  const bool beside = width() > 2 * height();
  parts_->setDirection(beside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
  beside_ = beside;
  if (event->oldSize() != event->size()) reloadCovers();
  takeRoom();
}

int ComparePane::titleWidth() const {
  int widest = 0;
  const QFontMetrics metrics(font());
  if (grid_)
    for (int line = 4; line < grid_->rowCount(); ++line)
      if (QLayoutItem* item = grid_->itemAtPosition(line, 0))
        if (const auto* label = qobject_cast<const QLabel*>(item->widget()))
          widest = std::max(widest, metrics.horizontalAdvance(label->text()));
  return std::min(widest + 2, 12 * gridStep);
}

int ComparePane::copyWidth() const {
  const int room = width() - (beside_ ? width() / 3 + paneMargin : 0) - 2 * paneMargin -
                   scrollBarWidth - titleWidth();
  const int count = std::max(static_cast<int>(copies_.size()), 1);
  return std::clamp(room / count - betweenColumns, leastCopyWidth, mostCopyWidth);
}

void ComparePane::takeRoom() {
  // Many copies are wider than the pane; the words stay in sight.
  words_->setFixedWidth(std::max(beside_ ? width() / 3 : width() - 2 * paneMargin - scrollBarWidth,
                                 int{leastCopyWidth}));
  // What scrolls would be pressed together otherwise: it does not ask how high broken lines are.
  words_->setMinimumHeight(std::max(words_->layout()->heightForWidth(words_->width()), 0));
  if (!table_) return;
  const int titles = titleWidth(), each = copyWidth();
  for (QWidget* cell : cells_) {
    cell->setFixedWidth(each);
    if (cell->hasHeightForWidth()) cell->setMinimumHeight(std::max(cell->heightForWidth(each), 0));
  }
  for (int line = 4; line < grid_->rowCount(); ++line)
    if (QLayoutItem* item = grid_->itemAtPosition(line, 0); item && item->widget()) {
      item->widget()->setFixedWidth(titles);
      item->widget()->setMinimumHeight(std::max(item->widget()->heightForWidth(titles), 0));
    }
  table_->setMinimumHeight(grid_->minimumSize().height());
}

void ComparePane::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::PaletteChange || copies_.empty()) return;
  reloadCovers();
  reloadPlayer();
}

}  // namespace kestrel
