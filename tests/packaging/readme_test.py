#!/usr/bin/env python3
"""Runs the README's examples as they are printed and compares what they print with
the comments beside their print lines; compares its failures with the library's.

    readme_test.py REPOSITORY LIBRARY COMPILER [OPTION...]
"""

import ctypes
import os
import re
import subprocess
import sys
import tempfile

from readme_examples import README, block, promised

repository, library = sys.argv[1:3]
compiler = sys.argv[3:]


def run(*command, **named):
    return subprocess.run(command, cwd=repository, check=True, text=True, stdout=subprocess.PIPE,
                          **named).stdout.split()


def cpp(example):
    with tempfile.TemporaryDirectory() as folder:
        source, program = os.path.join(folder, "example.cpp"), os.path.join(folder, "example")
        with open(source, "w", encoding="utf-8") as file:
            file.write(example)
        run(*compiler, "-std=c++20", "-I" + repository, source, library,
            "-Wl,-rpath," + os.path.dirname(library), "-o", program)
        return run(program)


def listed_failures():
    """The library's own list, over its C boundary."""
    listed_at = ctypes.CDLL(library).orv2_failure_at
    listed_at.argtypes = (ctypes.c_size_t, ctypes.POINTER(ctypes.c_int32),
                          ctypes.POINTER(ctypes.c_char_p))
    number, words, found = ctypes.c_int32(), ctypes.c_char_p(), []
    while listed_at(len(found), ctypes.byref(number), ctypes.byref(words)) == 0:
        found.append((str(number.value), words.value.decode()))
    return found


def main():
    told = re.findall(r"^\| (\d+) \| ([^|]+?) \|", README, re.M)
    failed = told != listed_failures()
    print("FAILED" if failed else "ok", "the failures are the library's")
    python = block("sh", "import orv2_geo")
    in_cpp = block("cpp", "#include")
    for name, wanted, printed in (
            ("the Python example", promised(python, "#"), run("bash", "-c", python)),
            ("the C++ example", promised(in_cpp, "//"), cpp(in_cpp))):
        same = bool(wanted) and printed == wanted
        print("ok" if same else "FAILED", name, "prints", printed, "for", wanted)
        failed += not same
    return failed


if __name__ == "__main__":
    sys.exit(main())
