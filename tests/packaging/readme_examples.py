#!/usr/bin/env python3
"""The README's examples, as they are printed there.

    readme_examples.py COMMAND [ARGUMENT...]

gives the Python one to a Python, without an environment and in an empty folder, and
compares what it prints with what the README promises.
"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

README = (pathlib.Path(__file__).parents[2] / "README.md").read_text(encoding="utf-8")
BLOCKS = re.findall(r"^```(\w+)\n(.*?)^```$", README, re.M | re.S)


def block(language, sign):
    return next(text for name, text in BLOCKS if name == language and sign in text)


def promised(example, comment):
    """The first word of the comment beside each print line."""
    return re.findall(r"print.*" + comment + r" *([^\s:]+)", example)


def python_program():
    """What the Python example gives to its interpreter."""
    return re.search(r"<<'END'\n(.*?)^END$", block("sh", "import orv2_geo"), re.M | re.S)[1]


def runs(command, environment=None):
    """Whether a Python runs the example as the README says. Says so."""
    program = python_program()
    with tempfile.TemporaryDirectory() as empty:
        done = subprocess.run([*command, "-"], input=program, env=environment or {}, cwd=empty,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              check=False)
    wanted = promised(program, "#")
    same = done.returncode == 0 and bool(wanted) and done.stdout.split() == wanted
    print("ok" if same else "FAILED", "the README's example under", *command, flush=True)
    if not same:
        print("wanted", wanted, "and got", done.stdout)
    return same


if __name__ == "__main__":
    sys.exit(0 if runs([shutil.which(sys.argv[1]), *sys.argv[2:]]) else 1)
