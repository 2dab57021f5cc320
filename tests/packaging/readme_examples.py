#!/usr/bin/env python3
"""The README's example in Python, as it is printed there.

    readme_examples.py COMMAND [ARGUMENT...]

gives it to a Python, without an environment and in an empty folder, and compares what it prints with
what the README shows.
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "docs"))
import pages  # noqa: E402


def runs(command, environment=None):
    """Whether a Python runs the example as the README says. Says so."""
    example = next(one for one in pages.examples_of(pages.ROOT / "README.md")
                   if one.language == "python")
    with tempfile.TemporaryDirectory() as empty:
        done = subprocess.run([*command, "-"], input=example.code, env=environment or {}, cwd=empty,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              check=False)
    same = done.returncode == 0 and done.stdout == example.output
    print("ok" if same else "FAILED", "the README's example under", *command, flush=True)
    if not same:
        print("wanted", example.output, "and got", done.stdout)
    return same


if __name__ == "__main__":
    sys.exit(0 if runs([shutil.which(sys.argv[1]), *sys.argv[2:]]) else 1)
