#!/usr/bin/env python3
"""Compiles the public headers as hosts do: each alone, all of them before and after
headers whose macros and names are everywhere, with strict warnings as errors.

    headers_test.py ROOT COMPILER [OPTION...]       each alone, first and last
    headers_test.py --beside HEADER ROOT COMPILER [OPTION...]
                                                    before and after HEADER

ROOT is the include folder of an installation: it has to hold these headers and no
others.
"""

import pathlib
import subprocess
import sys

STRICT = ["-Wall", "-Wextra", "-Wpedantic", "-Wshadow", "-Wconversion", "-Wold-style-cast",
          "-Werror", "-fsyntax-only"]
DOORS = ("orv2_geo/orv2_geo.hpp", "orv2_geo/orv2_geo.h")
COMMON = ("algorithm", "cmath", "cstdint", "functional", "iostream", "map", "memory", "string",
          "vector")


class Compiler:
    def __init__(self, root, command):
        self.command = command + ["-std=c++20", "-I" + root, "-x", "c++"]
        self.root = root
        self.failed = False

    def compiles(self, what, includes):
        source = "".join("#include <{}>\n".format(name) for name in includes)
        done = subprocess.run(self.command + STRICT + ["-"], input=source, text=True,
                              capture_output=True, check=False)
        print("ok" if done.returncode == 0 else "FAILED", what, flush=True)
        if done.returncode != 0:
            print(done.stderr)
            self.failed = True

    def public_headers(self):
        """What the two doors reach, by their names under the root."""
        source = "".join("#include <{}>\n".format(door) for door in DOORS)
        told = subprocess.run(self.command + ["-MM", "-"], input=source, text=True,
                              capture_output=True, check=True).stdout
        root = self.root.rstrip("/") + "/"
        return [path[len(root):] for path in told.replace("\\\n", " ").split()
                if path.startswith(root)]


def main(arguments):
    beside = None
    if arguments[0] == "--beside":
        beside, arguments = arguments[1], arguments[2:]
    compiler = Compiler(arguments[0], arguments[1:])
    headers = compiler.public_headers()
    there = {str(path.relative_to(arguments[0])) for path in pathlib.Path(arguments[0]).rglob("*.h*")}
    if there != set(headers):
        sys.exit("installed, or reached, but not both: {}".format(sorted(there ^ set(headers))))
    if beside is None:
        for header in headers:
            compiler.compiles(header + " alone", [header])
        beside_all = list(COMMON)
        compiler.compiles("all of them, each twice", headers + headers)
    else:
        beside_all = [beside]
    compiler.compiles("all of them before " + ", ".join(beside_all), headers + beside_all)
    compiler.compiles("all of them after " + ", ".join(beside_all), beside_all + headers)
    return 1 if compiler.failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
