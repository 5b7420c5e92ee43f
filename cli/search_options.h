/// The options of the search that find, replaylist, plan and trash begin with.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/command.h"
#include "dupes/grouping.h"
#include "dupes/keeper_rules.h"

namespace kestrel {

struct SearchOptions {
  std::string library;
  std::vector<std::string> match{"name", "artist"};
  std::string playlist;
  std::optional<std::int64_t> approx, tolerance;  ///< seconds; at most one of them
  bool caseSensitive = false;
  /// Words of what is passed over; nothing: what a preset says.
  std::optional<std::vector<std::string>> loose;
  std::int64_t rule = 1;
  std::vector<std::string> keep;  ///< rules by word or number, instead of `rule`
  std::string preset;             ///< the name of one, instead of both
  std::vector<std::string> folders, kinds;
  std::int64_t keeperMode = 0;
  bool alwaysUncheck = false;
  std::optional<std::string> folder;  ///< nothing: the library's media folder
  std::string fileType;
  std::string bitRate;
  std::optional<std::uint64_t> seed;
  bool bySound = false;  ///< whatever the tags say
  bool sound = false;    ///< whether members of groups are listened to
};

/// Adds LIBRARY and the options of the search to a subcommand.
void addSearchOptions(CLI::App& command, SearchOptions& options);
/// Checks what the parser cannot and notes on standard error what the user may not expect. To be
/// called before the library is opened. Throws UsageError.
void checkSearchOptions(const SearchOptions& options);
/// The keys of the fields to match by, as they are searched for: none of a search by sound, and
/// with a tolerance no exact times, which would undo it. Throws UsageError of an unknown field.
std::vector<std::string> criteriaOf(const SearchOptions& options);
/// How tracks are matched by them, but for what is passed over.
GroupingOptions groupingOf(const SearchOptions& options);
/// Adds --loose, which leaves the words in `loose`: none of them for "none".
CLI::Option* addLooseOption(CLI::App& command, std::optional<std::vector<std::string>>& loose,
                            const std::string& help);
/// Notes on standard error that rules behind one that chooses among all by chance never count.
void noteUnheardRules(std::span<const KeeperRule> rules);
std::string textInQuotes(std::string_view text);
/// The texts with commas between them.
std::string listed(std::span<const std::string_view> texts);

}  // namespace kestrel
