#include "app/choices/match_section.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "app/controller/criteria.h"
#include "app/parts/pane_parts.h"
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
    fields_.push_back(
        newField(count++ < usualFields ? column : moreColumn, std::string(choice.key), box, box));
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
  auto* caseSensitive = new QCheckBox(tr("Match case"));
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
  addLooseness(column);
  problem_ = new QLabel;
  problem_->setWordWrap(true);
  problem_->setFont(smallFont(font()));
  setTextColor(problem_, "warningText");
  column->addWidget(problem_);
}

MatchSection::Field MatchSection::newField(QVBoxLayout* column, std::string key, QWidget* title,
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
  return {std::move(key), box, effect};
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
  fields_.push_back(newField(column, timeField, title, time_));
  connect(time_, &QCheckBox::toggled, this, [this](bool on) {
    preferences_.set(settings::criteriaCBTime, on);
    tell();
  });
  connect(tolerance_, &QSpinBox::valueChanged, this, [this](int seconds) {
    setTimeTolerance(preferences_, seconds);
    tell();
  });
}

void MatchSection::addLooseness(QVBoxLayout* column) {
  auto* content = new QWidget;
  content->setObjectName(QStringLiteral("looserMatching"));
  auto* lines = new QVBoxLayout(content);
  lines->setContentsMargins(0, 0, 0, 0);
  lines->setSpacing(2);
  auto* heading = new QLabel(tr("When values are compared, pass over:"));
  heading->setFont(smallFont(font()));
  heading->setWordWrap(true);
  setTextColor(heading, "grayText");
  lines->addWidget(heading);
  for (const LooseInfo& info : loosenings()) {
    auto* box = new QCheckBox(translated(info.name).replace('&', QStringLiteral("&&")));
    looseness_.push_back(newField(lines, info.word, box, box));
    connect(box, &QCheckBox::toggled, this, [this, loose = info.loose](bool on) {
      setLoose(preferences_, loose, on);
      tell();
    });
  }
  auto* empty = new QLabel(
      tr("With any of these, a song without a value in a ticked field matches none, unless the "
         "last is ticked too."));
  empty->setFont(smallFont(font()));
  empty->setWordWrap(true);
  setTextColor(empty, "grayText");
  lines->addWidget(empty);
  QToolButton* fold = newFold(tr("Looser: accents, “feat.”…"), content);
  fold->setToolTip(tr("What may differ in names and still match"));
  loads_.emplace_back([this, fold] {
    const LooseSet chosen = chosenLoose(preferences_);
    std::size_t place = 0;
    for (const LooseInfo& info : loosenings())
      looseness_[place++].box->setChecked((chosen & bitOf(info.loose)) != 0);
    // What counts is seen.
    if (chosen) fold->setChecked(true);
  });
  column->addWidget(fold);
  column->addWidget(content);
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
  const auto show = [&](const Field& field, std::optional<std::size_t> with,
                        Message (*meant)(std::int64_t)) {
    QString text, meaning;
    if (preview.now && field.box->isChecked()) {
      const std::size_t groups = preview.shown.value_or(*preview.now);
      text = numberText(groups);
      meaning = toQt(Message::tr("%Ln groups", "%Ln group", countOf(groups)));
    } else if (preview.now && with) {
      const bool fewer = *with < *preview.now;
      const std::size_t by = fewer ? *preview.now - *with : *with - *preview.now;
      text = by == 0 ? tr("the same", "number of groups")
             : fewer ? toQt(Message::tr("%Ln fewer", "%Ln fewer", countOf(by)))
                     : toQt(Message::tr("%Ln more", "%Ln more", countOf(by)));
      meaning = toQt(meant(countOf(*with)));
    }
    field.effect->setText(text);
    field.effect->setToolTip(meaning);
    field.box->setToolTip(meaning);
    field.box->setAccessibleDescription(meaning);
  };
  const auto known = [](const std::vector<std::optional<std::size_t>>& counts, std::size_t place) {
    return place < counts.size() ? counts[place] : std::nullopt;
  };
  for (std::size_t i = 0; i < fields_.size(); ++i)
    show(fields_[i], known(preview.withField, i), [](std::int64_t groups) {
      return Message::tr("With this field too: %Ln groups", "With this field too: %Ln group",
                         groups);
    });
  for (std::size_t i = 0; i < looseness_.size(); ++i)
    show(looseness_[i], known(preview.withLoose, i), [](std::int64_t groups) {
      return Message::tr("Looser by this: %Ln groups", "Looser by this: %Ln group", groups);
    });
}

}  // namespace kestrel
