#!/usr/bin/env bash
# Fails when a folder includes from one above it or beside it. Floors, from the ground up:
set -euo pipefail
cd "$(dirname "$0")/.."
floors=(foundation platform musicapp sound library dupes decisions cleanup replaylist history changes ui cli app)
windows=(parts libraries changes choices result)
applications=(document folder mpd rhythmbox scripted strawberry)

faults=0
# deny REASON INCLUDED FILE...: none of the files may include what the expression fits.
deny() {
  if (($# > 2)) && grep -nHE "^#include $2" "${@:3}"; then
    echo "  ^ $1" >&2
    faults=1
  fi
}
sources() { git ls-files -co --exclude-standard "$@" | grep -E '\.(h|cpp)$'; }
either() { (IFS='|'; echo "($*)"); }

for i in "${!floors[@]}"; do
  deny "${floors[i]}/ may include only what lies below it" \
    "\"$(either "${floors[@]:i+1}" tests bench tools)/" $(sources "${floors[i]}")
done

# Applications know nothing of each other, but that scripted ones are given library documents, and
# nothing above their folders does but their table.
deny "musicapp/ may include nothing of its folders" '"musicapp/[a-z]+/' \
  $(sources musicapp | grep -E '^musicapp/[^/]*$' | grep -v '/applications.cpp$')
for folder in audio "${applications[@]}"; do
  others=$(printf '%s\n' "${applications[@]}" | grep -vx "$folder")
  [[ $folder != scripted ]] || others=$(grep -vx document <<<"$others")
  deny "musicapp/$folder/ may include no other application" "\"musicapp/$(either $others)/" \
    $(sources "musicapp/$folder")
done

# Two programs stand above the core: the command line drives no windows.
deny "cli/ may include nothing of the windows" '"(ui|app)/' $(sources cli)
deny "ui/models/ may include nothing of ui/" '"ui/[^/]*"' $(sources ui/models)
deny "app/controller/ may include nothing of the windows" \
  "\"app/([^/]*\"|$(either "${windows[@]}")/)" $(sources app/controller)
# The parts of the main window, from the ground up, and all that puts them together.
for i in "${!windows[@]}"; do
  deny "app/${windows[i]}/ may include only what lies below it" \
    "\"app/([^/]*\"|$(either "${windows[@]:i+1}")/)" $(sources "app/${windows[i]}")
done

# Only these folders see the toolkit; the others hold logic that has to work without windows.
deny "only resources/, ui/qt/, app/ and their tests may include the toolkit, app/controller/ not" \
  '(<Q[A-Z][A-Za-z]*>|"(ui/qt|resources)/)' \
  $(sources . | grep -vE '^(tests/)?(resources|ui/qt)/|^tests/app/|^app/' ; sources app/controller)
exit $faults
