#!/usr/bin/env bash
# Fails when a folder includes from one above it. Floors, from the ground up:
set -euo pipefail
cd "$(dirname "$0")/.."
floors=(foundation platform musicapp library dupes cleanup replaylist history changes ui cli app)

faults=0
for i in "${!floors[@]}"; do
  folder=${floors[i]}
  [[ -d $folder ]] || continue
  above=$(IFS='|'; echo "${floors[*]:i+1}")
  [[ -n $above ]] || continue
  if grep -rnE "^#include \"($above|tests|bench|tools)/" "$folder" --include='*.h' --include='*.cpp'; then
    echo "  ^ $folder/ may include only what lies below it" >&2
    faults=1
  fi
done

# Two programs stand above the core: the command line drives no windows.
if grep -rnE '^#include "(ui|app)/' cli --include='*.h' --include='*.cpp'; then
  echo "  ^ cli/ may include nothing of the windows" >&2
  faults=1
fi

# Only these folders see the toolkit; the others hold logic that has to work without windows.
windowed='^(tests/)?(resources|ui/qt|app)/'
if git ls-files -co --exclude-standard '*.h' '*.cpp' | grep -vE "$windowed" |
  xargs grep -nE '^#include (<Q[A-Z][A-Za-z]*>|"(ui/qt|resources)/)'; then
  echo "  ^ only resources/, ui/qt/, app/ and their tests may include the toolkit" >&2
  faults=1
fi
exit $faults
