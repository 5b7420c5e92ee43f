/// Makes fingerprints of decoded audio.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

struct AVFrame;
struct ChromaprintContextPrivate;
struct SwrContext;

namespace kestrel {

class Fingerprinter {
 public:
  Fingerprinter();
  ~Fingerprinter();
  Fingerprinter(const Fingerprinter&) = delete;
  Fingerprinter& operator=(const Fingerprinter&) = delete;

  /// Any sample rate, channels and form, which may change from frame to frame. False when two
  /// minutes are full, or the audio cannot be taken.
  bool add(const AVFrame& frame);
  /// Milliseconds of what was added before anything could be heard.
  [[nodiscard]] std::int64_t silence() const;
  /// Of what was added. Once, at the end.
  std::vector<std::uint32_t> fingerprint();

 private:
  struct Resampler;
  bool feed(int samples);

  ChromaprintContextPrivate* chromaprint_;
  std::unique_ptr<Resampler> resampler_;
  std::vector<std::int16_t> samples_;
  int left_;         ///< samples that are still wanted
  int silence_ = 0;  ///< samples before the first that can be heard
  bool isHeard_ = false;
};

}  // namespace kestrel
