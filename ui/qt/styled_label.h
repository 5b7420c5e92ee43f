/// Styled texts as the toolkit shows them.
#pragma once

#include <QString>

class QLabel;

namespace kestrel {

struct StyledText;
class StyledLabel;

/// The text as HTML, with its line breaks, fonts and alignment. What looks like markup in it stays
/// text.
QString htmlOf(const StyledText& text);

void bind(QLabel* label, StyledLabel& model);

}  // namespace kestrel
