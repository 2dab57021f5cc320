#!/usr/bin/env python3
"""Makes the wheel of a build, looks at what is in it, and installs it for a Python of its
own, where the README's example runs.

    wheel_test.py BUILD PYTHON WORK

BUILD is the folder of the build, PYTHON one that can make wheels and environments. The
wheel is left unpacked in WORK/unpacked.
"""

import os
import pathlib
import platform
import re
import shutil
import subprocess
import sys
import zipfile

sys.path.insert(0, str(pathlib.Path(__file__).parents[1]))
import readme_examples  # noqa: E402

REPOSITORY = pathlib.Path(__file__).parents[3]
LIBRARIES = ("liborv2_geo.so.2", "liborv2_geo_qt.so")


def made(build, python, folder):
    subprocess.run([python, "-m", "pip", "wheel", "--quiet", "--no-build-isolation", "--no-deps",
                    "--no-index", "--wheel-dir", folder, REPOSITORY],
                   env={**os.environ, "ORV2_BUILT": str(build)}, check=True)
    [wheel] = folder.iterdir()
    return wheel


def unpacked(wheel, folder):
    with zipfile.ZipFile(wheel) as archive:
        archive.extractall(folder)
    return folder / "orv2_geo"


def version():
    header = (REPOSITORY / "orv2_geo" / "version.h").read_text(encoding="utf-8")
    return ".".join(re.findall(r"define ORV2_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", header))


def expected_files(build):
    """The package as the build has it, and of the libraries those that the build made."""
    package = [path.name for path in (build / "python" / "orv2_geo").iterdir() if path.is_file()]
    return sorted(package + [name for name in LIBRARIES if (build / "lib" / name).exists()])


def checks(wheel, package, build):
    tag = "cp39-abi3-linux_" + platform.machine()
    yield "its name", wheel.name, "orv2_geo-{}-{}.whl".format(version(), tag)
    yield "its files", sorted(path.name for path in package.iterdir()), expected_files(build)
    binaries = sorted(package.glob("*.so*"))
    yield "links among them", [path.name for path in binaries if path.is_symlink()], []
    sections = subprocess.run(["readelf", "--section-headers", *binaries], check=True, text=True,
                              stdout=subprocess.PIPE).stdout
    yield "tables of symbols that nobody needs", re.findall(r"\.symtab|\.debug_\w+", sections), []
    told = [path.name for path in package.iterdir() if str(REPOSITORY).encode() in path.read_bytes()]
    yield "files that know this machine's folders", told, []


def installed(wheel, python, folder):
    """The interpreter of a new environment that has the wheel and nothing else."""
    subprocess.run([python, "-m", "venv", folder], check=True)
    interpreter = folder / "bin" / "python3"
    subprocess.run([interpreter, "-m", "pip", "install", "--quiet", "--no-index", "--no-deps", wheel],
                   check=True)
    return interpreter


def main(build, python, work):
    shutil.rmtree(work, ignore_errors=True)
    wheel = made(build, python, work / "wheel")
    well = True
    for what, is_there, wanted in checks(wheel, unpacked(wheel, work / "unpacked"), build):
        well &= is_there == wanted
        print("ok" if is_there == wanted else "FAILED", what, is_there, "for", wanted, flush=True)
    interpreter = installed(wheel, python, work / "environment")
    return 0 if readme_examples.runs([interpreter]) and well else 1


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]), sys.argv[2], pathlib.Path(sys.argv[3])))
