#!/usr/bin/env bash
# Random right and wrong calls for so many seconds each (600), from C and Python at a time and then from a
# component host under Wine, whose boxes are lines of build/windows-x64/boxes_of_soak.log. Memory, handles and
# the time of a call must stay as they are; tests/soak/steady.py has the bounds:
#
#   tools/soak.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-600}"
tools/setup.sh checks
tools/setup.sh windows
cmake --preset release > /dev/null
cmake --build --preset release --target soak
cmake --preset windows-x64 > /dev/null
cmake --build --preset windows-x64 --target orv2_geo com_tests

build="$PWD/build/release"
steady() { python3 tests/soak/steady.py "$@"; }
from_python() {
  PYTHONPATH="$build/python" ORV2_TEST_LIBRARY="$build/lib/liborv2_geo_testing.so" PYTHONDONTWRITEBYTECODE=1 \
    steady python python3 tests/soak/python_soak.py "$seconds"
}
from_components() {
  env -u DISPLAY ORV2_SOAK_SECONDS="$seconds" python3 tests/soak/steady.py components \
    tools/wine.sh build/windows-x64/bin/com_tests.exe --gtest_filter=RandomCalls.LeaveTheProcessAsItIs \
    2> build/windows-x64/boxes_of_soak.log
}

failed=0
from_python &
steady c "$build/bin/c_soak" "$seconds" || failed=1
wait $! || failed=1
from_components || failed=1
exit $failed
