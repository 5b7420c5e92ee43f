#include "cli/preview.h"

#include <algorithm>
#include <ostream>

#include "cli/text_table.h"
#include "dupes/criteria_preview.h"
#include "library/track_keys.h"

namespace kestrel {
namespace {

using Counts = SearchPreview::Counts;

std::string wordOf(const std::string& criterion) {
  const auto key = trackKey(criterion);
  return key ? std::string(fieldWord(*key)) : criterion;
}

/// The tracks of what was searched.
std::vector<const TrackRecord*> searchedTracks(MediaLibrary& library, const SearchResult& result) {
  for (const Playlist& playlist : *library.allPlaylists())
    if (playlist.persistentID == result.searched) return tracksOf(*result.tracks, playlist.items);
  return {};
}

void write(std::ostream& out, const char* title, const Counts& counts, std::size_t now) {
  if (counts.empty()) return;
  out << title << '\n';
  using Align = TextTable::Align;
  TextTable table({{"", Align::left, 40}, {"Groups", Align::right}, {"", Align::right}});
  for (const auto& [word, groups] : counts)
    table.add({word, std::to_string(groups),
               groups == now  ? ""
               : groups > now ? "+" + std::to_string(groups - now)
                              : "-" + std::to_string(now - groups)});
  table.write(out, "  ");
}

Json json(const Counts& counts) {
  Json object = Json::object();
  for (const auto& [word, groups] : counts) object[word] = groups;
  return object;
}

}  // namespace

SearchPreview previewOf(Session& session, MediaLibrary& library, const SearchResult& result) {
  const auto tracks = searchedTracks(library, result);
  const auto stopped = [&session] { return session.interrupted(); };
  std::vector<std::vector<std::string>> lists{result.criteria};
  std::vector<std::string> with, without;
  const auto isMatched = [&](std::string_view key) {
    return std::find(result.criteria.begin(), result.criteria.end(), key) != result.criteria.end();
  };
  for (const TrackKeyInfo& info : trackKeys()) {
    // With a tolerance the exact time would undo it.
    const bool undoes = info.key == TrackKey::realTime && result.grouping.toleranceSeconds > 0;
    if (info.word.empty() || isMatched(info.name) || undoes) continue;
    with.emplace_back(info.word);
    lists.push_back(result.criteria);
    lists.back().emplace_back(info.name);
  }
  if (result.criteria.size() > 1)
    for (const std::string& criterion : result.criteria) {
      without.push_back(wordOf(criterion));
      lists.push_back(result.criteria);
      std::erase(lists.back(), criterion);
    }
  const auto counts = previewCriteria(*result.tracks, tracks, lists, result.grouping, stopped);
  SearchPreview preview;
  preview.groups = counts[0].value_or(0);
  for (std::size_t i = 0; i < with.size(); ++i)
    preview.with.emplace_back(with[i], counts[1 + i].value_or(0));
  for (std::size_t i = 0; i < without.size(); ++i)
    preview.without.emplace_back(without[i], counts[1 + with.size() + i].value_or(0));
  for (const LooseInfo& info : loosenings()) {
    GroupingOptions looser = result.grouping;
    looser.loose |= bitOf(info.loose);
    if (looser.loose == result.grouping.loose) continue;
    preview.loose.emplace_back(
        info.word,
        previewCriteria(*result.tracks, tracks, {lists.data(), 1}, looser, stopped)[0].value_or(0));
  }
  return preview;
}

Json json(const SearchPreview& preview) {
  return {{"groups", preview.groups},
          {"with", json(preview.with)},
          {"without", json(preview.without)},
          {"loose", json(preview.loose)}};
}

void writeText(std::ostream& out, const SearchPreview& preview) {
  out << preview.groups << (preview.groups == 1 ? " group" : " groups") << " as it is\n";
  write(out, "With this field too", preview.with, preview.groups);
  write(out, "Without this field", preview.without, preview.groups);
  write(out, "Looser by this", preview.loose, preview.groups);
}

}  // namespace kestrel
