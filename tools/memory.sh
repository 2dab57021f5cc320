#!/usr/bin/env bash
# Runs the fuzzer's harnesses over the kept corpus, and then at random for so many seconds each (10), under
# the memory sanitizer: what is read before it was written fails.
#   tools/memory.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-10}"
[[ "$seconds" =~ ^[0-9]+$ ]] || { echo "usage: tools/memory.sh [SECONDS]" >&2; exit 2; }
tools/setup.sh checks
cmake --preset memory > /dev/null
cmake --build --preset memory -- -j "${ORV2_JOBS:-$(nproc)}"
# Comparisons by the run-time's own routines look at texts that it wrote itself.
export MSAN_OPTIONS=allocator_may_return_null=1:max_allocation_size_mb=256:intercept_memcmp=0:intercept_strlen=0 LC_ALL=C.UTF-8
for harness in build/memory/bin/*_fuzz; do
  name="$(basename "$harness" _fuzz)"
  mkdir -p "build/memory/corpus/$name" build/memory/found
  echo "$name"
  "$harness" -detect_leaks=0 -timeout=60 -rss_limit_mb=4000 -max_len=512 -max_total_time="$seconds" -verbosity=0 -print_final_stats=1 \
    -artifact_prefix="build/memory/found/$name-" \
    "build/memory/corpus/$name" "fuzz/corpus/$name" 2>&1 | sed -nE '/^INFO|^#|dictionary|Uses:/!p'
done
