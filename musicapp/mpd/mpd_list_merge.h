/// Taking an edit out of a list that another program has changed in the middle of it.
#pragma once

#include <span>
#include <vector>

#include "musicapp/mpd/mpd_list_edit.h"

namespace kestrel {

/// What takes these steps, which were carried out on `before`, out of what the list has become
/// since: entries that they added go, and those that they removed come back, in the place of what
/// had theirs, or behind the one before them. What another program has put in, moved or taken out
/// stays so; an entry that it took out whose place another had does not come back.
std::vector<MpdChange> changesWithout(std::span<const MpdStep> done, const MpdEntries& before,
                                      const MpdEntries& found);

}  // namespace kestrel
