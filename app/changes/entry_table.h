/// Entries of a playlist before and after a change, as a table: what the windows show before they
/// ask, and the history afterwards.
///
/// A row holds numbers only; its texts are made when it is painted, so that a playlist of a
/// hundred thousand entries is shown at once.
#pragma once

#include <QAbstractTableModel>
#include <QList>
#include <QPoint>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "changes/plan.h"
#include "library/track_store.h"

class QTableView;

namespace kestrel {

struct EntryRow {
  enum class Change : std::uint8_t { none, replaced, deleted, added };
  Change change = Change::none;
  std::uint64_t position = 0;           ///< in the list before; of an added entry in the one after
  std::uint64_t before = 0, after = 0;  ///< tracks; 0: there is none
  QString remark;
  bool isWarning = false;  ///< of the remark
  bool isTaken = true;     ///< the user wants the change

  friend bool operator==(const EntryRow&, const EntryRow&) = default;
};

/// The replaced entries, with a remark on those whose track the list then has more than once.
std::vector<EntryRow> replacedRows(const PlannedPlaylist& planned);
/// The entries that are deleted, each with the position of the one that stays.
std::vector<EntryRow> deletedRows(const PlannedPlaylist& planned,
                                  std::span<const std::uint64_t> entries);
/// Two lists side by side, where the one is the other with entries left out or replaced; lists
/// that differ otherwise are compared position by position.
std::vector<EntryRow> comparedRows(std::span<const std::uint64_t> before,
                                   std::span<const std::uint64_t> after);

/// A track in three lines: name and artist, what it is, and its file; of an unknown track
/// that it is one. With the parts in which it is not as `other`, if that is another track.
struct TrackText {
  QString text;
  QList<QPoint> differences;  ///< where each begins, and how long it is
};
TrackText trackText(const TrackStore* tracks, std::uint64_t track, std::uint64_t other = 0);
/// The same with the file's whole path.
QString trackToolTip(const TrackStore* tracks, std::uint64_t track);

class EntryModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { position, before, after, because, columns };
  /// Of a header: which of these it is.
  static constexpr int ColumnRole = Qt::UserRole + 1;
  /// Why a replaced entry's keeper was picked. Called when the row is painted.
  using Reason = std::function<QString(const EntryRow&)>;

  /// `titles` for the columns, in their order; a column without a title is not there. With `taken`
  /// each row has a check box, and a change of one is told with its row.
  EntryModel(QStringList titles, Reason reason = {},
             std::function<void(const EntryRow&)> taken = {});

  /// `names` are of tracks that may have left the library.
  void setRows(std::vector<EntryRow> rows, std::shared_ptr<const TrackStore> tracks,
               std::unordered_map<std::uint64_t, QString> names = {});
  [[nodiscard]] const std::vector<EntryRow>& rows() const { return rows_; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 private:
  [[nodiscard]] TrackText text(const EntryRow& row, Column column) const;
  [[nodiscard]] TrackText textOf(std::uint64_t track, std::uint64_t other) const;

  QStringList titles_;
  std::vector<Column> shown_;
  Reason reason_;
  std::function<void(const EntryRow&)> taken_;
  std::vector<EntryRow> rows_;
  std::shared_ptr<const TrackStore> tracks_;
  std::unordered_map<std::uint64_t, QString> names_;
};

/// A table over such a model.
QTableView* newEntryTable(EntryModel* model, const QString& accessibleName);

}  // namespace kestrel
