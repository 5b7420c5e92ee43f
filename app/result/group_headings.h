/// What the headings over the groups of a result say.
#pragma once

#include <cstdint>

#include "ui/models/grouped_rows.h"
#include "ui/qt/group_heading.h"

namespace kestrel {

class AppDelegate;
struct GroupAgreement;
struct Likeness;

/// "13 of 14 rules agree"; empty where none has anything to say.
QString agreementText(const GroupAgreement& agreement);

/// "same sound, 98 %"; empty where it was not compared.
QString soundText(const Likeness& likeness);

/// As the group's ticks stand, with what the groups are ordered by. Asked for each heading that is
/// painted.
GroupHeading groupHeading(const AppDelegate& delegate, std::int32_t group, GroupOrder order);

}  // namespace kestrel
