#!/usr/bin/env python3
"""Computes the contrast of the named colours and of the playlist icons on what they stand on.

Usage: tools/check_contrast.py [--all]

Reads resources/colors.h and resources/playlists/*.svg. Texts need a contrast of 4.5 to 1 on every
background of the same appearance, icons and edges of controls 3 to 1, what cannot be used now 2.5
to 1. Prints the lowest contrast of each colour (with --all: every one) and exits with 1 when one is
too low.
"""

import argparse
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
ROWS = ["tableBackground", "mycolor_lightStripe", "mycolor_darkStripe"]
BACKGROUNDS = ROWS + ["mycolor_selectedText"]
TEXTS = ["labelText", "grayText", "mycolor_darkblue", "mycolor_darkred", "mycolor_darkpurple",
         "lightBlue", "lightRed"]
# What stands on what else.
PAIRS = [("accentText", "accent"), ("warningText", "warningGround"), ("labelText", "warningGround"),
         ("warningText", "paneGround"), ("accent", "badgeGround")]
PAIRS += [(text, ground) for text in ("labelText", "grayText")
          for ground in ("paneGround", "accentGround", "badgeGround")]
PAIRS += [("accent", ground) for ground in ("paneGround", "accentGround", "tableBackground",
                                            "mycolor_selectedText")]
PAIRS += [(text, "buttonGround") for text in ("labelText", "grayText", "accent")]
PAIRS += [("mycolor_darkred", "badgeGround"), ("mycolor_darkblue", "badgeGround")]
# Edges of controls on what surrounds them, and lines that only divide.
FRAMES = [("frame", ground) for ground in ("paneGround", "tableBackground", "buttonGround",
                                           "warningGround")]
# What cannot be used now is paler, and can still be made out.
DISABLED = [("disabledText", ground) for ground in ("paneGround", "tableBackground", "buttonGround")]
LINES = ["line"]
TEXT_CONTRAST = 4.5
ICON_CONTRAST = 3.0
DISABLED_CONTRAST = 2.5
# These stay as they are where they can be read, which is in dark rows.
FIXED = {"lightBlue": (140, 170, 255), "lightRed": (250, 140, 140)}


def channels(text):
    return tuple(int(text[i:i + 2], 16) for i in (0, 2, 4))


def luminance(color):
    """Relative luminance as WCAG 2 defines it."""
    linear = [c / 255 / 12.92 if c / 255 <= 0.04045 else ((c / 255 + 0.055) / 1.055) ** 2.4
              for c in color]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def contrast(one, other):
    lighter, darker = sorted((luminance(one), luminance(other)), reverse=True)
    return (lighter + 0.05) / (darker + 0.05)


def named_colors():
    """Per appearance the colours by name."""
    source = (ROOT / "resources/colors.h").read_text()
    entries = re.findall(r'NamedColor\{"(\w+)", 0x([0-9A-F]{6}), 0x([0-9A-F]{6})\}', source)
    colors = {"light": {n: channels(c) for n, c, _ in entries},
              "dark": {n: channels(c) for n, _, c in entries}}
    unchecked = set(colors["light"]) ^ {*BACKGROUNDS, *TEXTS,
                                        *LINES, *(name for pair in PAIRS + FRAMES + DISABLED
                                                   for name in pair)}
    if unchecked:
        sys.exit(f"check_contrast: missing here or in resources/colors.h: {sorted(unchecked)}")
    return colors


def icon_colors():
    """The colours of each playlist icon."""
    icons = {path.stem: set(re.findall(r'(?:fill|stroke)="#([0-9a-fA-F]{6})"', path.read_text()))
             for path in sorted((ROOT / "resources/playlists").glob("*.svg"))}
    if not icons or not all(icons.values()):
        sys.exit("check_contrast: a playlist icon without a colour, or no icon at all")
    return {name: [channels(color) for color in colors] for name, colors in icons.items()}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--all", action="store_true", help="print every contrast")
    show_all = parser.parse_args().all

    too_low = 0
    for appearance, colors in named_colors().items():
        checks = [(text, [colors[text]], BACKGROUNDS, TEXT_CONTRAST) for text in TEXTS]
        checks += [(text, [colors[text]], [ground], needed)
                   for pairs, needed in ((PAIRS, TEXT_CONTRAST), (FRAMES, ICON_CONTRAST),
                                      (DISABLED, DISABLED_CONTRAST))
                   for text, ground in pairs]
        checks += [(f"playlist icon {name}", shades, [*BACKGROUNDS, "paneGround"], ICON_CONTRAST)
                   for name, shades in icon_colors().items()]
        for name, shades, backgrounds, needed in checks:
            ratios = sorted((contrast(shade, colors[background]), background)
                            for shade in shades for background in backgrounds)
            for ratio, background in ratios if show_all else ratios[:1]:
                verdict = "ok" if ratio >= needed else f"TOO LOW, needs {needed}"
                too_low += ratio < needed
                print(f"{appearance:5}  {ratio:5.2f}  {name} on {background}  {verdict}")
        for name, color in FIXED.items():
            if appearance == "dark" and colors[name] != color:
                print(f"{appearance:5}  {name} must be {color}")
                too_low += 1
    return 1 if too_low else 0


if __name__ == "__main__":
    sys.exit(main())
