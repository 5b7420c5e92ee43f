#!/usr/bin/env bash
# Tries kestrel-cli on a real Rhythmbox, on a screen, a bus and in a home of its own. Installs it.
# Usage: tools/check_rhythmbox.sh KESTREL-CLI
set -euo pipefail
limit=600 # seconds; half a minute where nothing else runs, and many times that where much does
here=$(realpath "$(dirname "$0")")
cli=$(realpath "$1")
"$here/install_packages.sh" player

home=$(mktemp -d)
mkdir -p "$home"/{config,cache,data,state,run} && chmod 700 "$home/run"
mkfifo "$home/display"
Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3<>"$home/display" 2>"$home/screen.log" &
screen=$!
trap 'kill "$screen"; wait "$screen" || true; rm -rf "$home"' EXIT
read -rt 60 display <"$home/display"
env -u WAYLAND_DISPLAY HOME="$home" DISPLAY=":$display" XDG_RUNTIME_DIR="$home/run" \
  XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache" XDG_DATA_HOME="$home/data" \
  XDG_STATE_HOME="$home/state" GSETTINGS_BACKEND=keyfile LC_ALL=C.UTF-8 NO_AT_BRIDGE=1 \
  GIO_USE_VFS=local GTK_USE_PORTAL=0 \
  timeout "$limit" dbus-run-session -- python3 "$here/check_rhythmbox.py" "$cli" \
  2>"$home/errors.log" || {
  status=$?
  cat "$home/errors.log" >&2
  [[ $status != 124 ]] || echo "Rhythmbox: not done within $limit s; is the machine busy?" >&2
  exit 1
}
