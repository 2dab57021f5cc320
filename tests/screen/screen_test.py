"""Boxes and forms pressed by a person, and what came back to the host.

Environment: ORV2_HOST, ORV2_QT_HOST and ORV2_X_HOST, the host programs;
ORV2_PYTHON_ENVIRONMENT, what a Python host needs; ORV2_DPI; and ORV2_PICTURES,
the folder for a picture of every state.
"""
import json
import os
import pathlib
import sys
import time
import unittest

import screen

HOST = os.environ["ORV2_HOST"]
QT_HOST = os.environ["ORV2_QT_HOST"]
X_HOST = os.environ["ORV2_X_HOST"]
DPI = int(os.environ["ORV2_DPI"])
PICTURES = pathlib.Path(os.environ["ORV2_PICTURES"])

POINTS = "Quitar puntos repetidos:"
OTHER = "Otros controles:"
EXTREMES = "Maximos y Minimos:"
ENGINE = "Orv2_Geo.mOrdena"

# The middles of controls, in twips of the window. Eliminar comes where Calcular was.
CALCULAR, CANCELAR, PRECISION = (822, 2574), (2118, 2574), (288 + 1638, 336 + 870)
ELIMINAR = CALCULAR
IN_2D, IN_3D = (288 + 400, 336 + 390), (288 + 1420, 336 + 390)
FRAME, FOUND = (288, 336, 2268, 1116), (360, 1710, 2025, 285)
AVISO, FALLA, TICK, TRABAJA = (675, 1380), (1875, 1380), (250, 870), (675, 2730)
BAR = (150, 2220, 2400, 156)
ACEPTAR, SALIR = (7237, 1800), (6000, 1792)

# Three of the eight points are repeated in plan, within 0.001.
KEPT = [
    "points 5 precision 0.001", "x 0 10 20 30 40 50", "z 0 1 7 4 6 8",
    "codes  C1 C3 C4 C7 C8", "names  Peña1 Peña3 Peña4 Peña7 Peña8 Peña6 Peña7 Peña8",
    "layers 0 10 30 40 70 80", "numbers 0 1 2 2 3 2 3 4 5"]
UNTOUCHED = [
    "points 8 precision 0.001", "x 0 10 20 20 30 20 30.0005 40 50",
    "z 0 1 2 7 4 2 4 6 8", "codes  C1 C2 C3 C4 C5 C6 C7 C8",
    "names  Peña1 Peña2 Peña3 Peña4 Peña5 Peña6 Peña7 Peña8",
    "layers 0 10 20 30 40 50 60 70 80", "numbers 0 -1 -2 -3 -4 -5 -6 -7 -8"]
NONE_KEPT = [
    "points 0 precision 0.001", "x 0", "z 0", "codes ", UNTOUCHED[4], "layers 0", "numbers"]


class ScreenTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.display = screen.Display(DPI)
        PICTURES.mkdir(parents=True, exist_ok=True)

    @classmethod
    def tearDownClass(cls):
        cls.display.close()

    def host(self, *words, program=HOST, **changed):
        environment = {**self.display.environment, **changed}
        host = screen.Host(program, *words, environment=environment)
        self.addCleanup(host.kill)
        return host

    def show(self, what, title):
        """A host that shows `what`, and the window of that title."""
        host = self.host(what)
        return host, self.display.window(title)

    def keep_picture(self, window, name):
        path = PICTURES / f"{name}_{DPI}.png"
        window.picture(str(path))
        self.assertTrue(path.exists(), "no picture")

    def assert_wide(self, box, least):
        """A box has room for its text and its caption, told in twips."""
        self.assertGreater(box.place()[2], box.pixels(least))

    def expect(self, host, *lines):
        for line in lines:
            self.assertEqual(host.line(), line)

    def expect_end(self, host, title, *lines):
        """The host gets these lines, and the window is gone while it is at work."""
        self.expect(host, *lines, "waiting")
        self.display.wait_for_no(title)
        host.go_on()
        self.assertIsNone(host.line())
        self.assertEqual(host.end(), (0, ""))


class RepeatedPointsTest(ScreenTest):
    """The member opens its dialog; the host tells what it got back."""

    def wait_for_the_count(self, window):
        screen.until("the count", lambda: b"\x00\xff\xff" in window.colours(*FOUND))

    def expect_way(self, way, answer, what="points"):
        """What the person does in the window, and what the host then has."""
        host, window = self.show(what, POINTS)
        way(window)
        self.expect_end(host, POINTS, *answer)

    def compute(self, window):
        window.click(*CALCULAR)
        self.wait_for_the_count(window)
        time.sleep(0.5)  # the next click is not a double click's second

    def test_is_a_fixed_tool_window_in_the_middle_of_the_screen(self):
        host, window = self.show("points", POINTS)
        left, top, width, height = window.place()
        self.assertEqual((width, height), (window.pixels(2865), window.pixels(3000)))
        hints = window.property("WM_NORMAL_HINTS")
        for bound in ("minimum", "maximum"):
            self.assertIn("{} size: {} by {}".format(bound, *window.outside()[2:]), hints)
        self.assertIn("_NET_WM_WINDOW_TYPE_UTILITY", window.property("_NET_WM_WINDOW_TYPE"))
        state = window.property("_NET_WM_STATE")
        self.assertIn("_NET_WM_STATE_MODAL", state)
        self.assertIn("_NET_WM_STATE_SKIP_TASKBAR", state)
        self.assertEqual(window.frame()[2], min(window.frame()[0], 1))  # no bar of the manager's
        self.assertAlmostEqual(left + width / 2, 800, delta=30)
        self.assertAlmostEqual(top + height / 2, 600, delta=40)  # the title bar is above
        self.keep_picture(window, "points_choosing")
        window.press("Escape")
        self.expect_end(host, POINTS, *UNTOUCHED)

    def test_calcular_then_eliminar_keeps_one_point_a_spot(self):
        host, window = self.show("points", POINTS)
        self.compute(window)
        self.keep_picture(window, "points_confirming")
        window.click(*ELIMINAR)
        self.expect_end(host, POINTS, *KEPT)

    CANCELLED = {
        "Cancelar at once": lambda self, window: window.click(*CANCELAR),
        "Cancelar after Calcular": lambda self, window: (
            self.compute(window), window.click(*CANCELAR)),
        "Escape after Calcular": lambda self, window: (
            self.compute(window), window.press("Escape")),
    }

    def test_cancelling_changes_nothing_but_a_precision_of_zero(self):
        for name, way in self.CANCELLED.items():
            with self.subTest(name):
                self.expect_way(lambda window: way(self, window), UNTOUCHED)

    def test_the_title_bars_box_is_no_cancel_no_point_is_left(self):
        self.expect_way(lambda window: window.press_title_bar_box(), NONE_KEPT)

    def test_the_window_managers_key_is_no_cancel_either(self):
        self.expect_way(lambda window: window.press("alt+F4"), NONE_KEPT)

    def test_the_title_bars_box_after_calcular_applies(self):
        def way(window):
            self.compute(window)
            window.press_title_bar_box()
        self.expect_way(way, KEPT)

    def test_enter_presses_calcular(self):
        def way(window):
            window.press("Return")
            self.wait_for_the_count(window)
            window.click(*ELIMINAR)
        self.expect_way(way, KEPT)

    def test_enter_in_the_text_box_presses_calcular_too(self):
        def way(window):
            window.click(*PRECISION)
            window.press("Return")
            self.wait_for_the_count(window)
            window.click(*ELIMINAR)
        self.expect_way(way, KEPT)

    def test_a_decimal_comma_ends_the_tolerance_and_the_default_is_in_force(self):
        host, window = self.show("points", POINTS)
        window.click(*PRECISION)
        window.press("ctrl+a")
        window.type("0,001")
        self.keep_picture(window, "points_typed")
        self.compute(window)
        window.click(*ELIMINAR)
        # 4 and 6 are 0.0005 apart, the default is 0.0002
        self.expect(host, "points 6 precision 0.001", "x 0 10 20 30 30.0005 40 50")
        self.expect_end(host, POINTS, "z 0 1 7 4 4 6 8", "codes  C1 C3 C4 C6 C7 C8",
                        "names  Peña1 Peña3 Peña4 Peña6 Peña7 Peña8 Peña7 Peña8",
                        "layers 0 10 30 40 60 70 80", "numbers 0 1 2 2 3 2 4 5 6")

    def test_enter_after_calcular_presses_the_button_in_focus(self):
        ways = {"Cancelar at first": ((), UNTOUCHED), "Eliminar behind it": (("Tab",), KEPT)}
        for name, (keys, answer) in ways.items():
            with self.subTest(name):
                def way(window, keys=keys):
                    window.press("Return")
                    self.wait_for_the_count(window)
                    window.press(*keys, "Return")
                self.expect_way(way, answer)

    # 5 repeats 2, but 3 stands between them in X order; 6 repeats 4
    IN_SPACE = [
        "points 7 precision 0.001", "x 0 10 20 20 30 20 40 50", "z 0 1 2 7 4 2 6 8",
        "codes  C1 C2 C3 C4 C5 C7 C8",
        "names  Peña1 Peña2 Peña3 Peña4 Peña5 Peña7 Peña8 Peña8",
        "layers 0 10 20 30 40 50 70 80", "numbers 0 1 2 3 4 5 4 6 7"]

    def test_3d_by_a_click_compares_the_elevations(self):
        def way(window):
            window.click(*IN_3D)
            self.keep_picture(window, "points_3d")
            self.compute(window)
            window.click(*ELIMINAR)
        self.expect_way(way, self.IN_SPACE)

    def test_an_arrow_key_chooses_the_other_option(self):
        for keys, answer in ((["Left"], KEPT), (["Left", "Right"], self.IN_SPACE)):
            with self.subTest(keys):
                def way(window, keys=keys):
                    window.click(*IN_3D)
                    window.press(*keys)
                    self.compute(window)
                    window.click(*ELIMINAR)
                self.expect_way(way, answer)

    def test_what_was_computed_with_is_frozen(self):
        host, window = self.show("points", POINTS)
        self.compute(window)
        frame = window.part(*FRAME)
        before = frame()
        window.click(*PRECISION)
        window.type("9")
        window.click(*IN_3D)
        window.point_elsewhere()
        self.assertEqual(frame(), before)
        window.click(*ELIMINAR)
        self.expect_end(host, POINTS, *KEPT)

    def test_after_a_failure_of_the_engine_only_cancelar_acts(self):
        host, window = self.show("short arrays", POINTS)
        window.click(*CALCULAR)
        box = self.display.window(ENGINE)
        self.keep_picture(box, "points_failed")
        self.assert_wide(box, 4000)  # the text is in two lines
        box.press("Return")
        self.display.wait_for_no(ENGINE)
        window = self.display.window(POINTS)
        self.keep_picture(window, "points_stuck")
        window.click(*CALCULAR)
        window.click(*PRECISION)
        window.click(*IN_3D)
        self.assertTrue(host.nothing_said())
        self.assertEqual(self.display.windows(POINTS), [window.identity])
        window.click(*CANCELAR)
        short = [line if line[0] != "z" else "z 0 1 2 7" for line in UNTOUCHED]
        self.expect_end(host, POINTS, *short)

    def test_a_failure_of_calcular_itself_reaches_the_host_with_nothing_changed(self):
        def way(window):
            window.click(*PRECISION)
            window.press("ctrl+a")
            window.type("1e999")
            window.press("Return")
        self.expect_way(way, ["failure 6", *UNTOUCHED])

    def freeze_computing(self, host, window):
        """Lets the host run a little at a time until Calcular has lost its black."""
        window.point_elsewhere()
        part = window.part(CALCULAR[0] - 300, CALCULAR[1] - 90, 600, 180)
        darkest = lambda: min(max(pixel) for pixel in part())
        self.assertLess(darkest(), 90)
        host.freeze()
        window.press("Return")

        def computing():
            host.thaw()
            time.sleep(0.003)
            host.freeze()
            return darkest() > 110
        screen.until("Calcular disabled", computing, pause=0.003)

    def test_a_click_on_cancelar_waits_for_a_large_computation(self):
        host, window = self.show("many points", POINTS)
        self.freeze_computing(host, window)
        self.keep_picture(window, "points_computing")
        window.click(*CANCELAR)
        self.assertTrue(host.nothing_said())
        host.thaw()
        self.expect_end(host, POINTS, "points 1000000 precision 0.001")

    def test_a_double_click_on_calcular_is_no_click_on_eliminar(self):
        for clicks in (2, 3):
            with self.subTest(clicks):
                def way(window, clicks=clicks):
                    window.click(*CALCULAR, times=clicks)
                    self.wait_for_the_count(window)
                    window.press("Escape")
                self.expect_way(way, UNTOUCHED)

    def test_clicks_made_before_eliminar_was_there_are_none_on_it(self):
        host, window = self.show("many points", POINTS)
        self.freeze_computing(host, window)
        for _ in range(2):
            window.click(*ELIMINAR)
            time.sleep(0.6)  # no double click
        host.thaw()
        self.wait_for_the_count(window)
        window.press("Escape")
        self.expect_end(host, POINTS, "points 1000000 precision 0.001")

    def test_a_large_list_is_halved(self):
        def way(window):
            self.compute(window)
            self.keep_picture(window, "points_many")
            window.click(*ELIMINAR)
        self.expect_way(way, ["points 500001 precision 0.001"], what="many points")


class TitleBarTest(ScreenTest):
    def title(self, window):
        """The columns of the title bar, left of its box, that have letters in them."""
        _, _, width, _ = window.place()
        columns = round(width / window.pixels(15)) - window.TITLE_BAR
        rows = window.part(15, -15 * 20, 15 * columns, 15 * 18)()
        across = window.pixels(15 * columns)
        letters = [max(pixel) - min(pixel) < 60 and min(pixel) > 180 for pixel in rows]
        return [x for x in range(across) if any(letters[x::across])], across

    def test_the_whole_title_stands_beside_the_box(self):
        host, window = self.show("points", POINTS)
        columns, across = self.title(window)
        self.assertGreater(len(columns), across / 3)  # letters, not a bare bar
        # An ellipsis would reach up to the box; behind the last letter there is room.
        self.assertLess(columns[-1], across - window.pixels(15 * 8))
        window.press("Escape")
        self.expect_end(host, POINTS, *UNTOUCHED)

    def test_the_bar_moves_the_window(self):
        host, window = self.show("points", POINTS)
        left, top, _, _ = window.place()
        self.display.run("xdotool", "mousemove", str(left + 20), str(top - 8), "mousedown", "1")

        def follows():
            """Whether the window goes as far as the pointer, once the manager has taken it."""
            places = []
            for way in (0, 100):
                self.display.run("xdotool", "mousemove", str(left + 20 + way), str(top - 8 + way))
                time.sleep(0.1)
                places.append(window.place()[:2])
            (x, y), (to_x, to_y) = places
            return (to_x - x, to_y - y) == (100, 100)
        screen.until("the window follows the pointer", follows)
        self.display.run("xdotool", "mouseup", "1")
        window.press("Escape")
        self.expect_end(host, POINTS, *UNTOUCHED)


class MinimiseTest(ScreenTest):
    """Whatever the window manager offers, a dialog that is waited for stays."""

    def is_up(self, window):
        return ("Normal" in window.property("WM_STATE") and
                "IsViewable" in self.display.run("xwininfo", "-id", window.identity))

    def minimise(self, window):
        """Asks the window manager, as its box or its menu would."""
        self.display.run("xdotool", "windowminimize", window.identity)
        time.sleep(0.3)
        screen.until("up again", lambda: self.is_up(window))

    def test_a_minimise_is_undone(self):
        for what, title, answer in (("points", POINTS, UNTOUCHED),
                                    ("extremes", EXTREMES, [ExtremesTest.FOUND])):
            with self.subTest(what):
                host, window = self.show(what, title)
                self.minimise(window)
                self.minimise(window)
                self.display.window(title).press("Escape")
                self.expect_end(host, title, *answer)

    def test_of_a_box_too(self):
        host, window = self.show("box", "Orv2_Geo")
        self.minimise(window)
        self.display.window("Orv2_Geo").press("Return")
        self.expect_end(host, "Orv2_Geo", "same locale")


class OldManagerTest(MinimiseTest):
    """Under a window manager that reads no hints but the oldest."""

    @classmethod
    def setUpClass(cls):
        cls.display = screen.Display(DPI, "twm")

    def show(self, what, title):
        host = self.host(what)
        identity = screen.until(f"the window {title!r}", lambda: self.display.windows(title))[0]
        window = screen.Window(self.display, identity)
        screen.until("up", lambda: self.is_up(window))
        return host, window

    def minimise(self, window):
        super().minimise(window)
        self.keep_picture(window, "old_manager")

    def test_a_minimise_is_undone(self):
        host, window = self.show("points", POINTS)
        self.minimise(window)
        window.click(*CANCELAR)
        self.expect_end(host, POINTS, *UNTOUCHED)

    def test_of_a_box_too(self):
        host, window = self.show("box", "Orv2_Geo")
        self.minimise(window)
        self.display.run("xdotool", "windowfocus", "--sync", window.identity)
        window.press("Return")
        self.expect_end(host, "Orv2_Geo", "same locale")


class FormTest(ScreenTest):
    def blue(self, window):
        """How many pixels of the bar are neither grey nor nearly so."""
        return sum(max(pixel) - min(pixel) > 60 for pixel in window.colours(*BAR))

    def test_a_bar_moves_with_every_step_of_a_routine(self):
        host, window = self.show("other", OTHER)
        window.press("Return")
        seen = []
        for step in range(4):
            self.expect(host, "waiting")
            seen.append(self.blue(window))
            self.keep_picture(window, f"other_step_{step}")
            host.go_on()
        self.assertEqual(seen, sorted(set(seen)), "the bar moves with every step")
        area = len(window.colours(*BAR))
        self.assertLess(seen[0], area * 0.05)
        self.assertAlmostEqual(seen[1] / seen[3], 10 / 30.5, delta=0.08)
        self.assertGreater(seen[3], area * 0.6)
        window.press_title_bar_box()
        self.expect_end(host, OTHER, "not open")

    def test_a_click_while_a_routine_is_at_work_waits_for_its_end(self):
        host, window = self.show("other", OTHER)
        window.press("Return")
        self.expect(host, "waiting")
        window.click(*TICK)
        for _ in range(3):
            self.assertTrue(host.nothing_said())
            host.go_on()
            self.expect(host, "waiting")
        host.go_on()
        self.expect(host, "tick 1")
        window.press_title_bar_box()
        self.expect_end(host, OTHER, "not open")

    def test_the_pointer_tells_that_a_routine_is_at_work(self):
        host, window = self.show("other", OTHER)
        pointer = screen.Pointer(self.display)
        self.addCleanup(pointer.close)
        window.point_at(1350, 2730)
        at_rest = pointer.picture()
        window.press("Return")
        self.expect(host, "waiting")
        screen.until("a pointer at work", lambda: pointer.picture() != at_rest)
        for step in range(4):
            host.go_on()
            if step < 3:
                self.expect(host, "waiting")
        screen.until("the usual pointer", lambda: pointer.picture() == at_rest)
        window.click(*AVISO)
        box = self.display.window("Orv2_Geo")
        box.point_at(300, 300)
        screen.until("the usual pointer on a box", lambda: pointer.picture() == at_rest)
        box.press("Return")
        self.expect(host, "warned")
        window.press_title_bar_box()
        self.expect_end(host, OTHER, "not open")

    def dots(self, window, middle, width, height):
        """Changes from light to dark along the upper edge inside of a button."""
        left, top = middle[0] - width / 2 + 150, middle[1] - height / 2 + 45
        line = [max(pixel) < 110 for pixel in window.colours(left, top, width - 300, 15)]
        line = line[:window.pixels(width - 300)]
        return sum(a != b for a, b in zip(line, line[1:]))

    def test_the_focus_is_seen_from_the_start_and_is_not_the_default_buttons_frame(self):
        host, window = self.show("points", POINTS)
        size = (972, 348)
        self.assertGreater(self.dots(window, CANCELAR, *size), 10)
        self.assertEqual(self.dots(window, CALCULAR, *size), 0)  # the default button
        window.press("Tab")
        screen.until("on Calcular", lambda: self.dots(window, CALCULAR, *size) > 10)
        self.assertEqual(self.dots(window, CANCELAR, *size), 0)
        window.press("Escape")
        self.expect_end(host, POINTS, *UNTOUCHED)

    def test_tab_goes_by_tab_index_and_the_space_bar_presses(self):
        host, window = self.show("other", OTHER)
        self.keep_picture(window, "other_start")
        window.press("Tab", "Tab", "space")  # from Falla over Aviso to the tick
        self.expect(host, "tick 1")
        window.press("shift+Tab", "space")  # back to Aviso
        box = self.display.window("Orv2_Geo")
        box.press("Return")
        self.expect(host, "warned")
        self.display.window(OTHER).press_title_bar_box()
        self.expect_end(host, OTHER, "not open")

    def test_check_boxes_and_labels_take_clicks(self):
        host, window = self.show("other", OTHER)
        window.click(*TICK)
        self.expect(host, "tick 1")
        self.keep_picture(window, "other_ticked")
        window.click(*TICK)
        self.expect(host, "tick 0")
        window.click(600, 300)
        self.expect(host, "lblLargo")
        window.press("Escape")  # there is no cancel button
        window.press_title_bar_box()
        self.expect_end(host, OTHER, "not open")

    def test_a_box_over_a_form_goes_first(self):
        host, window = self.show("other", OTHER)
        window.click(*AVISO)
        box = self.display.window("Orv2_Geo")
        self.keep_picture(box, "box_over_form")
        own, over = window.outside(), box.outside()
        self.assertAlmostEqual(own[0] + own[2] / 2, over[0] + over[2] / 2, delta=30)
        self.assertAlmostEqual(own[1] + own[3] / 2, over[1] + over[3] / 2, delta=box.pixels(900))
        window.click(*TRABAJA)  # out of reach below the box
        self.assertTrue(host.nothing_said())
        self.display.run("xdotool", "windowactivate", box.identity)
        self.display.window("Orv2_Geo").press("Return")
        self.expect(host, "warned")
        self.display.window(OTHER).click(*FALLA)
        self.expect_end(host, OTHER, "failure 11", "not open")


class ExtremesTest(ScreenTest):
    FOUND = "found 444980.125 445210.376 4479998.75 4480412.5 -12.5 688.214"
    WAYS_OUT = {
        "Aceptar": lambda window: window.click(*ACEPTAR),
        "Cancelar": lambda window: window.click(*SALIR),
        "Escape": lambda window: window.press("Escape"),
        "Enter on the button in focus": lambda window: window.press("Return"),
        "Enter on the grid": lambda window: window.press("Tab", "Return"),
        "Enter on Cancelar": lambda window: window.press("shift+Tab", "Return"),
        "the title bar's box": lambda window: window.press_title_bar_box(),
    }

    def test_every_way_out(self):
        for name, leave in self.WAYS_OUT.items():
            with self.subTest(name):
                host, window = self.show("extremes", EXTREMES)
                self.keep_picture(window, "extremes")
                leave(window)
                self.expect_end(host, EXTREMES, self.FOUND)

    def test_the_outdated_member_says_so_and_shows_the_short_layout(self):
        host, box = self.show("outdated extremes", "Orv2_Geo")
        self.keep_picture(box, "extremes_outdated")
        self.assert_wide(box, 2250)  # the caption's
        self.assertEqual(self.display.windows(EXTREMES), [])
        box.press("Return")
        window = self.display.window(EXTREMES)
        self.keep_picture(window, "extremes_short")
        self.assertEqual(window.place()[2:], (window.pixels(7935), window.pixels(2175)))
        window.click(2000, 700)  # nothing in the grid takes it
        window.type("9")
        window.press("Escape")
        self.expect_end(host, EXTREMES, self.FOUND)


    # Middles of cells.
    FIRST_CELL, SECOND_ROW_POINT = (1980, 510), (3270, 780)

    def edges(self, window):
        """Where the lines between the columns are, in pixels from the grid's left."""
        left, top, width = 45, 90 + 15 * 20, 7770
        across = window.pixels(width)
        line = window.colours(left, top, width, 15)[:across]
        dark = [min(pixel) < 235 for pixel in line]
        return [x for x in range(1, across) if dark[x] and not dark[x - 1]], across

    def test_columns_grow_into_the_room_and_show_16_characters(self):
        host, window = self.show("sixteen characters", EXTREMES)
        window.point_elsewhere()
        edges, across = self.edges(window)
        self.keep_picture(window, "extremes_sixteen")
        self.assertEqual(len(edges), 6)
        self.assertGreater(edges[-1], across - window.pixels(15 * 4))
        for column in (1, 3, 5):
            self.assertGreater(edges[column] - edges[column - 1], window.pixels(1650))
        window.press("Return")
        self.expect_end(host, EXTREMES, "returned")

    def test_selected_cells_are_copied_with_tabs(self):
        host, window = self.show("extremes", EXTREMES)
        window.click(*self.FIRST_CELL)
        self.display.run("xdotool", "keydown", "shift")
        window.click(*self.SECOND_ROW_POINT)
        self.display.run("xdotool", "keyup", "shift")
        window.press("ctrl+c")
        screen.until("the cells", lambda: (
            self.display.clipboard() == "444980.125\t88\n4479998.750\t1205"))
        self.keep_picture(window, "extremes_selected")
        window.press("ctrl+a", "ctrl+c")
        screen.until("all numbers", lambda: self.display.clipboard() == (
            "444980.125\t88\t445210.376\t1204\t230.251\n"
            "4479998.750\t1205\t4480412.500\t17\t413.750\n"
            "-12.500\t40\t688.214\t3\t700.714"))
        window.press("Return")
        self.expect_end(host, EXTREMES, self.FOUND)

    def test_a_tip_comes_only_where_a_text_is_cut(self):
        host, window = self.show("extremes", EXTREMES)
        window.point_at(*self.FIRST_CELL)
        time.sleep(1.5)  # a tip comes after 0.7
        self.assertEqual(self.display.tips(), [])
        window.press("Return")
        self.expect_end(host, EXTREMES, self.FOUND)
        host, window = self.show("longer than the room", EXTREMES)
        window.point_at(1950, 480)
        window.point_at(*self.FIRST_CELL)
        screen.until("a tip", self.display.tips)
        window.press("Return")
        self.expect_end(host, EXTREMES, "returned")


class BoxTest(ScreenTest):
    def lines(self, window):
        """The widths of the lines of text, right of the icon and above the button."""
        left, _, width, height = window.place()
        scale = 15 * 96 / DPI
        start, end = 15 * 56, height * scale - 15 * 48
        pixels = window.colours(start, 0, width * scale - start, end)
        across = window.pixels(width * scale - start)
        rows = [pixels[i:i + across] for i in range(0, len(pixels), across)]
        lines, before = [], False
        for row in rows:
            dark = [x for x, pixel in enumerate(row) if max(pixel) < 110]
            if dark:
                seen = set(dark)
                lines = lines[:-1] + [lines[-1] | seen] if before else lines + [seen]
            before = bool(dark)
        # The dots and strokes above letters may stand apart: they are no lines.
        return [max(one) - min(one) for one in lines if len(one) > across / 8]

    def test_the_lines_of_a_text_are_of_nearly_one_length(self):
        host, window = self.show("failure", "Orv2_Geo.cgeo_Matrices")
        window.point_elsewhere()
        lines = self.lines(window)
        self.assertEqual(len(lines), 2)
        self.assertGreater(min(lines), 0.7 * max(lines))
        window.press("Return")
        self.expect_end(host, "Orv2_Geo.cgeo_Matrices", "order 0 1 2")

    def test_letters_are_as_small_as_a_forms(self):
        host, window = self.show("box", "Orv2_Geo")
        window.point_elsewhere()
        self.assertEqual(len(self.lines(window)), 1)
        self.assertLess(self.lines(window)[0], window.pixels(15 * 185))
        window.press("Return")
        self.expect_end(host, "Orv2_Geo", "same locale")

    def test_the_icon_is_drawn_for_the_screen_and_not_enlarged(self):
        host, window = self.show("failure", "Orv2_Geo.cgeo_Matrices")
        across = window.pixels(15 * 56)
        pixels = window.colours(0, 0, 15 * 56, 15 * 56)
        rows = [pixels[i:i + across] for i in range(0, len(pixels), across)]
        red = [[x for x, p in enumerate(row) if p[0] > 150 and p[1] < 90] for row in rows]
        self.assertGreater(sum(bool(row) for row in red), window.pixels(15 * 24))
        # Where the white cross in it begins, row by row: one that was enlarged goes in
        # steps of two pixels.
        inside = [pixels[row[0]:row[-1]] for row, pixels in zip(red, rows) if row]
        begins = [next((row[0] + x for x, p in enumerate(pixels) if p[1] > 128), None)
                  for row, pixels in zip(filter(None, red), inside)]
        self.assertEqual({x % 2 for x in begins if x is not None}, {0, 1})
        window.press("Return")
        self.expect_end(host, "Orv2_Geo.cgeo_Matrices", "order 0 1 2")

    def red(self, window):
        _, _, width, height = window.place()
        scale = 15 * 96 / DPI
        pixels = window.colours(0, 0, width * scale, height * scale)
        return sum(p[0] > 150 and p[1] < 90 and p[2] < 90 for p in pixels)

    def test_a_plain_box_has_the_librarys_name_and_goes_with_enter(self):
        host, window = self.show("box", "Orv2_Geo")
        self.assertEqual(self.red(window), 0)
        self.keep_picture(window, "box_plain")
        window.press("Return")
        self.expect_end(host, "Orv2_Geo", "same locale")

    def test_a_box_of_a_failure_has_its_source_and_the_icon(self):
        host, window = self.show("failure", "Orv2_Geo.cgeo_Matrices")
        screen.until("a red icon", lambda: self.red(window) > 50)
        self.keep_picture(window, "box_critical")
        self.assert_wide(window, 4000)
        window.press("Return")
        self.expect_end(host, "Orv2_Geo.cgeo_Matrices", "order 0 1 2")

    def test_another_thread_writes_to_the_console(self):
        host, window = self.show("thread", "Orv2_Geo")
        window.press("Return")
        self.expect(host, "returned", "waiting")
        host.go_on()
        self.assertEqual(host.end(), (0, "Orv2_Geo: en otro hilo\n"))


class WithoutScreenTest(ScreenTest):
    CASES = {
        "no display is named": {"DISPLAY": ""},
        "the display cannot be opened": {"DISPLAY": ":9999"},
        "nor the other one": {"DISPLAY": "", "WAYLAND_DISPLAY": "wayland-none"},
        "nobody could see it": {"QT_QPA_PLATFORM": "offscreen"},
        "nor here": {"QT_QPA_PLATFORM": "minimal"},
        "a platform that does not exist": {"QT_QPA_PLATFORM": "papel"},
    }

    def test_boxes_and_forms_go_to_the_console(self):
        for name, changed in self.CASES.items():
            with self.subTest(name):
                host = self.host("failure", **changed)
                self.expect(host, "order 0 1 2", "waiting")
                host.go_on()
                told = ("Orv2_Geo.cgeo_Matrices: Ordena en X el Indice una Matriz1 - Error nº  9:"
                        "El subíndice está fuera del intervalo\n")
                self.assertEqual(host.end(), (0, told))
                host = self.host("points", **changed)
                self.expect(host, *UNTOUCHED, "waiting")
                host.go_on()
                told = f"Orv2_Geo: no screen is available for \"{POINTS}\"; cancelled\n"
                self.assertEqual(host.end(), (0, told))


class PythonHostTest(ScreenTest):
    def test_the_dialogs_stand_over_the_window_that_the_host_names(self):
        other = self.host("box")  # a window of any program
        owner = self.display.window("Orv2_Geo")
        folder = pathlib.Path(__file__).parent
        host = self.host(str(folder / "python_host.py"), owner.identity, program=sys.executable,
                         **json.loads(os.environ["ORV2_PYTHON_ENVIRONMENT"]))
        for title, has_owner in ((POINTS, True), (EXTREMES, False)):
            window = self.display.window(title)
            self.assertEqual(hex(int(owner.identity)) in window.property("WM_TRANSIENT_FOR"),
                             has_owner)
            window.press("Escape")
            host.line()
        self.assertEqual(host.end(), (0, ""))
        other.kill()

    def test_a_person_answers_the_dialogs_of_a_python_host(self):
        folder = pathlib.Path(__file__).parent
        host = self.host(str(folder / "python_host.py"), program=sys.executable,
                         **json.loads(os.environ["ORV2_PYTHON_ENVIRONMENT"]))
        window = self.display.window(POINTS)
        window.click(*CALCULAR)
        screen.until("the count", lambda: b"\x00\xff\xff" in window.colours(*FOUND))
        time.sleep(0.5)  # the next click is not a double click's second
        window.click(*ELIMINAR)
        self.expect(host, "2 [0.0, 10.0, 20.0] ['', 'uno', 'tres'] [0, 1, 1, 2] 0.001")
        self.display.window(EXTREMES).press("Return")
        self.expect(host, "20.0 10.0")
        self.assertEqual(host.end(), (0, ""))


class OtherHostTest(ScreenTest):
    """A host that is no Qt application has windows that Qt knows nothing of."""

    FIRST, SECOND = "Programa de dibujo", "Otra ventana"
    OWNERS = {"found": SECOND, "named": FIRST, "inside": FIRST, "gone": SECOND, "wrong": SECOND}

    def host_window(self, title):
        return screen.Window(self.display, self.display.windows(title)[0])

    def assert_over(self, window, owner, identity):
        """It belongs to its owner and stays above when the host's windows are raised."""
        self.assertIn(hex(int(owner.identity)), window.property("WM_TRANSIENT_FOR"))
        self.assert_above(owner, identity)

    def assert_above(self, owner, identity):
        for title in (self.FIRST, self.SECOND):
            self.display.run("xdotool", "windowactivate", self.host_window(title).identity)
        self.display.run("xdotool", "windowraise", owner.identity)
        time.sleep(0.2)
        told = self.display.run("xprop", "-root", "_NET_CLIENT_LIST_STACKING")
        order = [int(one, 16) for one in told.split("#")[1].split(",")]
        self.assertGreater(order.index(int(identity)), order.index(int(owner.identity)))

    def assert_middle(self, window, left, top, width, height):
        own = window.outside()
        self.assertAlmostEqual(own[0] + own[2] / 2, left + width / 2, delta=30)
        self.assertAlmostEqual(own[1] + own[3] / 2, top + height / 2, delta=40)

    def test_boxes_and_forms_stand_over_the_hosts_window(self):
        for what, title in self.OWNERS.items():
            with self.subTest(what):
                host = self.host(what, program=X_HOST)
                box = self.display.window("Orv2_Geo")
                owner = self.host_window(title)
                self.assert_over(box, owner, box.identity)
                self.display.run("xdotool", "windowactivate", "--sync", box.identity)
                box.press("Return")
                form = self.display.window(POINTS)
                self.keep_picture(form, "over_x_host")
                self.assert_middle(form, *owner.place())
                self.assert_over(form, owner, form.identity)
                form.click(*CANCELAR)
                extremes = self.display.window(EXTREMES)
                self.assert_middle(extremes, 0, 0, 1600, 1200)
                self.assertNotIn(hex(int(owner.identity)), extremes.property("WM_TRANSIENT_FOR"))
                self.assert_above(owner, extremes.identity)
                extremes.click(*ACEPTAR)
                self.expect(host, "returned")
                self.assertEqual(host.end(), (0, ""))


class QtHostTest(ScreenTest):
    def menu_word(self, what, language):
        host = self.host(what, program=QT_HOST, LC_ALL=language)
        self.display.window("Orv2_Geo").press("Return")
        if what == "widgets":
            self.display.window("Sobre su dueña:").press("Return")
            self.expect(host, "returned")
        word = host.line()
        self.assertEqual(host.end(), (0, ""))
        return word

    def test_qts_own_words_are_in_the_users_language_unless_the_application_is_the_hosts(self):
        self.assertEqual(self.menu_word("library", "es_ES.UTF-8"), "Seleccionar todo")
        self.assertEqual(self.menu_word("library", "C.UTF-8"), "Select All")
        self.assertEqual(self.menu_word("widgets", "es_ES.UTF-8"), "Select All")

    def test_forms_stand_over_the_hosts_window(self):
        host = self.host("widgets", program=QT_HOST)
        owner = self.display.windows
        self.display.window("Orv2_Geo").press("Return")
        window = self.display.window("Sobre su dueña:")
        left, top, width, height = screen.Window(
            self.display, owner("Programa anfitrión")[0]).place()
        own = window.place()
        self.assertAlmostEqual(own[0] + own[2] / 2, left + width / 2, delta=30)
        self.assertAlmostEqual(own[1] + own[3] / 2, top + height / 2, delta=40)
        self.keep_picture(window, "over_host")
        window.press("Return")
        self.expect(host, "returned")
        self.assertEqual(host.end(), (0, ""))

    def test_an_application_without_widgets_gets_the_console(self):
        host = self.host("core", program=QT_HOST)
        self.expect(host, "returned")
        status, told = host.end()
        self.assertEqual(status, 0)
        self.assertIn("Orv2_Geo: sobre la ventana\n", told)
        self.assertIn("no screen is available", told)


if __name__ == "__main__":
    unittest.main()
