/// Light or dark windows, whatever the desktop does by itself.
#pragma once

#include <cstdint>
#include <string_view>

namespace kestrel {

class Preferences;

enum class AppearanceChoice : std::uint8_t { desktop, light, dark };

/// Of the setting "appearance".
AppearanceChoice chosenAppearance(const Preferences& preferences);
/// Stores the choice and shows all windows in it.
void chooseAppearance(AppearanceChoice choice, Preferences& preferences);
/// At the program's start, before windows are made.
void applyAppearance(const Preferences& preferences);

}  // namespace kestrel
