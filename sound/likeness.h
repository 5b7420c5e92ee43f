/// How alike two files sound.
///
/// Fingerprints are laid on each other at every shift up to half a minute where at least half of
/// the shorter one lies on the longer one. There, the share of bits that differ is 0 for the same
/// recording, some hundredths for another format or bit rate of it, and about a half for two that
/// have nothing in common, whatever their volumes. The likeness is 100 % for none and 0 % for a
/// half, at the shift where it is highest. What goes on unchanged in both at once, as silence does,
/// does not count: any two recordings have that in common. Where one begins later, only silence may
/// stand before, and nowhere may several seconds be other ones, however alike the rest is.
#pragma once

#include <string_view>

#include "sound/sound.h"

namespace kestrel {

/// From here on two files sound the same: the same recording and mix of it. Other takes of a song,
/// other tempos and keys, and other tunes over the same chords are below.
constexpr int leastOfTheSame = 70;

struct Likeness {
  enum class Kind : std::uint8_t {
    unknown,    ///< one of them could not be compared
    sameAudio,  ///< bit for bit, by its checksum
    same,       ///< it sounds the same, from start to end
    /// It sounds the same, but for a part of more than a second (`Part`).
    sameInPart,
    different,
  };
  /// What only one of them has.
  enum class Part : std::uint8_t {
    none,
    beginning,
    stretch,  ///< in the midst: something else, or nothing, in its place
    end,
    damaged,  ///< what is behind the damage
  };
  Kind kind = Kind::unknown;
  std::uint8_t percent = 0;  ///< 0 to 100; 100 also where the audio is the same
  Part part = Part::none;    ///< of `sameInPart`, the first that differs
  float later = 0;           ///< seconds by which the second one begins later
  std::int32_t longer = 0;   ///< seconds that the second one is longer
  /// It sounds the same, but for some seconds at the end of one, which may be silence.
  bool isOneRecording = false;
  /// Of what is unknown: whether the first one cannot be compared, else the second, and why; none
  /// where neither was looked at.
  bool isFirstAtFault = false;
  SoundFault fault = SoundFault::none;
  /// What keeps the second one from being compared.
  [[nodiscard]] SoundFault ownFault() const { return isFirstAtFault ? SoundFault::none : fault; }
  /// Whether one can be given up for the other.
  [[nodiscard]] bool soundsSame() const { return kind == Kind::sameAudio || kind == Kind::same; }
  friend bool operator==(const Likeness&, const Likeness&) = default;
};

/// A quarter of a millisecond for two whole fingerprints. The same the other way round, but for the
/// signs. From any thread.
Likeness likenessOf(const Sound& first, const Sound& second);

/// The word for it in files and for other programs.
std::string_view nameOf(Likeness::Kind kind) noexcept;
std::string_view nameOf(Likeness::Part part) noexcept;
/// As a clause why it sounds the same in part only. Empty for none.
Message explainPart(const Likeness& likeness);
/// The one that speaks most against the other being a copy, of two that are known; else the known
/// one.
Likeness lessAlike(const Likeness& one, const Likeness& other);
/// For people: "same audio", "97 %", "97 % in part"; of what is unknown why: "too short", "not
/// compared" where that is for the other one; empty where it was not looked at.
Message textOf(const Likeness& likeness);
/// Why it is unknown, as a clause: "it is too short". Empty where it is known.
Message reasonOf(const Likeness& likeness);

}  // namespace kestrel
