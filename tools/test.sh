#!/usr/bin/env bash
# Sets up, builds and passes all tests. `tools/test.sh asan` does so under the
# address and undefined-behaviour sanitizers; any other preset's name works too.
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-release}"
tools/setup.sh build
cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset" -j "$(nproc)"
