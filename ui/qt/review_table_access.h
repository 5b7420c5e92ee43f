/// What assistive technology is told of a review table: groups, and the copies in them, as a tree.
#pragma once

namespace kestrel {

/// From now on for all tables of the program; again without effect.
void makeReviewTablesAccessible();

}  // namespace kestrel
