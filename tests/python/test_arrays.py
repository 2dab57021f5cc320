import array
import copy
import gc
import math
import pickle
import struct
import threading
import weakref

from support import Case, passed

import orv2_geo
from orv2_geo import DoubleArray, LongArray, ShortArray, SingleArray, StringArray

NUMBERS = (DoubleArray, SingleArray, LongArray, ShortArray)
ALL = NUMBERS + (StringArray,)


def elements_for(of_class, count):
    numbers = list(range(count))
    return ["t{}".format(i) for i in numbers] if of_class is StringArray else numbers


class Making(Case):
    def test_elements_from_a_lower_bound(self):
        for of_class in ALL:
            for lower in (0, 1, -2, 2**31 - 3, -2**31):
                with self.subTest(of_class.__name__, lower=lower):
                    made = of_class(elements_for(of_class, 3), lower=lower)
                    self.assertEqual((made.lower, made.upper, len(made)), (lower, lower + 2, 3))
                    self.assertEqual(list(made), elements_for(of_class, 3))
                    self.assertEqual((made.allocated, made.dims), (True, 1))

    def test_unallocated(self):
        for of_class in ALL:
            with self.subTest(of_class.__name__):
                made = of_class()
                self.assertEqual((made.allocated, made.dims, len(made), list(made)),
                                 (False, 0, 0, []))
                for use in (lambda: made.lower, lambda: made.upper, lambda: made[0]):
                    with self.fails(9):
                        use()

    def test_allocated_without_elements(self):
        for of_class in ALL:
            with self.subTest(of_class.__name__):
                made = of_class([], lower=1)
                self.assertEqual((made.allocated, made.dims, len(made), list(made)),
                                 (True, 1, 0, []))
                self.assertEqual((made.lower, made.upper), (1, 0))
                with self.fails(9):
                    made[1]

    def test_a_foreign_dimension_count(self):
        for of_class in ALL:
            with self.subTest(of_class.__name__):
                made = of_class(dims=2, lower=1)
                self.assertEqual((made.allocated, made.dims, made.lower), (True, 2, 1))
                for use in (lambda: made[1], lambda: list(made)):
                    with self.fails(9):
                        use()
                with self.fails(9):
                    made[1] = elements_for(of_class, 1)[0]
        with self.assertRaises(TypeError):
            DoubleArray([1.0], dims=2)

    def test_sized_gives_zeros_and_empty_texts(self):
        for of_class in ALL:
            made = of_class.sized(2, 4)
            self.assertEqual((made.lower, made.upper), (2, 4))
            self.assertEqual(list(made), [""] * 3 if of_class is StringArray else [0] * 3)
            with self.fails(9):
                of_class.sized(1, 0)

    def test_elements_are_converted(self):
        for of_class, given, wanted in (
                (DoubleArray, [1, True], [1.0, -1.0]), (LongArray, [0.5, 1.5, -2.5], [0, 2, -2]),
                (ShortArray, [32767.4], [32767]), (SingleArray, [0.1], [0.10000000149011612]),
                (StringArray, ("a", "\ud800\0"), ["a", "\ud800\0"]),
                (DoubleArray, range(3), [0.0, 1.0, 2.0]),
                (DoubleArray, (x / 2 for x in (1, 2)), [0.5, 1.0])):
            self.assertEqual(list(of_class(given)), wanted)

    def test_elements_that_do_not_fit(self):
        for number, of_class, given in (
                (6, LongArray, [2**31]), (6, ShortArray, [32767.5]), (6, SingleArray, [1e39]),
                (13, DoubleArray, ["1"]), (13, DoubleArray, [None]), (13, StringArray, [1])):
            with self.subTest(of_class.__name__, given=given), self.fails(number):
                of_class(given)

    def test_bounds_that_do_not_fit(self):
        for number, lower in ((6, 2**31), (6, -2**31 - 1), (9, 2**31 - 1), (13, "1")):
            with self.subTest(lower=lower), self.fails(number):
                DoubleArray([1.0, 2.0], lower=lower)


class Deriving(Case):
    def test_a_class_made_from_an_array_has_an_init_of_its_own(self):
        class Levels(DoubleArray):
            def __init__(self, count, name):
                super().__init__([0.0] * count, lower=1)
                self.name = name

        made = Levels(3, "cotas")
        self.assertEqual((list(made), made.lower, made.name), ([0.0] * 3, 1, "cotas"))

    def test_an_array_is_made_once(self):
        made = DoubleArray([1.0])
        with self.fails(10):
            made.__init__([2.0, 3.0])
        self.assertEqual(list(made), [1.0])

    def test_without_its_init_it_is_unallocated(self):
        made = LongArray.__new__(LongArray)
        self.assertFalse(made.allocated)
        made.resize(1, 2)
        with self.fails(10):
            made.__init__([1])
        self.assertEqual(list(made), [0, 0])


class Elements(Case):
    def test_indexes_are_the_arrays_own(self):
        for of_class in ALL:
            made = of_class(elements_for(of_class, 3), lower=-1)
            self.assertEqual([made[i] for i in (-1, 0, 1)], elements_for(of_class, 3))
            made[-1], made[1] = made[1], made[-1]
            self.assertEqual(list(made), elements_for(of_class, 3)[::-1])

    def test_an_index_outside_is_9(self):
        for of_class in ALL:
            made = of_class(elements_for(of_class, 3), lower=1)
            for index in (0, 4, -1, 2**31, -2**31, 2**32 + 1, 2**64 + 1):
                with self.subTest(of_class.__name__, index=index):
                    with self.fails(9):
                        made[index]
                    with self.fails(9):
                        made[index] = made[1]
                    with self.assertRaises(orv2_geo.RunFailure) as caught:
                        made[index]
                    self.assertNotIsInstance(caught.exception, IndexError)

    def test_an_index_is_a_whole_number(self):
        for index in (1.0, "1", None):
            with self.subTest(index), self.assertRaises(TypeError):
                DoubleArray([1.0, 2.0])[index]

    def test_exact_values_survive(self):
        values = [-0.0, 5e-324, math.inf, math.nan, 0.1]
        made = DoubleArray(values, lower=3)
        self.assertEqual(struct.pack("<5d", *made), struct.pack("<5d", *values))
        made[3] = math.nan
        self.assertTrue(math.isnan(made[3]))

    def test_walking_backwards_and_looking_inside(self):
        made = LongArray([3, 4, 5], lower=10)
        self.assertEqual(list(reversed(made)), [5, 4, 3])
        self.assertIn(4, made)
        self.assertNotIn(10, made)

    def test_texts_keep_every_unit(self):
        made = StringArray(["", "a\0b", "\ud800", "𝄞ñ"], lower=1)
        self.assertEqual(list(made), ["", "a\0b", "\ud800", "𝄞ñ"])
        made[2] = "\udfff\0"
        self.assertEqual(made[2], "\udfff\0")


class Comparing(Case):
    def test_equal_is_class_bounds_and_elements(self):
        made = DoubleArray([1.0, 2.0], lower=1)
        self.assertEqual(made, DoubleArray([1, 2], lower=1))
        for other in (DoubleArray([1.0, 2.0]), DoubleArray([1.0, 3.0], lower=1), DoubleArray(),
                      DoubleArray([1.0], lower=1), SingleArray([1.0, 2.0], lower=1),
                      DoubleArray(dims=2, lower=1), [1.0, 2.0]):
            self.assertNotEqual(made, other)
        self.assertEqual(DoubleArray(), DoubleArray())
        self.assertNotEqual(DoubleArray(), DoubleArray([]))

    def test_shown_with_bounds_and_elements(self):
        for made, wanted in ((DoubleArray([1, 2], lower=1), "DoubleArray([1.0, 2.0], lower=1)"),
                             (StringArray(["ñ"]), "StringArray(['ñ'], lower=0)"),
                             (LongArray(), "LongArray()"),
                             (ShortArray([]), "ShortArray([], lower=0)"),
                             (SingleArray(dims=3), "SingleArray(lower=0, dims=3)")):
            self.assertEqual(repr(made), wanted)
            self.assertEqual(eval(wanted), made)

    def test_a_copy_has_its_own_elements(self):
        for made in (DoubleArray([1.0], lower=1), StringArray(["a"], lower=1)):
            for other in (copy.copy(made), copy.deepcopy(made), pickle.loads(pickle.dumps(made))):
                self.assertEqual(other, made)
                other[1] = made[1] * 2
                self.assertEqual(other[1], made[1] * 2)
                self.assertNotEqual(other, made)
        for made in (DoubleArray(), DoubleArray(dims=2, lower=4)):
            self.assertEqual(copy.copy(made), made)

    def test_an_array_has_no_hash(self):
        with self.assertRaises(TypeError):
            hash(DoubleArray())


class Resizing(Case):
    def test_without_keeping_all_is_zero(self):
        for of_class in ALL:
            made = of_class(elements_for(of_class, 3), lower=1)
            made.resize(0, 1)
            self.assertEqual((made.lower, list(made)),
                             (0, [""] * 2 if of_class is StringArray else [0, 0]))

    def test_keeping_goes_by_index(self):
        made = DoubleArray([1, 2, 3], lower=1)
        made.resize(2, 5, keep=True)
        self.assertEqual(made, DoubleArray([2, 3, 0, 0], lower=2))
        texts = StringArray(["a", "b"], lower=0)
        texts.resize(1, 2, keep=True)
        self.assertEqual(texts, StringArray(["b", ""], lower=1))

    def test_refused_bounds(self):
        made = DoubleArray([1.0])
        for number, bounds in ((9, (1, 0)), (6, (0, 2**31)), (13, ("a", 1))):
            with self.subTest(bounds=bounds), self.fails(number):
                made.resize(*bounds)
        self.assertEqual(made, DoubleArray([1.0]))

    def test_a_locked_array_keeps_its_size(self):
        made = DoubleArray([1.0])
        with made.locked() as same:
            self.assertIs(same, made)
            with self.fails(10):
                made.resize(0, 5)
            made[0] = 2.0
        made.resize(0, 1, keep=True)
        self.assertEqual(list(made), [2.0, 0.0])

    def test_locks_are_counted(self):
        made = DoubleArray([1.0])
        made.lock()
        made.lock()
        made.unlock()
        with self.fails(10):
            made.resize(0, 5)
        made.unlock()
        made.resize(0, 5)
        with self.fails(5):
            made.unlock()

    def test_a_lock_ends_with_a_failure(self):
        made = DoubleArray([1.0])
        with self.assertRaises(KeyError):
            with made.locked():
                raise KeyError
        made.resize(0, 5)
        self.assertEqual(len(made), 6)


class Views(Case):
    def test_a_view_shows_the_elements_in_place(self):
        for of_class, kind in zip(NUMBERS, "dfih"):
            made = of_class([1, 2, 3], lower=1)
            view = made.view()
            self.assertEqual((view.format, view.tolist(), view.readonly), (kind, [1, 2, 3], False))
            view[2] = 7
            self.assertEqual(made[3], 7)
            made[1] = 9
            self.assertEqual(view[0], 9)

    def test_a_view_keeps_the_array(self):
        view = DoubleArray([1.0, 2.0]).view()
        gc.collect()
        self.assertEqual(view.tolist(), [1.0, 2.0])
        made = DoubleArray([1.0])
        gone = weakref.ref(made)
        view = made.view()
        del made
        gc.collect()
        self.assertIsNotNone(gone())
        del view
        gc.collect()
        self.assertIsNone(gone())

    def test_a_view_of_nothing(self):
        self.assertEqual(DoubleArray([]).view().tolist(), [])
        for made in (DoubleArray(), DoubleArray(dims=2)):
            with self.fails(9):
                made.view()

    def test_memoryview_shows_the_elements(self):
        made = ShortArray([1, 2])
        with memoryview(made) as view:
            view[0] = 5
        self.assertEqual(list(made), [5, 2])


class Adopting(Case):
    def test_a_buffer_is_worked_in_place(self):
        for of_class, kind in zip(NUMBERS, "dfih"):
            buffer = array.array(kind, [1, 2, 3])
            adopted = of_class.over(buffer, lower=1)
            self.assertEqual(adopted, of_class([1, 2, 3], lower=1))
            adopted[1] = 7
            buffer[1], buffer[2] = 8, 7
            self.assertEqual((buffer[0], adopted[2]), (7, 8))
            with self.fails(10):
                passed("swap", "{0}& {0}&".format(of_class.__name__), adopted, of_class([1]))
            self.assertEqual(buffer.tolist(), [7, 8, 7])

    def test_bytes_and_views_are_taken_as_elements(self):
        data = bytearray(struct.pack("<2d", 1.5, 2.5))
        for buffer in (data, memoryview(data), memoryview(data).cast("d")):
            adopted = DoubleArray.over(buffer)
            self.assertEqual(list(adopted), [1.5, 2.5])
        adopted[1] = 4.5
        self.assertEqual(struct.unpack("<2d", data), (1.5, 4.5))

    def test_the_size_is_fixed(self):
        adopted = DoubleArray.over(array.array("d", [1.0]))
        with self.fails(10):
            adopted.resize(0, 3)
        self.assertEqual(list(adopted), [1.0])

    def test_the_buffer_stays_in_use(self):
        buffer = bytearray(16)
        adopted = DoubleArray.over(buffer)
        with self.assertRaises(BufferError):
            buffer.append(0)
        del adopted
        gc.collect()
        buffer.append(0)
        self.assertEqual(len(buffer), 17)

    def test_an_empty_buffer(self):
        for buffer in (array.array("d"), bytearray()):
            adopted = DoubleArray.over(buffer, lower=1)
            self.assertEqual((adopted.allocated, list(adopted), adopted.lower), (True, [], 1))

    def test_a_buffer_of_something_else_is_13(self):
        for of_class, buffer in ((DoubleArray, array.array("f", [1])), (DoubleArray, bytearray(9)),
                                 (LongArray, array.array("I", [1])),
                                 (LongArray, array.array("q", [1])),
                                 (ShortArray, array.array("H", [1]))):
            with self.subTest(of_class.__name__), self.fails(13):
                of_class.over(buffer)

    def test_a_buffer_must_be_writable(self):
        for buffer in (bytes(8), memoryview(bytes(8)), 5):
            with self.subTest(type(buffer).__name__), self.assertRaises(TypeError):
                DoubleArray.over(buffer)

    def test_a_buffer_between_two_elements_is_5(self):
        with self.fails(5):
            DoubleArray.over(memoryview(bytearray(17))[1:])

    def test_texts_have_no_buffer(self):
        self.assertFalse(hasattr(StringArray, "over"))


class InACall(Case):
    def test_arrays_are_handed_in_by_reference(self):
        for of_class in ALL:
            first = of_class(elements_for(of_class, 3), lower=1)
            second = of_class()
            passed("swap", "{0}& {0}&".format(of_class.__name__), first, second)
            self.assertEqual(second, of_class(elements_for(of_class, 3), lower=1))
            self.assertEqual(first, of_class())

    def test_the_same_array_twice_is_one(self):
        made = DoubleArray([1.0])
        types = "DoubleArray& DoubleArray&"
        self.assertTrue(passed("same", types, made, made))
        self.assertFalse(passed("same", types, made, DoubleArray([1.0])))

    def test_a_locked_array_is_not_exchanged(self):
        made = DoubleArray([1.0])
        with made.locked(), self.fails(10, "Orv2_Geo.Testing"):
            passed("swap", "DoubleArray& DoubleArray&", made, DoubleArray([1.0, 2.0]))
        self.assertEqual(list(made), [1.0])


class Threads(Case):
    def on_another_thread(self, work):
        thread = threading.Thread(target=work)
        thread.start()
        thread.join()

    def test_an_array_is_used_on_its_own_thread(self):
        made, raised = DoubleArray([1.0]), []

        def work():
            for use in (lambda: made[0], lambda: len(made), made.lock, made.view):
                try:
                    use()
                except orv2_geo.RunFailure as failure:
                    raised.append(failure.number)

        self.on_another_thread(work)
        self.assertEqual(raised, [5, 5, 5, 5])

    def test_the_last_reference_may_go_on_another_thread(self):
        kept = [DoubleArray([1.0]), StringArray(["a"]), orv2_geo.create("Orv2_Geo.cgeo_api")]
        self.on_another_thread(kept.clear)
        self.assertEqual(kept, [])
        self.assertEqual(list(DoubleArray([2.0])), [2.0])

    def test_what_a_thread_leaves_behind_is_released_later(self):
        kept = []
        self.on_another_thread(lambda: kept.append(DoubleArray([1.0])))
        with self.fails(5):
            kept[0].lower
        kept.clear()
        self.assertEqual(list(DoubleArray([2.0])), [2.0])
