// ignore: groups that are no duplicates, remembered for the library.

#include <algorithm>
#include <iostream>
#include <memory>
#include <unordered_map>

#include "cli/command.h"
#include "cli/search.h"
#include "cli/session.h"
#include "decisions/decisions_file.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

std::string songOf(const TrackStore& tracks, std::uint64_t id) {
  const CopyTexts texts = textsOf(tracks, id);
  return texts.copy.empty() ? texts.song : texts.song + " (" + texts.copy + ")";
}

void writeList(std::ostream& out, const std::vector<TrackIDs>& sets, const TrackStore& tracks) {
  if (sets.empty()) out << "No group has been left out.\n";
  for (std::size_t i = 0; i < sets.size(); ++i) {
    out << i + 1 << '\n';
    for (const std::uint64_t id : sets[i]) out << "  " << printable(songOf(tracks, id)) << '\n';
  }
}

Json jsonOf(const std::vector<TrackIDs>& sets, const TrackStore& tracks) {
  Json list = Json::array();
  for (std::size_t i = 0; i < sets.size(); ++i) {
    Json members = Json::array();
    for (const std::uint64_t id : sets[i])
      members.push_back({{"hexpid", TextSorter::decToHex(id)},
                         {"song", songOf(tracks, id)},
                         {"known", tracks.find(id) != nullptr}});
    list.push_back({{"number", i + 1}, {"tracks", std::move(members)}});
  }
  return list;
}

/// Remembers those groups of a search, which are returned. Throws UsageError for a number that no
/// group has.
std::vector<TrackIDs> ignore(const SearchResult& found, const std::vector<std::int32_t>& groups,
                             Decisions& decisions) {
  std::vector<TrackIDs> ignored;
  std::unordered_map<std::int32_t, std::vector<std::uint64_t>> members;
  for (const ResultTrack& row : found.rows)
    members[row.tGroupID].push_back(row.record->item().persistentID);
  for (const std::int32_t group : groups) {
    const auto chosen = members.find(group);
    if (chosen == members.end())
      throw UsageError("GROUP: the search has no group with the number " + std::to_string(group) +
                       "; kestrel-cli find tells the numbers");
    decisions.notDuplicates.add(chosen->second);
    ignored.push_back(chosen->second);
  }
  return ignored;
}

/// Takes back those of the list, by number from 1, and returns them. Throws UsageError for one that
/// it has not.
std::vector<TrackIDs> takeBack(const std::vector<std::int32_t>& numbers, Decisions& decisions) {
  const std::vector<TrackIDs> sets = decisions.notDuplicates.list();
  std::vector<TrackIDs> taken;
  for (const std::int32_t number : numbers) {
    if (number < 1 || static_cast<std::size_t>(number) > sets.size())
      throw UsageError("GROUP: the list has no number " + std::to_string(number) +
                       "; kestrel-cli ignore --list shows it");
    taken.push_back(sets[static_cast<std::size_t>(number) - 1]);
    decisions.notDuplicates.remove(taken.back());
  }
  return taken;
}

}  // namespace

void addIgnoreCommand(CLI::App& app, Action& chosen) {
  struct Options {
    SearchOptions search;
    std::vector<std::int32_t> groups;
    bool list = false, takeBack = false, json = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand(
      "ignore", "Leave groups that are no duplicates out of searches from now on");
  addSearchOptions(*command, options->search);
  command
      ->add_option("GROUP", options->groups,
                   "Numbers of groups, as find with the same options tells them")
      ->check(CLI::NonNegativeNumber);
  auto* list = command->add_flag("--list", options->list, "List what is left out");
  command
      ->add_flag("--take-back", options->takeBack,
                 "Let those of the list with these numbers be found again")
      ->excludes(list);
  command->add_flag("--json", options->json, "Write what is left out then as JSON");
  setAction(*command, chosen, [options](Session& session) {
    checkSearchOptions(options->search);
    if (options->groups.empty() && !options->list) throw UsageError("GROUP: which groups?");
    const auto library = session.open(options->search.library);
    DecisionsFile file(session.files, library->identity());
    const SearchResult found = search(session, *library, options->search);
    if (session.interrupted()) return session.stopped();
    Decisions decisions = file.load();
    std::vector<TrackIDs> changed;
    if (!options->list)
      decisions = file.change([&](Decisions& now) {
        changed = options->takeBack ? takeBack(options->groups, now)
                                    : ignore(found, options->groups, now);
      });
    const std::vector<TrackIDs> sets = decisions.notDuplicates.list();
    if (options->json)
      std::cout << dump({{"notDuplicates", jsonOf(sets, *found.tracks)}}, 1) << '\n';
    else if (options->list)
      writeList(std::cout, sets, *found.tracks);
    else {
      std::cout << (options->takeBack ? "Found again:\n" : "Left out:\n");
      for (const TrackIDs& set : changed)
        for (const std::uint64_t id : set)
          std::cout << (id == set.front() ? "- " : "  ") << printable(songOf(*found.tracks, id))
                    << '\n';
      std::cout << sets.size() << (sets.size() == 1 ? " group is" : " groups are")
                << " left out of searches.\n";
    }
    return 0;
  });
}

}  // namespace kestrel
