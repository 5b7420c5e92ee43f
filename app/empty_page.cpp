#include "app/empty_page.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "app/controller/app_delegate.h"
#include "app/controller/criteria.h"
#include "musicapp/library_identity.h"
#include "resources/artwork.h"
#include "ui/process.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

constexpr int iconSize = 96;
constexpr int textWidth = 460;

/// "name, artist and album".
QString enumeration(const std::vector<std::string>& criteria) {
  std::vector<Message> names;
  for (const std::string& key : criteria) names.push_back(criterionName(key));
  return toQt(listed(names));
}

}  // namespace

EmptyPage::EmptyPage(AppDelegate& delegate, Commands commands)
    : delegate_(delegate),
      commands_(std::move(commands)),
      icon_(new QLabel),
      title_(new QLabel),
      text_(new QLabel),
      buttons_(nullptr),
      buttonColumn_(new QVBoxLayout) {
  icon_->setAccessibleName(QStringLiteral("Kestrel"));
  icon_->setPixmap(applicationIcon().pixmap(iconSize, iconSize));
  QFont large = title_->font();
  large.setPointSizeF(large.pointSizeF() * 1.6);
  title_->setFont(large);
  for (QLabel* label : {icon_, title_, text_}) label->setAlignment(Qt::AlignCenter);
  for (QLabel* label : {title_, text_}) {
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setFixedWidth(textWidth);
  }
  auto* column = new QVBoxLayout(this);
  column->addStretch(2);
  for (QLabel* label : {icon_, title_, text_}) column->addWidget(label, 0, Qt::AlignHCenter);
  column->addSpacing(12);
  column->addLayout(buttonColumn_);
  column->addStretch(3);
  reload();
}

std::vector<EmptyPage::Button> EmptyPage::showWelcome() {
  title_->setText(tr("Find the duplicates in your music library"));
  text_->setText(
      tr("Open the library of your music application or a folder of music, or drag it here. "
         "Nothing is "
         "changed until you say so."));
  std::vector<Button> buttons{{tr("&Open a Library…"), &Commands::open, {}},
                              {tr("Try the Demo Libr&ary"), &Commands::demo, {}}};
  for (const std::string& address : delegate_.recentLibraries()) {
    const QFileInfo file(pathToQt(addressText(address)));
    const QString title = file.dir().dirName() + QLatin1Char('/') + file.fileName();
    buttons.push_back({QString(title).replace('&', "&&"), nullptr, file.filePath()});
  }
  return buttons;
}

std::vector<EmptyPage::Button> EmptyPage::showSituation() {
  const auto& criteria = delegate_.process().textSorter.storedCriteria;
  const auto show = [this](const QString& title, const QString& text) {
    title_->setText(title);
    text_->setText(text);
  };
  const Button find{tr("Find Duplicates"), &Commands::find, {}};
  switch (delegate_.situation()) {
    case Situation::noLibrary:
      return showWelcome();
    case Situation::notSearched:
      if (delegate_.activity() == Activity::search) {
        show(tr("Looking for duplicates"), tr("Press Esc to stop."));
        return {};
      }
      if (!delegate_.canSearch()) {
        show(
            tr("This library has no playlists"),
            tr("A search looks through a playlist, and this library has none, not even that of all "
               "its tracks. Make a playlist in your music application, then open the library "
               "again."));
        return {{tr("&Open a Library…"), &Commands::open, {}}};
      }
      show(tr("Ready to search %1").arg(toQt(delegate_.chosenPlaylistName())),
           tr("Choose on the left what duplicates have in common and which of them to keep."));
      return {find};
    case Situation::noDuplicates:
      if (criteria.empty())
        show(tr("Nothing to match by"),
             tr("Tick on the left at least one field that duplicates share."));
      else
        show(tr("No duplicates by %1 in %2.")
                 .arg(enumeration(criteria), toQt(delegate_.searchedPlaylistName())),
             tr("Try fewer criteria."));
      return {};
    case Situation::filenameOnly:
      show(tr("“Filename” finds nothing"),
           tr("A search with the criterion “Filename” always ends empty: it compares a field that "
              "no track has. “File Name” compares the names of files."));
      return {{tr("Use File &Name Instead"), &Commands::useFileNames, {}}};
    case Situation::stopped:
      show(tr("The search was stopped"), tr("Nothing was changed."));
      return {find};
    case Situation::result:
      break;
  }
  return {};
}

void EmptyPage::makeButtons() {
  if (buttons_) {
    // Perhaps one of them is being clicked right now.
    buttons_->hide();
    buttons_->deleteLater();
  }
  buttons_ = new QWidget;
  auto* layout = new QVBoxLayout(buttons_);
  layout->setContentsMargins(0, 0, 0, 0);
  buttonColumn_->addWidget(buttons_, 0, Qt::AlignHCenter);
  bool headed = false;
  for (const Button& wanted : wanted_) {
    if (!wanted.command && !std::exchange(headed, true)) {
      auto* heading = new QLabel(tr("Recent libraries"));
      heading->setAlignment(Qt::AlignCenter);
      layout->addWidget(heading);
    }
    auto* button = new QPushButton(wanted.title);
    button->setAutoDefault(true);
    layout->addWidget(button);
    if (wanted.command) {
      button->setMinimumWidth(240);
      connect(button, &QPushButton::clicked, this, commands_.*wanted.command);
    } else {
      button->setFlat(true);
      button->setToolTip(wanted.library);
      connect(button, &QPushButton::clicked, this,
              [this, path = wanted.library] { commands_.openLibrary(path); });
    }
  }
}

void EmptyPage::reload() {
  std::vector<Button> buttons = showSituation();
  // A centred label is not asked how high it gets by wrapping.
  for (QLabel* label : {title_, text_}) label->setFixedHeight(label->heightForWidth(textWidth));
  const QWidget* focus = window()->focusWidget();
  bool takesKeys = !focus;
  if (!buttons_ || buttons != wanted_) {
    takesKeys = !focus || focus == this || isAncestorOf(focus);
    // Hiding a button that has the keys would give them to just anything.
    if (takesKeys) setFocus();
    wanted_ = std::move(buttons);
    makeButtons();
  }
  if (auto* first = buttons_->findChild<QPushButton*>(); first && takesKeys) first->setFocus();
}

}  // namespace kestrel
