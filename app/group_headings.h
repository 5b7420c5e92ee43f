/// What the headings over the groups of a result say.
#pragma once

#include <cstdint>

#include "ui/qt/group_heading.h"

namespace kestrel {

class AppDelegate;

/// As the group's ticks stand. Asked for each heading that is painted.
GroupHeading groupHeading(const AppDelegate& delegate, std::int32_t group);

}  // namespace kestrel
