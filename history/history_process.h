/// Which process a run belongs to, so that one that was broken off can be told from one at work.
#pragma once

#include <string>

namespace kestrel {

/// This process, in a text that no other process has, nor a later one with the same number.
std::string processToken();
/// Whether the process with that token is alive; false for texts that are no tokens.
bool isAlive(const std::string& token);

}  // namespace kestrel
