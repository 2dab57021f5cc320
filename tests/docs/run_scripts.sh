#!/usr/bin/env bash
# Runs the pages' examples as scripts and compares what they print: run_scripts.sh RUNNER SERVER.
set -euo pipefail
exec python3 "$(dirname "$0")/examples_test.py" vbs "$@"
