"""Calls that may come back: what a callback leaves behind reaches the caller.

An exception cannot cross the library. Each call into it has a frame; a callback
that fails leaves its exception in the frame of the innermost call, answers with
a number, and the call raises when it returns.
"""

import functools
import threading

from ._failures import HOST_OBJECT_FAILED, RunFailure, last_failure
from ._library import library
from ._texts import to_c


class _Frame:
    __slots__ = ("interrupt", "cause", "words")

    def __init__(self):
        self.interrupt = None  # KeyboardInterrupt or the like
        self.cause = None      # any other exception, and the words it travels by
        self.words = None


class _Frames(threading.local):
    def __init__(self):
        self.stack = []


_frames = _Frames()


def run(function, *arguments):
    """Calls a function of the library that may call back."""
    frame = _Frame()
    _frames.stack.append(frame)
    try:
        status = function(*arguments)
    finally:
        _frames.stack.pop()
    if frame.interrupt is not None:
        raise frame.interrupt
    if status != 0:
        _raise_last(frame)


def _raise_last(frame):
    failure = last_failure()
    if failure.number == HOST_OBJECT_FAILED and failure.description == frame.words:
        raise failure from frame.cause
    raise failure


def answering(routine):
    """A callback's body: 0, or the number of the failure that it ends with."""

    @functools.wraps(routine)
    def callback(*arguments):
        try:
            if _interrupt() is not None:
                return _answered(_interrupt())
            routine(*arguments)
            return 0
        except BaseException as raised:  # nothing may cross the library
            return _answered(raised)

    return callback


def _frame():
    return _frames.stack[-1] if _frames.stack else _Frame()


def _interrupt():
    return _frame().interrupt


def _answered(raised):
    """Names the failure to the library and answers with its number."""
    if isinstance(raised, RunFailure) and _is_number(raised.number):
        return _named(raised.number, raised.description, raised.source)
    words = _words(raised)
    frame = _frame()
    if isinstance(raised, Exception):
        frame.cause, frame.words = raised, words
    elif frame.interrupt is None:
        frame.interrupt = raised
    return _named(HOST_OBJECT_FAILED, words, "")


def _is_number(number):
    return number != 0 and -2**31 <= number < 2**31


def _words(raised):
    """Its message, or its type when it has none."""
    try:
        message = str(raised)
    except Exception:  # an exception without words of its own
        message = ""
    words = message or type(raised).__name__
    return words.replace("\0", "\ufffd")


def _named(number, description, source):
    library().orv2_set_failure(number, to_c(description), to_c(source))
    return number
