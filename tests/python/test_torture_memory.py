"""What is left when memory is refused anywhere, and what is left after very many calls."""
import ctypes
import gc
import os
import pickle
import sys
import unittest
import warnings

import support
from support import Case, Runner, declared, run

import orv2_geo
from orv2_geo import (
    DoubleArray, LongArray, Ref, RunFailure, ShortArray, SingleArray, StringArray, _core,
)

try:
    from _testcapi import remove_mem_hooks, set_nomemory
except ImportError:
    set_nomemory = None

_refuse = declared("refuse_allocation", ctypes.c_int32)
_show_form = declared("show_form", ctypes.POINTER(ctypes.c_char_p))


def prepared(name, parameters, *given):
    """A call of a testing function of which nothing but the call itself is left to do."""
    function, tags = support._member_like[name], tuple(map(support.tag, parameters.split()))
    return lambda: _core.call_like_member(function, tags, given, "Orv2_Geo.Testing")


class Told:
    """An object with what members set and call."""
    Visible = Min = max = Value = 0

    def __init__(self):
        self.Run = lambda *given: sum(one.value if isinstance(one, Ref) else one for one in given)


class Interface:
    def error_box(self, text, flags, caption):
        self.text = text

    def show_modal(self, form):
        form.set_text("Precision", "0.5")
        self.told = [(control.name, control.text, control.value) for control in
                     form.controls.values()]
        form.click("Aceptar")


class Swapped:
    """Two variables each have one of two values, the old one or the new."""

    def __init__(self, *values):
        self.values = values

    def __call__(self, pair):
        return [any(one.value is value or one.value == value for value in self.values)
                for one in pair]


def ways():
    """What is done, by name: a function that makes a thing anew, one that does it, and one
    that answers with what must be as before when it was refused. Each thing is usable again
    afterwards."""
    called = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
    matrices = orv2_geo.create("Orv2_Geo.cgeo_Matrices")
    order = orv2_geo.create("Orv2_Geo.cgeo_Ordena")
    sums = orv2_geo.create("Orv2_Geo.cgeo_Geometria")
    ui, buffer, told = Interface(), bytearray(32), Told()
    nothing = (lambda: None, lambda _: None)

    def columns():
        return ([DoubleArray([3.0, 1.0, 3.0, 2.0, 3.0]) for _ in range(3)], LongArray(), Ref(4))

    def repeats(made):
        order.Quita_Puntos_Repetidos_XY_con_indice1(made[2], *made[0], made[1], told, 0.001, False)

    def box(which):
        orv2_geo.set_user_interface(None)
        run(declared("error_box", ctypes.c_int32, ctypes.c_char_p), which, b"Texto")

    def form(_):
        events = ctypes.c_char_p()
        orv2_geo.set_user_interface(ui)
        try:
            run(_show_form, ctypes.byref(events))
        finally:
            orv2_geo.set_user_interface(None)

    def bounds(array):
        return array.tolist(), len(array)

    make = nothing[0]
    for kind, values in ((DoubleArray, [1, 2.5]), (SingleArray, [1, 2.5]), (LongArray, [1, True]),
                         (ShortArray, [1, 2]), (StringArray, ["a", "\ud800é"])):
        yield kind.__name__, make, lambda _, k=kind, v=values: k(v, lower=1), None
        yield kind.__name__ + " unallocated", make, lambda _, k=kind: k(), None
        yield kind.__name__ + " dims", make, lambda _, k=kind: k(dims=2), None
        yield kind.__name__ + " sized", make, lambda _, k=kind: k.sized(1, 5), None
        yield (kind.__name__ + " resize", lambda k=kind, v=values: k(v),
               lambda one: one.resize(0, 100, keep=True), lambda one: one.tolist()[:2])
        yield kind.__name__ + " pickled", lambda k=kind, v=values: k(v), \
            lambda one: pickle.loads(pickle.dumps(one)), bounds
        yield kind.__name__ + " slice", lambda k=kind, v=values: k(v), \
            lambda one: (one[0:1], repr(one), list(one), one == one, list(reversed(one))), bounds
        yield kind.__name__ + " slice written", lambda k=kind, v=values: k(v), \
            lambda one, v=values: one.__setitem__(slice(0, 2), v), bounds
    yield "from a buffer", make, lambda _: DoubleArray(buffer), None
    yield "over a buffer", make, lambda _: DoubleArray.over(buffer).tolist(), None
    yield "view", lambda: DoubleArray([1.0]), lambda one: bytes(one.view()), bounds
    for parameter, first, second in (("f64&", 1.5, 2.5), ("f32&", 1, 2), ("i32&", 1, 2),
                                     ("i16&", 1, 2), ("bool&", True, False), ("text&", "a", "bé"),
                                     ("object&", told, ui)):
        pair = Ref(first), Ref(second)
        swap = prepared("swap", parameter + " " + parameter, *pair)
        yield ("swap " + parameter, lambda pair=pair, a=first, b=second: (
            pair[0].__init__(a), pair[1].__init__(b), pair)[2],
            lambda _, swap=swap: swap(), Swapped(first, second))
    yield "numbers", make, lambda _: called.Distancia_Punto_Linea(0.0, 1.0, 0.0, 0.0, 1.0, 0.0), None
    yield "converted", lambda: Ref(0), lambda one: called.Azimut(1, 0, one), None
    yield "named", lambda: Ref(0.0), lambda one: called.Azimut(dx=1, dy=0, aZ=one), None
    yield "by name", lambda: Ref(0.0), lambda one: called.call("azimut", 1, 0, one), None
    yield "attribute", make, lambda _: called.azimut, None
    yield "created", make, lambda _: orv2_geo.create("orv2_geo.cgeo_api"), None
    yield "made", make, lambda _: orv2_geo.cgeo_api(), None
    yield "lost answer", make, lambda _: called.Azimut(1.0, 0.0, 5.0), None
    yield "variant", make, lambda _: sums.GF_Distancia(0.0, 0.0, 3.0, 4.0), None
    yield "texts", lambda: StringArray(["c", "a\0", "b"]), \
        lambda one: order.Ordena_StringArray(one, 0, 2), lambda one: sorted(one)
    calls = prepared("run", "object& f64& i32 bool", told, Ref(1.0), 5, True)
    fails = prepared("run", "object&", Runner(lambda: 1 / 0))
    yield "callback", make, lambda _: calls(), None
    yield "callback raises", make, lambda _: fails(), None
    yield "repeats", columns, repeats, None
    yield "sort", lambda: DoubleArray([2.0, 1.0]), \
        lambda one: matrices.Ordena_en_X_el_Indice_1Matriz(1, one, LongArray()), bounds
    yield "refused", make, lambda _: called.Azimut("x", 0, Ref(1.0)), None
    yield "missing", make, lambda _: called.Azimut(1.0), None
    yield "too many", make, lambda _: called.Azimut(1, 2, 3, 4, 5), None
    yield "bulk", make, lambda _: orv2_geo.bulk(called.Azimut, [1.0, 2.0], [3, 4]).written, None
    yield "bulk masked", make, lambda _: orv2_geo.bulk(
        called.Distancia_Punto_Linea, [1.0], 0, 0, 0, 0, 0, failures="mask"), None
    yield "box", make, lambda _: box(0), None
    yield "trapped box", make, lambda _: box(3), None
    yield "form", make, form, None
    yield "variable", lambda: Ref(1.5), lambda one: (repr(one), one + 1, pickle.dumps(one),
                                                     "{:.2f}".format(one), one == 2), \
        lambda one: one.value


# From 3.12 on Python itself crashes where generators and functions of Python's own code find no
# room; these ways have many of them.
IN_PYTHON = ("callback", "callback raises", "repeats", "bulk", "bulk masked", "form")

ALLOWED = (7, 11, 449, 450, 13, 440)


class Refused(Case):
    """Each allocation in turn is refused."""

    def done_with(self, name, make, do, kept, refusing, end):
        """Whether it ended as it does with memory; how it may end is checked."""
        thing = make()
        before = kept(thing) if kept is not None else None
        failed = True
        try:
            with warnings.catch_warnings():
                warnings.simplefilter("ignore")
                refusing()
                try:
                    do(thing)
                    failed = False
                finally:
                    end()
        except MemoryError:
            pass
        except RunFailure as failure:
            self.assertIn(failure.number, ALLOWED, name)
        except (ZeroDivisionError, ctypes.ArgumentError, pickle.PicklingError):
            pass  # its own, and what two modules of Python's make of a MemoryError
        except SystemError as wrong:
            # The interpreter's own, where it finds no room for a function's frame, also for
            # one of a codec's; what a function of the core does wrong is told in other words.
            own = ("error return without exception set", "_PyEval_EvalFrameDefault returned NULL")
            self.assertTrue(any(words in str(wrong) for words in own), (name, str(wrong)))
        if kept is not None and failed:
            self.assertEqual(kept(thing), before, name)
        return not failed

    def in_turn(self, name, make, do, kept, refusing, end, most):
        well = 0
        for place in range(most):
            well = well + 1 if self.done_with(name, make, do, kept, lambda: refusing(place), end) \
                else 0
            if well > 40:
                break
        self.assertEqual(_core.lent_count(), 0, name)

    @unittest.skipIf(set_nomemory is None, "this Python has no _testcapi to refuse memory with")
    def test_each_of_pythons_own(self):
        only = os.environ.get("ORV2_WAY")
        for name, make, do, kept in ways():
            if only is not None and only != name:
                continue
            if sys.version_info >= (3, 12) and name in IN_PYTHON:
                print("not with memory refused, as this Python crashes by itself:", name)
                continue
            for _ in range(3):
                try:
                    do(make())  # what is made once is made
                except (RunFailure, orv2_geo.GeoWarning):
                    pass
            self.in_turn(name, make, do, kept, lambda place: set_nomemory(place, place + 1),
                         remove_mem_hooks, 400)

    def test_each_of_the_librarys_own(self):
        refused = 0
        for name, make, do, kept in ways():
            def refusing(place):
                _refuse(place)

            def end():
                nonlocal refused
                refused += _refuse(-1)

            self.in_turn(name, make, do, kept, refusing, end, 200)
        if refused == 0:
            self.skipTest("the sanitizer has the library's memory in its own hands")
        self.assertGreater(refused, 100)


def resident():
    with open("/proc/self/statm") as told:
        return int(told.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")


class Steady(Case):
    """What many calls leave behind: nothing."""

    FEW = int(os.environ.get("ORV2_LEAK_ROUNDS", "2000"))
    MANY = 10 * FEW
    ROOM = 300  # blocks: what Python itself keeps now and then

    def steady(self, name, do, rounds):
        def some(count):
            for _ in range(count):
                do()
            gc.collect()
            return sys.getallocatedblocks()
        some(rounds // 10)
        before, size = some(rounds // 10), resident()
        after = some(rounds)
        self.assertLess(after - before, self.ROOM, name)
        self.assertLess(resident() - size, 2000000, name)
        self.assertEqual(_core.lent_count(), 0, name)

    @unittest.skipUnless(os.path.exists("/proc/self/statm"), "sizes are not told here")
    @unittest.skipIf("asan" in os.environ.get("LD_PRELOAD", ""),
                     "the sanitizer keeps what is given back")
    def test_many_calls_of_every_way(self):
        called = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
        bearing = Ref(0.0)
        self.steady("numbers", lambda: called.Distancia_Punto_Linea(0.0, 1.0, 0.0, 0.0, 1.0, 0.0),
                    self.MANY * 10)
        self.steady("variables", lambda: called.Azimut(1.0, 0.0, bearing), self.MANY * 5)
        for name, make, do, _ in ways():
            def once():
                try:
                    do(make())
                except (RunFailure, orv2_geo.GeoWarning):
                    pass
            with warnings.catch_warnings():
                warnings.simplefilter("ignore")
                self.steady(name, once, self.FEW if name != "form" else self.FEW // 10)
