#!/usr/bin/env bash
# Plain C programs and a call of every member under valgrind: memory that is read before it is
# written, used after it was given back, or lost fails. Run it on a release build.
#   tools/valgrind.sh [BUILD_FOLDER]
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh checks
build="${1:-build/release}"
watched=(valgrind --quiet --error-exitcode=9 --leak-check=full "--show-leak-kinds=definite,indirect"
  "--errors-for-leak-kinds=definite,indirect" --track-origins=yes)
export LC_ALL=C.UTF-8
run() {
  echo "$*"
  "${watched[@]}" "$@"
}
run "$build/bin/plain_c_test"
run "$build/bin/vectors_tests" --gtest_brief=1 --gtest_filter='Vectors.CallsDoTheSameAgain'
echo "valgrind has nothing to say"
