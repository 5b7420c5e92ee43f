/// The colours of the windows: the platform's own, those that the program's colour assets define by
/// name for light and dark, and a few that are the same everywhere.
#pragma once

#include <cstdint>
#include <string_view>
#include <variant>

namespace kestrel {

enum class SystemColor : std::uint8_t {
  label,
  gray,
  blue,
  unemphasizedSelectedTextBackground,
};

/// Defined in the program's colour assets.
struct AssetColor {
  std::string_view name;
  friend bool operator==(const AssetColor&, const AssetColor&) = default;
};

/// Opaque; each part from 0 to 1.
struct FixedColor {
  double red, green, blue;
  friend bool operator==(const FixedColor&, const FixedColor&) = default;
};

using Color = std::variant<SystemColor, AssetColor, FixedColor>;

namespace colors {

inline constexpr AssetColor darkStripe{"mycolor_darkStripe"};
inline constexpr AssetColor lightStripe{"mycolor_lightStripe"};
inline constexpr AssetColor darkblue{"mycolor_darkblue"};
inline constexpr AssetColor darkred{"mycolor_darkred"};
inline constexpr AssetColor darkpurple{"mycolor_darkpurple"};  ///< defined for themes, not applied
inline constexpr AssetColor selectedText{"mycolor_selectedText"};

inline constexpr FixedColor lightBlue{140.0 / 255, 170.0 / 255, 1};
inline constexpr FixedColor lightRed{250.0 / 255, 140.0 / 255, 140.0 / 255};
/// 140/255, 2/3 and 1, in single precision.
inline constexpr FixedColor selectionBorder{0.5490196347236633, 0.6666666865348816, 1};

}  // namespace colors
}  // namespace kestrel
