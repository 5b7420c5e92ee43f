#include "app/result/rule_outcome_model.h"

#include <QFont>
#include <QLocale>
#include <algorithm>
#include <utility>

#include "ui/qt/text.h"

namespace kestrel {

void RuleOutcomeModel::show(ResultComparison comparison) {
  beginResetModel();
  comparison_ = std::move(comparison);
  highest_ = {};
  for (std::size_t row = 0; row < comparison_.outcomes.size(); ++row)
    for (int column = changed; column < columns; ++column)
      highest_[static_cast<std::size_t>(column)] = std::max(
          highest_[static_cast<std::size_t>(column)], number(row, static_cast<Column>(column)));
  endResetModel();
}

int RuleOutcomeModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(comparison_.outcomes.size());
}

int RuleOutcomeModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns;
}

QString RuleOutcomeModel::nameOf(std::size_t row) const {
  const ComparedRule& compared = comparison_.rules[row];
  QString name;
  if (!compared.preset.empty()) {
    name = toQt(compared.preset);
  } else {
    QStringList names;
    for (const KeeperRule one : compared.rules) names << translated(keeperRuleInfo(one).name);
    name = names.join(tr(", then "));
  }
  return row == comparison_.current ? tr("%1 (in use)").arg(name) : name;
}

qlonglong RuleOutcomeModel::number(std::size_t row, Column column) const {
  const RuleOutcome& outcome = comparison_.outcomes[row];
  switch (column) {
    case changed:
      return static_cast<qlonglong>(outcome.changedGroups);
    case playlists:
      return outcome.playlists;
    case entries:
      return outcome.entries;
    case bytes:
      return outcome.bytes;
    case plays:
      return outcome.playsLost;
    case ratings:
      return outcome.ratingsLost;
    default:
      return 0;
  }
}

QVariant RuleOutcomeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const auto row = static_cast<std::size_t>(index.row());
  const auto column = static_cast<Column>(index.column());
  switch (role) {
    case Qt::DisplayRole:
      if (column == rule) return nameOf(row);
      if (column == bytes) return sizeText(static_cast<std::uint64_t>(number(row, bytes)));
      return QLocale().toString(number(row, column));
    case Qt::ToolTipRole:
      return column == rule ? QVariant(nameOf(row)) : QVariant();
    case SortRole:
      return column == rule ? QVariant(nameOf(row)) : QVariant(number(row, column));
    case ShareRole: {
      const qlonglong highest = highest_[static_cast<std::size_t>(column)];
      if (column == rule || highest == 0) return {};
      return static_cast<double>(number(row, column)) / static_cast<double>(highest);
    }
    case Qt::FontRole: {
      QFont font;
      font.setBold(row == comparison_.current);
      return font;
    }
    case Qt::TextAlignmentRole:
      return int((column == rule ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    default:
      return {};
  }
}

QVariant RuleOutcomeModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columns) return {};
  if (role == Qt::TextAlignmentRole)
    return int((section == rule ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
  const struct {
    QString title, toolTip;
  } titles[columns] = {
      {tr("Rule"), {}},
      {tr("Other keeper"), tr("Groups that would keep another copy than now")},
      {tr("Playlists"), tr("Playlists in which entries would be replaced")},
      {tr("Entries"), tr("Entries that would be replaced")},
      {tr("Frees"), tr("Bytes of the files that would go")},
      {tr("Plays lost"), tr("Plays of the copies that would go")},
      {tr("Ratings lost"), tr("Copies that would go and are rated higher than what stays")}};
  if (role == Qt::DisplayRole) return titles[section].title;
  if (role == Qt::ToolTipRole) return titles[section].toolTip;
  return {};
}

}  // namespace kestrel
