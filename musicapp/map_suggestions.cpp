#include "musicapp/map_suggestions.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "foundation/collation.h"
#include "musicapp/media_library.h"
#include "platform/file_error.h"
#include "platform/files.h"

namespace kestrel {
namespace {

using std::size_t;
using std::string_view;

/// Where the names at the start of a folder end that say on what drive, volume, share or in whose
/// home it is.
size_t endOfPlace(string_view folder) {
  constexpr std::array<string_view, 5> holdSeveral{"/Users", "/Volumes", "/home", "/media", "/mnt"};
  const auto endOfName = [&](size_t from) {
    return std::min(folder.find('/', from), folder.size());
  };
  const bool isShare = folder.starts_with("//");
  const size_t end = endOfName(isShare ? 2 : 1);
  const bool takesTwo = isShare || std::find(holdSeveral.begin(), holdSeveral.end(),
                                             folder.substr(0, end)) != holdSeveral.end();
  return takesTwo ? endOfName(end + 1) : end;
}

bool isBelow(string_view path, string_view folder) {
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

/// The files of a folder and what is below it, with the names that are wanted.
class FoundFiles {
 public:
  FoundFiles(const std::string& root, const std::unordered_set<std::string>& wanted,
             const FileService& files) {
    folders_.push_back({root == "/" ? std::string() : root, {}, 0});
    for (size_t at = 0; at < folders_.size(); ++at) search(at, wanted, files);
  }

  /// How many names at the end a location and a file share, and how many of them exactly.
  struct Tail {
    size_t names = 0, exact = 0;
    friend auto operator<=>(const Tail&, const Tail&) = default;
  };
  struct Match {
    size_t folder = 0;  ///< in which the tail lies
    Tail tail;
  };
  /// The files whose tail is the best. `names`: of the location, the last first, with their keys.
  using Names = std::vector<std::pair<string_view, const std::string*>>;
  [[nodiscard]] std::vector<Match> matches(const Names& names) const {
    // A name that is everywhere says nothing, unless its folder does.
    constexpr size_t most = 64;
    std::vector<Match> best;
    auto [at, end] = byName_.equal_range(*names.front().second);
    if (names.size() > 1) {
      const auto both =
          byNameAndFolder_.equal_range(*names[1].second + '/' + *names.front().second);
      if (both.first != both.second) std::tie(at, end) = both;
    }
    if (static_cast<size_t>(std::distance(at, end)) > most) return best;
    for (; at != end; ++at) {
      const Match match = matchOf(at->second, names);
      if (!best.empty() && match.tail < best.front().tail) continue;
      if (!best.empty() && best.front().tail < match.tail) best.clear();
      best.push_back(match);
    }
    return best;
  }
  /// Without a slash at the end; empty for the root of all.
  [[nodiscard]] const std::string& path(size_t folder) const { return folders_[folder].path; }

 private:
  struct Folder {
    std::string path, key;
    size_t parent = 0;
  };
  struct File {
    std::string name;
    size_t folder = 0;
  };

  void search(size_t at, const std::unordered_set<std::string>& wanted, const FileService& files) {
    constexpr std::array<string_view, 4> trash{"$recycle.bin", "recycler", "trash", "lost+found"};
    std::vector<std::string> names;
    try {
      names = files.list(folders_[at].path.empty() ? "/" : folders_[at].path);
    } catch (const FileError&) {
      return;
    }
    for (std::string& name : names) {
      if (name.starts_with('.')) continue;
      std::string key = comparisonKey(name);
      std::string path = folders_[at].path + '/' + name;
      const auto status = files.entryStatus(path);
      if (!status) continue;
      if (status->kind == FileStatus::Kind::folder) {
        if (std::find(trash.begin(), trash.end(), key) == trash.end())
          folders_.push_back({std::move(path), std::move(key), at});
      } else if (status->kind == FileStatus::Kind::file && wanted.contains(key)) {
        const size_t number = files_.size();
        files_.push_back({std::move(name), at});
        if (at != 0) byNameAndFolder_.emplace(folders_[at].key + '/' + key, number);
        byName_.emplace(std::move(key), number);
      }
    }
  }

  [[nodiscard]] Match matchOf(size_t number, const Names& names) const {
    const File& file = files_[number];
    Match match{file.folder, {1, file.name == names.front().first ? size_t{1} : 0}};
    for (size_t i = 1; i < names.size() && match.folder != 0; ++i) {
      const Folder& folder = folders_[match.folder];
      if (folder.key != *names[i].second) break;
      ++match.tail.names;
      match.tail.exact += folder.path.ends_with('/' + std::string(names[i].first)) ? 1 : 0;
      match.folder = folder.parent;
    }
    return match;
  }

  std::vector<Folder> folders_;  ///< the first is the one that is searched
  std::vector<File> files_;
  std::unordered_multimap<std::string, size_t> byName_, byNameAndFolder_;
};

/// The keys of names, each made once.
class NameKeys {
 public:
  const std::string* of(string_view name) {
    const auto [known, isNew] = keys_.try_emplace(std::string(name));
    if (isNew) known->second = comparisonKey(name);
    return &known->second;
  }

 private:
  std::unordered_map<std::string, std::string> keys_;
};

/// Of a pair of beginnings, the locations that speak for it, and the names that they share with
/// files at most.
struct Votes {
  size_t count = 0, names = 0;
};

class Suggestions {
 public:
  Suggestions(std::span<const std::string> locations, const std::string& folder,
              const FileService& files)
      : locations_(locations), files_(files), left_(locations.size()) {
    std::unordered_set<std::string> wanted;
    for (size_t i = 0; i < locations.size(); ++i) {
      left_[i] = i;
      wanted.insert(comparisonKey(string_view(locations[i]).substr(locations[i].rfind('/') + 1)));
    }
    const FoundFiles found(folder, wanted, files);
    NameKeys keys;
    FoundFiles::Names names;
    votes_.resize(locations.size());
    for (size_t i = 0; i < locations.size(); ++i) {
      const string_view location = locations[i];
      names.clear();
      for (size_t end = location.size(); end > 0 && end != string_view::npos;) {
        const size_t slash = location.rfind('/', end - 1);
        if (slash == string_view::npos) break;
        const string_view name = location.substr(slash + 1, end - slash - 1);
        names.emplace_back(name, keys.of(name));
        end = slash;
      }
      if (names.empty()) continue;
      for (const auto& match : found.matches(names)) {
        size_t end = location.size();
        for (size_t name = 0; name < match.tail.names; ++name) end = location.rfind('/', end - 1);
        votes_[i].emplace_back(Pair{std::string(location.substr(0, end)), found.path(match.folder)},
                               match.tail.names);
      }
    }
  }

  std::vector<MapSuggestion> choose() {
    constexpr int attempts = 24;
    for (int attempt = 0; attempt < attempts && !left_.empty(); ++attempt) {
      const auto best = bestPair();
      if (!best) break;
      tried_.insert(best->first);
      consider(best->first, best->second);
    }
    return std::move(suggestions_);
  }

 private:
  using Pair = std::pair<std::string, std::string>;

  [[nodiscard]] std::optional<std::pair<Pair, Votes>> bestPair() const {
    std::map<Pair, Votes> votes;
    for (const size_t i : left_)
      for (const auto& [pair, names] : votes_[i]) {
        Votes& of = votes[pair];
        ++of.count;
        of.names = std::max(of.names, names);
      }
    for (const Pair& pair : tried_) votes.erase(pair);
    const auto best =
        std::max_element(votes.begin(), votes.end(), [](const auto& a, const auto& b) {
          return std::pair(a.second.count, a.second.names) <
                 std::pair(b.second.count, b.second.names);
        });
    return best == votes.end() ? std::nullopt : std::optional(std::pair(best->first, best->second));
  }

  void consider(const Pair& pair, const Votes& votes) {
    const PathMaps maps({{pair.first, pair.second}});
    MappedFiles mapped(maps, files_);
    std::vector<size_t> left;
    size_t below = 0, finds = 0;
    std::vector<std::string> files;
    for (const size_t i : left_) {
      below += isBelow(locations_[i], pair.first) ? 1 : 0;
      auto file = mapped.find(locations_[i]);
      if (!file || taken_.contains(*file)) {
        left.push_back(i);
        continue;
      }
      ++finds;
      files.push_back(std::move(*file));
    }
    constexpr size_t many = 10;
    const bool isInside = std::any_of(
        suggestions_.begin(), suggestions_.end(),
        [&](const MapSuggestion& earlier) { return isBelow(pair.first, earlier.map.from); });
    const bool isBacked = votes.names > 1 || finds > 1 || locations_.size() == 1;
    const bool isUsual = finds * 2 >= below || (votes.names > 1 && finds >= many);
    if (finds == 0 || finds * 50 < locations_.size() || !isBacked || !isUsual ||
        (isInside && finds < many))
      return;
    suggestions_.push_back({maps.list().front(), finds});
    taken_.insert(files.begin(), files.end());
    left_ = std::move(left);
  }

  std::span<const std::string> locations_;
  const FileService& files_;
  std::vector<size_t> left_;
  std::vector<std::vector<std::pair<Pair, size_t>>> votes_;  ///< of each location, and names shared
  std::set<Pair> tried_;
  std::unordered_set<std::string> taken_;  ///< files that earlier suggestions find
  std::vector<MapSuggestion> suggestions_;
};

}  // namespace

void LocationBeginnings::add(string_view folder) {
  if (!beginnings_.empty() && folder == last_) {
    ++beginnings_[lastAt_].count;
    return;
  }
  last_ = folder;
  const string_view place = folder.substr(0, endOfPlace(folder));
  const auto found = std::find_if(beginnings_.begin(), beginnings_.end(), [&](const Beginning& b) {
    return isBelow(b.folder, place) && endOfPlace(b.folder) == place.size();
  });
  lastAt_ = static_cast<size_t>(found - beginnings_.begin());
  if (found == beginnings_.end()) {
    beginnings_.push_back({std::string(folder), 1});
    return;
  }
  ++found->count;
  while (!isBelow(folder, found->folder)) found->folder.erase(found->folder.rfind('/'));
}

std::vector<LocationBeginnings::Beginning> LocationBeginnings::list() const {
  std::vector<Beginning> list = beginnings_;
  std::stable_sort(list.begin(), list.end(),
                   [](const Beginning& a, const Beginning& b) { return a.count > b.count; });
  return list;
}

std::vector<std::string> lostLocations(const MediaItems& items, const PathMaps& maps,
                                       const FileService& files) {
  std::vector<std::string> lost;
  MappedFiles mapped(maps, files);
  items.forEach([&](const MediaItem& item) {
    if (item.mediaKind != MediaKind::song || item.locationType != LocationType::file ||
        item.locationFolder.isNull())
      return;
    std::string path = filePath(item);
    if (!files.exists(path) && !mapped.find(path)) lost.push_back(std::move(path));
  });
  return lost;
}

std::vector<MapSuggestion> suggestMaps(std::span<const std::string> locations,
                                       const std::string& folder, const FileService& files) {
  std::string root = folder;
  while (root.size() > 1 && root.ends_with('/')) root.pop_back();
  std::vector<MapSuggestion> suggestions = Suggestions(locations, root, files).choose();
  for (MapSuggestion& suggestion : suggestions)
    if (suggestion.map.to.empty()) suggestion.map.to = "/";
  return suggestions;
}

}  // namespace kestrel
