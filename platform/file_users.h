/// Whether another program has a file open.
#pragma once

#include <string>

namespace kestrel {

/// As far as the system shows the programs of others. False where there is no such file.
bool isOpenElsewhere(const std::string& path);

}  // namespace kestrel
