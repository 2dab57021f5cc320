"""One member for every row of some columns: the same bits as the loop."""

import array
import math
import random
import struct

from support import Case, needs_numpy, numpy

import orv2_geo
from orv2_geo import DoubleArray, LongArray, Ref, ShortArray, SingleArray, bulk, omitted

algorismos = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
functions = orv2_geo.create("Orv2_Geo.cgeo_FuncDeriv")
geometria = orv2_geo.create("Orv2_Geo.cgeo_Geometria")
api = orv2_geo.create("Orv2_Geo.cgeo_api")
terreno = orv2_geo.create("Orv2_Geo.cgeo_Terreno")


def column_bits(values):
    return [struct.pack("<d", value) for value in values]


class AsTheLoop(Case):
    """Every member that takes numbers alone, over random columns of every kind."""

    SPREAD = (0.0, -0.0, 1.0, -1.0, 1e-9, 2.5, 100.0, -317.25, 1e8, 1e154, 1e200, math.inf, math.nan)

    def value(self, type_name, draw):
        number = draw.choice(self.SPREAD) if draw.random() < 0.3 else draw.uniform(-1000, 1000)
        if type_name.startswith(("i16", "i32")):
            return draw.randrange(-30000, 30000)
        if type_name.startswith("bool"):
            return draw.random() < 0.5
        if type_name.startswith("f32"):
            return 0.0 if abs(number) > 1e38 else struct.unpack("f", struct.pack("f", number))[0]
        return number

    def loop(self, member, described, rows):
        """A call for each row: results, what the written variables became, and numbers."""
        results, written, numbers = [], [], []
        for row in rows:
            given = [Ref(value) if one.type.endswith("&") else value
                     for one, value in zip(described.parameters, row)]
            try:
                results.append(member(*given))
                numbers.append(0)
            except orv2_geo.RunFailure as failure:
                results.append(0)
                numbers.append(failure.number)
            written.append([one.value for one, parameter in zip(given, described.parameters)
                            if parameter.use])
        return results, written, numbers

    def test_every_member_of_numbers(self):
        draw = random.Random(20261122)
        tried = 0
        for of_class in orv2_geo.classes().values():
            for described in of_class.members:
                types = [one.type.rstrip("&") for one in described.parameters]
                if not types or described.kind != 0 or not set(types) <= {"f64", "f32", "i32", "i16", "bool"}:
                    continue
                member = getattr(of_class(), described.name)
                rows = [[self.value(one, draw) for one in types] for _ in range(200)]
                results, written, numbers = self.loop(member, described, rows)
                got = bulk(member, *map(list, zip(*rows)), failures="mask")
                with self.subTest(described.name):
                    self.assertEqual(list(got.numbers), numbers)
                    self.assertEqual(got.failed.tolist(), [number != 0 for number in numbers])
                    kept = [i for i, number in enumerate(numbers) if number == 0]
                    if described.result != "none":
                        self.assertEqual(column_bits(got.result[i] for i in kept),
                                         column_bits(results[i] for i in kept))
                    for place, column in enumerate(got.written.values()):
                        self.assertEqual(column_bits(column), column_bits(row[place] for row in written))
                tried += 1
        self.assertGreater(tried, 50)


class Columns(Case):
    def test_a_number_stands_for_every_row(self):
        got = bulk(algorismos.Azimut, [1, -1.0], 0).written["aZ"]
        self.assertEqual(list(got), [99.99999999999999, 300.0])

    def test_columns_of_every_kind(self):
        values = [1.0, -1.0, 2.5]
        wanted = bulk(functions.F_SenH, values).result
        for column in (tuple(values), array.array("d", values), DoubleArray(values, lower=5),
                       memoryview(array.array("d", values)), array.array("f", values),
                       memoryview(array.array("d", [1.0, 9.0, -1.0, 9.0, 2.5]))[::2]):
            self.assertEqual(bulk(functions.F_SenH, column).result, wanted)

    def test_whole_numbers_for_reals(self):
        self.assertEqual(list(bulk(geometria.GF_Distancia, [0, 3], 0, [0, 0], [4, 4]).result), [4.0, 5.0])

    def test_whole_columns_and_truths(self):
        got = bulk(algorismos.Distancia_Punto_Punto_l, [0, 1], LongArray([0, 1]), 3, [4, 5])
        self.assertIsInstance(got.result, SingleArray)
        self.assertEqual(list(got.result), [5.0, 4.4721360206604])
        crossed = bulk(algorismos.Se_cruzan_2lineas, 0, 0, 2, 2, [0, 5], [2, 5], [2, 6], [0, 5])
        self.assertEqual(crossed.result.tolist(), [True, False])
        self.assertEqual(crossed.result.format, "?")
        parallel = bulk(geometria.GR_Intersec_2_Rectas, 0, 0, 1, 1, [0, 0], [1, 1], [1, 1], [2, 0])
        self.assertEqual(parallel.written["Paralelas"].tolist(), [True, False])
        signs = bulk(algorismos.PntOnLine, 0, 0, 10, 0, [5, -5], [0, 0]).result
        self.assertIsInstance(signs, ShortArray)

    def test_what_is_given_stays_as_it_was(self):
        start = array.array("d", [7.0, 7.0])
        got = bulk(algorismos.Azimut, [0, 0], [1, -1], start)
        self.assertEqual(start.tolist(), [7.0, 7.0])
        self.assertEqual(list(got.written["aZ"]), [0.0, 199.99999999999997])

    def test_what_is_not_written_keeps_the_value_given(self):
        got = bulk(algorismos.Cruce_XY_2lineas, 0, 0, [1, 1], [1, 0], [0, 0], [1, 1], [1, 1], [0, 1],
                   [7.5, 8.5], None)
        self.assertEqual(got.result.tolist(), [True, False])
        self.assertEqual((list(got.written["xi"]), list(got.written["yi"])), ([0.5, 8.5], [0.5, 0.0]))

    def test_a_negative_zero_is_kept(self):
        got = bulk(algorismos.Intersec_XY_2lineas, [0.0], 0, 1, 1, 0, 1, 1, 2, -0.0, [-0.0]).written
        self.assertEqual(column_bits([got["xi"][0], got["yi"][0]]), column_bits([-0.0, -0.0]))

    def test_arrays_are_the_same_in_every_row(self):
        x, y = DoubleArray([0, 0, 10, 10, 0, 0]), DoubleArray([0, 0, 0, 10, 10, 0])
        inside = bulk(api.Pto_in_Poligono, x, y, 4, [5.0, 15.0, 0.0], [5.0, 5.0, 0.0])
        self.assertEqual(inside.result.tolist(), [True, False, True])
        self.assertEqual(list(inside.written), ["Loc"])
        levels = bulk(terreno.TF_Y_del_Terreno_dando_su_X, DoubleArray([0, 0, 10]), DoubleArray([0, 100, 110]),
                      [0, 5, 10]).result
        self.assertEqual(list(levels), [100.0, 105.0, 110.0])

    def test_objects_are_the_same_in_every_row(self):
        dots = []

        class Surface:
            def PSet(self, step, x, y, colour):
                dots.append((float(x), float(y)))

        bulk(algorismos.Linea_a_puntos, Surface(), [0, 10], 0, [1, 11], 0)
        self.assertEqual(len(dots), 6)

    def test_a_column_that_lies_between_two_elements(self):
        values = [1.0, -1.0, 2.5]
        crooked = memoryview(bytearray(b"x" + struct.pack("3d", *values)))[1:].cast("d")
        self.assertEqual(bulk(functions.F_SenH, crooked).result, bulk(functions.F_SenH, values).result)

    def test_no_rows(self):
        got = bulk(algorismos.Azimut, [], [])
        self.assertEqual((got.result, list(got.written["aZ"])), (None, []))
        self.assertEqual(list(bulk(functions.F_SenH, DoubleArray([])).result), [])

    def test_more_rows_than_are_called_at_once(self):
        count = 200001
        got = bulk(functions.F_CosH, [float(i % 7) for i in range(count)]).result
        self.assertEqual(len(got), count)
        self.same_bits(got[count - 1], functions.F_CosH(float((count - 1) % 7)))

    @needs_numpy
    def test_ndarrays_come_back_as_ndarrays(self):
        dx, dy = numpy.array([1.0, -1.0]), numpy.array([0.0, 0.0])
        got = bulk(algorismos.Azimut, dx, dy, failures="mask")
        for column, kind in ((got.written["aZ"], "f8"), (got.failed, "?"), (got.numbers, "i4")):
            self.assertIsInstance(column, numpy.ndarray)
            self.assertEqual(column.dtype, kind)
        self.assertEqual(got.written["aZ"].tolist(), [99.99999999999999, 300.0])
        crossed = bulk(algorismos.Se_cruzan_2lineas, dx, 0, 2, 2, 0, 2, 2, 0).result
        self.assertEqual(crossed.dtype, "?")
        strided = numpy.arange(8.0).reshape(4, 2)
        self.assertEqual(bulk(geometria.GF_Distancia, strided[:, 0], 0, strided[:, 1], 0).result.tolist(),
                         [1.0] * 4)


class Failing(Case):
    def test_the_first_failure_is_raised_with_its_row(self):
        with self.fails(5, "Orv2_Geo.cgeo_FuncDeriv") as caught:
            bulk(functions.F_LogN, [1.0, 2.0, 0.0, -1.0])
        self.assertEqual((caught.exception.row, caught.exception.member), (2, "F_LogN"))
        self.assertIn("row 2", str(caught.exception))

    def test_a_mask_tells_every_row(self):
        got = bulk(functions.F_LogN, [1.0, 0.0, -1.0, math.nan], failures="mask")
        self.assertEqual(got.failed.tolist(), [False, True, True, got.numbers[3] != 0])
        self.assertEqual(list(got.numbers)[:3], [0, 5, 5])
        self.assertEqual(got.result[0], 0.0)

    def test_what_a_failing_row_wrote_stays_written(self):
        rows = dict(R1x1=0, R1y1=0, R1x2=[1e200, 3.0], R1y2=[1e200, 4.0])
        got = bulk(geometria.GR_AngDist_de_1Recta, *rows.values(), failures="mask")
        angle, distance = Ref(0.0), Ref(0.0)
        with self.fails(got.numbers[0]):
            geometria.GR_AngDist_de_1Recta(0, 0, 1e200, 1e200, angle, distance)
        self.same_bits(got.written["Angulo"][0], angle.value)
        self.same_bits(got.written["Distancia"][0], distance.value)
        self.assertEqual(got.written["Distancia"][1], 5.0)

    def test_columns_of_different_lengths(self):
        with self.assertRaises(ValueError):
            bulk(algorismos.Azimut, [1, 2], [1])

    def test_what_is_no_bulk_call(self):
        for given in ((algorismos.Azimut,), (algorismos.Azimut, 1.0, 2.0), (len, [1]),
                      (orv2_geo.cgeo_Algorismos.Azimut, [1], [2]), (algorismos.Azimut, *[[1.0]] * 4)):
            with self.subTest(given), self.assertRaises(TypeError):
                bulk(*given)
        with self.assertRaises(ValueError):
            bulk(algorismos.Azimut, [1], [2], failures="ignore")

    def test_a_row_that_cannot_be_converted_fails_alone(self):
        got = bulk(algorismos.An360, [1e300, 400.0, "x"], failures="mask")
        self.assertEqual((list(got.numbers), got.failed.tolist()), ([6, 0, 13], [True, False, True]))
        self.assertEqual(got.result[1], algorismos.An360(400.0))
        got = bulk(algorismos.Azimut, [None, -1.0], [0, 0], [7.5, 7.5], failures="mask")
        self.assertEqual((list(got.numbers), list(got.written["aZ"])), ([13, 0], [7.5, 300.0]))
        with self.fails(6) as caught:
            bulk(algorismos.Distancia_Punto_Punto_l, [1, 2**40], 0, 0, 0)
        self.assertEqual((caught.exception.row, caught.exception.parameter), (1, "X1"))

    def test_texts_are_read_as_numbers_as_by_the_member(self):
        got = bulk(algorismos.Longitud_Linea, ["0", "0"], 0.0, 0.0, 0.0, "3", "4")
        self.assertEqual(list(got.result), [algorismos.Longitud_Linea("0", 0.0, 0.0, 0.0, "3", "4")] * 2)
        got = bulk(algorismos.Atn2, [1.0], "5")
        self.same_bits(got.result[0], algorismos.Atn2(1.0, "5"))

    def test_what_is_refused_in_a_row_is_told_by_its_parameter(self):
        for given, number, parameter in ((([1, 2],), 449, "dy"), (([1, 2], "x"), 13, "dy")):
            with self.subTest(given), self.fails(number) as caught:
                bulk(algorismos.Azimut, *given)
            self.assertEqual((caught.exception.row, caught.exception.parameter), (0, parameter))
        with self.fails(91) as caught:
            bulk(algorismos.Linea_a_puntos, None, [0.0], 0.0, 1.0, 1.0)
        self.assertEqual(caught.exception.parameter, "f")

    def test_an_element_that_is_no_number_is_13_with_its_parameter(self):
        with self.fails(13) as caught:
            bulk(algorismos.Azimut, [1.0, None], [1.0, 2.0])
        failure = caught.exception
        self.assertEqual((failure.member, failure.parameter, failure.row), ("Azimut", "dx", 1))

    def test_a_number_that_does_not_fit_is_6_with_its_parameter(self):
        with self.fails(6) as caught:
            bulk(algorismos.Distancia_Punto_Punto_l, [1], [1], 3e9, 1)
        self.assertEqual(caught.exception.parameter, "X2")

    def test_a_parameter_left_out_is_449(self):
        with self.fails(449):
            bulk(algorismos.Azimut, [1.0])
        for column in ([1.0, 2.0], [1.0, "no number"]):
            with self.fails(449):
                bulk(geometria.GF_Distancia, column, 0.0, 1.0, omitted)

    def test_a_box_in_a_row_raises_its_failure(self):
        index = DoubleArray([0, 1])
        with self.fails(9) as caught:
            bulk(orv2_geo.create("Orv2_Geo.cgeo_Matrices").Ordena_en_X_el_Indice_1Matriz1, [1, 5], index,
                 LongArray([0, 0]), None)
        self.assertEqual(caught.exception.row, 1)

    def test_an_interrupt_in_a_row_is_not_lost(self):
        class Surface:
            def PSet(self, *_):
                raise KeyboardInterrupt

        with self.assertRaises(KeyboardInterrupt):
            bulk(algorismos.Linea_a_puntos, Surface(), [0, 10], 0, [1, 11], 0)
