#!/usr/bin/env python3
"""Draws how time and memory grow with the number of elements, and tells the exponents.

usage: growth.py RESULT.json... FOLDER

The results are Google Benchmark's JSON of runs with ORV2_GROWTH=1: times, and in files that are
named memory_* the memory of runs with ORV2_MEMORY=1 too. Each plot has a line a subject and a peer,
with the exponent k of n^k that fits its times from 10,000 elements on. The plots go into FOLDER, their list is printed as Markdown.
"""
import collections
import json
import math
import pathlib
import statistics
import sys

import matplotlib

matplotlib.use("svg")
from matplotlib import pyplot  # noqa: E402

# A plot: its name, what it says, the subject and its peers by the names of their benchmarks.
PLOTS = (
    ("doubles", "Sorting doubles", {"doubles_random": "Ordena_Double_Array",
                                    "doubles_random_peer": "std::sort"}),
    ("longs", "Sorting whole numbers", {"longs_random": "Ordena_LongArray",
                                        "longs_random_peer": "std::sort"}),
    ("index", "Index of doubles", {"double_index": "Ordena_Double_Index_Array",
                                   "double_index_std_sort": "std::sort of an index",
                                   "double_index_pairs": "std::sort of pairs"}),
    ("codes", "Sorting point codes", {"strings": "Ordena_StringArray", "strings_icu": "ICU sort keys",
                                      "strings_collate": "std::collate"}),
    ("repeated", "Repeated points", {"repeated_in_x": "in X order", "repeated_renumbered": "renumbered",
                                     "repeated_removed": "removed in place",
                                     "repeated_std_sort": "std::sort and a pass",
                                     "repeated_hash_grid": "hash grid",
                                     "repeated_nanoflann": "nanoflann",
                                     "repeated_boost": "Boost.Geometry", "repeated_geos": "GEOS"}),
)


def measured(paths):
    """Of each benchmark: {elements: (seconds, bytes)}."""
    times = collections.defaultdict(list)
    memory = {}
    for path in paths:
        for run in json.loads(pathlib.Path(path).read_text(encoding="utf-8"))["benchmarks"]:
            name, _, elements = run["run_name"].rpartition("/")
            if run.get("run_type") != "iteration" or not elements.isdigit():
                continue
            if run.get("error_occurred"):
                sys.exit(f"{run['run_name']}: {run['error_message']}")
            unit = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}[run["time_unit"]]
            if pathlib.Path(path).stem.startswith("memory_"):
                memory[name, int(elements)] = run["max_bytes_used"]
            else:
                times[name, int(elements)].append(run["cpu_time"] * unit)
    found = collections.defaultdict(dict)
    for (name, elements), values in times.items():
        found[name][elements] = statistics.median(values), memory.get((name, elements), 0)
    return found


def exponent(points):
    """The slope of a line through the logarithms, by least squares."""
    logs = [(math.log(n), math.log(seconds)) for n, (seconds, _) in points.items() if n >= 10**4]
    mean_n, mean_t = (statistics.mean(column) for column in zip(*logs))
    return sum((n - mean_n) * (t - mean_t) for n, t in logs) / sum((n - mean_n)**2 for n, _ in logs)


def draw(title, lines, found, path):
    figure, axes = pyplot.subplots(1, 2, figsize=(11, 4.6))
    for name, label in lines.items():
        points = dict(sorted(found[name].items()))
        ours = name == next(iter(lines)) or label in ("renumbered", "removed in place")
        style = {"marker": "o", "markersize": 4, "linewidth": 2.2 if ours else 1.1,
                 "linestyle": "-" if ours else "--"}
        axes[0].plot(list(points), [s for s, _ in points.values()],
                     label=f"{label}, n^{exponent(points):.2f}", **style)
        large = {n: m / 2**20 for n, (_, m) in points.items() if m >= 2**20}
        axes[1].plot(list(large), list(large.values()), label=label, **style)
    for one, what in zip(axes, ("seconds", "peak memory, MB")):
        one.set(xscale="log", yscale="log", xlabel="elements", ylabel=what)
        one.grid(which="major", linewidth=0.4)
    axes[0].legend(fontsize=8)
    figure.suptitle(title)
    figure.tight_layout()
    figure.savefig(path, metadata={"Date": None})
    pyplot.close(figure)


def main():
    *results, folder = sys.argv[1:]
    found = measured(results)
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    matplotlib.rcParams["svg.hashsalt"] = "growth"
    for name, title, lines in PLOTS:
        lines = {one: label for one, label in lines.items() if len(found.get(one, {})) >= 3}
        if not lines:
            sys.exit(f"{title}: nothing was measured")
        draw(title, lines, found, folder / f"{name}.svg")
        told = ", ".join(f"{label} {exponent(found[one]):.2f}" for one, label in lines.items())
        print(f"![{title}]({folder.name}/{name}.svg)\n\nExponents: {told}.\n")


if __name__ == "__main__":
    main()
