#include "sound/decoded_audio.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <string_view>

extern "C" {
#include <libavutil/log.h>
#include <libavutil/mem.h>
}

namespace kestrel {
namespace {

/// Formats of one file. Others, such as lists of streams, could make the library open any address.
constexpr const char* formats =
    "aac,ac3,aiff,amr,ape,asf,au,caf,dsf,dts,eac3,flac,matroska,mov,mp3,mpc,mpc8,ogg,rm,shn,tak,"
    "tta,w64,wav,wv";

/// Damaged files are told of by faults. The setting is the whole program's, so it is made once.
void keepLibraryQuiet() {
  static const bool isQuiet = [] {
    av_log_set_level(AV_LOG_QUIET);
    return true;
  }();
  static_cast<void>(isQuiet);
}

}  // namespace

DecodedAudio::DecodedAudio(const std::string& path) {
  keepLibraryQuiet();
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return;
  AVFormatContext* input = avformat_alloc_context();
  if (!input) return;
  input->format_whitelist = av_strdup(formats);
  input->protocol_whitelist = av_strdup("file");
  // Frees the context when it fails.
  if (avformat_open_input(&input, ("file:" + path).c_str(), nullptr, nullptr) < 0) return;
  input_.reset(input);
  if (avformat_find_stream_info(input, nullptr) < 0) return;
  const AVCodec* codec = nullptr;
  const int best = av_find_best_stream(input, AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
  if (best < 0 || !codec) return;
  for (unsigned i = 0; i < input->nb_streams; ++i)
    if (static_cast<int>(i) != best) input->streams[i]->discard = AVDISCARD_ALL;
  stream_ = input->streams[best];

  std::unique_ptr<AVCodecContext, FreeAv> decoder(avcodec_alloc_context3(codec));
  frame_.reset(av_frame_alloc());
  if (!decoder || !frame_) return;
  if (avcodec_parameters_to_context(decoder.get(), stream_->codecpar) < 0) return;
  decoder->pkt_timebase = stream_->time_base;
  decoder->thread_count = 1;  // files are decoded side by side
  if (avcodec_open2(decoder.get(), codec, nullptr) == 0) decoder_ = std::move(decoder);
}

bool DecodedAudio::isLossless() const {
  const AVCodecDescriptor* descriptor = avcodec_descriptor_get(decoder_->codec_id);
  if (!descriptor || !(descriptor->props & AV_CODEC_PROP_LOSSLESS)) return false;
  // What can be either, as WavPack, is taken at its samples' word; what is decoded to numbers that
  // a decoder rounds as it likes is not.
  switch (decoder_->sample_fmt) {
    case AV_SAMPLE_FMT_U8:
    case AV_SAMPLE_FMT_S16:
    case AV_SAMPLE_FMT_S32:
    case AV_SAMPLE_FMT_U8P:
    case AV_SAMPLE_FMT_S16P:
    case AV_SAMPLE_FMT_S32P:
      return decoder_->codec_id != AV_CODEC_ID_DTS;
    default:
      return false;
  }
}

std::string DecodedAudio::flacChecksum() const {
  const AVCodecParameters& parameters = *stream_->codecpar;
  if (parameters.codec_id != AV_CODEC_ID_FLAC || parameters.extradata_size < 34) return {};
  std::string_view info(reinterpret_cast<const char*>(parameters.extradata),
                        static_cast<std::size_t>(parameters.extradata_size));
  if (info.starts_with("fLaC") && info.size() >= 42) info.remove_prefix(8);
  const std::string_view sum = info.substr(18, 16);
  const bool isKnown = std::any_of(sum.begin(), sum.end(), [](char c) { return c != '\0'; });
  return isKnown ? std::string(sum) : std::string();
}

/// What the decoder has ready; false when no more is wanted.
bool DecodedAudio::takeFrames(FunctionRef<bool(const AVFrame&)> take) {
  while (avcodec_receive_frame(decoder_.get(), frame_.get()) == 0) {
    const bool goesOn = frame_->nb_samples <= 0 || take(*frame_);
    av_frame_unref(frame_.get());
    if (!goesOn) return false;
  }
  return true;
}

bool DecodedAudio::decode(FunctionRef<bool(const AVFrame&)> frame, FunctionRef<bool()> stopped) {
  const std::unique_ptr<AVPacket, FreeAv> packet(av_packet_alloc());
  if (!packet) return true;
  bool isWanted = true;
  while (av_read_frame(input_.get(), packet.get()) >= 0) {
    if (stopped()) return false;
    if (packet->stream_index == stream_->index) {
      constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
      const std::int64_t ticks = std::max<std::int64_t>(packet->duration, 0);
      length_ = ticks > most - length_ ? most : length_ + ticks;
      // A packet that makes no sense is passed over, as players do.
      if (isWanted && avcodec_send_packet(decoder_.get(), packet.get()) == 0)
        isWanted = takeFrames(frame);
    }
    av_packet_unref(packet.get());
  }
  if (isWanted && avcodec_send_packet(decoder_.get(), nullptr) == 0) takeFrames(frame);
  return true;
}

std::int64_t DecodedAudio::milliseconds() const {
  // What makes no sense comes out as the lowest number.
  return std::max<std::int64_t>(0, av_rescale_q(length_, stream_->time_base, AVRational{1, 1000}));
}

}  // namespace kestrel
