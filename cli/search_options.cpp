#include "cli/search_options.h"

#include <algorithm>
#include <utility>

#include "cli/filtered_output.h"
#include "dupes/group_filter.h"
#include "foundation/identifiers.h"
#include "library/track_keys.h"

namespace kestrel {
namespace {

constexpr std::uint64_t mostSeconds = std::uint64_t{1} << 31;  // of --approx and --tolerance

/// With line ends for spaces, so that no line of a help text is wider than a terminal.
std::string wrapped(std::string text) {
  constexpr std::size_t width = 80;
  for (std::size_t begin = 0; text.size() - begin > width;) {
    const std::size_t space = text.rfind(' ', begin + width);
    if (space == std::string::npos || space <= begin) break;
    text[space] = '\n';
    begin = space + 1;
  }
  return text;
}

/// The key of a field. Throws UsageError that names the nearest fields.
std::string criterionNamed(const std::string& field) {
  if (field == "Filename") return field;
  if (const auto key = fieldNamed(field)) return std::string(trackKeyName(*key));
  throw UsageError("--match: no track has a field " + textInQuotes(field) +
                   "; the nearest are: " + listed(nearestFields(field)));
}

/// Throws UsageError that lists the choices unless the text begins like one of them.
void checkFileType(std::string_view text) {
  const auto choices = fileTypeChoices();
  const bool known = std::any_of(choices.begin(), choices.end(), [&](std::string_view choice) {
    return text.size() >= 2 && choice.substr(0, 2) == text.substr(0, 2);
  });
  if (!known)
    throw UsageError("--file-type: " + textInQuotes(text) + " is none of: " + listed(choices));
}

void noteWhatDoesNotCount(const SearchOptions& options, const std::vector<std::string>& criteria) {
  if (std::find(criteria.begin(), criteria.end(), "Filename") != criteria.end())
    note("a search by Filename finds nothing; use file-name to match by the names of files");
  if (!options.bitRate.empty() && options.fileType.empty())
    note("--bit-rate counts only together with --file-type");
}

/// An option of whole seconds, with or without the "s".
CLI::Option* addSeconds(CLI::App& command, const char* name, std::optional<std::int64_t>& seconds,
                        std::uint64_t least, const std::string& help) {
  return command
      .add_option_function<std::string>(
          name,
          [name, least, &seconds](std::string text) {
            if (text.ends_with('s')) text.pop_back();
            const auto number = numberFromDecimal(text);
            if (!number || *number < least || *number > mostSeconds)
              throw CLI::ValidationError(name, "has to be whole seconds, from " +
                                                   std::to_string(least) + " to " +
                                                   std::to_string(mostSeconds));
            seconds = static_cast<std::int64_t>(*number);
          },
          help)
      ->option_text("N");
}

}  // namespace

std::string textInQuotes(std::string_view text) {
  return std::string("\"").append(text).append("\"");
}

std::string listed(std::span<const std::string_view> texts) {
  std::string list;
  for (const std::string_view text : texts) list.append(list.empty() ? "" : ", ").append(text);
  return list;
}

std::vector<std::string> criteriaOf(const SearchOptions& options) {
  std::vector<std::string> criteria;
  if (options.bySound) return criteria;
  for (const std::string& field : options.match) criteria.push_back(criterionNamed(field));
  if (options.approx || options.tolerance) std::erase(criteria, "realTime");
  return criteria;
}

GroupingOptions groupingOf(const SearchOptions& options) {
  GroupingOptions grouping;
  grouping.caseSensitive = options.caseSensitive;
  if (options.approx) grouping.toleranceSeconds = toleranceFor(*options.approx);
  if (options.tolerance) grouping.toleranceSeconds = *options.tolerance;
  return grouping;
}

CLI::Option* addLooseOption(CLI::App& command, std::optional<std::vector<std::string>>& loose,
                            const std::string& help) {
  std::vector<std::string_view> words;
  for (const LooseInfo& info : loosenings()) words.emplace_back(info.word);
  const std::string list = listed(words) + ", or none";
  return command
      .add_option_function<std::vector<std::string>>(
          "--loose",
          [&loose, list](std::vector<std::string> given) {
            if (given == std::vector<std::string>{"none"}) given.clear();
            for (const std::string& word : given)
              if (!looseNamed(word))
                throw CLI::ValidationError("--loose", textInQuotes(word) + " is none of: " + list);
            loose = std::move(given);
          },
          wrapped(help + ": " + list))
      ->delimiter(',')
      ->allow_extra_args(false)
      ->option_text("WORD,WORD...");
}

void noteUnheardRules(std::span<const KeeperRule> rules) {
  const auto chance = std::find(rules.begin(), rules.end(), KeeperRule::singleArbitrary);
  if (chance != rules.end() && chance + 1 != rules.end())
    note("rules behind single-arbitrary never count: it leaves nothing open");
}

void addSearchOptions(CLI::App& command, SearchOptions& options) {
  addLibraryOption(command, options.library);
  command
      .add_option("--match", options.match,
                  "Fields that duplicates share: name,artist (also what is taken without this\n"
                  "option), album, time, track-number, ... or their keys, such as tName")
      ->delimiter(',')
      ->allow_extra_args(false)  // else it would take a LIBRARY behind it
      ->option_text("FIELD,FIELD...");
  command.add_option("--playlist", options.playlist, "Search this playlist instead of all songs")
      ->option_text("DECPID-or-name");
  auto* approx = addSeconds(command, "--approx", options.approx, 0,
                            "Playing times may differ by N + 1 seconds from a group's first track");
  addSeconds(command, "--tolerance", options.tolerance, 1,
             "The same by what they may differ by, such as 2s")
      ->excludes(approx);
  command.add_flag("--case-sensitive", options.caseSensitive, "Capitals and small letters differ");
  addLooseOption(command, options.loose, "What is passed over in texts");
  std::string rules = "How the keeper is chosen:";
  for (const KeeperRuleInfo& rule : keeperRules())
    rules.append("\n")
        .append(std::to_string(static_cast<int>(rule.rule)))
        .append(" ")
        .append(rule.name);
  const auto last = keeperRules().size();
  auto* rule = command.add_option("--rule", options.rule, rules)
                   ->check(CLI::Range(std::size_t{1}, last))
                   ->option_text("1.." + std::to_string(last));
  auto* keep =
      command
          .add_option("--keep", options.keep,
                      "The same by names, or several: the next decides what is left open,\n"
                      "such as highest-bit-rate,most-played; or the name of a preset")
          ->delimiter(',')
          ->allow_extra_args(false)
          ->excludes(rule)
          ->option_text("RULE,RULE...");
  command.add_option("--preset", options.preset, "The same by the name of a preset of the library")
      ->excludes(rule)
      ->excludes(keep)
      ->option_text("NAME");
  const auto addOrder = [&command](const char* name, std::vector<std::string>& texts,
                                   const char* help, const char* shown) {
    command.add_option(name, texts, help)
        ->delimiter(',')
        ->allow_extra_args(false)
        ->option_text(shown);
  };
  addOrder("--folders", options.folders,
           "For the rule order-of-folders: how paths begin, the best first", "TEXT,TEXT...");
  addOrder("--kinds", options.kinds,
           "For the rule order-of-kinds: what kinds contain, such as FLAC,AAC", "TEXT,TEXT...");
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
  command.add_option("--file-type", options.fileType,
                     wrapped("Choose among tracks of this type: " + listed(fileTypeChoices())));
  command.add_option("--bit-rate", options.bitRate,
                     "And of those among tracks with this bit rate, such as \"256 kbps\"");
  auto* bySound =
      command.add_flag("--by-sound", options.bySound,
                       "Find what sounds the same, whatever its tags; listens to all files, once");
  for (const char* name : {"--match", "--approx", "--tolerance", "--case-sensitive", "--loose"})
    bySound->excludes(command.get_option(name));
  command.add_option("--seed", options.seed, "Makes random choices repeatable");
}

void checkSearchOptions(const SearchOptions& options) {
  if (!options.fileType.empty()) checkFileType(options.fileType);
  const std::vector<std::string> criteria = criteriaOf(options);
  if (criteria.empty() && !options.bySound)
    throw UsageError(
        "--match: with --approx or --tolerance, time alone leaves nothing to match by; add another "
        "field, such as name, or leave them out");
  noteWhatDoesNotCount(options, criteria);
}

}  // namespace kestrel
