#include "library/track_store.h"

#include "foundation/identifiers.h"

namespace kestrel {

TrackStore::TrackStore(std::shared_ptr<const DateFormatter> dates) : dates_(std::move(dates)) {
  for (std::size_t i = 0; i < states_.size(); ++i)
    for (const bool checkbox : {false, true})
      states_[i][checkbox ? 1 : 0] = {static_cast<FileAvailability>(i), checkbox, dates_.get()};
}

void TrackStore::hold(std::shared_ptr<const MediaItems> items) {
  held_.push_back(std::move(items));
}

void TrackStore::reserve(std::size_t records) {
  records_.reserve(records);
  if (records_.empty()) numbers_.reset(records);
}

std::optional<std::uint32_t> TrackStore::numberOf(std::uint64_t persistentID) const noexcept {
  return numbers_.find(persistentID, [&](std::uint32_t number) {
    return records_[number].item().persistentID == persistentID;
  });
}

void TrackStore::put(const MediaItem& item, FileAvailability availability, bool checkbox) {
  const TrackRecord record(item, states_[static_cast<std::size_t>(availability)][checkbox ? 1 : 0]);
  const std::uint64_t id = item.persistentID;
  if (const auto number = numberOf(id)) {
    records_[*number] = record;
  } else {
    numbers_.add(id, static_cast<std::uint32_t>(records_.size()));
    records_.push_back(record);
  }
}

void TrackStore::carryOver(const TrackStore& earlier) {
  std::shared_ptr<MediaItems> copies;
  for (const TrackRecord& record : earlier.records_) {
    if (find(record.item().persistentID)) continue;
    if (!copies) copies = std::make_shared<MediaItems>();
    put(copies->appendCopy(record.item()), record.availability(), record.checkbox());
    ++carriedOver_;
  }
  if (!copies) return;
  copies->seal();
  hold(std::move(copies));
}

const TrackRecord* TrackStore::find(std::uint64_t persistentID) const noexcept {
  const auto number = numberOf(persistentID);
  return number ? &records_[*number] : nullptr;
}

const TrackRecord* TrackStore::find(std::string_view hexpid) const noexcept {
  const auto id = numberFromHex(hexpid);
  return id ? find(*id) : nullptr;
}

std::size_t TrackStore::memory() const noexcept {
  std::size_t bytes = records_.capacity() * sizeof(TrackRecord) + numbers_.memory();
  for (const auto& items : held_) bytes += items->memory();
  return bytes;
}

}  // namespace kestrel
