"""What a script meets that has installed no user interface: warnings and failures, never a
window or a lost failure."""

import contextlib
import io
import os
import subprocess
import sys
import unittest
import warnings

from support import LIBRARY, Case

import orv2_geo
from orv2_geo import DoubleArray, GeoWarning, LongArray, Progress, Ref, SingleArray

algorismos = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
matrices = orv2_geo.create("Orv2_Geo.cgeo_Matrices")
ordena = orv2_geo.create("Orv2_Geo.cgeo_Ordena")
terreno = orv2_geo.create("Orv2_Geo.cgeo_Terreno")


def survey():
    return Ref(4), *(DoubleArray(values) for values in (
        [0, 9, 0, 0, 5], [0, 0, 0, 0, 0], [0, 1, 2, 3, 4])), LongArray()


class Boxes(Case):
    def test_a_box_that_only_tells_is_a_warning(self):
        with self.assertWarnsRegex(GeoWarning, "^obsoleto$") as caught:
            answer = algorismos.Pto_en_Poligono_d(DoubleArray(), DoubleArray(), 0, 0.0, 0.0)
        self.assertIs(answer, False)
        self.assertEqual(caught.filename, __file__)

    def test_a_critical_box_that_tells_of_no_failure_is_a_warning_too(self):
        with self.assertWarns(GeoWarning):
            self.assertIs(terreno.TF_DistaOrigen_estan_ordenadas(DoubleArray([0, 2, 1])), False)

    def test_a_warning_made_an_error_comes_out_of_the_call(self):
        with warnings.catch_warnings():
            warnings.simplefilter("error", GeoWarning)
            with self.assertRaisesRegex(GeoWarning, "obsoleto"):
                algorismos.Pto_en_Poligono(SingleArray(), SingleArray(), 0, 0, 0, Ref(7))

    def test_a_trapped_failure_is_raised_in_the_middle_of_the_call(self):
        for progress, number in ((None, 91), (object(), 438)):
            count, x, y, z, index = survey()
            with self.subTest(number), self.fails(number) as caught:
                ordena.Quita_Puntos_Repetidos_XY_con_indice1(count, x, y, z, index, progress)
            self.assertEqual(caught.exception.member, "Quita_Puntos_Repetidos_XY_con_indice1")
            # The survey is as it was: nothing had been removed.
            self.assertEqual((count.value, list(x)), (4, [0.0, 9.0, 0.0, 0.0, 5.0]))

    def test_the_console_tells_and_goes_on(self):
        script = ("import sys, orv2_geo\n"
                  "orv2_geo.load(sys.argv[1])\n"
                  "ordena = orv2_geo.create('Orv2_Geo.cgeo_Ordena')\n"
                  "orv2_geo.set_user_interface(orv2_geo.%s)\n"
                  "x = [orv2_geo.DoubleArray([0, 1, 2]) for _ in range(3)]\n"
                  "count = orv2_geo.Ref(2)\n"
                  "ordena.Quita_Puntos_Repetidos_XY_con_indice1(count, *x, orv2_geo.LongArray(), None)\n"
                  "print(count.value)\n")
        for name in ("console", "screen"):
            done = subprocess.run([sys.executable, "-c", script % name, LIBRARY], timeout=60, text=True,
                                  env={**os.environ, "DISPLAY": "", "WAYLAND_DISPLAY": ""},
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            with self.subTest(name):
                self.assertEqual((done.returncode, done.stdout), (0, "0\n"), done.stderr)
                self.assertIn("91:Variable de objeto no establecida", done.stderr)

    def test_the_interface_before_is_answered(self):
        self.addCleanup(orv2_geo.set_user_interface, None)
        self.assertIsNone(orv2_geo.set_user_interface(orv2_geo.console))
        self.assertIs(orv2_geo.set_user_interface(orv2_geo.screen), orv2_geo.console)
        self.assertIs(orv2_geo.set_user_interface(None), orv2_geo.screen)
        with self.assertWarns(GeoWarning):
            algorismos.Pto_en_Poligono_d(DoubleArray(), DoubleArray(), 0, 0.0, 0.0)

    def test_forms_without_a_screen_are_cancelled(self):
        script = ("import sys, orv2_geo\n"
                  "orv2_geo.load(sys.argv[1])\n"
                  "x = orv2_geo.DoubleArray([0, 1, 2])\n"
                  "found = [orv2_geo.Ref(0.0) for _ in range(6)]\n"
                  "orv2_geo.create('Orv2_Geo.cgeo_Matrices').MaxMin_3Matriz(x, x, x, *found, True)\n"
                  "print(found[0].value)\n")
        done = subprocess.run([sys.executable, "-c", script, LIBRARY], timeout=60, text=True,
                              env={**os.environ, "DISPLAY": "", "WAYLAND_DISPLAY": ""},
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, done.stdout), (0, "2.0\n"), done.stderr)
        self.assertIn("no screen is available", done.stderr)

    def test_what_a_host_of_the_process_installed_before_stays(self):
        script = """
import ctypes, sys, warnings, orv2_geo
warnings.simplefilter("error")
library = ctypes.CDLL(sys.argv[1])
Box = ctypes.CFUNCTYPE(ctypes.c_int32, ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int32,
                       ctypes.c_char_p)
class Interface(ctypes.Structure):
    _fields_ = [("size", ctypes.c_size_t), ("context", ctypes.c_void_p), ("error_box", Box),
                ("show_modal", ctypes.c_void_p), ("handle_events", ctypes.c_void_p)]
box = Box(lambda context, text, flags, caption: print(text.decode()) or 0)
own = Interface(ctypes.sizeof(Interface), None, box, None, None)
assert library.orv2_set_user_interface(ctypes.byref(own)) == 0
orv2_geo.load(sys.argv[1])
polygon = orv2_geo.DoubleArray(), orv2_geo.DoubleArray()
print(orv2_geo.cgeo_Algorismos().Pto_en_Poligono_d(*polygon, 0, 0.0, 0.0))
"""
        done = subprocess.run([sys.executable, "-c", script, LIBRARY], timeout=60, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.assertEqual((done.returncode, done.stdout), (0, "obsoleto\nFalse\n"))


class LostAnswers(Case):
    def test_a_plain_number_where_a_member_writes_is_a_warning(self):
        with self.assertWarnsRegex(GeoWarning, "Azimut writes aZ") as caught:
            algorismos.Azimut(1.0, 0.0, 0.0)
        self.assertEqual(caught.filename, __file__)

    def test_once_a_call_site(self):
        with warnings.catch_warnings(record=True) as caught:
            warnings.simplefilter("default", GeoWarning)
            for _ in range(3):
                algorismos.Azimut(1.0, 0.0, 0.0)
            algorismos.Azimut(1.0, 0.0, 0.0)
        self.assertEqual(len(caught), 2)

    def test_through_the_package_it_is_still_the_callers(self):
        levels = DoubleArray([0, 5, 1])
        with warnings.catch_warnings(record=True) as caught:
            warnings.simplefilter("default", GeoWarning)
            algorismos.call("Azimut", 1, 0, 5)
            algorismos.call("Azimut", 1, 0, 5)
            terreno.call("TF_DistaOrigen_estan_ordenadas", levels)
            orv2_geo.bulk(algorismos.Pto_en_Poligono_d, levels, levels, [0, 0], 0, 0)
        self.assertEqual([one.filename for one in caught], [__file__] * 4)
        self.assertEqual(len({one.lineno for one in caught}), 4)

    def test_a_text_that_is_no_number_is_13_and_no_warning(self):
        with warnings.catch_warnings():
            warnings.simplefilter("error", GeoWarning)
            with self.fails(13):
                algorismos.Azimut(1, 0, "abc")

    def test_made_an_error_it_stops_the_call(self):
        with warnings.catch_warnings():
            warnings.simplefilter("error", GeoWarning)
            with self.assertRaises(GeoWarning):
                algorismos.Azimut(1.0, 0.0, 0)

    def test_no_warning_for_what_is_only_read_or_left_out(self):
        api = orv2_geo.create("Orv2_Geo.cgeo_api")
        square = DoubleArray([0, 0, 10, 10, 0, 0]), DoubleArray([0, 0, 0, 10, 10, 0])
        with warnings.catch_warnings():
            warnings.simplefilter("error")
            algorismos.Azimut(1, 0.0, Ref(0.0))
            algorismos.Azimut_s(1.0, 0.0, 0.0)
            self.assertIs(api.Pto_in_Poligono(*square, 4, 5.0, 5.0), True)


class Bars(Case):
    """orv2_geo.Progress."""

    def worked(self, progress, steps=4):
        progress.Visible, progress.Min, progress.max = True, 0, float(steps)
        for step in range(steps + 1):
            progress.Value = float(step)
        progress.Visible = False
        return progress

    def test_it_is_all_that_a_member_asks_for(self):
        count, x, y, z, index = survey()
        ordena.Quita_Puntos_Repetidos_XY_con_indice1(count, x, y, z, index, Progress())
        self.assertEqual((count.value, list(x)), (3, [0.0, 0.0, 0.0, 9.0]))

    def test_a_function_is_told_the_share(self):
        told = []
        self.worked(Progress(told.append))
        self.assertEqual(told, [0.0, 0.25, 0.5, 0.75, 1.0])

    def test_the_share_is_told_from_the_lowest_on(self):
        progress = Progress(False)
        progress.Min, progress.max = 10.0, 20.0
        for value, share in ((10.0, 0.0), (15.0, 0.5), (20.0, 1.0), (5.0, 0.0), (25.0, 1.0)):
            progress.Value = value
            self.assertEqual(progress.share, share)

    def test_silent_where_nobody_looks(self):
        for progress in (Progress(file=io.StringIO()), Progress(False, file=io.StringIO())):
            self.worked(progress)
            self.assertEqual(progress._file.getvalue(), "")

    def test_a_bar_of_text(self):
        file = io.StringIO()
        progress = Progress(True, "Repetidos", file)
        progress.INTERVAL = 0.0
        self.worked(progress)
        lines = file.getvalue().split("\r")[1:]
        self.assertEqual(lines[0], "Repetidos:   0%|" + " " * 30 + "| 00:00")
        self.assertEqual(lines[2], "Repetidos:  50%|" + "#" * 15 + " " * 15 + "| 00:00")
        self.assertEqual(lines[-1], "Repetidos: 100%|" + "#" * 30 + "| 00:00\n")

    def test_a_terminal_gets_the_bar(self):
        class Terminal(io.StringIO):
            def isatty(self):
                return True

        file = Terminal()
        self.worked(Progress(file=file))
        self.assertTrue(file.getvalue().endswith("\n"))

    def test_pictures_are_not_drawn_faster_than_one_sees(self):
        file = io.StringIO()
        self.worked(Progress(True, file=file), 100000)
        self.assertLess(file.getvalue().count("\r"), 100)

    def test_bounds_that_make_no_sense_are_no_share(self):
        progress = Progress(False)
        progress.Min, progress.max, progress.Value = 5.0, 5.0, 7.0
        self.assertEqual(progress.share, 0.0)
        progress.max = 6.0
        self.assertEqual(progress.share, 1.0)

    def test_closed_in_a_with_statement(self):
        file = io.StringIO()
        with contextlib.suppress(KeyError), Progress(True, file=file) as progress:
            progress.Value = 50.0
            raise KeyError
        self.assertTrue(file.getvalue().endswith("\n"))


if __name__ == "__main__":
    unittest.main()
