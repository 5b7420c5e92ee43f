#!/usr/bin/env bash
# Configures and builds one preset. Usage: tools/build.sh PRESET [-DNAME=VALUE ...] [TARGET ...]
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift
settings=()
while [[ ${1:-} == -D* ]]; do
  settings+=("$1")
  shift
done
echo "== Building ($preset)"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
cmake --preset "$preset" "${settings[@]}" >"$log" 2>&1 || {
  cat "$log" >&2
  echo "Configuring failed; the reason stands above." >&2
  exit 1
}
cmake --build --preset "$preset" ${*:+--target "$@"} || {
  echo "The build failed; the first error above says why." >&2
  exit 1
}
