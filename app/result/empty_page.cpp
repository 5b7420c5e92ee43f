#include "app/result/empty_page.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "app/controller/app_delegate.h"
#include "app/controller/criteria.h"
#include "resources/artwork.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

constexpr int iconSize = 11 * gridStep;
constexpr int textWidth = 66 * gridStep;

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
      progress_(new QProgressBar),
      buttons_(nullptr),
      buttonColumn_(new QVBoxLayout) {
  setGround(this, "paneGround");
  icon_->setAccessibleName(QStringLiteral("Kestrel"));
  icon_->setPixmap(applicationIcon().pixmap(iconSize, iconSize));
  title_->setFont(titleFont(font(), 1.5));
  setTextColor(text_, "grayText");
  for (QLabel* label : {icon_, title_, text_}) label->setAlignment(Qt::AlignCenter);
  for (QLabel* label : {title_, text_}) {
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setFixedWidth(textWidth);
  }
  progress_->setTextVisible(false);
  progress_->setFixedSize(40 * gridStep, gridStep);
  progress_->setAccessibleName(tr("Progress of the search"));
  bind(progress_, delegate_.process().textSorter.window.mainProgressBar);
  auto* column = new QVBoxLayout(this);
  column->setSpacing(gridStep);
  column->addStretch(2);
  for (QLabel* label : {icon_, title_, text_}) column->addWidget(label, 0, Qt::AlignHCenter);
  column->addSpacing(gridStep);
  column->addWidget(progress_, 0, Qt::AlignHCenter);
  column->addLayout(buttonColumn_);
  column->addStretch(3);
  reload();
}

void EmptyPage::show(const QString& title, const QString& text) {
  title_->setText(title);
  text_->setText(text);
}

std::vector<EmptyPage::Button> EmptyPage::showNothingFound() {
  const auto& criteria = delegate_.process().textSorter.storedCriteria;
  if (criteria.empty()) {
    show(tr("Nothing to match by"),
         tr("Tick on the left at least one field that duplicates share."));
    return {};
  }
  show(delegate_.searchedPart()
           ? tr("No duplicates by %1 in %2.")
                 .arg(enumeration(criteria), toQt(delegate_.searchedPlaylistName()))
           : tr("No duplicates by %1 in the whole library.").arg(enumeration(criteria)),
       criteria.size() > 1 ? tr("Try fewer criteria.") : tr("Try another field."));
  std::vector<Button> buttons = fieldsLess();
  if (!buttons.empty()) text_->setText(tr("One field less would find more:"));
  if (delegate_.searchedPart())
    buttons.push_back({tr("Look in the Whole Library"), &Commands::wholeLibrary});
  else if (!delegate_.notes().empty())
    // Which songs were not searched comes first.
    text_->setText(text_->text() + QStringLiteral("\n\n") + toQt(ended(delegate_.notes().front())));
  return buttons;
}

std::vector<EmptyPage::Button> EmptyPage::fieldsLess() const {
  constexpr std::size_t most = 3;
  const auto& found = preview_.withoutField;
  std::vector<std::size_t> fields;
  for (std::size_t field = 0; field < found.size(); ++field)
    if (found[field].value_or(0) > 0) fields.push_back(field);
  std::stable_sort(fields.begin(), fields.end(),
                   [&](std::size_t a, std::size_t b) { return *found[a] > *found[b]; });
  if (fields.size() > most) fields.resize(most);
  std::vector<Button> buttons;
  for (const std::size_t field : fields) {
    const auto choices = criterionChoices();
    const QString name = field < choices.size()
                             ? translated(choices[field].title).remove(QLatin1Char('&'))
                             : tr("Time");
    const QString groups = toQt(Message::tr("%Ln groups", "%Ln group", countOf(*found[field])));
    buttons.push_back({tr("Without %1: %2").arg(name, groups), nullptr, field});
  }
  return buttons;
}

void EmptyPage::showPreview(const FieldPreview& preview) {
  preview_ = preview;
  if (isVisible() && delegate_.situation() == Situation::noDuplicates) reload();
}

std::vector<EmptyPage::Button> EmptyPage::showSituation() {
  const Button find{tr("Find Duplicates"), &Commands::find};
  switch (delegate_.situation()) {
    case Situation::noLibrary:
      show(tr("No library is open"), {});
      return {};
    case Situation::notSearched:
      if (delegate_.activity() == Activity::search) {
        show(tr("Looking for duplicates"),
             delegate_.searchedPart()
                 ? toQt(Message::tr("In %1").arg(delegate_.searchedPlaylistName()))
                 : tr("In the whole library"));
        return {{tr("Stop (Esc)"), &Commands::stop}};
      }
      if (!delegate_.canSearch()) {
        show(
            tr("This library has no playlists"),
            tr("A search looks through a playlist, and this library has none, not even that of all "
               "its tracks. Make a playlist in your music application, then open the library "
               "again."));
        return {{tr("Open a Library…"), &Commands::open}};
      }
      show(delegate_.choosesPart()
               ? tr("Ready to search %1").arg(toQt(delegate_.chosenPlaylistName()))
               : tr("Ready to search the whole library"),
           tr("Choose on the left what duplicates have in common and which of them to keep."));
      return {find};
    case Situation::noDuplicates:
      return showNothingFound();
    case Situation::filenameOnly:
      show(tr("“Filename” finds nothing"),
           tr("A search with the criterion “Filename” always ends empty: it compares a field that "
              "no track has. “File Name” compares the names of files."));
      return {{tr("Use File Name Instead"), &Commands::useFileNames}};
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
  layout->setSpacing(gridStep);
  buttonColumn_->addWidget(buttons_, 0, Qt::AlignHCenter);
  for (const Button& wanted : wanted_) {
    auto* button = new QPushButton(wanted.title);
    button->setAutoDefault(true);
    button->setMinimumSize(20 * gridStep, 4 * gridStep);
    layout->addWidget(button);
    if (wanted.without)
      connect(button, &QPushButton::clicked, this,
              [this, field = *wanted.without] { commands_.without(field); });
    else
      connect(button, &QPushButton::clicked, this, commands_.*wanted.command);
  }
}

void EmptyPage::reload(const QString& filter) {
  std::vector<Button> buttons;
  if (filter.isEmpty()) {
    buttons = showSituation();
  } else {
    show(tr("The filter hides everything"), tr("No track of the result has “%1”.").arg(filter));
    buttons = {{tr("Clear Filter"), &Commands::clearFilter}};
  }
  const bool isSearching = delegate_.activity() == Activity::search;
  progress_->setVisible(isSearching && filter.isEmpty());
  icon_->setVisible(filter.isEmpty());
  // A centred label is not asked how high it gets by wrapping.
  for (QLabel* label : {title_, text_})
    label->setFixedHeight(std::max(0, label->heightForWidth(textWidth)));
  const QWidget* focus = window()->focusWidget();
  bool takesKeys = !focus;
  if (!buttons_ || buttons != wanted_) {
    takesKeys = !focus || focus == this || focus == parentWidget() || isAncestorOf(focus);
    // Hiding a button that has the keys would give them to just anything.
    if (takesKeys) setFocus();
    wanted_ = std::move(buttons);
    makeButtons();
  }
  if (auto* first = buttons_->findChild<QPushButton*>(); first && takesKeys) first->setFocus();
}

}  // namespace kestrel
