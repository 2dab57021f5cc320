"""Members that take arrays, objects and several outputs, from Python."""

import math

from support import Case

import orv2_geo
from orv2_geo import DoubleArray, LongArray, Ref, RunFailure, SingleArray, StringArray

algorismos = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
geometria = orv2_geo.create("Orv2_Geo.cgeo_Geometria")
terreno = orv2_geo.create("Orv2_Geo.cgeo_Terreno")
ordena = orv2_geo.create("Orv2_Geo.cgeo_Ordena")
api = orv2_geo.create("Orv2_Geo.cgeo_api")


class Crossing(Case):
    def test_the_point_comes_in_the_callers_variables(self):
        x, y = Ref(-1.0), Ref(-1.0)
        self.assertIs(algorismos.Cruce_XY_2lineas(0, 0, 2, 2, 0, 2, 2, 0, x, y), True)
        self.assertEqual((x.value, y.value), (1.0, 1.0))

    def test_no_point_leaves_the_variables_and_zeroes_those_of_singles(self):
        x, y = Ref(-1.0), Ref(-1.0)
        self.assertIs(algorismos.Intersec_XY_2lineas(0, 0, 1, 0, 0, 1, 1, 1, x, y), False)
        self.assertEqual((x.value, y.value), (-1.0, -1.0))
        self.assertIs(algorismos.Intersec_XY_2lineas_s(0, 0, 1, 0, 0, 1, 1, 1, x, y), False)
        self.assertEqual((x.value, y.value), (0.0, 0.0))

    def test_one_variable_for_two_outputs(self):
        both = Ref(0.0)
        algorismos.Intersec_XY_2lineas(0, 0, 2, 2, 0, 4, 4, 0, both, both)
        self.assertEqual(both.value, 2.0)

    def test_a_single_result_beyond_its_range_is_infinite(self):
        self.assertEqual(algorismos.Longitud_Linea(5, 5, 0, 0, 10, 0), 5.0)
        far = 3e38
        self.assertEqual(algorismos.Longitud_Linea_s(far, 0, -far, 0, -far, 1), math.inf)


class Cuts(Case):
    def setUp(self):
        self.x = DoubleArray([0, 10, 10, 0, 0], lower=1)
        self.y = DoubleArray([0, 0, 10, 10, 0], lower=1)
        self.count, self.xc, self.yc = Ref(-1), DoubleArray(), DoubleArray()

    def cut(self, vertices):
        algorismos.Cortes_R1_con_Pol(-5.0, 4.0, 15.0, 4.0, vertices, self.x, self.y, self.count,
                                     self.xc, self.yc)

    def test_cuts_come_in_order_with_bounds_from_0(self):
        self.cut(5)
        self.assertEqual(self.count.value, 2)
        self.assertEqual((list(self.xc), self.xc.lower), ([0.0, 0.0, 10.0], 0))
        self.assertEqual(list(self.yc), [0.0, 4.0, 4.0])

    def test_an_open_ring_misses_its_closing_edge(self):
        self.cut(4)
        self.assertEqual((self.count.value, list(self.xc)), (1, [0.0, 10.0]))

    def test_too_many_vertices_are_9_with_the_cuts_so_far_counted(self):
        with self.fails(9, "Orv2_Geo.cgeo_Algorismos"):
            self.cut(6)
        self.assertEqual(self.count.value, 2)
        self.assertFalse(self.xc.allocated)

    def test_a_locked_output_is_10(self):
        self.xc.resize(0, 0)
        with self.xc.locked(), self.fails(10):
            self.cut(5)

    def test_the_retired_members_show_a_box_and_say_no(self):
        shown = []

        class Screen:
            def error_box(self, text, flags, caption):
                shown.append((text, flags, caption))

            def show_modal(self, form):
                raise AssertionError("no form is shown")

        orv2_geo.set_user_interface(Screen())
        try:
            self.assertIs(algorismos.Pto_en_Poligono_d(DoubleArray(), DoubleArray(), 0, 0, 0), False)
            self.assertIs(algorismos.Pto_en_Poligono(SingleArray(), SingleArray(), 0, 0, 0, 7), False)
        finally:
            orv2_geo.set_user_interface(None)
        self.assertEqual(shown, [("obsoleto", 0, None)] * 2)


class Surface:
    def __init__(self, good=100):
        self.dots, self.good = [], good

    def PSet(self, step, x, y, colour):
        if len(self.dots) == self.good:
            raise RunFailure(1234, "no cabe", "Superficie")
        self.dots.append((step, float(x), float(y), colour))


class RasterLine(Case):
    def test_dots_walk_from_end_to_end(self):
        surface = Surface()
        algorismos.Linea_a_puntos(surface, 0, 0, 3, 0)
        self.assertEqual(surface.dots, [(0, x, 0.5, 0) for x in (0.5, 1.25, 2.0, 2.75, 3.5)])

    def test_a_surface_that_fails_keeps_its_dots_and_its_number(self):
        surface = Surface(good=2)
        with self.fails(1234) as caught:
            algorismos.Linea_a_puntos_s(surface, 0, 0, 3, 0)
        self.assertEqual((caught.exception.description, len(surface.dots)), ("no cabe", 2))

    def test_no_surface_is_91_and_one_without_the_member_438(self):
        with self.fails(91):
            algorismos.Linea_a_puntos(None, 0, 0, 3, 0)
        with self.fails(438):
            algorismos.Linea_a_puntos(object(), 0, 0, 3, 0)

    def test_a_surface_put_in_the_variable_meanwhile_takes_the_rest_of_the_dots(self):
        second = Surface()

        class Leaving(Surface):
            def PSet(self, step, x, y, colour):
                super().PSet(step, x, y, colour)
                variable.value = second

        first = Leaving()
        variable = Ref(first)
        algorismos.Linea_a_puntos(variable, 0, 0, 3, 0)
        self.assertEqual((len(first.dots), len(second.dots)), (1, 4))
        self.assertIs(variable.value, second)

    def test_no_surface_in_the_variable_any_more_is_91(self):
        class Leaving(Surface):
            def PSet(self, step, x, y, colour):
                super().PSet(step, x, y, colour)
                variable.value = None

        surface = Leaving()
        variable = Ref(surface)
        with self.fails(91):
            algorismos.Linea_a_puntos(variable, 0, 0, 3, 0)
        self.assertEqual(len(surface.dots), 1)

    def test_a_surface_may_move_the_pen(self):
        class Moving(Surface):
            def PSet(self, step, x, y, colour):
                super().PSet(step, x, y, colour)
                y.value += 1

        surface = Moving()
        algorismos.Linea_a_puntos(surface, 0, 0, 1, 0)
        self.assertEqual([dot[2] for dot in surface.dots], [0.5, 1.5, 2.5])


class Surveying(Case):
    def test_a_bearing_and_a_distance(self):
        bearing, length = Ref(0.0), Ref(0.0)
        geometria.GR_AngDist_de_1Recta(0, 0, 1, 1, bearing, length)
        self.assertEqual(bearing.value, 50.000000006528644)
        self.assertEqual(geometria.GF_Distancia(0, 0, 3, 4), 5.0)  # a variant that holds a number

    def test_parallel_lines_set_the_flag(self):
        x, y, parallel = Ref(-1.0), Ref(-1.0), Ref(False)
        geometria.GR_Intersec_2_Rectas(0, 0, 1, 1, 0, 1, 1, 2, x, y, parallel)
        self.assertEqual((x.value, y.value, parallel.value), (-1.0, -1.0, True))

    def test_a_profile(self):
        x, y = DoubleArray([0, 10, 20], lower=1), DoubleArray([100, 110, 90], lower=1)
        levels = DoubleArray()
        terreno.TR_Cotas_en_unTerreno_dando_DistOr(x, y, DoubleArray([0, 5, 30]), levels)
        self.assertEqual(list(levels), [0.0, 105.0, 70.0])

    def test_a_clean_profile(self):
        points, distances, levels = Ref(3), DoubleArray([30, 10, 20], lower=1), DoubleArray(
            [3, 1, 2], lower=1)
        terreno.Ordena_terreno_y_quita_repetidos(points, distances, levels)
        self.assertEqual((points.value, list(distances), list(levels)),
                         (3, [0.0, 10.0, 20.0, 30.0], [0.0, 1.0, 2.0, 3.0]))


class PointInPolygon(Case):
    x = DoubleArray([0, 10, 10, 0, 0], lower=1)
    y = DoubleArray([0, 0, 10, 10, 0], lower=1)

    def test_low_edges_are_in_and_high_edges_out(self):
        self.assertIs(api.Pto_in_Poligono(self.x, self.y, 5, 0.0, 0.0), True)
        self.assertIs(api.Pto_in_Poligono(self.x, self.y, 5, 10.0, 10.0), False)

    def test_no_region_is_told_by_loc_alone(self):
        loc = Ref(7)
        self.assertIs(api.Pto_in_Poligono(self.x, self.y, 2, 5.0, 5.0, loc), False)
        self.assertEqual(loc.value, -1)
        self.assertIs(api.Pto_in_Poligono(self.x, self.y, 2, 5.0, 5.0), False)


class Sorts(Case):
    def test_doubles_through_an_index_with_bounds_from_0(self):
        index = LongArray()
        ordena.Ordena_Double_Index_Array(DoubleArray([12.5, -0.5, 0.0], lower=1), index)
        self.assertEqual((list(index), index.lower), ([0, 2, 3, 1], 0))

    def test_doubles_in_place_up_to_a_bound(self):
        values = DoubleArray([7.0, 4.5, 2.25], lower=1)
        ordena.Ordena_Double_Array(values, UpperBound=2)
        self.assertEqual(list(values), [4.5, 7.0, 2.25])

    def test_texts_without_regard_to_case(self):
        codes = StringArray(["Abd", "abc", "ABC"], lower=1)
        ordena.Ordena_StringArray(codes)
        self.assertEqual(list(codes), ["abc", "ABC", "Abd"])

    def test_an_index_of_texts(self):
        codes, index = StringArray(["c", "a", "b"], lower=1), LongArray([1, 2, 3], lower=1)
        ordena.Ordena_StringIndexArray(codes, index)
        self.assertEqual((list(index), list(codes)), ([2, 3, 1], ["c", "a", "b"]))

    def test_numbers_and_their_index(self):
        numbers = LongArray([3, 1, 2], lower=1)
        index = LongArray([1, 2, 3], lower=1)
        ordena.Ordena_LongIndexArray(numbers, index, 9)
        self.assertEqual(list(index), [2, 3, 1])
        index = LongArray([1, 2, 3], lower=1)
        ordena.Ordena_LongIndexArray(numbers, index)
        self.assertEqual(list(index), [2, 3, 1])
        ordena.Ordena_LongArray(numbers)
        self.assertEqual(list(numbers), [1, 2, 3])

    def test_an_entry_that_numbers_nothing_is_9(self):
        with self.fails(9, "Orv2_Geo.cgeo_Ordena"):
            ordena.Ordena_LongIndexArray(LongArray([3], lower=1), LongArray([1, 2], lower=1))


class Bar:
    """A progress indicator that keeps what it is told."""

    def __init__(self):
        self.__dict__.update(told=[], Visible=None, Min=None, max=None, Value=None)

    def __setattr__(self, name, value):
        self.told.append((name, value))


class RepeatedPoints(Case):
    def setUp(self):
        self.count, self.index = Ref(4), LongArray()
        self.x, self.y, self.z = (DoubleArray(values) for values in (
            [0, 9, 0, 0, 5], [0, 0, 0, 0, 0], [0, 1, 2, 3, 4]))

    def remove(self, *given):
        ordena.Quita_Puntos_Repetidos_XY_con_indice1(self.count, self.x, self.y, self.z, self.index,
                                                     *given)

    def test_the_flag_is_a_points_and_the_entry_a_places(self):
        bar = Bar()
        self.remove(bar)
        self.assertEqual((self.count.value, list(self.x), list(self.z)),
                         (3, [0.0, 0.0, 0.0, 9.0], [0.0, 2.0, 3.0, 1.0]))
        self.assertEqual(list(self.index), [0, 2, 3, 1, 3])
        self.assertEqual(bar.told, [("Visible", True), ("Min", 0), ("max", 4 / 8001),
                                    ("Visible", True)])

    def test_a_negative_precision_keeps_all(self):
        self.remove(Bar(), -1.0, True)
        self.assertEqual((self.count.value, list(self.x)), (4, [0.0, 0.0, 0.0, 5.0, 9.0]))

    def test_a_lower_bound_of_1_is_9_in_the_end(self):
        self.z = DoubleArray([1, 2, 3, 4], lower=1)
        with self.fails(9, "Orv2_Geo.cgeo_Ordena"):
            self.remove(Bar())
        self.assertEqual((self.count.value, len(self.x), len(self.z)), (3, 4, 4))

    def test_texts_are_not_swapped(self):
        first, second, number = Ref("one"), Ref("two"), Ref(7)
        ordena.SwapStrings(first, second, number)
        self.assertEqual((first.value, second.value, number.value), ("one", "two", 7))
