#!/usr/bin/env bash
# Sets up, builds the component server for Windows and passes its tests under Wine:
#
#   tools/test_windows.sh x64|x86           everything
#   tools/test_windows.sh x64|x86 --quick   the server and its clients; with x64 also the
#                                           system's services and some of the screen's
#
# What the members do on this machine, with which the clients compare, comes from the
# preset `release`.
set -euo pipefail
cd "$(dirname "$0")/.."
word="${1:-x64}"
preset="windows-$word"
tools/setup.sh windows

if [ ! -e build/release/vectors.txt ]; then
  cmake --preset release -DORV2_WARNINGS_ARE_ERRORS="${ORV2_WARNINGS_ARE_ERRORS:-OFF}"
  cmake --build --preset release --target vectors
fi
tools/package.sh windows
cmake --preset "$preset" -DORV2_WARNINGS_ARE_ERRORS="${ORV2_WARNINGS_ARE_ERRORS:-OFF}"

# The screen has a second try, as in tools/test.sh.
run_tests() {
  ctest --preset "$preset" -j "$(nproc)" -R "$1" -E '^win32_screen'
  if [ "$word" = x64 ]; then
    ctest --preset "$preset" -j "$(nproc)" -R "$2" --repeat until-pass:2
  fi
}

if [ "${2:-}" != --quick ]; then
  cmake --build --preset "$preset"
  run_tests . '^win32_screen_[0-9]'
  exit
fi

targets=(orv2_geo com_tests early_bound component_client)
tests='wine|com.*|early_bound.*|example.*|packaging_zip'
if [ "$word" = x64 ]; then
  targets+=(platform_tests ui_win32_tests screen_host)
  tests+='|wine_es|wine_96|platform.*|ui_win32'
fi
cmake --build --preset "$preset" --target "${targets[@]}"
run_tests "^($tests)\$" '^win32_screen_first'
