#include "tests/sound/encoder.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <stdexcept>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace kestrel::testing {
namespace {

void require(bool holds, const std::string& what) {
  if (!holds) throw std::runtime_error(what + " cannot be encoded");
}

/// The form that the codec takes and that holds so many bits: a lossy one takes any.
AVSampleFormat formatFor(const AVCodec& codec, int bits) {
  const int bytes = bits > 16 ? 4 : (bits + 7) / 8;
  for (const AVSampleFormat* format = codec.sample_fmts; *format != AV_SAMPLE_FMT_NONE; ++format)
    if (av_get_bytes_per_sample(*format) == bytes) return *format;
  return codec.sample_fmts[0];
}

/// Writes one sample in the frame's form, with the lowest bits empty that it has too many.
void put(AVFrame& frame, int channel, int at, float sample, int bits) {
  const auto format = static_cast<AVSampleFormat>(frame.format);
  const bool isPlanar = av_sample_fmt_is_planar(format) != 0;
  const int size = av_get_bytes_per_sample(format);
  std::uint8_t* out = frame.extended_data[isPlanar ? channel : 0] +
                      static_cast<std::ptrdiff_t>(size) *
                          (isPlanar ? at : at * frame.ch_layout.nb_channels + channel);
  const AVSampleFormat packed = av_get_packed_sample_fmt(format);
  if (packed == AV_SAMPLE_FMT_FLT) {
    std::memcpy(out, &sample, sizeof sample);
    return;
  }
  const double most = std::exp2(bits - 1) - 1;
  const auto whole = static_cast<std::int32_t>(std::lround(std::clamp(sample, -1.0F, 1.0F) * most));
  const auto value = static_cast<std::uint32_t>(whole) << (size * 8 - bits);
  if (packed == AV_SAMPLE_FMT_U8) {
    *out = static_cast<std::uint8_t>(value + 128);
  } else if (packed == AV_SAMPLE_FMT_S16) {
    const auto two = static_cast<std::uint16_t>(value);
    std::memcpy(out, &two, sizeof two);
  } else {
    std::memcpy(out, &value, sizeof value);
  }
}

}  // namespace

void encode(const std::string& path, std::span<const float> samples, int rate,
            const Encoding& encoding) {
  av_log_set_level(AV_LOG_QUIET);
  const AVCodec* codec = avcodec_find_encoder_by_name(encoding.codec);
  require(codec && codec->sample_fmts, encoding.codec);
  const auto freeEncoder = [](AVCodecContext* context) { avcodec_free_context(&context); };
  const std::unique_ptr<AVCodecContext, decltype(freeEncoder)> encoder(
      avcodec_alloc_context3(codec), freeEncoder);
  encoder->sample_fmt = formatFor(*codec, encoding.bits);
  encoder->sample_rate = rate;
  encoder->time_base = {1, rate};
  encoder->bit_rate = encoding.kilobits * 1000;
  encoder->bits_per_raw_sample = encoding.bits;
  encoder->strict_std_compliance = FF_COMPLIANCE_EXPERIMENTAL;
  av_channel_layout_default(&encoder->ch_layout, encoding.channels);

  AVFormatContext* made = nullptr;
  require(avformat_alloc_output_context2(&made, nullptr, nullptr, path.c_str()) >= 0, path);
  const auto close = [](AVFormatContext* output) {
    avio_closep(&output->pb);
    avformat_free_context(output);
  };
  const std::unique_ptr<AVFormatContext, decltype(close)> output(made, close);
  if (made->oformat->flags & AVFMT_GLOBALHEADER) encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  require(avcodec_open2(encoder.get(), codec, nullptr) == 0, path + " by " + encoding.codec);
  AVStream* stream = avformat_new_stream(made, nullptr);
  stream->time_base = encoder->time_base;
  avcodec_parameters_from_context(stream->codecpar, encoder.get());
  require(avio_open(&made->pb, path.c_str(), AVIO_FLAG_WRITE) >= 0 &&
              avformat_write_header(made, nullptr) >= 0,
          path);

  AVPacket* packet = av_packet_alloc();
  const auto write = [&](const AVFrame* frame) {
    require(avcodec_send_frame(encoder.get(), frame) == 0, path);
    while (avcodec_receive_packet(encoder.get(), packet) == 0) {
      av_packet_rescale_ts(packet, encoder->time_base, stream->time_base);
      packet->stream_index = 0;
      require(av_interleaved_write_frame(made, packet) >= 0, path);
    }
  };
  AVFrame* frame = av_frame_alloc();
  const std::size_t most =
      encoder->frame_size > 0 ? static_cast<std::size_t>(encoder->frame_size) : std::size_t{4096};
  for (std::size_t first = 0; first < samples.size(); first += most) {
    const std::size_t count = std::min(most, samples.size() - first);
    frame->format = encoder->sample_fmt;
    frame->sample_rate = rate;
    frame->nb_samples = static_cast<int>(count);
    frame->pts = static_cast<std::int64_t>(first);
    av_channel_layout_copy(&frame->ch_layout, &encoder->ch_layout);
    require(av_frame_get_buffer(frame, 0) == 0, path);
    for (std::size_t i = 0; i < count; ++i)
      for (int channel = 0; channel < encoding.channels; ++channel)
        put(*frame, channel, static_cast<int>(i), samples[first + i], encoding.bits);
    write(frame);
    av_frame_unref(frame);
  }
  write(nullptr);
  av_frame_free(&frame);
  av_packet_free(&packet);
  require(av_write_trailer(made) == 0, path);
}

}  // namespace kestrel::testing
