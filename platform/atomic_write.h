/// Replacing a file so that nobody ever finds half of it.
#pragma once

#include <string>
#include <string_view>

namespace kestrel {

/// See FileService::writeAtomically. Throws FileError.
void writeFileAtomically(const std::string& path, std::string_view bytes);

}  // namespace kestrel
