/// What playlists get in place of copies that go: a list of the playlists, and the entries of the
/// one that is highlighted, each to be left as it is.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>

#include "app/changes/entry_table.h"
#include "app/controller/removal_offer.h"

class QLabel;
class QTreeWidget;
class QTreeWidgetItem;

namespace kestrel {

class RepairList final : public QWidget {
  Q_OBJECT

 public:
  /// `changed` gets what the user leaves from now on.
  explicit RepairList(std::function<void(LeftAsTheyAre)> changed);

  /// Shows an offer's repairs; the same playlist stays highlighted.
  void load(const RemovalOffer& offer);

 private:
  void loadEntries();
  void showCounts(QTreeWidgetItem* item, const PlannedPlaylist& planned);
  [[nodiscard]] const PlannedPlaylist* highlighted() const;
  /// Entries of copies that the user wants to go, those that are left included.
  [[nodiscard]] std::vector<EntryRow> rowsOf(const PlannedPlaylist& planned) const;

  std::function<void(LeftAsTheyAre)> changed_;
  const RemovalOffer* offer_ = nullptr;
  QTreeWidget* playlists_;
  QLabel* title_;
  EntryModel* entries_;
  QTableView* table_;
};

}  // namespace kestrel
