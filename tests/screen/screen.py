"""A display in memory with a window manager, and a person in front of it.

Everything waits by asking again until something is so, with a long deadline, so
that a slow machine only makes the tests slow.
"""
import ctypes
import mmap
import os
import pathlib
import queue
import re
import signal
import struct
import subprocess
import tempfile
import threading
import time
import zlib

# Seconds until something counts as never happening.
PATIENCE = float(os.environ.get("ORV2_PATIENCE", "60"))


def ends_with_us():
    """In a new process: it ends when this one does, however that comes."""
    pr_set_pdeathsig = 1
    ctypes.CDLL(None).prctl(pr_set_pdeathsig, signal.SIGKILL)


def until(what, condition, pause=0.05):
    """The first answer of `condition` that counts as true."""
    end = time.monotonic() + PATIENCE
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError("never came: " + what)
        time.sleep(pause)


def output(*command, environment=None):
    """What a command prints; nothing when it fails."""
    done = subprocess.run(command, env=environment, capture_output=True, timeout=PATIENCE,
                          check=False)
    return done.stdout.decode().strip() if done.returncode == 0 else ""


def png(width, rows):
    """A picture file of rows of pixels, three bytes each."""
    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data +
                struct.pack(">I", zlib.crc32(kind + data)))
    head = struct.pack(">IIBBBBB", width, len(rows), 8, 2, 0, 0, 0)
    data = zlib.compress(b"".join(b"\0" + row for row in rows))
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", data) +
            chunk(b"IEND", b""))


class Shown:
    """What the display shows, read from its memory: always as it is at the moment."""

    def __init__(self, path):
        with open(path, "rb") as file:
            self._memory = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        head = struct.unpack(">25I", self._memory[:100])
        self._stride, colours = head[12], head[19]
        self._start = head[0] + 12 * colours

    def rows(self, left, top, width, height):
        """The pixels of a part, row by row, three bytes each."""
        for y in range(top, top + height):
            at = self._start + y * self._stride + 4 * left
            raw = self._memory[at:at + 4 * width]
            row = bytearray(3 * width)
            row[0::3], row[1::3], row[2::3] = raw[2::4], raw[1::4], raw[0::4]
            yield bytes(row)

    def close(self):
        self._memory.close()


class Display:
    """An X display with a window manager, of the given dots per inch."""

    def __init__(self, dpi, manager="openbox"):
        self.dpi = dpi
        self._folder = tempfile.TemporaryDirectory()
        reading, writing = os.pipe()
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1600x1200x24",
             "-noreset", "-nolisten", "tcp", "-fbdir", self._folder.name], pass_fds=[writing], stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, preexec_fn=ends_with_us)
        os.close(writing)
        with os.fdopen(reading) as answer:
            number = answer.readline().strip()
        if not number:
            raise AssertionError("the display did not start")
        self.shown = Shown(os.path.join(self._folder.name, "Xvfb_screen0"))
        self.environment = {**os.environ, "DISPLAY": ":" + number, "LC_ALL": "C.UTF-8",
                            "XDG_RUNTIME_DIR": self._folder.name}
        for name in ("WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_SCALE_FACTOR", "SESSION_MANAGER",
                     "DBUS_SESSION_BUS_ADDRESS"):
            self.environment.pop(name, None)
        self.run("xprop", "-root", "-f", "RESOURCE_MANAGER", "8s", "-set", "RESOURCE_MANAGER",
                 f"Xft.dpi:\t{dpi}\n")
        self._manager = subprocess.Popen([manager], env=self.environment,
                                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                         preexec_fn=ends_with_us)
        # An old one tells of itself by nothing but what it does to windows.
        if manager == "openbox":
            # It tells its name first; once it lists the windows it takes new ones too.
            until("a window manager", lambda: "window id" in self.run(
                "xprop", "-root", "_NET_CLIENT_LIST_STACKING"))

    def close(self):
        for process in (self._manager, self._server):
            process.terminate()
            process.wait(PATIENCE)
        self.shown.close()
        self._folder.cleanup()

    def run(self, *command):
        return output(*command, environment=self.environment)

    def windows(self, title):
        """The visible windows with exactly this title."""
        found = self.run("xdotool", "search", "--onlyvisible", "--name", ".").split()
        return [one for one in found if self.run("xdotool", "getwindowname", one) == title]

    def window(self, title):
        """The window of that title, visible and with the keyboard."""
        def shown():
            active = self.run("xdotool", "getactivewindow")
            return [one for one in self.windows(title) if one == active]
        return Window(self, until(f"the window {title!r}", shown)[0])

    def tips(self):
        """The tool tips that are up."""
        found = self.run("xdotool", "search", "--onlyvisible", "--class", ".").split()
        return [one for one in found if "_TOOLTIP" in self.run(
            "xprop", "-id", one, "_NET_WM_WINDOW_TYPE")]

    def clipboard(self):
        return self.run("xclip", "-o", "-selection", "clipboard")

    def wait_for_no(self, title):
        until(f"{title!r} gone", lambda: not self.windows(title))


class CursorImage(ctypes.Structure):
    """What the display tells of the mouse pointer."""
    _fields_ = [("x", ctypes.c_short), ("y", ctypes.c_short), ("width", ctypes.c_ushort),
                ("height", ctypes.c_ushort), ("xhot", ctypes.c_ushort), ("yhot", ctypes.c_ushort),
                ("serial", ctypes.c_ulong), ("pixels", ctypes.POINTER(ctypes.c_ulong)),
                ("atom", ctypes.c_ulong), ("name", ctypes.c_char_p)]


class Pointer:
    """The mouse pointer of a display as a person sees it."""

    def __init__(self, display):
        self._x11 = ctypes.CDLL("libX11.so.6")
        self._x11.XOpenDisplay.restype = ctypes.c_void_p
        self._fixes = ctypes.CDLL("libXfixes.so.3")
        self._fixes.XFixesGetCursorImage.restype = ctypes.POINTER(CursorImage)
        name = display.environment["DISPLAY"].encode()
        self._connection = ctypes.c_void_p(self._x11.XOpenDisplay(name))
        event, error = ctypes.c_int(), ctypes.c_int()
        self._fixes.XFixesQueryExtension(self._connection, ctypes.byref(event),
                                         ctypes.byref(error))

    def picture(self):
        """Its pixels: two that are equal look alike."""
        told = self._fixes.XFixesGetCursorImage(self._connection)
        image = told.contents
        seen = (image.width, image.height, image.pixels[:image.width * image.height])
        self._x11.XFree(told)
        return seen

    def close(self):
        self._x11.XCloseDisplay(self._connection)


class Window:
    """A window on a display; places in it are in twips of the form inside it."""

    # Of a window that draws its frame itself, in pixels at 96 dots per inch.
    BORDER, TITLE_BAR = 1, 22

    def __init__(self, display, identity):
        self.display = display
        self.identity = identity
        self.own_frame = "UTILITY" in self.property("_NET_WM_WINDOW_TYPE")

    def pixels(self, twips):
        return round(twips / 15 * self.display.dpi / 96)

    def outside(self):
        """Left, top, width and height with the frame that the window draws itself."""
        told = self.display.run("xwininfo", "-id", self.identity)
        return tuple(int(re.search(name + r":\s+(-?\d+)", told).group(1)) for name in (
            "Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))

    def place(self):
        """Left, top, width and height of what is inside the frame."""
        left, top, width, height = self.outside()
        if not self.own_frame:
            return left, top, width, height
        border, bar = self.pixels(15 * self.BORDER), self.pixels(15 * self.TITLE_BAR)
        return left + border, top + bar, width - 2 * border, height - border - bar

    def frame(self):
        """What the window manager draws around: left, right, top and bottom."""
        told = self.property("_NET_FRAME_EXTENTS")
        return [int(n) for n in told.split("=")[1].split(",")] if "=" in told else [0, 0, 0, 0]

    def property(self, name):
        return self.display.run("xprop", "-id", self.identity, name)

    def click(self, left, top, times=1):
        self.point_at(left, top)
        self.display.run("xdotool", "click", "--repeat", str(times), "--delay", "60", "1")

    def point_at(self, left, top):
        x, y, _, _ = self.place()
        self.display.run("xdotool", "mousemove", str(x + self.pixels(left)),
                         str(y + self.pixels(top)))

    def point_elsewhere(self):
        """Takes the pointer out of the window, so that it covers nothing."""
        self.display.run("xdotool", "mousemove", "0", "0")

    def press(self, *keys):
        self.display.run("xdotool", "key", "--delay", "20", *keys)

    def type(self, text):
        self.display.run("xdotool", "type", "--delay", "20", text)

    def press_title_bar_box(self):
        """The box at the right end of the title bar."""
        top = self.pixels(15 * self.TITLE_BAR) if self.own_frame else self.frame()[2]
        left, upper, width, _ = self.place()
        self.display.run("xdotool", "mousemove", str(left + width - top // 2),
                         str(upper - top // 2), "click", "1")

    def picture(self, path):
        """The window with its frame, written to a file."""
        left, top, width, height = self.outside()
        frame = self.frame()
        width += frame[0] + frame[1]
        height += frame[2] + frame[3]
        rows = list(self.display.shown.rows(left - frame[0], top - frame[2], width, height))
        pathlib.Path(path).write_bytes(png(width, rows))

    def part(self, left, top, width, height):
        """A part of the window, told in twips: a function for its pixels at any time."""
        x, y, _, _ = self.place()
        place = (x + self.pixels(left), y + self.pixels(top), self.pixels(width),
                 self.pixels(height))

        def pixels():
            rows = self.display.shown.rows(*place)
            return [row[i:i + 3] for row in rows for i in range(0, len(row), 3)]
        return pixels

    def colours(self, *part):
        """The pixels of a part as it is now."""
        return self.part(*part)()


class Host:
    """A host program on a display, its lines as they come."""

    def __init__(self, program, *words, environment):
        self._process = subprocess.Popen([program, *words], env=environment, text=True,
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                         stderr=subprocess.PIPE, encoding="utf-8",
                                         preexec_fn=ends_with_us)
        self._lines = queue.Queue()
        self._errors = []
        self._readers = [threading.Thread(target=self._read_lines, daemon=True),
                         threading.Thread(target=self._read_errors, daemon=True)]
        for reader in self._readers:
            reader.start()

    def _read_lines(self):
        for line in self._process.stdout:
            self._lines.put(line.rstrip("\n"))
        self._lines.put(None)

    def _read_errors(self):
        self._errors.extend(self._process.stderr)

    def line(self):
        """The next line; None at the end."""
        try:
            return self._lines.get(timeout=PATIENCE)
        except queue.Empty:
            raise AssertionError("the host says nothing") from None

    def freeze(self):
        """Stops the host in the middle of what it does; what it shows stays."""
        self._process.send_signal(signal.SIGSTOP)

    def thaw(self):
        self._process.send_signal(signal.SIGCONT)

    def nothing_said(self):
        return self._lines.empty()

    def go_on(self):
        self._process.stdin.write("\n")
        self._process.stdin.flush()

    def end(self):
        """Waits for the end: the status and what was on standard error."""
        status = self._process.wait(PATIENCE)
        for reader in self._readers:
            reader.join(PATIENCE)
        self._process.stdin.close()
        self._process.stdout.close()
        self._process.stderr.close()
        return status, "".join(self._errors)

    def kill(self):
        if self._process.poll() is None:
            self._process.kill()
            self.end()
