"""Arrays and buffers: what goes in, what is worked in place, and who looks at what."""

import array
import ctypes
import gc
import struct
from fractions import Fraction

from support import Case, needs_numpy, numpy

import orv2_geo
from orv2_geo import DoubleArray, LongArray, Ref, ShortArray, SingleArray, StringArray

ordena = orv2_geo.create("Orv2_Geo.cgeo_Ordena")
matrices = orv2_geo.create("Orv2_Geo.cgeo_Matrices")
terreno = orv2_geo.create("Orv2_Geo.cgeo_Terreno")

NUMBERS = (DoubleArray, SingleArray, LongArray, ShortArray)
FORMATS = "bBhHiIlLqQfd?"


class GoingIn(Case):
    def test_every_element_type_goes_in_as_its_list_would(self):
        for code in FORMATS:
            values = [True, False, True] if code == "?" else [0, 1, 120]
            buffer = memoryview(struct.pack("3" + code, *values)).cast(code)
            for of_class in NUMBERS:
                with self.subTest(code, of_class=of_class.__name__):
                    self.assertEqual(of_class(buffer, lower=2), of_class(values, lower=2))

    def test_fractions_are_rounded_half_to_even_and_truths_count_minus_one(self):
        halves = array.array("d", [0.5, 1.5, -2.5])
        self.assertEqual(list(LongArray(halves)), [0, 2, -2])
        self.assertEqual(list(ShortArray(halves)), [0, 2, -2])
        self.assertEqual(list(DoubleArray(memoryview(b"\1\0").cast("?"))), [-1.0, 0.0])

    def test_the_widest_numbers_go_in_as_their_list_would(self):
        for code, values in (("q", [-2**63, 2**63 - 1, 2**53 + 1]), ("Q", [2**64 - 1, 2**53 + 1])):
            buffer = array.array(code, values)
            for of_class in (DoubleArray, SingleArray):
                self.assertEqual(of_class(buffer), of_class(values))

    def test_what_does_not_fit_is_6(self):
        for of_class, buffer in (
                (LongArray, array.array("q", [2**31])), (LongArray, array.array("Q", [2**63])),
                (LongArray, array.array("d", [2147483647.5])), (ShortArray, array.array("i", [40000])),
                (ShortArray, array.array("d", [float("nan")])), (SingleArray, array.array("d", [1e39])),
                (LongArray, array.array("f", [float("inf")])), (ShortArray, array.array("H", [32768]))):
            with self.subTest(of_class.__name__, buffer=buffer), self.fails(6):
                of_class(buffer)

    def test_exact_bits_survive(self):
        given = struct.pack("4d", -0.0, 5e-324, float("inf"), float("nan"))
        self.assertEqual(bytes(DoubleArray(memoryview(given).cast("d")).view()), given)

    def test_every_other_element_goes_in_too(self):
        buffer = memoryview(array.array("d", range(9)))
        self.assertEqual(list(DoubleArray(buffer[1::3])), [1.0, 4.0, 7.0])
        self.assertEqual(list(DoubleArray(buffer[::-4])), [8.0, 4.0, 0.0])
        self.assertEqual(list(LongArray(buffer[::-4])), [8, 4, 0])

    def test_arrays_of_this_package_go_in(self):
        for of_class in NUMBERS:
            self.assertEqual(of_class(DoubleArray([1, 2], lower=7)), of_class([1, 2]))
        self.assertEqual(StringArray(StringArray(["a"], lower=7)), StringArray(["a"]))

    def test_two_dimensions_are_13(self):
        table = memoryview(bytes(8)).cast("B", (2, 4))
        with self.assertRaises((orv2_geo.RunFailure, NotImplementedError)):
            DoubleArray(table)

    def test_a_buffer_of_texts_is_13(self):
        with self.fails(13):
            DoubleArray(memoryview(b"abc").cast("c"))

    @needs_numpy
    def test_a_scalar_of_numpy_is_no_column_of_bytes(self):
        for scalar in (numpy.datetime64("2020-01-01"), numpy.float64(1.0)):
            with self.assertRaises(TypeError):
                DoubleArray(scalar)

    @needs_numpy
    def test_arrays_of_numpy(self):
        for kind in ("f8", "f4", "i8", "i4", "i2", "u1", "?", ">f8", ">i4", "f2"):
            given = numpy.array([0, 1, 1], dtype=kind)
            for of_class in NUMBERS:
                self.assertEqual(of_class(given), of_class(given.tolist()), kind)
        self.assertEqual(list(DoubleArray(numpy.array([Fraction(1, 4), 2], dtype=object))), [0.25, 2.0])
        table = numpy.arange(6.0).reshape(3, 2)
        self.assertEqual(list(DoubleArray(table[:, 1])), [1.0, 3.0, 5.0])
        with self.fails(13):
            DoubleArray(table)


class Views(Case):
    def test_a_view_locks_the_array(self):
        made = DoubleArray([1, 2, 3], lower=1)
        with made.view() as view:
            for resize in (lambda: made.resize(0, 9), lambda: made.resize(1, 3, keep=True)):
                with self.fails(10):
                    resize()
            self.assertEqual((view.tolist(), made.upper), ([1.0, 2.0, 3.0], 3))
        made.resize(0, 9)
        self.assertEqual(len(made), 10)

    def test_every_view_counts(self):
        made = DoubleArray([1, 2])
        views = [made.view() for _ in range(3)]
        for view in views:
            with self.fails(10):
                made.resize(0, 0)
            view.release()
        made.resize(0, 0)

    def test_a_slice_of_a_view_counts_too(self):
        made = DoubleArray([1, 2, 3])
        part = made.view()[1:]
        gc.collect()
        with self.fails(10):
            made.resize(0, 0)
        del part
        made.resize(0, 0)

    def test_taking_the_lock_away_does_not_free_what_a_view_sees(self):
        made = DoubleArray([1, 2, 3])
        view = made.view()
        with self.fails(5):
            made.unlock()
        with self.fails(10):
            made.resize(0, 100000)
        self.assertEqual(view.tolist(), [1.0, 2.0, 3.0])

    def test_a_member_that_gives_another_size_is_10(self):
        index = LongArray([7, 7])
        with index.view() as view, self.fails(10):
            ordena.Ordena_Double_Index_Array(DoubleArray([0, 2, 1]), index)
        self.assertEqual(list(index), [7, 7])
        del view

    def test_a_member_that_works_in_place_is_seen(self):
        numbers = LongArray([3, 1, 2], lower=1)
        with numbers.view() as view:
            ordena.Ordena_LongArray(numbers)
            self.assertEqual(view.tolist(), [1, 2, 3])

    def test_a_view_lives_without_its_array(self):
        view = DoubleArray(range(100000)).view()
        gc.collect()
        self.assertEqual((view[0], view[-1]), (0.0, 99999.0))

    def test_a_view_of_no_elements(self):
        made = DoubleArray([])
        with made.view() as view:
            self.assertEqual((view.tolist(), view.format), ([], "d"))

    @needs_numpy
    def test_an_ndarray_over_an_array_is_no_copy(self):
        for of_class, kind in zip(NUMBERS, ("f8", "f4", "i4", "i2")):
            made = of_class([1, 2, 3], lower=1)
            seen = numpy.asarray(made)
            self.assertEqual(seen.dtype, kind)
            seen[0] = 9
            self.assertEqual(made[1], 9)
            with self.fails(10):
                made.resize(0, 0)
            del seen
            made.resize(0, 0)


class InPlace(Case):
    def test_a_fixed_buffer_refuses_another_size_before_anything_is_written(self):
        for member, arguments in (
                (ordena.Quita_Puntos_Repetidos_XY_con_indice1,
                 lambda x, n: (n, x, DoubleArray([0, 1, 2, 3]), DoubleArray([0, 0, 0, 0]),
                               LongArray(), orv2_geo.Progress(False))),
                (terreno.Ordena_terreno_y_quita_repetidos,
                 lambda x, n: (n, x, DoubleArray([0, 3, 2, 1]))),
                (matrices.Quita_Puntos_fuera_interv_de_Cotas_con_indice,
                 lambda x, n: (n, x, DoubleArray([0, 3, 2, 1]), DoubleArray([0, 3, 2, 1]),
                               LongArray([0, 1, 2, 3]), 2.0, 0.0))):
            buffer = array.array("d", [0, 30, 10, 10])
            count = Ref(3)
            given = arguments(DoubleArray.over(buffer), count)
            before = [list(one) for one in given if isinstance(one, orv2_geo.GeoArray)]
            with self.subTest(member.__name__), self.fails(10):
                member(*given)
            self.assertEqual([list(one) for one in given if isinstance(one, orv2_geo.GeoArray)], before)
            self.assertEqual((buffer.tolist(), count.value), ([0, 30, 10, 10], 3))

    def test_a_member_that_keeps_the_size_works_in_a_fixed_buffer(self):
        buffer = array.array("i", [3, 1, 2])
        ordena.Ordena_LongArray(LongArray.over(buffer, lower=1))
        self.assertEqual(buffer.tolist(), [1, 2, 3])
        left = array.array("d", [0, 1, 2])
        matrices.Sumar_a_1Matriz_otra(DoubleArray.over(left), DoubleArray([0, 10, 20]))
        self.assertEqual(left.tolist(), [0.0, 11.0, 22.0])

    def test_the_owner_is_the_base(self):
        buffer = array.array("d", [1.0])
        self.assertIs(DoubleArray.over(buffer).base, buffer)
        self.assertIsNone(DoubleArray([1.0]).base)

    def test_arrays_of_ctypes(self):
        buffer = (ctypes.c_double * 3)(3, 1, 2)
        made = DoubleArray.over(buffer, lower=1)
        made[1] = 7.5
        self.assertEqual(list(buffer), [7.5, 1.0, 2.0])

    @needs_numpy
    def test_an_ndarray_is_followed_by_a_new_one(self):
        before = numpy.array([0, 9, 0, 0, 5], dtype="f8")
        x = DoubleArray.over(before)
        count = Ref(4)
        ordena.Quita_Puntos_Repetidos_XY_con_indice1(
            count, x, DoubleArray([0, 0, 0, 0, 0]), DoubleArray([0, 1, 2, 3, 4]), LongArray(),
            orv2_geo.Progress(False))
        self.assertEqual((count.value, list(x)), (3, [0.0, 0.0, 0.0, 9.0]))
        self.assertIsInstance(x.base, numpy.ndarray)
        self.assertIsNot(x.base, before)
        self.assertEqual(x.base.tolist(), [0.0, 0.0, 0.0, 9.0])
        x[3] = 8.0
        self.assertEqual(x.base[3], 8.0)
        self.assertEqual(len(before), 5)

    @needs_numpy
    def test_what_follows_keeps_elements_and_type(self):
        for of_class, kind in zip(NUMBERS, ("f8", "f4", "i4", "i2")):
            made = of_class.over(numpy.array([1, 2, 3], dtype=kind), lower=1)
            made.resize(2, 4, keep=True)
            self.assertEqual((list(made), made.base.tolist(), made.base.dtype), ([2, 3, 0], [2, 3, 0], kind))
            made.resize(0, 1)
            self.assertEqual(made.base.tolist(), [0, 0])

    @needs_numpy
    def test_an_ndarray_that_cannot_be_worked_in_place_is_refused(self):
        table = numpy.arange(6.0).reshape(3, 2)
        with self.assertRaises(TypeError):
            DoubleArray.over(table[:, 1])
        with self.fails(13):
            DoubleArray.over(table)
        with self.fails(13):
            DoubleArray.over(numpy.zeros(3, dtype="f4"))
        fixed = numpy.zeros(3)
        fixed.flags.writeable = False
        with self.assertRaises(TypeError):
            DoubleArray.over(fixed)

    @needs_numpy
    def test_an_ndarray_of_bytes_has_a_fixed_size(self):
        x = DoubleArray.over(numpy.frombuffer(bytearray(struct.pack("5d", 0, 3, 1, 1, 2)), dtype="u1"))
        z, count = DoubleArray([0, 5, 5, 5, 6]), Ref(4)
        with self.fails(10):
            terreno.Ordena_terreno_y_quita_repetidos(count, x, z)
        self.assertEqual((count.value, list(x), list(z)), (4, [0, 3, 1, 1, 2], [0, 5, 5, 5, 6]))

    @needs_numpy
    def test_a_view_of_what_is_followed_locks_it(self):
        made = DoubleArray.over(numpy.zeros(3))
        with made.view():
            with self.fails(10):
                made.resize(0, 9)
        made.resize(0, 9)
        self.assertEqual(len(made.base), 10)


class Slices(Case):
    def setUp(self):
        self.made = DoubleArray([1, 2, 3, 4, 5], lower=10)

    def test_a_slice_keeps_indexes_past_16_bits(self):
        for lower in (70000, -70000, 2**31 - 5, -2**31):
            with self.subTest(lower=lower):
                array = DoubleArray([1.0, 2.0, 3.0, 4.0], lower=lower)
                part = array[lower + 1:lower + 3]
                self.assertEqual((part.lower, list(part)), (lower + 1, [2.0, 3.0]))

    def test_a_slice_keeps_the_indexes(self):
        part = self.made[11:14]
        self.assertEqual(part, DoubleArray([2, 3, 4], lower=11))
        self.assertEqual([part[i] for i in (11, 12, 13)], [self.made[i] for i in (11, 12, 13)])

    def test_an_end_left_out_is_the_bound(self):
        self.assertEqual(self.made[:], self.made)
        self.assertEqual(self.made[13:], DoubleArray([4, 5], lower=13))
        self.assertEqual(self.made[:11], DoubleArray([1], lower=10))
        self.assertEqual(list(self.made[15:]), [])
        self.assertEqual(list(self.made[12:11]), [])

    def test_steps(self):
        self.assertEqual(list(self.made[::2]), [1.0, 3.0, 5.0])
        self.assertEqual(list(self.made[11:15:3]), [2.0, 5.0])
        for step in (0, -1):
            with self.assertRaises(ValueError):
                self.made[::step]

    def test_an_end_outside_is_9(self):
        for part in (slice(9, None), slice(None, 16), slice(-1, None), slice(0, 2**70)):
            with self.subTest(part), self.fails(9):
                self.made[part]
        with self.assertRaises(TypeError):
            self.made[1.5:]
        with self.fails(9):
            DoubleArray([1.0], lower=2**31 - 1)[2**31:]

    def test_as_many_elements_are_assigned(self):
        self.made[11:13] = [7, True]
        self.assertEqual(list(self.made), [1.0, 7.0, -1.0, 4.0, 5.0])
        self.made[::2] = (x for x in (0, 0, 0))
        self.assertEqual(list(self.made), [0.0, 7.0, 0.0, 4.0, 0.0])
        for values in ([1], [1, 2, 3], []):
            with self.assertRaises(ValueError):
                self.made[11:13] = values
        with self.fails(13):
            self.made[11:13] = [5.0, "x"]
        self.assertEqual(list(self.made), [0.0, 7.0, 0.0, 4.0, 0.0])

    def test_a_part_of_itself_is_assigned(self):
        self.made[11:15] = self.made[10:14]
        self.assertEqual(list(self.made), [1.0, 1.0, 2.0, 3.0, 4.0])
        self.made[:] = self.made
        self.assertEqual(list(self.made), [1.0, 1.0, 2.0, 3.0, 4.0])

    def test_texts(self):
        made = StringArray(["a", "b", "c"], lower=1)
        self.assertEqual(made[2:], StringArray(["b", "c"], lower=2))
        made[1:3] = ["ñ", "\0"]
        self.assertEqual(list(made), ["ñ", "\0", "c"])

    def test_elements_are_not_deleted(self):
        with self.assertRaises(TypeError):
            del self.made[11]
        with self.assertRaises(TypeError):
            del self.made[11:12]


class Showing(Case):
    def test_a_long_array_is_shown_by_its_ends(self):
        self.assertEqual(repr(DoubleArray(range(1000), lower=1)),
                         "<DoubleArray of 1000 elements [0.0, 1.0, 2.0, ..., 999.0], lower=1>")
        self.assertEqual(repr(StringArray(["ñ"] * 13)),
                         "<StringArray of 13 elements ['ñ', 'ñ', 'ñ', ..., 'ñ'], lower=0>")

    def test_a_short_one_as_it_is_made(self):
        made = LongArray(range(12), lower=-3)
        self.assertEqual(eval(repr(made)), made)


class WhatAMemberResizes(Case):
    """The catalogue tells which arrays a member may give another size; so do the members."""

    NUMBERS = {"nVer": 4, "napex": 4, "Nv": 4, "nPtos": 4, "nPtos1": 4, "Ptos": 4, "UpperBound": 4,
               "LowerBound": 1, "MaxZ": 1e9, "MinZ": -1e9, "Precision": 0.01}
    ARRAYS = {"DoubleArray": (DoubleArray, "f8"), "SingleArray": (SingleArray, "f4"),
              "LongArray": (LongArray, "i4"), "ShortArray": (ShortArray, "i2")}

    class Person:
        def error_box(self, *_):
            pass

        def show_modal(self, form):
            for button in ("cmdCalcular", "cmdEliminar"):
                if button in form.controls:
                    form.click(button)

    def argument(self, parameter):
        name = parameter.type.rstrip("&")
        if name in self.ARRAYS:
            of_class, kind = self.ARRAYS[name]
            return of_class.over(numpy.array([0, 3, 1, 2, 2, 4, 9, 9], dtype=kind))
        if name == "StringArray":
            return StringArray(list("acbddegh"))
        if name == "object":
            return orv2_geo.Progress(False)
        if name == "text":
            return Ref("a")
        return Ref(False) if name == "bool" else Ref(self.NUMBERS.get(parameter.name, 2))

    @needs_numpy
    def test_a_member_resizes_what_the_catalogue_says(self):
        orv2_geo.set_user_interface(self.Person())
        self.addCleanup(orv2_geo.set_user_interface, None)
        seen = set()
        for of_class in orv2_geo.classes().values():
            for member in of_class.members:
                arguments = [self.argument(one) for one in member.parameters]
                bases = [getattr(one, "base", None) for one in arguments]
                try:
                    of_class().call(member.position, *arguments)
                except orv2_geo.RunFailure as failure:
                    self.assertNotEqual(failure.number, 10, member.name)
                for one, given, base in zip(member.parameters, arguments, bases):
                    if base is None:
                        continue
                    resized = given.base is not base
                    with self.subTest(member=member.name, parameter=one.name):
                        self.assertEqual(resized, one.use == 2)
                    seen.add(resized)
        self.assertEqual(seen, {True, False})
