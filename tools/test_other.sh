#!/usr/bin/env bash
# Builds for another processor and runs the rooms' tests there (arm64 and s390x, which has the
# highest byte first, under qemu): whether every member gives the same bits.
#
#   tools/test_other.sh arm64|x86|s390x
set -euo pipefail
cd "$(dirname "$0")/.."
preset="linux-${1:?arm64, x86 or s390x}"
tools/setup.sh build
tools/setup.sh cross
cmake --preset "$preset" -DORV2_WARNINGS_ARE_ERRORS="${ORV2_WARNINGS_ARE_ERRORS:-OFF}"
cmake --build --preset "$preset"
ctest --preset "$preset" -j "$(nproc)"
