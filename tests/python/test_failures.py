import copy
import pickle
import signal
import time

from support import Case, Runner, run_on

import orv2_geo
from orv2_geo import RunFailure


class Words(Case):
    def test_a_failure_tells_number_description_and_source(self):
        for failure, wanted in (
                (RunFailure(9, "", "Orv2_Geo.cgeo_Algorismos"),
                 "9: El subíndice está fuera del intervalo (Orv2_Geo.cgeo_Algorismos)"),
                (RunFailure(11), "11: División por cero"),
                (RunFailure(1234), "1234"),
                (RunFailure(1234, "sin papel"), "1234: sin papel"),
                (RunFailure(1234, source="Impresora"), "1234 (Impresora)"),
                (RunFailure(9, "otro", "Impresora"), "9: otro (Impresora)")):
            self.assertEqual(str(failure), wanted)

    def test_the_librarys_own_descriptions(self):
        for number, description in (
                (3, "Return sin GoSub"), (5, "Argumento o llamada a procedimiento no válidos"),
                (6, "Desbordamiento"), (7, "Memoria insuficiente"), (13, "No coinciden los tipos"),
                (10, "La matriz es fija o está bloqueada temporalmente"),
                (91, "Variable de objeto no establecida"), (429, "No se puede crear el objeto"),
                (438, "El objeto no admite esta propiedad o método"),
                (440, "Error de automatización"),
                (449, "Argumento no opcional"),
                (450, "Número de argumentos o asignación de propiedad incorrectos")):
            self.assertEqual(RunFailure(number).description, description)

    def test_the_parts(self):
        failure = RunFailure(9, "d", "s")
        self.assertEqual((failure.number, failure.description, failure.source), (9, "d", "s"))
        self.assertEqual(RunFailure(5).source, "")

    def test_a_number_is_whole(self):
        with self.assertRaises(TypeError):
            RunFailure("9")

    def test_a_copy_says_the_same(self):
        for other in (copy.copy(RunFailure(9, "d", "s")),
                      pickle.loads(pickle.dumps(RunFailure(9, "d", "s")))):
            self.assertEqual((other.number, other.description, other.source), (9, "d", "s"))

    def test_it_is_no_index_error(self):
        self.assertNotIsInstance(RunFailure(9), (IndexError, LookupError))


class FromHosts(Case):
    """What an object of this side raises in the middle of a call."""

    def raised(self, exception):
        def run():
            raise exception

        with self.assertRaises(RunFailure) as caught:
            run_on(Runner(run), "")
        return caught.exception

    def test_a_run_failure_keeps_its_words(self):
        for number, description, source in ((9, "d", "s"), (1000, "ñ", "Lienzo"),
                                            (-2147467259, "x", "y"), (440, "a", "b")):
            failure = self.raised(RunFailure(number, description, source))
            self.assertEqual((failure.number, failure.description, failure.source),
                             (number, description, source))
            self.assertIsNone(failure.__cause__)

    def test_without_words_the_librarys_are_taken(self):
        failure = self.raised(RunFailure(11))
        self.assertEqual(str(failure), "11: División por cero (Orv2_Geo.Testing)")

    def test_any_other_exception_is_440_with_its_text(self):
        class Mute(Exception):
            def __str__(self):
                raise ValueError

        for exception, words in (
                (ValueError("no cabe"), "no cabe"), (KeyError("a"), "'a'"),
                (AssertionError(), "AssertionError"), (Mute(), "Mute"),
                (ValueError("a\0b\ud800"), "a\ufffdb\ud800")):
            failure = self.raised(exception)
            self.assertEqual((failure.number, failure.description), (440, words))
            self.assertIs(failure.__cause__, exception)

    def test_a_number_that_cannot_travel_is_440(self):
        for number in (0, 2**31, -2**31 - 1):
            failure = self.raised(RunFailure(number, "x", "y"))
            self.assertEqual(failure.number, 440)
            self.assertEqual(failure.__cause__.number, number)

    def test_an_interrupt_is_not_lost(self):
        for interrupt in (KeyboardInterrupt("alto"), SystemExit(3), GeneratorExit()):
            def run():
                raise interrupt

            with self.assertRaises(type(interrupt)) as caught:
                run_on(Runner(run), "")
            self.assertIs(caught.exception, interrupt)

    def test_an_interrupt_from_the_keyboard(self):
        # What is started in the background ignores it.
        before = signal.signal(signal.SIGINT, signal.default_int_handler)
        self.addCleanup(signal.signal, signal.SIGINT, before)

        def run():
            signal.raise_signal(signal.SIGINT)
            end = time.monotonic() + 10
            while time.monotonic() < end:  # until the interpreter sees it
                time.sleep(0.01)

        with self.assertRaises(KeyboardInterrupt):
            run_on(Runner(run), "")

    def test_an_interrupt_goes_through_every_call(self):
        passed_by = []

        def inner():
            raise KeyboardInterrupt

        def outer():
            try:
                run_on(Runner(inner), "")
            finally:
                passed_by.append("outer")

        with self.assertRaises(KeyboardInterrupt):
            run_on(Runner(outer), "")
        self.assertEqual(passed_by, ["outer"])
        self.assertEqual(run_on(Runner(lambda: 5), ""), 5)

    def test_an_inner_failure_is_handled_where_it_is(self):
        def inner():
            raise ValueError("dentro")

        def outer():
            try:
                run_on(Runner(inner), "")
            except RunFailure as failure:
                return failure.number

        self.assertEqual(run_on(Runner(outer), ""), 440)

    def test_an_inner_failure_goes_on_as_itself(self):
        def inner():
            raise ValueError("dentro")

        with self.assertRaises(RunFailure) as caught:
            run_on(Runner(lambda: run_on(Runner(inner), "")), "")
        self.assertEqual(caught.exception.description, "dentro")

    def test_a_later_failure_does_not_take_an_earlier_cause(self):
        def run():
            try:
                run_on(Runner(lambda: 1 / 0), "")
            except RunFailure:
                raise RunFailure(440, "otro", "Lienzo") from None

        failure = self.raised_by(run)
        self.assertEqual(failure.description, "otro")
        self.assertIsNone(failure.__cause__)

    def raised_by(self, function):
        with self.assertRaises(RunFailure) as caught:
            run_on(Runner(function), "")
        return caught.exception

    def test_the_failure_of_a_library_call_passes_through(self):
        functions = orv2_geo.create("Orv2_Geo.cgeo_FuncDeriv")
        failure = self.raised_by(lambda: functions.F_LogN(0.0))
        self.assertEqual((failure.number, failure.source), (5, "Orv2_Geo.cgeo_FuncDeriv"))
