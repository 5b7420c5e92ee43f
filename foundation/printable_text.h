/// Texts from outside on their way to a reader's eyes.
///
/// Names and paths can hold what moves a terminal's cursor, changes its state or makes a text look
/// like another one. Controls, here, are all characters that do something to a text instead of
/// standing in it: C0, DEL, C1, line and paragraph separators, and formats, which turn the
/// direction round or show nothing at all. The two joiners are none: Persian, Hindi and emoji are
/// spelled with them. Stateless; callable from any thread.
#pragma once

#include <string>
#include <string_view>

#include "foundation/function_ref.h"

namespace kestrel {

/// The text in one line, with a space for each line break and tab, "?" for each other control, and
/// U+FFFD for bytes that are no UTF-8.
std::string printable(std::string_view utf8);
/// The same of a text with lines of its own: LF and CR LF stay.
std::string printableLines(std::string_view utf8);

/// The text with what `put(character, text)` appends in the place of each control.
std::string replacingControls(std::string_view utf8, FunctionRef<void(char32_t, std::string&)> put);

}  // namespace kestrel
