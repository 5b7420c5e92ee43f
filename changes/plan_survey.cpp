#include "changes/plan_survey.h"

#include <unordered_map>
#include <unordered_set>

#include "foundation/identifiers.h"

namespace kestrel {
namespace {

Message reasonText(SkippedGroup::Reason reason) {
  switch (reason) {
    case SkippedGroup::Reason::missingFile:
      return Message::tr("a file of the group is missing");
    case SkippedGroup::Reason::noKeeper:
      return Message::tr("no track of the group is kept");
    case SkippedGroup::Reason::severalKeepers:
      return Message::tr("more than one track of the group is kept");
  }
  return {};
}

ReplaylistChoice choiceOf(const ReplaylistRecord& record, bool shown) {
  ReplaylistChoice choice{record.playlist().persistentID, shown, {}};
  for (const KeeperPair& pair : record.nonKeeperKeeperPairs())
    choice.keepers.try_emplace(pair.item, pair.keeper);
  return choice;
}

/// Affected playlists that are neither shown nor chosen.
template <typename Found, typename Choice>
void addHidden(const Found& found, std::span<const Choice> choices, std::vector<LeftOut>& leftOut) {
  std::unordered_set<std::uint64_t> chosen;
  for (const Choice& choice : choices) chosen.insert(choice.playlist);
  for (std::size_t i = 0; i < found.affected.size(); ++i)
    if (const Playlist& playlist = found.affected[i]->playlist();
        !found.shown[i] && !chosen.contains(playlist.persistentID))
      leftOut.push_back(
          {LeftOut::What::playlist, TextSorter::decToHex(playlist.persistentID), playlist.name,
           Message::tr("the outline cannot show what is in a folder within a folder")});
}

}  // namespace

std::vector<ReplaylistChoice> choicesOf(const SurveyReport& survey,
                                        std::span<const PlaylistReplacements> confirmed) {
  std::unordered_set<std::uint64_t> chosen, folders;
  std::vector<ReplaylistChoice> choices;
  for (const PlaylistReplacements& one : confirmed) {
    const Playlist& playlist = one.record->playlist();
    if (!one.record->isFolder()) {
      chosen.insert(playlist.persistentID);
    } else if (folders.insert(playlist.persistentID).second) {
      choices.push_back({playlist.persistentID, true, {}});
    }
  }
  const PlaylistSurvey& found = survey.playlists;
  // A shown folder holds folders too, if they directly hold an affected playlist.
  std::unordered_map<std::uint64_t, const Playlist*> parents;
  for (const auto& folder : found.justFolders)
    parents.try_emplace(folder->playlist().persistentID, &folder->playlist());
  const auto isInChosenFolder = [&](const Playlist& playlist) {
    const Playlist* at = &playlist;
    // Damaged libraries may have folders in circles.
    for (std::size_t steps = 0; at && at->parentID && steps <= parents.size(); ++steps) {
      if (folders.contains(*at->parentID)) return true;
      const auto parent = parents.find(*at->parentID);
      at = parent == parents.end() ? nullptr : parent->second;
    }
    return false;
  };
  for (std::size_t i = 0; i < found.affected.size(); ++i) {
    const Playlist& playlist = found.affected[i]->playlist();
    if (chosen.contains(playlist.persistentID) || isInChosenFolder(playlist))
      choices.push_back(choiceOf(*found.affected[i], found.shown[i]));
  }
  return choices;
}

std::vector<ReplaylistChoice> choicesOf(const SurveyReport& survey) {
  std::vector<ReplaylistChoice> choices;
  for (std::size_t i = 0; i < survey.playlists.affected.size(); ++i)
    choices.push_back(choiceOf(*survey.playlists.affected[i], survey.playlists.shown[i]));
  return choices;
}

std::vector<LeftOut> leftOutOf(const SurveyReport& survey,
                               std::span<const ReplaylistChoice> choices) {
  std::vector<LeftOut> leftOut;
  for (const SkippedGroup& group : survey.skippedGroups)
    leftOut.push_back(
        {LeftOut::What::group, std::to_string(group.tGroupID), {}, reasonText(group.reason)});
  addHidden(survey.playlists, choices, leftOut);
  return leftOut;
}

std::vector<CleanUpChoice> choicesOf(const RepeatScan& scan, bool all) {
  std::vector<CleanUpChoice> choices;
  for (std::size_t i = 0; i < scan.affected.size(); ++i)
    if (all || scan.shown[i])
      choices.push_back({scan.affected[i]->playlist().persistentID, scan.shown[i],
                         scan.affected[i]->deleteIndexes(),
                         fingerprintOf(scan.affected[i]->playlist().items)});
  return choices;
}

std::vector<LeftOut> leftOutOf(const RepeatScan& scan, std::span<const CleanUpChoice> choices) {
  std::vector<LeftOut> leftOut;
  addHidden(scan, choices, leftOut);
  return leftOut;
}

}  // namespace kestrel
