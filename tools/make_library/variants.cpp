#include "tools/make_library/variants.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "tools/make_library/media_path.h"

namespace kestrel::make_library {
namespace {

// The text in capitals or in small letters. Capitals only where the way back leads to the same
// letters: "STRASSE" is not "Straße" to anyone who ignores case.
std::string otherCase(const std::string& text, bool capitals) {
  const auto root = icu::Locale::getRoot();
  const icu::UnicodeString original = icu::UnicodeString::fromUTF8(text);
  const icu::UnicodeString small = icu::UnicodeString{original}.toLower(root);
  const icu::UnicodeString large = icu::UnicodeString{original}.toUpper(root);
  const bool leadsBack = icu::UnicodeString{large}.toLower(root) == small;
  std::string result;
  return (capitals && leadsBack ? large : small).toUTF8String(result);
}

std::uint32_t slightly(Random& random) {
  return random.chance(500) ? random.between(1, 30) : random.between(200, 3500);
}

}  // namespace

void vary(Track& track, Variant variant, const Language& language, bool demo, Random& random) {
  switch (variant) {
    case Variant::otherKind: {
      // A few attempts: the other kind may be drawn again, and then it is a plain second copy.
      const Format* const before = track.format;
      for (int i = 0; i < 4 && track.format == before; ++i) {
        track.format = &pickFormat(track.media, demo, random);
      }
      break;
    }
    case Variant::letterCase:
      track.name = otherCase(track.name, random.chance(500));
      if (random.chance(400)) track.artist = otherCase(track.artist, true);
      break;
    case Variant::otherTime:
      track.totalTime += slightly(random);
      break;
    case Variant::cloudCopy:
      if (!isVideo(track.media) && track.media != Media::stream) track.format = &matchedFormat();
      break;
    case Variant::otherYear:
      if (track.year != 0) track.year -= random.between(1, 12);
      break;
    case Variant::decomposed:
      if (decomposed(track.name) != track.name || decomposed(track.artist) != track.artist) {
        track.name = decomposed(track.name);
        track.artist = decomposed(track.artist);
        break;
      }
      [[fallthrough]];  // nothing to take apart
    case Variant::concert:
      track.name += language.live;
      track.totalTime += slightly(random);
      break;
    case Variant::otherArtist:
      track.artist = fillPattern(random.pick(language.bands), language, random);
      break;
    case Variant::noArtist:
      track.artist.clear();
      break;
    case Variant::original:
    case Variant::otherBitRate:
    case Variant::otherFolder:
    case Variant::numberedFile:
      break;
  }
}

}  // namespace kestrel::make_library
