#!/usr/bin/env python3
"""Installs a build, moves the prefix, and uses the package there.

    installed_test.py BUILD FOLDER WORK

FOLDER is where the package is installed, below the prefix.
"""

import pathlib
import shutil
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parents[1]))
import readme_examples  # noqa: E402

MAPPED = """
import orv2_geo
orv2_geo.create("Orv2_Geo.cgeo_api")
with open("/proc/self/maps") as maps:
    for path in {line.split(maxsplit=5)[5].strip() for line in maps if "/" in line}:
        if "orv2_geo" in path: print(path)
"""


def installed(build, prefix, *options):
    subprocess.run(["cmake", "--install", build, "--prefix", prefix, *options], check=True,
                   stdout=subprocess.DEVNULL)
    return prefix


def files(folder):
    return sorted(path.name for path in folder.rglob("*") if not path.is_dir())


def mapped(environment):
    """What a process that uses the package has of it in its memory."""
    done = subprocess.run([sys.executable, "-c", MAPPED], env=environment, check=True, text=True,
                          cwd="/", stdout=subprocess.PIPE)
    return sorted(done.stdout.split("\n")[:-1])


def main(build, folder, work):
    shutil.rmtree(work, ignore_errors=True)
    prefix = installed(build, work / "prefix").rename(work / "moved").resolve()
    package = prefix / folder
    environment = {"PYTHONPATH": str(package), "PYTHONDONTWRITEBYTECODE": "1"}
    well = readme_examples.runs([sys.executable], environment)

    [library] = prefix.rglob("liborv2_geo.so.2")
    wanted = sorted([str(library.resolve()), str(package / "orv2_geo" / "_core.abi3.so")])
    alone = installed(build, work / "alone", "--component", "python")
    for what, is_there, should in (
            ("in use", mapped(environment), wanted),
            ("the component python", files(alone), files(package / "orv2_geo"))):
        well &= is_there == should
        print("ok" if is_there == should else "FAILED", what, is_there, "for", should)
    return 0 if well else 1


if __name__ == "__main__":
    sys.exit(main(*map(pathlib.Path, sys.argv[1:4])))
