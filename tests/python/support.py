"""What the tests share: the library with the testing functions, and the way to them."""

import contextlib
import ctypes
import os
import struct
import unittest

import orv2_geo

LIBRARY = os.environ["ORV2_TEST_LIBRARY"]
orv2_geo.load(LIBRARY)

from orv2_geo import _arguments, _calls, _host, _library  # noqa: E402
from orv2_geo._library import BYREF  # noqa: E402

REPOSITORY = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

TYPES = {
    "i16": _library.I16, "i32": _library.I32, "f32": _library.F32, "f64": _library.F64,
    "bool": _library.BOOL, "text": _library.TEXT, "object": _library.OBJECT,
    "DoubleArray": _library.DOUBLE_ARRAY, "SingleArray": _library.SINGLE_ARRAY,
    "LongArray": _library.LONG_ARRAY, "ShortArray": _library.SHORT_ARRAY,
    "StringArray": _library.STRING_ARRAY,
}


def tag(type_name):
    """The tag of a type as signatures show it, such as "f64&"."""
    return TYPES[type_name.rstrip("&")] | (BYREF if type_name.endswith("&") else 0)


def declared(name, *argument_types):
    function = getattr(_library.library(), "orv2_testing_" + name)
    function.restype = ctypes.c_int32
    function.argtypes = argument_types
    return function


_values = ctypes.POINTER(_library.Value)
_member_like = {
    name: declared(name, _values, ctypes.c_size_t, _values)
    for name in ("run", "swap", "swap_and_fail", "same", "tag", "text_size")
}


def passed(name, parameters, *given):
    """Calls a testing function the way a member with these parameters is called."""
    tags = [tag(one) for one in parameters.split()]
    return _arguments.passed(_member_like[name], tags, given, "Orv2_Geo.Testing")


def run_on(target, parameters, *given):
    """Has the library call target.Run with these arguments."""
    return passed("run", "object& " + parameters, target, *given)


@contextlib.contextmanager
def lent(target):
    """A handle for an object of this side."""
    handle, owned = _host.lend(target)
    try:
        yield handle
    finally:
        if owned:
            _library.library().orv2_release(handle)


def bits(number):
    return struct.pack("<d", number)


class Runner:
    """An object whose one method is a function."""

    def __init__(self, function):
        self.Run = function


class Case(unittest.TestCase):
    @contextlib.contextmanager
    def fails(self, number, source=None):
        with self.assertRaises(orv2_geo.RunFailure) as caught:
            yield caught
        self.assertEqual(caught.exception.number, number)
        if source is not None:
            self.assertEqual(caught.exception.source, source)

    def same_bits(self, given, wanted):
        self.assertEqual(bits(given), bits(wanted), "{!r} is not {!r}".format(given, wanted))


run = _calls.run
