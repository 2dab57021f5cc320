"""The example programs: what they print, write and draw, and that they are typed."""

import importlib.util
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

from support import LIBRARY, REPOSITORY, Case

EXAMPLES = pathlib.Path(REPOSITORY, "examples", "python")
SURVEY = pathlib.Path(REPOSITORY, "examples", "survey_report", "sample_survey.csv")


def ran(*arguments):
    """How the example ends, and what it writes."""
    load = "import orv2_geo, runpy, sys; orv2_geo.load(sys.argv.pop(1)); " \
           "sys.argv.pop(0); runpy.run_path(sys.argv[0], run_name='__main__')"
    done = subprocess.run([sys.executable, "-c", load, LIBRARY, *map(str, arguments)], timeout=120,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                          env={**os.environ, "LC_ALL": "C.UTF-8"})
    return done.returncode, done.stdout, done.stderr


class CleanPoints(Case):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def test_it_prints_what_is_printed_beside_it(self):
        code, shown, told = ran(EXAMPLES / "clean_points.py", SURVEY)
        self.assertEqual((code, told), (0, ""))
        self.assertEqual(shown, (EXAMPLES / "clean_points.txt").read_text(encoding="utf-8"))

    def test_the_points_that_stay_are_written_as_they_were(self):
        clean = self.folder / "clean.csv"
        code, _, told = ran(EXAMPLES / "clean_points.py", SURVEY, "-o", clean)
        self.assertEqual((code, told), (0, ""))
        given = [line for line in SURVEY.read_text(encoding="utf-8").splitlines() if line[:1].isdigit()]
        kept = clean.read_text(encoding="utf-8").splitlines()
        self.assertEqual(len(kept), 292)
        self.assertEqual(kept, [line for line in given if line in set(kept)])

    def test_a_clean_file_stays_as_it_is(self):
        first, second = self.folder / "first.csv", self.folder / "second.csv"
        ran(EXAMPLES / "clean_points.py", SURVEY, "-o", first)
        ran(EXAMPLES / "clean_points.py", first, "-o", second)
        self.assertEqual(first.read_bytes(), second.read_bytes())

    def test_what_cannot_be_read_is_said_in_a_sentence(self):
        broken = self.folder / "broken.csv"
        broken.write_text("1,2,3,4,A\n2,x,3,4,A\n", encoding="utf-8")
        for path, words in ((self.folder / "nothing.csv", "No such file"), (broken, "line 2: X, Y and Z")):
            code, _, told = ran(EXAMPLES / "clean_points.py", path)
            self.assertEqual(code, 1)
            self.assertIn(words, told)
            self.assertNotIn("Traceback", told)

    def test_a_boundary_that_is_not_there_is_said(self):
        code, _, told = ran(EXAMPLES / "clean_points.py", SURVEY, "--boundary", "NADA")
        self.assertEqual(code, 1)
        self.assertIn("fewer than three points", told)

    @unittest.skipIf(importlib.util.find_spec("matplotlib") is None,
                     "matplotlib is not installed for this Python")
    def test_a_picture_is_drawn(self):
        picture = self.folder / "plan.svg"
        code, _, told = ran(EXAMPLES / "clean_points.py", SURVEY, "--plot", picture)
        self.assertEqual((code, told), (0, ""))
        self.assertIn("inside (273)", picture.read_text(encoding="utf-8"))


class Typed(Case):
    @unittest.skipIf(importlib.util.find_spec("mypy") is None, "mypy is not installed for this Python")
    def test_the_examples_pass_mypy_at_its_strictest(self):
        done = subprocess.run([sys.executable, "-m", "mypy", "--strict", "--cache-dir", os.devnull,
                               *map(str, EXAMPLES.glob("*.py"))],
                              env={**os.environ, "MYPYPATH": os.environ["ORV2_PYTHON_FOLDER"]}, timeout=300,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.assertEqual(done.returncode, 0, done.stdout)
