// compare-rules: what every rule and preset would do, against the one that is chosen.

#include <algorithm>
#include <iostream>
#include <memory>
#include <unordered_set>

#include "cli/command.h"
#include "cli/filtered_output.h"
#include "cli/search.h"
#include "cli/session.h"
#include "cli/text_table.h"
#include "decisions/preset_rules.h"
#include "dupes/rule_comparison.h"
#include "foundation/text_helpers.h"

namespace kestrel {
namespace {

Json json(const ComparedRule& rule, const RuleOutcome& outcome) {
  Json object;
  if (rule.preset.empty()) {
    object["rule"] = static_cast<int>(rule.rules.front());
    object["name"] = keeperRuleInfo(rule.rules.front()).name;
    object["word"] = keeperRuleWord(rule.rules.front());
  } else {
    object["preset"] = rule.preset;
    object["name"] = rule.preset;
  }
  object["opinions"] = outcome.opinions;
  object["changedGroups"] = outcome.changedGroups;
  object["playlists"] = outcome.playlists;
  object["entries"] = outcome.entries;
  object["bytes"] = outcome.bytes;
  object["playsLost"] = outcome.playsLost;
  object["ratingsLost"] = outcome.ratingsLost;
  return object;
}

std::size_t unanimousIn(const RuleComparison& comparison) {
  return static_cast<std::size_t>(
      std::count_if(comparison.groups.begin(), comparison.groups.end(),
                    [](const GroupAgreement& group) { return group.agree == group.of; }));
}

void writeText(std::ostream& out, const SearchResult& found, std::span<const ComparedRule> rules,
               const RuleComparison& comparison) {
  found.writeScope(out);
  using Align = TextTable::Align;
  TextTable table({{"Rule", Align::left, 40},
                   {"Decides", Align::right},
                   {"Changed", Align::right},
                   {"Playlists", Align::right},
                   {"Entries", Align::right},
                   {"Frees", Align::right},
                   {"Plays lost", Align::right},
                   {"Ratings lost", Align::right}});
  for (std::size_t i = 0; i < rules.size(); ++i) {
    const RuleOutcome& outcome = comparison.rules[i];
    const std::string name =
        rules[i].preset.empty() ? keeperRuleInfo(rules[i].rules.front()).name : rules[i].preset;
    table.add({name, std::to_string(outcome.opinions), std::to_string(outcome.changedGroups),
               std::to_string(outcome.playlists), std::to_string(outcome.entries),
               outcome.bytes ? TextSorter::makeSizeHumanReadable(outcome.bytes) : "0",
               std::to_string(outcome.playsLost), std::to_string(outcome.ratingsLost)});
  }
  table.write(out);
  out << "All rules that can tell the copies apart agree in " << unanimousIn(comparison) << " of "
      << comparison.groups.size() << (comparison.groups.size() == 1 ? " group.\n" : " groups.\n");
}

}  // namespace

void addCompareRulesCommand(CLI::App& app, Action& chosen) {
  struct Options {
    SearchOptions search;
    bool json = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand("compare-rules", "Show what every other rule would do");
  addSearchOptions(*command, options->search);
  command->add_flag("--json", options->json, "Write JSON");
  setAction(*command, chosen, [options](Session& session) {
    checkSearchOptions(options->search);
    const auto library = session.open(options->search.library);
    const SearchResult found = search(session, *library, options->search);
    if (session.interrupted()) return session.stopped();
    std::vector<const ResultTrack*> rows;
    for (const ResultTrack& row : found.rows) rows.push_back(&row);
    const GroupIndex index(rows.size(), [&](std::size_t row) { return rows[row]->tGroupID; });
    std::unordered_set<std::int32_t> fixed;
    for (const FoundGroup& group : found.groups)
      if (group.picked != PickState::none) fixed.insert(group.tracks.front()->tGroupID);
    const std::vector<ComparedRule> rules = comparedRules(found.decisions.presets);
    // Files are opened for them: only where they are to count.
    FilterSettings settings = found.settings;
    const auto has = [&](KeeperRule rule) {
      return settings.ruleNumber == static_cast<int>(rule) ||
             std::find(settings.chain.begin(), settings.chain.end(), rule) != settings.chain.end();
    };
    if (!has(KeeperRule::withCover)) settings.keeper.cover = nullptr;
    if (!has(KeeperRule::losslessFirst)) settings.keeper.samples = nullptr;
    const RuleComparison comparison = compareRules(
        rows, index, rules, settings, *found.facts,
        [&](const ResultTrack& row) { return found.isKeeper(row); },
        [&](std::int32_t group) { return fixed.contains(group); },
        [&session] { return session.interrupted(); });
    if (session.interrupted()) return session.stopped();
    if (!options->json) {
      writeText(std::cout, found, rules, comparison);
      return 0;
    }
    Json result = {{"scope", found.scope()}, {"base", {{"rule", found.settings.ruleNumber}}}};
    if (Json chain = found.chain(); !chain.is_null()) result["base"]["keep"] = std::move(chain);
    result["rules"] = Json::array();
    for (std::size_t i = 0; i < rules.size(); ++i)
      result["rules"].push_back(json(rules[i], comparison.rules[i]));
    std::cout << "{\"scope\":" << dump(result["scope"]) << ",\"base\":" << dump(result["base"])
              << ",\"rules\":" << dump(result["rules"]) << ",\"pickedByHand\":" << fixed.size()
              << ",\"unanimous\":" << unanimousIn(comparison) << ",\"groups\":[";
    const char* separator = "\n";
    for (const GroupAgreement& group : comparison.groups) {
      std::cout << separator << "{\"tGroupID\":" << group.group << ",\"agree\":" << group.agree
                << ",\"of\":" << group.of << '}';
      separator = ",\n";
    }
    std::cout << "]}\n";
    return 0;
  });
}

}  // namespace kestrel
