#!/usr/bin/env bash
# Registers the component server and runs the client script as its users do, in a registry of its own:
#
#   run_client.sh RUNNER SERVER SCRIPT
#
# RUNNER is tools/wine.sh or tools/wine32.sh. A script's engine may end without a word and with success
# where the script does not compile or is given up half-way, so the last line counts as well as the status;
# that both tell of a failure is tried too, and that nothing stays registered.
set -euo pipefail
runner=$1 server=$2 script=$3
least=327

cd "$(dirname "$script")"
export LC_ALL=C.UTF-8
output=$(mktemp)
register() { "$runner" regsvr32 /s "$@" "$server"; }
trap 'rm -f "$output"; register /u || true' EXIT

fail() {
  echo "run_client: $1" >&2
  exit 1
}
# The status of a run, and in $output what it said.
run() {
  local status=0
  "$runner" cscript //nologo "$(basename "$script")" "$@" > "$output" || status=$?
  tr -d '\r' < "$output" > "$output.lines"
  mv "$output.lines" "$output"
  cat "$output"
  return $status
}

register
run || fail "the script failed"
passed=$(sed -n '$s/^all \([0-9]*\) checks passed$/\1/p' "$output")
if [ "${passed:-0}" -lt "$least" ]; then fail "${passed:-no} checks passed, at least $least were to"; fi

status=0
run broken || status=$?
[ "$status" -eq 1 ] || fail "a broken expectation ended with status $status"
grep -q '^failed: a broken expectation' "$output" || fail "a broken expectation is not told of"
run aborted || true
if grep -q 'checks passed' "$output"; then fail "a script that was given up passed"; fi

register /u
run unregistered || fail "the script failed without registration"
grep -qx 'nobody has registered it' "$output" || fail "something stayed registered"
echo "run_client: everything as expected"
