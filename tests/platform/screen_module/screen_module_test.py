"""The console is used unless there is a display and a module that belongs to the library."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

PROBE, MODULE = map(pathlib.Path, sys.argv[1:3])
CONSOLE = ["uno", "dos"]
ASKED = ["asked 1 1"]
DRAWN = [*ASKED, "module", "module"]
DISPLAY = {"DISPLAY": ":7"}

# The rule, the display, where the module stands (none: nowhere), what it writes.
ROWS = [
    ("beside the library", DISPLAY, "", {}, DRAWN),
    ("in the library's folder", DISPLAY, "orv2_geo", {}, DRAWN),
    ("where the loader looks", DISPLAY, "elsewhere", {"LD_LIBRARY_PATH": "elsewhere"}, DRAWN),
    ("the other kind of display", {"WAYLAND_DISPLAY": "wayland-0"}, "", {}, DRAWN),
    ("no display", {}, "", {}, []),
    ("displays without a name", {"DISPLAY": "", "WAYLAND_DISPLAY": ""}, "", {}, []),
    ("no module", DISPLAY, None, {}, []),
    ("a module elsewhere", DISPLAY, "elsewhere", {}, []),
    ("a module that refuses the library, asked once", DISPLAY, "", {"STAND_IN_REFUSES": "1"}, ASKED),
]


class ScreenModule(unittest.TestCase):
    def run_probe(self, folder, environment):
        clean = {name: value for name, value in os.environ.items()
                 if name not in ("DISPLAY", "WAYLAND_DISPLAY", "LD_LIBRARY_PATH")}
        return subprocess.run([folder / "probe"], cwd=folder, env={**clean, **environment}, text=True,
                              capture_output=True, check=True, timeout=60)

    def test_which_is_taken(self):
        for rule, display, place, more, drawn in ROWS:
            with self.subTest(rule), tempfile.TemporaryDirectory() as name:
                folder = pathlib.Path(name)
                shutil.copy(PROBE, folder / "probe")
                if place is not None:
                    (folder / place).mkdir(exist_ok=True)
                    shutil.copy(MODULE, folder / place / "liborv2_geo_qt.so")
                done = self.run_probe(folder, {**display, **more})
                self.assertEqual(done.stdout.split("\n")[:-1], drawn)
                # The stand-in passes its boxes on to the console, so they arrive either way.
                for box in CONSOLE:
                    self.assertEqual(done.stderr.count(box), 1)

    def test_a_file_that_is_no_module_is_as_none(self):
        for content in (b"", b"no library"):
            with self.subTest(content=content), tempfile.TemporaryDirectory() as name:
                folder = pathlib.Path(name)
                shutil.copy(PROBE, folder / "probe")
                (folder / "liborv2_geo_qt.so").write_bytes(content)
                done = self.run_probe(folder, DISPLAY)
                self.assertEqual(done.stdout, "")
                self.assertIn("dos", done.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
