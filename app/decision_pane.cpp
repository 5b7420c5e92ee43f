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

/// Fields that everybody sees; the others are behind "More fields".
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

std::string chosen(const QComboBox* combo) { return fromQt(combo->currentData().toString()); }

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
  moreFields_ = new QWidget;
  auto* moreLayout = new QVBoxLayout(moreFields_);
  moreLayout->setContentsMargins(0, 0, 0, 0);
  moreLayout->setSpacing(4);
  moreFields_->hide();
  connect(more, &QToolButton::toggled, this, [this, more](bool open) {
    moreFields_->setVisible(open);
    more->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
  });

  const auto add = [this](QVBoxLayout* to, std::string_view key, const QString& title) {
    auto* box = new QCheckBox(title);
    connect(box, &QCheckBox::toggled, this, [this, key = std::string(key)](bool on) {
      if (loading_) return;
      setCriterion(preferences_, key, on);
      updateEnabled();
      Q_EMIT criteriaChanged();
    });
    criteria_.push_back({std::string(key), box});
    to->addWidget(box);
    return box;
  };
  for (const Criterion& choice : criterionChoices())
    add(criteria_.size() < usualFields ? layout : moreLayout, choice.key, translated(choice.title));
  filename_ = add(moreLayout, filenameLiteral, QStringLiteral("Filename"));
  filename_->setToolTip(
      tr("This criterion makes every search come back empty. "
         "Untick it and use File Name."));

  time_ = new QCheckBox(tr("&Time"));
  tolerance_ = new QSpinBox;
  tolerance_->setRange(0, mostSeconds);
  tolerance_->setSpecialValueText(tr("exactly the same"));
  tolerance_->setPrefix(tr("within ", "seconds"));
  tolerance_->setAccessibleName(tr("Largest difference of playing times in seconds"));
  caseSensitive_ = new QCheckBox(tr("Match &case"));
  caseSensitive_->setToolTip(tr("Capitals and small letters differ"));
  addLine(layout, time_, tolerance_);
  layout->addWidget(caseSensitive_);
  layout->addWidget(more);
  layout->addWidget(moreFields_);
  matchProblem_ = new QLabel;
  matchProblem_->setWordWrap(true);
  layout->addWidget(matchProblem_);

  connect(time_, &QCheckBox::toggled, this, [this](bool on) {
    if (loading_) return;
    preferences_.set(settings::criteriaCBTime, on);
    updateEnabled();
    Q_EMIT criteriaChanged();
  });
  connect(tolerance_, &QSpinBox::valueChanged, this, [this](int seconds) {
    tolerance_->setSuffix(seconds == 1 ? tr(" second") : tr(" seconds"));
    if (loading_) return;
    setTimeTolerance(preferences_, seconds);
    updateEnabled();
    Q_EMIT criteriaChanged();
  });
  connect(caseSensitive_, &QCheckBox::toggled, this, [this](bool on) {
    if (loading_) return;
    preferences_.set(settings::caseSensitive, on);
    Q_EMIT criteriaChanged();
  });
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
    if (loading_ || !on) return;
    preferences_.set(settings::filterMatrixButton, std::int64_t{rule});
    updateEnabled();
    delegate_.rulesChanged();
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
  if (loading_ || folder == preferences_.text(settings::filterFolderLoc)) return;
  preferences_.set(settings::filterFolderLoc, folder);
  delegate_.rulesChanged();
}

void DecisionPane::addNarrowing(QVBoxLayout* column) {
  QVBoxLayout* layout = addSection(column, tr("Choose among"));
  useFileType_ = new QCheckBox(tr("File t&ype"));
  fileType_ = new QComboBox;
  // Where the toolkit gives screen readers what is chosen for the name, this says what it is.
  fileType_->setAccessibleName(tr("File type"));
  fileType_->setAccessibleDescription(tr("File type"));
  for (const std::string_view type : fileTypeChoices())
    fileType_->addItem(translated(type), toQt(type));
  useBitRate_ = new QCheckBox(tr("&Bit rate"));
  useBitRate_->setToolTip(tr("Counts only together with a file type"));
  bitRate_ = new QComboBox;
  bitRate_->setAccessibleName(tr("Bit rate"));
  bitRate_->setAccessibleDescription(tr("Bit rate"));
  for (const int rate : bitRates) {
    const Message title = Message::tr("%1 kbps").arg(rate);
    bitRate_->addItem(toQt(title), toQt(title.english()));
  }
  undecided_ = new QCheckBox(tr("Leave a group &undecided rather\nthan choose at random"));
  addLine(layout, useFileType_, fileType_);
  addLine(layout, useBitRate_, bitRate_);
  layout->addWidget(undecided_);

  const auto connectBox = [this](QCheckBox* box, std::string_view key) {
    connect(box, &QCheckBox::toggled, this, [this, key](bool on) {
      if (loading_) return;
      if (key == settings::useFileType) preferences_.set(settings::thisFileType, chosen(fileType_));
      if (key == settings::useBitType) preferences_.set(settings::thisBitType, chosen(bitRate_));
      preferences_.set(key, on);
      updateEnabled();
      delegate_.rulesChanged();
    });
  };
  connectBox(useFileType_, settings::useFileType);
  connectBox(useBitRate_, settings::useBitType);
  connectBox(undecided_, settings::alwaysUnCheck);
  const auto connectChoice = [this](QComboBox* combo, std::string_view key) {
    connect(combo, &QComboBox::currentIndexChanged, this, [this, key, combo] {
      if (loading_) return;
      preferences_.set(key, chosen(combo));
      delegate_.rulesChanged();
    });
  };
  connectChoice(fileType_, settings::thisFileType);
  connectChoice(bitRate_, settings::thisBitType);
}

void DecisionPane::addTickMeaning(QVBoxLayout* column) {
  QVBoxLayout* layout = addSection(column, tr("A tick marks"));
  tickMeaning_ = new QComboBox;
  tickMeaning_->setAccessibleName(tr("A tick marks"));
  tickMeaning_->addItem(tr("the track to keep"));
  tickMeaning_->addItem(tr("the tracks to act on"));
  layout->addWidget(tickMeaning_);
  connect(tickMeaning_, &QComboBox::currentIndexChanged, this, [this](int mode) {
    if (!loading_) delegate_.setKeeperMode(mode);
  });
}

void DecisionPane::load() {
  loading_ = true;
  const std::vector<std::string> chosen = chosenCriteria(preferences_);
  const auto isChosen = [&](const std::string& key) {
    return std::find(chosen.begin(), chosen.end(), key) != chosen.end();
  };
  for (const CriterionBox& criterion : criteria_)
    criterion.box->setChecked(isChosen(criterion.key));
  // Nobody is offered the criterion that finds nothing, but whoever has it must get rid of it.
  filename_->setVisible(filename_->isChecked());
  time_->setChecked(preferences_.boolean(settings::criteriaCBTime));
  tolerance_->setValue(timeTolerance(preferences_));
  tolerance_->setSuffix(tolerance_->value() == 1 ? tr(" second") : tr(" seconds"));
  caseSensitive_->setChecked(preferences_.boolean(settings::caseSensitive));
  const auto rule = static_cast<int>(preferences_.integer(settings::filterMatrixButton));
  if (QAbstractButton* button = rules_->button(rule)) button->setChecked(true);
  folder_->setText(pathToQt(preferences_.text(settings::filterFolderLoc)));
  useFileType_->setChecked(preferences_.boolean(settings::useFileType));
  select(fileType_, toQt(preferences_.text(settings::thisFileType)));
  useBitRate_->setChecked(preferences_.boolean(settings::useBitType));
  select(bitRate_, toQt(preferences_.text(settings::thisBitType)));
  undecided_->setChecked(preferences_.boolean(settings::alwaysUnCheck));
  tickMeaning_->setCurrentIndex(preferences_.boolean(settings::keeperMode) ? 1 : 0);
  loading_ = false;
  updateEnabled();
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
