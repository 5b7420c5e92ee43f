#include "tests/sound/tune.h"

#include <array>
#include <cmath>
#include <numbers>
#include <random>

namespace kestrel::testing {
namespace {

constexpr double notesASecond = 4;

/// A tone with two overtones, once round: there are millions of samples.
constexpr unsigned tableBits = 12;
const std::array<float, 1U << tableBits>& tone() {
  static const auto table = [] {
    std::array<float, 1U << tableBits> made{};
    for (std::size_t i = 0; i < made.size(); ++i) {
      const double at = 2 * std::numbers::pi * static_cast<double>(i) / made.size();
      made[i] = static_cast<float>(std::sin(at) + std::sin(2 * at) / 2 + std::sin(3 * at) / 4);
    }
    return made;
  }();
  return table;
}

/// Adds a note that is struck and dies away.
void add(std::vector<float>& samples, int rate, double at, double lasts, int midi, double volume) {
  const double hertz = 440 * std::exp2((midi - 69) / 12.0);
  const auto step = static_cast<std::uint32_t>(hertz / rate * 4294967296.0);
  const auto first = static_cast<std::size_t>(at * rate);
  const auto count = static_cast<std::size_t>(lasts * rate);
  const float* table = tone().data();
  std::uint32_t phase = 0;
  for (std::size_t i = 0; i < count && first + i < samples.size(); ++i, phase += step) {
    const float attack = i < 100 ? static_cast<float>(i) / 100 : 1;
    const float left = 1 - static_cast<float>(i) / static_cast<float>(count);
    samples[first + i] +=
        static_cast<float>(volume) * attack * left * table[phase >> (32 - tableBits)];
  }
}

/// Below a number; the standard's distributions differ between libraries.
unsigned below(std::mt19937& random, unsigned limit) { return random() % limit; }

}  // namespace

std::vector<float> samplesOf(const Tune& tune) {
  constexpr std::array scale{0, 2, 4, 5, 7, 9, 11, 12, 14};
  std::vector<float> music(static_cast<std::size_t>(tune.seconds * tune.rate));
  std::mt19937 melody(tune.melody), chords(tune.chords ? tune.chords : tune.melody + 1000);
  std::mt19937 playing(tune.playing);
  const int key = 57 + static_cast<int>(below(chords, 12)) + tune.semitones;
  double lateness = 0;  // wanders
  const auto late = [&] {
    if (tune.playing != 1) lateness += (below(playing, 1000) / 1000.0 - 0.45) * 0.04;
    return lateness;
  };
  const double step = 1 / (notesASecond * tune.tempo);
  for (int note = 0; note * step < tune.seconds; ++note) {
    if (note % 8 == 0) {
      const unsigned root = below(chords, 6);
      for (const unsigned third : {0U, 2U, 4U})
        add(music, tune.rate, std::max(0.0, note * step + late()), 8 * step,
            key - 12 + scale[root + third > 8 ? root + third - 7 : root + third], 0.12);
    }
    const unsigned place = below(melody, static_cast<unsigned>(scale.size()));
    if (below(melody, 5) == 0) continue;  // a rest
    add(music, tune.rate, std::max(0.0, note * step + late()), step * (1 + below(melody, 2)),
        key + 12 + scale[place], 0.25);
  }
  const auto silence = [&](double seconds) {
    return static_cast<std::size_t>(seconds * tune.rate);
  };
  std::vector<float> samples(silence(tune.before));
  std::mt19937 audience(7);
  for (const float sample : music)
    samples.push_back(static_cast<float>(tune.volume) * sample +
                      static_cast<float>(tune.noise * (audience() / 4294967296.0 - 0.5)));
  samples.resize(samples.size() + silence(tune.after));
  return samples;
}

}  // namespace kestrel::testing
