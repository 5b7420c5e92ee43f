/// What a user has decided about a library: picked keepers, groups that are no duplicates, and
/// chains of rules under names.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "decisions/keeper_picks.h"
#include "decisions/not_duplicates.h"
#include "musicapp/path_maps.h"

namespace kestrel {

/// A chain of keeper rules under a name.
struct Preset {
  std::string name;
  std::vector<std::string> keep;     ///< rules by their words, such as "most-played"; unknown stay
  std::vector<std::string> folders;  ///< for the order of folders, the preferred first
  std::vector<std::string> kinds;    ///< for the order of kinds, likewise
  /// Words of what is passed over when values are compared; nothing: what is chosen already.
  std::optional<std::vector<std::string>> loose = std::nullopt;
  friend bool operator==(const Preset&, const Preset&) = default;
};

/// A value: `DecisionsFile` (decisions_file.h) loads it and writes changes.
struct Decisions {
  KeeperPicks picks;
  NotDuplicates notDuplicates;
  std::vector<Preset> presets;
  /// Where files of the library are on this machine. Only of an exported file: a program keeps them
  /// in its settings.
  std::vector<PathMaps::Map> maps;

  /// nullptr when there is none of this name.
  [[nodiscard]] const Preset* preset(const std::string& name) const noexcept;
  /// Adds a preset, in the place of one of its name.
  void setPreset(Preset preset);
  /// False when there was none of this name.
  bool removePreset(const std::string& name);

  /// Takes over all that another file says: its picks and presets go before those that are there.
  void merge(const Decisions& other);
  /// Every track that a pick or a pair names, ascending, each once.
  [[nodiscard]] TrackIDs tracks() const;

  friend bool operator==(const Decisions&, const Decisions&) = default;
};

}  // namespace kestrel
