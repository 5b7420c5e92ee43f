#include "replaylist/warnings.h"

#include <map>

namespace kestrel {
namespace {

using Kind = Warning::Kind;

/// From this many playlist documents on, the room that they take is worth a word.
constexpr std::size_t manyDocuments = 100;

std::string quoted(const std::string& name) { return "\"" + name + "\""; }

/// "\"A\", \"B\" and 3 more".
std::string listed(const std::vector<std::string>& names, bool quotes = true) {
  constexpr std::size_t most = 5;
  std::string text;
  const std::size_t shown = names.size() > most + 1 ? most : names.size();
  for (std::size_t i = 0; i < shown; ++i) {
    if (i > 0) text += i + 1 == names.size() ? " and " : ", ";
    text += quotes ? quoted(names[i]) : names[i];
  }
  if (shown < names.size()) text += " and " + std::to_string(names.size() - shown) + " more";
  return text;
}

std::string counted(std::uint64_t count, const char* one, const char* several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
}

std::string located(const std::string& name, const std::string& folder) {
  return folder.empty() ? name : folder + " / " + name;
}

void warnOfPlaylists(const Plan& plan, std::vector<Warning>& warnings) {
  std::vector<std::string> notShown;
  for (const PlannedPlaylist& planned : plan.playlists) {
    if (!planned.collisions.empty()) {
      Warning warning{Kind::nameCollision, {located(planned.name, planned.folderName)}, 0};
      for (const Namesake& other : planned.collisions)
        warning.names.push_back(located(other.name, other.folder));
      warning.count = planned.collisions.size();
      warnings.push_back(std::move(warning));
    }
    if (planned.unknownEntries > 0)
      warnings.push_back({Kind::unknownEntries,
                          {located(planned.name, planned.folderName)},
                          planned.unknownEntries});
    if (!planned.shown) notShown.push_back(located(planned.name, planned.folderName));
  }
  for (const PlannedPlaylist& planned : plan.playlists)
    if (!planned.repeats.empty())
      warnings.push_back({Kind::createsRepeats,
                          {located(planned.name, planned.folderName)},
                          planned.repeats.size()});
  if (!notShown.empty()) {
    const std::size_t count = notShown.size();
    warnings.push_back({Kind::notShown, std::move(notShown), count});
  }
}

}  // namespace

std::vector<Warning> warningsOf(const Plan& plan) {
  std::vector<Warning> warnings;
  warnOfPlaylists(plan, warnings);
  // Grouped by reason: a library may leave out thousands of groups for two.
  std::map<std::string, std::vector<std::string>> groups, playlists;
  std::vector<std::string> folders;
  for (const LeftOut& left : plan.leftOut) {
    if (left.what == LeftOut::What::group) groups[left.reason].push_back(left.id);
    if (left.what == LeftOut::What::playlist)
      playlists[left.reason].push_back(left.name.empty() ? left.id : left.name);
    if (left.what == LeftOut::What::folder) folders.push_back(left.name);
  }
  const auto addByReason = [&](Kind kind, auto& lists) {
    for (auto& [reason, names] : lists) {
      Warning warning{kind, {reason}, names.size()};
      warning.names.insert(warning.names.end(), names.begin(), names.end());
      warnings.push_back(std::move(warning));
    }
  };
  if (const std::size_t count = folders.size())
    warnings.push_back({Kind::folderStandsIn, std::move(folders), count});
  addByReason(Kind::playlistLeftOut, playlists);
  addByReason(Kind::groupLeftOut, groups);

  std::map<std::string, std::vector<std::string>> held;
  std::size_t toMove = 0;
  for (const PlannedFile& file : plan.files) {
    toMove += file.heldBack.empty() ? 1 : 0;
    if (!file.heldBack.empty())
      held[file.heldBack].push_back(file.path.empty() ? file.name : file.path);
  }
  addByReason(Kind::filesHeldBack, held);
  if (plan.kind == RunKind::replaylist && plan.playlists.size() >= manyDocuments)
    warnings.push_back({Kind::manyDocuments, {}, plan.playlists.size()});
  if (plan.playlists.empty() && toMove == 0) warnings.push_back({Kind::nothingToDo, {}, 0});
  return warnings;
}

std::string sentence(const Warning& warning) {
  const std::vector<std::string>& names = warning.names;
  const auto behindFirst = [&] { return std::vector(names.begin() + 1, names.end()); };
  switch (warning.kind) {
    case Kind::nameCollision:
      return "Replacing " + quoted(names.at(0)) + " would delete " + listed(behindFirst()) +
             ", because the names are the same. It is left out unless you ask for it; undoing then "
             "brings the deleted back.";
    case Kind::unknownEntries:
      return counted(warning.count, "entry of ", "entries of ") + quoted(names.at(0)) +
             (warning.count == 1 ? " names a track" : " name tracks") +
             " that the library does not hold; " + (warning.count == 1 ? "it" : "they") +
             " will be left out, and undoing does not bring " +
             (warning.count == 1 ? "it" : "them") + " back.";
    case Kind::createsRepeats:
      return quoted(names.at(0)) + " will list " + counted(warning.count, "track", "tracks") +
             " more than once.";
    case Kind::notShown:
      return "The outline does not show " + listed(names) + ", which " +
             (warning.count == 1 ? "is" : "are") + " in a folder within a folder.";
    case Kind::folderStandsIn:
      return "Chosen for the playlists in " + std::string(warning.count == 1 ? "it" : "them") +
             ", not rebuilt: " + listed(names) + ".";
    case Kind::groupLeftOut:
      return counted(warning.count, "group is", "groups are") + " left out, because " +
             names.at(0) + ".";
    case Kind::playlistLeftOut:
      return "Left out, because " + names.at(0) + ": " + listed(behindFirst()) + ".";
    case Kind::filesHeldBack:
      return counted(warning.count, "file stays", "files stay") + ", because " + names.at(0) +
             ": " + listed(behindFirst()) + ".";
    case Kind::manyDocuments:
      return "This leaves " + counted(warning.count, "playlist document", "playlist documents") +
             " in the application-support folder, which you may delete.";
    case Kind::nothingToDo:
      return "There is nothing to do.";
  }
  return {};
}

}  // namespace kestrel
