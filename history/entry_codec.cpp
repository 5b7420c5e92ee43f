#include "history/entry_codec.h"

#include <algorithm>

#include "foundation/bytes.h"

namespace kestrel {
namespace {

// The first byte says how the rest is written.
constexpr char whole = 'E', replaced = 'R', deleted = 'D', added = 'A';

void appendID(std::uint64_t id, std::string& out) {
  for (unsigned shift = 0; shift < 64; shift += 8) out += static_cast<char>(id >> shift);
}

class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : rest_(bytes) {}
  [[nodiscard]] bool atEnd() const noexcept { return rest_.empty(); }

  std::optional<std::uint64_t> id() {
    if (rest_.size() < 8) return std::nullopt;
    std::uint64_t id = 0;
    for (unsigned i = 0; i < 8; ++i)
      id |= static_cast<std::uint64_t>(static_cast<unsigned char>(rest_[i])) << 8U * i;
    rest_.remove_prefix(8);
    return id;
  }
  std::optional<std::uint64_t> number() { return takeNumber(rest_); }

 private:
  std::string_view rest_;
};

/// Positions whose deletion makes `after` of `before`, each as the distance from the one before;
/// nothing when there are none.
std::optional<std::string> deletions(std::span<const std::uint64_t> before,
                                     std::span<const std::uint64_t> after) {
  std::string bytes(1, deleted);
  std::size_t kept = 0, next = 0;
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (kept < after.size() && before[i] == after[kept]) {
      ++kept;
    } else {
      appendNumber(i - next, bytes);
      next = i + 1;
    }
  }
  return kept == after.size() ? std::optional(bytes) : std::nullopt;
}

std::string replacements(std::span<const std::uint64_t> before,
                         std::span<const std::uint64_t> after) {
  std::string bytes(1, replaced);
  for (std::size_t i = 0, next = 0; i < before.size(); ++i) {
    if (before[i] == after[i]) continue;
    appendNumber(i - next, bytes);
    appendID(after[i], bytes);
    next = i + 1;
  }
  return bytes;
}

}  // namespace

std::string bytesOfEntries(std::span<const std::uint64_t> entries) {
  std::string bytes(1, whole);
  bytes.reserve(1 + entries.size() * 8);
  for (const std::uint64_t entry : entries) appendID(entry, bytes);
  return bytes;
}

std::string bytesOfChange(std::span<const std::uint64_t> before,
                          std::span<const std::uint64_t> after) {
  std::optional<std::string> change;
  if (before.size() == after.size()) {
    change = replacements(before, after);
  } else if (before.size() > after.size()) {
    change = deletions(before, after);
  } else if (std::equal(before.begin(), before.end(), after.begin(),
                        after.begin() + static_cast<std::ptrdiff_t>(before.size()))) {
    change = bytesOfEntries(after.subspan(before.size()));
    change->front() = added;
  }
  return change && change->size() < after.size() * 8 ? *change : bytesOfEntries(after);
}

std::optional<std::vector<std::uint64_t>> entriesOfBytes(std::string_view bytes,
                                                         std::span<const std::uint64_t> before) {
  if (bytes.empty()) return std::nullopt;
  Bytes rest(bytes.substr(1));
  std::vector<std::uint64_t> entries;
  if (bytes.front() == whole || bytes.front() == added) {
    if (bytes.front() == added) entries.assign(before.begin(), before.end());
    entries.reserve(entries.size() + bytes.size() / 8);
    while (!rest.atEnd()) {
      const auto id = rest.id();
      if (!id) return std::nullopt;
      entries.push_back(*id);
    }
    return entries;
  }
  const bool deletes = bytes.front() == deleted;
  if (!deletes && bytes.front() != replaced) return std::nullopt;
  std::size_t next = 0;
  while (!rest.atEnd()) {
    const auto distance = rest.number();
    if (!distance || *distance >= before.size() - next) return std::nullopt;
    const auto from = before.begin() + static_cast<std::ptrdiff_t>(next);
    entries.insert(entries.end(), from, from + static_cast<std::ptrdiff_t>(*distance));
    next += *distance + 1;
    if (deletes) continue;
    const auto id = rest.id();
    if (!id) return std::nullopt;
    entries.push_back(*id);
  }
  entries.insert(entries.end(), before.begin() + static_cast<std::ptrdiff_t>(next), before.end());
  return entries;
}

}  // namespace kestrel
