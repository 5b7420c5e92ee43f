#include "sound/sound.h"

#include <algorithm>

#include "foundation/name_table.h"
#include "sound/decoded_audio.h"
#include "sound/fingerprinter.h"
#include "sound/sample_checksum.h"

namespace kestrel {
namespace {

/// Fewer, of some five seconds, tell nothing for sure.
constexpr std::size_t fewestItems = 20;
/// Items that differ from the one before, of a hundred: silence and steady tones have next to none.
constexpr std::size_t fewestChanges = 5;

constexpr NameTable<SoundFault, 5> faultNames{{{SoundFault::none, "none"},
                                               {SoundFault::noAudio, "noAudio"},
                                               {SoundFault::tooShort, "tooShort"},
                                               {SoundFault::featureless, "featureless"},
                                               {SoundFault::damaged, "damaged"}}};

bool isFeatureless(const std::vector<std::uint32_t>& items) {
  std::size_t changes = 0;
  for (std::size_t i = 1; i < items.size(); ++i) changes += items[i] != items[i - 1] ? 1 : 0;
  return changes * 100 < items.size() * fewestChanges;
}

std::string hexOf(const std::string& bytes) {
  constexpr const char* digits = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += digits[byte >> 4U];
    text += digits[byte & 0xFU];
  }
  return text;
}

}  // namespace

std::string_view nameOf(SoundFault fault) noexcept { return nameOf(faultNames, fault); }

Message explain(SoundFault fault) {
  switch (fault) {
    case SoundFault::none:
      break;
    case SoundFault::noAudio:
      return Message::tr("it cannot be read as audio");
    case SoundFault::tooShort:
      return Message::tr("it is too short to be compared");
    case SoundFault::featureless:
      return Message::tr("it is silent, or one steady sound");
    case SoundFault::damaged:
      return Message::tr("it is damaged: its audio is not what its own checksum says");
  }
  return {};
}

std::optional<Sound> readSound(const std::string& path, FunctionRef<bool()> stopped) {
  Sound sound;
  DecodedAudio audio(path);
  if (!audio.isOpen()) {
    sound.fault = SoundFault::noAudio;
    return sound;
  }
  Fingerprinter fingerprinter;
  SampleChecksum checksum;
  bool isSummedUp = audio.isLossless(), isPrinted = true, isEmpty = true;
  const auto take = [&](const AVFrame& frame) {
    isEmpty = false;
    if (isPrinted) isPrinted = fingerprinter.add(frame);
    if (isSummedUp) isSummedUp = checksum.add(audio.decoder(), frame);
    return isPrinted || isSummedUp;
  };
  if (!audio.decode(take, stopped)) return std::nullopt;
  if (isEmpty) {
    sound.fault = SoundFault::noAudio;
    return sound;
  }
  sound.milliseconds = isSummedUp ? checksum.milliseconds() : audio.milliseconds();
  sound.fingerprint = fingerprinter.fingerprint();
  if (sound.fingerprint.size() < fewestItems)
    sound.fault = SoundFault::tooShort;
  else if (isFeatureless(sound.fingerprint))
    sound.fault = SoundFault::featureless;
  if (sound.fault != SoundFault::none) sound.fingerprint.clear();
  if (isSummedUp) {
    const std::string md5 = checksum.md5(), own = audio.flacChecksum();
    if (own.empty() || own == md5)
      sound.checksum = checksum.form() + "/" + hexOf(md5);
    else
      sound.fault = SoundFault::damaged;
  }
  return sound;
}

}  // namespace kestrel
