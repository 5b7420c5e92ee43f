#include "cli/search.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "cli/choices.h"
#include "cli/filtered_output.h"
#include "cli/session.h"
#include "dupes/pick_explanation.h"
#include "foundation/library_error.h"
#include "foundation/utf8.h"
#include "platform/settings.h"
#include "ui/dupe_search.h"
#include "ui/result_filters.h"
#include "ui/snapshot.h"

namespace kestrel {
namespace {

void store(const SearchOptions& options, Preferences& preferences) {
  preferences.set(settings::caseSensitive, options.caseSensitive);
  preferences.set(settings::criteriaCBTime, options.approx.has_value());
  preferences.set(settings::useAproxValue, options.approx.has_value());
  preferences.set(settings::aproxValue, options.approx.value_or(0));
  preferences.set(settings::filterMatrixButton, options.rule);
  preferences.set(settings::keeperMode, options.keeperMode);
  preferences.set(settings::alwaysUnCheck, options.alwaysUncheck);
  if (options.folder) preferences.set(settings::filterFolderLoc, *options.folder);
  preferences.set(settings::useFileType, !options.fileType.empty());
  preferences.set(settings::thisFileType, options.fileType);
  preferences.set(settings::useBitType, !options.bitRate.empty());
  preferences.set(settings::thisBitType, options.bitRate);
}

void noteWhatDoesNotCount(const SearchOptions& options, const std::vector<std::string>& criteria) {
  if (std::find(criteria.begin(), criteria.end(), "Filename") != criteria.end())
    note("a search by Filename finds nothing; use tFileName to match by the names of files");
  if (!options.bitRate.empty() && options.fileType.empty())
    note("--bit-rate counts only together with --file-type");
}

/// As at the launch of the program with windows: what the user has not chosen is the media folder.
void registerMediaFolder(Session& session) {
  const auto library = TextSorter::myLibrary();
  std::string folder = library ? library->mediaFolder() : std::string();
  while (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
  session.preferences.registerDefault(settings::filterFolderLoc, std::move(folder));
}

void noteFolder(const SearchOptions& options, const Preferences& preferences) {
  if (options.rule != 5) return;
  const std::string folder = preferences.text(settings::filterFolderLoc);
  if (options.folder) {
    if (folder.empty()) note("rule 5 with an empty --folder takes every file to be in the folder");
  } else if (folder.empty()) {
    note(
        "the library names no media folder, so rule 5 without --folder takes every file to be in "
        "the folder");
  } else {
    note("rule 5 without --folder takes the library's media folder, " + folder);
  }
}

/// The criteria as they are searched for: with a tolerance, exact times would undo it.
std::vector<std::string> criteriaOf(const SearchOptions& options) {
  std::vector<std::string> criteria = options.match;
  if (options.approx) std::erase(criteria, "realTime");
  return criteria;
}

std::vector<FoundGroup> groupsOf(Session& session) {
  auto rows = session.process.textSorter.window.bigArrayController.arrangedRows();
  std::vector<FoundGroup> groups;
  // Rows come in the order of dupeSort, in which the members of a group are not always neighbours:
  // the key that makes them a group may join different values.
  std::unordered_map<std::int32_t, std::size_t> places;
  for (const ResultTrack& row : rows) {
    const auto [place, isNew] = places.try_emplace(row.tGroupID, groups.size());
    if (isNew) {
      FoundGroup& group = groups.emplace_back();
      group.tGroupID = std::to_string(row.tGroupID);
      group.dupeSort = row.dupeSort;
    }
    groups[place->second].tracks.push_back(&row);
  }
  return groups;
}

/// Has the playlist searched, and returns it unless it is the whole library.
std::optional<PlaylistRecord> searchedPlaylist(Session& session, const SearchOptions& options) {
  const auto playlists = TextSorter::storedPlaylistArray();
  if (playlists->empty())
    throw LibraryError(options.library, {},
                       Message::tr("the library has no playlists, so nothing could be searched"),
                       Message::tr("Export it again together with its playlists."));
  PlaylistRecord playlist = choosePlaylist(*playlists, options.playlist);
  session.preferences.set(settings::selectedPlaylistPid, playlist.decpid);
  if (playlist.ptype == "0") return std::nullopt;
  const std::string name = "\"" + playlist.pnom + "\"";
  note(options.playlist.empty()
           ? "the library has no list of all its songs; its first playlist is searched, " + name
           : "only the playlist " + name + " is searched");
  return playlist;
}

}  // namespace

Json SearchResult::scope() const {
  if (!playlist) return "library";
  return {{"playlist", playlist->pnom}, {"hexpid", playlist->hexpid}};
}

void SearchResult::writeScope(std::ostream& out) const {
  if (playlist) out << "Only the playlist \"" + printable(playlist->pnom) + "\" was searched.\n\n";
}

void addSearchOptions(CLI::App& command, SearchOptions& options) {
  command.add_option("LIBRARY", options.library, "The library, by its file or address")->required();
  command
      .add_option("--match", options.match,
                  "Fields that duplicates share, by key: tName,tArtist (also what is taken\n"
                  "without this option), tAlbum, realTime, tTrackNum, ...")
      ->delimiter(',')
      ->allow_extra_args(false)  // else it would take a LIBRARY behind it
      ->option_text("KEY,KEY...");
  command.add_option("--playlist", options.playlist, "Search this playlist instead of all songs")
      ->option_text("DECPID-or-name");
  command
      .add_option("--approx", options.approx,
                  "Playing times may differ by N + 1 seconds from a group's first track")
      ->check(CLI::Range(std::int64_t{0}, std::int64_t{1} << 31))
      ->option_text("N");
  command.add_flag("--case-sensitive", options.caseSensitive, "Capitals and small letters differ");
  std::string rules = "How the keeper is chosen:";
  for (const KeeperRuleInfo& rule : keeperRules())
    rules.append("\n")
        .append(std::to_string(static_cast<int>(rule.rule)))
        .append(" ")
        .append(rule.name);
  command.add_option("--rule", options.rule, rules)->check(CLI::Range(1, 15))->option_text("1..15");
  command
      .add_option("--keeper-mode", options.keeperMode,
                  "0: a ticked box marks the keeper; 1: it marks a track to act on")
      ->check(CLI::IsMember({0, 1}))
      ->option_text("0|1");
  command.add_flag(
      "--always-uncheck", options.alwaysUncheck,
      "Keep nothing in a group where the rule finds no keeper, instead of a random one");
  command
      .add_option_function<std::string>(
          "--folder", [&options](const std::string& text) { options.folder = text; },
          "For rule 5: how the paths to keep begin; without it the library's media folder")
      ->option_text("TEXT");
  command.add_option(
      "--file-type", options.fileType,
      "Choose among tracks of this type: AAC, AIFF, Apple Lossless, MP3, Purchased,\n"
      "WAV, Local files, Cloud tracks");
  command.add_option("--bit-rate", options.bitRate,
                     "And of those among tracks with this bit rate, such as \"256 kbps\"");
  command.add_option("--seed", options.seed, "Makes random choices repeatable");
}

void checkSearchOptions(const SearchOptions& options) {
  if (!options.fileType.empty()) checkFileType(options.fileType);
  checkCriteria(options.match);
  const std::vector<std::string> criteria = criteriaOf(options);
  if (criteria.empty())
    throw UsageError(
        "--match: with --approx, realTime alone leaves nothing to match by; add another key, such "
        "as tName, or leave --approx out");
  noteWhatDoesNotCount(options, criteria);
}

SearchResult search(Session& session, const SearchOptions& options) {
  store(options, session.preferences);
  if (options.seed) session.random.seed(*options.seed);
  registerMediaFolder(session);
  noteFolder(options, session.preferences);
  TextSorter::buildLibrary();
  SearchResult result;
  result.playlist = searchedPlaylist(session, options);
  result.count = TextSorter::getDupeGroupsWithCriteria(criteriaOf(options));
  if (session.interrupted()) return result;
  result.criteria = session.process.textSorter.storedCriteria;
  result.rule = options.rule;
  result.keeperMode = options.keeperMode != 0;
  result.groups = groupsOf(session);

  std::vector<std::string> numbers;
  for (const FoundGroup& group : result.groups) numbers.push_back(group.tGroupID);
  std::size_t next = 0;
  TextSorter::filterArray(numbers, [&](std::string_view, const GroupDecision& decision) {
    FoundGroup& group = result.groups[next++];
    group.reason = explain(decision).english();
    group.random = decision.pick.random;
  });
  session.progress.clear();
  return result;
}

}  // namespace kestrel
