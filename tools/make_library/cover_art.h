/// Invented covers of albums: two colours and a simple shape, another one for each album.
#pragma once

#include <cstdint>
#include <string>

namespace kestrel::make_library {

/// A square PNG of 256 pixels a side; the same for the same seed.
std::string coverArt(std::uint64_t seed);

}  // namespace kestrel::make_library
