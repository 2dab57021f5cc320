#!/bin/sh
# The package of a wheel, and the package's own tests, under one version of Python.
#   version_test.sh PYTHON UNPACKED_WHEEL
set -eu
python=$1 wheel=$2
here=$(cd "$(dirname "$0")" && pwd)

"$python" -c 'import sys; print("Python", sys.version.split()[0], "at", sys.executable)'

# Every function that the core asks of Python is looked for at once.
env -i LD_BIND_NOW=1 PYTHONPATH="$wheel" PYTHONDONTWRITEBYTECODE=1 "$python" -c 'import orv2_geo'
env -i PYTHONPATH="$wheel" PYTHONDONTWRITEBYTECODE=1 "$python" "$here/smoke.py" "$wheel"

cd "$here/../../python"
for module in test_*.py; do
  case "$module" in
    test_torture* | test_differential* | test_help* | test_examples*)
      # The long ones, and those of what no version changes.
      if [ -z "${ORV2_EVERY_MODULE:-}" ]; then
        echo "$module is left to the Python that the build found (ORV2_EVERY_MODULE=1: here too)"
        continue
      fi ;;
  esac
  echo "$module"
  "$python" -m unittest -v "${module%.py}"
done
