"""Builds the wheel: the package as CMake installs it, with the library beside it.

ORV2_BUILT names a build that is there already; without it one is made in build/wheel.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = pathlib.Path(__file__).resolve().parent
BUILT = os.environ.get("ORV2_BUILT")
WORK = pathlib.Path(BUILT or ROOT / "build", "wheel")

# The wheel does not bring the C++ run-time: failures are thrown between the library and the
# module for the screen, whose toolkit uses the system's, and a process can have but one.
# Debian's package libstdc++6 is on every machine that has a program in C++.
LIBRARIES = ("liborv2_geo.so.2", "liborv2_geo_qt.so")


def version():
    header = (ROOT / "orv2_geo" / "version.h").read_text(encoding="utf-8")
    return ".".join(re.findall(r"define ORV2_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", header))


def cmake(*words):
    subprocess.run(["cmake", *map(str, words)], cwd=ROOT, check=True)


def compiled():
    folder = WORK / "cmake"
    cmake("--preset", "release", "-B", folder, "-DORV2_BUILD_TESTS=OFF",
          "-DORV2_BUILD_EXAMPLES=OFF", "-DORV2_WARNINGS_ARE_ERRORS=OFF", "-DORV2_PYTHON=ON",
          "-DPython3_EXECUTABLE=" + sys.executable)
    cmake("--build", folder)
    return folder


class FromCMake(build_ext):
    def run(self):
        if self.editable_mode:
            raise SystemExit("orv2_geo is used in its own tree with PYTHONPATH=python, "
                             "after a build")
        installed = WORK / "installed"
        package = pathlib.Path(self.build_lib, "orv2_geo")
        for old in (installed, package):
            shutil.rmtree(old, ignore_errors=True)
        cmake("--install", BUILT or compiled(), "--prefix", installed, "--strip")
        [core] = installed.rglob("_core.abi3.so")
        shutil.copytree(core.parent, package)
        for name in LIBRARIES:
            for library in installed.rglob(name):
                shutil.copy(library, package)  # the file itself, where this is a link


WORK.mkdir(parents=True, exist_ok=True)
setup(
    version=version(),
    ext_modules=[Extension("orv2_geo._core", [], py_limited_api=True)],
    cmdclass={"build_ext": FromCMake},
    options={
        "bdist_wheel": {"py_limited_api": "cp39"},
        "build": {"build_base": str(WORK)},
        "egg_info": {"egg_base": str(WORK)},
    },
)
