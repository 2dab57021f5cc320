#!/usr/bin/env bash
# Formats and lint, without building: clang-format on every source file, and
# clang-tidy on those of the library. Needs the compile commands of a build.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh checks
git ls-files '*.cpp' '*.h' '*.hpp' '*.c' | xargs clang-format --dry-run --Werror
database="${1:-build/release}"
rooms='^(frame|platform|angles|plane|survey|terrain|sorting|repeated|arrays|dialogs|library|c_api)/'
git ls-files '*.cpp' | grep -E "$rooms" | xargs -P "$(nproc)" -n 4 clang-tidy -p "$database" --quiet
