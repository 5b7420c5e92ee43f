#include "app/scope_box.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <algorithm>
#include <numeric>
#include <utility>

#include "app/controller/app_delegate.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {

ScopeBox::ScopeBox(AppDelegate& delegate, ActionScope scope)
    : delegate_(delegate), scope_(std::move(scope)), choices_(new QButtonGroup(this)) {
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(0, 0, 0, 0);
  const auto add = [&](Choice choice, const QString& title) {
    auto* button = new QRadioButton(title);
    choices_->addButton(button, choice);
    line->addWidget(button);
  };
  const bool choose = scope_.shown || !scope_.selected.empty();
  if (choose) add(all, tr("All &groups (%1)").arg(numberText(delegate_.summary().groups)));
  if (scope_.shown)
    add(shown, tr("Those the &filter shows (%1)").arg(numberText(scope_.shown->size())));
  if (!scope_.selected.empty())
    add(selected, tr("The &selected ones (%1)").arg(numberText(scope_.selected.size())));
  const bool takeSelected = scope_.takeSelected && !scope_.selected.empty();
  if (choose)
    choices_->button(takeSelected ? selected : scope_.shown ? shown : all)->setChecked(true);
  if (delegate_.searchedPart()) {
    const QString text = tr("Only “%1” was searched.");
    line->addWidget(
        newPlainLabel(tr("What was searched"), text.arg(toQt(delegate_.searchedPlaylistName()))),
        1);
  } else {
    line->addStretch(1);
  }
  if (!choose && !delegate_.searchedPart()) hide();
  connect(choices_, &QButtonGroup::idToggled, this, [this](int, bool on) {
    if (on) Q_EMIT changed();
  });
}

std::vector<std::uint32_t> ScopeBox::rows() const {
  std::vector<std::uint32_t> rows;
  if (const int chosen = choices_->checkedId(); chosen == shown || chosen == selected) {
    for (const std::int32_t group : chosen == shown ? *scope_.shown : scope_.selected) {
      const auto members = delegate_.groups().members(group);
      rows.insert(rows.end(), members.begin(), members.end());
    }
    std::sort(rows.begin(), rows.end());
  } else {
    rows.resize(delegate_.groups().rowCount());
    std::iota(rows.begin(), rows.end(), 0U);
  }
  return rows;
}

}  // namespace kestrel
