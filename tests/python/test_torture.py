"""What Python code can do in the middle of what the core does: nothing of it may crash, hang
or leave an array, a variable or an object of the package half changed.

Longer runs: ORV2_ROUNDS=1000000 runs that many rounds of the odd arguments.
"""
import array
import ctypes
import ctypes.util
import gc
import importlib.util
import itertools
import os
import random
import signal
import subprocess
import sys
import threading
import time
import types
import unittest
import warnings
import weakref

from support import Case, Runner, passed, run_on

import orv2_geo
from orv2_geo import (
    DoubleArray, GeoArray, GeoWarning, LongArray, Ref, RunFailure, ShortArray, SingleArray,
    StringArray, _core, omitted,
)

ROUNDS = int(os.environ.get("ORV2_ROUNDS", "20000"))


def algorismos():
    return orv2_geo.create("Orv2_Geo.cgeo_Algorismos")


def ran(script, *options, **environment):
    """The status and the error lines of another interpreter."""
    done = subprocess.run([sys.executable, *options, "-c", script], capture_output=True, text=True,
                          env={**os.environ, **environment}, timeout=120)
    return done.returncode, done.stderr


class Hook:
    """A number whose conversion runs code."""

    def __init__(self, value, code):
        self.value, self.code = value, code

    def __float__(self):
        self.code()
        return float(self.value)

    def __index__(self):
        self.code()
        return int(self.value)


class FloatHook:
    def __init__(self, value, code):
        self.value, self.code = value, code

    def __float__(self):
        self.code()
        return float(self.value)


class ItemHook:
    """A scalar of an array library whose item() runs code."""
    shape = ()

    def __init__(self, value, code):
        self.value, self.code = value, code

    def item(self):
        self.code()
        return self.value


HOOKS = (Hook, FloatHook, ItemHook)


class Converting(Case):
    """The value that is converted runs code that changes what it goes into."""

    def test_a_list_that_shrinks_while_it_is_converted(self):
        for hook, kind in itertools.product(HOOKS, (DoubleArray, SingleArray, LongArray)):
            values = [1.0] * 100
            values[5] = hook(7, values.clear)
            with self.assertRaises(IndexError):
                kind(values)

    def test_a_list_that_grows_while_it_is_converted(self):
        values = [1.0, 2.0]
        values.insert(0, FloatHook(7, lambda: values.extend(range(1000))))
        self.assertEqual(len(DoubleArray(values)), 3)

    def test_an_array_that_shrinks_under_a_written_element(self):
        for hook in HOOKS:
            numbers = DoubleArray.sized(1, 5000)
            with self.fails(9):
                numbers[4000] = hook(7, lambda: numbers.resize(1, 2))
            self.assertEqual(numbers.tolist(), [0.0, 0.0])

    def test_an_array_that_shrinks_under_its_index(self):
        numbers = DoubleArray.sized(1, 5000)
        index = Hook(4000, lambda: numbers.resize(1, 2))
        with self.fails(9):
            numbers[index]
        numbers.resize(1, 5000)
        with self.fails(9):
            numbers[index] = 1.0
        for end in (slice(index, None), slice(None, index), slice(None, None, index)):
            numbers.resize(1, 5000)
            try:
                self.assertLessEqual(len(numbers[end]), 2)
            except RunFailure as failure:
                self.assertEqual(failure.number, 9)
            numbers.resize(1, 5000)
            try:
                numbers[end] = [1.0] * 3
            except (RunFailure, ValueError):
                pass
            self.assertEqual(numbers.upper, 2)

    def test_an_array_that_changes_under_the_values_of_a_slice(self):
        numbers = DoubleArray.sized(0, 999)
        values = [FloatHook(1, lambda: numbers.resize(0, 1))] + [2.0] * 999
        with self.fails(9):
            numbers[0:1000] = values
        self.assertEqual(numbers.tolist(), [0.0, 0.0])
        texts = StringArray.sized(0, 99)

        class Texts(list):
            def __iter__(self):
                texts.resize(0, 1)
                return super().__iter__()

        with self.fails(9):
            texts[0:100] = Texts(["a"] * 100)
        self.assertEqual(texts.tolist(), ["", ""])

    def test_a_step_beyond_every_array(self):
        numbers = DoubleArray([1.0, 2.0, 3.0], lower=-2147483648)
        self.assertEqual(numbers[::2 ** 63 - 1].tolist(), [1.0])
        self.assertEqual(numbers[::2 ** 80].tolist(), [1.0])
        with self.assertRaises(ValueError):
            numbers[::-2 ** 80]

    def test_garbage_collected_while_a_list_is_made(self):
        """A collection in the middle of it may give the array other bounds."""
        numbers = DoubleArray.sized(0, 4999)

        class Shrinks:
            def __del__(self):
                numbers.resize(0, 0)

        before = gc.get_threshold()
        try:
            for threshold in range(1, 60):
                numbers.resize(0, 4999)
                one = Shrinks()
                one.itself = one
                del one
                gc.set_threshold(threshold)
                try:
                    found = numbers.tolist()
                    self.assertIn(len(found), (1, 5000))
                except RunFailure as failure:
                    self.assertEqual(failure.number, 9)
                gc.set_threshold(0)
                gc.collect()
        finally:
            gc.set_threshold(*before)

    def test_a_variable_written_while_its_value_is_converted(self):
        called = algorismos()
        for hook in HOOKS:
            for change in ("abc", 3.5, None, [], 2 ** 100):
                variable = Ref()
                variable.value = hook(7, lambda: setattr(variable, "value", change))
                called.Azimut(1.0, 0.0, variable)
                self.assertAlmostEqual(variable.value, 100.0)

    def test_a_variable_in_another_call_while_its_value_is_converted(self):
        called = algorismos()
        for hook in HOOKS:
            variable = Ref()
            variable.value = hook(7, lambda: (
                setattr(variable, "value", 1), called.Azimut(1.0, 0.0, variable)))
            called.Azimut(0.0, 1.0, variable)
            self.assertEqual(variable.value, 0.0)

    def test_a_variable_taken_into_a_lasting_call_while_its_value_is_converted(self):
        """What it was in before goes on, and the call that came later is refused."""
        begun, go_on = threading.Event(), threading.Event()
        variable = Ref()

        def waits():
            begun.set()
            go_on.wait(10)

        target = Runner(waits)

        def other():
            variable.value = target
            passed("run", "object&", variable)

        def start():
            thread.start()
            begun.wait(10)

        thread = threading.Thread(target=other)
        variable.value = FloatHook(7, start)
        with self.fails(5):
            passed("swap", "f64& f64&", variable, Ref(2.0))
        go_on.set()
        thread.join()
        self.assertIs(variable.value, target)

    def test_a_variable_written_in_a_call_by_a_value_that_uses_it(self):
        def changes(inner):
            for value in (1, 2.5, "3"):
                inner.value = FloatHook(4, lambda: setattr(inner, "value", 9))
                inner.__init__(FloatHook(5, lambda: passed("swap", "f64& f64&", inner, Ref(1.0))))
        variable = Ref(0.0)
        run_on(Runner(changes), "f64&", variable)
        self.assertEqual(variable.value, 5.0)


class Calling(Case):
    """Code of Python's that the library calls in the middle of a call."""

    def test_a_variable_is_made_anew_in_a_call(self):
        for parameter, first, second in (("f64&", 1.0, 2.5), ("i32&", 1, 2), ("bool&", 0, True)):
            variable = Ref(first)

            def anew(inner):
                variable.__init__()
                variable.__init__(second)

            run_on(Runner(anew), parameter, variable)
            self.assertEqual(variable.value, second)
        for parameter, first, second, wrong in (
                ("text&", "a", "b", 5), ("object&", Runner(None), Runner(1), 5)):
            variable = Ref(first)

            def anew_on_the_way():
                variable.__init__()
                variable.__init__(second)
                with self.fails(13):
                    variable.value = wrong

            with self.fails(13):
                passed("swap", parameter + " f64&", variable, FloatHook(1, anew_on_the_way))
            self.assertEqual(variable.value, second)

    def without_repeats(self, act, count=300):
        """The three columns after a call that calls `act` each time that its progress is
        told, how often that was, and the number of the failure that it ended with."""
        told = []

        class Bar:
            Visible = Min = max = Value = 0

            def __setattr__(self, name, value):
                told.append(name)
                act(columns, indices)

        columns = [DoubleArray([float(i % 97) for i in range(count)]) for _ in range(3)]
        indices = LongArray()
        try:
            orv2_geo.create("Orv2_Geo.cgeo_Ordena").Quita_Puntos_Repetidos_XY_con_indice1(
                Ref(count - 1), *columns, indices, Bar(), 0.001, False)
        except RunFailure as failure:
            return columns, told, failure.number
        return columns, told, 0

    def test_the_call_works_on_arrays_that_its_callback_changes(self):
        kept, called = [], orv2_geo.create("Orv2_Geo.cgeo_Ordena")
        ways = [
            lambda columns, indices: [one.resize(0, 0) for one in columns],
            lambda columns, indices: [one.resize(0, 50000, keep=True) for one in columns],
            lambda columns, indices: kept.extend(one.view() for one in columns),
            lambda columns, indices: kept.append((columns[0][0:2], list(columns[1]))),
            lambda columns, indices: columns[0].__setitem__(slice(0, 1), [9.0]),
            lambda columns, indices: indices.resize(5, 6),
            lambda columns, indices: called.Ordena_Double_Array(columns[0], 0, 1),
            lambda columns, indices: called.Quita_Puntos_Repetidos_XY_con_indice1(
                Ref(1), *columns, indices, None, 0.001, False),
            lambda columns, indices: gc.collect(),
            lambda columns, indices: columns[0].lock(),
        ]
        for way in ways:
            columns, told, number = self.without_repeats(way)
            self.assertGreater(len(told), 0)
            self.assertIn(number, (0, 9, 10, 91))
            for one in kept:
                self.assertGreaterEqual(len(one), 0)
            kept.clear()
            columns[1].resize(0, 1)
            self.assertEqual(columns[1].tolist(), [0.0, 0.0])

    def test_what_the_call_works_on_is_dropped_in_it(self):
        gone = []

        def drop(columns, indices):
            gone.extend(weakref.ref(one) for one in columns)
            columns.clear()
            gc.collect()

        self.assertEqual(self.without_repeats(drop)[2], 0)
        gc.collect()
        self.assertEqual([one() for one in gone], [None] * 3)

    def test_a_call_calls_itself_until_python_has_enough(self):
        def again(value):
            return run_on(target, "f64", value)
        target = Runner(again)
        with self.assertRaises((RecursionError, RunFailure)):
            run_on(target, "f64", 1.0)
        self.assertEqual(run_on(Runner(lambda value: value), "f64", 2.0), 2.0)

    def test_variables_of_a_callback_used_elsewhere(self):
        """Another thread may read the library's number, but not make a call with it."""
        called = algorismos()
        told = []

        def elsewhere(inner):
            mine = algorismos()
            for use in (lambda: mine.Azimut(1.0, 0.0, inner), lambda: passed(
                    "swap", "f64& f64&", inner, Ref(1.0))):
                try:
                    use()
                except RunFailure as failure:
                    told.append(failure.number)
            told.append(inner.value)

        def callback(inner):
            thread = threading.Thread(target=elsewhere, args=(inner,))
            thread.start()
            thread.join()

        run_on(Runner(callback), "f64&", Ref(2.5))
        self.assertEqual(told, [5, 5, 2.5])
        self.assertIsNotNone(called)

    def test_texts_and_objects_of_a_call_are_its_threads_own(self):
        for parameter, value, other in (("text&", "a", "b"), ("object&", Runner(None), None)):
            variable, told = Ref(value), []

            def elsewhere():
                for use in (lambda: variable.value, lambda: setattr(variable, "value", other),
                            lambda: passed("tag", parameter, variable)):
                    try:
                        use()
                    except RunFailure as failure:
                        told.append(failure.number)

            def on_the_way():
                thread = threading.Thread(target=elsewhere)
                thread.start()
                thread.join()

            with self.fails(13):
                passed("swap", parameter + " f64&", variable, FloatHook(1, on_the_way))
            self.assertEqual(told, [5, 5, 5])
            self.assertEqual(variable.value, value)

    def test_one_number_in_calls_of_two_threads(self):
        variable = Ref(1.0)

        def callback(inner):
            thread = threading.Thread(target=lambda: algorismos().Azimut(1.0, 0.0, variable))
            thread.start()
            thread.join()

        run_on(Runner(callback), "f64&", variable)
        self.assertAlmostEqual(variable.value, 100.0)

    def test_an_answer_is_let_go_with_its_call(self):
        functions = orv2_geo.create("Orv2_Geo.cgeo_FuncDeriv")
        functions.RPi = 2.5
        gone = weakref.ref(functions)
        kept = [functions]
        del functions
        answer = run_on(Runner(kept.pop), "")
        gc.collect()
        self.assertIsNone(gone())
        self.assertEqual(answer.RPi, 2.5)  # the object itself goes on

    def test_an_interface_in_place_of_another_in_its_own_box(self):
        class First:
            def error_box(self, *_):
                orv2_geo.set_user_interface(None)
                gc.collect()
        orv2_geo.set_user_interface(First())
        try:
            self.box(0)
        finally:
            orv2_geo.set_user_interface(None)
        with self.assertWarns(GeoWarning):
            self.box(0)

    def test_an_interface_that_makes_up_every_attribute(self):
        class Told(list):
            def __getattr__(self, name):
                return lambda *given: self.append(name)
        told = Told()
        orv2_geo.set_user_interface(told)
        try:
            self.box(0)
        finally:
            orv2_geo.set_user_interface(None)
        self.assertEqual(told, ["error_box"])

    def box(self, which):
        from support import declared, run
        run(declared("error_box", ctypes.c_int32, ctypes.c_char_p), which, b"Texto")


class Exporters(Case):
    """Buffers of every kind, and owners that act on their own."""

    def test_odd_buffers_give_what_their_elements_are(self):
        plain = array.array("d", [1.0, 2.0, 3.0, 4.0])
        view = memoryview(plain)
        self.assertEqual(DoubleArray(view[::-1]).tolist(), [4.0, 3.0, 2.0, 1.0])
        self.assertEqual(DoubleArray(view[::3]).tolist(), [1.0, 4.0])
        self.assertEqual(DoubleArray(view[:0]).tolist(), [])
        self.assertEqual(DoubleArray(bytes([0, 255])).tolist(), [0.0, 255.0])
        truths = memoryview(bytes([0, 1, 2, 255])).cast("?")
        self.assertEqual(ShortArray(truths).tolist(), [0, -1, -1, -1])
        self.assertEqual(DoubleArray(truths).tolist(), [0.0, -1.0, -1.0, -1.0])

    def test_odd_buffers_are_refused_or_walked(self):
        swapped = type("Swapped", (ctypes.BigEndianStructure,), {"_fields_": [("a", ctypes.c_int)]})
        odd = [
            memoryview(bytearray(8)).cast("d", shape=[]),
            memoryview(bytearray(32)).cast("d", shape=[2, 2]),
            (swapped * 3)(), (ctypes.c_char_p * 2)(), (ctypes.c_longdouble * 2)(),
            (ctypes.c_double * 2 * 2)(), ctypes.c_double(1.0), (ctypes.c_void_p * 2)(),
        ]
        for given in odd:
            for kind in (DoubleArray, SingleArray, LongArray, ShortArray):
                for make in (kind, kind.over):
                    try:
                        make(given)
                    except (RunFailure, TypeError, NotImplementedError, ValueError) as refusal:
                        self.assertNotIsInstance(refusal, SystemError)
        for big in (ctypes.c_double.__ctype_be__, ctypes.c_int.__ctype_be__):
            given = (big * 2)(1, 2)
            self.assertEqual(DoubleArray(given).tolist(), [1.0, 2.0])
            with self.fails(13):
                DoubleArray.over(given)

    def test_released_and_read_only_memory(self):
        released = memoryview(bytearray(8))
        released.release()
        for given in (released, bytes(8), memoryview(b"12345678")):
            with self.assertRaises((TypeError, ValueError)):
                DoubleArray.over(given)
        with self.assertRaises(ValueError):
            DoubleArray(released)

    def test_memory_that_is_not_aligned(self):
        owner = bytearray(33)
        with self.fails(5):
            DoubleArray.over(memoryview(owner)[1:17])
        odd = memoryview(owner)[1:33].cast("d")
        self.assertEqual(DoubleArray(odd).tolist(), [0.0] * 4)
        told = orv2_geo.bulk(algorismos().Azimut, odd, odd)
        self.assertEqual(told.written["aZ"].tolist(),
                         orv2_geo.bulk(algorismos().Azimut, [0.0] * 4, [0.0] * 4)
                         .written["aZ"].tolist())

    @unittest.skipIf(importlib.util.find_spec("numpy") is None, "there is no numpy here")
    def test_a_scalar_that_has_a_buffer_is_no_column(self):
        import numpy
        azimut, rows = algorismos().Azimut, numpy.array([1.0, 2.0, 3.0])
        for zero in (numpy.float64(0), numpy.array(0.0), numpy.int32(0), Ref(numpy.float64(0))):
            self.assertEqual(list(orv2_geo.bulk(azimut, rows, zero).written["aZ"]),
                             list(orv2_geo.bulk(azimut, rows, 0.0).written["aZ"]))

    def test_no_buffer_of_an_array_of_texts_by_another_class(self):
        texts = StringArray(["a"])
        try:
            texts.__class__ = DoubleArray
        except TypeError:
            return self.assertIs(type(texts), StringArray)
        for use in (texts.view, lambda: memoryview(texts), lambda: texts.over(bytearray(8)),
                    lambda: bytes(texts)):
            try:
                use()
            except (RunFailure, TypeError):
                pass
        self.assertEqual(texts.tolist(), ["a"])

    def test_an_owner_that_acts_while_it_is_followed(self):
        """Asked for a larger buffer, it uses the array that asks."""
        held = []

        class Owner(bytearray):
            __array_interface__ = {}
            act = staticmethod(lambda: None)

            @property
            def dtype(self):
                self.act()
                return types.SimpleNamespace(itemsize=8)

        module = types.ModuleType("numpy")
        module.zeros = lambda count, dtype: Owner(8 * count)
        before = sys.modules.get("numpy")
        sys.modules["numpy"] = module
        try:
            for act, number in ((lambda: numbers.resize(0, 3), 10), (lambda: held.append(
                    numbers.view()), 10), (lambda: held.append(list(numbers)), None),
                    (gc.collect, None)):
                owner = Owner(16)
                numbers = DoubleArray.over(owner)
                numbers[:] = [1.0, 2.0]
                owner.act = act
                del owner
                if number is None:
                    numbers.resize(0, 3, keep=True)
                    self.assertEqual(numbers.tolist(), [1.0, 2.0, 0.0, 0.0])
                else:
                    with self.fails(number):
                        numbers.resize(0, 3, keep=True)
                    self.assertEqual(numbers.tolist(), [1.0, 2.0])
                held.clear()
        finally:
            del sys.modules["numpy"]
            if before is not None:
                sys.modules["numpy"] = before

    def test_the_former_buffer_lives_until_the_call_is_over(self):
        seen = []

        class Owner(bytearray):
            __array_interface__ = {}
            dtype = types.SimpleNamespace(itemsize=8)

            def __del__(self):
                if numbers is not None:
                    seen.append(len(numbers))

        module = types.ModuleType("numpy")
        module.zeros = lambda count, dtype: Owner(8 * count)
        before = sys.modules.get("numpy")
        sys.modules["numpy"] = module
        numbers = None
        try:
            numbers = DoubleArray.over(Owner(16))
            numbers.resize(0, 9)
            self.assertEqual(seen, [10])
        finally:
            numbers = None
            del sys.modules["numpy"]
            if before is not None:
                sys.modules["numpy"] = before

    @unittest.skipIf(sys.version_info < (3, 12), "buffers in Python's own code came with 3.12")
    def test_buffers_made_by_code(self):
        class Fails:
            def __buffer__(self, flags):
                raise KeyError("no")

        class Lies:
            def __buffer__(self, flags):
                return memoryview(b"abc")

        class Acts:
            def __buffer__(self, flags):
                return memoryview(bytearray(16))

            def __release_buffer__(self, view):
                raise KeyError("no")

        for one in (Fails, Lies):
            with self.assertRaises((KeyError, TypeError, RunFailure)):
                DoubleArray.over(one())
        with self.assertRaises(TypeError):
            DoubleArray(Fails())


class Chains(Case):
    """Long chains, and what holds itself."""

    def test_a_long_chain_of_variables_ends(self):
        variable = Ref(1.0)
        for _ in range(300000):
            variable = Ref(variable)
        del variable
        gc.collect()
        self.assertEqual(Ref(2).value, 2)

    def test_a_long_chain_of_arrays_ends(self):
        numbers = DoubleArray.sized(0, 1)
        for _ in range(100000):
            numbers = DoubleArray.over(numbers)
        self.assertEqual(numbers.tolist(), [0.0, 0.0])
        del numbers
        gc.collect()
        self.assertEqual(DoubleArray([1.0]).tolist(), [1.0])

    def test_a_variable_that_holds_itself(self):
        variable = Ref()
        variable.value = variable
        for use in (float, int, bool, abs, repr, str, round, lambda one: -one, lambda one: one + 1,
                    lambda one: one ** 2, lambda one: one == 3, lambda one: 1 - one,
                    "{:f}".format, lambda one: orv2_geo.create("Orv2_Geo.cgeo_FuncDeriv")
                    .F_Sen(one), lambda one: algorismos().Azimut(1.0, 0.0, one)):
            with self.assertRaises(RecursionError):
                use(variable)

    def test_garbage_is_collected(self):
        class Owner(bytearray):
            pass

        class Numbers(DoubleArray):
            pass

        class Mine(orv2_geo.cgeo_api):
            pass

        class Interface:
            pass

        def of_ref():
            variable = Ref()
            variable.value = [variable]
            return variable

        def of_over():
            owner = Owner(16)
            owner.array = DoubleArray.over(owner)
            owner.view = owner.array.view()
            return owner.array

        def of_subclass():
            numbers = Numbers([1.0])
            numbers.itself = numbers
            return numbers

        def of_object():
            mine = Mine()
            mine.itself = mine
            return mine

        def of_interface():
            ui = Interface()
            ui.itself = ui
            orv2_geo.set_user_interface(ui)
            orv2_geo.set_user_interface(None)
            return ui

        def of_host():
            target = Runner(None)
            target.Run = lambda: target
            run_on(target, "")
            return target

        for make in (of_ref, of_over, of_subclass, of_object, of_interface, of_host):
            gone = weakref.ref(make())
            gc.collect()
            self.assertIsNone(gone(), make.__name__)

    def test_an_array_whose_buffer_was_collected_is_none(self):
        """Who finds it in the middle of the collection gets RunFailure 5."""
        told = []

        class Owner(bytearray):
            pass

        class Late:
            def __init__(self, numbers):
                self.numbers = numbers

            def __del__(self):
                try:
                    told.append(self.numbers.tolist())
                except RunFailure as failure:
                    told.append(failure.number)

        owner = Owner(16)
        owner.array = DoubleArray.over(owner)
        owner.late = Late(owner.array)
        del owner
        gc.collect()
        self.assertIn(told, ([[0.0, 0.0]], [5]))


class Making(Case):
    def test_a_class_of_objects_before_the_library_is_opened(self):
        for script in ("orv2_geo.GeoObject()", "_core.version()", "_core.class_count()",
                       "_core.described_class(0)", "_core.Member(0, 0)", "_core.create('a')",
                       "_core.class_of(1)", "_core.release(1)", "_core.number_of_text('1')",
                       "_core.lend_handle(object())", "_core.install_interface(0)",
                       "_core.form_describe(0)", "_core.set_owner_window(1)", "_core.Object()",
                       "_core.described_member(0, 0)", "_core.failures()"):
            begin = "import orv2_geo\nfrom orv2_geo import _core\n"
            self.assertIn(ran(begin + "try:\n    {}\nexcept Exception: pass".format(script))[0],
                          (0,), script)

    def test_the_core_by_itself(self):
        script = """
import importlib.util, sys
spec = importlib.util.spec_from_file_location("orv2_geo._core", sys.argv[1])
core = importlib.util.module_from_spec(spec)
spec.loader.exec_module(core)
for make in (core.DoubleArray, core.Ref, core.Object, core.GeoArray, core.StringArray):
    try:
        make()
    except Exception as refused:
        pass
for value in (object(), "a", 1, 2 ** 100):
    for use in (core.as_i32, core.as_text, core.plain, core.flag, core.create):
        try:
            use(value)
        except Exception as refused:
            assert not isinstance(refused, SystemError), refused
"""
        done = subprocess.run([sys.executable, "-c", script, _core.__file__], capture_output=True,
                              text=True, timeout=60)
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_another_library_cannot_take_the_place_of_the_one_in_use(self):
        self.assertIn("in use", _core.open_library(ctypes.util.find_library("m") or "libm.so.6"))
        self.assertEqual(_core.open_library(os.environ["ORV2_TEST_LIBRARY"]), "")

    def test_the_package_is_imported_again(self):
        status, told = ran("""
import os, sys
import orv2_geo
orv2_geo.load(os.environ["ORV2_TEST_LIBRARY"])
kept = [orv2_geo.create("Orv2_Geo.cgeo_api"), orv2_geo.DoubleArray([1.0]), orv2_geo.Ref(2.0)]
for name in [name for name in sys.modules if name.startswith("orv2_geo")]:
    del sys.modules[name]
import orv2_geo as again
again.load(os.environ["ORV2_TEST_LIBRARY"])
algorismos = again.create("Orv2_Geo.cgeo_Algorismos")
algorismos.Azimut(1.0, 0.0, kept[2])
assert 99 < kept[2].value < 101
kept.append(again.DoubleArray(kept[1]))
del kept
""")
        self.assertEqual((status, told), (0, ""))

    def test_what_is_made_without_its_init_is_whole(self):
        self.assertEqual(Ref.__new__(Ref).value, 0)
        self.assertEqual(repr(DoubleArray.__new__(DoubleArray)), "DoubleArray()")
        with self.assertRaises(TypeError):
            GeoArray.__new__(GeoArray)
        with self.fails(429):
            _core.Object.__new__(orv2_geo.GeoObject)
        with self.fails(9):
            _core.Member(99, 99)
        with self.fails(9):
            _core.Member(-1, 0)

    def test_object_new_is_refused(self):
        for one in (Ref, DoubleArray, StringArray, GeoArray, _core.Member, _core.Object,
                    orv2_geo.cgeo_api, orv2_geo.GeoObject):
            with self.assertRaises(TypeError):
                object.__new__(one)

    def test_classes_made_from_the_packages(self):
        class Number(Ref):
            def __init__(self, value=0, name=""):
                super().__init__(value)
                self.name = name

        class Numbers(DoubleArray):
            def __init__(self, *given, **named):
                self.name = "n"

        class Both(DoubleArray, SingleArray):
            pass

        class Mine(orv2_geo.cgeo_Algorismos):
            def __init__(self):
                self.name = "m"

        bearing = Number(name="b")
        Mine().Azimut(1.0, 0.0, bearing)
        self.assertAlmostEqual(bearing.value, 100.0)
        self.assertEqual(repr(Numbers([1, 2])), "DoubleArray()")  # its __init__ takes nothing in
        self.assertEqual(Both([1, 2]).tolist(), [1.0, 2.0])
        for one in (bearing, Numbers([1]), Both([1]), Mine()):
            gone = weakref.ref(one)
            del one
        del bearing
        gc.collect()
        self.assertIsNone(gone())
        with self.assertRaises(TypeError):
            type("Neither", (Ref, DoubleArray), {})

    def test_a_subclass_that_lies_about_its_class(self):
        class Lies(orv2_geo.cgeo_Algorismos):
            registered_name = "Orv2_Geo.cgeo_api"
            _spelled = {"azimut": 5, "a": None}

        liar = Lies()
        for member in type(liar).members:
            try:
                getattr(liar, member.name)(*[Ref(1)] * len(member.parameters))
            except (RunFailure, AttributeError):
                pass
        with self.assertRaises(AttributeError):
            liar.a

    def test_a_member_is_called_on_its_own_class_alone(self):
        member = orv2_geo.cgeo_Algorismos._callable[9]
        for wrong in (int, 5, None, orv2_geo.cgeo_api, object):
            with self.assertRaises(TypeError):
                member.__objclass__ = wrong
        with self.assertRaises((TypeError, AttributeError)):
            del member.__objclass__
        fresh = _core.Member(0, 9)
        for wrong in (int, 5, None, object):
            with self.assertRaises(TypeError):
                fresh.__objclass__ = wrong
        for given in ((), (5,), (None,), (1.0, 2.0, 3.0), (orv2_geo.create("Orv2_Geo.cgeo_api"),)):
            with self.assertRaises(TypeError):
                member(*given)
            with self.assertRaises(TypeError):
                fresh(*given)

    def test_another_class_of_objects_put_in_place(self):
        called = algorismos()
        try:
            called.__class__ = orv2_geo.cgeo_Matrices
        except TypeError:
            return self.assertIs(type(called), orv2_geo.cgeo_Algorismos)
        for member in orv2_geo.cgeo_Matrices.members:
            with warnings.catch_warnings():
                warnings.simplefilter("ignore")
                try:
                    getattr(called, member.name)(*[1.0] * len(member.parameters))
                except RunFailure as failure:
                    self.assertIn(failure.number, (5, 6, 13, 438, 449, 450))
        called.__class__ = orv2_geo.cgeo_Algorismos
        self.assertAlmostEqual(called.Distancia_Punto_Linea(0, 1, 0, 0, 1, 0), 1.0)

    def test_a_bulk_call_by_hand(self):
        called = algorismos()
        member = type(called)._callable[9]
        empty = bytearray(0)
        for rows in (-1, -2 ** 62):
            with self.fails(9):
                _core.call_rows(member, called, (1.0, 2.0, 3.0), rows, None, None)
        for rows in (2 ** 61, 2 ** 62, 2 ** 63 - 1, 1):
            with self.assertRaises(ValueError):
                _core.call_rows(member, called, (empty, empty, empty), rows, None, None)
        with self.assertRaises(ValueError):
            odd = memoryview(bytearray(9))[1:]
            _core.call_rows(member, called, (1.0, 1.0, odd), 1, None, None)
        with self.fails(5):
            _core.call_rows(member, 5, (1.0, 1.0, 1.0), 1, None, None)
        with self.fails(449):
            _core.call_rows(member, called, (1.0,), 1, None, None)


class Warned(Case):
    def setUp(self):
        entered = warnings.catch_warnings()
        entered.__enter__()
        self.addCleanup(entered.__exit__, None, None, None)
        warnings.simplefilter("error")

    def test_a_lost_answer_stops_the_call(self):
        with self.assertRaises(GeoWarning):
            algorismos().Azimut(1.0, 0.0, 5.0)
        variable = Ref(1.0)
        with self.assertRaises(GeoWarning):
            orv2_geo.create("Orv2_Geo.cgeo_Geometria").GR_AngDist_de_1Recta(
                0.0, 0.0, 1.0, 1.0, variable, 5.0)
        self.assertEqual(variable.value, 1.0)

    def test_a_box_comes_out_as_a_warning_of_the_call(self):
        orv2_geo.set_user_interface(None)
        with self.assertRaises(GeoWarning) as caught:
            Calling.box(self, 0)
        self.assertIsInstance(caught.exception, GeoWarning)
        self.assertEqual(str(caught.exception), "Texto")


class Interrupted(Case):
    def interrupt_soon(self, seconds=0.1):
        before = signal.signal(signal.SIGALRM, self.interrupts)
        self.addCleanup(signal.signal, signal.SIGALRM, before)
        signal.setitimer(signal.ITIMER_REAL, seconds)
        self.addCleanup(signal.setitimer, signal.ITIMER_REAL, 0)

    @staticmethod
    def interrupts(*_):
        raise KeyboardInterrupt

    @unittest.skipUnless(hasattr(signal, "setitimer"), "there are no timers here")
    def test_many_slow_rows_end_soon(self):
        vertices = DoubleArray([float(i % 1000) for i in range(20001)])
        rows = DoubleArray.sized(0, 199999)
        called = orv2_geo.create("Orv2_Geo.cgeo_api")
        self.interrupt_soon()
        begun = time.monotonic()
        with self.assertRaises(KeyboardInterrupt):
            orv2_geo.bulk(called.Pto_in_Poligono, vertices, vertices, 20000, rows, rows)
        self.assertLess(time.monotonic() - begun, 5.0)

    @unittest.skipUnless(hasattr(signal, "setitimer"), "there are no timers here")
    def test_a_callback_that_runs_for_ever(self):
        def for_ever(*_):
            while True:
                pass
        self.interrupt_soon()
        with self.assertRaises(KeyboardInterrupt):
            run_on(Runner(for_ever), "f64&", Ref(1.0))
        self.assertEqual(_core.lent_count(), 0)


class Odd(Case):
    """Every function and method of the core with arguments that it cannot expect."""

    # Addresses that are made up are the caller's own affair: these functions are the
    # package's own, and what is handed to them is never anything else.
    EXCLUDED = {"call_like_member", "form_describe", "form_frame", "form_control", "form_grid",
                "form_look", "form_font", "form_alignment", "form_cell", "form_focus", "form_act",
                "use", "open_library", "lend_handle"}

    def values(self, random):
        # No whole number that is an index: an array up to it would fill all memory.
        called = algorismos()
        numbers = DoubleArray([1.0, 2.0], lower=1)
        ended = weakref.ref(Ref())
        return [
            None, True, -1, 0, 1, 2 ** 31, -2 ** 31 - 1, 2 ** 63, 2 ** 64, -2 ** 64, 10 ** 400,
            float("nan"), float("inf"), -0.0, 1e308, "", "a", "\0", "\ud800", "é" * 300, b"", b"ab",
            bytearray(8), memoryview(bytearray(8)), (), (1, 2), [], [1.0, None], {}, set(), object(),
            object, type, int, len, Ellipsis, NotImplemented, slice(1, 2), slice(None), range(3),
            omitted, Ref(), Ref("a"), Ref(Ref(1)), called, called.Azimut, numbers, DoubleArray(),
            DoubleArray(dims=2), StringArray(["a", "\ud800"]), SingleArray([1.5]),
            LongArray.sized(-5, 5), ShortArray([]), Runner(None), ended, RunFailure(9), GeoWarning(),
            _core.Member(0, 0), orv2_geo.cgeo_api, Ref, DoubleArray, GeoArray,
            random.choice((called._handle, numbers._handle, random.getrandbits(33) + 2 ** 32)),
            Hook(3, lambda: None), Hook(1, lambda: 1 / 0), FloatHook(3, lambda: 1 / 0),
            ItemHook(None, lambda: None), ItemHook(3, lambda: 1 / 0), iter([]), Exception,
        ]

    def callables(self, values):
        found = [getattr(_core, name) for name in dir(_core)
                 if name not in self.EXCLUDED and callable(getattr(_core, name))]
        found.append(self.lent_and_released)
        for one in values:
            if type(one).__module__ == "orv2_geo" or type(one).__name__ in ("Ref", "Member"):
                names = [name for name in dir(type(one)) if name not in self.AVOIDED]
                found += [_Bound(one, name) for name in names]
        return found

    @staticmethod
    def lent_and_released(*given):
        handle, owned = _core.lend_handle(*given)
        if owned:
            _core.release(handle)

    # What only changes or shows the class, and not the object; and what with large numbers
    # is Python's own endless work.
    AVOIDED = {"__pow__", "__rpow__", "__ipow__", "__mul__", "__rmul__", "__imul__", "__round__",
               "__class__", "__dict__", "__init_subclass__", "__subclasshook__", "__doc__",
               "__module__", "__dir__", "__annotations__", "_callable", "_spelled", "members",
               "registered_name", "__slots__", "__objclass__", "__signature__"}

    def test_nothing_crashes_and_nothing_is_a_system_error(self):
        seed = int(os.environ.get("ORV2_SEED", "7"))
        chance = random.Random(seed)
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")
            for i in range(ROUNDS):
                if i % 500 == 0:
                    values = self.values(chance)
                    found = self.callables(values)
                self.once(chance, values, found)
        self.assertAlmostEqual(algorismos().Distancia_Punto_Linea(0, 1, 0, 0, 1, 0), 1.0)
        orv2_geo.set_user_interface(None)

    def once(self, chance, values, found):
        use = chance.choice(found)
        given = [chance.choice(values) for _ in range(chance.choice((0, 1, 1, 2, 2, 3, 4, 9, 20)))]
        try:
            use(*given)
        except SystemError as wrong:
            self.fail("{!r}{!r}: {!r}".format(use, given, wrong))
        except Exception:
            return


class _Bound:
    """An attribute of an object, read, called, set or deleted."""

    def __init__(self, owner, name):
        self._owner, self._name = owner, name

    def __repr__(self):
        return "{!r}.{}".format(type(self._owner), self._name)

    def __call__(self, *given):
        found = getattr(self._owner, self._name)
        if callable(found):
            return found(*given)
        if len(given) == 1:
            return setattr(self._owner, self._name, given[0])
        if len(given) == 2:
            return delattr(self._owner, self._name)
        return found


class Elsewhere(Case):
    """The other tests once more, with every check that Python has on memory."""

    MODULES = ("test_arrays", "test_failures", "test_host", "test_interface", "test_members",
               "test_objects", "test_refs")

    def test_with_python_checking_its_memory(self):
        done = subprocess.run(
            [sys.executable, "-X", "dev", "-W", "default", "-m", "unittest", "-q", *self.MODULES],
            cwd=os.path.dirname(os.path.abspath(__file__)), capture_output=True, text=True,
            env={**os.environ, "PYTHONMALLOC": "debug"}, timeout=300)
        self.assertEqual(done.returncode, 0, done.stderr)

    @unittest.skipUnless(any(map(importlib.util.find_spec,
                                 ("_xxsubinterpreters", "_interpreters", "_testcapi"))),
                         "there is no way to another interpreter here")
    def test_another_interpreter_in_the_process_is_refused_in_words(self):
        for begin in ("", "import orv2_geo; orv2_geo.Ref(1.0)"):
            status, told = ran(begin + """
import sys
script = '''
import sys
sys.path[:] = %r
try:
    import orv2_geo
except ImportError as refused:
    words = str(refused)
    assert "interpreter" in words, words
    sys.stderr.write("refused ")
''' % (sys.path,)
try:
    import _interpreters
except ImportError:
    _interpreters = None
if _interpreters is not None:
    for config in ("legacy", "isolated"):
        one = _interpreters.create(config)
        failed = _interpreters.exec(one, script)
        assert failed is None, failed
        _interpreters.destroy(one)
else:
    try:
        import _xxsubinterpreters as interpreters
        one = interpreters.create(isolated=False)
        interpreters.run_string(one, script)
        interpreters.destroy(one)
    except ImportError:
        import _testcapi
        assert _testcapi.run_in_subinterp(script) == 0
import orv2_geo
assert orv2_geo.Ref(2.0).value == 2.0
""")
            self.assertEqual(status, 0, told)
            self.assertIn("refused", told)
