#!/usr/bin/env python3
"""Prints what calls and arrays cost from Python as ratios to named peers, from one run.

usage: python_call.py LIBRARY LOOP

LIBRARY is the library, LOOP the shared file with the loop of python_loop.cpp. Subjects and
peers run in turn; medians are compared.
"""
import array
import ctypes
import math
import statistics
import sys
import timeit

import orv2_geo
from orv2_geo import DoubleArray, Ref

try:
    import numpy
except ImportError:
    numpy = None

ROUNDS = 15
ELEMENTS = 10**6


def rows(library, loop):
    """What is measured: what, subject, peer, how often in a round, target."""
    algorithms = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
    functions = orv2_geo.create("Orv2_Geo.cgeo_FuncDeriv")
    variables = [Ref(v) for v in (1.0, 0.0, 1.0, 5.0, 2.0, 0.0, 2.0, 5.0, 0.0, 0.0)]
    known = {"algorithms": algorithms, "functions": functions,
             "empty": ctypes.CDLL(library).orv2_class_count,
             **{f"v{i}": one for i, one in enumerate(variables)}}
    calls = (
        ("one number by value (F_Sen)", "functions.F_Sen(100.0)", 2),
        ("three variables (Azimut)", "algorithms.Azimut(v0, v2, v8)", 2.5),
        ("two numbers and a variable (Azimut)", "algorithms.Azimut(1.0, 2.0, v8)", None),
        ("ten variables (Intersec_XY_2lineas)",
         "algorithms.Intersec_XY_2lineas(v0, v1, v2, v3, v4, v5, v6, v7, v8, v9)", 4),
    )
    for what, call, target in calls:
        yield (what + ", beside an empty ctypes call", timer(call, known), timer("empty()", known),
               20000, target)
    numbers = [math.sin(i) for i in range(ELEMENTS)]
    known = {"array": array.array, "numbers": numbers, "DoubleArray": DoubleArray}
    yield ("an array of a list, beside array.array", timer("DoubleArray(numbers)", known),
           timer("array('d', numbers)", known), 1, 1.2)
    if numpy is not None:
        known = {"copy": numpy.copy, "numbers": numpy.array(numbers), "DoubleArray": DoubleArray}
        yield ("an array of an ndarray, beside numpy.copy", timer("DoubleArray(numbers)", known),
               timer("copy(numbers)", known), 1, 1.5)
    yield bulk_row(algorithms, loop)


def bulk_row(algorithms, loop):
    dx = array.array("d", (1000 * math.sin(i) for i in range(ELEMENTS)))
    dy = array.array("d", (1000 * math.cos(3 * i) for i in range(ELEMENTS)))
    azimuths = ctypes.CDLL(loop).azimuths
    columns = [(ctypes.c_double * ELEMENTS).from_buffer(one) for one in (dx, dy)]
    answers = (ctypes.c_double * ELEMENTS)()
    known = {"azimuths": lambda: azimuths(*columns, answers, ctypes.c_size_t(ELEMENTS)),
             "bulk": lambda: orv2_geo.bulk(algorithms.Azimut, dx, dy)}
    known["azimuths"]()
    if bytes(known["bulk"]().written["aZ"].view()) != bytes(answers):
        sys.exit("the bulk call and the loop do not agree")
    return "1e6 azimuths by bulk, beside the loop in C++", timer("bulk()", known), \
        timer("azimuths()", known), 1, 2


def timer(statement, known):
    return timeit.Timer(statement, globals=known)


def main():
    library, loop = sys.argv[1:]
    orv2_geo.load(library)
    missed = 0
    print(f"Python {sys.version.split()[0]}: nanoseconds, medians of {ROUNDS} rounds")
    for what, subject, peer, times, target in rows(library, loop):
        measured = [(subject.timeit(times), peer.timeit(times)) for _ in range(ROUNDS)]
        ours, theirs = (statistics.median(one) / times * 1e9 for one in zip(*measured))
        over = target is not None and ours / theirs > target
        missed += over
        print(f"{what:64} {ours:12.0f} {theirs:12.0f} {ours / theirs:6.2f}  {target or 'report'}"
              f"{'  MISSED' if over else ''}")
    if numpy is None:
        print("ndarrays are not measured: this Python has no NumPy")
    print(f"{missed} targets missed" if missed else "all targets met")


if __name__ == "__main__":
    main()
