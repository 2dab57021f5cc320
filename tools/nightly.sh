#!/usr/bin/env bash
# What takes too long for each change, one after the other; a step that fails does not stop the
# others. It takes some hours, and the rights of the machine's administrator for the minimal root.
#
#   tools/nightly.sh [STEP...]
set -uo pipefail
cd "$(dirname "$0")/.."
failed=()
step() {  # NAME COMMAND...
  local name=$1
  shift
  if [ ${#wanted[@]} -ne 0 ] && [[ " ${wanted[*]} " != *" $name "* ]]; then return; fi
  local start=$SECONDS
  echo "== $name"
  "$@" || failed+=("$name")
  echo "== $name: $((SECONDS - start)) s"
}
lint() {
  cmake --preset bench > /dev/null && cmake --build --preset bench && tools/check.sh build/bench &&
    cmake --preset windows-x64 > /dev/null && tools/check.sh build/windows-x64
}
packages() { tools/package.sh deb && tools/package_root.sh; }
page() {
  cmake --preset release > /dev/null && cmake --build --preset release --target survey_report &&
    (cd build/release/tests/survey_report/page &&
      SURVEY_REPORT="$PWD/../../../bin/survey_report" CHROMIUM="$(command -v chromium)" \
        node "$OLDPWD/tests/survey_report/page/large.mjs")
}
ten_million() {
  cmake --preset release > /dev/null && cmake --build --preset release --target survey_report &&
    python3 -B tests/survey_report/large_survey_test.py build/release/bin/survey_report 10000000
}
wanted=("$@")
step lint lint
step packages packages
step page page
step ten_million ten_million
step arm64 tools/test_other.sh arm64
step x86 tools/test_other.sh x86
step s390x tools/test_other.sh s390x
step windows_x64 tools/test_windows.sh x64
step windows_x86 tools/test_windows.sh x86
step integers tools/test.sh integers
step memory tools/memory.sh 60
step threads tools/threads.sh
step valgrind tools/valgrind.sh
step fuzz tools/fuzz.sh 600
step exhaustive tools/exhaustive.sh
step soak tools/soak.sh
step bench tools/bench.sh
if [ ${#failed[@]} -ne 0 ]; then
  echo "Failed: ${failed[*]}"
  exit 1
fi
echo "All passed"
