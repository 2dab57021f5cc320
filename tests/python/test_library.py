import os
import re
import subprocess
import sys

from support import LIBRARY, REPOSITORY, Case

import orv2_geo
from orv2_geo import _library

HEADER = os.path.join(REPOSITORY, "orv2_geo", "orv2_geo.h")


def header():
    with open(HEADER, encoding="utf-8") as file:
        return re.sub(r"/\*.*?\*/", "", file.read(), flags=re.S)


def ran(script, **environment):
    """What a process of its own writes, both ways, and how it ends."""
    done = subprocess.run([sys.executable, "-c", script, LIBRARY], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, timeout=60,
                          env={**os.environ, **environment})
    return done.returncode, done.stdout


class Header(Case):
    def test_every_tag_is_the_headers(self):
        tags = dict(re.findall(r"ORV2_(\w+) = (\w+)", header()))
        for name in ("NONE", "I16", "I32", "F32", "F64", "BOOL", "TEXT", "OBJECT", "VARIANT",
                     "DOUBLE_ARRAY", "SINGLE_ARRAY", "LONG_ARRAY", "SHORT_ARRAY", "STRING_ARRAY",
                     "OMITTED", "UTF8", "BYREF", "METHOD", "PROPERTY_READ", "PROPERTY_WRITE",
                     "ANY", "READ", "WRITTEN", "RESIZED"):
            self.assertEqual(getattr(_library, name), int(tags[name], 0))

    def test_the_version_is_the_headers(self):
        with open(os.path.join(REPOSITORY, "orv2_geo", "version.h"), encoding="utf-8") as file:
            parts = re.findall(r"define ORV2_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", file.read())
        self.assertEqual(orv2_geo.__version__, ".".join(parts))


class Loading(Case):
    def test_the_same_library_may_be_named_again(self):
        orv2_geo.load(LIBRARY)
        orv2_geo.load(os.path.relpath(LIBRARY))

    def test_the_path_is_known_of_one_that_the_loader_found(self):
        code, shown = ran("import os, sys, orv2_geo\n"
                          "from orv2_geo import _library\n"
                          "_library._found = lambda: os.path.basename(sys.argv[1])\n"
                          "orv2_geo.classes()\n"
                          "print(_library.loaded_from())\n"
                          "orv2_geo.load(sys.argv[1])\n",
                          LD_LIBRARY_PATH=os.path.dirname(LIBRARY))
        self.assertEqual((code, shown), (0, os.path.realpath(LIBRARY) + "\n"))

    def test_another_one_is_too_late(self):
        with self.assertRaises(RuntimeError):
            orv2_geo.load(os.path.join(REPOSITORY, "nothing.so"))

    def test_a_library_that_is_not_there(self):
        code, shown = ran("import orv2_geo\n"
                          "try:\n orv2_geo.load('/nothing/at/all.so')\n"
                          "except OSError: print('not there')\n"
                          "print(str(orv2_geo.RunFailure(1234)))\n")
        self.assertEqual((code, shown), (0, "not there\n1234\n"))

    def test_importing_does_not_load(self):
        code, shown = ran("import orv2_geo, sys\n"
                          "from orv2_geo import _library\n"
                          "print(_library.loaded_from())\n"
                          "orv2_geo.load(sys.argv[1])\n"
                          "print(orv2_geo.create('Orv2_Geo.cgeo_FuncDeriv').F_Cos(1))\n")
        self.assertEqual((code, shown), (0, "None\n1.0\n"))

    def test_every_public_name_is_there(self):
        for name in orv2_geo.__all__:
            self.assertIsNotNone(getattr(orv2_geo, name).__doc__)


class Ending(Case):
    """The end of a process is silent, whatever is still in use."""

    begin = """
import sys, threading, orv2_geo
orv2_geo.load(sys.argv[1])
from orv2_geo import _core
"""

    def silent(self, script):
        self.assertEqual(ran(self.begin + script), (0, ""))

    def test_with_objects_and_arrays(self):
        self.silent("""
kept = [orv2_geo.create("Orv2_Geo.cgeo_api"), orv2_geo.DoubleArray([1.0]),
        orv2_geo.StringArray(["a"]), orv2_geo.DoubleArray.over(bytearray(8))]
view = kept[1].view()
around = [kept]
around.append(around)
""")

    def test_with_host_objects_and_an_interface(self):
        self.silent("""
class Host:
    pass
handles = [_core.lend_handle(Host()) for _ in range(3)]
orv2_geo.set_user_interface(Host())
""")

    def test_with_what_another_thread_left(self):
        self.silent("""
kept = []
def work():
    kept.append(orv2_geo.create("Orv2_Geo.cgeo_api"))
    kept.append(orv2_geo.DoubleArray([1.0]))
    kept.append(_core.lend_handle(object()))
    orv2_geo.set_user_interface(object())
thread = threading.Thread(target=work)
thread.start()
thread.join()
""")

    def test_with_a_thread_still_waiting(self):
        self.silent("""
begun = threading.Event()
def work():
    kept = orv2_geo.create("Orv2_Geo.cgeo_api"), _core.lend_handle(object())
    begun.set()
    threading.Event().wait()
threading.Thread(target=work, daemon=True).start()
begun.wait()
""")
