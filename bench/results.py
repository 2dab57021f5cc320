#!/usr/bin/env python3
"""Prints the results of one run as Markdown: a table a room, a row a piece of work.

usage: results.py COMPILER RESULT.json...

The results are Google Benchmark's JSON, one file a program, named as it is. What a row of
targets.csv calls "work beside peer" is a cell of the work's row.
"""
import collections
import datetime
import json
import pathlib
import re
import subprocess
import sys

from ratios import medians, targets

# What each program looks at. Their order is that of the tables.
ROOMS = {"call": "Calls through C", "frame": "Checked numbers and arrays", "plane": "The plane",
         "survey": "Surveying and terrain", "sorting": "Sorts", "repeated": "Repeated points",
         "arrays": "Array toolkit"}
UNITS = (("s", 1e9), ("ms", 1e6), ("µs", 1e3), ("ns", 1.0))


def time(nanoseconds):
    unit, size = next((u for u in UNITS if nanoseconds >= u[1]), UNITS[-1])
    return f"{nanoseconds / size:.3g} {unit}"


def nanoseconds_a_unit(path):
    runs = json.loads(path.read_text(encoding="utf-8"))["benchmarks"]
    return {run["run_name"]: dict(UNITS, us=1e3)[run["time_unit"]] for run in runs if "time_unit" in run}


def is_itself(peer):
    """The same formula or loop without checks."""
    return re.search(r"unchecked|plain loop|themselves|in seven statements|^itself", peer) is not None


def rows_of(path):
    """Of each work: our time, and of each peer its name, time, ratio and target."""
    times, errors = medians([path])
    if errors:
        sys.exit("\n".join(f"{name}: {message}" for name, message in errors.items()))
    units = nanoseconds_a_unit(path)
    works = collections.OrderedDict()
    for row in targets():
        if row["subject"] not in times:
            continue
        ours = times[row["subject"]] * units[row["subject"]]
        work, _, peer = row["what"].partition(" beside ")
        peers = works.setdefault((work.rstrip(","), row["subject"]), (ours, []))[1]
        if row["peer"] in times:
            theirs = times[row["peer"]] * units[row["peer"]]
            peers.append((peer or row["peer"], theirs, ours / theirs, row["target"]))
    return works


def lines(peers, tell):
    return "<br>".join(tell(*one) for one in peers)


def with_target(ratio, target):
    if target == "report":
        return f"{ratio:.2f}"
    return f"{ratio:.2f} ({'at most' if ratio <= float(target) else 'missed'} {target})"


def table(works):
    yield "| work | ours | unchecked | ratio | peer | its | ratio |"
    yield "|---|---|---|---|---|---|---|"
    for (work, _), (ours, peers) in works.items():
        cells = [work, time(ours)]
        itself = [one for one in peers if is_itself(one[0])]
        others = [one for one in peers if not is_itself(one[0])]
        cells += [lines(itself, lambda _, theirs, *__: time(theirs)),
                  lines(itself, lambda _, __, ratio, target: with_target(ratio, target)),
                  lines(others, lambda name, *_: name), lines(others, lambda _, theirs, *__: time(theirs)),
                  lines(others, lambda _, __, ratio, target: with_target(ratio, target))]
        yield f"| {' | '.join(cells)} |"


def machine():
    found = re.search(r"model name\s*:\s*(.*)", pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8"))
    return found.group(1) if found else "unknown processor"


def main():
    compiler, *results = sys.argv[1:]
    paths = {pathlib.Path(one).stem.removesuffix("_bench"): pathlib.Path(one) for one in results}
    context = json.loads(next(iter(paths.values())).read_text(encoding="utf-8"))["context"]
    version = subprocess.run([compiler, "--version"], check=True, capture_output=True, text=True).stdout
    day = datetime.datetime.fromisoformat(context["date"]).date()
    print(f"# Results\n\nWritten by `tools/bench.sh` on {day}: {machine()}, {context['num_cpus']} processors, "
          f"{version.splitlines()[0]}. Medians of rounds in one run; the machine is shared, so that "
          "ratios mean something and times little. A ratio below 1 is quicker than the peer.")
    for name, title in ROOMS.items():
        if name in paths:
            print(f"\n## {title}\n")
            print("\n".join(table(rows_of(paths[name]))))


if __name__ == "__main__":
    main()
