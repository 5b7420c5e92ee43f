/// The keeper pass: sets the keeper flags of dupe groups by the user's settings.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "dupes/group_filter.h"
#include "foundation/function_ref.h"

namespace kestrel {

class Preferences;

/// What the user's settings ask of the keeper pass.
FilterSettings filterSettings(const Preferences& preferences);

}  // namespace kestrel

namespace kestrel::TextSorter {

/// Sets the keeper flag of every member of the given groups (`tGroupID` texts, in this order) among
/// the arranged rows of the upper table, in place, with progress on the second progress bar.
/// Settings: "keeperMode", "filterMatrixButton", "alwaysUnCheck", "filterFolderLoc", "useFileType",
/// "thisFileType", "useBitType", "thisBitType". Returns true. On the caller's thread; no search may
/// run meanwhile.
bool filterArray(std::span<const std::string> groupNumbers);

/// The same, and tells the decision for each group. What it points to is valid until the rows of
/// the table change.
bool filterArray(std::span<const std::string> groupNumbers,
                 FunctionRef<void(std::string_view groupNumber, const GroupDecision&)> decided);

}  // namespace kestrel::TextSorter
