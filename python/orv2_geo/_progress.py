"""A ready progress object for the members that take one."""

import sys
import time


class Progress:
    """A progress object for the members that take one: they set Visible, Min, max
    and Value, and nothing else.

    Progress()                    a bar of text on standard error where that is a
                                  terminal, silent elsewhere
    Progress(show=False)          silent
    Progress(show=True)           the bar in any case
    Progress(function)            calls function(share) with what is done, 0.0 to 1.0
    Progress(text="Repetidos")    what stands before the bar
    """

    WIDTH = 30
    INTERVAL = 0.1  # seconds between two pictures of the bar

    def __init__(self, show=None, text="", file=None):
        self._file = sys.stderr if file is None else file
        self._function = show if callable(show) else None
        if callable(show):
            show = False
        self._bar = _is_terminal(self._file) if show is None else bool(show)
        self._text = text
        self._visible = False
        self._drawn = False
        self._begun = self._last = 0.0
        self.Min = 0.0
        self.max = 100.0
        self._value = 0.0

    @property
    def share(self):
        """What is done, from 0.0 to 1.0."""
        length = self.max - self.Min
        return min(1.0, max(0.0, (self._value - self.Min) / length)) if length > 0 else 0.0

    @property
    def Value(self):
        return self._value

    @Value.setter
    def Value(self, value):
        self._value = value
        if self._function is not None:
            self._function(self.share)
        elif self._bar and time.monotonic() - self._last >= self.INTERVAL:
            self._draw()

    @property
    def Visible(self):
        return self._visible

    @Visible.setter
    def Visible(self, visible):
        if visible and not self._visible:
            self._begun = time.monotonic()
        self._visible = bool(visible)
        if not visible:
            self.close()

    def close(self):
        """Ends the line of the bar. A new one begins with the next value."""
        if self._drawn:
            self._draw()
            self._file.write("\n")
            self._file.flush()
        self._drawn = False

    def _draw(self):
        self._last = time.monotonic()
        self._drawn = True
        done = int(self.share * self.WIDTH)
        line = "\r{}{:4.0%}|{}{}| {}".format(
            self._text + ": " if self._text else "", self.share, "#" * done,
            " " * (self.WIDTH - done), _clock(self._last - self._begun))
        self._file.write(line)
        self._file.flush()

    def __enter__(self):
        return self

    def __exit__(self, *_raised):
        self.close()


def _is_terminal(file):
    try:
        return file.isatty()
    except (AttributeError, ValueError):
        return False


def _clock(seconds):
    minutes, seconds = divmod(int(seconds), 60)
    return "{:02}:{:02}".format(minutes, seconds)
