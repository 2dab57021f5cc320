"""Random calls from Python without an end, right ones and wrong ones:

    python_soak.py SECONDS

What is called are the ways of the tests of memory and the odd arguments of the tests of torture.
"""
import gc
import os
import random
import sys
import time
import warnings

sys.path.insert(0, os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "python"))

import test_torture
from test_torture_memory import resident, ways

import orv2_geo
from orv2_geo import GeoWarning, RunFailure, _core

SAMPLES = 40


class Calls:
    def __init__(self, seed):
        self.chance = random.Random(seed)
        self.odd = test_torture.Odd()
        self.ways = list(ways())
        self.count = 0

    def some(self):
        """Every way once, and odd arguments for as many functions."""
        for _, make, do, _ in self.ways:
            try:
                do(make())
            except (RunFailure, GeoWarning):
                pass
        values = self.odd.values(self.chance)
        found = self.odd.callables(values)
        for _ in range(500):
            self.odd.once(self.chance, values, found)
        orv2_geo.set_user_interface(None)
        self.count += len(self.ways) + 500


def main(seconds):
    warnings.simplefilter("ignore")
    calls = Calls(20240607)
    start = time.monotonic()
    for sample in range(1, SAMPLES + 1):
        begun, before = time.monotonic(), calls.count
        while True:
            calls.some()
            if time.monotonic() - start >= seconds * sample / SAMPLES:
                break
        us = (time.monotonic() - begun) * 1e6 / (calls.count - before)
        gc.collect()
        print("sample calls={} us_per_call={:.3f} resident_bytes={} blocks={} handles={} files={}".format(
            calls.count - before, us, resident(), sys.getallocatedblocks(), _core.lent_count(),
            len(os.listdir("/proc/self/fd"))), flush=True)


if __name__ == "__main__":
    main(float(sys.argv[1]))
