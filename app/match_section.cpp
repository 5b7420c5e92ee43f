#include "app/match_section.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "app/controller/criteria.h"
#include "app/pane_parts.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/qt/look.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// Fields that are always seen; the others are behind "More fields".
constexpr std::size_t usualFields = 4;
constexpr int mostSeconds = 600;
constexpr const char* timeField = "time";

}  // namespace

std::vector<std::string> previewFields() {
  std::vector<std::string> fields;
  for (const Criterion& choice : criterionChoices()) fields.emplace_back(choice.key);
  fields.emplace_back(timeField);
  return fields;
}

MatchSection::MatchSection(Preferences& preferences) : preferences_(preferences) {
  auto* column = newSection(this, tr("Match by"));
  auto* moreFields = new QWidget;
  auto* moreColumn = new QVBoxLayout(moreFields);
  moreColumn->setContentsMargins(0, 0, 0, 0);
  moreColumn->setSpacing(2);

  std::size_t count = 0;
  for (const Criterion& choice : criterionChoices()) {
    auto* box = new QCheckBox(translated(choice.title));
    addField(count++ < usualFields ? column : moreColumn, std::string(choice.key), box, box);
    connect(box, &QCheckBox::toggled, this, [this, key = choice.key](bool on) {
      setCriterion(preferences_, key, on);
      tell();
    });
  }
  addTime(column);
  // The criterion that finds nothing is offered to those only who have it and must get rid of it.
  filename_ = new QCheckBox(QStringLiteral("Filename"));
  filename_->setToolTip(
      tr("This criterion makes every search come back empty. Untick it and use File Name."));
  moreColumn->addWidget(filename_);
  connect(filename_, &QCheckBox::toggled, this, [this](bool on) {
    setCriterion(preferences_, filenameLiteral, on);
    tell();
  });
  auto* caseSensitive = new QCheckBox(tr("Match &case"));
  caseSensitive->setToolTip(tr("Capitals and small letters differ"));
  connect(caseSensitive, &QCheckBox::toggled, this, [this](bool on) {
    preferences_.set(settings::caseSensitive, on);
    tell();
  });
  loads_.emplace_back([this, caseSensitive] {
    caseSensitive->setChecked(preferences_.boolean(settings::caseSensitive));
  });
  moreColumn->addWidget(caseSensitive);

  QToolButton* more = newFold(tr("&More fields"), moreFields);
  loads_.emplace_back([this, more] {
    // What counts is seen.
    const bool any = std::any_of(fields_.begin() + usualFields, fields_.end() - 1,
                                 [](const Field& field) { return field.box->isChecked(); });
    if (any || filename_->isChecked() || preferences_.boolean(settings::caseSensitive))
      more->setChecked(true);
  });
  column->addWidget(more);
  column->addWidget(moreFields);
  problem_ = new QLabel;
  problem_->setWordWrap(true);
  problem_->setFont(smallFont(font()));
  setTextColor(problem_, "warningText");
  column->addWidget(problem_);
}

MatchSection::Field& MatchSection::addField(QVBoxLayout* column, std::string key, QWidget* title,
                                            QCheckBox* box) {
  auto* effect = new QLabel;
  effect->setFont(smallFont(font()));
  effect->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  setTextColor(effect, "grayText");
  auto* line = new QHBoxLayout;
  line->setContentsMargins(0, 0, 0, 0);
  line->addWidget(title, 1);
  line->addWidget(effect);
  column->addLayout(line);
  return fields_.emplace_back(Field{std::move(key), box, effect});
}

void MatchSection::addTime(QVBoxLayout* column) {
  time_ = new QCheckBox(tr("&Time"));
  tolerance_ = new QSpinBox;
  tolerance_->setRange(0, mostSeconds);
  tolerance_->setSpecialValueText(tr("exact", "playing times"));
  tolerance_->setPrefix(QStringLiteral("± "));
  tolerance_->setSuffix(tr(" s", "seconds"));
  tolerance_->setToolTip(tr("How far playing times may lie apart"));
  tolerance_->setAccessibleName(tr("Largest difference of playing times in seconds"));
  auto* title = new QWidget;
  auto* line = new QHBoxLayout(title);
  line->setContentsMargins(0, 0, 0, 0);
  line->addWidget(time_);
  line->addWidget(tolerance_);
  line->addStretch(1);
  addField(column, timeField, title, time_);
  connect(time_, &QCheckBox::toggled, this, [this](bool on) {
    preferences_.set(settings::criteriaCBTime, on);
    tell();
  });
  connect(tolerance_, &QSpinBox::valueChanged, this, [this](int seconds) {
    setTimeTolerance(preferences_, seconds);
    tell();
  });
}

void MatchSection::tell() {
  load();
  Q_EMIT changed();
}

void MatchSection::load() {
  // What is shown is not the user's doing.
  std::vector<QSignalBlocker> blockers;
  for (QWidget* part : findChildren<QWidget*>())
    if (!qobject_cast<QToolButton*>(part)) blockers.emplace_back(part);
  const auto chosen = chosenCriteria(preferences_);
  for (const Field& field : fields_)
    field.box->setChecked(std::find(chosen.begin(), chosen.end(), field.key) != chosen.end());
  time_->setChecked(preferences_.boolean(settings::criteriaCBTime));
  tolerance_->setValue(timeTolerance(preferences_));
  filename_->setChecked(std::find(chosen.begin(), chosen.end(), filenameLiteral) != chosen.end());
  filename_->setVisible(filename_->isChecked());
  for (const auto& load : loads_) load();
  const bool matches = !searchCriteria(preferences_).empty();
  problem_->setVisible(!matches);
  if (!matches)
    problem_->setText(time_->isChecked()
                          ? tr("Tick another field: times that lie near each other are no match "
                               "by themselves.")
                          : tr("Tick a field that duplicates share."));
}

void MatchSection::showPreview(const FieldPreview& preview) {
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    const Field& field = fields_[i];
    const bool isKnown = i < preview.withField.size() && preview.withField[i].has_value();
    const std::size_t with = isKnown ? *preview.withField[i] : 0;
    QString text, meaning;
    if (preview.now && field.box->isChecked()) {
      const std::size_t groups = preview.shown.value_or(*preview.now);
      text = numberText(groups);
      meaning = toQt(Message::tr("%Ln groups", "%Ln group", countOf(groups)));
    } else if (preview.now && isKnown) {
      const bool fewer = with < *preview.now;
      const std::size_t by = fewer ? *preview.now - with : with - *preview.now;
      text = by == 0 ? tr("the same", "number of groups")
             : fewer ? toQt(Message::tr("%Ln fewer", "%Ln fewer", countOf(by)))
                     : toQt(Message::tr("%Ln more", "%Ln more", countOf(by)));
      meaning = toQt(Message::tr("With this field too: %Ln groups",
                                 "With this field too: %Ln group", countOf(with)));
    }
    field.effect->setText(text);
    field.effect->setToolTip(meaning);
    field.box->setToolTip(meaning);
    field.box->setAccessibleDescription(meaning);
  }
}

}  // namespace kestrel
