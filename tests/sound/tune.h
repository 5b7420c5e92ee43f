/// A small synthesiser: tunes that differ in what a test says and in nothing else.
#pragma once

#include <cstdint>
#include <vector>

namespace kestrel::testing {

/// What is played, and how. The same values make the same samples.
struct Tune {
  unsigned melody = 1;   ///< which notes
  unsigned chords = 0;   ///< which chords lie under them; 0: those of the melody
  double seconds = 16;   ///< of music
  double tempo = 1;      ///< how much faster
  int semitones = 0;     ///< higher
  double volume = 0.6;   ///< of 1
  double noise = 0;      ///< of an audience, beside a volume of 1
  double before = 0;     ///< seconds of silence
  double after = 0;      ///< seconds of silence
  unsigned playing = 1;  ///< another one plays the same notes in a time of its own
  int rate = 16000;
};

/// One channel.
std::vector<float> samplesOf(const Tune& tune);

}  // namespace kestrel::testing
