/// Styled texts as the toolkit shows them.
#pragma once

#include <QString>
#include <functional>

class QLabel;

namespace kestrel {

struct StyledText;
class StyledLabel;

/// The text as HTML, with its line breaks, fonts and alignment. What looks like markup in it stays
/// text.
QString htmlOf(const StyledText& text);

/// Shows the text that `inUsersWords` makes while the model has one, which is English.
void bind(QLabel* label, StyledLabel& model, std::function<StyledText()> inUsersWords);

}  // namespace kestrel
