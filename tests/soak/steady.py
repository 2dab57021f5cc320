#!/usr/bin/env python3
"""Runs a soak and judges what it tells of itself:

    steady.py [--any-time] NAME COMMAND...

The program writes lines such as "sample us_per_call=1.5 files=4". Of each quantity the median of the last
third is compared with that of the middle third; the first third is for what is made once. With --any-time a
call may take any time: a run of some seconds says nothing of that on a shared machine.
"""
import statistics
import subprocess
import sys

# How much more the last third may have: a share of the middle third's, or this much, whichever is more.
BOUNDS = {
    "us_per_call": (1.0, 0),  # machines are shared
    "resident_bytes": (0.02, 1 << 20),
    "heap_bytes": (0.02, 128 << 10),
    "blocks": (0.02, 1500),  # what a run-time, or the collation of rare texts, keeps now and then
    "handles": (0, 0),
    "files": (0, 0),
    "gdi_objects": (0, 0),
    "user_objects": (0, 0),
}
LEAST = 12


def samples_of(command):
    """Of each quantity all values, and the status of the program."""
    values = {}
    with subprocess.Popen(command, stdout=subprocess.PIPE, text=True, errors="replace") as program:
        for line in program.stdout:
            words = line.split()
            if words[:1] != ["sample"]:
                print(line, end="")
                continue
            for word in words[1:]:
                name, value = word.split("=")
                values.setdefault(name, []).append(float(value))
    return values, program.returncode


def judged(name, quantity, values):
    third = len(values) // 3
    before, after = (statistics.median(part) for part in (values[third:-third], values[-third:]))
    share, least = BOUNDS[quantity]
    steady = abs(after - before) <= max(before * share, least)
    print("{} {}: {:.15g}, then {:.15g}{}".format(
        name, quantity, before, after, "" if steady else ": it does not stay"))
    return steady


def main(name, *command):
    any_time = name == "--any-time"
    if any_time:
        name, *command = command
    values, status = samples_of(command)
    calls = values.pop("calls", [])
    if len(calls) < LEAST:
        print(f"{name}: {len(calls)} samples are too few")
        return 1
    print(f"{name}: {sum(calls):.0f} calls, status {status}")
    if any_time:
        del values["us_per_call"]
    steady = [judged(name, quantity, values[quantity]) for quantity in values]
    return 0 if status == 0 and all(steady) else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
