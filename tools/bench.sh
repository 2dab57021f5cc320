#!/usr/bin/env bash
# Sets up, builds and runs the benchmarks; prints ratios to named peers.
#   tools/bench.sh FILTER   only the benchmarks that match
#   tools/bench.sh          all, and writes bench/RESULTS.md with the plots of growth
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh bench
cmake --preset bench
cmake --build --preset bench
bin=build/bench/bin
# Texts are sorted as a Spanish user's.
export LC_ALL=es_ES.UTF-8

# run PROGRAM RESULT OPTION...
run() {
  "$1" --benchmark_out="$2" --benchmark_out_format=json --benchmark_enable_random_interleaving=true \
    "${@:3}" > /dev/null
}

results=()
for program in "$bin"/*_bench; do
  result="build/bench/$(basename "$program").json"
  run "$program" "$result" --benchmark_filter="${1:-.}" --benchmark_repetitions=9 --benchmark_min_time=0.05
  results+=("$result")
done
python3 bench/ratios.py "${results[@]}"
if [ $# -gt 0 ]; then exit; fi

# Five rounds of each size; the trees are left out where they take a minute. Memory is told by
# runs of their own, in order: in a random one the library that measures tells nothing of use.
growth=()
sizes='^((doubles|longs)_random(_peer)?|double_index(_std_sort|_pairs)?|strings.*|repeated_[a-z]*(_x|_sort|_grid)?)/'
for name in sorting repeated; do
  growth+=("build/bench/growth_$name.json" "build/bench/memory_$name.json")
  ORV2_GROWTH=1 run "$bin/${name}_bench" "${growth[-2]}" --benchmark_repetitions=5 \
    --benchmark_min_time=0.01 --benchmark_filter="$sizes"
  ORV2_GROWTH=1 ORV2_MEMORY=1 run "$bin/${name}_bench" "${growth[-1]}" --benchmark_min_time=0.0001 \
    --benchmark_enable_random_interleaving=false --benchmark_filter="$sizes"
done
{
  python3 bench/results.py "$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' build/bench/CMakeCache.txt)" "${results[@]}"
  printf '\n## Growth\n\nFrom a thousand elements to ten million, peers included; the exponent k of n^k fits the\n'
  printf 'times from 10,000 on. Memory is what the process takes more, its data included.\n\n'
  /usr/bin/python3 bench/growth.py "${growth[@]}" bench/plots
  printf '## Loading, reports and Python\n\n```\n'
  "$bin/load_time" build/bench/lib/liborv2_geo.so
  python3 bench/large_report.py "$bin/survey_report" tests/survey_report/make_large_survey.py
  PYTHONPATH=build/bench/python python3 bench/python_call.py build/bench/lib/liborv2_geo.so build/bench/lib/python_loop.so
  printf '```\n'
} > build/bench/RESULTS.md
cp build/bench/RESULTS.md bench/RESULTS.md
tail -n 40 bench/RESULTS.md
