#!/usr/bin/env python3
"""Prints each subject of targets.csv as a ratio to its peer, from one run.

usage: ratios.py RESULT.json...

The results are Google Benchmark's JSON with repetitions; medians are compared.
A target of "report" only reports. A peer may be a number: a time itself.
A benchmark whose answer was wrong fails the whole.
"""
import csv
import json
import pathlib
import statistics
import sys

TARGETS = pathlib.Path(__file__).with_name("targets.csv")


def medians(paths):
    times = {}
    errors = {}
    for path in paths:
        if pathlib.Path(path).stat().st_size == 0:
            continue  # no benchmark of that program matched the filter
        with open(path, encoding="utf-8") as file:
            for run in json.load(file)["benchmarks"]:
                if run.get("error_occurred"):
                    errors[run["run_name"]] = run.get("error_message", "")
                elif run.get("run_type") == "iteration":
                    times.setdefault(run["run_name"], []).append(run["cpu_time"])
    return {name: statistics.median(values) for name, values in times.items()}, errors


def main():
    times, errors = medians(sys.argv[1:])
    missed = 0
    print(f"{'':48} {'subject':>12} {'peer':>12} {'ratio':>7}  target")
    with open(TARGETS, encoding="utf-8", newline="") as file:
        for row in csv.DictReader(file):
            subject = times.get(row["subject"])
            peer = float(row["peer"]) if row["peer"].isdigit() else times.get(row["peer"])
            if subject is None or peer is None:
                continue
            ratio = subject / peer
            target = row["target"]
            over = target != "report" and ratio > float(target)
            missed += over
            mark = "  MISSED" if over else ""
            print(f"{row['what']:48} {subject:12.2f} {peer:12.2f} {ratio:7.2f}  {target}{mark}")
    print(f"{missed} targets missed" if missed else "all targets met")
    for name, message in errors.items():
        print(f"{name}: {message}")
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
