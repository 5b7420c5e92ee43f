#include "musicapp/scripted/templates.h"

#include <array>
#include <stdexcept>

namespace kestrel::script {
namespace {

constexpr std::string_view placeholder = "%@";

/// In the order of the enumeration.
constexpr std::array<std::string_view, 9> texts = {
    "tell application \"Music\"\nadd ((POSIX file \"%@\") as alias)\ndelay 0.1\nend tell",

    "tell application \"Music\"\ntry\ntell (get some track of library playlist 1 whose persistent "
    "ID is \"%@\") to return ((get its cloud status) as text)\nend try\nend tell",

    "tell application \"Music\"\ntry\ntell (get some track of library playlist 1 whose persistent "
    "ID is \"%@\") to return (POSIX path of ((get its location) as text))\nend try\nend tell",

    "tell application id \"com.apple.Music\"\ntry\nreveal (get some track of (get some playlist "
    "whose persistent ID is \"%@\") whose persistent ID is \"%@\")\nend try\nend tell",

    "tell application id \"com.apple.Music\"\ntry\nreveal (get some track of library playlist 1 "
    "whose persistent ID is \"%@\")\nend try\nend tell",

    "tell application id \"com.apple.Music\"\ntry\nreveal (get some playlist whose persistent ID "
    "is \"%@\")\nend try\nend tell",

    "tell application \"iTunes\" to add (\"%@\" as POSIX file as alias)",

    "tell application \"iTunes\"\ntry\nconsidering case\ndelete every user playlist whose name is "
    "\"%@\" and persistent ID is not \"%@\" and smart is false\nend considering\nend try\nend tell",

    "tell application \"iTunes\"\ntry\ndelete some playlist whose persistent ID is \"%@\"\nend "
    "try\nend tell",
};

}  // namespace

std::string scriptText(Template command, std::initializer_list<std::string_view> arguments) {
  std::string_view rest = texts.at(static_cast<std::size_t>(command));
  std::string script;
  for (const std::string_view argument : arguments) {
    const std::size_t place = rest.find(placeholder);
    if (place == std::string_view::npos) throw std::invalid_argument("too many script arguments");
    script.append(rest.substr(0, place)).append(argument);
    rest.remove_prefix(place + placeholder.size());
  }
  if (rest.find(placeholder) != std::string_view::npos)
    throw std::invalid_argument("too few script arguments");
  return script.append(rest);
}

}  // namespace kestrel::script
