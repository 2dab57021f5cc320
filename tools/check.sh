#!/usr/bin/env bash
# Formats and lint: clang-format on every source file and, unless only the format
# is asked for, clang-tidy and cppcheck on those of the library, which needs the
# compile commands of a build.
#   tools/check.sh [format | BUILD_FOLDER [quick]]
# Quick looks at the folders that the last six commits touched, and leaves out the analysis of
# paths, which takes as long again.
# The folder of a build for Windows brings what belongs to Windows alone.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh checks
git ls-files '*.cpp' '*.h' '*.hpp' '*.c' | xargs clang-format --dry-run --Werror
[ "${1:-}" = format ] && exit 0
database="${1:-build/release}"
touched=.
checks=()
if [ "${2:-}" = quick ]; then
  checks=(--checks=-clang-analyzer-*)
  if git rev-parse --quiet --verify HEAD~6 > /dev/null; then
    touched="^($(git diff --name-only HEAD~6 | xargs -r dirname | sort -u | paste -sd '|'))/[^/]*$"
  fi
fi

# What the database builds: the module for the screen where it is built, the system's own
# rooms for the system that it is for.
if grep -q w64-mingw32 "$database/compile_commands.json"; then
  rooms='orv2_geo/(com|platform/windows|ui/win32)/'
  headers="$(x86_64-w64-mingw32-g++-posix -print-file-name=include/c++)"
  for_system=(--extra-arg=--target=x86_64-w64-mingw32 --extra-arg=-Wno-unused-command-line-argument
    "--extra-arg=-isystem$headers" "--extra-arg=-isystem$headers/x86_64-w64-mingw32")
else
  rooms='(orv2_geo|python/core)/'
  for_system=()
fi
git ls-files 'orv2_geo/*.cpp' 'python/core/*.cpp' | grep -E "^$rooms" | { grep -E "$touched" || true; } | while read -r file; do
  if grep -q "/$file\"" "$database/compile_commands.json"; then echo "$file"; fi
done | xargs -r -P "$(nproc)" -n 4 clang-tidy -p "$database" --quiet "${checks[@]}" "${for_system[@]}"

# The platform is given by what the compiler defines; system headers are not looked into.
if ! grep -q w64-mingw32 "$database/compile_commands.json"; then
  git ls-files 'orv2_geo/*.cpp' | grep -vE '/(windows|com|ui)/' | xargs cppcheck --quiet --error-exitcode=1 \
    --std=c++20 --language=c++ --enable=warning,performance,portability -I . -D__x86_64__ -D__linux__ \
    --suppressions-list=tools/cppcheck_suppressions.txt
fi
