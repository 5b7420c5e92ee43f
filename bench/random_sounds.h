/// Fingerprints as libraries have them, without any audio: for measurements, and for tests.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <random>
#include <vector>

#include "sound/sound.h"

namespace kestrel::bench {

/// Walks from item to item as the pitches of music do: it often stays, mostly changes a few bits,
/// and now and then comes to one of some thousand chords that all music shares. Of ten tracks one
/// is a variation of an earlier one: later by up to 10 seconds, with some bits of every item other.
class RandomSounds {
 public:
  explicit RandomSounds(std::uint32_t seed, std::size_t items = 948)
      : random_(seed), items_(items) {}

  /// `count` tracks. `originals[i]` is the track that number i varies, or i.
  std::vector<Sound> tracks(std::size_t count, std::vector<std::uint32_t>& originals) {
    std::vector<Sound> sounds(count);
    originals.resize(count);
    for (std::uint32_t i = 0; i < count; ++i) {
      const bool varies = i > 0 && random_() % 10 == 0;
      originals[i] = varies ? originals[random_() % i] : i;
      if (varies)
        vary(sounds[originals[i]], sounds[i]);
      else
        walk(sounds[i].fingerprint, items_);
      if (!varies) sounds[i].milliseconds = 180'000 + random_() % 120'000;
    }
    return sounds;
  }

  /// The share of bits that differ in variations, of 1000.
  unsigned noise = 60;

 private:
  static std::uint32_t chord(std::uint32_t number) {
    std::mt19937 random(number + 1);
    return static_cast<std::uint32_t>(random());
  }

  void walk(std::vector<std::uint32_t>& items, std::size_t count) {
    std::uint32_t item = chord(random_() % 4096);
    while (items.size() < count) {
      items.push_back(item);
      const std::uint32_t what = random_() % 100;
      if (what < 25) continue;
      if (what < 30)
        item = chord(random_() % 4096);
      else
        for (std::uint32_t bits = 1 + random_() % 5; bits > 0; --bits) item ^= 1U << random_() % 32;
    }
  }

  void vary(const Sound& original, Sound& varied) {
    const std::uint32_t shift = random_() % 80;
    walk(varied.fingerprint, shift);
    for (std::uint32_t item : original.fingerprint) {
      if (varied.fingerprint.size() == items_) break;
      // Some places change in much, most in nothing, as with formats and bit rates.
      if (random_() % 3 == 0)
        for (int bit = 0; bit < 32; ++bit)
          if (random_() % 1000 < 3 * noise) item ^= 1U << bit;
      varied.fingerprint.push_back(item);
    }
    varied.milliseconds = original.milliseconds + shift * 124;
    varied.silence = original.silence + shift * 124;
  }

  std::mt19937 random_;
  std::size_t items_;
};

}  // namespace kestrel::bench
