#!/usr/bin/env python3
"""Times a call from Python beside an empty call through ctypes.

usage: python_call.py LIBRARY
"""
import ctypes
import statistics
import sys
import timeit

import orv2_geo

LOOPS = 20000


def nanoseconds(statement):
    runs = timeit.repeat(statement, number=LOOPS, repeat=9)
    return statistics.median(runs) / LOOPS * 1e9


def main():
    orv2_geo.load(sys.argv[1])
    algorithms = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
    functions = orv2_geo.create("Orv2_Geo.cgeo_FuncDeriv")
    numbers = [orv2_geo.Ref(v) for v in (1.0, 0.0, 1.0, 5.0, 2.0, 0.0, 2.0, 5.0, 0.0, 0.0)]
    empty = ctypes.CDLL(sys.argv[1]).orv2_class_count
    rows = [
        ("an empty ctypes call", empty),
        ("one number by value (F_Sen)", lambda: functions.F_Sen(100.0)),
        ("ten variables by reference (Intersec_XY_2lineas)",
         lambda: algorithms.Intersec_XY_2lineas(*numbers)),
    ]
    base = nanoseconds(rows[0][1])
    for name, statement in rows:
        time = nanoseconds(statement)
        print(f"Python: {name:48} {time:9.0f} ns {time / base:7.1f} times the empty call")


if __name__ == "__main__":
    main()
