#!/usr/bin/env bash
# Sets up, builds and runs the benchmarks; prints ratios to named peers.
# `tools/bench.sh FILTER` runs only the benchmarks that match.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh bench
cmake --preset bench
cmake --build --preset bench
results=()
for program in build/bench/bin/*_bench; do
  result="build/bench/$(basename "$program").json"
  "$program" --benchmark_filter="${1:-.}" --benchmark_repetitions=9 --benchmark_min_time=0.05 \
    --benchmark_enable_random_interleaving=true \
    --benchmark_out="$result" --benchmark_out_format=json > /dev/null
  results+=("$result")
done
python3 bench/ratios.py "${results[@]}"
python3 bench/large_report.py build/bench/bin/survey_report tests/survey_report/make_large_survey.py
PYTHONPATH=build/bench/python python3 bench/python_call.py build/bench/lib/liborv2_geo.so build/bench/lib/python_loop.so
