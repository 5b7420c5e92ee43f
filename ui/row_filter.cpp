#include "ui/row_filter.h"

#include <algorithm>

#include "foundation/collation.h"

namespace kestrel {
namespace {

constexpr TrackKey searched[] = {TrackKey::tName,  TrackKey::tArtist,   TrackKey::tAlbum,
                                 TrackKey::tGenre, TrackKey::tComposer, TrackKey::tAlbumArtist,
                                 TrackKey::tLoc};

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char lowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

/// `word` is lower case; both are plain letters, which most names are.
bool holdsAscii(std::string_view text, std::string_view word) {
  if (text.size() < word.size()) return false;
  const std::size_t last = text.size() - word.size();
  for (std::size_t i = 0; i <= last; ++i) {
    if (lowerAscii(text[i]) != word[0]) continue;
    std::size_t k = 1;
    while (k < word.size() && lowerAscii(text[i + k]) == word[k]) ++k;
    if (k == word.size()) return true;
  }
  return false;
}

}  // namespace

void RowFilter::start(std::string_view text, std::span<const ResultTrack> rows) {
  const std::string lower = lowercase(text);
  // A longer text matches nothing that its beginning did not match.
  const bool narrows = isDone() && isActive() && rows.data() == rows_.data() &&
                       rows.size() == rows_.size() && lower.starts_with(text_);
  if (!narrows) matching_.assign(rows.size(), true);
  rows_ = rows;
  text_ = lower;
  words_.clear();
  for (std::size_t begin = 0; begin < lower.size();) {
    const std::size_t end = std::min(lower.find(' ', begin), lower.size());
    if (end > begin) {
      std::string word = lower.substr(begin, end - begin);
      const bool ascii = isAscii(word);
      words_.push_back({std::move(word), ascii});
    }
    begin = end + 1;
  }
  next_ = words_.empty() ? rows_.size() : 0;
}

bool RowFilter::work(std::size_t most) {
  const std::size_t end = next_ + std::min(most, rows_.size() - next_);
  for (; next_ < end; ++next_) {
    if (!matching_[next_]) continue;
    const ResultTrack& row = rows_[next_];
    matching_[next_] = std::all_of(words_.begin(), words_.end(),
                                   [&](const Word& word) { return rowHolds(row, word); });
  }
  return next_ < rows_.size();
}

void RowFilter::reset() {
  rows_ = {};
  text_.clear();
  words_.clear();
  matching_.clear();
  next_ = 0;
}

bool RowFilter::rowHolds(const ResultTrack& row, const Word& word) {
  return std::any_of(std::begin(searched), std::end(searched), [&](TrackKey key) {
    const Value value = row.record->value(key);
    return holds(value.text(), word);
  });
}

bool RowFilter::holds(std::string_view text, const Word& word) {
  if (word.ascii && holdsAscii(text, word.lower)) return true;
  if (isAscii(text)) return false;
  lowercaseInto(text, lowered_);
  return lowered_.find(word.lower) != std::string::npos;
}

}  // namespace kestrel
