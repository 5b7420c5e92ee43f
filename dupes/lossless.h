/// Which sound is kept whole.
#pragma once

#include <string_view>

namespace kestrel {

/// Whether a kind keeps every bit of the sound, as its name tells, in either letter case. Callable
/// from any thread.
bool isLossless(std::string_view kind);

}  // namespace kestrel
