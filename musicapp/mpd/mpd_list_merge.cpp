#include "musicapp/mpd/mpd_list_merge.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <unordered_map>
#include <utility>

namespace kestrel {
namespace {

using std::size_t;

/// An entry of a list amid an edit, by its place before that.
struct Amid {
  std::string uri;
  std::optional<size_t> original;
  std::optional<size_t> replaced;  ///< of an added one: in whose place it stands
};

struct Edited {
  std::vector<Amid> entries;
  std::vector<bool> isGone;  ///< of the original ones: removed, and nothing in their place
};

Edited editedBy(const MpdEntries& before, std::span<const MpdStep> steps) {
  Edited edited{{}, std::vector<bool>(before.size())};
  for (size_t i = 0; i < before.size(); ++i) edited.entries.push_back({before[i], i, {}});
  for (size_t i = 0; i < steps.size(); ++i) {
    const MpdStep& step = steps[i];
    const auto at = edited.entries.begin() + static_cast<std::ptrdiff_t>(step.position);
    if (step.kind == MpdStep::Kind::add) {
      edited.entries.insert(at, {step.uri, {}, {}});
      continue;
    }
    const std::optional<size_t> original = at->original;
    const auto next = edited.entries.erase(at);
    if (!original) continue;
    const bool isPair = i > 0 && steps[i - 1].kind == MpdStep::Kind::add &&
                        steps[i - 1].position == step.position + 1;
    if (isPair)
      next->replaced = original;
    else
      edited.isGone[*original] = true;
  }
  return edited;
}

/// The entry of `entries` that each of `found` is, as far as it is one: those of one URI in their
/// order, but at both ends of the lists by their places.
std::vector<const Amid*> matched(const std::vector<Amid>& entries, const MpdEntries& found) {
  std::vector<const Amid*> matched(found.size());
  const auto agree = [](const Amid& entry, const std::string& uri) { return entry.uri == uri; };
  size_t begin = 0, end = entries.size(), foundEnd = found.size();
  for (; begin < std::min(end, foundEnd) && agree(entries[begin], found[begin]); ++begin)
    matched[begin] = &entries[begin];
  for (; std::min(end, foundEnd) > begin && agree(entries[end - 1], found[foundEnd - 1]);
       --end, --foundEnd)
    matched[foundEnd - 1] = &entries[end - 1];
  std::unordered_map<std::string_view, std::deque<const Amid*>> left;
  for (size_t i = begin; i < end; ++i) left[entries[i].uri].push_back(&entries[i]);
  for (size_t i = begin; i < foundEnd; ++i)
    if (auto& same = left[found[i]]; !same.empty()) {
      matched[i] = same.front();
      same.pop_front();
    }
  return matched;
}

}  // namespace

std::vector<MpdChange> changesWithout(std::span<const MpdStep> done, const MpdEntries& before,
                                      const MpdEntries& found) {
  Edited edited = editedBy(before, done);
  const auto entries = matched(edited.entries, found);
  std::vector<MpdChange> changes;
  const auto bringBack = [&](size_t original, size_t position) {
    for (; original < before.size() && edited.isGone[original]; ++original) {
      changes.push_back({position, false, before[original]});
      edited.isGone[original] = false;
    }
  };
  bringBack(0, 0);
  for (size_t i = 0; i < found.size(); ++i) {
    if (!entries[i]) continue;
    if (!entries[i]->original)
      changes.push_back({i, true, entries[i]->replaced ? before[*entries[i]->replaced] : ""});
    if (const auto place = entries[i]->original ? entries[i]->original : entries[i]->replaced)
      bringBack(*place + 1, i + 1);
  }
  for (size_t i = 0; i < before.size(); ++i) bringBack(i, found.size());
  return changes;
}

}  // namespace kestrel
