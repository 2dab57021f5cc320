"""Failures: the one exception of the library, and the way from a status to it."""

import functools
import operator
from ctypes import byref, c_char_p, c_int32

from ._library import Failure, library
from ._texts import from_c

INVALID_CALL = 5
OVERFLOW = 6
SUBSCRIPT_OUT_OF_RANGE = 9
TYPE_MISMATCH = 13
NO_SUCH_MEMBER = 438
HOST_OBJECT_FAILED = 440


class RunFailure(Exception):
    """What every call raises when it fails.

    number       the failure's number, such as 9
    description  what went wrong, in words; the library's own unless given
    source       the component that raised it, such as "Orv2_Geo.cgeo_Algorismos"
    """

    def __init__(self, number, description="", source=""):
        super().__init__(number, description, source)
        self.number = operator.index(number)
        self.source = source
        self._description = description

    @property
    def description(self):
        return self._description or described(self.number)

    def __str__(self):
        text = str(self.number)
        if self.description:
            text += ": " + self.description
        if self.source:
            text += " (" + self.source + ")"
        return text


def described(number):
    """The library's own description of a number; empty for a foreign one."""
    try:
        return _descriptions().get(number, "")
    except OSError:  # there is no library to ask
        return ""


@functools.lru_cache(maxsize=None)
def _descriptions():
    number, words, found = c_int32(), c_char_p(), {}
    while library().orv2_failure_at(len(found), byref(number), byref(words)) == 0:
        found[number.value] = from_c(words.value)
    return found


def last_failure():
    """The failure of this thread's last failing call."""
    told = Failure()
    library().orv2_last_failure(byref(told))
    return RunFailure(told.number, from_c(told.description), from_c(told.source))


def check(status):
    """Raises the failure behind a status other than 0."""
    if status != 0:
        raise last_failure()
