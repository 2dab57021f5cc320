#!/usr/bin/env bash
# Sets up, builds and runs the survey report: with the words behind it, or else on the sample
# survey, into build/sample_report. What is being done is told on standard error.
set -euo pipefail
caller=$PWD
cd "$(dirname "$0")/.."
log=build-report.log
say() { echo "$@" >&2; }

# Of ninja's lines the last step of every twenty.
steps() { sed -un 's|^\[\([0-9]*[02468]0/[0-9]*\)\].*|  \1 steps|p' >&2; }

build() {
  say "Looking for a compiler and the rest, installing what is missing"
  tools/setup.sh build > "$log"
  say "Configuring"
  cmake --preset release -DORV2_BUILD_TESTS=OFF \
    -DORV2_WARNINGS_ARE_ERRORS="${ORV2_WARNINGS_ARE_ERRORS:-OFF}" -B build/report >> "$log" 2>&1
  say "Building (the first time a minute or two)"
  cmake --build build/report 2>&1 | tee -a "$log" | steps
}
# A function in a condition goes on after a failure; a shell of its own does not.
export -f build say steps
export log
bash -euo pipefail -c build || { cat "$log" >&2; exit 1; }
rm -f "$log"
if [ $# -ne 0 ]; then
  program=$PWD/build/report/bin/survey_report
  cd "$caller"
  exec "$program" "$@"
fi
build/report/bin/survey_report examples/survey_report/sample_survey.csv -o build/sample_report
say "The sample survey's report, for a browser: build/sample_report/index.html"
