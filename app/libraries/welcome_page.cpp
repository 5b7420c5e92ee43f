#include "app/libraries/welcome_page.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "app/controller/app_delegate.h"
#include "app/libraries/library_finder.h"
#include "app/libraries/library_row.h"
#include "app/parts/library_title.h"
#include "musicapp/library_identity.h"
#include "resources/artwork.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

constexpr int cardWidth = 70 * gridStep;
constexpr int birdSize = 11 * gridStep;

/// A rounded sheet that the rows lie on.
class Card final : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette desktop = QGuiApplication::palette();
    painter.setPen(lookColor("line", desktop));
    painter.setBrush(lookColor("tableBackground", desktop));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 10, 10);
  }
};

QLabel* newHeading(const QString& text) {
  auto* heading = new QLabel(text);
  heading->setFont(titleFont(smallFont(heading->font())));
  heading->setContentsMargins(20, gridStep, 20, gridStep);
  setTextColor(heading, "grayText");
  return heading;
}

}  // namespace

WelcomePage::WelcomePage(AppDelegate& delegate, LibraryFinder& finder, Commands commands)
    : delegate_(delegate),
      finder_(finder),
      commands_(std::move(commands)),
      card_(new Card),
      cardColumn_(new QVBoxLayout(card_)) {
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  auto* content = new QWidget;
  setGround(content, "paneGround");
  auto* bird = new QLabel;
  bird->setAccessibleName(QStringLiteral("Kestrel"));
  bird->setPixmap(applicationIcon().pixmap(birdSize, birdSize));
  auto* title = new QLabel(tr("Find the duplicates in your music"));
  title->setFont(titleFont(font(), 1.6));
  auto* promise =
      new QLabel(tr("Nothing is changed until you say so, and all of it can be undone."));
  setTextColor(promise, "grayText");
  card_->setFixedWidth(cardWidth);
  cardColumn_->setContentsMargins(0, gridStep, 0, gridStep);
  cardColumn_->setSpacing(0);

  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(2 * gridStep, 3 * gridStep, 2 * gridStep, 3 * gridStep);
  column->setSpacing(gridStep);
  column->addStretch(1);
  for (QWidget* part : QList<QWidget*>{bird, title, promise})
    column->addWidget(part, 0, Qt::AlignHCenter);
  column->addSpacing(gridStep);
  column->addWidget(card_, 0, Qt::AlignHCenter);
  column->addSpacing(gridStep);
  column->addWidget(newButtons(), 0, Qt::AlignHCenter);
  column->addStretch(1);
  setWidget(content);
  observe(this, finder_.observers, [this] {
    fill();
    fillDetails();
  });
  fill();
}

QWidget* WelcomePage::newButtons() {
  QList<QWidget*> buttons;
  const std::pair<QString, std::function<void()>> all[] = {
      {tr("Open &Folder…"), commands_.openFolder},
      {tr("Open Library D&ocument…"), commands_.openDocument},
      {tr("Connect to &MPD…"), commands_.connectToServer},
      {tr("Try the Demo Libr&ary"), commands_.demo}};
  for (const auto& [title, command] : all) {
    QPushButton* button = newButton(title, command);
    button->setAutoDefault(true);
    button->setMinimumSize(button->sizeHint().width() + 2 * gridStep, 4 * gridStep);
    buttons << button;
  }
  QWidget* row = newRow(buttons);
  row->layout()->setSpacing(12);
  return row;
}

LibraryRow* WelcomePage::addRow(QVBoxLayout* column, const std::string& address) {
  const LibraryTitle title = libraryTitle(address, delegate_.process().with.files);
  const QString shown = pathToQt(addressText(address));
  auto* row = new LibraryRow(title, [this, shown] { commands_.open(shown); });
  row->showDetails(title.place.isEmpty() ? title.kind : title.place, shown);
  column->addWidget(row);
  return row;
}

void WelcomePage::fill() {
  const auto& recent = delegate_.recentLibraries();
  std::vector<std::string> found;
  for (const auto& one : finder_.found()) found.push_back(one.library.address);
  std::vector<std::string> wanted = found;
  wanted.emplace_back(finder_.isLooking() && found.empty() ? "looking" : "");
  wanted.insert(wanted.end(), recent.begin(), recent.end());
  if (wanted == shown_) return;
  // Keys stay in the page while its rows are made anew.
  const bool hadFocus = card_->isAncestorOf(window()->focusWidget());
  shown_ = std::move(wanted);
  foundRows_.clear();
  while (QLayoutItem* item = cardColumn_->takeAt(0)) {
    if (QWidget* part = item->widget()) {
      part->hide();
      part->deleteLater();
    }
    delete item;
  }
  looking_ = nullptr;
  cardColumn_->addWidget(newHeading(tr("FOUND ON THIS COMPUTER")));
  for (const std::string& address : found)
    foundRows_.push_back({address, addRow(cardColumn_, address)});
  if (found.empty()) {
    looking_ = new QLabel(finder_.isLooking() ? tr("Looking…")
                                              : tr("Nothing in the usual places. Open a folder, or "
                                                   "drag a folder or a document here."));
    looking_->setWordWrap(true);
    looking_->setContentsMargins(20, gridStep, 20, 2 * gridStep);
    setTextColor(looking_, "grayText");
    cardColumn_->addWidget(looking_);
  }
  bool headed = false;
  for (auto at = recent.begin(); at != recent.end(); ++at) {
    const std::string& address = *at;
    if (std::any_of(recent.begin(), at,
                    [&](const std::string& before) { return isSameLibrary(before, address); }))
      continue;
    const bool isFound = std::any_of(found.begin(), found.end(), [&](const std::string& one) {
      return isSameLibrary(one, address);
    });
    if (isFound) continue;
    if (!std::exchange(headed, true)) {
      cardColumn_->addWidget(new DividingLine(Qt::Horizontal));
      cardColumn_->addWidget(newHeading(tr("RECENT")));
    }
    addRow(cardColumn_, address);
  }
  fillDetails();
  const QWidget* focus = window()->focusWidget();
  if (isVisible() && (hadFocus || !focus || focus == parentWidget()))
    if (auto* first = widget()->findChild<QPushButton*>()) first->setFocus();
}

void WelcomePage::fillDetails() {
  for (const auto& one : finder_.found()) {
    const auto row = std::find_if(foundRows_.begin(), foundRows_.end(), [&](const Row& shown) {
      return shown.address == one.library.address;
    });
    if (row == foundRows_.end()) continue;
    const LibraryTitle title = libraryTitle(one.library.address, delegate_.process().with.files);
    row->row->showDetails(
        libraryDetails(title, one.library).join(QStringLiteral(" · ")),
        one.library.obstacle.empty()
            ? pathToQt(addressText(one.library.address))
            : toQt(Message::tr("It cannot be changed now: %1").arg(one.library.obstacle)));
  }
}

void WelcomePage::reload() {
  if (delegate_.situation() == Situation::noLibrary && isVisible()) finder_.look();
  fill();
  widget()->setEnabled(!delegate_.isBusy());
}

void WelcomePage::showEvent(QShowEvent* event) {
  QScrollArea::showEvent(event);
  finder_.look();
  fill();
}

}  // namespace kestrel
