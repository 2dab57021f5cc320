"""Boxes and forms pressed by a person, and what came back to the host.

Environment: ORV2_HOST and ORV2_QT_HOST, the host programs; ORV2_DPI; and
ORV2_PICTURES, the folder for a picture of every state.
"""
import os
import pathlib
import unittest

import screen

HOST = os.environ["ORV2_HOST"]
QT_HOST = os.environ["ORV2_QT_HOST"]
DPI = int(os.environ["ORV2_DPI"])
PICTURES = pathlib.Path(os.environ["ORV2_PICTURES"])

SEARCH = "Quitar puntos repetidos:"
OTHER = "Otros controles:"
EXTREMES = "Maximos y Minimos:"

# The middles of controls, in twips of the window.
CALCULAR, CANCELAR, PRECISION = (822, 2574), (2118, 2574), (288 + 1638, 336 + 870)
IN_2D, IN_3D = (288 + 400, 336 + 390), (288 + 1420, 336 + 390)
BAR = (144, 1536, 2556, 156)
FRAME = (288, 336, 2268, 1116)
AVISO, FALLA, TICK = (675, 1380), (1875, 1380), (250, 870)
ACEPTAR, SALIR = (7237, 1800), (6000, 1792)


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


class FormTest(ScreenTest):
    def test_is_a_fixed_tool_window_in_the_middle_of_the_screen(self):
        host, window = self.show("search", SEARCH)
        left, top, width, height = window.place()
        self.assertEqual((width, height), (window.pixels(2865), window.pixels(3000)))
        hints = window.property("WM_NORMAL_HINTS")
        for bound in ("minimum", "maximum"):
            self.assertIn(f"{bound} size: {width} by {height}", hints)
        self.assertIn("_NET_WM_WINDOW_TYPE_UTILITY", window.property("_NET_WM_WINDOW_TYPE"))
        self.assertIn("_NET_WM_STATE_MODAL", window.property("_NET_WM_STATE"))
        functions = int(window.property("_MOTIF_WM_HINTS").split(",")[1], 16)
        move, minimise, maximise, close = 4, 8, 16, 32
        self.assertEqual(functions & (move | close), move | close)
        self.assertEqual(functions & (minimise | maximise), 0)
        self.assertAlmostEqual(left + width / 2, 800, delta=30)
        self.assertAlmostEqual(top + height / 2, 600, delta=40)  # the title bar is above
        self.keep_picture(window, "search_start")
        window.press("Escape")
        self.expect_end(host, SEARCH, "cmdCancelar", "text 0.001", "2D")

    def test_clicks_reach_the_buttons(self):
        host, window = self.show("search", SEARCH)
        window.click(*CANCELAR)
        self.expect_end(host, SEARCH, "cmdCancelar", "text 0.001", "2D")

    def test_the_title_bars_box_closes_and_is_no_cancel(self):
        host, window = self.show("search", SEARCH)
        window.press_title_bar_box()
        self.expect_end(host, SEARCH, "text 0.001", "2D")

    def test_the_window_managers_key_closes_too(self):
        host, window = self.show("search", SEARCH)
        window.press("alt+F4")
        self.expect_end(host, SEARCH, "text 0.001", "2D")

    def test_text_and_options_are_the_persons(self):
        host, window = self.show("search", SEARCH)
        window.click(*PRECISION)
        window.press("ctrl+a")
        window.type("0,25 m")
        window.click(*IN_3D)
        self.keep_picture(window, "search_typed")
        window.press_title_bar_box()
        self.expect_end(host, SEARCH, "text 0,25 m", "3D")

    def test_an_arrow_key_chooses_the_other_option(self):
        host, window = self.show("search", SEARCH)
        window.click(*IN_3D)
        window.press("Left")
        window.press("Right")
        window.press("Left")
        window.press_title_bar_box()
        self.expect_end(host, SEARCH, "text 0.001", "2D")

    def blue(self, window, part):
        """How many pixels are neither grey nor nearly so."""
        return sum(max(pixel) - min(pixel) > 60 for pixel in window.colours(*part))

    def search(self, host, window):
        """From the routine's start to its end; its bar moves all the while."""
        self.expect(host, "cmdCalcular")
        seen = []
        for step in range(4):
            self.expect(host, "waiting")
            seen.append(self.blue(window, BAR))
            self.keep_picture(window, f"search_step_{step}")
            host.go_on()
        self.expect(host, "searched")
        self.assertEqual(seen, sorted(set(seen)), "the bar moves with every step")
        area = len(window.colours(*BAR))
        self.assertLess(seen[0], area * 0.05)
        self.assertAlmostEqual(seen[1] / seen[3], 10 / 30.5, delta=0.08)
        self.assertGreater(seen[3], area * 0.6)

    def test_enter_presses_the_default_button_and_the_bar_moves(self):
        host, window = self.show("search", SEARCH)
        window.press("Return")
        self.search(host, window)
        screen.until("the count on its ground", lambda: b"\x00\xff\xff" in window.colours(
            360, 1710, 2025, 285))
        self.keep_picture(window, "search_found")
        window.click(*CALCULAR)  # now another button's place
        self.expect_end(host, SEARCH, "cmdEliminar", "text 0.001", "2D")

    def test_a_frozen_frame_takes_nothing(self):
        host, window = self.show("search", SEARCH)
        window.click(*CALCULAR)
        self.search(host, window)
        window.click(*PRECISION)
        window.type("9")
        window.click(*IN_3D)
        window.press("Escape")
        self.expect_end(host, SEARCH, "cmdCancelar", "text 0.001", "2D")

    def test_a_click_while_a_routine_is_at_work_waits_for_its_end(self):
        host, window = self.show("search", SEARCH)
        window.press("Return")
        self.expect(host, "cmdCalcular", "waiting")
        window.click(*CANCELAR)
        self.assertTrue(host.nothing_said())
        for _ in range(3):
            host.go_on()
            self.expect(host, "waiting")
        host.go_on()
        self.expect(host, "searched")
        self.expect_end(host, SEARCH, "cmdCancelar", "text 0.001", "2D")

    def test_tab_goes_by_tab_index_and_the_space_bar_presses(self):
        host, window = self.show("other", OTHER)
        self.keep_picture(window, "other_start")
        window.press("Tab", "Tab", "space")  # from Falla over Aviso to the tick
        self.expect(host, "tick 1")
        window.press("Tab", "Tab", "Return")  # round to Aviso, the button in focus
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
        window.click(*FALLA)  # out of reach below the box
        self.assertTrue(host.nothing_said())
        self.display.run("xdotool", "windowactivate", box.identity)
        self.display.window("Orv2_Geo").press("Return")
        self.expect(host, "warned")
        self.display.window(OTHER).click(*FALLA)
        self.expect_end(host, OTHER, "failure 11", "not open")


class ExtremesTest(ScreenTest):
    WAYS_OUT = {
        "Aceptar": lambda window: window.click(*ACEPTAR),
        "Cancelar": lambda window: window.click(*SALIR),
        "Escape": lambda window: window.press("Escape"),
        "Enter on the button in focus": lambda window: window.press("Return"),
        "the title bar's box": lambda window: window.press_title_bar_box(),
    }

    def test_every_way_out(self):
        for name, leave in self.WAYS_OUT.items():
            with self.subTest(name):
                host, window = self.show("extremes", EXTREMES)
                self.keep_picture(window, "extremes")
                leave(window)
                self.expect_end(host, EXTREMES, "not open")

    def test_the_short_layout(self):
        host, window = self.show("short", EXTREMES)
        self.keep_picture(window, "extremes_short")
        self.assertEqual(window.place()[2:], (window.pixels(7935), window.pixels(2175)))
        window.click(2000, 700)  # nothing in the grid takes it
        window.type("9")
        window.press("Escape")
        self.expect_end(host, EXTREMES, "not open")


class BoxTest(ScreenTest):
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
        host, window = self.show("trapped", "Orv2_Geo.cgeo_api")
        screen.until("a red icon", lambda: self.red(window) > 50)
        self.keep_picture(window, "box_critical")
        window.press("Return")
        self.expect_end(host, "Orv2_Geo.cgeo_api", "returned")

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
                host = self.host("trapped", **changed)
                self.expect(host, "returned", "waiting")
                host.go_on()
                told = "Orv2_Geo.cgeo_api: Pto en Polígono - Error nº  11:División por cero\n"
                self.assertEqual(host.end(), (0, told))
                host = self.host("search", **changed)
                self.expect(host, "cmdCancelar", "text 0.001", "2D", "waiting")
                host.go_on()
                told = f"Orv2_Geo: no screen is available for \"{SEARCH}\"; cancelled\n"
                self.assertEqual(host.end(), (0, told))


class QtHostTest(ScreenTest):
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
