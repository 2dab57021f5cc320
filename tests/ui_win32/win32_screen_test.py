"""Boxes and forms of Windows' own controls pressed by a person: the rows of
tests/screen, on a display in memory, through tools/wine.sh.

Environment: ORV2_WINE, the script; ORV2_HOST, the host program; ORV2_DPI; ORV2_PREFIX,
the folder of the system with these dots per inch; and ORV2_PICTURES, the folder for a
picture of every state.
"""
import os
import pathlib
import subprocess
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "screen"))
for name in ("ORV2_QT_HOST", "ORV2_X_HOST"):
    os.environ.setdefault(name, "none")
os.environ.update(WINEPREFIX=os.environ["ORV2_PREFIX"])

import screen
import screen_test

WINE = os.environ["ORV2_WINE"]
HOST = screen_test.HOST
DPI = screen_test.DPI

# What is inside the frames of the forms, in twips.
SIZES = {screen_test.POINTS: (2865, 3000), screen_test.OTHER: (2700, 3060),
         screen_test.EXTREMES: (7935, 2175)}


class Window(screen.Window):
    """A form draws its frame itself; a box has the window manager's."""

    def __init__(self, display, identity, title):
        super().__init__(display, identity)
        self.own_frame = title in SIZES
        self.size = SIZES.get(title)

    def place(self):
        left, top, width, height = self.outside()
        if not self.own_frame:
            return left, top, width, height
        inside, high = (self.pixels(twips) for twips in self.size)
        border = (width - inside) // 2
        return left + border, top + height - high - border, inside, high

    def press_title_bar_box(self):
        left, upper, width, _ = self.place()
        bar = upper - self.outside()[1] if self.own_frame else self.frame()[2]
        self.display.run("xdotool", "mousemove", str(left + width - bar // 2),
                         str(upper - bar // 2), "click", "1")


class Display(screen.Display):
    def window(self, title):
        """The window of that title; this manager leaves it to the person to choose it."""
        def shown():
            found = self.windows(title)
            if found:
                self.run("xdotool", "windowactivate", "--sync", found[0])
            return found and self.run("xdotool", "getactivewindow") == found[0] and found[0]
        return Window(self, screen.until(f"the window {title!r}", shown), title)

    def tips(self):
        """The windows without a frame and a name that are up."""
        found = self.run("xdotool", "search", "--onlyvisible", "--class", "screen_host").split()
        return [one for one in found if not self.run("xdotool", "getwindowname", one)]


class OnWindows:
    @classmethod
    def setUpClass(cls):
        cls.display = Display(DPI)
        screen_test.PICTURES.mkdir(parents=True, exist_ok=True)

    @classmethod
    def tearDownClass(cls):
        super().tearDownClass()
        subprocess.run(["wineserver", "--kill"], check=False)

    def host(self, *words, program=HOST, **changed):
        return super().host(program, *words, program=WINE, **changed)


class RepeatedPointsTest(OnWindows, screen_test.RepeatedPointsTest):
    def test_is_a_fixed_tool_window_in_the_middle_of_the_screen(self):
        host, window = self.show("points", screen_test.POINTS)
        left, top, width, height = window.place()
        hints = window.property("WM_NORMAL_HINTS")
        for bound in ("minimum", "maximum"):
            self.assertIn("{} size: {} by {}".format(bound, *window.outside()[2:]), hints)
        self.assertIn("_NET_WM_STATE_SKIP_TASKBAR", window.property("_NET_WM_STATE"))
        self.assertAlmostEqual(left + width / 2, 800, delta=2)
        self.assertAlmostEqual(top + height / 2, 600, delta=40)  # the title bar is above
        self.keep_picture(window, "points_choosing")
        window.press("Escape")
        self.expect_end(host, screen_test.POINTS, *screen_test.UNTOUCHED)


class FormTest(OnWindows, screen_test.FormTest):
    def dots(self, window, middle, width, height):
        """Of the lines inside of a button's upper edge, the most changes in one."""
        def changes(inside):
            left, top = middle[0] - width / 2 + 150, middle[1] - height / 2 + inside
            line = window.colours(left, top, width - 300, 15)[:window.pixels(width - 300)]
            dark = [max(pixel) < 150 for pixel in line]
            return sum(a != b for a, b in zip(dark, dark[1:]))
        return max(changes(inside) for inside in range(0, 75, 15 * 96 // DPI))

    def test_a_bar_moves_with_every_step_of_a_routine(self):
        """This system brings what is drawn to the screen up to a step later, as nobody
        asks it for messages meanwhile."""
        host, window = self.show("other", screen_test.OTHER)
        window.press("Return")
        seen = []
        for _ in range(4):
            self.expect(host, "waiting")
            time.sleep(0.1)
            seen.append(self.blue(window))
            host.go_on()
        self.assertEqual(seen, sorted(seen))
        self.assertGreaterEqual(len(set(seen)), 3)
        area = len(window.colours(*screen_test.BAR))
        self.assertLess(seen[0], area * 0.05)
        self.assertGreater(seen[3], area * 0.3)
        window.press_title_bar_box()
        self.expect_end(host, screen_test.OTHER, "not open")


class ExtremesTest(OnWindows, screen_test.ExtremesTest):
    def assert_wide(self, box, least):
        """A box of the system's own makes the room for its caption itself."""

    def edges(self, window):
        found, across = super().edges(window)
        border = window.pixels(15 * 3)  # the grid's own is no line between columns
        return [x for x, before in zip(found, [0, *found]) if x - before > border], across


class BoxTest(OnWindows, screen_test.ScreenTest):
    def red(self, window):
        return screen_test.BoxTest.red(self, window)

    test_plain = screen_test.BoxTest.test_a_plain_box_has_the_librarys_name_and_goes_with_enter
    test_critical = screen_test.BoxTest.test_a_box_of_a_failure_has_its_source_and_the_icon

    def test_another_thread_has_its_own_box(self):
        host, window = self.show("thread", "Orv2_Geo")
        window.press("Return")
        time.sleep(0.5)
        self.display.window("Orv2_Geo").press("Return")
        self.expect(host, "returned", "waiting")
        host.go_on()
        self.assertEqual(host.end(), (0, ""))


class WithoutScreenTest(OnWindows, screen_test.WithoutScreenTest):
    CASES = {"no display is named": {"DISPLAY": ""},
             "the display cannot be opened": {"DISPLAY": ":9999"}}


def load_tests(loader, _, __):
    """Those of this file alone."""
    tests = unittest.TestSuite()
    for one in (RepeatedPointsTest, FormTest, ExtremesTest, BoxTest, WithoutScreenTest):
        tests.addTests(loader.loadTestsFromTestCase(one))
    return tests
