/// Writes audio files through libavcodec.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "tests/sound/tune.h"

namespace kestrel::testing {

struct Encoding {
  const char* codec = "pcm_s16le";
  int kilobits = 128;  ///< a second, where the codec is lossy
  int channels = 1;    ///< the same in each
  int bits = 16;       ///< of a sample, where the codec is lossless: 8, 16 or 24
};

/// The ending of the path says the container. Throws std::runtime_error when this machine's
/// libraries cannot.
void encode(const std::string& path, std::span<const float> samples, int rate,
            const Encoding& encoding = {});
inline void encode(const std::string& path, const Tune& tune, const Encoding& encoding = {}) {
  encode(path, samplesOf(tune), tune.rate, encoding);
}

}  // namespace kestrel::testing
