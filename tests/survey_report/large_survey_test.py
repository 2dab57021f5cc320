"""What a survey of a million points takes: memory, the size of what is opened, and that
no point is missing where all of them belong.

    large_survey_test.py PROGRAM [POINTS]
"""

import pathlib
import re
import resource
import subprocess
import sys
import tempfile
import unittest

PROGRAM = ""
POINTS = 1_000_000
MOST_BYTES_A_POINT = 400
MOST_BYTES_TO_OPEN = 15_000_000


class LargeSurvey(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.room = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.room.cleanup)
        cls.folder = pathlib.Path(cls.room.name)
        survey = cls.folder / "large.csv"
        make = pathlib.Path(__file__).with_name("make_large_survey.py")
        subprocess.run([sys.executable, "-B", make, str(POINTS), survey], check=True, timeout=POINTS / 2000)
        cls.figures = subprocess.run([PROGRAM, survey, "-o", cls.folder / "out", "--language=en"],
                                     capture_output=True, check=True, timeout=POINTS / 2000, text=True)
        # Of the children the largest: the maker of the survey takes less.
        cls.kilobytes = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss

    def test_it_says_nothing(self):
        self.assertEqual((self.figures.stdout, self.figures.stderr), ("", ""))

    def test_memory(self):
        self.assertLess(self.kilobytes * 1000, MOST_BYTES_A_POINT * POINTS)

    def test_what_is_opened_is_thinned_and_says_so(self):
        for name in ("index.html", "plan.svg", "profile.svg"):
            self.assertLess((self.folder / "out" / name).stat().st_size, MOST_BYTES_TO_OPEN, name)
        self.assertRegex((self.folder / "out/index.html").read_text(encoding="utf-8"),
                         rf"[0-9]+ of {POINTS} points are drawn")

    def test_all_points_are_in_the_table_and_in_the_cad_drawing(self):
        with open(self.folder / "out/points.csv", encoding="utf-8") as table:
            self.assertEqual(sum(1 for _ in table), 1 + POINTS)
        drawing = (self.folder / "out/survey.dxf").read_text(encoding="ascii")
        self.assertEqual(len(re.findall(r"^POINT$", drawing, re.MULTILINE)), POINTS)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    if len(sys.argv) > 1:
        POINTS = int(sys.argv.pop(1))
    unittest.main()
