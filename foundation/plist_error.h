/// From a fault in a property list to the error that a user sees.
#pragma once

#include <string>
#include <string_view>

#include "foundation/library_error.h"
#include "foundation/plist_scanner.h"

namespace kestrel {

/// The fault with line, column and a remedy. `document` is the text that the fault's offset refers
/// to; it may end where the fault is. `name` stands for the file.
LibraryError libraryError(const std::string& name, std::string_view document,
                          const PlistError& fault);

}  // namespace kestrel
