/// The named colours of Kestrel's windows, for light and for dark desktops.
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
    NamedColor{"mycolor_lightStripe", 0xFFFFFF, 0x22272C},
    NamedColor{"mycolor_darkStripe", 0xF3F6F7, 0x272C32},
    NamedColor{"mycolor_selectedText", 0xD7ECE9, 0x1B383A},
    NamedColor{"tableBackground", 0xFFFFFF, 0x22272C},

    // What stands around the tables: panes, the one accent with what is written on it, what is
    // chosen, warnings, badges, and the lines between them.
    NamedColor{"paneGround", 0xF6F7F8, 0x1B1F23},
    NamedColor{"accent", 0x0B6E69, 0x5CC8BF},
    NamedColor{"accentText", 0xFFFFFF, 0x0B2523},
    NamedColor{"accentGround", 0xE3F2F0, 0x1F3B3A},
    NamedColor{"warningText", 0x8A5A00, 0xFFCE73},
    NamedColor{"warningGround", 0xFFF4DC, 0x3A3120},
    NamedColor{"badgeGround", 0xE9EDF0, 0x323940},
    NamedColor{"line", 0xE1E5E9, 0x343B42},
    NamedColor{"frame", 0x858F98, 0x78828B},
    NamedColor{"buttonGround", 0xFBFCFC, 0x2E343A},

    // Texts.
    NamedColor{"mycolor_darkblue", 0x1A47B8, 0x8CB4FF},
    NamedColor{"mycolor_darkred", 0xA61B1B, 0xFF9E8C},
    NamedColor{"mycolor_darkpurple", 0x6B2C91, 0xD9A6FF},
    NamedColor{"labelText", 0x1B2126, 0xECEFF1},
    NamedColor{"grayText", 0x55606A, 0xAEB8C1},
    NamedColor{"disabledText", 0x858F98, 0x858F98},

    // Tracks that are not kept, with their file in the cloud or missing: pale, and where that
    // cannot be read a tone of the same hue.
    NamedColor{"lightBlue", 0x4662AD, 0x8CAAFF},
    NamedColor{"lightRed", 0xA04A4A, 0xFA8C8C},
};

/// The colour called `name` as 0xRRGGBB, or nothing when there is none of that name.
constexpr std::optional<std::uint32_t> namedColor(std::string_view name, Appearance appearance) {
  for (const NamedColor& color : namedColors)
    if (color.name == name) return appearance == Appearance::dark ? color.dark : color.light;
  return std::nullopt;
}

}  // namespace kestrel
