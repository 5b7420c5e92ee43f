#include "app/changes/outcome_list.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "ui/qt/text.h"
#include "ui/qt/widgets.h"

namespace kestrel {
namespace {

/// Rows of the list; ten thousand files are not read one by one.
constexpr std::size_t mostOutcomes = 5000;

using What = Outcome::What;

bool isPath(const Outcome& outcome) {
  return outcome.what == What::file && outcome.name.starts_with('/');
}

/// The folder in which all files are, without a slash at its end; empty where that is no help.
std::string sharedFolder(std::span<const Outcome> outcomes) {
  std::string_view shared;
  for (const Outcome& outcome : outcomes) {
    if (!isPath(outcome)) continue;
    const std::string_view path = outcome.name;
    const std::string_view folder = path.substr(0, path.rfind('/'));
    if (shared.empty()) {
      shared = folder;
      continue;
    }
    while (!shared.empty() && !(folder.starts_with(shared) &&
                                (folder.size() == shared.size() || folder[shared.size()] == '/')))
      shared = shared.substr(0, shared.rfind('/'));
    if (shared.empty()) return {};
  }
  return std::string(shared);
}

struct OutcomeRow {
  QString name, whole, result, remark;
  bool isDone = false;
};

QString resultText(const Outcome& outcome, RunKind kind) {
  switch (outcome.kind) {
    case Outcome::Kind::done:
      if (kind == RunKind::undo) return OutcomeList::tr("✓ Undone");
      if (outcome.what == What::values) return OutcomeList::tr("✓ Carried over");
      if (kind == RunKind::addToLibrary) return OutcomeList::tr("✓ Added");
      if (outcome.what == What::file)
        return OutcomeList::tr("✓ Moved, %1").arg(sizeText(outcome.changes));
      if (outcome.what == What::track) return OutcomeList::tr("✓ Removed");
      if (outcome.deleted > 0 && kind != RunKind::cleanUp)
        return OutcomeList::tr("✓ %1 replaced, %2 deleted")
            .arg(numberText(outcome.changes - outcome.deleted), numberText(outcome.deleted));
      if (kind == RunKind::cleanUp)
        return toQt(Message::tr("✓ %Ln entries deleted", "✓ %Ln entry deleted",
                                static_cast<std::int64_t>(outcome.changes)));
      return toQt(Message::tr("✓ %Ln entries changed", "✓ %Ln entry changed",
                              static_cast<std::int64_t>(outcome.changes)));
    case Outcome::Kind::asBefore:
      return OutcomeList::tr("– Nothing to undo");
    case Outcome::Kind::skipped:
      return OutcomeList::tr("– Left as it was");
    case Outcome::Kind::failed:
      return OutcomeList::tr("✗ Failed");
    case Outcome::Kind::notReached:
      return OutcomeList::tr("– Stopped before it");
  }
  return {};
}

OutcomeRow rowOf(const Outcome& outcome, RunKind kind, std::size_t shared) {
  OutcomeRow row;
  row.whole = pathToQt(outcome.name);
  row.name = shared > 0 && isPath(outcome)
                 ? QStringLiteral("…") + pathToQt(outcome.name.substr(shared))
                 : row.whole;
  row.result = resultText(outcome, kind);
  row.remark = toQt(outcome.reason);
  row.isDone = outcome.kind == Outcome::Kind::done;
  return row;
}

/// A track that was to leave with its file: one thing.
OutcomeRow removedRow(const Outcome& track, const Outcome& file, std::size_t shared) {
  OutcomeRow row = rowOf(file, RunKind::remove, shared);
  row.isDone = track.kind == Outcome::Kind::done;
  if (!row.isDone) {
    row.result = resultText(track, RunKind::remove);
    if (!track.reason.empty()) row.remark = toQt(track.reason);
  } else if (file.kind == Outcome::Kind::done) {
    row.result = OutcomeList::tr("✓ Removed, %1 to the trash").arg(sizeText(file.changes));
  } else if (file.changes == 0 && !QFileInfo::exists(row.whole)) {
    row.result = OutcomeList::tr("✓ Removed; its file was missing already");
    row.remark.clear();
  } else {
    row.result = OutcomeList::tr("✓ Removed; its file stays");
  }
  return row;
}

std::vector<OutcomeRow> rowsOf(std::span<const Outcome> outcomes, RunKind kind,
                               std::span<const LeftOut> leftOut, std::size_t shared) {
  std::vector<OutcomeRow> rows;
  for (const LeftOut& left : leftOut) {
    if (left.reason.empty() || rows.size() == mostOutcomes) continue;
    if (left.what != LeftOut::What::group && left.what != LeftOut::What::playlist) continue;
    OutcomeRow& row = rows.emplace_back();
    const std::string& name = left.name.empty() ? left.id : left.name;
    row.name = left.what == LeftOut::What::group ? toQt(Message::tr("Group %1").arg(inQuotes(name)))
                                                 : toQt(name);
    row.whole = row.name;
    row.result = OutcomeList::tr("– Left out");
    row.remark = toQt(left.reason);
  }
  std::unordered_map<std::uint64_t, const Outcome*> fileOf;
  std::unordered_set<std::uint64_t> hasTrack;
  if (kind == RunKind::remove)
    for (const Outcome& outcome : outcomes) {
      if (outcome.what == What::file) fileOf.try_emplace(outcome.id, &outcome);
      if (outcome.what == What::track) hasTrack.insert(outcome.id);
    }
  for (const bool done : {false, true})
    for (const Outcome& outcome : outcomes) {
      if (rows.size() >= mostOutcomes) return rows;
      if (outcome.what == What::file && hasTrack.contains(outcome.id)) continue;
      if ((outcome.kind == Outcome::Kind::done) != done) continue;
      const auto file = outcome.what == What::track ? fileOf.find(outcome.id) : fileOf.end();
      rows.push_back(file == fileOf.end() ? rowOf(outcome, kind, shared)
                                          : removedRow(outcome, *file->second, shared));
    }
  return rows;
}

}  // namespace

OutcomeList::OutcomeList()
    : place_(newPlainLabel(tr("Where the files are"))), list_(newList({}, tr("What was done"))) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(place_);
  column->addWidget(list_, 1);
}

void OutcomeList::load(std::span<const Outcome> outcomes, RunKind kind,
                       std::span<const LeftOut> leftOut) {
  const auto has = [&](What what) {
    return std::any_of(outcomes.begin(), outcomes.end(),
                       [&](const Outcome& outcome) { return outcome.what == what; });
  };
  const std::string folder = sharedFolder(outcomes);
  place_->setText(tr("“…” stands for %1").arg(breakable(pathToQt(folder))));
  place_->setVisible(!folder.empty());
  const bool files = has(What::file) || has(What::track);
  const bool playlists = has(What::playlist) || !leftOut.empty() || !files;
  list_->clear();
  list_->setHeaderLabels({!playlists ? tr("File")
                          : files    ? tr("Playlist or File")
                                     : tr("Playlist"),
                          tr("Result"), tr("Remark")});
  widenOuterColumns(list_);
  QList<QTreeWidgetItem*> items;
  for (const OutcomeRow& row : rowsOf(outcomes, kind, leftOut, folder.size())) {
    auto* item = new QTreeWidgetItem({row.name, row.result, row.remark});
    item->setToolTip(0, row.whole);
    item->setToolTip(2, row.remark);
    items << item;
  }
  list_->addTopLevelItems(items);
  // Remarks get what they need, up to a part of the width.
  list_->header()->setSectionResizeMode(2, QHeaderView::Interactive);
  list_->resizeColumnToContents(2);
  list_->header()->resizeSection(2, std::min(list_->header()->sectionSize(2), width() * 2 / 5));
  const std::size_t all = outcomes.size() + leftOut.size();
  if (static_cast<std::size_t>(items.size()) == mostOutcomes && all > mostOutcomes)
    new QTreeWidgetItem(list_, {tr("… and %1 more, in the history").arg(all - mostOutcomes)});
}

}  // namespace kestrel
