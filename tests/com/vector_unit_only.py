#!/usr/bin/env python3
"""Checks that the library's own code for 32 bits computes in the vector unit alone.

    vector_unit_only.py OBJDUMP NM OBJECT...

The older unit rounds to longer numbers and would give other last bits. Moves through it,
and its exact conversions from and to whole numbers, are no arithmetic.
"""
import re
import subprocess
import sys

ARITHMETIC = re.compile(
    r"\s(fi?(?:add|sub|mul|div)r?[spl]*|fsqrt|fsin|fcos|fsincos|fptan|fpatan|f2xm1|fyl2x|fyl2xp1|"
    r"fscale|fprem1?)\b")
# Those of the compiler's own library for Windows work in the older unit.
COMPILERS_OWN = re.compile(r" U _(sin|cos|tan|atan|atan2|exp|log|log10|pow|sqrt|fmod|hypot)[fl]?$",
                           re.MULTILINE)


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def main():
    objdump, nm, *objects = sys.argv[1:]
    faults = []
    for path in objects:
        code = output(objdump, "-d", "--no-show-raw-insn", path)
        faults += [f"{path}: {found}" for found in sorted(set(ARITHMETIC.findall(code)))]
        symbols = output(nm, path)
        faults += [f"{path}: calls {found}" for found in sorted(set(COMPILERS_OWN.findall(symbols)))]
    print("\n".join(faults) or f"{len(objects)} objects compute in the vector unit alone")
    return 1 if faults or len(objects) < 50 else 0


if __name__ == "__main__":
    sys.exit(main())
