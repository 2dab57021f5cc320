import copy
import fractions
import math
import pickle

from support import Case, Runner, passed, run_on

import orv2_geo
from orv2_geo import DoubleArray, Ref


class Scalarlike:
    """A scalar of an array library: no number itself, but worth one."""
    shape = ()

    def __init__(self, worth):
        self.worth = worth

    def item(self):
        return self.worth


class Index:
    def __index__(self):
        return 7


class Alone(Case):
    def test_it_reads_and_writes_its_value(self):
        variable = Ref(2.5)
        self.assertEqual(variable.value, 2.5)
        variable.value = "texto"
        self.assertEqual(variable.value, "texto")

    def test_it_converts(self):
        self.same_bits(float(Ref(3)), 3.0)
        self.assertEqual(int(Ref(3.9)), 3)
        self.assertFalse(Ref(False))
        self.assertTrue(Ref(-1))

    def test_it_shows_its_value(self):
        self.assertEqual(repr(Ref(1.5)), "Ref(1.5)")
        self.assertEqual(repr(Ref("ñ")), "Ref('ñ')")

    def test_a_copy_is_another_variable(self):
        variable = Ref(1.5)
        for other in (copy.copy(variable), pickle.loads(pickle.dumps(variable))):
            other.value = 2.5
            self.assertEqual((variable.value, other.value), (1.5, 2.5))


class Reckoning(Case):
    """A Ref counts, compares and formats like its value."""

    def test_it_compares(self):
        self.assertTrue(Ref(1.5) == 1.5 and Ref(1.5) == Ref(1.5) and 1.5 == Ref(1.5))
        self.assertTrue(Ref(1) < 2 <= Ref(2) < Ref(3.5) and Ref(2) != 3 and Ref("a") == "a")
        self.assertFalse(Ref(1.5) == "1.5")
        with self.assertRaises(TypeError):
            Ref(1) < "a"
        with self.assertRaises(TypeError):
            hash(Ref(1))

    def test_it_reckons(self):
        a, b = Ref(7.0), Ref(2)
        for got, wanted in ((a + b, 9.0), (a - 1, 6.0), (1 - a, -6.0), (a * b, 14.0), (a / b, 3.5),
                            (7 // b, 3), (a // 2, 3.0), (a % 4, 3.0), (9 % b, 1), (a ** b, 49.0),
                            (2 ** b, 4), (-a, -7.0), (+a, 7.0), (abs(Ref(-3)), 3), (round(Ref(2.567), 2), 2.57),
                            (round(Ref(2.5)), 2), (Ref("a") + "b", "ab")):
            self.assertEqual((got, type(got)), (wanted, type(wanted)))
        self.assertEqual((divmod(a, b), divmod(9, b)), ((3.0, 1.0), (4, 1)))
        self.assertEqual([f(Ref(2.5)) for f in (math.trunc, math.floor, math.ceil)], [2, 2, 3])
        with self.assertRaises(ZeroDivisionError):
            a / 0

    def test_in_place_the_variable_itself_changes(self):
        for change, wanted in ((lambda x: x.__iadd__(2), 9.0), (lambda x: x.__isub__(2), 5.0),
                               (lambda x: x.__imul__(2), 14.0), (lambda x: x.__itruediv__(2), 3.5),
                               (lambda x: x.__ifloordiv__(2), 3.0), (lambda x: x.__imod__(4), 3.0),
                               (lambda x: x.__ipow__(2), 49.0)):
            variable = Ref(7.0)
            self.assertIs(change(variable), variable)
            self.assertEqual(variable.value, wanted)
        variable = same = Ref(1.0)
        variable += Ref(1)
        self.assertEqual(same.value, 2.0)

    def test_it_formats(self):
        self.assertEqual("{:.3f} {:>6} {}".format(Ref(1.23456), Ref("ab"), Ref(2)), "1.235     ab 2")

    def test_its_class_can_be_written_with_what_it_holds(self):
        self.assertIs(Ref[float], Ref)


class Adapting(Case):
    """Swapped with a variable that the library takes as it is, a Ref shows what
    it became; what it gets back shows how its type reads."""

    def becomes(self, type_name, given):
        variable, other = Ref(given), Ref({"text": "", "object": None}.get(type_name, 0))
        passed("swap", "{0}& {0}&".format(type_name), variable, other)
        return other.value

    def test_numbers_take_the_parameters_type(self):
        for type_name, given, wanted in (
                ("f64", 1, 1.0), ("f64", True, -1.0), ("f64", 2**53 + 1, 2.0**53),
                ("f64", fractions.Fraction(1, 4), 0.25), ("f64", Index(), 7.0),
                ("f64", Scalarlike(1.5), 1.5), ("f64", Scalarlike(True), -1.0),
                ("f64", -0.0, -0.0), ("f64", math.inf, math.inf), ("f64", 5e-324, 5e-324),
                ("f32", 0.1, 0.10000000149011612), ("f32", math.inf, math.inf),
                ("f32", 3.4028234663852886e38, 3.4028234663852886e38),
                ("i32", 0.5, 0), ("i32", 1.5, 2), ("i32", 2.5, 2), ("i32", -2.5, -2),
                ("i32", -3.5, -4), ("i32", True, -1), ("i32", 2147483647.4, 2147483647),
                ("i32", -2147483648.5, -2147483648), ("i16", 32767.4, 32767),
                ("i16", -32768.5, -32768), ("i16", Scalarlike(9), 9)):
            with self.subTest(type=type_name, given=given):
                got = self.becomes(type_name, given)
                self.assertIs(type(got), type(wanted))
                self.same_bits(float(got), float(wanted))

    def test_what_does_not_fit_is_6(self):
        for type_name, given in (
                ("i32", 2147483647.5), ("i32", 2**31), ("i32", -2147483649), ("i32", math.nan),
                ("i32", math.inf), ("i16", 32767.5), ("i16", -32769), ("i16", 1e300),
                ("f32", 1e39), ("f32", 3.4028235677973366e38), ("f64", 10**400),
                ("bool", 65536), ("bool", -32769)):
            with self.subTest(type=type_name, given=given), self.fails(6, "Orv2_Geo.Testing"):
                self.becomes(type_name, given)

    def test_what_is_of_another_kind_is_13(self):
        for type_name, given in (
                ("f64", "1.5"), ("f64", None), ("f64", object()), ("f64", 1j), ("f64", [1.0]),
                ("i32", "1"), ("i16", b"1"), ("bool", "True"), ("f32", DoubleArray([1.0])),
                ("text", 1), ("text", None), ("object", 1.5), ("object", "x"),
                ("f64", orv2_geo.omitted), ("object", orv2_geo.omitted)):
            with self.subTest(type=type_name, given=given), self.fails(13, "Orv2_Geo.Testing"):
                self.becomes(type_name, given)

    def test_a_refused_variable_keeps_its_value(self):
        first, second = Ref(1.5), Ref("abc")
        with self.fails(13):
            passed("swap", "f64& f64&", first, second)
        self.assertEqual((first.value, second.value), (1.5, "abc"))

    def test_flags_keep_their_bits(self):
        for given, wanted in ((True, True), (False, False), (-1, True), (0, False), (1, 1),
                              (2, 2), (-32768, -32768), (32767, 32767), (65535, True), (32768, -32768), (0.5, True), (0.0, False)):
            with self.subTest(given=given):
                got = self.becomes("bool", given)
                self.assertIs(type(got), type(wanted))
                self.assertEqual(got, wanted)

    def test_texts_keep_every_unit(self):
        for text in ("", "ñandú", "a\0b", "\ud800", "\udc00x", "𝄞", "x" * 5000):
            with self.subTest(text[:9]):
                self.assertEqual(self.becomes("text", text), text)
                units = len(text.encode("utf-16-le", "surrogatepass")) // 2
                self.assertEqual(passed("text_size", "text&", Ref(text)), units)

    def test_objects_are_themselves(self):
        own, host = orv2_geo.create("Orv2_Geo.cgeo_api"), Runner(None)
        for target in (own, host, None):
            variable = Ref(target)
            self.assertEqual(passed("tag", "object&", variable), 0x107)
            self.assertIs(variable.value, target)


class InACall(Case):
    def test_both_sides_are_written(self):
        for type_name, a, b in (("f64", 1.5, 2.5), ("f32", 1.5, 2.5), ("i32", 1, 2),
                                ("i16", 1, 2), ("bool", True, 3), ("text", "a\0", "\ud800")):
            first, second = Ref(a), Ref(b)
            passed("swap", "{0}& {0}&".format(type_name), first, second)
            self.assertEqual((first.value, second.value), (b, a))

    def test_a_failed_call_leaves_what_was_written(self):
        for type_name, a, b in (("f64", 1.5, 2.5), ("text", "a", "b")):
            first, second = Ref(a), Ref(b)
            with self.fails(11, "Orv2_Geo.Testing"):
                passed("swap_and_fail", "{0}& {0}&".format(type_name), first, second)
            self.assertEqual((first.value, second.value), (b, a))

    def test_the_same_variable_twice_is_one(self):
        for type_name, value in (("f64", 1.5), ("i16", 1), ("bool", True), ("text", "a"),
                                 ("object", Runner(None))):
            types = "{0}& {0}&".format(type_name)
            variable = Ref(value)
            self.assertTrue(passed("same", types, variable, variable))
            self.assertFalse(passed("same", types, variable, Ref(value)))

    def test_one_variable_for_two_types_is_13(self):
        variable = Ref(1.5)
        for types in ("f64& i32&", "i32& f64&", "f64& f32&", "i16& bool&"):
            with self.subTest(types), self.fails(13, "Orv2_Geo.Testing"):
                passed("same", types, variable, variable)
            self.assertEqual(variable.value, 1.5)
        self.assertEqual(passed("tag", "f64&", variable), 0x104)

    def test_values_by_value(self):
        for given, type_name, wanted in (
                (1.5, "f64&", 4), (1, "f64", 2), (2**31, "f64", 4), (-2**31, "i32", 2),
                (True, "f64", 5), (7, "bool", 5), (1.5, "bool", 4), ("x", "text", 6),
                ("x\0", "text", 6), (None, "object", 7), (Runner(None), "object", 7),
                (Runner(None), "object&", 7), (Ref(1.5), "f64", 4), (Ref(3), "bool", 5),
                (Ref("x"), "text", 6), (Ref(1.5), "f64&", 0x104), (Ref("x"), "text&", 0x106),
                (DoubleArray([1.0]), "DoubleArray&", 0x109), (orv2_geo.omitted, "f64", 14),
                (Scalarlike(2.5), "f64", 4), (Index(), "f64", 2)):
            with self.subTest(given=given, type=type_name):
                self.assertEqual(passed("tag", type_name, given), wanted)

    def test_a_raw_flag_has_16_bits(self):
        for given in (65536, -32769, 2**40):
            with self.subTest(given), self.fails(6, "Orv2_Geo.Testing"):
                passed("tag", "bool", given)

    def test_texts_by_value_keep_every_unit(self):
        for text in ("", "ñ", "a\0b\0", "\ud800", "\ud83d\ude00"):
            units = len(text.encode("utf-16-le", "surrogatepass")) // 2
            self.assertEqual(passed("text_size", "text", text), units)

    def test_the_live_value_is_seen_and_written_in_the_middle(self):
        seen = []
        outer = Ref(1.0)

        def run(inner):
            self.assertIsNot(inner, outer)
            inner.value = 2.0
            seen.append(outer.value)
            outer.value = 3
            seen.append(inner.value)

        run_on(Runner(run), "f64&", outer)
        self.assertEqual((seen, outer.value), ([2.0, 3.0], 3.0))

    def test_a_live_variable_takes_only_its_own_type(self):
        outer = Ref(1.0)

        def run(inner):
            with self.fails(13):
                inner.value = "x"
            with self.fails(13):
                outer.value = None

        run_on(Runner(run), "f64&", outer)
        self.assertEqual(outer.value, 1.0)

    def test_an_inner_call_shares_the_memory_of_the_outer(self):
        outer, other, given = Ref(1.0), Ref(2.0), []

        def run(inner):
            given.append(passed("same", "f64& f64&", inner, outer))
            passed("swap", "f64& f64&", outer, other)
            given.append(inner.value)
            with self.fails(13):
                passed("tag", "i32&", outer)
            with self.fails(13):
                passed("tag", "f32&", inner)
            given.append(passed("tag", "f64", outer))

        run_on(Runner(run), "f64&", outer)
        self.assertEqual(given, [True, 2.0, 4])
        self.assertEqual((outer.value, other.value), (2.0, 1.0))

    def test_after_the_call_the_type_is_free_again(self):
        variable = Ref(1.5)
        passed("tag", "f64&", variable)
        self.assertEqual(passed("tag", "i32&", variable), 0x102)
        self.assertEqual(variable.value, 2)

    def test_an_object_variable_is_called_and_read_in_the_middle(self):
        seen = []
        target = Runner(lambda: seen.append(variable.value))
        variable = Ref(target)
        passed("run", "object&", variable)
        self.assertEqual(seen, [target])

    def test_an_object_variable_is_written_in_the_middle(self):
        other = Runner(None)

        def run():
            variable.value = other

        variable = Ref(Runner(run))
        passed("run", "object&", variable)
        self.assertIs(variable.value, other)
