/// What counts as a duplicate, as the user decides it and as the search takes it.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dupes/loosening.h"
#include "foundation/message.h"

namespace kestrel {

class Preferences;

struct Criterion {
  std::string_view key;  ///< as criteria lists hold it
  const char* title;     ///< in English
  const char* name;      ///< the same within a sentence
};

namespace settings {

inline constexpr std::string_view criteria = "criteria";  ///< list of key texts

/// Name and artist, until the user chooses.
void registerAppValues(Preferences& preferences);

}  // namespace settings

/// What the user can choose from, most usual first. The playing time is not among them: it has a
/// tolerance, see below.
std::span<const Criterion> criterionChoices() noexcept;
/// A key within a sentence; the key itself when it is none of the choices.
Message criterionName(std::string_view key);

/// The literal that makes every search come back empty; `tFileName` is what its users mean.
inline constexpr std::string_view filenameLiteral = "Filename";

/// The user's ticked fields, in the order of ticking; the playing time never among them.
std::vector<std::string> chosenCriteria(const Preferences& preferences);
void setCriterion(Preferences& preferences, std::string_view key, bool chosen);

/// What is passed over when values are compared.
LooseSet chosenLoose(const Preferences& preferences);
void setLoose(Preferences& preferences, Loose loose, bool chosen);

/// The criteria list of a search: the ticked fields, and the exact playing time if it counts and
/// must agree. With a tolerance it is no criterion, since that would undo the tolerance.
std::vector<std::string> searchCriteria(const Preferences& preferences);

/// How far playing times may lie apart, in seconds; 0: they must be the same to the millisecond.
/// The search accepts a second more than the setting says, and so does this number.
int timeTolerance(const Preferences& preferences);
void setTimeTolerance(Preferences& preferences, int seconds);

}  // namespace kestrel
