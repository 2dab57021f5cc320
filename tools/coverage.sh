#!/usr/bin/env bash
# Line and branch coverage of one room's sources by that room's tests, such as
# `tools/coverage.sh plane`: the figures a file, and each line and branch that
# no test reaches. Edges that only an exception takes are left out.
set -euo pipefail
cd "$(dirname "$0")/.."
room="${1:?usage: tools/coverage.sh ROOM}"
build=build/coverage
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_C_FLAGS="--coverage -O0" -DCMAKE_CXX_FLAGS="--coverage -O0" > /dev/null
# The count of one run: what earlier runs left behind is dropped.
find "$build" -name '*.gcda' -delete
cmake --build "$build" --target "${room}_tests" -- -j "$(nproc)" | tail -n 1
timeout 600 "$build/bin/${room}_tests" --gtest_brief=1
objects="$build/CMakeFiles/orv2_geo_objects.dir/orv2_geo/$room"
python3 - "$room" "$objects"/*.cpp.gcda << 'PYTHON'
import json
import pathlib
import subprocess
import sys

room, counts = sys.argv[1], sys.argv[2:]


def share(taken, all_of_them):
    percent = 100.0 * taken / all_of_them if all_of_them else 100.0
    return f"{taken}/{all_of_them} {percent:5.1f} %"


def reports():
    for count in counts:
        command = ["gcov", "--branch-probabilities", "--branch-counts", "--demangled-names",
                   "--json-format", "--stdout", count]
        output = subprocess.run(command, check=True, capture_output=True, text=True).stdout
        for line in output.splitlines():
            yield from json.loads(line)["files"]


total = [0, 0, 0, 0]
missed = []
for report in reports():
    path = pathlib.Path(report["file"])
    if path.suffix != ".cpp" or path.parent.name != room:
        continue
    source = path.read_text(encoding="utf-8").splitlines()
    figures = [0, 0, 0, 0]
    for line in report["lines"]:
        text = source[line["line_number"] - 1].strip()
        where = f"orv2_geo/{room}/{path.name}:{line['line_number']}"
        figures[0] += line["count"] > 0
        figures[1] += 1
        if line["count"] == 0:
            missed.append(f"{where}: line not reached: {text}")
        branches = [branch for branch in line["branches"] if not branch["throw"]]
        for number, branch in enumerate(branches):
            figures[2] += branch["count"] > 0
            figures[3] += 1
            if branch["count"] == 0:
                missed.append(f"{where}: branch {number} of {len(branches)} not taken: {text}")
    total = [a + b for a, b in zip(total, figures)]
    print(f"{path.name:28} lines {share(*figures[:2]):18} branches {share(*figures[2:])}")
print(f"{'all':28} lines {share(*total[:2]):18} branches {share(*total[2:])}")
print(*missed, sep="\n")
PYTHON
