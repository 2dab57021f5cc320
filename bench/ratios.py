#!/usr/bin/env python3
"""Prints each subject of targets.csv as a ratio to its peer, from one run.

usage: ratios.py RESULT.json...

The results are Google Benchmark's JSON with repetitions; medians are compared.
A target of "report" only reports. A peer may be a number: a time itself.
A benchmark whose answer was wrong fails the whole; so does one that counts its "answers" and
has others than a peer that counts them too.
"""
import csv
import json
import math
import pathlib
import statistics
import sys

TARGETS = pathlib.Path(__file__).with_name("targets.csv")


# Sums of answers may differ in their last digits.
CLOSE = 1e-9


def medians(paths):
    times = {}
    answers = {}
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
                    if "answers" in run:
                        answers[run["run_name"]] = run["answers"]
    errors.update(disagreements(answers))
    return {name: statistics.median(values) for name, values in times.items()}, errors


def disagreements(answers):
    for row in targets():
        ours, theirs = (answers.get(row[who]) for who in ("subject", "peer"))
        if ours is not None and theirs is not None and not math.isclose(ours, theirs, rel_tol=CLOSE):
            yield row["subject"], f"answers {ours}, and {row['peer']} {theirs}"


def targets():
    with open(TARGETS, encoding="utf-8", newline="") as file:
        return list(csv.DictReader(file))


def main():
    times, errors = medians(sys.argv[1:])
    missed = 0
    print(f"{'':48} {'subject':>12} {'peer':>12} {'ratio':>7}  target")
    for row in targets():
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
