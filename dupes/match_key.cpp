#include "dupes/match_key.h"

#include <algorithm>
#include <optional>

#include "foundation/collation.h"

namespace kestrel {

MatchKeyMaker::MatchKeyMaker(const TrackStore& store, std::span<const std::string> criteria,
                             const GroupingOptions& options)
    : store_(store),
      caseSensitive_(options.caseSensitive),
      needsValues_(options.loose && !(options.loose & bitOf(Loose::emptyValues))) {
  if (options.loose) loosener_.emplace(options.loose);
  for (const std::string& criterion : criteria) {
    const std::optional<TrackKey> key = trackKey(criterion);
    if (key) parts_.push_back({trackKeyInfo(*key).itemText, *key});
  }
}

// There is no separator between the values: "ab" and "c" match "a" and "bc".
bool MatchKeyMaker::join(const TrackRecord& record, std::string& out) {
  out.clear();
  for (const Part& part : parts_) {
    const std::size_t before = out.size();
    append(record, part, out);
    if (!needsValues_ || out.size() > before) continue;
    out.clear();
    return false;
  }
  return true;
}

void MatchKeyMaker::append(const TrackRecord& record, const Part& part, std::string& out) {
  if (part.text && loosener_)
    loosener_->append((record.item().*part.text).view(), out);
  else if (part.text)
    out.append((record.item().*part.text).view());
  else
    appendTextForm(record.value(part.key), store_.dates(), out);
}

void MatchKeyMaker::value(const TrackRecord& record, std::size_t part, std::string& out) {
  out.clear();
  append(record, parts_[part], out);
}

// Letter case is taken off the joined text: whether a sigma ends a word is only known there.
void MatchKeyMaker::make(const TrackRecord& record, std::string& key) {
  if (caseSensitive_) {
    join(record, key);
  } else {
    if (join(record, joined_))
      lowercaseInto(joined_, key);
    else
      key.clear();
  }
}

// Mostly the values themselves are equal, which is soon seen.
bool MatchKeyMaker::same(const TrackRecord& a, const TrackRecord& b) {
  const auto equal = [&](const Part& part) {
    return part.text && (a.item().*part.text).view() == (b.item().*part.text).view();
  };
  if (std::all_of(parts_.begin(), parts_.end(), equal)) return true;
  make(a, compared_[0]);
  make(b, compared_[1]);
  return compared_[0] == compared_[1];
}

}  // namespace kestrel
