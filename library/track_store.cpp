#include "library/track_store.h"

#include <algorithm>
#include <bit>
#include <charconv>

namespace kestrel {

void TrackStore::hold(std::shared_ptr<const MediaItems> items) {
  held_.push_back(std::move(items));
}

void TrackStore::reserve(std::size_t records) {
  records_.reserve(records);
  grow(std::bit_ceil(std::max<std::size_t>(records * 3 / 2, 16)));
}

std::size_t TrackStore::slotOf(std::uint64_t persistentID) const noexcept {
  // Persistent IDs are random in practice, but a document may number them: mix, then probe.
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = (persistentID * 0x9E3779B97F4A7C15U) >> (64 - std::bit_width(mask));
  while (slots_[slot] && records_[slots_[slot] - 1].item().persistentID != persistentID)
    slot = (slot + 1) & mask;
  return slot;
}

void TrackStore::grow(std::size_t slots) {
  slots_.assign(slots, 0);
  for (std::size_t i = 0; i < records_.size(); ++i)
    slots_[slotOf(records_[i].item().persistentID)] = static_cast<std::uint32_t>(i + 1);
}

void TrackStore::put(const TrackRecord& record) {
  if ((records_.size() + 1) * 4 > slots_.size() * 3)
    grow(std::max<std::size_t>(slots_.size() * 2, 16));
  std::uint32_t& slot = slots_[slotOf(record.item().persistentID)];
  if (slot) {
    records_[slot - 1] = record;
  } else {
    records_.push_back(record);
    slot = static_cast<std::uint32_t>(records_.size());
  }
}

void TrackStore::carryOver(const TrackStore& earlier) {
  std::shared_ptr<MediaItems> copies;
  for (const TrackRecord& record : earlier.records_) {
    if (!slots_.empty() && slots_[slotOf(record.item().persistentID)]) continue;
    if (!copies) copies = std::make_shared<MediaItems>();
    put(record.over(copies->appendCopy(record.item()), *dates_));
  }
  if (!copies) return;
  copies->seal();
  hold(std::move(copies));
}

const TrackRecord* TrackStore::find(std::uint64_t persistentID) const noexcept {
  if (slots_.empty()) return nullptr;
  const std::uint32_t slot = slots_[slotOf(persistentID)];
  return slot ? &records_[slot - 1] : nullptr;
}

const TrackRecord* TrackStore::find(std::string_view hexpid) const noexcept {
  std::uint64_t id = 0;
  const char* end = hexpid.data() + hexpid.size();
  const auto [stop, error] = std::from_chars(hexpid.data(), end, id, 16);
  return error == std::errc() && stop == end ? find(id) : nullptr;
}

std::size_t TrackStore::memory() const noexcept {
  std::size_t bytes =
      records_.capacity() * sizeof(TrackRecord) + slots_.capacity() * sizeof(slots_[0]);
  for (const auto& items : held_) bytes += items->memory();
  return bytes;
}

}  // namespace kestrel
