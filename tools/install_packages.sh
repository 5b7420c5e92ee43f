#!/usr/bin/env bash
# Installs, through apt, the Debian packages that the named groups need and the machine lacks.
# Usage: tools/install_packages.sh build|desktop|test|screen|reader|check|player|package|clang ...
set -euo pipefail

declare -A groups=(
  # What compiles the programs, and what the demo library needs.
  [build]="g++ cmake ninja-build pkg-config libicu-dev libtag1-dev libmpdclient-dev libsystemd-dev libexpat1-dev libcli11-dev libsqlite3-dev nlohmann-json3-dev libxxhash-dev libchromaprint-dev libavformat-dev libavcodec-dev libavutil-dev libswresample-dev"
  # What the desktop program needs on top.
  [desktop]="qt6-base-dev qt6-multimedia-dev qt6-svg-dev libqt6svg6 qt6-l10n-tools qt6-translations-l10n qt6-tools-dev qt6-tools-dev-tools"
  # What the tests and benchmarks need on top.
  [test]="libgtest-dev libpugixml-dev dbus-daemon python3 tzdata desktop-file-utils appstream mandoc mpd"
  # What the tests of the desktop program need to run it on a screen that nobody sees.
  [screen]="xvfb xauth xdotool openbox imagemagick"
  # What prints the program as screen readers get it.
  [reader]="at-spi2-core dbus gir1.2-atspi-2.0 python3-gi"
  # What the format and lint checks need.
  [check]="clang-format git"
  # The players that changes are tried on.
  [player]="strawberry rhythmbox xvfb dbus libglib2.0-bin python3"
  # What cpack needs to make the Debian package.
  [package]="file dpkg-dev"
  # What the address sanitizer and libFuzzer are built with.
  [clang]="clang-16 libclang-rt-16-dev"
)

missing=()
for group in "$@"; do
  [[ -v groups[$group] ]] || { echo "install_packages: no group '$group'" >&2; exit 2; }
  for package in ${groups[$group]}; do
    status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
    [[ $status == installed ]] || missing+=("$package")
  done
done
((${#missing[@]})) || exit 0

command -v apt-get >/dev/null || {
  echo "These packages are missing, and there is no apt-get to install them: ${missing[*]}" >&2
  exit 1
}
sudo=()
if ((EUID != 0)); then
  command -v sudo >/dev/null || {
    echo "Installing needs root. Run as root: apt-get install ${missing[*]}" >&2
    exit 1
  }
  sudo=(sudo)
fi
echo "== Installing ${missing[*]}"
install() {
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends \
    "${missing[@]}"
}
# The package lists may be missing or old; fetching them is slow, so only when the install fails.
install || { "${sudo[@]}" apt-get update -q && install; } || {
  echo "apt-get could not install: ${missing[*]}" >&2
  exit 1
}
