#!/usr/bin/env bash
# The tests of threads under the thread sanitizer: many threads at once with every member and with
# forms, things of other threads, ends of threads, fork, loading and unloading. A race fails.
#   tools/threads.sh [SECONDS]    the whole again and again for so many seconds (once)
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-0}"
[[ "$seconds" =~ ^[0-9]+$ ]] || { echo "usage: tools/threads.sh [SECONDS]" >&2; exit 2; }
tools/setup.sh build
cmake --preset tsan > /dev/null
cmake --build --preset tsan -- -j "${ORV2_JOBS:-$(nproc)}"
# The sanitizer wants its own places in memory: without random ones, whatever the system's are.
fixed=(setarch "$(uname -m)" --addr-no-randomize)
"${fixed[@]}" true 2> /dev/null || fixed=()
end=$((SECONDS + seconds))
until
  "${fixed[@]}" ctest --preset tsan || exit
  [ "$SECONDS" -ge "$end" ]
do :; done
