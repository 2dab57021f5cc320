#!/usr/bin/env bash
# Runs the examples for Windows and compares what they print, in a registry of their own:
#
#   run_examples.sh RUNNER SERVER client PROGRAM
#   run_examples.sh RUNNER SERVER report
#
# RUNNER is tools/wine.sh or tools/wine32.sh. Each is also tried where it must give up.
set -euo pipefail
runner=$1 server=$2 example=$3
examples=$(cd "$(dirname "$0")/../../../examples/windows" && pwd)
export LC_ALL=C.UTF-8
output=$(mktemp)
register() { "$runner" regsvr32 /s "$@" "$server"; }
trap 'rm -f "$output" "$output.lines"; register /u || true' EXIT

fail() {
  echo "run_examples: $1" >&2
  cat "$output" >&2
  exit 1
}
# A run that is to end with that status; what it said is in $output.
expect() {
  local wanted=$1 status=0
  shift
  "$runner" "$@" > "$output.lines" 2>&1 || status=$?
  tr -d '\r' < "$output.lines" > "$output"
  [ "$status" -eq "$wanted" ] || fail "$* ended with status $status, not $wanted"
}
prints() { diff "$examples/$1" "$output" || fail "not what $1 says"; }
says() { grep -qF "$1" "$output" || fail "it does not say: $1"; }

client() {
  expect 0 "$1"
  prints client_output.txt
  expect 1 "$1" --registered
  says 'client: Orv2_Geo.cgeo_Algorismos is not registered'
  expect 1 "$1" no.manifest
  says 'client: the manifest cannot be used: no.manifest'
  register
  expect 0 "$1" --registered
  prints client_output.txt
}

report() {
  local script=(cscript //nologo survey_report.vbs) survey='..\survey_report\sample_survey.csv'
  cd "$examples"
  expect 3 "${script[@]}" "$survey"
  says 'the library is not registered'
  register
  expect 0 "${script[@]}" "$survey"
  prints sample_report.txt
  expect 0 "${script[@]}" "$survey" 0.05 LINDERO
  prints sample_report.txt
  expect 2 "${script[@]}" no.csv
  says 'there is no file no.csv'
  expect 2 "${script[@]}" README.md
  says 'holds fewer than two points'
  expect 2 "${script[@]}" "$survey" near
  says 'the tolerance is no number'
  expect 2 "${script[@]}"
  says 'usage:'
}

register /u
"$example" "${@:4}"
