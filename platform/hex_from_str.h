/// The hexadecimal form of a persistent ID of which only the decimal text is at hand.
#pragma once

#include <string>

namespace kestrel {

class ProgramRunner;

namespace TextSorter {

/// What the system's printf program prints for `decimal`: upper-case hexadecimal, the same as
/// `decToHex` gives for the number, or for a text that is no number its complaint. Machines without
/// that program get the conversion alone, and nothing for such a text. Blocking.
std::string hexFromStr(const std::string& decimal, ProgramRunner& programs);

}  // namespace TextSorter
}  // namespace kestrel
