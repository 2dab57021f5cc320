#!/usr/bin/env bash
# Sets up, builds and runs the survey report on the sample survey.
set -euo pipefail
cd "$(dirname "$0")/.."
{
  tools/setup.sh build
  cmake --preset release -DORV2_BUILD_TESTS=OFF -B build/report
  cmake --build build/report
} > build-report.log 2>&1 || { cat build-report.log; exit 1; }
rm -f build-report.log
build/report/bin/survey_report "${@:-examples/survey_report/sample_survey.csv}"
