/// An audio file as libavformat and libavcodec read it, for this folder.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "foundation/function_ref.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace kestrel {

/// One call a type: what libav frees takes the address of a pointer.
struct FreeAv {
  void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
  void operator()(AVCodecContext* decoder) const { avcodec_free_context(&decoder); }
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};

class DecodedAudio {
 public:
  /// Opens the file, if it is a regular one, and no other that it may name.
  explicit DecodedAudio(const std::string& path);

  /// Whether there is audio that can be decoded.
  [[nodiscard]] bool isOpen() const { return decoder_ != nullptr; }
  [[nodiscard]] const AVCodecContext& decoder() const { return *decoder_; }
  /// Whether decoding gives back the samples that were encoded.
  [[nodiscard]] bool isLossless() const;
  /// FLAC's own checksum of its samples, 16 bytes; empty where there is none.
  [[nodiscard]] std::string flacChecksum() const;

  /// Calls `frame` with what is decoded, until it returns false: then it is done with, and the rest
  /// of the file is only looked through for its length. False when `stopped` ended it all.
  bool decode(FunctionRef<bool(const AVFrame&)> frame, FunctionRef<bool()> stopped);
  /// Of all packets, in milliseconds, once decoded.
  [[nodiscard]] std::int64_t milliseconds() const;

 private:
  bool takeFrames(FunctionRef<bool(const AVFrame&)> take);

  std::unique_ptr<AVFormatContext, FreeAv> input_;
  std::unique_ptr<AVCodecContext, FreeAv> decoder_;
  std::unique_ptr<AVFrame, FreeAv> frame_;
  AVStream* stream_ = nullptr;
  std::int64_t length_ = 0;  ///< in the stream's units
};

}  // namespace kestrel
