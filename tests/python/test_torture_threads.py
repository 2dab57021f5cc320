"""Many threads at once, and threads that end with things alive."""
import ctypes
import gc
import os
import subprocess
import sys
import threading
import time
import unittest
import weakref

from support import Case, Runner, passed, run_on

import orv2_geo
from orv2_geo import DoubleArray, LongArray, Ref, RunFailure, StringArray, _core

SECONDS = float(os.environ.get("ORV2_SECONDS", "2"))


class Bar:
    Visible = Min = max = Value = 0


def all_ways(i):
    """Calls, bulk, arrays, views and callbacks with objects of this thread's own."""
    called = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
    order = orv2_geo.create("Orv2_Geo.cgeo_Ordena")
    bearing = Ref(0.0)
    called.Azimut(1.0, 0.0, bearing)
    assert 99.9 < bearing.value < 100.1
    numbers = DoubleArray([float((i * 7 + j) % 13) for j in range(50)])
    view = numbers.view()
    order.Ordena_Double_Array(numbers, 0, 49)
    again = DoubleArray([float((i * 7 + j) % 13) for j in range(50)])
    order.Ordena_Double_Array(again, 0, 49)
    assert list(view) == again.tolist()
    view.release()
    numbers.resize(-5, 5, keep=True)
    texts = StringArray(["b", "a", "c" * (i % 50)])
    order.Ordena_StringArray(texts, 0, 2)
    assert texts[0:1].lower == 0
    columns = [DoubleArray([float(j % 5) for j in range(20)]) for _ in range(3)]
    order.Quita_Puntos_Repetidos_XY_con_indice1(Ref(19), *columns, LongArray(), Bar(), 0.001, False)
    assert len(orv2_geo.bulk(called.Azimut, [1.0] * 9, [0.0] * 9).written["aZ"]) == 9
    assert run_on(Runner(lambda a, b: a + b), "f64 f64", 1.0, float(i)) == 1.0 + i
    pair = Ref("é"), Ref("b")
    passed("swap", "text& text&", *pair)
    assert pair[0].value == "b"
    try:
        called.Azimut("x", 0, bearing)
    except RunFailure as failure:
        assert failure.number == 13
    over = DoubleArray.over(bytearray(64))
    over[0] = 1.0
    return numbers, texts, over, called, bearing


class Together(Case):
    def test_eight_threads_in_every_way_and_one_that_looks_on(self):
        wrong, shared = [], {}
        until = time.monotonic() + SECONDS

        def work(me):
            i = 0
            try:
                while time.monotonic() < until:
                    shared[me] = all_ways(i)
                    i += 1
            except BaseException as raised:
                wrong.append(raised)
                raise

        def look_on():
            while time.monotonic() < until:
                for one in list(shared.values()):
                    numbers, texts, over, called, bearing = one
                    for use in (lambda: numbers[0], lambda: texts.tolist(), numbers.view,
                                lambda: numbers.resize(0, 1), lambda: repr(over),
                                lambda: called.Arccos(0.5)):
                        try:
                            use()
                            wrong.append("an array or object of another thread was used")
                        except RunFailure as failure:
                            if failure.number != 5:
                                wrong.append(failure)
                    if not 99.9 < bearing.value < 100.1:
                        wrong.append(bearing.value)
                gc.collect()

        threads = [threading.Thread(target=work, args=(me,)) for me in range(8)]
        threads.append(threading.Thread(target=look_on))
        before = sys.getswitchinterval()
        sys.setswitchinterval(1e-5)
        try:
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
        finally:
            sys.setswitchinterval(before)
        self.assertEqual(wrong, [])
        self.assertEqual(_core.lent_count(), 0)

    def test_views_are_read_by_other_threads_while_calls_write(self):
        order = orv2_geo.create("Orv2_Geo.cgeo_Ordena")
        numbers = DoubleArray([float(i % 977) for i in range(20000)])
        view, ended, sums = numbers.view(), threading.Event(), []

        def read():
            while not ended.is_set():
                sums.append(sum(view[::97]))

        threads = [threading.Thread(target=read) for _ in range(3)]
        for thread in threads:
            thread.start()
        for _ in range(30):
            order.Ordena_Double_Array(numbers, 0, 19999)
            numbers[0:20000] = [float(i % 977) for i in range(20000)]
        ended.set()
        for thread in threads:
            thread.join()
        self.assertGreater(len(sums), 0)
        self.assertTrue(all(one >= 0 for one in sums))

    def test_one_object_in_two_threads_is_5(self):
        called, numbers, told = orv2_geo.create("Orv2_Geo.cgeo_Ordena"), DoubleArray([1.0]), []

        def other():
            mine = orv2_geo.create("Orv2_Geo.cgeo_Ordena")
            for use in (lambda: called.Ordena_Double_Array(DoubleArray([1.0]), 0, 0),
                        lambda: mine.Ordena_Double_Array(numbers, 0, 0)):
                try:
                    use()
                except RunFailure as failure:
                    told.append(failure.number)

        thread = threading.Thread(target=other)
        thread.start()
        thread.join()
        self.assertEqual(told, [5, 5])


class Ending(Case):
    def in_thread(self, work):
        kept = []
        thread = threading.Thread(target=lambda: kept.append(work()))
        thread.start()
        thread.join()
        return kept[0]

    def test_what_a_thread_left_is_looked_at_and_let_go(self):
        def work():
            numbers = DoubleArray([1.0, 2.0])
            owner = bytearray(16)
            return (numbers, numbers.view(), StringArray(["a"]), DoubleArray.over(owner), owner,
                    orv2_geo.create("Orv2_Geo.cgeo_api"), Ref("text"), Ref(2.5))

        for _ in range(50):
            numbers, view, texts, over, owner, called, text, number = self.in_thread(work)
            self.assertEqual(list(view), [1.0, 2.0])
            view[0] = 9.0
            self.assertEqual(view.tolist(), [9.0, 2.0])
            for use in (numbers.tolist, texts.tolist, over.tolist, lambda: numbers.resize(0, 5),
                        lambda: called.Pto_in_Poligono(numbers, numbers, 1, 0, 0, Ref(0))):
                with self.fails(5):
                    use()
            self.assertEqual((text.value, number.value), ("text", 2.5))
            view.release()
            del numbers, over, called, texts
            owner.extend(b"free again")
        gc.collect()

    def test_objects_lent_by_a_thread_are_taken_back_at_its_end(self):
        class Target:
            pass

        before = _core.lent_count()

        def work():
            targets = [Target() for _ in range(5)]
            handles = [_core.lend_handle(one)[0] for one in targets]
            return handles, [weakref.ref(one) for one in targets]

        for _ in range(20):
            handles, gone = self.in_thread(work)
            gc.collect()
            self.assertEqual([one() for one in gone], [None] * 5)
            for handle in handles:
                _core.release(handle)
        self.assertEqual(_core.lent_count(), before)

    def test_what_another_thread_lets_go_while_the_owner_goes_on(self):
        kept, gone = [], []
        ready, dropped = threading.Event(), threading.Event()

        def work():
            for _ in range(200):
                owner = bytearray(80)
                kept.append(DoubleArray.over(owner))
                kept.append(orv2_geo.create("Orv2_Geo.cgeo_api"))
            ready.set()
            dropped.wait(10)
            for i in range(300):
                gone.append(len(DoubleArray([float(i)])))

        thread = threading.Thread(target=work)
        thread.start()
        ready.wait(10)
        kept.clear()
        gc.collect()
        dropped.set()
        thread.join()
        self.assertEqual(len(gone), 300)

    def test_a_library_that_still_has_what_was_taken_back_gets_5(self):
        """A reference of the library's own, beyond the end of Python's thread, in a thread of C."""
        functions = ctypes.CDLL(os.environ["ORV2_TEST_LIBRARY"])
        functions.orv2_reference.argtypes = [ctypes.c_uint64]

        def work():
            handle, _ = _core.lend_handle(Runner(None))
            functions.orv2_reference(handle)
            return handle

        handle = self.in_thread(work)
        with self.fails(5):
            _core.class_of(handle)


class Exit(Case):
    """A process that ends with threads of its own still in the library."""

    def ended(self, script):
        begin = ("import os, sys, threading, time\nsys.path[:0] = [{!r}]\n"
                 "import orv2_geo, support\nfrom test_torture_threads import all_ways, Bar\n"
                 "from support import run_on, Runner\n").format(
                     os.path.dirname(os.path.abspath(__file__)))
        done = subprocess.run([sys.executable, "-c", begin + script], capture_output=True,
                              text=True, timeout=60)
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_daemon_threads_in_every_way(self):
        for _ in range(3):
            self.ended("""
def work():
    i = 0
    while True:
        all_ways(i)
        i += 1
for _ in range(4):
    threading.Thread(target=work, daemon=True).start()
time.sleep(0.1)
""")

    def test_daemon_threads_in_long_calls(self):
        for _ in range(3):
            self.ended("""
def work():
    called = orv2_geo.create("Orv2_Geo.cgeo_Ordena")
    while True:
        numbers = orv2_geo.DoubleArray([float(i % 977) for i in range(30000)])
        called.Ordena_Double_Array(numbers, 0, 29999)
for _ in range(3):
    threading.Thread(target=work, daemon=True).start()
time.sleep(0.15)
""")

    def test_daemon_threads_in_callbacks(self):
        self.ended("""
begun = threading.Event()
def waits(*_):
    begun.set()
    time.sleep(0.3)
def work():
    while True:
        run_on(Runner(waits), "f64&", orv2_geo.Ref(1.0))
threading.Thread(target=work, daemon=True).start()
begun.wait()
""")

    def test_daemon_threads_that_python_ends_in_the_middle_of_its_code(self):
        """Beneath frames of the library, which must not be unwound."""
        ways = {
            "a method of a host's object": 'run_on(Runner(endless), "f64&", orv2_geo.Ref(1.0))',
            "a property of a host's object":
                "orv2_geo.create('Orv2_Geo.cgeo_Ordena').Quita_Puntos_Repetidos_XY_con_indice1("
                "orv2_geo.Ref(2), *columns, orv2_geo.LongArray(), Endless(), 0.001, False)",
            "an element's number": "orv2_geo.DoubleArray([Endless()])",
            "elements one by one": "orv2_geo.DoubleArray(endless() for _ in [1])",
            "an argument": 'orv2_geo.create("Orv2_Geo.cgeo_Algorismos").Arccos(Endless())',
            "an operand": "orv2_geo.Ref(1.0) + Endless()",
            "a value that is given up": "setattr(orv2_geo.Ref(Endless()), 'value', 1.0)",
            "a subscript": "orv2_geo.DoubleArray([1.0])[Endless()]",
        }
        for name, way in ways.items():
            with self.subTest(name):
                self.ended("""
begun = threading.Event()
def endless(*_):
    begun.set()
    while True:
        pass
class Endless:
    __del__ = __float__ = __index__ = __iter__ = __radd__ = __setattr__ = endless
columns = [orv2_geo.DoubleArray([0.0] * 3) for _ in range(3)]
threading.Thread(target=lambda: {}, daemon=True).start()
assert begun.wait(30)
""".format(way))

    def test_what_is_left_at_the_end_of_the_main_thread(self):
        self.ended("""
kept = [all_ways(i) for i in range(3)]
kept.append(orv2_geo._core.lend_handle(Bar()))
class Late:
    def __init__(self):
        self.kept = all_ways(1)
    def __del__(self):
        try:
            self.kept[0].tolist()
            self.kept[3].Arccos(0.5)
        except Exception:
            pass
late = Late()
late.itself = late
import atexit
atexit.register(lambda: all_ways(2))
""")
