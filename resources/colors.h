/// The named colours of Kestrel's tables, for light and for dark desktops.
///
/// Every text colour keeps a contrast of at least 4.5 to 1 on every background it can stand on;
/// tools/check_contrast.py reads this table and computes it. No colour is ever the only sign of
/// what it means.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestrel {

enum class Appearance { light, dark };

/// Both as 0xRRGGBB, opaque.
struct NamedColor {
  std::string_view name;
  std::uint32_t light;
  std::uint32_t dark;
};

inline constexpr std::array namedColors = {
    // Backgrounds. "Light" and "dark" stripe tell the two apart, in either appearance.
    NamedColor{"mycolor_lightStripe", 0xFFFFFF, 0x2B2F36},
    NamedColor{"mycolor_darkStripe", 0xEAEFF6, 0x1F2227},
    NamedColor{"mycolor_selectedText", 0xD3E3FD, 0x26385C},
    NamedColor{"tableBackground", 0xFFFFFF, 0x1B1E22},
    // What the words in lightBlue and lightRed stand on in light rows, which they are too pale for.
    NamedColor{"lightBlueGround", 0x233A72, 0x1F2227},
    NamedColor{"lightRedGround", 0x6A2323, 0x1F2227},

    // Texts.
    NamedColor{"mycolor_darkblue", 0x1A47B8, 0x5FC3FF},
    NamedColor{"mycolor_darkred", 0xA61B1B, 0xFF8A50},
    NamedColor{"mycolor_darkpurple", 0x6B2C91, 0xD9A6FF},
    NamedColor{"labelText", 0x1C2025, 0xECEFF3},
    NamedColor{"grayText", 0x59616B, 0xA7AFBA},

    // Tracks that are not kept, with their file in the cloud or missing: the same on every desktop,
    // in light rows on a ground of their own.
    NamedColor{"lightBlue", 0x8CAAFF, 0x8CAAFF},
    NamedColor{"lightRed", 0xFA8C8C, 0xFA8C8C},
};

/// The colour called `name` as 0xRRGGBB, or nothing when there is none of that name.
constexpr std::optional<std::uint32_t> namedColor(std::string_view name, Appearance appearance) {
  for (const NamedColor& color : namedColors)
    if (color.name == name) return appearance == Appearance::dark ? color.dark : color.light;
  return std::nullopt;
}

}  // namespace kestrel
