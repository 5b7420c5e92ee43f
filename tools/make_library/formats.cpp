#include "tools/make_library/formats.h"

#include <array>
#include <span>

namespace kestrel::make_library {
namespace {

constexpr std::array kAudioFormats{
    Format{.kind = "MPEG audio file", .extension = "mp3", .share = 44, .inDemo = true},
    Format{.kind = "AAC audio file", .extension = "m4a", .share = 16, .inDemo = true},
    Format{.kind = "Purchased AAC audio file",
           .extension = "m4a",
           .bitRate = 256,
           .share = 11,
           .inDemo = true,
           .purchased = true},
    Format{.kind = "Apple Music AAC audio file",
           .extension = "m4p",
           .bitRate = 256,
           .share = 9,
           .inDemo = true,
           .isProtected = true,
           .cloud = true},
    Format{.kind = "Apple Lossless audio file", .extension = "m4a", .share = 6},
    Format{.kind = "Matched AAC audio file",
           .extension = "m4a",
           .bitRate = 256,
           .share = 5,
           .inDemo = true,
           .cloud = true},
    Format{
        .kind = "WAV audio file", .extension = "wav", .bitRate = 1411, .share = 4, .inDemo = true},
    Format{
        .kind = "AIFF audio file", .extension = "aif", .bitRate = 1411, .share = 3, .inDemo = true},
    Format{.kind = "Protected AAC audio file",
           .extension = "m4p",
           .bitRate = 128,
           .share = 2,
           .purchased = true,
           .isProtected = true},
};
constexpr std::array kVideoFormats{
    Format{.kind = "MPEG-4 video file", .extension = "m4v", .share = 5},
    Format{.kind = "Purchased MPEG-4 video file",
           .extension = "m4v",
           .share = 3,
           .inDemo = true,
           .purchased = true,
           .cloud = true},
    Format{.kind = "QuickTime movie file", .extension = "mov", .share = 1},
    Format{.kind = "Protected MPEG-4 video file",
           .extension = "m4v",
           .share = 1,
           .purchased = true,
           .isProtected = true},
};
constexpr Format kAudible{.kind = "Audible file", .extension = "aa", .bitRate = 32};
constexpr std::size_t kMatched = 5;
constexpr Format kStream{.kind = "Internet audio stream", .extension = "", .inDemo = true};

}  // namespace

bool isVideo(Media media) {
  return media == Media::movie || media == Media::tvShow || media == Media::musicVideo ||
         media == Media::homeVideo;
}

const Format& pickFormat(Media media, bool demo, Random& random) {
  if (media == Media::stream) return kStream;
  if (media == Media::audiobook && !demo && random.chance(500)) return kAudible;
  const std::span<const Format> formats =
      isVideo(media) ? std::span<const Format>{kVideoFormats} : kAudioFormats;
  const auto share = [&](const Format& format) {
    return demo && !format.inDemo ? 0 : format.share;
  };
  std::uint32_t all = 0;
  for (const Format& format : formats) all += share(format);
  std::uint32_t left = random.below(all);
  std::size_t index = 0;
  while (left >= share(formats[index])) left -= share(formats[index++]);
  return formats[index];
}

const Format& matchedFormat() { return kAudioFormats[kMatched]; }

}  // namespace kestrel::make_library
