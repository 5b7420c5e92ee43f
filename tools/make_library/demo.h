/// The demo library: a document and, beside it, the media files that it names.
#pragma once

#include <cstdint>
#include <filesystem>

#include "tools/make_library/options.h"

namespace kestrel::make_library {

inline constexpr std::uint32_t kDemoTracks = 400;
/// Of the first hundred seeds the one with the most languages and kinds of media.
inline constexpr std::uint64_t kDemoSeed = 63;
inline constexpr std::uint32_t kDemoDuplicatePercent = 20;

/// Writes `document` and the folder "Media" next to it, some ten megabytes at `kDemoTracks`;
/// folders are created. A few files are left out on purpose: libraries have dead entries.
/// Existing files of the same names are replaced, others left alone. `options.mediaFolder` and
/// `options.demo` are chosen here. Throws when something cannot be written.
void writeDemo(const std::filesystem::path& document, Options options);

}  // namespace kestrel::make_library
