#include "cli/search.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "cli/filtered_output.h"
#include "cli/listening.h"
#include "cli/session.h"
#include "decisions/decisions_file.h"
#include "dupes/asked_of_files.h"
#include "dupes/find_dupes.h"
#include "dupes/group_index.h"
#include "dupes/keeper_pass.h"
#include "dupes/lossless.h"
#include "dupes/pick_explanation.h"
#include "foundation/library_error.h"
#include "foundation/utf8.h"
#include "library/missing_files.h"
#include "library/playlist_catalogue.h"
#include "library/unsearched.h"
#include "musicapp/media_library.h"

namespace kestrel {
namespace {

/// The place of the playlist to search; there is at least one. `wanted` is a `decpid`, else the
/// exact name in the library, else the name as shown; empty is the whole library or, without a
/// master list, the first playlist of the menu, as in the program with windows. Throws UsageError
/// when no playlist or several fit.
std::size_t choosePlaylist(std::span<const Playlist> playlists, std::string_view wanted) {
  const auto catalogue = playlistCatalogue(playlists);
  if (wanted.empty()) {
    if (const auto usual = defaultPlaylist(catalogue)) return *usual;
    throw UsageError(
        "the library has neither a list of all its songs nor a playlist of the user's; choose one "
        "by --playlist");
  }
  std::vector<std::size_t> byName, byShownName;
  for (std::size_t i = 0; i < playlists.size(); ++i) {
    if (catalogue[i].decpid == wanted) return i;
    if (playlists[i].name == wanted) byName.push_back(i);
    if (catalogue[i].pnom == wanted) byShownName.push_back(i);
  }
  const auto& found = byName.empty() ? byShownName : byName;
  if (found.empty())
    throw UsageError("--playlist: the library has no playlist " + textInQuotes(wanted) +
                     "; kestrel-cli playlists lists them");
  if (found.size() == 1) return found.front();
  std::vector<std::string_view> ids;
  for (const std::size_t place : found) ids.push_back(catalogue[place].decpid);
  throw UsageError("--playlist: several playlists are called " + textInQuotes(wanted) +
                   "; name one by its decimal ID: " + listed(ids));
}

/// The rule with this word or number. Throws UsageError that lists them, and presets.
KeeperRule ruleNamed(const std::string& text, const std::string& option,
                     const std::vector<Preset>& presets) {
  if (const auto rule = keeperRuleNamed(text)) return *rule;
  std::string words;
  for (const KeeperRuleInfo& rule : keeperRules())
    words.append(words.empty() ? "" : ", ").append(keeperRuleWord(rule.rule));
  std::string names;
  for (const Preset& preset : presets)
    names.append(names.empty() ? "; the presets of this library: " : ", ").append(preset.name);
  throw UsageError(option + ": there is no rule " + textInQuotes(text) +
                   "; the rules are: " + words + printable(names));
}

/// What the options come to with the presets that they name. Orders and looser matching are those
/// of the user, else of the first preset that has any.
struct WithPresets {
  std::vector<std::string> rules, folders, kinds;
  std::optional<std::vector<std::string>> loose;

  WithPresets(const SearchOptions& options, const Decisions& decisions)
      : folders(options.folders), kinds(options.kinds), loose(options.loose) {
    for (const std::string& text : options.keep)
      if (const Preset* preset = keeperRuleNamed(text) ? nullptr : decisions.preset(text))
        take(*preset);
      else
        rules.push_back(text);
    if (options.preset.empty()) return;
    const Preset* preset = decisions.preset(options.preset);
    if (!preset)
      throw UsageError("--preset: none is called " + textInQuotes(options.preset) +
                       " for this library; kestrel-cli decisions lists them");
    take(*preset);
  }

 private:
  void take(const Preset& preset) {
    rules.insert(rules.end(), preset.keep.begin(), preset.keep.end());
    if (folders.empty()) folders = preset.folders;
    if (kinds.empty()) kinds = preset.kinds;
    if (!loose) loose = preset.loose;
  }
};

/// The folder of rule 5, if it is asked for: what the user has not chosen is the media folder.
std::string folderFor(const SearchOptions& options, MediaLibrary& library, bool asked) {
  if (options.folder) {
    if (asked && options.folder->empty())
      note("rule 5 with an empty --folder takes every file to be in the folder");
    return *options.folder;
  }
  std::string folder = library.mediaFolder();
  while (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
  if (asked)
    note(folder.empty()
             ? "the library names no media folder, so rule 5 without --folder takes every file to "
               "be in the folder"
             : "rule 5 without --folder takes the library's media folder, " + folder);
  return folder;
}

FilterSettings filterSettings(const SearchOptions& options, WithPresets chosen,
                              MediaLibrary& library, const SearchResult& result) {
  if (chosen.rules.empty()) chosen.rules = {std::to_string(options.rule)};
  FilterSettings wanted;
  for (const std::string& text : chosen.rules)
    wanted.chain.push_back(
        ruleNamed(text, options.preset.empty() ? "--keep" : "--preset", result.decisions.presets));
  noteUnheardRules(wanted.chain);
  const auto has = [&](KeeperRule rule) {
    return std::find(wanted.chain.begin(), wanted.chain.end(), rule) != wanted.chain.end();
  };
  if (has(KeeperRule::orderOfFolders) && chosen.folders.empty())
    note("the rule order-of-folders has no opinion without --folders");
  if (has(KeeperRule::orderOfKinds) && chosen.kinds.empty())
    note("the rule order-of-kinds has no opinion without --kinds");
  wanted.keeper = {folderFor(options, library, has(KeeperRule::folderLocation)),
                   options.alwaysUncheck,
                   std::move(chosen.folders),
                   std::move(chosen.kinds),
                   result.facts,
                   coversBy(result.files),
                   samplesBy(result.files)};
  wanted.ruleNumber = static_cast<std::int64_t>(wanted.chain.front());
  wanted.rule = std::to_string(wanted.ruleNumber);
  wanted.chain.erase(wanted.chain.begin());
  if (!options.fileType.empty()) wanted.fileType = options.fileType;
  if (!options.bitRate.empty()) wanted.bitRate = options.bitRate;
  return wanted;
}

/// The playlist to search, which is noted unless it is the whole library.
const Playlist& searchedPlaylist(const std::vector<Playlist>& playlists,
                                 const SearchOptions& options, SearchResult& result) {
  if (playlists.empty())
    throw LibraryError(
        options.library, {},
        Message::tr("the library has no playlists, so nothing could be searched"),
        Message::tr("Make a playlist of the songs to search in the music application."));
  const std::size_t chosen = choosePlaylist(playlists, options.playlist);
  PlaylistRecord record = playlistCatalogue(playlists)[chosen];
  if (record.ptype == "0") return playlists[chosen];
  const std::string name = "\"" + record.pnom + "\"";
  note(options.playlist.empty()
           ? "the library has no list of all its songs; its first playlist is searched, " + name
           : "only the playlist " + name + " is searched");
  result.playlist = std::move(record);
  return playlists[chosen];
}

/// Looks at the files that the rules will ask about.
void prepareFiles(SearchResult& result, Session& session) {
  if (!result.files) return;
  const auto has = [&](KeeperRule rule) {
    const auto& chain = result.settings.chain;
    return result.settings.ruleNumber == static_cast<int>(rule) ||
           std::find(chain.begin(), chain.end(), rule) != chain.end();
  };
  const bool covers = has(KeeperRule::withCover), samples = has(KeeperRule::losslessFirst);
  if (!covers && !samples) return;
  std::vector<const TrackRecord*> asked;
  for (const ResultTrack& row : result.rows)
    if (covers || isLossless(row.record->item().kind.view())) asked.push_back(row.record);
  prepare(*result.files, asked, session);
  result.knowsCovers = covers;
}

/// The groups of the rows, each with its keepers chosen. Rows come in the order of dupeSort, in
/// which the members of a group are not always neighbours: the key that makes them a group may join
/// different values.
void decideGroups(SearchResult& result, Session& session) {
  std::vector<ResultTrack*> all;
  for (ResultTrack& row : result.rows) all.push_back(&row);
  const GroupIndex index(all.size(), [&](std::size_t row) { return all[row]->tGroupID; });
  prepareFiles(result, session);
  const auto rule = keeperRule(result.settings.ruleNumber);
  session.progress.count(std::string("Filtering by ") + (rule ? keeperRuleInfo(*rule).name : ""),
                         index.numbers().size());
  std::vector<FoundGroup>& groups = result.groups;
  groups.resize(index.numbers().size());
  setKeepers(all, index.numbers(), result.settings, result.keeperMode, session.random,
             [&](std::size_t i, auto tracks, const GroupDecision& decision) {
               groups[i] = {std::to_string(tracks.front()->tGroupID),
                            tracks.front()->dupeSort,
                            {tracks.begin(), tracks.end()},
                            explain(decision).english(),
                            decision.pick.random,
                            PickState::none,
                            {}};
               session.progress.advance();
             });
  if (result.decisions.picks.empty()) return;
  std::unordered_map<std::int32_t, FoundGroup*> byNumber;
  for (FoundGroup& group : groups) byNumber[group.tracks.front()->tGroupID] = &group;
  result.picks = applyPicks(all, index, result.decisions.picks, result.keeperMode,
                            [&](std::int32_t number, const GroupPick& pick) {
                              FoundGroup& group = *byNumber[number];
                              group.picked = pick.state;
                              group.random = false;
                              group.reason = explain(pick).english();
                            });
}

/// How the members of groups sound beside what is kept, and what speaks against their being one.
void judgeGroups(SearchResult& result) {
  if (result.sounds) {
    std::vector<std::vector<ResultTrack*>> groups;
    std::unordered_map<std::int32_t, std::size_t> places;
    for (ResultTrack& row : result.rows) {
      const auto [at, isNew] = places.try_emplace(row.tGroupID, groups.size());
      if (isNew) groups.emplace_back();
      groups[at->second].push_back(&row);
    }
    compareSounds(result, groups);
  }
  DoubtFinder doubts(result.grouping);
  for (FoundGroup& group : result.groups)
    group.doubts = doubts.doubtsOf(group.records(), leastAlike(group.tracks));
}

}  // namespace

void prepare(FileAnswers& files, std::span<const TrackRecord* const> tracks, Session& session) {
  files.prepare(pathsHere(tracks), session.services({}).watch);
  session.progress.clear();
}

Json SearchResult::scope() const {
  if (!playlist) return "library";
  return {{"playlist", playlist->pnom}, {"hexpid", playlist->hexpid}};
}

std::vector<std::uint64_t> FoundGroup::ids() const {
  std::vector<std::uint64_t> ids;
  for (const ResultTrack* track : tracks) ids.push_back(track->record->item().persistentID);
  return ids;
}

std::vector<const TrackRecord*> FoundGroup::records() const {
  std::vector<const TrackRecord*> records;
  for (const ResultTrack* track : tracks) records.push_back(track->record);
  return records;
}

Json SearchResult::chain() const {
  if (settings.chain.empty()) return nullptr;
  Json words = Json::array({keeperRuleWord(*keeperRule(settings.ruleNumber))});
  for (const KeeperRule rule : settings.chain) words.push_back(keeperRuleWord(rule));
  return words;
}

void SearchResult::writeScope(std::ostream& out) const {
  if (playlist) out << "Only the playlist \"" + printable(playlist->pnom) + "\" was searched.\n\n";
}

namespace {

/// Maps that no location is for, or that lead to no folder.
void noteMaps(const Session& session, const TrackStore& tracks) {
  std::unordered_set<const PathMaps::Map*> used;
  if (!session.maps.empty())
    for (const TrackRecord& record : tracks.records()) {
      std::string_view rest;
      if (const auto* map = session.maps.of(originalPath(record.item()), rest)) used.insert(map);
    }
  for (const PathMaps::Map& map : session.maps.list()) {
    const std::string beginning = printable(std::string(shownLocation(map.from)));
    if (!used.contains(&map))
      note("--map: no location of this library begins with " + beginning);
    else if (!session.files.exists(map.to))
      note("--map: there is no folder " + printable(map.to));
  }
}

}  // namespace

void noteMissingFiles(const Session& session, const TrackStore& tracks) {
  noteMaps(session, tracks);
  if (const MissingFiles missing = missingFiles(tracks); missing.areMost())
    note(missing.sentence().english() + ": --map, info --suggest-map FOLDER, --without-files");
}

namespace {

/// One line of however many notes there are.
void noteOf(MediaLibrary& library, const std::string& address) {
  const std::vector<std::string> notes = english(notesOn(library));
  if (notes.empty()) return;
  const std::size_t more = notes.size() - 1;
  note(printable(notes.front()) +
       (more == 0 ? ""
                  : "; and " + std::to_string(more) + (more == 1 ? " note" : " notes") + " more") +
       ": kestrel-cli info " + printable(address));
}

}  // namespace

SearchResult search(Session& session, MediaLibrary& library, const SearchOptions& options) {
  if (options.seed) session.random.seed(*options.seed);
  checkListening(session, options);
  SearchResult result;
  result.keeperMode = options.keeperMode != 0;
  result.decisions = DecisionsFile(session.files, library.identity()).load();
  result.tracks = session.snapshot(library, !result.keeperMode);
  noteMissingFiles(session, *result.tracks);
  noteOf(library, options.library);
  const auto playlists = library.allPlaylists();
  result.facts = std::make_shared<const KeeperFacts>(result.tracks, playlists);
  if (!session.withoutFiles)
    result.files = std::make_shared<FileAnswers>(session.files, session.log());
  const WithPresets chosen(options, result.decisions);
  result.settings = filterSettings(options, chosen, library, result);
  const Playlist& searched = searchedPlaylist(*playlists, options, result);
  result.searched = searched.persistentID;
  result.criteria = criteriaOf(options);
  result.grouping = groupingOf(options);
  if (chosen.loose && !options.bySound) result.grouping.loose = looseSetOf(*chosen.loose);
  session.progress.show("Looking for dupes...");
  DupeRows rows = options.bySound ? findBySound(session, result, searched.items)
                                  : findDupes(result.tracks, searched.items, result.criteria,
                                              result.grouping, !result.keeperMode, session.log(),
                                              [&] { return session.interrupted(); });
  result.rows = std::move(rows.rows);
  result.seeds = std::move(rows.seeds);
  if (session.interrupted()) return result;
  result.notDuplicates = leaveOutNotDuplicates(result.rows, result.decisions.notDuplicates);
  if (options.sound && !options.bySound) listen(session, result);
  session.progress.clear();
  if (session.interrupted()) return result;
  decideGroups(result, session);
  judgeGroups(result);
  session.progress.clear();
  return result;
}

}  // namespace kestrel
