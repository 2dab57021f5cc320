"""Reads the CAD drawings of survey_report back with another program's reader.

    dxf_test.py PROGRAM SURVEY
"""

import collections
import csv
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import ezdxf
from ezdxf.lldxf.encoding import decode_dxf_unicode

PROGRAM = ""
SURVEY = ""

os.environ["LC_ALL"] = "C"  # the report's language

HOSTILE = ("Number,X,Y,Z,Code\n"
           '"1 %%d",0,0,0.125,"<&> ""A"""\n2^J,100,0,1.0000001,"A\x01\tB"\n'
           "\u00d1 3,100,80,2,SE\u00d1AL\n4\\U+0041,0,80,3,SENAL\n5,50,40,9,\n6,20,20,1,0\n"
           "7,30,20,1.5,BOUNDARY\n")


class Drawing:
    def __init__(self, survey, *arguments):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([PROGRAM, survey, "-o", folder, *arguments], check=True, timeout=60)
            self.drawing = ezdxf.readfile(pathlib.Path(folder) / "survey.dxf")
            with open(pathlib.Path(folder) / "points.csv", encoding="utf-8", newline="") as file:
                self.points = list(csv.reader(file))[1:]
            self.report = (pathlib.Path(folder) / "report.txt").read_text(encoding="utf-8")

    def all(self, kind, *layers):
        return [entity for entity in self.drawing.modelspace().query(kind)
                if not layers or entity.dxf.layer in layers]

    def polylines(self, layer):
        return [[tuple(vertex.dxf.location) for vertex in line.vertices]
                for line in self.all("POLYLINE", layer)]


class OfASurvey(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.drawing = Drawing(SURVEY)

    def test_it_is_a_sound_drawing_of_release_12(self):
        audit = self.drawing.drawing.audit()
        self.assertEqual((audit.errors, audit.fixes), ([], []))
        self.assertEqual(self.drawing.drawing.dxfversion, "AC1009")

    def test_all_points_are_where_the_table_has_them(self):
        drawn = [tuple(point.dxf.location) for point in self.drawing.all("POINT")]
        self.assertEqual(drawn, [tuple(map(float, row[1:4])) for row in self.drawing.points])

    def test_each_code_has_a_layer_of_its_own(self):
        layers = collections.defaultdict(set)
        for point, row in zip(self.drawing.all("POINT"), self.drawing.points):
            layers[row[4]].add(point.dxf.layer)
        self.assertEqual({len(names) for names in layers.values()}, {1})
        self.assertEqual(len(set.union(*layers.values())), len(layers))
        known = {layer.dxf.name for layer in self.drawing.drawing.layers}
        self.assertLessEqual(set.union(*layers.values()), known)

    def test_each_point_has_its_number_and_its_elevation(self):
        layers = {point.dxf.layer for point in self.drawing.all("POINT")}
        texts = [text.dxf.text for text in self.drawing.all("TEXT", *layers)]
        self.assertEqual(texts[::2], [row[0] for row in self.drawing.points])
        self.assertEqual([float(text) for text in texts[1::2]],
                         [round(float(row[3]), 3) for row in self.drawing.points])

    def test_contours_have_their_levels(self):
        lines = [*self.drawing.polylines("CONTOURS"), *self.drawing.polylines("INDEX_CONTOURS")]
        said = int(self.drawing.report.split(" an index contour: ")[1].split()[0])
        self.assertEqual(len(lines), said)
        low = min(float(row[3]) for row in self.drawing.points)
        high = max(float(row[3]) for row in self.drawing.points)
        for line in lines:
            self.assertEqual(len({z for _, _, z in line}), 1)
            self.assertTrue(low <= line[0][2] <= high)

    def test_the_profile_stands_beside_the_survey(self):
        [terrain] = self.drawing.polylines("PROFILE")
        self.assertGreater(min(x for x, _, _ in terrain),
                           max(float(row[1]) for row in self.drawing.points))
        self.assertEqual(len(self.drawing.polylines("SECTION_LINE")), 1)
        self.assertEqual(len(self.drawing.polylines("WORK_AREA")), 1)
        self.assertEqual(len(self.drawing.polylines("BOUNDARY")), 1)

    def test_in_spanish_its_layers_are_spanish(self):
        english = {layer.dxf.name for layer in self.drawing.drawing.layers}
        spanish = {layer.dxf.name for layer in Drawing(SURVEY, "--language=es").drawing.layers}
        self.assertLessEqual({"POLIGONAL_LINDERO", "CURVAS_DE_NIVEL", "PERFIL"}, spanish - english)
        self.assertLessEqual({"BOUNDARY", "CONTOURS", "PROFILE"}, english - spanish)


class OfHostileNames(unittest.TestCase):
    def test_they_are_read_as_they_were(self):
        with tempfile.TemporaryDirectory() as folder:
            survey = pathlib.Path(folder) / "hostile.csv"
            survey.write_text(HOSTILE, encoding="utf-8")
            drawing = Drawing(survey)
        audit = drawing.drawing.audit()
        self.assertEqual((audit.errors, audit.fixes), ([], []))
        layers = [point.dxf.layer for point in drawing.all("POINT")]
        self.assertEqual(layers, ["_____A_", "A__B", "SENAL", "SENAL_2", "NO_CODE", "0_2",
                                  "BOUNDARY_2"])
        numbers = [text for text in drawing.all("TEXT", *layers)][::2]
        # Three percent signs are one that is drawn; this reader leaves them as they are.
        self.assertEqual([decode_dxf_unicode(number.dxf.text) for number in numbers],
                         ["1 %%%%%%d", "2^ J", "\u00d1 3", "4\\U+0041", "5", "6", "7"])
        self.assertEqual([point.dxf.location.z for point in drawing.all("POINT")],
                         [0.125, 1.0000001, 2, 3, 9, 1, 1.5])


if __name__ == "__main__":
    SURVEY = sys.argv.pop()
    PROGRAM = sys.argv.pop()
    unittest.main()
