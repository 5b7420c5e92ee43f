/// The header row over a group of the result: what it says, and how it is drawn.
#pragma once

#include <QRect>
#include <QString>
#include <vector>

class QPainter;
class QPalette;
class QFont;

namespace kestrel {

struct GroupBadge {
  enum class Tone : std::uint8_t { quiet, doubt, missing };
  QString text;
  Tone tone = Tone::quiet;
};

struct GroupHeading {
  QString title, artist;
  QString copies;  ///< "2 copies"
  QString freed;   ///< what removing the copies that are not kept gives back; may be empty
  std::vector<GroupBadge> badges;

  /// All of it in a sentence, for those who hear it.
  [[nodiscard]] QString spoken() const;
};

/// Draws a heading into a row; `isCurrent`: the keys are here.
void paintGroupHeading(QPainter& painter, const QRect& row, const GroupHeading& heading,
                       bool folded, bool selected, bool isCurrent, bool rightToLeft,
                       const QFont& font, const QPalette& palette);

/// How wide the place is at the start of the row that folds and unfolds it.
inline constexpr int foldPlace = 32;

}  // namespace kestrel
