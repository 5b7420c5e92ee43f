#include "sound/sound.h"

#include <algorithm>

#include "sound/decoded_audio.h"
#include "sound/fingerprinter.h"
#include "sound/sample_checksum.h"

namespace kestrel {
namespace {

/// Fewer, of some five seconds, tell nothing for sure.
constexpr std::size_t fewestItems = 20;
/// Items that differ from the one before, of a hundred: silence and steady tones have next to none.
constexpr std::size_t fewestChanges = 5;

/// Files that last longer have more items, unless next to nothing of them can be decoded.
constexpr std::int64_t longEnough = 10'000;

struct FaultInfo {
  SoundFault fault;
  const char *name, *clause, *text;
};
constexpr FaultInfo faultInfos[] = {
    {SoundFault::none, "none", "", ""},
    {SoundFault::noAudio, "noAudio", Message::literal("it cannot be read as audio"),
     Message::literal("unreadable")},
    {SoundFault::tooShort, "tooShort", Message::literal("it is too short"),
     Message::literal("too short")},
    {SoundFault::featureless, "featureless", Message::literal("it is silent, or one steady sound"),
     Message::literal("silent or steady")},
    {SoundFault::damaged, "damaged",
     Message::literal("it is damaged: its audio is not what its own checksum says"),
     Message::literal("damaged")},
    {SoundFault::noFile, "noFile", Message::literal("its file is not here"),
     Message::literal("no file")},
};
/// In the order of their numbers.
const FaultInfo& infoOf(SoundFault fault) noexcept {
  return faultInfos[static_cast<std::size_t>(fault)];
}

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

std::string_view nameOf(SoundFault fault) noexcept { return infoOf(fault).name; }

Message explain(SoundFault fault) {
  return fault == SoundFault::none ? Message() : Message::tr(infoOf(fault).clause);
}

Message shortText(SoundFault fault) {
  return fault == SoundFault::none ? Message() : Message::tr(infoOf(fault).text);
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
  sound.silence = fingerprinter.silence();
  sound.fingerprint = fingerprinter.fingerprint();
  if (sound.fingerprint.size() < fewestItems)
    sound.fault = sound.milliseconds < longEnough ? SoundFault::tooShort : SoundFault::noAudio;
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
