"""Runs survey_report as its user does: statuses, messages, and what is left behind.

    command_line_test.py PROGRAM REPOSITORY
"""

import csv
import functools
import html.parser
import os
import pathlib
import re
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import time
import unittest
from xml.etree import ElementTree

try:
    import resource
except ImportError:  # no limits on this system
    resource = None

PROGRAM = ""
REPOSITORY = pathlib.Path()

os.environ["LC_ALL"] = "C"  # the report's language

GOOD = "1,100,200,600,EJE\n2,110,200,601,POZO\n"
FULL = pathlib.Path("/dev/full")


def run(*arguments, **more):
    return subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, timeout=60,
                          check=False, **more)


class InAFolder(unittest.TestCase):
    """A folder of its own for each test, which is the present one."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(folder.name)

    def write(self, name, content):
        pathlib.Path(name).write_bytes(content.encode("utf-8"))
        return name

    def assert_fails(self, result, status, message):
        self.assertEqual(result.stderr.decode(), message)
        self.assertEqual(result.stdout, b"")
        self.assertEqual(result.returncode, status)

    def files(self):
        return sorted(os.listdir())

    @staticmethod
    def files_in(folder):
        """Of a folder that may not be there."""
        try:
            return sorted(os.listdir(folder))
        except FileNotFoundError:
            return []


class Options(InAFolder):
    HINT = "\nTry survey_report --help\n"

    def test_wrong_options_give_status_2_and_a_message(self):
        self.write("good.csv", GOOD)
        self.write("points.csv", GOOD)
        rows = [
            ([], "no point file is given"),
            (["--nothing", "good.csv"], "unknown option --nothing"),
            (["good.csv", "-x"], "unknown option -x"),
            (["good.csv", "-"], "unknown option -"),
            (["good.csv", "-o"], "-o needs a folder's name"),
            (["good.csv", "--output"], "--output needs a folder's name"),
            (["good.csv", "--output="], "the output folder has an empty name"),
            (["good.csv", "good.csv"], "more than one point file is given"),
            (["-o", "a", "-o", "b", "good.csv"], "more than one --output is given"),
            ([""], "the point file has an empty name"),
            (["-o", ".", "points.csv"],
             "--output writes ./points.csv, which is the point file"),
            (["-o", "../" + pathlib.Path.cwd().name, "points.csv"],
             f"--output writes ../{pathlib.Path.cwd().name}/points.csv, which is the point file"),
            (["good.csv", "--plan"], "--plan needs a file name"),
            (["good.csv", "--plan="], "the --plan file has an empty name"),
            (["good.csv", "--plan", "a", "--plan=b"], "more than one --plan is given"),
            (["good.csv", "--plan", "./good.csv"], "--plan names the point file"),
            (["good.csv", "-o", "a", "--plan", "./a/plan.svg"],
             "--plan names the file plan.svg of the output folder"),
            (["good.csv", "--profile"], "--profile needs a file name"),
            (["good.csv", "--profile="], "the --profile file has an empty name"),
            (["good.csv", "--profile", "a", "--profile=b"],
             "more than one --profile is given"),
            (["good.csv", "--profile", "./good.csv"], "--profile names the point file"),
            (["good.csv", "-o", "a", "--profile", "a/report.txt"],
             "--profile names the file report.txt of the output folder"),
            (["good.csv", "--plan", "a", "--profile", "./a"], "--profile names the --plan file"),
            (["good.csv", "--plan=a", "--sheet", "A7"], '--sheet "A7" is not A4, A3, A2 or A1'),
            (["good.csv", "--plan=a", "--sheet"], "--sheet needs a format"),
            (["good.csv", "--sheet=A4", "--sheet=A4"], "more than one --sheet is given"),
            (["good.csv", "--sheet=A4"], "--sheet needs --plan, --profile or --output"),
            (["good.csv", "--plan=a", "--unit=yd"], '--unit "yd" is not m, ft or us-ft'),
            (["good.csv", "--unit=ft", "--unit=ft"], "more than one --unit is given"),
            (["good.csv", "--unit=ft"], "--unit needs --plan, --profile or --output"),
            (["good.csv", "--plan=a", "--scale"], "--scale needs a scale"),
            *((["good.csv", "--plan=a", "--scale", scale],
               f'--scale "{scale}" is not a scale such as 1:500, from 1000:1 to 1:1e15')
              for scale in ("0", "1:0", "0:1", "1:", ":", "1:500:2", "-500", "1:x", "1:1e16", "2000:1",
                            "")),
            (["good.csv", "--scale=1:5", "--scale=1:5"], "more than one --scale is given"),
            (["good.csv", "--scale=1:5", "--profile=a"], "--scale needs --plan or --output"),
            (["good.csv", "--plan=a", "--scale=1:2"],
             "--scale 1:2 does not fit A1: the largest round scale that does is 1:20"),
            (["good.csv", "--plan=a", "--scale=20", "--sheet=A4"],
             "--scale 1:20 does not fit A4: the largest round scale that does is 1:100"),
            (["good.csv", "--profile=a", "--profile-scale=half"],
             '--profile-scale "half" is not a scale such as 1:500, from 1000:1 to 1:1e15'),
            (["good.csv", "--profile-scale=1:5", "--plan=a"], "--profile-scale needs --profile or --output"),
            (["good.csv", "--kept"], "--kept needs a file name"),
            (["good.csv", "--kept="], "the --kept file has an empty name"),
            (["good.csv", "--kept", "a", "--kept=b"], "more than one --kept is given"),
            (["good.csv", "--kept", "./good.csv"], "--kept names the point file"),
            (["good.csv", "-o", ".", "--kept", "points.csv"],
             "--kept names the file points.csv of the output folder"),
            (["good.csv", "--plan", "a", "--kept", "./a"], "--kept names the --plan file"),
            (["good.csv", "--profile", "a", "--kept", "./a"], "--kept names the --profile file"),
            (["good.csv", "--plan", "good_kept.csv", "--repetidos"], "--kept names the --plan file"),
            (["good.csv", "--repeats"], "--repeats needs a tolerance"),
            (["good.csv", "--repeats=0"], '--repeats "0" is not a positive number'),
            (["good.csv", "--repeats", "1cm"], '--repeats "1cm" is not a positive number'),
            (["good.csv", "--repeats=1", "--repeats=1"], "more than one --repeats is given"),
            (["good.csv", "--language", "fr"], '--language "fr" is not en or es'),
            (["good.csv", "--language"], "--language needs a language"),
            (["good.csv", "--stations", "0"], '--stations "0" is not a positive number'),
            (["good.csv", "--stations=x"], '--stations "x" is not a positive number'),
            (["good.csv", "--stations=5", "--stations=5"], "more than one --stations is given"),
            (["good.csv", "--stations"], "--stations needs a step"),
            (["good.csv", "--contours", "0"], '--contours "0" is not a positive number'),
            (["good.csv", "--contours=5", "--contours=5"], "more than one --contours is given"),
            (["good.csv", "--contours"], "--contours needs a step"),
            (["good.csv", "--corridor", "-1"], '--corridor "-1" is not a positive number'),
            (["good.csv", "--corridor=5", "--corridor=5"], "more than one --corridor is given"),
            (["good.csv", "--corridor"], "--corridor needs a width"),
            (["good.csv", "--area"], "--area needs X1,Y1,X2,Y2,X3,Y3,..."),
            (["good.csv", "--area", ""],
             '--area "" is not pairs of numbers X1,Y1,X2,Y2,X3,Y3,...'),
            (["good.csv", "--area", "0,0,1,0,1"],
             '--area "0,0,1,0,1" is not pairs of numbers X1,Y1,X2,Y2,X3,Y3,...'),
            (["good.csv", "--area", "0,0,1,0,1,x"],
             '--area "0,0,1,0,1,x" is not pairs of numbers X1,Y1,X2,Y2,X3,Y3,...'),
            (["good.csv", "--area", "0,0,1,0,1,1,"],
             '--area "0,0,1,0,1,1," is not pairs of numbers X1,Y1,X2,Y2,X3,Y3,...'),
            (["good.csv", "--area", "0,0,1,0,1,inf"],
             '--area "0,0,1,0,1,inf" is not pairs of numbers X1,Y1,X2,Y2,X3,Y3,...'),
            (["good.csv", "--area=0,0,1,0"], '--area "0,0,1,0" has fewer than three vertices'),
            (["good.csv", "--area=0,0,1,0,0,0"],
             '--area "0,0,1,0,0,0" has fewer than three vertices'),
            (["good.csv", "--area=0,0,1,0,1,0,0,0"],
             '--area "0,0,1,0,1,0,0,0" has fewer than three vertices'),
            (["good.csv", "--area=0,0,1,0,1,1", "--area=0,0,1,0,1,1"],
             "more than one --area is given"),
            (["good.csv", "--area=0,0,1,0,1,1", "--area-code=A"],
             "more than one --area or --area-code is given"),
            (["good.csv", "--area-code=A", "--area=0,0,1,0,1,1"],
             "more than one --area or --area-code is given"),
            (["good.csv", "--area-code="], "--area-code has an empty code"),
            (["good.csv", "--area-code"], "--area-code needs a code"),
            (["good.csv", "--area-code", "EJE"], "--area-code gives fewer than three vertices"),
            (["good.csv", "--boundary"], "--boundary needs a code"),
            (["good.csv", "--boundary="], "--boundary has an empty code"),
            (["good.csv", "--grid"], "--grid needs a step"),
            (["good.csv", "--grid", "x"], '--grid "x" is not a positive number'),
            (["good.csv", "--grid", "0"], '--grid "0" is not a positive number'),
            (["good.csv", "--grid=-5"], '--grid "-5" is not a positive number'),
            (["good.csv", "--grid=inf"], '--grid "inf" is not a positive number'),
            (["good.csv", "--grid=5m"], '--grid "5m" is not a positive number'),
            (["good.csv", "--grid=5", "--grid=5"], "more than one --grid is given"),
            (["good.csv", "--section"], "--section needs X1,Y1,X2,Y2"),
            (["good.csv", "--section", "1,2,3"],
             '--section "1,2,3" is not four numbers X1,Y1,X2,Y2'),
            (["good.csv", "--section", "1,2,3,4,5"],
             '--section "1,2,3,4,5" is not four numbers X1,Y1,X2,Y2'),
            (["good.csv", "--section", "1,2,3,4,"],
             '--section "1,2,3,4," is not four numbers X1,Y1,X2,Y2'),
            (["good.csv", "--section", "1,2,,4"],
             '--section "1,2,,4" is not four numbers X1,Y1,X2,Y2'),
            (["good.csv", "--section", "1,2,1,2"], '--section "1,2,1,2" starts where it ends'),
            (["good.csv", "--section=0,0,1,1", "--section=0,0,1,1"],
             "more than one --section is given"),
        ]
        for arguments, message in rows:
            with self.subTest(message):
                self.assert_fails(run(*arguments), 2, "survey_report: " + message + self.HINT)
        self.assertEqual(self.files(), ["good.csv", "points.csv"])

    def test_help_goes_to_standard_output(self):
        for option in ("-h", "--help"):
            result = run(option)
            self.assertEqual((result.returncode, result.stderr), (0, b""))
            self.assertTrue(result.stdout.startswith(b"Usage: survey_report [options] FILE\n"))

    def test_the_help_fits_80_columns(self):
        lines = run("--help").stdout.decode().splitlines()
        self.assertEqual([line for line in lines if len(line) > 80], [])

    def test_after_two_dashes_a_file_may_start_with_a_dash(self):
        self.write("-h", GOOD)
        self.assertEqual(run("--", "-h").returncode, 0)

    def test_options_may_follow_the_file(self):
        self.write("good.csv", GOOD)
        result = run("good.csv", "--northing-first")
        self.assertIn(b"read as number, Y, X, Z, code\n", result.stdout)
        self.assertIn(b"     1  200.000  100.000  600.000  EJE    0.0000", result.stdout)


SQUARE = "".join(f"{n},{x},{y},{z},LINDERO\n" for n, x, y, z in
                 [(1, 0, 0, 5), (2, 100, 0, 6), (3, 100, 100, 7), (4, 50, 20, 8), (5, 0, 100, 9)])


class BoundaryAndRelief(InAFolder):
    def setUp(self):
        super().setUp()
        self.write("square.csv", SQUARE)

    def report(self, *arguments):
        result = run("square.csv", *arguments)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        return result.stdout.decode()

    def test_the_section_line_is_the_users(self):
        text = self.report("--section=-10,60,110,60")
        self.assertIn("Section    from -10.000, 60.000 to 110.000, 60.000\n", text)
        self.assertIn("\n  1    0.000  60.000    10.000\n", text)
        self.assertIn("\n  4  100.000  60.000   110.000\n", text)

    def test_a_section_line_may_miss_the_boundary(self):
        self.assertIn("The section line does not cut the boundary.\n",
                      self.report("--section", "500,0,500,9"))

    def test_the_boundary_has_the_code_of_the_user(self):
        self.assertIn("Boundary   5 points whose code begins with LIN,", self.report("--boundary",
                                                                                     "LIN"))
        text = self.report("--boundary=WALL")
        self.assertIn("Boundary   convex hull of all points, for want of a boundary: "
                      "0 points whose code begins with WALL\nVertices   4\n", text)

    def test_the_grid_has_the_step_of_the_user(self):
        self.assertIn("At the nodes of a grid of 25, ", self.report("--grid", "25"))

    def test_a_grid_too_fine(self):
        self.assert_fails(run("square.csv", "--grid", "0.001"), 2,
                          "survey_report: --grid gives more than 40000 nodes" + Options.HINT)

    def test_a_grid_of_just_as_many_nodes_as_there_may_be(self):
        self.write("square.csv", "".join(f"{n},{x},{y},{n},LINDERO\n" for n, (x, y) in
                                         enumerate([(0, 0), (199, 0), (199, 199), (0, 199)])))
        self.assertIn("At the nodes of a grid of 1, ", self.report("--grid", "1"))  # 200 by 200

    def test_contours_have_the_step_of_the_user(self):
        self.assertIn("Step       0.5, every fifth level an index contour: ",
                      self.report("--contours=0.5"))

    def test_too_many_contours(self):
        self.assert_fails(run("square.csv", "--contours", "0.001"), 2,
                          "survey_report: --contours gives more than 400 levels" + Options.HINT)

    def test_too_many_stations(self):
        self.assert_fails(run("square.csv", "--section=0,0,100,0", "--stations", "0.001"), 2,
                          "survey_report: --stations gives more than 400 stations" + Options.HINT)

    def test_the_profile_has_the_corridor_and_the_stations_of_the_user(self):
        text = self.report("--section=0,0,100,0", "--corridor=0.5", "--stations=40")
        self.assertIn("Terrain   2 points within 0.500 of the axis, at most 100.000 apart", text)
        for row in ("  1     0.000    0.000  0.000      5.000", "  2    40.000   40.000  0.000      5.400",
                    "  4   100.000  100.000  0.000      6.000"):
            self.assertIn(row + "\n", text)

    def test_the_area_of_the_user_may_be_written_closed(self):
        text = self.report("--area=-1,-1,60,-1,60,50,-1,-1")
        self.assertEqual(text, self.report("--area", "-1,-1,60,-1,60,50"))
        self.assertIn("Vertices  3\nBox       -1.000, -1.000 to 60.000, 50.000\n"
                      "Inside    1 of 5 points, to a hundredth\n", text)
        self.assertIn("\n    4  50.000  20.000  8.000  LINDERO\n", text)

    def test_the_area_may_be_the_points_of_a_code(self):
        self.assertIn("Area      points whose code begins with LIND\nVertices  5\n",
                      self.report("--area-code", "LIND"))


class Repeats(InAFolder):
    TWICE = ("7,100,200,600,EJE\n8,110,200,601,\"POZO, 60\"\n9,100.03,200,600.5,EJE 2\n"
             "10,130,250.12345,602,\n")
    NO_SCREEN = {name: value for name, value in os.environ.items()
                 if name not in ("DISPLAY", "WAYLAND_DISPLAY")}

    def setUp(self):
        super().setUp()
        self.write("twice.csv", self.TWICE)

    def report(self, *arguments, messages=""):
        result = run("twice.csv", *arguments, env=self.NO_SCREEN)
        self.assertEqual((result.returncode, result.stderr.decode()), (0, messages))
        return result.stdout.decode()

    def test_the_tolerance_is_the_users(self):
        text = self.report()
        self.assertIn("Tolerance  0.02, in X and in Y\nPairs      0\n"
                      "Points     0 of 4 would be removed\n\n\nBoundary", text)
        text = self.report("--repeats=0.05")
        self.assertIn("Tolerance  0.05, in X and in Y\nPairs      1\n"
                      "Points     1 of 4 would be removed\n", text)
        self.assertIn("\n    7  EJE       9  EJE 2     0.030  0.500  7\n", text)

    def test_the_points_that_stay_are_written(self):
        self.assertEqual(self.report("--repeats=0.05", "--kept=kept.csv"),
                         self.report("--repeats=0.05"))
        self.assertEqual(pathlib.Path("kept.csv").read_text(encoding="utf-8"),
                         'Number,X,Y,Z,Code\n8,110.000,200.000,601.000,"POZO, 60"\n'
                         "9,100.030,200.000,600.500,EJE 2\n10,130.000,250.12345,602.000,\n")
        again = run("kept.csv", "--repeats", "0.05")
        self.assertIn(b"Points     0 of 3 would be removed\n", again.stdout)

    def test_no_point_that_the_report_uses_is_said_to_be_removed(self):
        for more in ([], ["--kept=kept.csv"]):
            text = self.report("--repeats=0.05", *more)
            said = re.findall(r".*\bremoved\b", text, re.IGNORECASE)
            self.assertEqual([line for line in said if not line.lower().endswith(
                ("would be removed", "of all points, none of them removed"))], [])
            self.assertEqual(len(said), 3)
            self.assertIn("\n     7  100.000  200.000  600.000  EJE ", text)

    def test_they_are_written_in_the_order_of_the_survey(self):
        self.report("--northing-first", "--kept", "kept.csv")
        lines = pathlib.Path("kept.csv").read_text(encoding="utf-8").splitlines()
        self.assertEqual(lines[:2], ["Number,Y,X,Z,Code", "7,100.000,200.000,600.000,EJE"])

    def test_none_are_written_where_the_report_fails(self):
        for arguments in (["-o", "twice.csv/folder"], ["--plan", "no/plan"]):
            self.assertEqual(run("twice.csv", "--kept=kept.csv", *arguments).returncode, 15)
        self.assertEqual(self.files(), ["twice.csv"])

    def test_none_are_written_where_the_library_refuses(self):
        self.write("far.csv", "1,0,1.7e308,0\n2,1,1.7e308,0\n")
        result = run("far.csv", "--repeats=1e308", "--kept=kept.csv", env=self.NO_SCREEN)
        box, message = result.stderr.decode().splitlines()
        self.assertIn("m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X - Error nº  6:", box)
        self.assertEqual(message, "far.csv: repeated points: the library's search failed")
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertEqual(self.files(), ["far.csv", "twice.csv"])

    def test_without_a_screen_the_dialog_of_repeated_points_is_cancelled(self):
        without = self.report()
        for more in ([], ["--kept=kept.csv"]):
            text = self.report("--repetidos", *more, messages="Orv2_Geo: no screen is available for "
                               '"Quitar puntos repetidos:"; cancelled\n')
            section = ("Points kept in the dialog\n" + 25 * "=" + "\n\nCancelled: no file of kept "
                       "points was written.\n\n\n")
            self.assertIn(section, text)
            self.assertEqual(text.replace(section, ""), without)
            self.assertEqual(self.files(), ["twice.csv"])

    def test_without_a_screen_the_dialog_of_extremes_is_cancelled(self):
        self.assertEqual(self.report("--ver", messages="Orv2_Geo: no screen is available for "
                                     '"Maximos y Minimos:"; cancelled\n'), self.report())

    def test_the_dialogs_wait_for_good_options_and_points(self):
        self.write("bad.csv", "x\n")
        self.assert_fails(run("twice.csv", "--ver", "--repetidos", "--area-code=EJE",
                              env=self.NO_SCREEN), 2, "survey_report: --area-code gives fewer than "
                          "three vertices" + Options.HINT)
        self.assert_fails(run("bad.csv", "--ver", "--repetidos", env=self.NO_SCREEN), 8,
                          "bad.csv:1:2: 1 field, but number, X, Y, Z are needed\n")


class Profile(InAFolder):
    SVG = "{http://www.w3.org/2000/svg}"

    def setUp(self):
        super().setUp()
        self.write("square.csv", SQUARE)

    def test_what_is_on_it(self):
        without = run("square.csv", "--section=0,0,100,0").stdout
        result = run("square.csv", "--section=0,0,100,0", "--profile", "profile.svg")
        self.assertEqual((result.returncode, result.stderr, result.stdout), (0, b"", without))
        root = ElementTree.parse("profile.svg").getroot()
        self.assertEqual(root.find(self.SVG + "title").text, "Longitudinal profile: square.csv")
        groups = [group.get("id") for group in root.iter(self.SVG + "g")]
        for name in ("levels", "terrain", "terrain-points", "ordinates", "cuts", "datum",
                     "stations"):
            self.assertEqual(groups.count(name), 1, name)

    def test_it_may_come_with_a_plan(self):
        arguments = ("square.csv", "--section=0,0,100,0", "--profile=profile.svg",
                     "--plan=plan.svg")
        self.assertEqual(run(*arguments).returncode, 0)
        self.assertEqual(self.files(), ["plan.svg", "profile.svg", "square.csv"])

    def test_without_points_near_the_section_line_there_is_none(self):
        arguments = ("square.csv", "--section=500,0,500,9", "--corridor=5")
        self.assertIn(b"\nNone: fewer than two points within 5.000 of the section line give it an "
                      b"elevation.\n", run(*arguments).stdout)
        self.assert_fails(run(*arguments, "--profile=profile.svg", "--plan=plan.svg"), 1,
                          "square.csv: no profile: fewer than two points within 5.000 of the "
                          "section line give it an elevation\n")
        self.assertEqual(self.files(), ["square.csv"])

    def test_points_on_a_line_have_none(self):
        self.write("line.csv", GOOD)
        self.assert_fails(run("line.csv", "--profile=profile.svg"), 1,
                          "line.csv: no profile: the points do not enclose an area\n")


class Plan(InAFolder):
    SVG = "{http://www.w3.org/2000/svg}"

    def setUp(self):
        super().setUp()
        self.write("square.csv", SQUARE)

    def plan(self, *arguments):
        self.assertEqual(run(*arguments, "--plan", "plan.svg").returncode, 0)
        return ElementTree.parse("plan.svg").getroot()

    def group(self, root, name):
        return [group for group in root.iter(self.SVG + "g") if group.get("id") == name]

    def cuts(self, root):
        return [path for path in root.iter(self.SVG + "path") if path.get("class") == "cut"]

    def test_what_is_on_it(self):
        root = self.plan("square.csv")
        self.assertEqual(root.tag, self.SVG + "svg")
        self.assertEqual(root.find(self.SVG + "title").text, "square.csv")
        for name in ("scale-bar", "north-arrow", "legend", "points", "boundary", "section",
                     "coordinates", "nodes"):
            self.assertEqual(len(self.group(root, name)), 1, name)
        texts = [text.text for text in root.iter(self.SVG + "text")]
        for text in ("square.csv", "N", "LINDERO (5)", "Boundary", "Section line"):
            self.assertIn(text, texts)

    def test_there_are_as_many_cuts_as_in_the_report(self):
        for section, count in (("-10,60,110,60", 4), ("-10,5,110,5", 2), ("500,0,500,9", 0),
                               ("-1e9,60,1e9,60", 4)):
            root = self.plan("square.csv", "--section=" + section)
            self.assertEqual(len(self.cuts(root)), count, section)

    def test_the_points_inside_the_area_are_marked(self):
        for area, count in (("-1,-1,60,-1,60,50", 1), ("-1,-1,200,-1,200,200,-1,200", 5),
                            ("500,500,600,500,500,600", 0), ("-1e6,-1e6,1e6,-1e6,0,1e6", 5)):
            root = self.plan("square.csv", "--area=" + area)
            [inside] = self.group(root, "inside")
            self.assertEqual(len(list(inside.iter(self.SVG + "path"))), count, area)
            self.assertEqual(len(self.group(root, "area")), 1, area)

    def test_an_area_that_cannot_be_tested_or_drawn_is_left_out(self):
        for area in ("0,0,1e9,0,0,1e9", "1e200,0,1e200,5,5,1e200"):
            root = self.plan("square.csv", "--area=" + area)
            self.assertEqual(self.group(root, "inside"), [], area)
            self.assertNotRegex(pathlib.Path("plan.svg").read_text(), "nan|inf[^\"oO]")

    def test_the_report_is_the_same_with_a_plan(self):
        without = run("square.csv").stdout
        self.assertEqual(run("square.csv", "--plan=plan.svg").stdout, without)
        self.assertEqual(self.files(), ["plan.svg", "square.csv"])

    def test_it_is_drawn_alike_each_time(self):
        self.plan("square.csv")
        first = pathlib.Path("plan.svg").read_bytes()
        self.plan("square.csv")
        self.assertEqual(pathlib.Path("plan.svg").read_bytes(), first)

    def test_names_with_marks(self):
        name = self.write('a<b>&".csv', '1<2,0,0,0,"<&>"\n2,5,5,0,"]]>"\n')
        root = self.plan(name)
        self.assertEqual(root.find(self.SVG + "title").text, name)
        texts = [text.text for text in root.iter(self.SVG + "text")]
        for text in (name, "1<2", "<&> (1)", "]]> (1)"):
            self.assertIn(text, texts)

    def test_symbols_stand_in_groups_of_their_codes_with_titles(self):
        name = self.write("codes.csv", '1<2,0,0,0.5,"<&>"\n2,5,5,0,"\'""\x01"\n3,9,2,1,\n4,1,8,1,"<&>"\n')
        root = self.plan(name)
        [points] = self.group(root, "points")
        groups = {group.get("data-code"): group for group in points.iter(self.SVG + "g")
                  if group.get("class") == "code"}
        self.assertEqual(sorted(groups), ["", "'\" ", "<&>"])
        titles = [[title.text for title in group.iter(self.SVG + "title")]
                  for group in (groups["<&>"], groups["'\" "], groups[""])]
        self.assertEqual(titles, [
            ["1<2 <&>: X 0.000, Y 0.000, Z 0.500", "4 <&>: X 1.000, Y 8.000, Z 1.000"],
            ["2 '\" : X 5.000, Y 5.000, Z 0.000"], ["3: X 9.000, Y 2.000, Z 1.000"]])
        [labels] = self.group(root, "labels")
        labelled = {group.get("data-code"): [text.text for text in group.iter(self.SVG + "text")]
                    for group in labels.iter(self.SVG + "g") if group.get("class") == "code"}
        self.assertEqual(labelled, {"<&>": ["1<2", "4"], "'\" ": ["2"], "": ["3"]})

    def test_no_name_of_a_group_is_used_twice_even_with_the_profile(self):
        run("square.csv", "--section=0,0,100,0", "--plan=plan.svg", "--profile=profile.svg")
        names = [element.get("id") for file in ("plan.svg", "profile.svg")
                 for element in ElementTree.parse(file).getroot().iter() if element.get("id")]
        self.assertEqual(len(names), len(set(names)))

    def test_a_large_survey_is_thinned_and_said_to_be(self):
        self.write("large.csv", "".join(f"{i},{i % 200},{i // 200},{i % 7},C{i % 3}\n"
                                        for i in range(25000)))
        root = self.plan("large.csv", "--sheet=A4")
        [points] = self.group(root, "points")
        drawn = len(list(points.iter(self.SVG + "path")))
        self.assertLess(drawn, 20001)
        texts = [text.text for text in root.iter(self.SVG + "text")]
        self.assertIn(f"{drawn} of 25000 points drawn", texts)
        report = run("large.csv", "--sheet=A4", "--plan=plan.svg").stdout.decode()
        self.assertIn(f"Plan      {drawn} of 25000 points are drawn, as others would cover them\n",
                      report)

    def test_sheet_and_scale_are_the_users(self):
        for arguments, scale, size in (
                (["--scale=1:1000"], "1:1000", ("297mm", "210mm")),
                (["--scale", "333.5"], "1:333.5", ("594mm", "420mm")),
                (["--sheet=A1"], "1:200", ("841mm", "594mm")),
                (["--sheet=A1", "--scale=1:500", "--unit=m"], "1:500", ("841mm", "594mm"))):
            with self.subTest(arguments):
                root = self.plan("square.csv", *arguments)
                texts = [text.text for text in root.iter(self.SVG + "text")]
                self.assertIn("Plan, scale " + scale, texts)
                self.assertEqual((root.get("width"), root.get("height")), size)

    def test_odd_surveys_have_one(self):
        for content in ("1,5e-324,0,0\n2,0,0,0\n", "1,1e14,5,0\n" + 50 * "2,3,4,5\n",
                        "1,4e5,4e6,0\n2,400000.000001,4e6,0\n",
                        "1,5,5,5\n", "1,5,5,5\n2,5,5,5\n", "1,0,0,0\n2,0,9,0\n3,0,5,0\n",
                        "1,0,0,0\n2,1e150,0,0\n3,0,1e150,0\n"):
            with self.subTest(content):
                self.write("odd.csv", content)
                root = self.plan("odd.csv")
                self.assertEqual(len(self.group(root, "points")), 1)
                self.assertNotRegex(pathlib.Path("plan.svg").read_text(), "nan|inf[^\"oO]")

    def test_none_is_left_behind_on_failure(self):
        self.write("bad.csv", "x\n")
        self.assertEqual(run("bad.csv", "--plan", "plan.svg").returncode, 8)
        self.assertEqual(run("square.csv", "--plan", "plan.svg", "--kept", "no/k").returncode, 15)
        self.assertEqual(run("square.csv", "--plan", "plan.svg", "--grid=1e-9").returncode, 2)
        self.assertEqual(self.files(), ["bad.csv", "square.csv"])

    def test_no_report_is_left_behind_without_its_plan(self):
        self.assert_fails(run("square.csv", "--plan", "no/plan.svg", "-o", "folder"), 15,
                          "survey_report: cannot write no/plan.svg: No such file or directory\n")
        self.assertEqual(self.files(), ["square.csv"])

    def test_an_older_plan_stays_where_the_report_fails(self):
        self.write("plan.svg", "older")
        self.assertEqual(run("square.csv", "--plan", "plan.svg", "--kept", "no/k").returncode, 15)
        self.assertEqual(pathlib.Path("plan.svg").read_text(), "older")


class BadData(InAFolder):
    # What is in the file, the message behind the file's name, and the status.
    ROWS = [
        (b"", ": the file is empty", 6),
        (b"\n", ": no points", 6),
        (b"# nothing\n", ": no points", 6),
        (b"Number,X,Y,Z,Code\n", ": no points", 6),
        (b"\xef\xbb\xbf", ": no points", 6),
        (b"1,2,x,4\n", ':1:5: Y "x" is not a number', 7),
        (b"1,2\n", ":1:4: 2 fields, but number, X, Y, Z are needed", 8),
        (b"1,2,3,4,5,6\n", ":1:11: 6 fields, but only number, X, Y, Z, code are allowed", 9),
        (b",2,3,4\n", ":1:1: the point number is empty", 10),
        (b"1,2,3,4\n1;2;3;4\n",
         ":2:2: semicolons between the fields here, but commas in line 1", 11),
        (b"1,2\0,3,4\n", ":1:4: not a text file: it holds a zero byte (UTF-16 needs its mark)",
         12),
        (b"PK\3\4...", ": a zip file, as spreadsheets are too: unpack it, or save the sheet as CSV",
         13),
        (b"1,2,3,4,\x81\n",
         ":1:9: byte 81 is no character of Windows-1252, and this is not UTF-8", 14),
    ]

    def test_each_fault_has_its_message_and_its_status(self):
        for content, message, status in self.ROWS:
            with self.subTest(message):
                pathlib.Path("bad.csv").write_bytes(content)
                self.assert_fails(run("bad.csv"), status, f"bad.csv{message}\n")
                self.assert_fails(run("bad.csv", "-o", "folder"), status, f"bad.csv{message}\n")
                self.assertEqual(self.files(), ["bad.csv"])

    def test_the_help_tells_every_status(self):
        told = re.findall(r"^ +([0-9]+)  ", run("--help").stdout.decode(), re.MULTILINE)
        self.assertEqual(told, [str(status) for status in range(1, 17)])

    def test_all_bad_lines_are_told_the_first_gives_the_status(self):
        self.write("bad.csv", "1,2,3,4\n1,2,x,4\n1,2,3,4\n1,2,3\n")
        self.assert_fails(run("bad.csv"), 7,
                          'bad.csv:2:5: Y "x" is not a number\n'
                          "bad.csv:4:6: 3 fields, but number, X, Y, Z are needed\n")

    def test_after_twenty_bad_lines_the_others_are_counted(self):
        self.write("bad.csv", "x\n" * 1000)
        messages = run("bad.csv").stderr.decode().splitlines()
        self.assertEqual(len(messages), 21)
        self.assertEqual(messages[-1], "bad.csv: and 980 more bad lines")

    def test_a_file_that_cannot_be_read(self):
        self.assert_fails(run("gone.csv"), 3,
                          "survey_report: cannot read gone.csv: No such file or directory\n")
        os.mkdir("folder")
        self.assert_fails(run("folder"), 4,
                          "survey_report: cannot read folder: Is a directory\n")

    @unittest.skipUnless(os.path.exists("/proc/self/mem"), "no file here that opens but fails")
    def test_a_file_that_opens_but_fails(self):
        self.assert_fails(run("/proc/self/mem"), 5,
                          "survey_report: cannot read /proc/self/mem: Input/output error\n")

    @unittest.skipIf(os.environ.get("ORV2_INSTRUMENTED"), "an instrumented program reserves more")
    @unittest.skipUnless(resource, "no limits on this system")
    def test_too_little_memory(self):
        self.write("large.csv", "1,2,3,4\n" * 4000000)

        def allow_60_megabytes():
            resource.setrlimit(resource.RLIMIT_AS, (60 << 20, 60 << 20))

        self.assert_fails(run("large.csv", preexec_fn=allow_60_megabytes), 16,
                          "survey_report: not enough memory\n")

    def test_a_failure_of_the_library_names_line_and_points(self):
        self.write("far.csv", "P,X,Y,Z\nA,0,0,0\nB,1e10,1e-300,0\n")
        self.assert_fails(run("far.csv"), 1,
                          "far.csv:3: azimuth from point A to point B: Desbordamiento "
                          "(failure 6 of Orv2_Geo.cgeo_Algorismos)\n")


class PageText(html.parser.HTMLParser):
    """The elements of a page, and its text outside the page's own script and style."""

    def __init__(self, page):
        super().__init__()
        self.elements, self.texts = [], []
        self.feed(page)

    def handle_starttag(self, tag, attrs):
        self.elements.append((tag, [name for name, _ in attrs]))

    def handle_data(self, data):
        if self.elements and self.elements[-1][0] not in ("script", "style"):
            self.texts.append(data)


class HostileData(InAFolder):
    def test_marks_of_markup_in_names_and_codes_are_text(self):
        name = """<img src=x onerror=alert(1)> "double" 'single' & %%c $(x) `x`.csv"""
        codes = ["<script>alert(1)</script>", "</style></svg></title>", "a \"b\" 'c' &amp; ]]> <!-- --"]
        self.write(name, "".join(f'{n},{n * n},{n},1,"{code.replace(chr(34), chr(34) * 2)}"\n'
                                 for n, code in enumerate(codes)))
        self.write("plain.csv", "".join(f"{n},{n * n},{n},1,CODE{n}\n" for n in range(len(codes))))
        for file, folder in ((name, "out"), ("plain.csv", "plain")):
            result = run(file, "-o", folder)
            self.assertEqual((result.returncode, result.stdout, result.stderr), (0, b"", b""))
        pages = {folder: PageText(pathlib.Path(folder, "index.html").read_text(encoding="utf-8"))
                 for folder in ("out", "plain")}
        self.assertEqual(pages["out"].elements, pages["plain"].elements)
        for text in (*codes, name):
            self.assertIn(text, "".join(pages["out"].texts))
        for drawing in ("out/plan.svg", "out/profile.svg"):
            if os.path.exists(drawing):
                words = "".join(ElementTree.parse(drawing).getroot().itertext())
                self.assertTrue(all(code in words for code in codes), drawing)
        with open("out/points.csv", encoding="utf-8", newline="") as table:
            self.assertEqual([row[4] for row in csv.reader(table)][1:], codes)

    def test_a_code_of_a_megabyte_does_not_widen_the_table(self):
        others = "".join(f"{n},{n * 7 % 101},{n * 13 % 97},1,A\n" for n in range(2000))
        self.write("long.csv", others + f"long,1,2,3,{'x' * 1000000}\n")
        self.assertEqual(run("long.csv", "-o", "out").returncode, 0)
        report = pathlib.Path("out/report.txt").read_text(encoding="utf-8")
        self.assertLess(len(report), 2000000)
        self.assertIn("  " + "x" * 1000000, report)

    def test_lines_of_a_megabyte(self):
        digits = "3" * 1000000
        rows = [
            ("x" * 1000000, ":1:1000001: 1 field, but number, X, Y, Z are needed", 8),
            ("1" + ",2" * 500000, ":1:11: 500001 fields, but only number, X, Y, Z, code are allowed", 9),
            (f"1,2,{digits},4", f':1:5: Y "{digits[:40]}..." is out of range', 7),
            ('1,2,3,4,"' + "x" * 1000000, ":1:9: a quoted field has no closing quote", 10),
        ]
        for line, message, status in rows:
            with self.subTest(message):
                self.write("bad.csv", line + "\n")
                self.assert_fails(run("bad.csv"), status, f"bad.csv{message}\n")
        self.write("exact.csv", f"1,2,3,0.{digits},A\n2,4,5,6,B\n")
        self.assertIn("0.333  A", run("exact.csv").stdout.decode())


FOLDER = ["extremes.csv", "grid_nodes.csv", "index.html", "plan.svg", "points.csv", "points_in_area.csv",
          "profile.svg", "profile_stations.csv", "repeated_pairs.csv", "report.txt",
          "section_cuts.csv", "survey.dxf"]
NO_PROFILE = [name for name in FOLDER if name != "profile.svg"]


class OutputFolder(InAFolder):
    def setUp(self):
        super().setUp()
        self.write("square.csv", SQUARE)
        self.write("good.csv", GOOD)

    def rows(self, name):
        with open(name, encoding="utf-8", newline="") as file:
            return list(csv.reader(file))

    def test_it_is_made_with_those_above_it_and_all_files(self):
        printed = run("square.csv", "--section=0,0,100,0").stdout
        for arguments in (["-o", "a/b/c"], ["--output", "a/b/c"], ["--output=a/b/c"]):
            result = run("square.csv", "--section=0,0,100,0", *arguments)
            self.assertEqual((result.returncode, result.stdout, result.stderr), (0, b"", b""))
            self.assertEqual(sorted(os.listdir("a/b/c")), FOLDER)
            self.assertEqual(pathlib.Path("a/b/c/report.txt").read_bytes(), printed)

    def test_the_drawings_are_those_of_their_own_options(self):
        run("square.csv", "--section=0,0,100,0", "-o", "all", "--plan=plan.svg",
            "--profile=profile.svg")
        for name in ("plan.svg", "profile.svg"):
            self.assertEqual(pathlib.Path("all", name).read_bytes(), pathlib.Path(name).read_bytes())

    def test_a_drawing_that_cannot_be_made_is_left_out_and_so_is_an_older_one(self):
        os.mkdir("out")
        self.write("out/profile.svg", "older")
        self.write("out/mine.txt", "mine")
        result = run("good.csv", "-o", "out")
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, b"", b""))
        self.assertEqual(sorted(os.listdir("out")), sorted([*NO_PROFILE, "mine.txt"]))

    def test_what_is_in_the_tables(self):
        self.write("plot.csv", '1,0,0,5,"A, ""1"""\n2,100,0.12345,6,=B\n2b,100.01,0.12345,7,\n'
                   "3,99,100,7,C\n4,0,100,8,C\n5,40,60,6,D\n")
        run("plot.csv", "-o", "out", "--section=-10,50,110,50", "--grid=50", "--stations=50",
            "--corridor=20")
        self.assertEqual(self.rows("out/points.csv"), [
            ["Number", "X", "Y", "Z", "Code", "Azimuth", "Distance"],
            ["1", "0.000", "0.000", "5.000", 'A, "1"', "99.9214", "100.000"],
            ["2", "100.000", "0.12345", "6.000", "=B", "100.0000", "0.010"],
            ["2b", "100.010", "0.12345", "7.000", "", "399.3562", "99.882"],
            ["3", "99.000", "100.000", "7.000", "C", "300.0000", "99.000"],
            ["4", "0.000", "100.000", "8.000", "C", "150.0000", "56.569"],
            ["5", "40.000", "60.000", "6.000", "D", "", ""]])
        self.assertEqual(self.rows("out/repeated_pairs.csv"), [
            ["First point", "First code", "Second point", "Second code", "Distance", "Rise",
             "First would be removed", "Second would be removed"],
            ["2", "=B", "2b", "", "0.010", "1.000", "1", "0"]])
        self.assertEqual(self.rows("out/section_cuts.csv"), [
            ["Cut", "X", "Y", "Distance"],
            ["1", "0.000", "50.000", "10.000"],
            ["2", "99.506", "50.000", "109.506"]])
        nodes = self.rows("out/grid_nodes.csv")
        self.assertEqual(nodes[0], ["X", "Y", "Elevation", "Slope %", "Vertex 1", "Vertex 2",
                                    "Vertex 3"])
        self.assertIn(["50.000", "50.000"], [row[:2] for row in nodes])
        stations = self.rows("out/profile_stations.csv")
        self.assertEqual(stations, [["Station", "Distance", "X", "Y", "Elevation"]])
        self.assertEqual(self.rows("out/points_in_area.csv"), [
            ["Number", "X", "Y", "Z", "Code"], ["5", "40.000", "60.000", "6.000", "D"]])
        self.assertEqual(self.rows("out/extremes.csv"), [
            ["Axis", "Minimum", "Point of the minimum", "Maximum", "Point of the maximum",
             "Difference"],
            ["X", "0.000", "1", "100.010", "2b", "100.010"],
            ["Y", "0.000", "1", "100.000", "3", "100.000"],
            ["Z", "5.000", "1", "8.000", "4", "3.000"]])

    def test_they_take_the_place_of_older_ones_and_their_permissions(self):
        os.mkdir("out")
        self.write("out/report.txt", "older")
        os.chmod("out/report.txt", 0o600)
        self.assertEqual(run("good.csv", "-o", "out").returncode, 0)
        self.assertNotEqual(pathlib.Path("out/report.txt").read_text(), "older")
        self.assertEqual(stat.S_IMODE(os.stat("out/report.txt").st_mode), 0o600)

    def test_a_link_stays_a_link(self):
        self.write("plan.svg", "older")
        os.symlink("plan.svg", "link.svg")
        self.assertEqual(run("good.csv", "--plan", "link.svg").returncode, 0)
        self.assertTrue(os.path.islink("link.svg"))
        self.assertNotEqual(pathlib.Path("plan.svg").read_text(), "older")

    def test_a_file_that_happens_to_have_the_name_of_the_unfinished_one_stays(self):
        os.mkdir("out")
        self.write("out/report.txt.partial0", "mine")
        self.assertEqual(run("good.csv", "-o", "out").returncode, 0)
        self.assertEqual(pathlib.Path("out/report.txt.partial0").read_text(), "mine")
        self.assertEqual(sorted(os.listdir("out")), sorted([*NO_PROFILE, "report.txt.partial0"]))

    def test_a_file_is_no_folder(self):
        for folder in ("square.csv", "square.csv/out"):
            self.assert_fails(run("good.csv", "-o", folder), 15,
                              f"survey_report: cannot write {folder}: Not a directory\n")
        self.assertEqual(self.files(), ["good.csv", "square.csv"])

    def test_a_folder_where_a_file_is_to_be_leaves_the_older_files(self):
        run("good.csv", "-o", "all")
        for name in self.files_in("all"):
            os.makedirs(f"out/{name}")
            self.write("out/plan.svg" if name != "plan.svg" else "out/report.txt", "older")
            before = self.files_in("out")
            self.assert_fails(run("good.csv", "-o", "out"), 15,
                              f"survey_report: cannot write out/{name}: Is a directory\n")
            self.assertEqual(self.files_in("out"), before)
            shutil.rmtree("out")

    @unittest.skipUnless(FULL.exists(), "no device that is full on this system")
    def test_a_full_device_leaves_the_older_files(self):
        os.mkdir("out")
        self.write("out/plan.svg", "older")
        self.assert_fails(run("square.csv", "-o", "out", f"--plan={FULL}"), 15,
                          "survey_report: cannot write /dev/full: No space left on device\n")
        self.assertEqual(pathlib.Path("out/plan.svg").read_text(), "older")
        self.assertEqual(self.files_in("out"), ["plan.svg"])

    @unittest.skipIf(os.name == "nt", "no signals on this system")
    def test_a_request_to_end_leaves_nothing_half_written(self):
        point = "{0},{1}.5,{2}.25,600,EJE\n"
        self.write("long.csv", "".join(point.format(i, i * 7919 % 9973, i * 104729 % 9967)
                                       for i in range(60000)))
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            # What is started in the background may ignore it.
            heard = functools.partial(signal.signal, number, signal.SIG_DFL)
            with subprocess.Popen([PROGRAM, "long.csv", "-o", "out"], preexec_fn=heard) as program:
                while program.poll() is None and not any(".partial" in name for name in self.files_in("out")):
                    time.sleep(0.001)
                program.send_signal(number)
                self.assertEqual(program.wait(timeout=60), -number)
            self.assertFalse(os.path.exists("out"))
            self.assertEqual(self.files(), ["good.csv", "long.csv", "square.csv"])

    @unittest.skipUnless(resource, "no limits on this system")
    def test_a_write_that_fails_half_way_leaves_the_older_files(self):
        os.mkdir("out")
        self.write("out/plan.svg", "older")

        def allow_100_bytes():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100))

        for folder in ("out", "new"):
            self.assert_fails(run("good.csv", "-o", folder, preexec_fn=allow_100_bytes), 15,
                              f"survey_report: cannot write {folder}/plan.svg: File too large\n")
        self.assertEqual(pathlib.Path("out/plan.svg").read_text(), "older")
        self.assertEqual(os.listdir("out"), ["plan.svg"])
        self.assertEqual(self.files(), ["good.csv", "out", "square.csv"])


class Languages(InAFolder):
    def setUp(self):
        super().setUp()
        self.write("square.csv", SQUARE)

    def report(self, *arguments, **variables):
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("LC_ALL", "LC_MESSAGES", "LANG")}
        return run(*arguments, env={**environment, **variables})

    def test_who_chooses_the_language(self):
        spanish, english = "Informe del levantamiento: ", "Survey report: "
        rows = [
            ([], {}, english),
            ([], {"LANG": "es_ES.UTF-8"}, spanish),
            ([], {"LANG": "es"}, spanish),
            ([], {"LANG": "fr_FR.UTF-8"}, english),
            ([], {"LC_MESSAGES": "es_MX", "LANG": "en_GB"}, spanish),
            ([], {"LC_ALL": "C", "LC_MESSAGES": "es_MX", "LANG": "es_ES"}, english),
            ([], {"LC_ALL": "", "LANG": "es_ES@euro"}, spanish),
            (["--language", "en"], {"LANG": "es_ES.UTF-8"}, english),
            (["--language=es"], {}, spanish),
        ]
        for arguments, variables, start in rows:
            with self.subTest((arguments, variables)):
                result = self.report("square.csv", *arguments, **variables)
                self.assertTrue(result.stdout.decode().startswith(start))

    def test_messages_are_in_the_language(self):
        self.write("bad.csv", "1,2,x,4\n")
        rows = [
            (["bad.csv"], 7, 'bad.csv:1:5: Y "x" no es un número\n'),
            (["gone.csv"], 3, "survey_report: no se puede leer gone.csv: No existe el fichero o la "
             "carpeta\n"),
            (["square.csv", "--grid=x"], 2, 'survey_report: --grid "x" no es un número positivo\n'
             "Pruebe survey_report --help\n"),
            (["square.csv", "--plan"], 2, "survey_report: falta un nombre de fichero tras --plan\n"
             "Pruebe survey_report --help\n"),
        ]
        for arguments, status, message in rows:
            with self.subTest(message):
                self.assert_fails(self.report(*arguments, LANG="es_ES.UTF-8"), status, message)

    def test_nothing_on_a_spanish_sheet_or_table_is_english(self):
        self.report("square.csv", "-o", "es", "--language=es", "--section=0,0,100,0")
        self.report("square.csv", "-o", "en", "--section=0,0,100,0")
        self.assertEqual(sorted(os.listdir("es")), sorted(os.listdir("en")))
        alike = {"x", "y", "z", "n", "a", "m", "mm", "gon", "lindero", "square", "csv", "no",
                 "longitudinal", "vertical"}
        words = {folder: set() for folder in ("es", "en")}
        for folder, found in words.items():
            for file in pathlib.Path(folder).iterdir():
                if file.suffix in (".dxf", ".html"):  # their words are other tests'
                    continue
                text = file.read_text(encoding="utf-8")
                if file.suffix == ".svg":
                    text = "\n".join(ElementTree.fromstring(text.encode()).itertext())
                found.update(re.findall(r"[^\W\d_]+", text.lower()))
        self.assertEqual((words["es"] & words["en"]) - alike, set())
        self.assertIn("acimut", words["es"])

    def test_the_help_fits_80_columns(self):
        text = self.report("--help", LANG="es_ES.UTF-8").stdout.decode()
        self.assertTrue(text.startswith("Uso: survey_report [opciones] FICHERO\n"))
        self.assertEqual([line for line in text.splitlines() if len(line) > 80], [])


@unittest.skipUnless(FULL.exists(), "no full device on this system")
class FullDevice(InAFolder):
    def setUp(self):
        super().setUp()
        self.write("good.csv", GOOD)

    def test_standard_output(self):
        for arguments in (["good.csv"], ["--help"]):
            with open(FULL, "wb") as full:
                result = subprocess.run([PROGRAM, *arguments], stdout=full,
                                        stderr=subprocess.PIPE, check=False)
            self.assertEqual(result.stderr.decode(), "survey_report: cannot write standard output:"
                             " No space left on device\n")
            self.assertEqual(result.returncode, 15)

    def test_a_file(self):
        result = run("good.csv", "--plan", FULL)
        self.assertEqual((result.returncode, result.stderr.decode()), (
            15, "survey_report: cannot write /dev/full: No space left on device\n"))
        self.assertTrue(stat.S_ISCHR(os.stat(FULL).st_mode))


class Sample(unittest.TestCase):
    SAMPLE = "examples/survey_report/sample_survey.csv"

    def test_the_generator_gives_the_sample_byte_for_byte(self):
        made = subprocess.run([sys.executable, REPOSITORY / "tools/make_sample_survey.py"],
                              capture_output=True, check=True).stdout
        self.assertEqual(made, (REPOSITORY / self.SAMPLE).read_bytes())

    def test_its_report(self):
        result = run(REPOSITORY / self.SAMPLE)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        lines = result.stdout.decode().splitlines()
        self.assertEqual(lines[0], "Survey report: sample_survey.csv")
        self.assertEqual(lines[3], "Points    301, read as number, X, Y, Z, code")
        for line in ("X      435012.975     37   435224.003     19     211.028",
                     "Y     4473028.989      5  4473189.001     27     160.012",
                     "Z         605.279      3      638.355     23      33.076",
                     "Tolerance  0.02, in X and in Y",
                     "Pairs      9",
                     "Points     9 of 301 would be removed",
                     "    3  LINDERO       39  LINDERO       0.007   0.003  3",
                     "   14  LINDERO      295  LINDERO       0.014  -0.003  295",
                     "   47  BORDILLO     301  BORDILLO      0.002   0.002  47",
                     "   50  BORDILLO     296  BORDILLO      0.013  -0.004  296",
                     "  102  EJE          103  EJE           0.000   0.004  102",
                     "  161  ARROYO MD    297  ARROYO MD     0.006  -0.002  297",
                     "  174  ARROYO MI    299  ARROYO MI     0.010  -0.003  299",
                     "  224  ARBOL        300  ARBOL         0.018   0.004  224",
                     "  271  RELLENO      298  RELLENO       0.011  -0.001  298",
                     "Terrain   28 points within 10.000 of the axis, at most 22.445 apart along it",
                     "Stations  every 20, and both ends of the terrain",
                     "      1    14.566  435016.990  4473108.995    617.936",
                     "     12   213.593  435216.017  4473108.995    621.752",
                     "Inside    99 of 301 points, to a hundredth"):
            self.assertIn(line, lines)
        start = next(i for i, line in enumerate(lines) if line.startswith("Number"))
        rows = lines[start + 2:]
        self.assertEqual(len(rows), 301)
        self.assertEqual({len(line) for line in rows[:-1]}, {len(lines[start])})
        self.assertEqual([line.split()[0] for line in rows if "  - " in line], ["102"])

    def test_the_points_that_stay_are_lines_of_the_sample(self):
        with tempfile.TemporaryDirectory() as folder:
            kept = pathlib.Path(folder) / "kept.csv"
            self.assertEqual(run(REPOSITORY / self.SAMPLE, "--kept", kept).returncode, 0)
            gone = ["3", "47", "102", "224", "295", "296", "297", "298", "299"]
            sample = (REPOSITORY / self.SAMPLE).read_text(encoding="utf-8").splitlines()[1:]
            self.assertEqual(kept.read_text(encoding="utf-8").splitlines(),
                             [line for line in sample if line.split(",")[0] not in gone])


if __name__ == "__main__":
    REPOSITORY = pathlib.Path(sys.argv.pop()).resolve()
    PROGRAM = os.path.abspath(sys.argv.pop())
    unittest.main()
