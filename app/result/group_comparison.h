/// The copies of a group side by side: in which fields they differ, and whose value is the better
/// one.
#pragma once

#include <QString>
#include <QStringList>
#include <span>
#include <vector>

#include "library/result_track.h"

namespace kestrel {

class ShortDateTimeFormatter;

struct ComparedField {
  QString title;
  QStringList values;        ///< by copy; empty where a copy has none
  std::vector<bool> better;  ///< by copy; none where no value is better than another
  friend bool operator==(const ComparedField&, const ComparedField&) = default;
};

struct GroupComparison {
  std::vector<ComparedField> differing;  ///< those with better and worse values first
  QStringList same;  ///< values that all copies have, but for the name and the artist
};
GroupComparison compareCopies(std::span<const ResultTrack* const> copies,
                              ShortDateTimeFormatter& dates);

}  // namespace kestrel
