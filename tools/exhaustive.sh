#!/usr/bin/env bash
# Sets up, builds and goes through every case of what has few enough:
#
#   tools/exhaustive.sh                 whole, but of what takes hours the part of this night
#   tools/exhaustive.sh CHECK...|all    these, whole; tests/exhaustive/README.md tells them
#   tools/exhaustive.sh ... --part K/N  the K-th part of N
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh build
cmake --preset release > /dev/null
cmake --build --preset release --target exhaustive
if [ $# -eq 0 ]; then
  set -- all --night "$(($(date +%s) / 86400))"
fi
exec build/release/bin/exhaustive "$@"
