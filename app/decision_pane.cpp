#include "app/decision_pane.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "app/controller/app_delegate.h"
#include "app/controller/criteria.h"
#include "dupes/group_filter.h"
#include "dupes/keeper_rules.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/process.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// Fields that are always seen; the others are behind "More fields".
constexpr std::size_t usualFields = 4;
constexpr int mostSeconds = 600;
constexpr int bitRates[] = {64, 96, 112, 128, 160, 192, 224, 256, 320};

int indent(const QWidget* widget) {
  return widget->style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) +
         widget->style()->pixelMetric(QStyle::PM_RadioButtonLabelSpacing);
}

QVBoxLayout* addSection(QVBoxLayout* column, const QString& title) {
  auto* box = new QGroupBox(title);
  box->setFlat(true);
  auto* layout = new QVBoxLayout(box);
  layout->setSpacing(4);
  column->addWidget(box);
  return layout;
}

/// A check box and what it switches on, on one line.
void addLine(QVBoxLayout* layout, QWidget* first, QWidget* second) {
  auto* line = new QHBoxLayout;
  line->addWidget(first);
  line->addWidget(second, 1);
  layout->addLayout(line);
}

/// Items stand for what settings hold, which is the same in every language.
void select(QComboBox* combo, const QString& data) {
  if (combo->findData(data) < 0 && !data.isEmpty()) combo->addItem(data, data);
  combo->setCurrentIndex(std::max(combo->findData(data), 0));
}

}  // namespace

DecisionPane::DecisionPane(AppDelegate& delegate)
    : delegate_(delegate), preferences_(delegate.process().with.preferences) {
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  addMatch(column);
  addKeep(column);
  addNarrowing(column);
  addTickMeaning(column);
  column->addStretch(1);
  setWidget(content);
  load();
}

QSize DecisionPane::sizeHint() const {
  const int width = widget()->sizeHint().width() + verticalScrollBar()->sizeHint().width();
  return {width, QScrollArea::sizeHint().height()};
}

void DecisionPane::addMatch(QVBoxLayout* column) {
  QVBoxLayout* layout = addSection(column, tr("Songs match by"));
  auto* more = new QToolButton;
  more->setText(tr("&More fields"));
  more->setCheckable(true);
  more->setAutoRaise(true);
  more->setArrowType(Qt::RightArrow);
  more->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  auto* moreFields = new QWidget;
  auto* moreLayout = new QVBoxLayout(moreFields);
  moreLayout->setContentsMargins(0, 0, 0, 0);
  moreLayout->setSpacing(4);
  moreFields->hide();
  connect(more, &QToolButton::toggled, this, [moreFields, more](bool open) {
    moreFields->setVisible(open);
    more->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
  });

  const auto add = [this](QVBoxLayout* to, const std::string& key, const QString& title) {
    auto* box = new QCheckBox(title);
    connect(box, &QCheckBox::toggled, this, [this, key](bool on) {
      setCriterion(preferences_, key, on);
      updateEnabled();
    });
    loads_.emplace_back([this, box, key] {
      const auto chosen = chosenCriteria(preferences_);
      box->setChecked(std::find(chosen.begin(), chosen.end(), key) != chosen.end());
    });
    to->addWidget(box);
    return box;
  };
  std::size_t fields = 0;
  for (const Criterion& choice : criterionChoices())
    add(fields++ < usualFields ? layout : moreLayout, std::string(choice.key),
        translated(choice.title));
  QCheckBox* filename = add(moreLayout, std::string(filenameLiteral), QStringLiteral("Filename"));
  filename->setToolTip(
      tr("This criterion makes every search come back empty. "
         "Untick it and use File Name."));
  // The criterion that finds nothing is offered to those only who have it and must get rid of it.
  loads_.emplace_back([filename] { filename->setVisible(filename->isChecked()); });

  time_ = newBox(tr("&Time"), settings::criteriaCBTime, [this] { updateEnabled(); });
  tolerance_ = new QSpinBox;
  tolerance_->setRange(0, mostSeconds);
  tolerance_->setSpecialValueText(tr("exactly the same"));
  tolerance_->setPrefix(tr("within ", "seconds"));
  tolerance_->setAccessibleName(tr("Largest difference of playing times in seconds"));
  const auto showUnit = [this] {
    tolerance_->setSuffix(tolerance_->value() == 1 ? tr(" second") : tr(" seconds"));
  };
  connect(tolerance_, &QSpinBox::valueChanged, this, [this, showUnit](int seconds) {
    showUnit();
    setTimeTolerance(preferences_, seconds);
    updateEnabled();
  });
  loads_.emplace_back([this, showUnit] {
    tolerance_->setValue(timeTolerance(preferences_));
    showUnit();
  });
  auto* caseSensitive = newBox(tr("Match &case"), settings::caseSensitive, [] {});
  caseSensitive->setToolTip(tr("Capitals and small letters differ"));
  addLine(layout, time_, tolerance_);
  layout->addWidget(caseSensitive);
  layout->addWidget(more);
  layout->addWidget(moreFields);
  matchProblem_ = new QLabel;
  matchProblem_->setWordWrap(true);
  layout->addWidget(matchProblem_);
}

void DecisionPane::addKeep(QVBoxLayout* column) {
  QVBoxLayout* layout = addSection(column, tr("Keep the one with"));
  rules_ = new QButtonGroup(this);
  for (const KeeperRuleInfo& rule : keeperRules()) {
    auto* button = new QRadioButton(translated(rule.name));
    rules_->addButton(button, static_cast<int>(rule.rule));
    layout->addWidget(button);
    if (rule.rule == KeeperRule::folderLocation) addFolderChooser(layout);
  }
  connect(rules_, &QButtonGroup::idToggled, this, [this](int rule, bool on) {
    if (!on) return;
    preferences_.set(settings::filterMatrixButton, std::int64_t{rule});
    rulesChanged();
  });
  loads_.emplace_back([this] {
    const auto rule = static_cast<int>(preferences_.integer(settings::filterMatrixButton));
    if (QAbstractButton* button = rules_->button(rule)) button->setChecked(true);
  });
}

void DecisionPane::addFolderChooser(QVBoxLayout* column) {
  folderRow_ = new QWidget;
  auto* line = new QHBoxLayout(folderRow_);
  line->setContentsMargins(indent(this), 0, 0, 0);
  folder_ = new QLineEdit;
  folder_->setAccessibleName(tr("Folder of the files to keep"));
  folder_->setPlaceholderText(tr("any folder"));
  auto* choose = new QToolButton;
  choose->setText(tr("…"));
  choose->setToolTip(tr("Choose the folder"));
  choose->setAccessibleName(tr("Choose the folder"));
  line->addWidget(folder_, 1);
  line->addWidget(choose);
  column->addWidget(folderRow_);
  connect(folder_, &QLineEdit::editingFinished, this, &DecisionPane::storeFolder);
  connect(choose, &QToolButton::clicked, this, &DecisionPane::chooseFolder);
  loads_.emplace_back(
      [this] { folder_->setText(pathToQt(preferences_.text(settings::filterFolderLoc))); });
}

void DecisionPane::chooseFolder() {
  auto* dialog = new QFileDialog(this, tr("Folder of the files to keep"), folder_->text());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::Directory);
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& folder) {
    folder_->setText(folder);
    storeFolder();
  });
  dialog->open();
}

void DecisionPane::storeFolder() {
  const std::string folder = pathFromQt(folder_->text());
  if (folder == preferences_.text(settings::filterFolderLoc)) return;
  preferences_.set(settings::filterFolderLoc, folder);
  delegate_.rulesChanged();
}

void DecisionPane::addNarrowing(QVBoxLayout* column) {
  QVBoxLayout* layout = addSection(column, tr("Choose among"));
  Items types, rates;
  for (const std::string_view type : fileTypeChoices())
    types.emplace_back(translated(type), toQt(type));
  fileType_ = newChoice(tr("File type"), settings::thisFileType, types);
  useFileType_ = newBox(tr("File t&ype"), settings::useFileType,
                        [this] { store(settings::thisFileType, fileType_); });
  for (const int rate : bitRates) {
    const Message title = Message::tr("%1 kbps").arg(rate);
    rates.emplace_back(toQt(title), toQt(title.english()));
  }
  bitRate_ = newChoice(tr("Bit rate"), settings::thisBitType, rates);
  useBitRate_ = newBox(tr("&Bit rate"), settings::useBitType,
                       [this] { store(settings::thisBitType, bitRate_); });
  useBitRate_->setToolTip(tr("Counts only together with a file type"));
  addLine(layout, useFileType_, fileType_);
  addLine(layout, useBitRate_, bitRate_);
  layout->addWidget(newBox(tr("Leave a group &undecided rather\nthan choose at random"),
                           settings::alwaysUnCheck, [this] { rulesChanged(); }));
}

void DecisionPane::addTickMeaning(QVBoxLayout* column) {
  QVBoxLayout* layout = addSection(column, tr("A tick marks"));
  auto* meaning = new QComboBox;
  meaning->setAccessibleName(tr("A tick marks"));
  meaning->addItem(tr("the track to keep"));
  meaning->addItem(tr("the tracks to act on"));
  layout->addWidget(meaning);
  connect(meaning, &QComboBox::currentIndexChanged, this,
          [this](int mode) { delegate_.setKeeperMode(mode); });
  loads_.emplace_back([this, meaning] {
    meaning->setCurrentIndex(preferences_.boolean(settings::keeperMode) ? 1 : 0);
  });
}

QCheckBox* DecisionPane::newBox(const QString& title, std::string_view key,
                                std::function<void()> changed) {
  auto* box = new QCheckBox(title);
  connect(box, &QCheckBox::toggled, this, [this, key, changed = std::move(changed)](bool on) {
    preferences_.set(key, on);
    changed();
  });
  loads_.emplace_back([this, box, key] { box->setChecked(preferences_.boolean(key)); });
  return box;
}

QComboBox* DecisionPane::newChoice(const QString& name, std::string_view key, const Items& items) {
  auto* choice = new QComboBox;
  for (const auto& [title, value] : items) choice->addItem(title, value);
  // Where the toolkit gives screen readers what is chosen for the name, this says what it is.
  choice->setAccessibleName(name);
  choice->setAccessibleDescription(name);
  connect(choice, &QComboBox::currentIndexChanged, this,
          [this, choice, key] { store(key, choice); });
  loads_.emplace_back([this, choice, key] { select(choice, toQt(preferences_.text(key))); });
  return choice;
}

void DecisionPane::store(std::string_view key, const QComboBox* choice) {
  preferences_.set(key, fromQt(choice->currentData().toString()));
  rulesChanged();
}

void DecisionPane::load() {
  // What is shown is not the user's doing.
  std::vector<QSignalBlocker> blockers;
  blockers.emplace_back(rules_);
  for (QWidget* part : findChildren<QWidget*>()) blockers.emplace_back(part);
  for (const auto& load : loads_) load();
  updateEnabled();
}

void DecisionPane::rulesChanged() {
  updateEnabled();
  delegate_.rulesChanged();
}

void DecisionPane::updateEnabled() {
  tolerance_->setEnabled(time_->isChecked());
  folderRow_->setEnabled(rules_->checkedId() == static_cast<int>(KeeperRule::folderLocation));
  fileType_->setEnabled(useFileType_->isChecked());
  useBitRate_->setEnabled(useFileType_->isChecked());
  bitRate_->setEnabled(useFileType_->isChecked() && useBitRate_->isChecked());
  const bool matches = !searchCriteria(preferences_).empty();
  matchProblem_->setVisible(!matches);
  if (!matches)
    matchProblem_->setText(time_->isChecked()
                               ? tr("Tick another field: times that lie near each other are no "
                                    "match by themselves.")
                               : tr("Tick a field that duplicates share."));
}

}  // namespace kestrel
