// decisions: what has been decided about a library, shown, saved as a file and loaded from one.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "cli/command.h"
#include "cli/filtered_output.h"
#include "cli/record_output.h"
#include "cli/search_options.h"
#include "cli/session.h"
#include "decisions/decisions_file.h"
#include "decisions/decisions_json.h"
#include "dupes/keeper_rules.h"
#include "foundation/identifiers.h"
#include "foundation/utf8.h"
#include "musicapp/kept_maps.h"
#include "platform/preferences.h"

namespace kestrel {
namespace {

struct DecisionsOptions {
  std::string action, library, file;  ///< of a preset its name
  std::vector<std::string> keep, folders, kinds;
  std::optional<std::vector<std::string>> loose;
  bool remove = false;
  bool json = false;
  [[nodiscard]] bool hasPreset() const { return remove || !keep.empty() || hasMore(); }
  [[nodiscard]] bool hasMore() const { return !folders.empty() || !kinds.empty() || loose; }
};

std::vector<std::uint64_t> unknownTracks(const Decisions& decisions, const TrackStore& tracks) {
  std::vector<std::uint64_t> unknown;
  for (const std::uint64_t id : decisions.tracks())
    if (!tracks.find(id)) unknown.push_back(id);
  return unknown;
}

/// The settings of the program with windows, where the maps of libraries are.
std::unique_ptr<Preferences> usersSettings(Session& session) {
  const auto folder = session.files.configurationDirectory();
  if (!folder) return std::make_unique<Preferences>();
  return std::make_unique<FilePreferences>(*folder + "/Kestrel/settings.ini", session.files,
                                           session.log());
}

/// What the first of the tracks that the library has is called.
std::string songOf(const TrackStore& tracks, const TrackIDs& members) {
  for (const std::uint64_t id : members)
    if (tracks.find(id)) return textsOf(tracks, id).song;
  return {};
}

int tell(const DecisionsOptions& options, const Decisions& decisions, const TrackStore& tracks) {
  const std::vector<std::uint64_t> unknown = unknownTracks(decisions, tracks);
  if (options.json) {
    Json presets = Json::array();
    for (const Preset& preset : decisions.presets) {
      presets.push_back({{"name", preset.name},
                         {"keep", preset.keep},
                         {"folders", preset.folders},
                         {"kinds", preset.kinds}});
      if (preset.loose) presets.back()["loose"] = *preset.loose;
    }
    Json picked = Json::array(), maps = Json::array();
    for (const KeeperPick& pick : decisions.picks.list())
      picked.push_back({{"keep", TextSorter::batchDecToHex(pick.keepers)},
                        {"group", TextSorter::batchDecToHex(pick.members)},
                        {"song", songOf(tracks, pick.members)}});
    for (const PathMaps::Map& map : decisions.maps)
      maps.push_back({{"from", map.from}, {"to", map.to}});
    std::cout << dump({{"picks", decisions.picks.size()},
                       {"picked", std::move(picked)},
                       {"maps", std::move(maps)},
                       {"notDuplicates", decisions.notDuplicates.size()},
                       {"presets", std::move(presets)},
                       {"unknownTracks", TextSorter::batchDecToHex(unknown)}},
                      1)
              << '\n';
    return 0;
  }
  const auto counted = [](std::size_t count, const char* one, const char* several) {
    return std::to_string(count) + (count == 1 ? one : several);
  };
  std::cout << counted(decisions.picks.size(), " keeper", " keepers") << " picked by hand, "
            << counted(decisions.notDuplicates.size(), " group", " groups")
            << " left out of searches, " << counted(decisions.presets.size(), " preset", " presets")
            << ".\n";
  for (const KeeperPick& pick : decisions.picks.list()) {
    std::cout << "  picked: " << printable(songOf(tracks, pick.members));
    for (const std::uint64_t id : pick.keepers)
      if (tracks.find(id)) std::cout << "; kept: " << printable(textsOf(tracks, id).copy);
    std::cout << (pick.keepers.empty() ? "; no copy is kept\n" : "\n");
  }
  for (const TrackIDs& set : decisions.notDuplicates.list())
    std::cout << "  left out: " << printable(songOf(tracks, set)) << ", "
              << counted(set.size(), " track", " tracks") << '\n';
  for (const PathMaps::Map& map : decisions.maps)
    std::cout << "  files of " << printable(map.from) << " are in " << printable(map.to) << '\n';
  for (const Preset& preset : decisions.presets) {
    std::cout << "  " << printable(preset.name) << ':';
    for (const std::string& word : preset.keep) std::cout << ' ' << printable(word);
    const auto order = [](const char* what, const std::vector<std::string>& texts) {
      for (const std::string& text : texts)
        std::cout << (&text == texts.data() ? what : ", ") << printable(text);
    };
    order("; folders: ", preset.folders);
    order("; kinds: ", preset.kinds);
    if (preset.loose) order("; passes over: ", *preset.loose);
    std::cout << '\n';
  }
  if (!unknown.empty())
    std::cout << counted(unknown.size(), " track is", " tracks are")
              << " not in the library; what was decided about them is kept.\n";
  return 0;
}

/// Throws UsageError where a file is there that is none of decisions, and would be lost.
void refuseOtherFiles(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return;
  std::string start(200, '\0');
  if (std::filesystem::is_regular_file(path, error)) {
    std::ifstream file(path, std::ios::binary);
    file.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(file.gcount()));
    if (start.find("\"kestrelDecisions\"") != std::string::npos) return;
  }
  throw UsageError("FILE: " + printable(path) +
                   " is there and holds no decisions, so it is not written over; choose another "
                   "name");
}

int exportTo(Session& session, MediaLibrary& library, const DecisionsOptions& options,
             const TrackStore& tracks) {
  if (options.file != "-") refuseOtherFiles(options.file);
  Decisions decisions = DecisionsFile(session.files, library.identity()).load();
  const PathMaps kept = keptMaps(*usersSettings(session), options.library);
  decisions.maps = kept.list();
  const std::string text = decisionsText(decisions, library.identity(), [&](std::uint64_t id) {
    return tracks.find(id) ? textsOf(tracks, id).song : std::string();
  });
  if (options.file == "-")
    std::cout << text;
  else
    session.files.writeAtomically(options.file, text);
  return options.file == "-" ? 0 : tell(options, decisions, tracks);
}

int importFrom(Session& session, MediaLibrary& library, const DecisionsOptions& options,
               const TrackStore& tracks) {
  const ReadDecisions read = decisionsFromText(session.files.readAll(options.file), options.file);
  for (const Message& text : read.notes) note(options.file + ": " + text.english());
  const Decisions decisions =
      DecisionsFile(session.files, library.identity()).change([&](Decisions& now) {
        now.merge(read.decisions);
      });
  if (!read.decisions.maps.empty()) {
    const auto preferences = usersSettings(session);
    std::vector<PathMaps::Map> maps = keptMaps(*preferences, options.library).list();
    maps.insert(maps.end(), read.decisions.maps.begin(), read.decisions.maps.end());
    keepMaps(*preferences, options.library, PathMaps(std::move(maps)));
  }
  return tell(options, decisions, tracks);
}

/// Saves a preset under its name, or removes it.
int changePreset(Session& session, MediaLibrary& library, const DecisionsOptions& options,
                 const TrackStore& tracks) {
  Preset preset{options.file, {}, options.folders, options.kinds, options.loose};
  std::vector<KeeperRule> rules;
  for (const std::string& text : options.keep) {
    const auto rule = keeperRuleNamed(text);
    if (!rule) throw UsageError("--keep: there is no rule \"" + text + "\"");
    preset.keep.push_back(keeperRuleWord(*rule));
    rules.push_back(*rule);
  }
  noteUnheardRules(rules);
  if (keeperRuleNamed(preset.name))
    throw UsageError("NAME: \"" + preset.name +
                     "\" is the name of a rule, which --keep would take");
  if (!options.remove && preset.name.find(',') != std::string::npos)
    throw UsageError("NAME: a comma would be taken for the end of the name by --keep");
  DecisionsFile file(session.files, library.identity());
  if (options.remove && !file.load().preset(preset.name))
    throw UsageError("NAME: no preset is called \"" + preset.name + "\"");
  return tell(options, file.change([&](Decisions& now) {
    options.remove ? static_cast<void>(now.removePreset(preset.name))
                   : now.setPreset(std::move(preset));
  }),
              tracks);
}

void checkPreset(const DecisionsOptions& options) {
  if (options.action != "preset") {
    if (options.hasPreset())
      throw UsageError("--keep, --folders, --kinds, --loose and --remove are of decisions preset");
    return;
  }
  if (options.file.empty()) throw UsageError("NAME: which preset is it?");
  if (options.remove && (!options.keep.empty() || options.hasMore()))
    throw UsageError("--remove: a preset is removed by its name alone");
  if (!options.remove && options.keep.empty())
    throw UsageError("--keep: which rules are they? With --remove the preset is removed");
}

}  // namespace

void addDecisionsCommand(CLI::App& app, Action& chosen) {
  auto options = std::make_shared<DecisionsOptions>();
  CLI::App* command = app.add_subcommand(
      "decisions", "Show what has been decided about a library, save it, or load it");
  command
      ->add_option("ACTION", options->action,
                   "list, export, import, preset, which saves or removes one, or names, which\n"
                   "lists those of presets, for completions")
      ->required()
      ->check(CLI::IsMember({"list", "export", "import", "preset", "names"}));
  addLibraryOption(*command, options->library);
  command->add_option("FILE", options->file,
                      "The file that export writes (- is standard output) and import reads;\n"
                      "of a preset its name");
  const auto addList = [&](const char* name, std::vector<std::string>& texts, const char* help) {
    return command->add_option(name, texts, help)->allow_extra_args(false);
  };
  addList("--keep", options->keep, "The rules of the preset")
      ->delimiter(',')
      ->option_text("RULE,RULE...");
  addList("--folders", options->folders, "For its order of folders, the preferred first")
      ->delimiter(',')
      ->option_text("PATH,PATH...");
  addList("--kinds", options->kinds, "For its order of kinds, the preferred first")
      ->delimiter(',')
      ->option_text("TEXT,TEXT...");
  addLooseOption(*command, options->loose, "What it passes over in texts");
  command->add_flag("--remove", options->remove, "Remove the preset");
  command->add_flag("--json", options->json, "Write JSON");
  setAction(*command, chosen, [options](Session& session) {
    checkPreset(*options);
    const bool isNames = options->action == "names";
    if (options->file.empty() && options->action != "list" && !isNames)
      throw UsageError("FILE: which file is it?");
    const auto library = session.open(options->library);
    if (isNames) {
      for (const Preset& preset : DecisionsFile(session.files, library->identity()).load().presets)
        std::cout << printable(preset.name) << '\n';
      return 0;
    }
    session.withoutFiles = true;  // only which tracks there are matters
    const auto tracks = session.snapshot(*library, true);
    if (options->action == "export") return exportTo(session, *library, *options, *tracks);
    if (options->action == "preset") return changePreset(session, *library, *options, *tracks);
    if (options->action == "import") return importFrom(session, *library, *options, *tracks);
    Decisions decisions = DecisionsFile(session.files, library->identity()).load();
    decisions.maps = keptMaps(*usersSettings(session), options->library).list();
    return tell(*options, decisions, *tracks);
  });
}

}  // namespace kestrel
