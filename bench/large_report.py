#!/usr/bin/env python3
"""Prints what the report of a large survey takes beside a sort of its lines by X, from one run.

usage: large_report.py SURVEY_REPORT MAKE_LARGE_SURVEY [POINTS]

Both read the file; the report writes a page, drawings, a CAD drawing and tables. They run in
turn; medians are compared.
"""
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

ROUNDS = 5


def seconds(command, environment):
    start = time.perf_counter()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, env=environment)
    return time.perf_counter() - start


def main():
    program, make = sys.argv[1:3]
    points = int(sys.argv[3]) if len(sys.argv) > 3 else 10**6
    plain = {**os.environ, "LC_ALL": "C"}
    with tempfile.TemporaryDirectory() as room:
        survey = pathlib.Path(room) / "large.csv"
        subprocess.run([sys.executable, "-B", make, str(points), survey], check=True)
        report = [program, survey, "-o", pathlib.Path(room) / "out"]
        peer = ["sort", "--parallel=1", "-t,", "-k2,2g", "-o", pathlib.Path(room) / "sorted", survey]
        times = [(seconds(report, plain), seconds(peer, plain)) for _ in range(ROUNDS)]
    ours, theirs = (statistics.median(column) for column in zip(*times))
    print(f"report of {points} points, beside sort by X: {ours:.2f} s, {theirs:.2f} s, "
          f"ratio {ours / theirs:.2f} (target 6 s)")


if __name__ == "__main__":
    main()
