#!/usr/bin/env bash
# Builds the fuzzer's harnesses and runs each over its kept corpus and then at random:
#   tools/fuzz.sh [SECONDS]       for so many seconds in all (60), as for every change
#   tools/fuzz.sh long [INPUTS]   until so many inputs in all (20000000) are tried, two at a time
#   tools/fuzz.sh keep            puts what reaches something new into the kept corpus
# A finding fails; its input is in build/fuzz/found/ under the name of its harness. What is new in a
# long run stays in build/fuzz/corpus/, where the next one goes on.
set -euo pipefail
cd "$(dirname "$0")/.."

# Each harness with its longest input, the locale of its user and its part of the work.
#  harness     bytes locale       of 20
runs=(
  "catalogue   512   C.UTF-8      6"
  "engine      256   C.UTF-8      3"
  "text_sorts  256   es_ES.UTF-8  2"
  "point_file  512   C.UTF-8      2"
  "sorts       256   C.UTF-8      2"
  "plane       128   C.UTF-8      2"
  "text_sorts  256   C.UTF-8      1"
  "numbers     128   C.UTF-8      1"
  "numbers     128   es_ES.UTF-8  1"
)
shares=20
at_once=2

usage() {
  sed -n '3,5s/^# *//p' "$0" >&2
  exit 2
}
mode=seconds
amount="${1:-60}"
case "$amount" in
  long) mode=inputs; amount="${2:-20000000}" ;;
  keep) mode=keep; amount=0 ;;
esac
[[ "$amount" =~ ^[0-9]+$ ]] || usage

tools/setup.sh checks
cmake --preset fuzz > /dev/null
cmake --build --preset fuzz -- -j "$at_once"
build=build/fuzz
mkdir -p "$build/found" "$build/log"
# Texts of any length are asked for: what there is no memory for is a failure, not the end.
export ASAN_OPTIONS="allocator_may_return_null=1:detect_leaks=0:malloc_context_size=5"
export UBSAN_OPTIONS=print_stacktrace=1

# One harness, with its options and folders.
harness() {
  local name="$1" locale="$2"
  shift 2
  LC_ALL="$locale" "$build/bin/${name}_fuzz" -detect_leaks=0 -entropic=0 -len_control=0 -timeout=60 \
    -artifact_prefix="$build/found/${name}-" -print_final_stats=1 "$@"
}

if [ "$mode" = keep ]; then
  for name in $(printf '%s\n' "${runs[@]}" | awk '{ print $1 }' | sort -u); do
    mkdir -p "$build/corpus/$name" "$build/kept" "fuzz/corpus/$name"
    rm -rf "$build/kept/$name"
    mkdir "$build/kept/$name"
    harness "$name" C.UTF-8 -set_cover_merge=1 "$build/kept/$name" "fuzz/corpus/$name" "$build/corpus/$name" 2> "$build/log/keep_$name"
    rm -rf "fuzz/corpus/$name"
    cp -r "$build/kept/$name" "fuzz/corpus/$name"
  done
  du -sh --apparent-size fuzz/corpus
  exit 0
fi

# One row of the table: prints what was tried, or the finding.
run() {
  local name bytes locale share limit log corpus
  read -r name bytes locale share <<< "$1"
  log="$build/log/${name}_$locale"
  if [ "$mode" = seconds ]; then
    # The time is that of all processors together.
    limit="-max_total_time=$((amount * at_once * share / shares + 1))"
  else
    limit="-runs=$((amount * share / shares))"
  fi
  corpus="$build/corpus/$name"
  if [ "$mode" = seconds ]; then
    corpus="$build/passing/${name}_$locale"
    rm -rf "$corpus"
  fi
  mkdir -p "$corpus"
  if ! harness "$name" "$locale" -max_len="$bytes" "$limit" "$corpus" "fuzz/corpus/$name" > "$log" 2>&1; then
    echo "$name under $locale: a finding"
    grep -v -E '^(#[0-9]|INFO|\s*NEW_FUNC)' "$log" | head -60
    return 1
  fi
  awk -v row="$name $locale" '
    /number_of_executed_units/ { inputs = $2 }
    /average_exec_per_sec/ { rate = $2 }
    / cov: / { for (i = 1; i < NF; ++i) if ($i == "cov:") ways = $(i + 1) }
    END { split(row, of); printf "%-11s %-12s %10d inputs %7d a second %6d ways\n", of[1], of[2], inputs, rate, ways }
  ' "$log"
}

export -f run harness
export build mode amount shares at_once
printf '%s\0' "${runs[@]}" | xargs -0 -P "$at_once" -I{} bash -euo pipefail -c 'run "$1"' _ {}
