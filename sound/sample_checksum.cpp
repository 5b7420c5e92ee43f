#include "sound/sample_checksum.h"

#include <array>
#include <cstring>
#include <new>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/md5.h>
#include <libavutil/mem.h>
}

namespace kestrel {
namespace {

/// Appends samples as they are summed up: `shift` puts their lowest bit in its place.
template <typename Sample, typename Signed>
void append(const AVFrame& frame, bool isPlanar, int shift, int width, Signed asSigned,
            std::vector<std::uint8_t>& bytes) {
  const int channels = frame.ch_layout.nb_channels;
  bytes.resize(static_cast<std::size_t>(frame.nb_samples) * static_cast<std::size_t>(channels) *
               static_cast<std::size_t>(width));
  std::uint8_t* out = bytes.data();
  for (int i = 0; i < frame.nb_samples; ++i)
    for (int channel = 0; channel < channels; ++channel) {
      const std::uint8_t* plane = frame.extended_data[isPlanar ? channel : 0];
      const std::ptrdiff_t at = isPlanar ? i : std::ptrdiff_t{i} * channels + channel;
      Sample sample;
      std::memcpy(&sample, plane + at * static_cast<std::ptrdiff_t>(sizeof sample), sizeof sample);
      auto value = static_cast<std::uint32_t>(asSigned(sample) >> shift);
      for (int byte = 0; byte < width; ++byte, value >>= 8) *out++ = value & 0xFFU;
    }
}

}  // namespace

SampleChecksum::SampleChecksum() : md5_(av_md5_alloc()) {
  if (!md5_) throw std::bad_alloc();
  av_md5_init(md5_);
}

SampleChecksum::~SampleChecksum() { av_free(md5_); }

bool SampleChecksum::add(const AVCodecContext& decoder, const AVFrame& frame) {
  const auto format = static_cast<AVSampleFormat>(frame.format);
  const int stored = av_get_bytes_per_sample(format) * 8;
  int bits = decoder.bits_per_raw_sample;
  if (bits <= 0 || bits > stored) bits = stored;
  const Form form{frame.format, frame.sample_rate, frame.ch_layout.nb_channels, bits};
  if (form_.format < 0) form_ = form;
  if (form != form_ || form.channels <= 0) return false;
  samples_ += frame.nb_samples;
  const bool isPlanar = av_sample_fmt_is_planar(format) != 0;
  const int shift = stored - bits, width = (bits + 7) / 8;
  const auto asItIs = [](std::int32_t sample) { return sample; };
  switch (av_get_packed_sample_fmt(format)) {
    case AV_SAMPLE_FMT_U8:
      append<std::uint8_t>(
          frame, isPlanar, shift, width, [](std::int32_t sample) { return sample - 128; }, bytes_);
      break;
    case AV_SAMPLE_FMT_S16:
      append<std::int16_t>(frame, isPlanar, shift, width, asItIs, bytes_);
      break;
    case AV_SAMPLE_FMT_S32:
      append<std::int32_t>(frame, isPlanar, shift, width, asItIs, bytes_);
      break;
    default:
      return false;
  }
  av_md5_update(md5_, bytes_.data(), bytes_.size());
  return true;
}

std::string SampleChecksum::md5() {
  std::array<std::uint8_t, 16> sum{};
  av_md5_final(md5_, sum.data());
  return {sum.begin(), sum.end()};
}

std::string SampleChecksum::form() const {
  return std::to_string(form_.rate) + "/" + std::to_string(form_.channels) + "/" +
         std::to_string(form_.bits);
}

std::int64_t SampleChecksum::milliseconds() const {
  return form_.rate > 0 ? samples_ * 1000 / form_.rate : 0;
}

}  // namespace kestrel
