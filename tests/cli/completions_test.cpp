// What shells complete.
#include <algorithm>
#include <array>
#include <cstdio>

#include "dupes/keeper_rules.h"
#include "dupes/loosening.h"
#include "library/track_keys.h"
#include "musicapp/track_values.h"
#include "tests/cli/command_line.h"

namespace kestrel::testing {
namespace {

class Completions : public CommandLine {
 protected:
  std::string outputOf(const std::string& command) const {
    std::string output;
    FILE* pipe = ::popen(command.c_str(), "r");
    std::array<char, 4096> part;
    for (std::size_t size; (size = std::fread(part.data(), 1, part.size(), pipe)) > 0;)
      output.append(part.data(), size);
    EXPECT_EQ(::pclose(pipe), 0) << command;
    return output;
  }
  /// What bash offers for the last of the words behind the program's name, a line each.
  std::string inBash(const std::string& words) const {
    const std::string script = folder.write(
        "try.bash", run({"completions", "bash"}).output +
                        // What the library would tell.
                        "kestrel-cli() { [[ $* == \"decisions names My Music\" ]] &&\n"
                        "  printf '%s\\n' 'Best sound' 'Bits $(touch injected)' Played; }\n"
                        "compopt() { :; }\n"
                        "COMP_WORDS=(kestrel-cli " +
                        words +
                        ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_kestrel_cli\n"
                        "printf '%s\\n' \"${COMPREPLY[@]}\"\n");
    return outputOf("cd " + (folder / "") + " && bash --norc " + script);
  }
};

TEST_F(Completions, OfferEveryWordOfTheInterface) {
  const auto expectAll = [&](const char* words, const std::vector<std::string>& wanted) {
    const std::string offered = "\n" + inBash(words);
    for (const std::string& word : wanted)
      EXPECT_NE(offered.find("\n" + word + "\n"), std::string::npos) << words << word;
  };
  std::vector<std::string> rules, fields, loose{"none"}, carried;
  for (const KeeperRuleInfo& rule : keeperRules()) rules.push_back(keeperRuleWord(rule.rule));
  for (const TrackKeyInfo& key : trackKeys())
    if (!key.word.empty()) fields.emplace_back(key.word);
  for (const LooseInfo& info : loosenings()) loose.emplace_back(info.word);
  for (const auto& [value, word] : trackValueNames) carried.emplace_back(word);
  expectAll("find L --keep ''", rules);
  expectAll("decisions preset L Name --keep ''", rules);
  expectAll("find L --match ''", fields);
  expectAll("find L --loose ''", loose);
  expectAll("trash L --carry ''", carried);
  expectAll("fin", {"find"});
  expectAll("find L --only", {});
  expectAll("trash L --only", {"--only-same-sound"});
  EXPECT_EQ(inBash("find L --keep most-played,highest-r"), "most-played,highest-rating\n");
  // Of the library, and nothing of a name is carried out.
  EXPECT_EQ(inBash("find 'My\\ Music' --preset B"),
            "Best\\ sound\nBits\\ \\$\\(touch\\ injected\\)\n");
  EXPECT_FALSE(std::filesystem::exists(folder / "injected"));
}

TEST_F(Completions, AreScriptsThatTheirShellsRead) {
  for (const std::string shell : {"bash", "zsh"}) {
    if (std::system(("command -v " + shell + " >/dev/null").c_str()) != 0) continue;
    const std::string script = folder.write("script", run({"completions", shell}).output);
    EXPECT_EQ(outputOf(shell + " -n " + script + " 2>&1"), "");
  }
}

}  // namespace
}  // namespace kestrel::testing
