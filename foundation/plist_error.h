/// From a fault in a property list to the error that a user sees.
#pragma once

#include <string>
#include <string_view>

#include "foundation/library_error.h"
#include "foundation/plist_scanner.h"

namespace kestrel {

/// The fault with line, column and a remedy. `document` is what the fault's offset refers to: the
/// file, or what it was converted to. `name` stands for the file.
LibraryError libraryError(const std::string& name, std::string_view document,
                          const PlistError& fault);

}  // namespace kestrel
