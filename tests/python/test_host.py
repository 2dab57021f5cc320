import ctypes
import dataclasses
import gc
import types
import weakref
from ctypes import byref

from support import Case, Runner, Value, declared, lent, passed, put, release, run, run_on

import orv2_geo
from orv2_geo import Ref, RunFailure, _core
from orv2_geo._library import OBJECT

_progress = declared("progress", ctypes.c_uint64, ctypes.c_int16)
_pset = declared("pset", ctypes.c_uint64, ctypes.c_int16, ctypes.POINTER(ctypes.c_double),
                 ctypes.POINTER(ctypes.c_double), ctypes.c_int16)
_set_property = declared("set_property", ctypes.c_uint64, ctypes.c_char_p,
                         ctypes.POINTER(Value))
_call = declared("call", ctypes.c_uint64, ctypes.c_char_p, ctypes.POINTER(Value),
                 ctypes.c_size_t, ctypes.POINTER(Value))
_call_member = declared("call_name", ctypes.c_uint64, ctypes.c_char_p, ctypes.POINTER(Value),
                        ctypes.c_size_t, ctypes.POINTER(Value), prefix="orv2_")


def set_property(target, name, value):
    """Has the library set a property of an object of this side."""
    slot = Value()
    kept = put(slot, value)
    with lent(target) as handle:
        run(_set_property, handle, name.encode(), byref(slot))
    return kept


def call(target, name):
    """Has the library call a member without arguments; the tag of the answer,
    and the answer."""
    answer = Value()
    with lent(target) as handle:
        run(_call, handle, name.encode(), None, 0, byref(answer))
    return answer


def progress(target, last):
    with lent(target) as handle:
        run(_progress, handle, last)


def pset(target, mode, x, y, colour):
    x, y = ctypes.c_double(x), ctypes.c_double(y)
    with lent(target) as handle:
        run(_pset, handle, mode, byref(x), byref(y), colour)
    return x.value, y.value


class Told:
    """A progress indicator that writes down what it is told."""

    Visible = Min = max = Value = None

    def __init__(self):
        self.__dict__["told"] = []

    def __setattr__(self, name, value):
        self.told.append((name, value))


class Indicators(Case):
    def test_a_progress_indicator_is_told_by_name(self):
        bar = Told()
        progress(bar, 2)
        self.assertEqual(bar.told, [("Visible", True), ("Min", 0), ("max", 2.0), ("Value", 0.0),
                                    ("Value", 1.0), ("Value", 2.0), ("Visible", False)])
        self.assertEqual([type(value) for _, value in bar.told[:4]], [bool, int, float, float])

    def test_no_object_is_91(self):
        with self.fails(91, "Orv2_Geo.Testing"):
            progress(None, 1)

    def test_a_missing_property_is_438(self):
        bar = types.SimpleNamespace(Visible=False, Min=0, Value=0)
        with self.fails(438):
            progress(bar, 1)
        self.assertEqual(vars(bar), {"Visible": True, "Min": 0, "Value": 0})


class Named:
    visible = None


class Slotted:
    __slots__ = ("VISIBLE",)


class WithProperty:
    _seen = None

    @property
    def visible(self):
        return self._seen

    @visible.setter
    def visible(self, value):
        self._seen = value


class WithOpenSetter:
    def __setattr__(self, name, value):
        if name == "nada":
            raise AttributeError(name)
        object.__setattr__(self, name, value)


class MakesUp:
    def __getattr__(self, name):
        if name == "nada":
            raise AttributeError(name)
        return lambda: name


@dataclasses.dataclass(frozen=True)
class Frozen:
    Visible: bool = False


class ReadOnly:
    @property
    def visible(self):
        return 5


class FailsInside:
    @property
    def visible(self):
        return self.nothing

    @visible.setter
    def visible(self, value):
        self.nothing

    def draw(self):
        return self.nothing


class SettingProperties(Case):
    def test_objects_that_have_it_take_it(self):
        own = Named()
        own.Visible = 1
        for target, name in ((Named(), "visible"), (own, "Visible"), (Slotted(), "VISIBLE"),
                             (WithProperty(), "visible"),
                             (types.SimpleNamespace(VisiblE=0), "VisiblE"),
                             (WithOpenSetter(), "Visible"), (MakesUp(), "Visible"),
                             (type("K", (), {"vISIBLE": 0}), "vISIBLE")):
            with self.subTest(type(target).__name__):
                set_property(target, "Visible", True)
                self.assertIs(getattr(target, name), True)

    def test_the_exact_name_goes_first(self):
        target = types.SimpleNamespace(visible=0, Visible=0, VISIBLE=0)
        set_property(target, "Visible", True)
        self.assertEqual(vars(target), {"visible": 0, "Visible": True, "VISIBLE": 0})

    def test_objects_that_do_not_have_it_are_438(self):
        for target, name in ((Runner(None), "Visible"), (Slotted(), "Min"), (object(), "Visible"),
                             (types.SimpleNamespace(), "Visible"), ([], "Value"),
                             (Frozen(), "Visible"),
                             (ReadOnly(), "Visible"), (WithOpenSetter(), "nada")):
            with self.subTest(type(target).__name__), self.fails(438):
                set_property(target, name, True)
        self.assertFalse(hasattr(Runner(None), "Visible"))

    def test_an_attribute_error_from_inside_is_440(self):
        with self.fails(440) as caught:
            set_property(FailsInside(), "Visible", True)
        self.assertNotIn("438", caught.exception.description)
        self.assertIsInstance(caught.exception.__cause__, AttributeError)

    def test_values_arrive_plain(self):
        for value in (True, False, 0, -7, 2**31 - 1, 1.5, -0.0, "", "ñ\ud800", "a b"):
            target = Named()
            set_property(target, "Visible", value)
            self.assertIs(type(target.visible), type(value))
            self.assertEqual(repr(target.visible), repr(value))


class Calling(Case):
    def test_methods_are_found_exactly_and_then_without_case(self):
        class Both:
            def pset(self):
                return 1

            def PSet(self):
                return 2

        self.assertEqual(call(Both(), "PSet").i32, 2)
        self.assertEqual(call(Both(), "pset").i32, 1)
        self.assertIn(call(Both(), "PSET").i32, (1, 2))
        self.assertEqual(call(types.SimpleNamespace(draw=lambda: 3), "Draw").i32, 3)

    def test_a_missing_method_is_438(self):
        for target in (Named(), object(), None.__class__, types.SimpleNamespace()):
            with self.subTest(repr(target)), self.fails(438):
                call(target, "Draw")
        with self.fails(438):
            call(MakesUp(), "nada")
        with self.fails(91):
            call(None, "Draw")

    def test_a_class_may_make_up_its_members(self):
        class Counts:
            def __getattr__(self, name):
                return len(name)

        self.assertEqual(call(Counts(), "Draw").i32, 4)

    def test_an_attribute_error_from_inside_is_440(self):
        for name in ("draw", "visible"):
            with self.subTest(name), self.fails(440) as caught:
                call(FailsInside(), name)
            self.assertIsInstance(caught.exception.__cause__, AttributeError)

    def test_an_attribute_that_is_no_method_is_read(self):
        self.assertEqual(call(ReadOnly(), "Visible").i32, 5)
        with self.fails(438):
            run_on(types.SimpleNamespace(Run=5), "f64", 1.0)

    def test_answers(self):
        for answer, tag, field in (
                (None, 0, None), (True, 5, "boolean"), (7, 2, "i32"), (2**31, 4, "f64"),
                (1.5, 4, "f64"), (object(), 0, None), ([1], 0, None)):
            with self.subTest(answer=answer):
                value = call(Runner(lambda: answer), "Run")
                self.assertEqual(value.tag, tag)
                if field is not None:
                    self.assertEqual(getattr(value, field), -1 if answer is True else answer)

    def test_an_object_of_the_library_is_answered_as_itself(self):
        functions = orv2_geo.create("Orv2_Geo.cgeo_FuncDeriv")
        answer = call(Runner(lambda: functions), "Run")
        self.assertEqual(answer.tag, OBJECT)
        read = Value()
        functions.RPi = 2.5
        run(_call_member, answer.handle, b"RPi", None, 0, byref(read))
        self.assertEqual(read.f64, 2.5)
        del functions  # the answer is a reference of its own
        gc.collect()
        run(_call_member, answer.handle, b"RPi", None, 0, byref(read))
        self.assertEqual(read.f64, 2.5)
        release(answer.handle)

    def test_an_object_that_only_the_answer_holds_arrives(self):
        answer = call(Runner(lambda: orv2_geo.create("Orv2_Geo.cgeo_FuncDeriv")), "Run")
        self.assertEqual(answer.tag, OBJECT)
        read = Value()
        run(_call_member, answer.handle, b"RPi", None, 0, byref(read))
        self.assertEqual(read.f64, 0.0)
        release(answer.handle)

    def test_a_number_that_cannot_travel_is_6(self):
        with self.fails(6):
            call(Runner(lambda: 10**400), "Run")

    def test_arguments_by_value_arrive_plain(self):
        seen = []
        given = (1.5, True, False, 7, -2**31, "a", "ñ\ud800", 2**40)
        run_on(Runner(lambda *values: seen.extend(values)), "f64 " * len(given), *given)
        self.assertEqual(seen, [1.5, True, False, 7, -2**31, "a", "ñ\ud800", 2.0**40])
        self.assertEqual([type(value) for value in seen],
                         [float, bool, bool, int, int, str, str, float])

    def test_too_many_arguments_for_a_method_are_440(self):
        with self.fails(440) as caught:
            run_on(Runner(lambda: None), "f64", 1.0)
        self.assertIsInstance(caught.exception.__cause__, TypeError)


class ByReference(Case):
    def test_what_a_surface_writes_reaches_the_library(self):
        seen = []

        class Surface:
            def pset(self, mode, x, y, colour):
                seen.extend((mode, x.value, y.value, colour, type(x), type(y)))
                x.value += 0.5
                y.value = 7

        self.assertEqual(pset(Surface(), 3, 1.25, -0.0, -1), (1.75, 7.0))
        self.assertEqual(seen, [3, 1.25, -0.0, -1, Ref, Ref])

    def test_a_variable_let_go_keeps_its_last_value(self):
        kept = []

        def draw(mode, x, y, colour):
            kept.extend((x, y))
            x.value = 4.5

        self.assertEqual(pset(types.SimpleNamespace(PSet=draw), 0, 1.0, 2.0, 0), (4.5, 2.0))
        self.assertEqual([one.value for one in kept], [4.5, 2.0])
        kept[0].value = "free again"
        self.assertEqual(kept[0].value, "free again")
        self.assertEqual(passed("tag", "i32&", kept[1]), 0x102)

    def test_a_variable_is_let_go_after_a_failure_too(self):
        kept = []

        def draw(mode, x, y, colour):
            kept.append(x)
            x.value = 9.0
            raise RunFailure(11)

        with self.fails(11, "Orv2_Geo.Testing"):
            pset(types.SimpleNamespace(PSet=draw), 0, 1.0, 2.0, 0)
        kept[0].value = "free"
        self.assertEqual(kept[0].value, "free")

    def test_every_scalar_type_is_live(self):
        for type_name, before, after in (("f64", 1.5, 2.5), ("f32", 1.5, 2.5), ("i32", 1, -2**31),
                                         ("i16", 1, 32767), ("bool", True, 2), ("bool", 5, False)):
            def work(variable):
                self.assertEqual(variable.value, before)
                variable.value = after

            variable = Ref(before)
            run_on(Runner(work), type_name + "&", variable)
            self.assertEqual((variable.value, type(variable.value)), (after, type(after)))

    def test_a_variable_may_be_handed_on(self):
        def outer(variable):
            run_on(Runner(inner), "f64&", variable)
            self.assertEqual(variable.value, 3.0)

        def inner(variable):
            variable.value = variable.value + 1.0

        variable = Ref(2.0)
        run_on(Runner(outer), "f64&", variable)
        self.assertEqual(variable.value, 3.0)


class Lives(Case):
    def test_an_object_is_let_go_after_the_call(self):
        target = Named()
        gone = weakref.ref(target)
        set_property(target, "Visible", True)
        del target
        gc.collect()
        self.assertIsNone(gone())
        self.assertEqual(_core.lent_count(), 0)

    def test_an_object_is_kept_as_long_as_a_handle_is(self):
        target = Named()
        gone = weakref.ref(target)
        handle, owned = _core.lend_handle(target)
        self.assertTrue(owned)
        del target
        gc.collect()
        self.assertIsNotNone(gone())
        release(handle)
        gc.collect()
        self.assertIsNone(gone())

    def test_an_object_of_the_library_crosses_as_itself(self):
        functions = orv2_geo.create("Orv2_Geo.cgeo_FuncDeriv")
        self.assertEqual(_core.lend_handle(functions), (functions._handle, False))
        set_property(functions, "rpi", 2.5)
        self.assertEqual(functions.RPi, 2.5)
        with self.fails(438):
            set_property(functions, "Visible", True)

    def test_many_calls_leave_nothing_behind(self):
        target = Runner(lambda value: value)
        for _ in range(2000):
            run_on(target, "f64", 1.5)
        self.assertEqual(_core.lent_count(), 0)


class Interrupting(Case):
    def test_an_interrupt_may_be_handled_where_it_comes_out(self):
        handled = []

        def inner():
            raise KeyboardInterrupt

        def outer():
            try:
                run_on(Runner(inner), "")
            except KeyboardInterrupt as interrupt:
                handled.append(interrupt)

        run_on(Runner(outer), "")
        self.assertEqual(len(handled), 1)
