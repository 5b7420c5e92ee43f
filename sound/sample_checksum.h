/// The checksum of samples by which files of different formats are seen to have the same audio.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct AVCodecContext;
struct AVFrame;
struct AVMD5;

namespace kestrel {

/// The MD5 of samples in the form in which FLAC takes it: interleaved, signed, of as many bytes as
/// their bits need, the lowest first.
class SampleChecksum {
 public:
  SampleChecksum();
  ~SampleChecksum();
  SampleChecksum(const SampleChecksum&) = delete;
  SampleChecksum& operator=(const SampleChecksum&) = delete;

  /// `decoder` knows of how many bits the samples are. False when they cannot be summed up: their
  /// form is another than before, or none of whole numbers.
  bool add(const AVCodecContext& decoder, const AVFrame& frame);
  /// 16 bytes. Once, at the end.
  [[nodiscard]] std::string md5();
  /// Sample rate, channels and bits, as "44100/2/16".
  [[nodiscard]] std::string form() const;
  /// Milliseconds of what was added.
  [[nodiscard]] std::int64_t milliseconds() const;

 private:
  struct Form {
    int format = -1, rate = 0, channels = 0, bits = 0;
    friend bool operator==(const Form&, const Form&) = default;
  };
  AVMD5* md5_;
  Form form_;
  std::int64_t samples_ = 0;  ///< of one channel
  std::vector<std::uint8_t> bytes_;
};

}  // namespace kestrel
