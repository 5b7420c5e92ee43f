#!/usr/bin/env bash
# Configures and builds one preset. Usage: tools/build.sh PRESET [TARGET ...]
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift
echo "== Building ($preset)"
cmake --preset "$preset" >"/tmp/kestrel-configure.$$" 2>&1 || {
  cat "/tmp/kestrel-configure.$$" >&2
  rm -f "/tmp/kestrel-configure.$$"
  echo "Configuring failed; the reason stands above." >&2
  exit 1
}
rm -f "/tmp/kestrel-configure.$$"
cmake --build --preset "$preset" ${*:+--target "$@"} || {
  echo "The build failed; the first error above says why." >&2
  exit 1
}
