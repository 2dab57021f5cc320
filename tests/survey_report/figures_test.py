"""Works the extremes, the repeated points, the profile and the work area of a survey
out again, apart from survey_report.

    figures_test.py PROGRAM SURVEY
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

PROGRAM = ""
SURVEY = ""

os.environ["LC_ALL"] = "C"  # the report's language

NO_SUCH_CODE = "no point has this code"  # so that the boundary is the convex hull
THINNEST = 0.02
ON_THE_AXIS = 0.0002


def read_points(survey):
    with open(survey, encoding="utf-8", newline="") as file:
        rows = [row for row in csv.reader(file) if row and not row[0].startswith("#")]
    if not rows[0][1][-1].isdigit():
        rows = rows[1:]
    return [(row[0].strip(), *map(float, row[1:4]), row[4].strip()) for row in rows]


def near(a, b, tolerance):
    return abs(a[1] - b[1]) < tolerance and abs(a[2] - b[2]) < tolerance


def swept(points, tolerance):
    """The places of those that stay: neighbours in X near the first of them are one point."""
    clusters = []
    for place in sorted(range(len(points)), key=lambda place: points[place][1]):
        if clusters and near(points[clusters[-1][0]], points[place], tolerance):
            clusters[-1].append(place)
        else:
            clusters.append([place])
    return {min(cluster, key=lambda place: (-points[place][3], place)) for cluster in clusters}


def cross(o, a, b):
    return (a[0] - o[0]) * (b[1] - o[1]) - (a[1] - o[1]) * (b[0] - o[0])


def in_hull(places, place):
    """Of all directions there is none with every point on its right."""
    angles = sorted(math.atan2(y - place[1], x - place[0]) for x, y in places)
    gaps = [b - a for a, b in zip(angles, angles[1:])]
    return max([*gaps, angles[0] + 2 * math.pi - angles[-1]]) < math.pi


def circle_around(place, spots):
    """The three spots around the place whose circle holds no other: from three far away,
    a spot in the circle takes the place of the one that the place can do without."""
    far = 1e4 * max(math.dist(place, spot[:2]) for spot in spots)
    seen = [(x - place[0], y - place[1], z) for x, y, z in spots]
    corners = [(far * math.cos(turn), far * math.sin(turn), None) for turn in (0.1, 2.2, 4.3)]
    while True:
        (ax, ay, _), (bx, by, _), (cx, cy, _) = corners
        # The plane through the corners, each as high as its distance squared.
        rise_b, rise_c = bx * bx + by * by - ax * ax - ay * ay, cx * cx + cy * cy - ax * ax - ay * ay
        twice = cross(*corners)
        east = (rise_b * (cy - ay) - rise_c * (by - ay)) / twice
        north = (rise_c * (bx - ax) - rise_b * (cx - ax)) / twice
        above = [(q[0] - ax) * east + (q[1] - ay) * north + ax * ax + ay * ay
                 - q[0] * q[0] - q[1] * q[1] for q in seen]
        deepest = max(range(len(seen)), key=above.__getitem__)
        if seen[deepest] in corners or above[deepest] <= 0:
            return corners
        corners = max(([*corners[:i], seen[deepest], *corners[i + 1:]] for i in range(3)),
                      key=lambda three: min(parts_of(three)))


def parts_of(corners):
    """Of the triangle's area, what lies beside each corner seen from the place, the origin."""
    a, b, c = corners
    parts = [cross((0, 0), b, c), cross((0, 0), c, a), cross((0, 0), a, b)]
    return [part / sum(parts) if sum(parts) else -math.inf for part in parts]


def elevation_around(place, points):
    """In the plane of the triangle around the place."""
    spots = {(x, y): z for _, x, y, z, _ in reversed(points)}
    corners = circle_around(place, [(*spot, z) for spot, z in spots.items()])
    if any(z is None for *_, z in corners):
        return None
    a, b, c = corners
    longest = max(math.dist(a[:2], b[:2]), math.dist(b[:2], c[:2]), math.dist(c[:2], a[:2]))
    if abs(cross(a, b, c)) < THINNEST * longest ** 2:
        return None
    return sum(part * z for part, (_, _, z) in zip(parts_of(corners), corners))


def terrain_along(line, corridor, points):
    (x1, y1), (x2, y2) = line
    length = math.dist(*line)
    places = [p[1:3] for p in points]
    terrain = set()
    for _, x, y, z, _ in points:
        along = ((x - x1) * (x2 - x1) + (y - y1) * (y2 - y1)) / length
        beside = abs(cross((x1, y1), (x2, y2), (x, y))) / length
        if beside > corridor or not 0 <= along <= length:
            continue
        foot = (x1 + along / length * (x2 - x1), y1 + along / length * (y2 - y1))
        if beside <= ON_THE_AXIS * length:
            terrain.add((along, z))
        elif in_hull(places, foot):
            elevation = elevation_around(foot, points)
            if elevation is not None:
                terrain.add((along, elevation))
    return sorted(terrain)


def interpolated(terrain, at):
    at = min(max(at, terrain[0][0]), terrain[-1][0])
    for (d1, z1), (d2, z2) in zip(terrain, terrain[1:]):
        if d1 <= at <= d2 and d1 < d2:
            return z1 + (z2 - z1) * (at - d1) / (d2 - d1)
    raise AssertionError(f"no terrain at {at}")


def winding(ring, place):
    turns = sum(math.remainder(math.atan2(b[1] - place[1], b[0] - place[0])
                               - math.atan2(a[1] - place[1], a[0] - place[0]), 2 * math.pi)
                for a, b in zip(ring, ring[1:] + ring[:1]))
    return round(turns / (2 * math.pi))


def off_the_ring(ring, place):
    """How far from it, as the height over the nearest side."""
    def off_side(a, b):
        part = ((place[0] - a[0]) * (b[0] - a[0]) + (place[1] - a[1]) * (b[1] - a[1])) \
            / math.dist(a, b) ** 2
        part = min(max(part, 0.0), 1.0)
        return math.dist(place, (a[0] + part * (b[0] - a[0]), a[1] + part * (b[1] - a[1])))
    return min(off_side(a, b) for a, b in zip(ring, ring[1:] + ring[:1]))


class Figures(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.points = read_points(SURVEY)
        xs, ys = [p[1] for p in cls.points], [p[2] for p in cls.points]
        cls.box = (min(xs), min(ys), max(xs) - min(xs), max(ys) - min(ys))

    def place(self, right, up):
        """In parts of the survey's box."""
        x, y, width, height = self.box
        return round(x + right * width, 2), round(y + up * height, 2)

    def section(self, title, *arguments):
        result = subprocess.run([PROGRAM, SURVEY, "--boundary", NO_SUCH_CODE, *arguments],
                                capture_output=True, timeout=60, check=True)
        self.assertEqual(result.stderr, b"")
        text = result.stdout.decode("utf-8")
        return text[text.index(title + "\n==="):].split("\n\n\n")[0].splitlines()

    @staticmethod
    def option(name, places):
        return name + "=" + ",".join(repr(c) for place in places for c in place)

    @staticmethod
    def rows(lines):
        start = next(i for i, line in enumerate(lines) if line.lstrip().startswith("---"))
        return [line.split() for line in lines[start + 1:]]

    @staticmethod
    def cells(lines):
        """The cells of the rows, cut where the rule under the headings says."""
        start = next(i for i, line in enumerate(lines) if line.startswith("---"))
        ends = [match.span() for match in re.finditer("-+", lines[start])]
        return [[line[a:b if b < ends[-1][1] else None].strip() for a, b in ends]
                for line in lines[start + 1:]]

    def test_the_extremes_and_who_holds_them(self):
        report = subprocess.run([PROGRAM, SURVEY], capture_output=True, timeout=60, check=True)
        lines = report.stdout.decode("utf-8").split("\n\n\n")[0].splitlines()
        rows = self.rows(lines)
        self.assertEqual([row[0] for row in rows], ["X", "Y", "Z"])
        for axis, row in enumerate(rows, 1):
            low = min(self.points, key=lambda point: point[axis])
            high = max(self.points, key=lambda point: point[axis])
            self.assertEqual(row[1:], [f"{low[axis]:.3f}", low[0], f"{high[axis]:.3f}", high[0],
                                       f"{high[axis] - low[axis]:.3f}"])

    def test_the_repeated_points_at_six_tolerances(self):
        for tolerance in (0.001, 0.01, 0.02, 0.1, 0.5, 2.0):
            lines = self.section("Repeated points", f"--repeats={tolerance!r}")
            pairs = [(a, b) for a, b in itertools.combinations(range(len(self.points)), 2)
                     if near(self.points[a], self.points[b], tolerance)]
            stay = swept(self.points, tolerance)
            every = len(self.points)
            self.assertEqual(lines[4:6], [
                f"Pairs      {len(pairs)}",
                f"Points     {every - len(stay)} of {every} would be removed"])
            rows = self.cells(lines) if pairs else []
            self.assertEqual(len(rows), len(pairs))
            for (first, second), row in zip(pairs, rows):
                a, b = self.points[first], self.points[second]
                gone = [self.points[place][0] for place in (first, second) if place not in stay]
                self.assertEqual([*row[:4], row[6]],
                                 [a[0], a[4], b[0], b[4], ", ".join(gone) or "-"])
                self.assertAlmostEqual(float(row[4]), math.dist(a[1:3], b[1:3]), delta=0.0006)
                self.assertAlmostEqual(float(row[5]), b[3] - a[3], delta=0.0006)

    def test_the_points_that_stay_are_written_as_they_were(self):
        with tempfile.TemporaryDirectory() as folder:
            kept = pathlib.Path(folder) / "kept.csv"
            self.section("Repeated points", "--repeats=0.5", f"--kept={kept}")
            stay = swept(self.points, 0.5)
            self.assertEqual(read_points(kept),
                             [p for place, p in enumerate(self.points) if place in stay])

    def test_the_profile_along_three_lines(self):
        for ends in (((0.1, 0.2), (0.9, 0.7)), ((0.3, 0.95), (0.55, 0.1)), ((0.0, 0.45), (1.0, 0.45))):
            line = [self.place(*end) for end in ends]
            corridor = round(min(self.box[2:]) / 20, 2)
            terrain = terrain_along(line, corridor, self.points)
            lines = self.section("Longitudinal profile", self.option("--section", line),
                                 f"--corridor={corridor!r}",
                                 f"--stations={max(self.box[2:]) / 50!r}")
            values = {line.split()[0]: line.split()[1] for line in lines[3:8] if line}
            self.assertAlmostEqual(float(values["Lowest"]), min(z for _, z in terrain), delta=0.002)
            self.assertAlmostEqual(float(values["Highest"]), max(z for _, z in terrain), delta=0.002)
            stations = [list(map(float, row)) for row in self.rows(lines)]
            self.assertGreater(len(stations), 10)
            self.assertAlmostEqual(stations[0][1], terrain[0][0], delta=0.001)
            self.assertAlmostEqual(stations[-1][1], terrain[-1][0], delta=0.001)
            for _, distance, x, y, elevation in stations:
                self.assertAlmostEqual(math.dist(line[0], (x, y)), distance, delta=0.002)
                # A distance is rounded to 0.001: on a slope that counts.
                around = [interpolated(terrain, distance + off) for off in (-0.0006, 0.0, 0.0006)]
                self.assertLessEqual(min(around) - 0.001, elevation)
                self.assertGreaterEqual(max(around) + 0.001, elevation)

    def test_the_points_inside_two_areas(self):
        for corners in (((0.2, 0.1), (0.8, 0.3), (0.7, 0.9), (0.5, 0.4), (0.1, 0.8)),
                        ((0.1, 0.1), (0.9, 0.9), (0.9, 0.1), (0.1, 0.9))):  # crosses itself
            ring = [self.place(*corner) for corner in corners]
            lines = self.section("Work area", self.option("--area", ring))
            # A point measured again may have its number again: told apart by place.
            found = {(row[0], row[1], row[2]) for row in self.rows(lines)}
            self.assertGreater(len(found), 20)
            for number, x, y, *_ in self.points:
                if off_the_ring(ring, (x, y)) < 0.03:
                    continue
                key = (number, f"{x:.3f}", f"{y:.3f}")
                self.assertEqual(key in found, winding(ring, (x, y)) != 0, key)

    def test_an_area_beside_the_survey_holds_nothing(self):
        ring = [self.place(*corner) for corner in ((2.0, 2.0), (3.0, 2.0), (2.0, 3.0))]
        lines = self.section("Work area", self.option("--area", ring))
        self.assertEqual(lines[-1],
                         f"Inside    0 of {len(self.points)} points, to a hundredth")


if __name__ == "__main__":
    SURVEY = sys.argv.pop()
    PROGRAM = sys.argv.pop()
    unittest.main()
