#!/usr/bin/env bash
# Formats and lint: clang-format on every source file and, unless only the format
# is asked for, clang-tidy on those of the library, which needs the compile
# commands of a build.
#   tools/check.sh [format | BUILD_FOLDER]
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh checks
git ls-files '*.cpp' '*.h' '*.hpp' '*.c' | xargs clang-format --dry-run --Werror
[ "${1:-}" = format ] && exit 0
database="${1:-build/release}"
# The module for the screen is looked at where it is built.
skipped='^$'
grep -q '/ui/qt/' "$database/compile_commands.json" || skipped='^orv2_geo/ui/qt/'
git ls-files 'orv2_geo/*.cpp' | grep -vE "$skipped" | xargs -P "$(nproc)" -n 4 clang-tidy -p "$database" --quiet
