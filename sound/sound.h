/// What a file sounds like, whatever its tags say.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/function_ref.h"
#include "foundation/message.h"

namespace kestrel {

/// Why a file cannot be compared by its sound, but for bit by bit where it has a checksum. Kept in
/// the cache by their numbers.
enum class SoundFault : std::uint8_t {
  none,
  noAudio,      ///< nothing that can be read as audio
  tooShort,     ///< or cut off so early that next to nothing is left
  featureless,  ///< silence, or one steady sound
  damaged,      ///< its audio is not what its own checksum says
  noFile,       ///< none is here; never of a file that was read
};
/// The word for it in files and for other programs.
std::string_view nameOf(SoundFault fault) noexcept;
/// As a clause: "it cannot be read as audio". Empty for none.
Message explain(SoundFault fault);
/// In a word or two, for a cell of a table: "too short". Empty for none.
Message shortText(SoundFault fault);

struct Sound {
  SoundFault fault = SoundFault::none;
  /// Of what the file really holds, not of what it says to hold.
  std::int64_t milliseconds = 0;
  /// Milliseconds before anything can be heard.
  std::int64_t silence = 0;
  /// Equal when two files have the same audio, bit for bit, whatever their formats: sample rate,
  /// channels, bits, and the MD5 of the samples as FLAC takes it (interleaved, signed, the lowest
  /// byte first). Empty where nothing can be said: of lossy formats, and of what is damaged.
  std::string checksum;
  /// Chromaprint's, of the first two minutes: 32 bits every `secondsAnItem`, each of which tells
  /// how the pitches change there. Empty where there is nothing to compare.
  std::vector<std::uint32_t> fingerprint;
};

/// How far the items of a fingerprint are apart.
constexpr double secondsAnItem = 1365.0 / 11025.0;

/// Reads a file. Nothing is returned when `stopped` says to stop, which is asked between packets.
/// Any file may be given: what is none, is no regular one, or makes no sense has a fault. Opens
/// nothing but this file. From any thread; says nothing on standard error.
std::optional<Sound> readSound(const std::string& path, FunctionRef<bool()> stopped);

}  // namespace kestrel
