/// Letter case by the full Unicode rules, the same in every locale.
///
/// Stateless; callable from any thread. Bytes that are not UTF-8 have no case and stay as they are.
#pragma once

#include <string>
#include <string_view>

namespace kestrel {

/// Lower case without normalisation; a capital sigma at the end of a word becomes a final one, so
/// the case of joined texts may differ from the join of their lower cases.
std::string lowercase(std::string_view text);
/// The same into a buffer that a loop keeps using; its former content is lost. `text` must not lie
/// in it.
void lowercaseInto(std::string_view text, std::string& out);

/// Equal but for letter case and for the way accents are composed.
bool sameIgnoringCase(std::string_view a, std::string_view b);

}  // namespace kestrel
