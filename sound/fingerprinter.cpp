#include "sound/fingerprinter.h"

#include <algorithm>
#include <chromaprint.h>
#include <cstdlib>
#include <new>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/frame.h>
#include <libswresample/swresample.h>
}

namespace kestrel {
namespace {

/// What Chromaprint brings everything to.
constexpr int rate = 11025;
constexpr int mostSeconds = 120;
/// Of 32,767, some -50 dB: what formats of few bits and quiet rooms make of silence is below.
constexpr int loudestSilence = 100;

}  // namespace

/// To one channel of Chromaprint's rate.
struct Fingerprinter::Resampler {
  explicit Resampler(const AVFrame& frame)
      : format(frame.format), rate(frame.sample_rate), channels(frame.ch_layout.nb_channels) {
    AVChannelLayout from{}, mono{};
    av_channel_layout_default(&mono, 1);
    // Some files do not say which channel is which.
    if (frame.ch_layout.order == AV_CHANNEL_ORDER_UNSPEC)
      av_channel_layout_default(&from, channels);
    else
      av_channel_layout_copy(&from, &frame.ch_layout);
    const bool isMade =
        swr_alloc_set_opts2(&context, &mono, AV_SAMPLE_FMT_S16, kestrel::rate, &from,
                            static_cast<AVSampleFormat>(format), rate, 0, nullptr) == 0 &&
        swr_init(context) == 0;
    if (!isMade) swr_free(&context);
    av_channel_layout_uninit(&from);
  }
  ~Resampler() { swr_free(&context); }
  Resampler(const Resampler&) = delete;
  Resampler& operator=(const Resampler&) = delete;

  [[nodiscard]] bool takes(const AVFrame& frame) const {
    return frame.format == format && frame.sample_rate == rate &&
           frame.ch_layout.nb_channels == channels;
  }

  int format, rate, channels;
  SwrContext* context = nullptr;
};

Fingerprinter::Fingerprinter()
    : chromaprint_(chromaprint_new(CHROMAPRINT_ALGORITHM_DEFAULT)), left_(rate * mostSeconds) {
  if (!chromaprint_) throw std::bad_alloc();
  chromaprint_start(chromaprint_, rate, 1);
}

Fingerprinter::~Fingerprinter() { chromaprint_free(chromaprint_); }

/// Of those that were converted; false when no more are wanted.
bool Fingerprinter::feed(int samples) {
  samples = std::min(samples, left_);
  for (int i = 0; i < samples && !isHeard_; ++i) {
    isHeard_ = std::abs(int{samples_[static_cast<std::size_t>(i)]}) > loudestSilence;
    silence_ += isHeard_ ? 0 : 1;
  }
  if (samples > 0 && chromaprint_feed(chromaprint_, samples_.data(), samples) == 0) return false;
  left_ -= std::max(samples, 0);
  return left_ > 0;
}

bool Fingerprinter::add(const AVFrame& frame) {
  if (left_ <= 0) return false;
  if (!resampler_ || !resampler_->takes(frame)) resampler_ = std::make_unique<Resampler>(frame);
  if (!resampler_->context) return false;
  const int most = swr_get_out_samples(resampler_->context, frame.nb_samples);
  if (most < 0) return false;
  samples_.resize(static_cast<std::size_t>(most) + 1);
  auto* out = reinterpret_cast<std::uint8_t*>(samples_.data());
  // Does not change what it is given, though an earlier form of the library says no `const`.
  return feed(swr_convert(resampler_->context, &out, most,
                          const_cast<const std::uint8_t**>(frame.extended_data), frame.nb_samples));
}

std::int64_t Fingerprinter::silence() const { return std::int64_t{silence_} * 1000 / rate; }

std::vector<std::uint32_t> Fingerprinter::fingerprint() {
  std::vector<std::uint32_t> items;
  if (chromaprint_finish(chromaprint_) == 0) return items;
  std::uint32_t* raw = nullptr;
  int count = 0;
  if (chromaprint_get_raw_fingerprint(chromaprint_, &raw, &count) == 0) return items;
  items.assign(raw, raw + count);
  chromaprint_dealloc(raw);
  return items;
}

}  // namespace kestrel
