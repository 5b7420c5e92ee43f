/// What a user should know before a run, as data and as sentences.
#pragma once

#include <string>
#include <vector>

#include "changes/plan.h"

namespace kestrel {

struct Warning {
  enum class Kind : std::uint8_t {
    createsRepeats,  ///< one track several times in one playlist
    notShown,        ///< affected, but the outline cannot show it
    folderStandsIn,  ///< a chosen folder stands for what it holds
    groupLeftOut,
    playlistLeftOut,
    filesHeldBack,
    tracksHeldBack,
    nothingToDo,
  };
  Kind kind = Kind::nothingToDo;
  std::vector<std::string> names;  ///< playlists, groups or files, by kind
  std::uint64_t count = 0;
  Message reason = {};  ///< of what is left out or held back

  friend bool operator==(const Warning&, const Warning&) = default;
};

/// In the order in which they matter.
std::vector<Warning> warningsOf(const Plan& plan);
/// One sentence, or two.
Message sentence(const Warning& warning);

}  // namespace kestrel
