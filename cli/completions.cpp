// completions: scripts by which shells complete commands, options and their values.

#include <iostream>
#include <memory>

#include "cli/command.h"
#include "cli/session.h"
#include "dupes/keeper_rules.h"
#include "dupes/loosening.h"
#include "library/track_keys.h"
#include "musicapp/track_values.h"

namespace kestrel {
namespace {

/// The options of a command, by their long names.
std::string optionsOf(const CLI::App& command) {
  std::string names;
  for (const CLI::Option* option : command.get_options())
    for (const std::string& name : option->get_lnames())
      names.append(names.empty() ? "--" : " --").append(name);
  return names;
}

std::string ruleWords() {
  std::string words;
  for (const KeeperRuleInfo& rule : keeperRules())
    words.append(words.empty() ? "" : " ").append(keeperRuleWord(rule.rule));
  return words;
}

std::string looseWords() {
  std::string words;
  for (const LooseInfo& info : loosenings()) words.append(info.word).append(" ");
  return words + "none";
}

std::string carryWords() {
  std::string words;
  for (const auto& [value, word] : trackValueNames)
    words.append(words.empty() ? "" : " ").append(word);
  return words;
}

std::string matchFields() {
  std::string words;
  for (const TrackKeyInfo& key : trackKeys())
    if (!key.word.empty()) words.append(words.empty() ? "" : " ").append(key.word);
  return words;
}

/// Options whose values are words, several with commas between them.
struct WordOption {
  const char *option, *what;
  std::string (*words)();
};
constexpr WordOption wordOptions[] = {{"--keep", "rule", ruleWords},
                                      {"--match", "field", matchFields},
                                      {"--loose", "word", looseWords},
                                      {"--carry", "value", carryWords}};

/// Commands whose first argument is one of some words.
struct WordCommand {
  const char *command, *words;
};
constexpr WordCommand wordCommands[] = {{"decisions", "list export import preset names"},
                                        {"completions", "bash zsh"}};

/// Options and commands of all, for a case statement of a shell.
void writeCases(std::ostream& out, const CLI::App& app) {
  for (const CLI::App* command : app.get_subcommands({}))
    out << "    " << command->get_name() << ") words='" << optionsOf(*command) << "' ;;\n";
}

std::string commandNames(const CLI::App& app) {
  std::string names;
  for (const CLI::App* command : app.get_subcommands({}))
    names.append(names.empty() ? "" : " ").append(command->get_name());
  return names;
}

void writeBash(std::ostream& out, const CLI::App& app) {
  out << "# bash completion of kestrel-cli; written by kestrel-cli completions bash.\n"
         "_kestrel_cli() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
         "  local command= words= word before\n"
         "  for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
         "    [[ $word == -* ]] || { command=$word; break; }\n"
         "  done\n"
         "  case $previous in\n";
  for (const WordOption& one : wordOptions)
    out << "    " << one.option << ") words='" << one.words() << "' ;;\n";
  for (const WordCommand& one : wordCommands)
    out << "    " << one.command << ") [[ $COMP_CWORD == 2 && $current != -* ]] && words='"
        << one.words << "' ;;\n";
  out << "    --keeper-mode) words='0 1' ;;\n"
         "    --preset)  # of the library, and whatever is in the names\n"
         "      word=${COMP_WORDS[2]//\\\\/}\n"
         "      before=${word/#\\~/$HOME}\n"
         "      COMPREPLY=()\n"
         "      while IFS= read -r word; do\n"
         "        [[ $word != \"$current\"* ]] || COMPREPLY+=(\"$(printf %q \"$word\")\")\n"
         "      done < <(\"${COMP_WORDS[0]}\" decisions names \"$before\" 2>/dev/null)\n"
         "      return ;;\n"
         "  esac\n"
         "  if [[ $words ]]; then  # the last of a list with commas\n"
         "    before=\n"
         "    [[ $current != *,* ]] || before=${current%,*},\n"
         "    COMPREPLY=($(compgen -P \"$before\" -W \"$words\" -- \"${current##*,}\"))\n"
         "    compopt -o nospace\n"
         "    return\n"
         "  fi\n"
         "  case $command in\n"
         "    '') words='"
      << commandNames(app) << ' ' << optionsOf(app) << "' ;;\n";
  writeCases(out, app);
  out << "  esac\n"
         "  if [[ ! $command || $current == -* ]]; then\n"
         "    COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n"
         "  else\n"
         "    compopt -o default\n"
         "    COMPREPLY=()\n"
         "  fi\n"
         "}\n"
         "complete -F _kestrel_cli kestrel-cli\n";
}

/// A text for zsh's lists of "word:what it is".
std::string described(const std::string& word, std::string help) {
  std::string text = "'" + word + ":";
  for (const char c : help) {
    if (c == '\n') break;
    if (c == '\'') text += "'\\''";
    if (c != '\'' && c != ':') text += c;
  }
  return text + "'";
}

void writeZsh(std::ostream& out, const CLI::App& app) {
  out << "#compdef kestrel-cli\n"
         "# zsh completion of kestrel-cli; written by kestrel-cli completions zsh.\n"
         "_kestrel_cli() {\n"
         "  local command= word\n"
         "  local -a commands options\n"
         "  commands=(";
  for (const CLI::App* command : app.get_subcommands({}))
    out << "\n    " << described(command->get_name(), command->get_description());
  out << ")\n"
         "  for word in ${words[2,CURRENT-1]}; do\n"
         "    [[ $word == -* ]] || { command=$word; break }\n"
         "  done\n"
         "  if [[ -z $command ]]; then\n"
         "    _describe command commands\n"
         "    return\n"
         "  fi\n"
         "  case $words[CURRENT-1] in\n";
  for (const WordOption& one : wordOptions)
    out << "    " << one.option << ") _values -s , " << one.what << ' ' << one.words()
        << "; return ;;\n";
  for (const WordCommand& one : wordCommands)
    out << "    " << one.command
        << ") if (( CURRENT == 3 )) && [[ $PREFIX != -* ]]; then _values word " << one.words
        << "; return; fi ;;\n";
  out << "    --keeper-mode) _values mode 0 1; return ;;\n"
         "    --preset) compadd -- ${(f)\"$($words[1] decisions names ${(Q)words[3]} "
         "2>/dev/null)\"}; "
         "return ;;\n"
         "  esac\n"
         "  case $command in\n";
  for (const CLI::App* command : app.get_subcommands({})) {
    out << "    " << command->get_name() << ") options=(";
    for (const CLI::Option* option : command->get_options())
      for (const std::string& name : option->get_lnames())
        out << "\n      " << described("--" + name, option->get_description());
    out << ") ;;\n";
  }
  out << "  esac\n"
         "  if [[ $PREFIX == -* ]]; then\n"
         "    _describe option options\n"
         "  else\n"
         "    _files\n"
         "  fi\n"
         "}\n"
         "_kestrel_cli \"$@\"\n";
}

}  // namespace

void addCompletionsCommand(CLI::App& app, Action& chosen) {
  auto shell = std::make_shared<std::string>();
  CLI::App* command = app.add_subcommand(
      "completions", "Write what a shell needs to complete this program's words");
  command->add_option("SHELL", *shell, "bash or zsh")
      ->required()
      ->check(CLI::IsMember({"bash", "zsh"}));
  setAction(*command, chosen, [shell, &app](Session&) {
    *shell == "bash" ? writeBash(std::cout, app) : writeZsh(std::cout, app);
    return 0;
  });
}

}  // namespace kestrel
