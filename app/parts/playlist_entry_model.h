/// The entries of a playlist for the toolkit's views. Nothing is copied or stored but the entries'
/// IDs and how often each is met.
#pragma once

#include <QAbstractTableModel>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "library/track_store.h"

namespace kestrel {

class PlaylistEntryModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { position, name, artist, columns };

  /// `entries` are persistent IDs; those that `tracks` does not have are shown as unknown.
  void show(std::shared_ptr<const TrackStore> tracks, std::vector<std::uint64_t> entries);

  /// The entries that name a track which an earlier one names.
  [[nodiscard]] std::size_t repeats() const noexcept { return entries_.size() - times_.size(); }
  [[nodiscard]] const TrackRecord* track(int row) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation, int role) const override;

 private:
  [[nodiscard]] std::uint32_t timesOf(int row) const;

  std::shared_ptr<const TrackStore> tracks_;
  std::vector<std::uint64_t> entries_;
  std::unordered_map<std::uint64_t, std::uint32_t> times_;
};

}  // namespace kestrel
