#include "tools/make_library/cover_art.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string_view>
#include <zlib.h>

#include "tools/make_library/random.h"

namespace kestrel::make_library {
namespace {

constexpr std::uint32_t kSide = 256;
constexpr int kShades = 16;  // from one colour to the other, in four bits

using Colour = std::array<std::uint8_t, 3>;

constexpr std::pair<Colour, Colour> kColours[] = {
    {{0x1f, 0x3a, 0x4d}, {0xf2, 0xb7, 0x05}}, {{0xf4, 0xe9, 0xd8}, {0xc8, 0x3e, 0x4d}},
    {{0x0b, 0x6e, 0x6e}, {0xf7, 0xf4, 0xea}}, {{0x2d, 0x1e, 0x2f}, {0xe0, 0x6d, 0x53}},
    {{0xe8, 0xed, 0xdf}, {0x33, 0x3d, 0x29}}, {{0x3d, 0x40, 0x5b}, {0x81, 0xb2, 0x9a}},
    {{0xfd, 0xf0, 0xd5}, {0x00, 0x30, 0x49}}, {{0x58, 0x3e, 0x23}, {0xe6, 0xcc, 0xb2}},
};

/// How much of the second colour a place has, from 0 to 1; places from -1 to 1, turned by a
/// quarter at most, and a number of the album's own between 2 and 7.
using Shape = double (*)(double x, double y, double own);
/// Soft over about a pixel, so that edges are smooth.
double inside(double distance) { return std::clamp(0.5 - distance * kSide / 2, 0.0, 1.0); }
double band(double position) {
  return inside((std::abs(position - std::floor(position) - 0.5) - 0.25) * 0.4);
}
constexpr Shape kShapes[] = {
    [](double x, double y, double own) { return inside(std::hypot(x, y + 0.1) - own / 9); },
    [](double x, double y, double own) { return band(std::hypot(x, y) * own / 1.5); },
    [](double x, double y, double own) { return band((x + y) * own / 2.5); },
    [](double x, double y, double own) {
      return inside(y - 0.3 * std::sin(own * x * std::numbers::pi / 3));
    },
    [](double x, double y, double own) {
      const double sun = inside(std::hypot(x, y + 0.05) - 0.55);
      return y > 0 ? sun * band(y * own * 1.2) : sun;
    },
    [](double x, double y, double own) { return band(std::atan2(y, x) / std::numbers::pi * own); },
};

void appendNumber(std::string& bytes, std::uint32_t number) {
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xFF);
}

/// The bytes, and behind them the checksum of type and bytes.
void appendChunk(std::string& png, std::string_view type, std::string_view bytes) {
  appendNumber(png, static_cast<std::uint32_t>(bytes.size()));
  const std::string chunk = std::string(type).append(bytes);
  const uLong checksum =
      crc32(0, reinterpret_cast<const Bytef*>(chunk.data()), static_cast<uInt>(chunk.size()));
  appendNumber(png += chunk, static_cast<std::uint32_t>(checksum));
}

std::string compressed(const std::string& bytes) {
  uLongf size = compressBound(bytes.size());
  std::string result(size, '\0');
  if (compress2(reinterpret_cast<Bytef*>(result.data()), &size,
                reinterpret_cast<const Bytef*>(bytes.data()), bytes.size(),
                Z_BEST_COMPRESSION) != Z_OK)
    throw std::runtime_error("Could not compress a cover");
  result.resize(size);
  return result;
}

}  // namespace

std::string coverArt(std::uint64_t seed) {
  Random random(seed, Stream::cover);
  const auto& [ground, figure] = kColours[random.below(std::size(kColours))];
  const Shape shape = kShapes[random.below(std::size(kShapes))];
  const double own = random.between(2, 7);
  const double turn = random.between(0, 90) * std::numbers::pi / 180;

  std::string palette;
  for (int shade = 0; shade < kShades; ++shade)
    for (std::size_t i = 0; i < ground.size(); ++i)
      palette += static_cast<char>(ground[i] + (figure[i] - ground[i]) * shade / (kShades - 1));

  std::string rows;
  for (std::uint32_t row = 0; row < kSide; ++row) {
    rows += '\0';  // no filter
    int left = 0;
    for (std::uint32_t column = 0; column < kSide; ++column) {
      const double u = 2.0 * column / kSide - 1, v = 2.0 * row / kSide - 1;
      const double share = shape(u * std::cos(turn) + v * std::sin(turn),
                                 v * std::cos(turn) - u * std::sin(turn), own);
      const int shade = static_cast<int>(std::lround(share * (kShades - 1)));
      if (column % 2 == 0)
        left = shade;
      else
        rows += static_cast<char>(left << 4 | shade);
    }
  }

  std::string header;
  appendNumber(header, kSide);
  appendNumber(header, kSide);
  header += {4, 3, 0, 0, 0};  // bits a pixel, by palette, and no choice of the rest
  std::string png = "\x89PNG\r\n\x1a\n";
  appendChunk(png, "IHDR", header);
  appendChunk(png, "PLTE", palette);
  appendChunk(png, "IDAT", compressed(rows));
  appendChunk(png, "IEND", {});
  return png;
}

}  // namespace kestrel::make_library
