/// Small but real audio files: a quiet tone in WAV and AIFF, silence in MP3 and in AAC (M4A).
///
/// They are made without an encoder: PCM needs none, and silence in the compressed formats is a
/// frame of headers filled up to the wanted bit rate.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestrel::make_library {

struct Audio {
  std::string bytes;
  std::uint32_t milliseconds = 0;
  std::uint32_t bitRate = 0;  ///< kbit/s
  std::uint32_t sampleRate = 0;
};

/// Mono, without tags, of about the wanted length: whole frames. `extension` is "mp3", "m4a",
/// "wav" or "aif", else std::invalid_argument. `kilobits` is what the compressed formats come
/// close to, within 8 to 64; `pitch` is the tone's frequency in hertz.
Audio makeAudio(std::string_view extension, std::uint32_t milliseconds, std::uint32_t kilobits,
                std::uint32_t pitch);

}  // namespace kestrel::make_library
