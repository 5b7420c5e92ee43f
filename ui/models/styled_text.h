/// A text with fonts: which parts are bold, how large they are, and whether they stand centred.
///
/// Positions and lengths count UTF-16 units, as toolkits do that lay such texts out; the text
/// itself is UTF-8, and `byteOffset` leads from the one to the other.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ui/models/view_models.h"

namespace kestrel {

struct TextStyle {
  bool bold = false;
  int points = 0;  ///< size of the system font; 0: the font that the view has anyway
  bool centred = false;

  friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

struct StyledRun {
  std::size_t start = 0;
  std::size_t length = 0;
  TextStyle style;

  friend bool operator==(const StyledRun&, const StyledRun&) = default;
};

struct StyledText {
  std::string text;
  /// Ascending, without gaps or overlaps, neighbours of different style; none: all is plain.
  std::vector<StyledRun> runs;

  /// Each of these changes one property of a part, or of the whole text, and leaves the others.
  /// What lies beyond the end of the text is ignored.
  StyledText& makeBold(std::size_t start, std::size_t length);
  StyledText& setPoints(int points);
  StyledText& centre();

  friend bool operator==(const StyledText&, const StyledText&) = default;

 private:
  template <typename Edit>
  void edit(std::size_t start, std::size_t length, Edit&& edit);
};

/// The byte of a UTF-8 text at which a UTF-16 position lies; the text's size for one beyond its
/// end. A position within a pair of units is that of the character.
std::size_t byteOffset(std::string_view utf8, std::size_t utf16Position) noexcept;

/// A label that shows a styled text. Changed by tasks of the main queue only.
class StyledLabel : public ViewModel {
 public:
  [[nodiscard]] const StyledText& text() const noexcept { return text_; }
  void setText(StyledText text) { change(text_, std::move(text)); }

 private:
  StyledText text_;
};

}  // namespace kestrel
