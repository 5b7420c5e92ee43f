#include "app/parts/scope_box.h"

#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>
#include <numeric>
#include <utility>

#include "app/controller/app_delegate.h"
#include "ui/qt/segments.h"
#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {

ScopeBox::ScopeBox(AppDelegate& delegate, ActionScope scope)
    : delegate_(delegate),
      scope_(std::move(scope)),
      choices_(new Segments(tr("Which groups take part"))) {
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(0, 0, 0, 0);
  line->addWidget(choices_);
  const bool choose = scope_.shown || !scope_.selected.empty();
  choices_->add(all, toQt(Message::tr("&All %Ln groups", "&All %Ln group",
                                      countOf(delegate_.summary().groups))));
  if (scope_.shown)
    choices_->add(shown, toQt(Message::tr("The %Ln sho&wn groups", "The sho&wn group",
                                          countOf(scope_.shown->size()))));
  if (!scope_.selected.empty())
    choices_->add(selected, toQt(Message::tr("The %Ln selecte&d groups", "The selecte&d group",
                                             countOf(scope_.selected.size()))));
  const bool takeSelected = scope_.takeSelected && !scope_.selected.empty();
  choices_->choose(takeSelected ? selected : all);
  choices_->setVisible(choose);
  if (delegate_.searchedPart()) {
    const QString text = tr("Only “%1” was searched.");
    line->addWidget(
        newPlainLabel(tr("What was searched"), text.arg(toQt(delegate_.searchedPlaylistName()))),
        1);
  } else {
    line->addStretch(1);
  }
  if (!choose && !delegate_.searchedPart()) hide();
  connect(choices_, &Segments::changed, this, &ScopeBox::changed);
}

std::size_t ScopeBox::groups() const {
  switch (choices_->chosen()) {
    case shown:
      return scope_.shown->size();
    case selected:
      return scope_.selected.size();
    default:
      return delegate_.summary().groups;
  }
}

std::vector<std::uint32_t> ScopeBox::rows() const {
  std::vector<std::uint32_t> rows;
  if (const int chosen = choices_->chosen(); chosen == shown || chosen == selected) {
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
