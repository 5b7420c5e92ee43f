/// Writing a file so that whoever reads it meanwhile sees the old one or the new one, never half.
#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>

namespace kestrel::make_library {

/// Writes beside `path`, then renames. Throws std::runtime_error or
/// std::filesystem::filesystem_error, and whatever `write` throws; then `path` is as it was.
void replaceFile(const std::filesystem::path& path,
                 const std::function<void(std::ostream&)>& write);

}  // namespace kestrel::make_library
