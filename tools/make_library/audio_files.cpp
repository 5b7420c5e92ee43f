#include "tools/make_library/audio_files.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <initializer_list>
#include <stdexcept>

namespace kestrel::make_library {
namespace {

constexpr std::uint32_t kPcmRate = 8000;
constexpr std::uint32_t kPcmBits = 16;
constexpr std::int32_t kLoudness = 3000;  // of 32767

enum class ByteOrder { little, big };

// Of any size: what a 64-bit number has not is zero.
std::string number(std::uint64_t value, std::size_t size, ByteOrder order) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) {
    const std::size_t place = order == ByteOrder::little ? i : size - 1 - i;
    bytes += place < sizeof value ? static_cast<char>(value >> (8 * place) & 0xFFU) : '\0';
  }
  return bytes;
}
std::string little(std::uint64_t value, std::size_t size) {
  return number(value, size, ByteOrder::little);
}
std::string big(std::uint64_t value, std::size_t size) {
  return number(value, size, ByteOrder::big);
}

// A triangle wave: like a flute, and the same on every machine.
std::string samples(std::uint32_t count, std::uint32_t pitch, ByteOrder order) {
  std::string bytes;
  bytes.reserve(std::size_t{count} * 2);
  constexpr auto kPeriod = static_cast<std::int32_t>(kPcmRate);
  for (std::uint32_t i = 0; i < count; ++i) {
    const auto phase = static_cast<std::int32_t>(std::uint64_t{i} * pitch % kPcmRate);
    const std::int32_t height = std::abs(2 * phase - kPeriod) - kPeriod / 2;  // ± half a period
    const std::int32_t level = height * 2 * kLoudness / kPeriod;
    bytes += number(static_cast<std::uint16_t>(level), 2, order);
  }
  return bytes;
}

Audio wav(std::uint32_t milliseconds, std::uint32_t pitch) {
  const std::string data = samples(milliseconds * (kPcmRate / 1000), pitch, ByteOrder::little);
  const std::string format = little(1, 2) + little(1, 2) + little(kPcmRate, 4) +
                             little(kPcmRate * kPcmBits / 8, 4) + little(kPcmBits / 8, 2) +
                             little(kPcmBits, 2);
  const std::string chunks =
      "WAVEfmt " + little(format.size(), 4) + format + "data" + little(data.size(), 4) + data;
  return {"RIFF" + little(chunks.size(), 4) + chunks, milliseconds, kPcmRate * kPcmBits / 1000,
          kPcmRate};
}

Audio aiff(std::uint32_t milliseconds, std::uint32_t pitch) {
  const std::uint32_t count = milliseconds * (kPcmRate / 1000);
  const std::string data = samples(count, pitch, ByteOrder::big);
  // 8000 as an 80-bit floating-point number: 1.953125 times 2 to the 12th.
  const std::string rate = big(0x400B, 2) + big(0xFA00000000000000U, 8);
  const std::string common = big(1, 2) + big(count, 4) + big(kPcmBits, 2) + rate;
  const std::string chunks = "AIFFCOMM" + big(common.size(), 4) + common + "SSND" +
                             big(data.size() + 8, 4) + big(0, 8) + data;
  return {"FORM" + big(chunks.size(), 4) + chunks, milliseconds, kPcmRate * kPcmBits / 1000,
          kPcmRate};
}

// MPEG-1 layer III. At 48 kHz a frame lasts 24 ms and is a whole number of bytes at any bit rate.
Audio mp3(std::uint32_t milliseconds, std::uint32_t kilobits) {
  constexpr std::uint32_t kFrameTime = 24;
  constexpr std::array<std::uint32_t, 5> kBitRates{32, 40, 48, 56, 64};  // by index in the header
  std::uint32_t index = 0;
  while (index + 1 < kBitRates.size() && kBitRates[index + 1] <= kilobits) ++index;
  const std::uint32_t frames = std::max(1U, milliseconds / kFrameTime);
  // Sync and version, layer III without checksum; bit rate and 48 kHz; mono. All-zero side
  // information says that no frequencies follow: silence.
  std::string frame = big(0xFFFB, 2) + big((index + 1) << 4 | 1U << 2, 1) + big(0xC0, 1);
  frame.resize(std::size_t{kBitRates[index]} * kFrameTime / 8, '\0');
  Audio audio{{}, frames * kFrameTime, kBitRates[index], 48'000};
  for (std::uint32_t i = 0; i < frames; ++i) audio.bytes += frame;
  return audio;
}

class Bits {
 public:
  void add(std::uint32_t value, std::size_t count) {
    for (std::size_t i = count; i-- > 0;) {
      if (used_ % 8 == 0) bytes_ += '\0';
      const std::uint32_t bit = (value >> i & 1U) << (7 - used_++ % 8);
      bytes_.back() = static_cast<char>(static_cast<unsigned char>(bytes_.back()) | bit);
    }
  }
  std::string bytes() const { return bytes_; }

 private:
  std::string bytes_;
  std::size_t used_ = 0;
};

// One frame of AAC: a channel without a single band of frequencies, then filling.
std::string aacFrame(std::size_t size) {
  constexpr std::uint32_t kSingleChannel = 0, kFill = 6, kEnd = 7;
  constexpr std::size_t kChannelBits = 29, kEndBits = 3;
  constexpr std::size_t kMostFilling = 14 + 255;  // bytes in one element
  Bits bits;
  bits.add(kSingleChannel, 3);
  bits.add(0, kChannelBits - 3);
  std::size_t left = size * 8 - kChannelBits - kEndBits;
  while (left >= 7) {
    std::size_t filling = std::min((left - 7) / 8, kMostFilling);
    bits.add(kFill, 3);
    if (filling >= 15) {
      filling = std::min((left - 15) / 8, kMostFilling);
      bits.add(15, 4);
      bits.add(static_cast<std::uint32_t>(filling - 14), 8);
      left -= 8;
    } else {
      bits.add(static_cast<std::uint32_t>(filling), 4);
    }
    for (std::size_t i = 0; i < filling; ++i) bits.add(0, 8);
    left -= 7 + filling * 8;
  }
  bits.add(kEnd, kEndBits);
  std::string frame = bits.bytes();
  frame.resize(size, '\0');
  return frame;
}

std::string box(std::string_view type, std::initializer_list<std::string> parts) {
  std::string content;
  for (const std::string& part : parts) content += part;
  return big(content.size() + 8, 4) + std::string{type} + content;
}

std::string descriptor(std::uint32_t tag, const std::string& content) {
  // The length in its long form, four groups of seven bits: not all players know the short one.
  return big(tag, 1) + big(0x808080, 3) + big(content.size(), 1) + content;
}

constexpr std::uint32_t kAacRate = 44'100;
constexpr std::uint32_t kAacFrameSamples = 1024;

std::string aacSampleTable(std::uint32_t frames, std::size_t frameSize, std::uint32_t bitsASecond,
                           std::size_t dataOffset) {
  constexpr std::uint32_t kLowComplexity = 2, kRateIndex = 4, kMono = 1;
  const std::string config = big(kLowComplexity << 11 | kRateIndex << 7 | kMono << 3, 2);
  const std::string decoder = big(0x40, 1) + big(0x15, 1) + big(frameSize, 3) +
                              big(bitsASecond, 4) + big(bitsASecond, 4) + descriptor(5, config);
  const std::string stream =
      big(0, 2) + big(0, 1) + descriptor(4, decoder) + descriptor(6, big(2, 1));
  const std::string entry = box("mp4a", {big(1, 8), big(0, 8), big(kMono, 2), big(16, 2), big(0, 4),
                                         big(std::uint64_t{kAacRate} << 16, 4),
                                         box("esds", {big(0, 4), descriptor(3, stream)})});
  std::string sizes;  // all the same, but some players want each
  for (std::uint32_t i = 0; i < frames; ++i) sizes += big(frameSize, 4);
  return box("stbl", {box("stsd", {big(0, 4), big(1, 4), entry}),
                      box("stts", {big(0, 4), big(1, 4), big(frames, 4), big(kAacFrameSamples, 4)}),
                      box("stsc", {big(0, 4), big(1, 4), big(1, 4), big(frames, 4), big(1, 4)}),
                      box("stsz", {big(0, 8), big(frames, 4), sizes}),
                      box("stco", {big(0, 4), big(1, 4), big(dataOffset, 4)})});
}

std::string aacMovie(std::uint32_t frames, std::size_t frameSize, std::uint32_t bitsASecond,
                     std::size_t dataOffset) {
  const std::uint32_t samplesInAll = frames * kAacFrameSamples;
  const std::string matrix =
      big(0x10000, 4) + big(0, 12) + big(0x10000, 4) + big(0, 12) + big(0x40000000, 4);
  const std::string header =
      box("mvhd", {big(0, 12), big(kAacRate, 4), big(samplesInAll, 4), big(0x10000, 4),
                   big(0x100, 2), big(0, 10), matrix, std::string(24, '\0'), big(2, 4)});
  const std::string trackHeader =
      box("tkhd", {big(7, 4), big(0, 8), big(1, 4), big(0, 4), big(samplesInAll, 4), big(0, 8),
                   big(0, 4), big(0x100, 2), big(0, 2), matrix, big(0, 8)});
  const std::string mediaHeader =
      box("mdhd", {big(0, 12), big(kAacRate, 4), big(samplesInAll, 4), big(0x55C4, 2), big(0, 2)});
  const std::string handler =
      box("hdlr", {big(0, 8), "soun", std::string(12, '\0'), std::string(1, '\0')});
  const std::string data =
      box("dinf", {box("dref", {big(0, 4), big(1, 4), box("url ", {big(1, 4)})})});
  const std::string information = box(
      "minf",
      {box("smhd", {big(0, 8)}), data, aacSampleTable(frames, frameSize, bitsASecond, dataOffset)});
  const std::string track =
      box("trak", {trackHeader, box("mdia", {mediaHeader, handler, information})});
  // Room for the tags at the end: some players insist on the header being first.
  const std::string tags =
      box("udta",
          {box("meta",
               {big(0, 4),
                box("hdlr", {big(0, 8), "mdirappl", std::string(8, '\0'), std::string(1, '\0')}),
                box("ilst", {})})});
  return box("moov", {header, track, tags});
}

Audio m4a(std::uint32_t milliseconds, std::uint32_t kilobits) {
  const std::uint32_t frames = std::max(
      1U,
      static_cast<std::uint32_t>(std::uint64_t{milliseconds} * kAacRate / 1000 / kAacFrameSamples));
  const std::uint32_t frameSize = std::max(8U, kilobits * 125 * kAacFrameSamples / kAacRate);
  const std::uint32_t bitsASecond = frameSize * 8 * kAacRate / kAacFrameSamples;
  const std::string type = box("ftyp", {"M4A ", big(0, 4), "M4A mp42isom"});
  // The place of the sound depends on the length of what comes before, and that not on the place.
  const std::size_t before = type.size() + aacMovie(frames, frameSize, bitsASecond, 0).size() + 8;
  std::string sound;
  const std::string frame = aacFrame(frameSize);
  for (std::uint32_t i = 0; i < frames; ++i) sound += frame;
  const auto length = (std::uint64_t{frames} * kAacFrameSamples * 1000 + kAacRate / 2) / kAacRate;
  return {type + aacMovie(frames, frameSize, bitsASecond, before) + box("mdat", {sound}),
          static_cast<std::uint32_t>(length), (bitsASecond + 500) / 1000, kAacRate};
}

}  // namespace

Audio makeAudio(std::string_view extension, std::uint32_t milliseconds, std::uint32_t kilobits,
                std::uint32_t pitch) {
  kilobits = std::clamp(kilobits, 8U, 64U);
  if (extension == "mp3") return mp3(milliseconds, kilobits);
  if (extension == "m4a") return m4a(milliseconds, kilobits);
  if (extension == "wav") return wav(milliseconds, pitch);
  if (extension == "aif") return aiff(milliseconds, pitch);
  throw std::invalid_argument("No audio is made for ." + std::string{extension});
}

}  // namespace kestrel::make_library
