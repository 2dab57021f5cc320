#!/usr/bin/env python3
"""Prints the table of orv2_geo/platform/lower_case.cpp: the letters of Unicode that have a
lower-case form, in runs of one step and one distance."""

import unicodedata


def lower(point):
    # Of a form of several letters the first: U+0130, an I with a dot, is an i.
    return ord(chr(point).lower()[0])


def runs():
    pending = [point for point in range(0x110000) if lower(point) != point]
    while pending:
        run = max((run_of(pending, step) for step in (1, 2)), key=len)
        yield run
        pending = pending[len(run):]


def run_of(points, step):
    """The longest run from the first point on. Of two as long the closer one."""
    run = points[:1]
    for point in points[1:]:
        if point != run[-1] + step or lower(point) - point != lower(run[0]) - run[0]:
            break
        run.append(point)
    return run


print("// Unicode", unicodedata.unidata_version)
for run in runs():
    step = run[1] - run[0] if len(run) > 1 else 1
    print("    {{0x{:04x}, 0x{:04x}, {}, {}}},".format(run[0], run[-1], step,
                                                       lower(run[0]) - run[0]))
