"""Runs survey_report on a real survey that lies outside the repository.

    real_survey_test.py PROGRAM SURVEY
"""

import math
import os
import subprocess
import sys
import unittest

PROGRAM = ""
SURVEY = ""

os.environ["LC_ALL"] = "C"  # the report's language


def points():
    with open(SURVEY, encoding="utf-8") as file:
        return [line.rstrip("\n").split(",") for line in file]


class RealSurvey(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        result = subprocess.run([PROGRAM, SURVEY], capture_output=True, timeout=60, check=True)
        lines = result.stdout.decode("utf-8").splitlines()
        start = next(i for i, line in enumerate(lines) if line.startswith("Number"))
        cls.columns = lines[start + 1].split("  ")
        cls.rows = [cls.cells(line) for line in lines[start + 2:]]

    @classmethod
    def cells(cls, line):
        """The cells of a row, cut where the rule under the headings says."""
        cells, at = [], 0
        for rule in cls.columns:
            cells.append(line[at:at + len(rule)].strip())
            at += len(rule) + 2
        return cells

    def test_every_point_has_its_row(self):
        expected = [[p[0], *(f"{float(c):.3f}" for c in p[1:4]), p[4].strip()] for p in points()]
        self.assertEqual([row[:5] for row in self.rows], expected)

    def test_every_leg_has_its_azimuth_and_distance(self):
        places = [(float(p[1]), float(p[2])) for p in points()]
        for (x, y), (next_x, next_y), row in zip(places, places[1:], self.rows):
            azimuth = math.atan2(next_x - x, next_y - y) / math.pi * 200.0 % 400.0
            self.assertAlmostEqual(float(row[5]), azimuth, delta=0.0001, msg=row[0])
            self.assertAlmostEqual(float(row[6]), math.dist((x, y), (next_x, next_y)),
                                   delta=0.0006, msg=row[0])

    def test_so_many_pairs_of_points_are_repeated(self):
        for tolerance, count in (("0.01", 1), ("0.05", 8), ("0.1", 16), ("0.5", 57)):
            result = subprocess.run([PROGRAM, SURVEY, "--repeats", tolerance],
                                    capture_output=True, timeout=60, check=True)
            text = result.stdout.decode("utf-8")
            self.assertIn(f"Tolerance  {tolerance}, in X and in Y\nPairs      {count}\n", text)
            section = text[text.index("Repeated points\n==="):].split("\n\n\n")[0]
            self.assertEqual(len(section[section.index("\n-----"):].splitlines()) - 2, count)

    def test_the_last_point_leads_nowhere(self):
        self.assertEqual(self.rows[-1][5:], ["", ""])


if __name__ == "__main__":
    SURVEY = sys.argv.pop()
    PROGRAM = sys.argv.pop()
    unittest.main()
