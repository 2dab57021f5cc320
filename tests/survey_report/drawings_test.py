"""Measures the drawings of survey_report with a ruler: scales, sheets and labels.

    drawings_test.py PROGRAM SURVEY
"""

import csv
import itertools
import math
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
from xml.etree import ElementTree

PROGRAM = ""
SURVEY = ""

os.environ["LC_ALL"] = "C"  # the report's language

SVG = "{http://www.w3.org/2000/svg}"
SHEETS = {"A4": (297, 210), "A3": (420, 297), "A2": (594, 420), "A1": (841, 594)}
CAPITALS = 0.688  # of the letters' size, in the lowest of the usual fonts
NO_SUCH_CODE = "no point has this code"  # so that the boundary is the hull of all points


def read_points(survey):
    with open(survey, encoding="utf-8", newline="") as file:
        rows = [row for row in csv.reader(file) if row and not row[0].startswith("#")]
    if not rows[0][1][-1].isdigit():
        rows = rows[1:]
    return [(row[0].strip(), float(row[1]), float(row[2])) for row in rows]


def is_round(scale):
    """1, 2 or 5 with zeros, or 25 with zeros."""
    digits = f"{scale:.9g}"
    return re.fullmatch(r"[125]0*|250*|0\.0*[125]", digits) is not None


def scale_in(text):
    return float(text[2:]) if text.startswith("1:") else 1 / float(text[:-2])


def apart(a, b):
    return a[2] <= b[0] or b[2] <= a[0] or a[3] <= b[1] or b[3] <= a[1]


def off_box(box, place):
    return math.hypot(max(box[0] - place[0], 0, place[0] - box[2]),
                      max(box[1] - place[1], 0, place[1] - box[3]))


class Drawing:
    def __init__(self, kind, *arguments):
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder) / "drawing.svg"
            report = subprocess.run([PROGRAM, SURVEY, "--boundary", NO_SUCH_CODE, *arguments,
                                     f"--{kind}={file}"], capture_output=True, timeout=60,
                                    check=True).stdout.decode("utf-8")
            self.root = ElementTree.parse(file).getroot()
        self.report = report

    def texts(self):
        return [text.text for text in self.root.iter(SVG + "text")]

    def group(self, name):
        [group] = [group for group in self.root.iter(SVG + "g") if group.get("id") == name]
        return group

    def stated(self, pattern):
        """What the only text says that has this pattern."""
        found = [match for text in self.texts() if (match := re.fullmatch(pattern, text))]
        if len(found) != 1:
            raise AssertionError(f"{len(found)} texts on the sheet say {pattern!r}")
        return found[0]

    def left_out(self):
        said = self.stated(r"(no|\d+) labels? left out").group(1)
        return 0 if said == "no" else int(said)

    def path(self, name):
        [path] = self.group(name).iter(SVG + "path")
        return [tuple(map(float, pair)) for pair in re.findall(r"[ML] (\S+) (\S+)", path.get("d"))]

    def sheet_faults(self):
        """What of the sheet is not as it is said to be."""
        name, width, height = self.stated(r"Sheet (A\d), (\d+) x (\d+) mm").groups()
        size = tuple(self.root.get(side) for side in ("width", "height"))
        faults = []
        if sorted((int(width), int(height)), reverse=True) != list(SHEETS[name]):
            faults.append("no such sheet")
        if size != (width + "mm", height + "mm"):
            faults.append("another size")
        if self.root.get("viewBox") != f"0 0 {width} {height}":
            faults.append("not in millimetres")
        return faults

    def low_letters(self):
        return [(text.text, text.get("font-size")) for text in self.root.iter(SVG + "text")
                if CAPITALS * float(text.get("font-size")) < 2.0]


class Plan(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.points = read_points(SURVEY)
        cls.plan = Drawing("plan")

    def frame(self):
        [clip] = self.plan.root.iter(SVG + "clipPath")
        x, y, width, height = (float(clip[0].get(name)) for name in ("x", "y", "width", "height"))
        return x, y, x + width, y + height

    def labels(self):
        """Text and box of each, as wide and high as the letters are."""
        labels = []
        for text in self.plan.group("labels").iter(SVG + "text"):
            size = float(text.get("font-size"))
            half = sum(0.278 if c in ". " else 0.556 for c in text.text) * size / 2
            if text.get("text-anchor") != "middle":
                raise AssertionError("a label is not centred")
            x, y = float(text.get("x")), float(text.get("y"))
            labels.append((text.text, (x - half, y - 0.72 * size, x + half, y)))
        return labels

    def leaders(self):
        ends = []
        for path in self.plan.group("labels").iter(SVG + "path"):
            if path.get("class") == "leader":
                ends.append([tuple(map(float, pair))
                             for pair in re.findall(r"[ML] (\S+) (\S+)", path.get("d"))])
        return ends

    def place(self, x, y):
        """On the sheet, seen from the sides of the hull."""
        hull = self.plan.path("boundary")
        scale = scale_in(self.plan.stated(r"Plan, scale (\S+)").group(1))
        return (min(p[0] for p in hull) + (x - min(p[1] for p in self.points)) * 1000 / scale,
                max(p[1] for p in hull) - (y - min(p[2] for p in self.points)) * 1000 / scale)

    def test_a_distance_measures_what_the_scale_says(self):
        scale = scale_in(self.plan.stated(r"Plan, scale (\S+)").group(1))
        self.assertTrue(is_round(scale), scale)
        hull = self.plan.path("boundary")
        for axis in (0, 1):
            drawn = max(p[axis] for p in hull) - min(p[axis] for p in hull)
            side = [p[axis + 1] for p in self.points]
            self.assertAlmostEqual(drawn, (max(side) - min(side)) * 1000 / scale, delta=0.0015)

    def test_the_scale_bar_measures_what_it_says(self):
        scale = scale_in(self.plan.stated(r"Plan, scale (\S+)").group(1))
        bars = list(self.plan.group("scale-bar").iter(SVG + "rect"))
        length = sum(float(bar.get("width")) for bar in bars) * scale / 1000
        self.assertAlmostEqual(length, round(length), delta=1e-6 * length)
        self.assertIn(f"{length:.0f}", self.plan.texts())

    def test_feet_have_their_own_millimetres(self):
        feet = Drawing("plan", "--unit=ft", "--scale=1:2000")
        hull = feet.path("boundary")
        xs = [p[1] for p in self.points]
        self.assertAlmostEqual(max(p[0] for p in hull) - min(p[0] for p in hull),
                               (max(xs) - min(xs)) * 304.8 / 2000, delta=0.0015)
        self.assertIn("X east, Y north, feet", feet.texts())

    def test_the_sheet_is_as_it_says(self):
        self.assertEqual(self.plan.sheet_faults(), [])

    def test_letters_are_2_mm_high(self):
        self.assertEqual(self.plan.low_letters(), [])

    def test_labels_touch_neither_each_other_nor_the_frame(self):
        boxes = [box for _, box in self.labels()]
        self.assertGreater(len(boxes), 300)
        touching = [(a, b) for a, b in itertools.combinations(boxes, 2) if not apart(a, b)]
        self.assertEqual(touching, [])
        left, top, right, bottom = self.frame()
        self.assertEqual([b for b in boxes if b[0] <= left or b[1] <= top or b[2] >= right
                          or b[3] >= bottom], [])

    def test_a_label_stands_beside_its_point_or_is_led_to_it(self):
        leaders = self.leaders()
        places = {}
        for number, x, y in self.points:
            places.setdefault(number, []).append(self.place(x, y))
        astray = []
        for text, box in self.labels():
            if "." in text or text not in places:  # of a grid node
                continue
            beside = min(off_box(box, place) for place in places[text]) < 2.6
            led = any(off_box(box, end) < 1.0 and min(math.dist(start, place) for place in
                                                      places[text]) < 1.8
                      for start, end in leaders)
            if not beside and not led:
                astray.append(text)
        # The number of a cut may be a point's too.
        cuts = [p for p in self.plan.root.iter(SVG + "path") if p.get("class") == "cut"]
        self.assertLessEqual(len(astray), len(cuts), astray)

    def test_leaders_cross_no_label(self):
        boxes = [box for _, box in self.labels()]
        for start, end in self.leaders():
            between = [(start[0] + part * (end[0] - start[0]), start[1] + part * (end[1] - start[1]))
                       for part in (i / 40 for i in range(40))]
            for box in boxes:
                if off_box(box, start) < 20.0:
                    self.assertGreater(min(off_box(box, place) for place in between), 0.0)

    def test_every_label_is_drawn_or_said_to_be_left_out(self):
        cuts = [p for p in self.plan.root.iter(SVG + "path") if p.get("class") == "cut"]
        nodes = list(self.plan.group("nodes").iter(SVG + "path"))
        self.assertEqual(len(self.labels()) + self.plan.left_out(),
                         len(self.points) + len(nodes) + len(cuts))

    def test_on_a_forced_sheet_more_labels_are_left_out(self):
        small = Drawing("plan", "--sheet=A4")
        self.assertEqual(small.sheet_faults(), [])
        self.assertGreater(small.left_out(), self.plan.left_out())


class Profile(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.profile = Drawing("profile")

    def scales(self):
        return map(scale_in, self.profile.stated(r"Scale (\S+), vertical (\S+)").groups())

    def section(self):
        report = self.profile.report
        return report[report.index("Longitudinal profile\n==="):].split("\n\n\n")[0]

    def value(self, title):
        return float(re.search(rf"^{title} +([\d.]+)", self.section(), re.MULTILINE).group(1))

    def test_scales_and_exaggeration_are_round(self):
        across, up = self.scales()
        exaggeration = int(self.profile.stated(r"Exaggeration (\d+), .*").group(1))
        self.assertTrue(is_round(across), across)
        self.assertTrue(is_round(up), up)
        self.assertIn(exaggeration, (1, 2, 5, 10, 20, 50, 100))
        self.assertAlmostEqual(across / up, exaggeration)

    def test_lengths_and_heights_measure_what_the_scales_say(self):
        across, up = self.scales()
        terrain = self.profile.path("terrain")
        stations = re.findall(r"^ +\d+ +(\d+\.\d{3}) ", self.section(), re.MULTILINE)
        length = float(stations[-1]) - float(stations[0])
        self.assertAlmostEqual(terrain[-1][0] - terrain[0][0], length * 1000 / across, delta=0.003)
        height = self.value("Highest") - self.value("Lowest")
        drawn = max(p[1] for p in terrain) - min(p[1] for p in terrain)
        self.assertAlmostEqual(drawn, height * 1000 / up, delta=0.0015 + 1.2 / up)

    def test_the_sheet_is_as_it_says(self):
        self.assertEqual(self.profile.sheet_faults(), [])

    def test_letters_are_2_mm_high(self):
        self.assertEqual(self.profile.low_letters(), [])

    def test_stations_without_room_are_counted(self):
        fine = Drawing("profile", f"--stations={self.value('Stations +every') / 15!r}")
        ordinates = list(fine.group("ordinates").iter(SVG + "line"))
        numbers = [t for t in fine.group("stations").iter(SVG + "text") if not t.get("transform")]
        self.assertGreater(fine.left_out(), 20)
        self.assertGreaterEqual(fine.left_out(), len(ordinates) - len(numbers))


if __name__ == "__main__":
    SURVEY = sys.argv.pop()
    PROGRAM = sys.argv.pop()
    unittest.main()
