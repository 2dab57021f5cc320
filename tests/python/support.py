"""What the tests share: the library with the testing functions, and the way to them."""

import contextlib
import ctypes
import os
import struct
import unittest
from ctypes import c_char_p, c_double, c_float, c_int16, c_int32, c_uint16, c_uint64, c_void_p

import orv2_geo

try:
    import numpy
except ImportError:
    numpy = None

needs_numpy = unittest.skipIf(numpy is None, "NumPy is not installed for this Python")

LIBRARY = os.environ["ORV2_TEST_LIBRARY"]
orv2_geo.load(LIBRARY)

from orv2_geo import _core, _library  # noqa: E402
from orv2_geo._library import BOOL, BYREF, F64, I32, UTF8  # noqa: E402

REPOSITORY = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

TYPES = {
    "i16": _library.I16, "i32": _library.I32, "f32": _library.F32, "f64": _library.F64,
    "bool": _library.BOOL, "text": _library.TEXT, "object": _library.OBJECT,
    "DoubleArray": _library.DOUBLE_ARRAY, "SingleArray": _library.SINGLE_ARRAY,
    "LongArray": _library.LONG_ARRAY, "ShortArray": _library.SHORT_ARRAY,
    "StringArray": _library.STRING_ARRAY,
}

_functions = ctypes.CDLL(LIBRARY)


class As(ctypes.Union):
    _fields_ = [
        ("f64", c_double), ("f32", c_float), ("i32", c_int32), ("i16", c_int16),
        ("boolean", c_int16), ("handle", c_uint64), ("utf8", c_char_p), ("pointer", c_void_p),
    ]


class Value(ctypes.Structure):
    """A value as the library's C header has it."""
    _anonymous_ = ("value",)
    _fields_ = [("tag", c_uint16), ("value", As)]


def put(slot, value):
    """A plain value, by value. What must outlive the slot is answered."""
    if isinstance(value, bool):
        slot.tag, slot.boolean = BOOL, -int(value)
    elif isinstance(value, int):
        slot.tag, slot.i32 = I32, value
    elif isinstance(value, str):
        kept = value.encode("utf-8", "surrogatepass")
        slot.tag, slot.utf8 = UTF8, kept
        return kept
    else:
        slot.tag, slot.f64 = F64, value
    return None


def tag(type_name):
    """The tag of a type as signatures show it, such as "f64&"."""
    return TYPES[type_name.rstrip("&")] | (BYREF if type_name.endswith("&") else 0)


def declared(name, *argument_types, prefix="orv2_testing_"):
    function = getattr(_functions, prefix + name)
    function.restype = ctypes.c_int32
    function.argtypes = argument_types
    return function


def release(handle):
    _functions.orv2_release(c_uint64(handle))


_member_like = {
    name: ctypes.cast(getattr(_functions, "orv2_testing_" + name), c_void_p).value
    for name in ("run", "swap", "swap_and_fail", "same", "tag", "text_size")
}


def passed(name, parameters, *given):
    """Calls a testing function the way a member with these parameters is called."""
    tags = tuple(tag(one) for one in parameters.split())
    return _core.call_like_member(_member_like[name], tags, given, "Orv2_Geo.Testing")


def run_on(target, parameters, *given):
    """Has the library call target.Run with these arguments."""
    return passed("run", "object& " + parameters, target, *given)


def run(function, *arguments):
    """Calls a function of the library that answers with a status and may call back."""
    _core.framed(function, arguments)


@contextlib.contextmanager
def lent(target):
    """A handle for an object of this side."""
    handle, owned = _core.lend_handle(target)
    try:
        yield handle
    finally:
        if owned:
            release(handle)


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
