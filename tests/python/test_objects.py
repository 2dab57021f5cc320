import contextlib
import inspect
import io
import math
import pickle
import threading

from support import Case

import orv2_geo
from orv2_geo import DoubleArray, Ref, SingleArray, omitted

ALGORISMOS = "Orv2_Geo.cgeo_Algorismos"
FUNC_DERIV = "Orv2_Geo.cgeo_FuncDeriv"


class Creating(Case):
    def test_every_class_is_created_by_its_registered_name(self):
        for name, of_class in orv2_geo.classes().items():
            made = orv2_geo.create("Orv2_Geo." + name)
            self.assertIs(type(made), of_class)
            self.assertIsInstance(made, orv2_geo.GeoObject)

    def test_the_classes_come_in_the_order_of_the_interface(self):
        self.assertEqual(list(orv2_geo.classes()), [
            "cgeo_Algorismos", "cgeo_FuncDeriv", "cgeo_Terreno", "cgeo_api", "cgeo_Ordena",
            "cgeo_Geometria", "cgeo_Matrices"])

    def test_registered_names_ignore_case(self):
        self.assertIs(type(orv2_geo.create("ORV2_geo.CGEO_api")), orv2_geo.cgeo_api)

    def test_an_unknown_class_is_429(self):
        for name in ("Orv2_Geo.nothing", "", "cgeo_api", "Orv2_Geo.cgeo_api\0", "\ud800"):
            with self.subTest(name), self.fails(429, "Orv2_Geo"):
                orv2_geo.create(name)

    def test_a_class_name_is_a_text(self):
        with self.fails(13):
            orv2_geo.create(5)

    def test_a_class_makes_its_own_objects(self):
        self.assertEqual(orv2_geo.cgeo_FuncDeriv().RPi, 0.0)

    def test_a_class_takes_no_arguments(self):
        for given, named in (((1,), {}), ((), {"x": 1})):
            with self.assertRaises(TypeError):
                orv2_geo.cgeo_Algorismos(*given, **named)

    def test_a_class_that_is_not_there_is_no_attribute(self):
        for name in ("cgeo_Nada", "nada"):
            with self.assertRaises(AttributeError):
                getattr(orv2_geo, name)

    def test_an_object_is_not_copied(self):
        with self.assertRaises(TypeError):
            pickle.dumps(orv2_geo.create(ALGORISMOS))


class Members(Case):
    def setUp(self):
        self.algorismos = orv2_geo.create(ALGORISMOS)

    def test_bearings(self):
        for dx, dy, wanted in ((-1.0, 0.0, 300.0), (0.0, 1.0, 0.0), (0, 1, 0.0)):
            bearing = Ref(-1.0)
            self.assertIsNone(self.algorismos.Azimut(dx, dy, bearing))
            self.same_bits(bearing.value, wanted)

    def test_due_east_is_100_within_the_last_digit(self):
        bearing = Ref(0.0)
        self.algorismos.Azimut(1.0, 0.0, bearing)
        self.assertLessEqual(abs(bearing.value - 100.0), math.ulp(100.0))

    def test_one_variable_for_two_parameters(self):
        both = Ref(-1.0)
        self.algorismos.Azimut(both, 0.0, both)
        self.same_bits(both.value, 300.0)
        both = Ref(0.0)
        self.algorismos.Atn2(both, both)
        self.same_bits(both.value, 1e-09)

    def test_what_a_member_writes_is_seen(self):
        y = Ref(0.0)
        self.algorismos.Atn2(1.0, y)
        self.same_bits(y.value, 1e-09)

    def test_a_plain_number_is_a_temporary(self):
        y = 0.0
        self.algorismos.Atn2(1.0, y)
        self.assertEqual(y, 0.0)

    def test_a_member_that_writes_nothing_back(self):
        bearing = Ref(5.0)
        self.algorismos.Azimut_s(1.0, 0.0, bearing)
        self.same_bits(bearing.value, 5.0)

    def test_a_variable_for_a_by_value_parameter_is_its_value(self):
        cosine = Ref(0.5)
        self.same_bits(self.algorismos.Arccos(cosine), self.algorismos.Arccos(0.5))
        self.assertEqual(cosine.value, 0.5)

    def test_a_text_for_a_number_is_converted(self):
        functions = orv2_geo.create(FUNC_DERIV)
        self.same_bits(functions.F_LogN("2.5"), functions.F_LogN(2.5))
        self.same_bits(functions.F_LogN(Ref("2.5")), functions.F_LogN(2.5))

    def test_what_cannot_be_converted_is_13(self):
        for given in ("abc", "", None, object(), [1.0], 1j, DoubleArray(), self.algorismos):
            with self.subTest(repr(given)), self.fails(13, ALGORISMOS):
                self.algorismos.Arccos(given)

    def test_a_number_that_does_not_fit_is_6(self):
        for given in (1e300, -1e300, 10**400):
            with self.subTest(str(given)[:9]), self.fails(6, ALGORISMOS):
                self.algorismos.An360(given)

    def test_too_few_and_too_many_arguments(self):
        for number, given in ((449, ()), (449, (1.0, 2.0)), (449, (1.0, omitted, 2.0)),
                              (450, (1.0, 2.0, 3.0, 4.0)), (450, (object(),) * 17)):
            with self.subTest(given=given), self.fails(number, ALGORISMOS):
                self.algorismos.Azimut(*given)

    def test_more_arguments_than_any_member_takes(self):
        crossing = [Ref(0.0) for _ in range(10)]
        for count in (11, 15, 16, 17, 18, 40):
            with self.subTest(count), self.fails(450, ALGORISMOS):
                self.algorismos.Intersec_XY_2lineas(*crossing, *[0.0] * (count - 10))

    def test_arrays_are_of_the_parameters_own_type(self):
        polygon = self.algorismos.Pto_en_Poligono_d
        for x in (1.0, SingleArray([1.0]), None, [1.0], "x", Ref(1.0)):
            with self.subTest(repr(x)), self.fails(13, ALGORISMOS):
                polygon(x, DoubleArray([1.0]), 1, 0.0, 0.0)
        with self.fails(449, ALGORISMOS):
            polygon(omitted, DoubleArray([1.0]), 1, 0.0, 0.0)

    def test_keyword_arguments_go_to_their_parameters(self):
        bearing = Ref(0.0)
        self.algorismos.Azimut(-1.0, aZ=bearing, dy=0.0)
        self.same_bits(bearing.value, 300.0)
        with self.fails(449, ALGORISMOS):
            self.algorismos.Azimut(1.0, aZ=bearing)

    def test_a_wrong_keyword_is_a_type_error(self):
        for named in ({"az": 0.0}, {"dx": 1.0}):
            with self.subTest(named), self.assertRaises(TypeError):
                self.algorismos.Azimut(1.0, 2.0, **named)

    def test_names_ignore_case(self):
        self.assertEqual(self.algorismos.AZIMUT, self.algorismos.Azimut)
        bearing = Ref(0.0)
        self.algorismos.call("aZIMUT", -1.0, 0.0, bearing)
        self.same_bits(bearing.value, 300.0)

    def test_an_unknown_name(self):
        with self.assertRaises(AttributeError):
            self.algorismos.nope
        with self.assertRaises(AttributeError):
            self.algorismos.nope = 1
        for member in ("nope", "Azimut\0", -1, 36, 2**40, 2**64, 2**64 + 9):
            with self.subTest(member), self.fails(438, ALGORISMOS):
                self.algorismos.call(member)

    def test_by_position_as_by_name(self):
        for member in self.algorismos.members:
            if member.name in ("Arccos", "An360", "An400"):
                by_name = self.algorismos.call(member.name, 0.25)
                self.same_bits(self.algorismos.call(member.position, 0.25), by_name)
                self.same_bits(getattr(self.algorismos, member.name)(0.25), by_name)

    def test_a_call_on_another_thread_is_5(self):
        raised = []

        def work():
            try:
                self.algorismos.Arccos(0.5)
            except orv2_geo.RunFailure as failure:
                raised.append(failure.number)

        thread = threading.Thread(target=work)
        thread.start()
        thread.join()
        self.assertEqual(raised, [5])

    def test_on_another_thread_nothing_of_the_arguments_runs(self):
        ran, raised = [], []

        class Number:
            def __float__(self):
                ran.append(self)
                return 1.0

        def work():
            for given in ((Number(), 0, Ref()), ([], 0, Ref()), (Ref("x"), 2.0, Ref()), (1, 0, 5)):
                for call in (self.algorismos.Azimut, lambda *g: self.algorismos.Azimut(g[0], dy=g[1], aZ=g[2]),
                             lambda *g: self.algorismos.call("Azimut", *g),
                             lambda *g: orv2_geo.bulk(self.algorismos.Azimut, [g[0]], [1.0])):
                    try:
                        call(*given)
                    except orv2_geo.RunFailure as failure:
                        raised.append((failure.number, failure.source))

        thread = threading.Thread(target=work)
        thread.start()
        thread.join()
        self.assertEqual((ran, raised), ([], [(5, ALGORISMOS)] * 16))

    def test_each_thread_has_its_objects(self):
        answers = []
        thread = threading.Thread(
            target=lambda: answers.append(orv2_geo.create(ALGORISMOS).Arccos(0.5)))
        thread.start()
        thread.join()
        self.assertEqual(answers, [self.algorismos.Arccos(0.5)])


class Properties(Case):
    def setUp(self):
        self.functions = orv2_geo.create(FUNC_DERIV)

    def test_a_new_object_starts_at_zero(self):
        self.same_bits(self.functions.Pi, 0.0)
        self.same_bits(self.functions.RPi, 0.0)
        self.same_bits(self.functions.F_Cos(100.0), 1.0)

    def test_a_property_is_read_and_written(self):
        self.functions.Pi = 3.25
        self.same_bits(self.functions.Pi, 3.25)
        self.functions.rpi = Ref(2)
        self.same_bits(self.functions.RPi, 2.0)
        self.functions.PI = "4.5"
        self.same_bits(self.functions.pi, 4.5)

    def test_a_property_by_position_and_by_name(self):
        self.assertIsNone(self.functions.call(1, 1.5))
        self.same_bits(self.functions.call(0), 1.5)
        self.assertIsNone(self.functions.call("pi", 2.5))
        self.same_bits(self.functions.call("PI"), 2.5)
        self.functions.call("RPi", value=7.0)
        self.same_bits(self.functions.RPi, 7.0)

    def test_a_property_takes_numbers_only(self):
        with self.fails(13, FUNC_DERIV):
            self.functions.Pi = "uno"
        with self.fails(450, FUNC_DERIV):
            self.functions.call(0, 1.0)
        with self.fails(449, FUNC_DERIV):
            self.functions.call(1)

    def test_the_members_own_failures(self):
        for number, name, given in ((5, "F_LogN", 0.0), (5, "F_Log10", -1.0),
                                    (6, "F_TanH", 800.0), (6, "F_SenH", 800)):
            with self.subTest(name), self.fails(number, FUNC_DERIV):
                self.functions.call(name, given)

    def test_a_truth_counts_minus_one(self):
        self.functions.RPi = True
        self.same_bits(self.functions.RPi, -1.0)

    def test_a_large_int_is_a_double(self):
        self.functions.RPi = 2**53
        self.same_bits(self.functions.RPi, 2.0**53)


class Catalogue(Case):
    def test_dir_shows_every_member(self):
        for of_class in orv2_geo.classes().values():
            names = {member.name for member in of_class.members}
            self.assertLessEqual(names, set(dir(of_class())))

    def test_signatures_show_types_and_options(self):
        for wanted, of_class, name in (
                ("(self, dx: f64&, dy: f64&, aZ: f64&) -> none", "cgeo_Algorismos", "Azimut"),
                ("(self, sRadians: f32) -> f32", "cgeo_Algorismos", "Arccos"),
                ("(self, X1: f64&, Y1: f64&, X2: f64&, Y2: f64&) -> variant", "cgeo_Geometria",
                 "GF_Distancia"),
                ("(self, TheArray: StringArray&, LowerBound: i32& = omitted, "
                 "UpperBound: i32& = omitted) -> none", "cgeo_Ordena", "Ordena_StringArray"),
                ("(self, String1: text&, String2: text&, SwpVal: i32&) -> none", "cgeo_Ordena",
                 "SwapStrings")):
            method = getattr(orv2_geo.classes()[of_class], name)
            self.assertEqual(str(inspect.signature(method)), wanted)

    def test_help_shows_the_members(self):
        shown = io.StringIO()
        with contextlib.redirect_stdout(shown):
            help(orv2_geo.create("Orv2_Geo.cgeo_Ordena"))
        for line in ("SwapStrings(self, String1: text&, String2: text&, SwpVal: i32&) -> none",
                     "LowerBound  i32&, read, optional: -2147483648 when left out",
                     "Progreso1  object&, read", "Answer: none"):
            self.assertIn(line, shown.getvalue())

    def test_documents_tell_defaults(self):
        doc = orv2_geo.cgeo_Ordena.Ordena_Double_Array.__doc__
        self.assertIn("LowerBound  i32&, read, optional: -2147483648 when left out", doc)
        self.assertIn("f64, read and write.", orv2_geo.cgeo_FuncDeriv.Pi.__doc__)

    def test_members_stand_in_interface_order(self):
        members = orv2_geo.cgeo_FuncDeriv.members
        self.assertEqual([member.position for member in members], list(range(14)))
        self.assertEqual([member.name for member in members[:5]],
                         ["Pi", "Pi", "RPi", "RPi", "F_Log10"])
        aviso = orv2_geo.cgeo_Ordena.members[6].parameters[-1]
        self.assertEqual((aviso.name, aviso.type, aviso.optional, aviso.default),
                         ("Aviso", "bool&", True, 0))
