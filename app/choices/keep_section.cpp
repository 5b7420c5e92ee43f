#include "app/choices/keep_section.h"

#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <string>

#include "app/parts/pane_parts.h"
#include "dupes/keeper_rules.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// More would never be asked.
constexpr std::size_t mostRules = 5;

bool isRule(int number) { return keeperRule(std::int64_t{number}).has_value(); }

}  // namespace

KeepSection::KeepSection(Preferences& preferences)
    : preferences_(preferences), rows_(new QVBoxLayout), then_(newLink(tr("+ the&n…"))) {
  auto* column = newSection(this, tr("Keep"));
  rows_->setSpacing(4);
  column->addLayout(rows_);
  addFolderChooser(column);
  then_->setToolTip(tr("What decides where the rules above leave several copies"));
  column->addWidget(then_);
  connect(then_, &QToolButton::clicked, this, [this] {
    std::vector<int> wanted = rules();
    // The first that is not asked yet.
    for (const KeeperRuleInfo& info : keeperRules())
      if (const int rule = static_cast<int>(info.rule);
          std::find(wanted.begin(), wanted.end(), rule) == wanted.end()) {
        wanted.push_back(rule);
        break;
      }
    setRules(wanted);
    if (auto* added = lines_.back()->findChild<QComboBox*>()) added->setFocus();
  });
}

std::vector<int> KeepSection::rules() const {
  std::vector<int> rules{static_cast<int>(preferences_.integer(settings::filterMatrixButton))};
  for (const std::string& text : preferences_.textArray(settings::keeperChain))
    if (const auto rule = keeperRule(text)) rules.push_back(static_cast<int>(*rule));
  return rules;
}

void KeepSection::setRules(const std::vector<int>& rules) {
  preferences_.set(settings::filterMatrixButton, std::int64_t{rules.front()});
  std::vector<std::string> chain;
  for (std::size_t i = 1; i < rules.size(); ++i) chain.push_back(std::to_string(rules[i]));
  preferences_.set(settings::keeperChain, std::move(chain));
  load();
  Q_EMIT changed();
}

void KeepSection::makeRow(std::size_t place, int rule) {
  auto* row = new QWidget;
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(4);
  auto* number = new QLabel(numberText(place + 1));
  setTextColor(number, "grayText");
  auto* choice = new QComboBox;
  choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  choice->setMinimumContentsLength(12);
  const QString name =
      place == 0 ? tr("Rule that decides which copy is kept")
                 : tr("Rule %1, where those before it leave several copies").arg(place + 1);
  choice->setAccessibleName(name);
  choice->setAccessibleDescription(name);
  for (const KeeperRuleInfo& info : keeperRules())
    choice->addItem(translated(info.name), static_cast<int>(info.rule));
  if (place == 0 && !presets_.empty()) {
    choice->insertSeparator(choice->count());
    // Told from rules by their sign.
    for (std::size_t i = 0; i < presets_.size(); ++i)
      choice->addItem(toQt(presets_[i].name), -1 - static_cast<int>(i));
  }
  choice->setCurrentIndex(choice->findData(rule));
  connect(choice, &QComboBox::currentIndexChanged, this, [this, choice, place] {
    if (const int chosen = choice->currentData().toInt(); chosen < 0) {
      QMetaObject::invokeMethod(
          this, [this, chosen] { Q_EMIT presetChosen(static_cast<std::size_t>(-1 - chosen)); },
          Qt::QueuedConnection);
      return;
    }
    std::vector<int> wanted = rules();
    wanted[place] = choice->currentData().toInt();
    // The box goes with the row that is made anew.
    QMetaObject::invokeMethod(
        this, [this, wanted] { setRules(wanted); }, Qt::QueuedConnection);
  });
  line->addWidget(number);
  line->addWidget(choice, 1);
  if (place > 0) {
    QToolButton* remove = newLink(tr("✕"));
    remove->setToolTip(tr("Do without this rule"));
    remove->setAccessibleName(tr("Do without rule %1").arg(place + 1));
    connect(remove, &QToolButton::clicked, this, [this, place] {
      std::vector<int> wanted = rules();
      wanted.erase(wanted.begin() + static_cast<std::ptrdiff_t>(place));
      QMetaObject::invokeMethod(
          this, [this, wanted] { setRules(wanted); }, Qt::QueuedConnection);
    });
    line->addWidget(remove);
  }
  rows_->addWidget(row);
  lines_.push_back(row);
}

void KeepSection::setPresets(const std::vector<Preset>& presets) {
  if (presets == presets_) return;
  presets_ = presets;
  for (QWidget* line : lines_) {
    line->hide();
    line->deleteLater();
  }
  lines_.clear();
  load();
}

void KeepSection::load() {
  const std::vector<int> wanted = rules();
  std::vector<int> shown;
  for (QWidget* line : lines_)
    shown.push_back(line->findChild<QComboBox*>()->currentData().toInt());
  if (shown != wanted) {
    // Those that are as they were keep the focus.
    std::size_t same = 0;
    while (same < shown.size() && same < wanted.size() && shown[same] == wanted[same]) ++same;
    while (lines_.size() > same) {
      lines_.back()->hide();
      lines_.back()->deleteLater();
      lines_.pop_back();
    }
    for (std::size_t i = same; i < wanted.size(); ++i) makeRow(i, wanted[i]);
  }
  const auto asks = [&](KeeperRule rule) {
    return std::find(wanted.begin(), wanted.end(), static_cast<int>(rule)) != wanted.end();
  };
  folderRow_->setVisible(asks(KeeperRule::folderLocation));
  folder_->setText(pathToQt(preferences_.text(settings::filterFolderLoc)));
  // Chance leaves nothing open.
  then_->setVisible(wanted.size() < mostRules && isRule(wanted.front()) &&
                    !asks(KeeperRule::singleArbitrary));
}

void KeepSection::addFolderChooser(QVBoxLayout* column) {
  folderRow_ = new QWidget;
  auto* line = new QHBoxLayout(folderRow_);
  line->setContentsMargins(2 * gridStep, 0, 0, 0);
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
  connect(folder_, &QLineEdit::editingFinished, this, &KeepSection::storeFolder);
  connect(choose, &QToolButton::clicked, this, &KeepSection::chooseFolder);
}

void KeepSection::chooseFolder() {
  auto* dialog = new QFileDialog(this, tr("Folder of the files to keep"), folder_->text());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::Directory);
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& folder) {
    folder_->setText(folder);
    storeFolder();
  });
  dialog->open();
}

void KeepSection::storeFolder() {
  const std::string folder = pathFromQt(folder_->text());
  if (folder == preferences_.text(settings::filterFolderLoc)) return;
  preferences_.set(settings::filterFolderLoc, folder);
  Q_EMIT changed();
}

}  // namespace kestrel
