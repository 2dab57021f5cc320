"""A program that changed its floating-point settings gets the same bits, and keeps its settings."""

import array
import contextlib
import ctypes
import platform
import unittest

from support import Case

import orv2_geo
from orv2_geo import DoubleArray, Ref, SingleArray

MACHINES = {
    # rounding to nearest, down, up, towards zero; invalid, zero divide and overflow trapped
    "x86_64": ((0, 0x400, 0x800, 0xC00), 0x0D),
    "aarch64": ((0, 0x800000, 0x400000, 0xC00000), 0),
}
ROUNDINGS, TRAPPED = MACHINES.get(platform.machine(), ((), 0))
SYSTEM = ctypes.CDLL("libm.so.6") if ROUNDINGS else None


@contextlib.contextmanager
def rounding(way):
    before = SYSTEM.fegetround()
    SYSTEM.fesetround(way)
    try:
        yield
    finally:
        SYSTEM.fesetround(before)


@unittest.skipUnless(SYSTEM, "the numbers of this machine's roundings are not known to this test")
class FloatingPoint(Case):
    def in_every_rounding(self, work):
        found = []
        for way in ROUNDINGS:
            with rounding(way):
                found.append(work())
                left = SYSTEM.fegetround()
            self.assertEqual(left, way)
        for one in found:
            self.assertEqual(one, found[0])
        return found[0]

    def test_a_line_has_its_dots(self):
        class Surface:
            def __init__(self):
                self.dots, self.roundings = [], []

            def PSet(self, flag, x, y, colour):
                self.roundings.append(SYSTEM.fegetround())
                self.dots.append((x.value, y.value))

        for way in ROUNDINGS:
            surface = Surface()
            with rounding(way):
                orv2_geo.cgeo_Algorismos().Linea_a_puntos(surface, 0.0, 0.0, 2.25, 0.0)
            self.assertEqual(len(surface.dots), 4)
            self.assertEqual(surface.roundings, [way] * 4)

    def test_formulas(self):
        def work():
            azimuth, distance = Ref(0.0), Ref(0.0)
            orv2_geo.cgeo_Geometria().GR_AngDist_de_1Recta(0.1, 0.7, 3.3, -4.9, azimuth, distance)
            return azimuth.value.hex(), distance.value.hex()
        self.in_every_rounding(work)

    def test_numbers_that_become_narrower(self):
        third = 1 / 3
        for values in ([third, -third], array.array("d", [third, -third]),
                       array.array("q", [2**53 + 1, -2**53 - 1])):
            def work(values=values):
                return bytes(memoryview(SingleArray(values))), bytes(memoryview(DoubleArray(values)))
            self.in_every_rounding(work)

    def test_whole_numbers_of_fractions(self):
        self.assertEqual(self.in_every_rounding(
            lambda: list(orv2_geo.LongArray([2.5, 3.5, -2.5, 0.49999999999999994]))), [2, 4, -2, 0])

    def test_traps_of_the_host_catch_nothing_of_the_library(self):
        if SYSTEM.feenableexcept(TRAPPED) < 0 or not TRAPPED:
            self.skipTest("this machine cannot trap")
        try:
            x, y = Ref(0.0), Ref(0.0)
            crossed = orv2_geo.cgeo_Algorismos().Intersec_XY_2lineas(0, 0, 1, 1, 0, 1, 1, 2, x, y)
            left = SYSTEM.fegetexcept()
        finally:
            SYSTEM.fedisableexcept(TRAPPED)
        self.assertFalse(crossed)
        self.assertEqual(left, TRAPPED)


if __name__ == "__main__":
    unittest.main()
