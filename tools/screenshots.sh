#!/usr/bin/env bash
# Starts the desktop program on a screen that nobody sees, drives it with real keys, and writes a
# picture of each state. Usage: tools/screenshots.sh PROGRAM LIBRARY.xml FOLDER
# Needs the packages of the group "screen" (tools/install_packages.sh).
set -euo pipefail

shot() { sleep 1.5; import -window root "$pictures/$name-$1.png"; }
maximize() {
  local window
  window=$(xdotool search --onlyvisible --name Kestrel | tail -1)
  xdotool windowmove "$window" 0 0 windowsize "$window" 100% 100%
  sleep 1
}
press() { xdotool key --delay 60 "$@"; sleep 0.7; }

steps_empty() { sleep 4; shot welcome; press alt+m; shot connect; press Escape; }
steps_light() {
  shot ready
  press ctrl+d; shot result
  press Down Down; shot why
  press Menu; shot context; press Escape
  press ctrl+f; xdotool type club; shot filtered; press Escape
  press ctrl+f; xdotool type zzz; shot hidden; press Escape
  press alt+l; shot menu; press Escape
  press ctrl+comma; shot settings; press Escape
  touch -d tomorrow "$library"; sleep 6; shot changed; press F5; sleep 2
  press shift+Down shift+Down ctrl+l; shot selection; press alt+F4
  press F1; shot legend; press Escape
  press alt+r y; shot add; press Escape
  press alt+v l; shot log; press alt+F4
  press alt+h a; shot about; press Escape
  press alt+p Tab Down Down Down Down; sleep 2; shot playlists; press ctrl+shift+m; sleep 2
  press alt+c; press ctrl+d; sleep 2
  press ctrl+shift+d; sleep 2; shot rules; press Escape
  press ctrl+shift+Delete; sleep 2; shot remove; press Escape
  press ctrl+e; shot export; press Escape
  press ctrl+r; shot replaylist; press Escape
  press ctrl+Delete; shot trash; press Escape
  press ctrl+u; shot cleanup; press alt+d; sleep 5; shot cleaned; press Return
  press ctrl+h; shot history; press alt+u; shot undo; press Escape Escape
}
steps_loading() { sleep 1; import -window root "$pictures/loading-page.png"; }
steps_elsewhere() { press ctrl+d; shot result; }
# What the table shows before anything in it was chosen, in a window of the size that is not the
# screen's.
steps_untouched() { shot result; }
# The field that would find more is named; a search that takes its time can be stopped.
steps_nothing() { press ctrl+d; sleep 2; shot found; }
steps_error() { shot message; }
# The states that every size, language and appearance is looked at in.
steps_result() {
  press ctrl+d; press Down Down; shot result
  press ctrl+shift+d; sleep 2; shot rules; press Escape
  press ctrl+shift+Delete; sleep 2; shot remove; press Escape
  press ctrl+comma; shot settings; press Escape
  press ctrl+r; shot replaylist; press Escape
}
# From light to dark and back while it runs.
steps_switched() { press ctrl+d; press Down Down; press alt+v p a; shot dark; press alt+v p l; shot light; }

# This script again, on its screen: --session NAME PROGRAM PICTURES [ARGUMENT ...]
if [[ ${1:-} == --session ]]; then
  name=$2 program=$3 pictures=$4
  shift 4
  openbox >/dev/null 2>&1 &
  manager=$!
  sleep 1
  "$program" "$@" 2>"$pictures/$name.log" &
  kestrel=$!
  timeout 60 xdotool search --sync --onlyvisible --name Kestrel >/dev/null
  [[ $name == loading ]] || sleep 2
  # Windows of these names fill their screen.
  case $name in
    *wide | large | small* | switched) maximize ;;
  esac
  if [[ $(type -t "steps_$name") == function ]]; then "steps_$name"; else steps_result; fi
  kill "$kestrel" "$manager"
  wait
  exit 0
fi

[[ $# == 3 ]] || { sed -n 2,4p "$0" >&2; exit 2; }
program=$(realpath "$1") library=$(realpath "$2") script=$(realpath "$0")
mkdir -p "$3"
pictures=$(realpath "$3")

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME=$home XDG_CONFIG_HOME=$home/config XDG_DATA_HOME=$home/data
export XDG_STATE_HOME=$home/state XDG_RUNTIME_DIR=$home
mkdir -p "$home/config/Kestrel"

# on_screen NAME SIZE [ARGUMENT ...]
on_screen() {
  xvfb-run -a -s "-screen 0 ${2}x24" "$script" --session "$1" "$program" "$pictures" "${@:3}"
}
settings=$home/config/Kestrel/settings.ini
mkdir -p "$home/Music"
cp "$library" "$home/Music/Exported.xml"
cp "$library" "$home/Library.xml"  # playlists are changed
export library=$home/Library.xml
maker=$(dirname "$program")/kestrel-make-library
on_screen empty 1400x900 --no-open
"$maker" --tracks 500000 "$home/Large.xml"
on_screen loading 1400x900 "$home/Large.xml"
rm "$home/Large.xml"
on_screen light 1400x900 "$library"
LANGUAGE=de on_screen german 1400x900 "$library"
printf '[settings]\nappearance=dark\n' >"$settings"
on_screen dark 1400x900 "$library"
on_screen dark-wide 2560x1440 "$library"
rm "$settings"
on_screen switched 1400x900 "$library"
QT_SCALE_FACTOR=2 on_screen large 2800x1800 "$library"
on_screen wide 2560x1440 "$library"
on_screen small 1024x700 "$library"
LANGUAGE=de on_screen small-german 1024x700 "$library"
sed 's#<key>Location</key><string>file://[^<]*/#&away/#' "$library" >"$home/Moved.xml"
on_screen elsewhere 1600x960 "$home/Moved.xml"
printf '[settings]\ngetDupesAtStartup=true\nopenLastLibrary=true\n' >"$settings"
on_screen untouched 1280x820 "$library"
rm "$settings"
"$maker" --tracks 40 --duplicates 0 "$home/Single.xml"
on_screen nothing 1400x900 "$home/Single.xml"
printf '<plist><dict><key>Tracks</key><oops>' >"$home/broken.xml"
on_screen error 1400x900 "$home/broken.xml"
ls "$pictures"
