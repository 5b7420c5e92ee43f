#include "app/choices/decision_pane.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "app/choices/field_previews.h"
#include "app/choices/keep_section.h"
#include "app/choices/live_search.h"
#include "app/choices/match_section.h"
#include "app/choices/preset_menu.h"
#include "app/controller/app_delegate.h"
#include "app/parts/order_editor.h"
#include "app/parts/pane_parts.h"
#include "dupes/group_filter.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

constexpr int paneWidth = 30 * gridStep;
constexpr int bitRates[] = {64, 96, 112, 128, 160, 192, 224, 256, 320};

/// A check box and what it switches on, on one line.
void addLine(QVBoxLayout* layout, QWidget* first, QWidget* second) {
  auto* line = new QHBoxLayout;
  line->setContentsMargins(0, 0, 0, 0);
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
    : delegate_(delegate),
      preferences_(delegate.process().with.preferences),
      live_(new LiveSearch(delegate)) {
  live_->setParent(this);
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  auto* content = new QWidget;
  setGround(content, "paneGround");
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(2 * gridStep, 0, 2 * gridStep, gridStep);
  column->setSpacing(gridStep / 2);
  match_ = new MatchSection(preferences_);
  previews_ = new FieldPreviews(delegate);
  previews_->setParent(this);
  connect(match_, &MatchSection::changed, previews_, &FieldPreviews::outdate);
  connect(match_, &MatchSection::changed, live_, &LiveSearch::criteriaChanged);
  connect(previews_, &FieldPreviews::counted, match_, &MatchSection::showPreview);
  keep_ = new KeepSection(preferences_);
  connect(keep_, &KeepSection::changed, this, [this] {
    load();
    rulesChanged();
  });
  column->addWidget(match_);
  column->addWidget(keep_);
  addRuleLinks(column);
  addNarrowing(column);
  column->addStretch(1);
  setWidget(content);
  load();
}

void DecisionPane::searchAgain() { live_->criteriaChanged(); }

QSize DecisionPane::sizeHint() const { return {paneWidth, QScrollArea::sizeHint().height()}; }

void DecisionPane::addRuleLinks(QVBoxLayout* column) {
  QToolButton* compare = newLink(tr("C&ompare rules…"));
  compare->setToolTip(tr("What every other rule would do with these groups"));
  connect(compare, &QToolButton::clicked, this, [this] { compareRules(); });
  QToolButton* presets = newLink(tr("Pre&sets"));
  presets->setToolTip(tr("Rules that you have saved under names"));
  presets->setPopupMode(QToolButton::InstantPopup);
  presets->setMenu(new PresetMenu(delegate_, this));
  column->addWidget(newRow({compare, nullptr, presets}));
  QToolButton* orders = newLink(tr("Wh&at to prefer…"));
  orders->setToolTip(tr("The order of folders or kinds that the rules above ask for"));
  connect(orders, &QToolButton::clicked, this, [this] { editOrders(delegate_, window()); });
  column->addWidget(orders);
  loads_.emplace_back([this, orders] {
    orders->setVisible(isOrderAsked(delegate_, OrderOf::folders) ||
                       isOrderAsked(delegate_, OrderOf::kinds));
  });
  follow(this, delegate_.observers, [this, compare, presets] {
    compare->setEnabled(!delegate_.isBusy() && delegate_.situation() == Situation::result);
    presets->setEnabled(delegate_.application() != nullptr);
  });
  const auto show = [this] {
    keep_->setPresets(delegate_.presets());
    load();
  };
  observe(this, delegate_.presetObservers, show);
  connect(keep_, &KeepSection::presetChosen, this, [this](std::size_t number) {
    if (number < delegate_.presets().size()) delegate_.usePreset(delegate_.presets()[number]);
  });
}

void DecisionPane::addNarrowing(QVBoxLayout* column) {
  among_ = new QWidget;
  QVBoxLayout* layout = newSection(among_, tr("Among"));
  Items types, rates;
  for (const std::string_view type : fileTypeChoices())
    types.emplace_back(translated(type), toQt(type));
  fileType_ = newChoice(tr("File type"), settings::thisFileType, types);
  useFileType_ = newBox(tr("File t&ype"), settings::useFileType);
  connect(useFileType_, &QCheckBox::toggled, this,
          [this] { store(settings::thisFileType, fileType_); });
  for (const int rate : bitRates)
    // What the setting holds is the same in every language.
    rates.emplace_back(tr("%1 kbit/s").arg(rate), QStringLiteral("%1 kbps").arg(rate));
  bitRate_ = newChoice(tr("Bit rate"), settings::thisBitType, rates);
  useBitRate_ = newBox(tr("&Bit rate"), settings::useBitType);
  connect(useBitRate_, &QCheckBox::toggled, this,
          [this] { store(settings::thisBitType, bitRate_); });
  useBitRate_->setToolTip(tr("Counts only together with a file type"));
  addLine(layout, useFileType_, fileType_);
  addLine(layout, useBitRate_, bitRate_);
  auto* undecided = newBox(tr("Leave &undecided,\nnot random"), settings::alwaysUnCheck);
  undecided->setToolTip(tr("Leave a group undecided rather than choose at random"));
  connect(undecided, &QCheckBox::toggled, this, [this] { rulesChanged(); });
  layout->addWidget(undecided);
  column->addWidget(among_);
}

QCheckBox* DecisionPane::newBox(const QString& title, std::string_view key) {
  auto* box = new QCheckBox(title);
  connect(box, &QCheckBox::toggled, this, [this, key](bool on) { preferences_.set(key, on); });
  loads_.emplace_back([this, box, key] { box->setChecked(preferences_.boolean(key)); });
  return box;
}

QComboBox* DecisionPane::newChoice(const QString& name, std::string_view key, const Items& items) {
  auto* choice = new QComboBox;
  choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  choice->setMinimumContentsLength(6);
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
  match_->load();
  keep_->load();
  // What is shown is not the user's doing.
  std::vector<QSignalBlocker> blockers;
  for (auto* box : findChildren<QCheckBox*>()) blockers.emplace_back(box);
  for (auto* choice : findChildren<QComboBox*>()) blockers.emplace_back(choice);
  for (const auto& load : loads_) load();
  updateEnabled();
}

void DecisionPane::rulesChanged() {
  updateEnabled();
  delegate_.rulesChanged();
}

void DecisionPane::updateEnabled() {
  fileType_->setEnabled(useFileType_->isChecked());
  useBitRate_->setEnabled(useFileType_->isChecked());
  bitRate_->setEnabled(useFileType_->isChecked() && useBitRate_->isChecked());
}

}  // namespace kestrel
