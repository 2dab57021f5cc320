"""Plain values of this side as the library's types."""

import ctypes
import math
import operator

from ._failures import OVERFLOW, TYPE_MISMATCH, RunFailure
from ._library import BOOL, F32, F64, I16, I32


def plain(value):
    """The bool, int, float or str that a value is worth. RunFailure 13 for others."""
    if type(value) in (float, int, bool, str):
        return value
    if isinstance(value, str):
        return str(value)
    if getattr(value, "shape", None) == () and hasattr(value, "item"):
        return plain_number(value.item())  # a scalar of an array library
    return plain_number(value)


def plain_number(value):
    if isinstance(value, (bool, float)):
        return value if isinstance(value, bool) else float(value)
    try:
        return operator.index(value)
    except TypeError:
        return _as_float(value)


def _as_float(value):
    if not hasattr(type(value), "__float__"):
        raise RunFailure(TYPE_MISMATCH)
    try:
        return float(value)
    except OverflowError:
        raise RunFailure(OVERFLOW) from None
    except TypeError:
        raise RunFailure(TYPE_MISMATCH) from None


def number(value):
    """An int or a float; a truth counts -1. RunFailure 13 for a text."""
    value = plain(value)
    if isinstance(value, str):
        raise RunFailure(TYPE_MISMATCH)
    return -int(value) if isinstance(value, bool) else value


def to_f64(value):
    return _as_float(number(value))


def to_f32(value):
    wide = to_f64(value)
    narrow = ctypes.c_float(wide).value
    if math.isinf(narrow) and not math.isinf(wide):
        raise RunFailure(OVERFLOW)
    return narrow


def _whole(value, bits):
    """Rounded half to even. RunFailure 6 when it does not fit."""
    value = number(value)
    if isinstance(value, float):
        if not math.isfinite(value):
            raise RunFailure(OVERFLOW)
        value = round(value)
    if not -(1 << bits - 1) <= value < 1 << bits - 1:
        raise RunFailure(OVERFLOW)
    return value


def to_i16(value):
    return _whole(value, 16)


def to_i32(value):
    return _whole(value, 32)


def to_flag(value):
    """The 16 bits of a flag: an int gives its own, signed or not; anything else
    -1 or 0."""
    value = plain(value)
    if isinstance(value, float):
        value = value != 0.0
    if isinstance(value, int) and 0x8000 <= value <= 0xFFFF:
        value -= 0x10000
    return to_i16(value)


def from_flag(bits):
    """True and False for -1 and 0; other patterns stay numbers."""
    return bool(bits) if bits in (-1, 0) else bits


def to_text(value):
    """A str. RunFailure 13 for anything else."""
    value = plain(value)
    if not isinstance(value, str):
        raise RunFailure(TYPE_MISMATCH)
    return value


class Scalar:
    """A scalar type: how it lies in memory, and the ways in and out."""

    __slots__ = ("tag", "cell", "field", "convert", "read")

    def __init__(self, tag, cell, field, convert, read=lambda stored: stored):
        self.tag = tag
        self.cell = cell
        self.field = field
        self.convert = convert
        self.read = read


SCALARS = {
    scalar.tag: scalar
    for scalar in (
        Scalar(I16, ctypes.c_int16, "i16", to_i16),
        Scalar(I32, ctypes.c_int32, "i32", to_i32),
        Scalar(F32, ctypes.c_float, "f32", to_f32),
        Scalar(F64, ctypes.c_double, "f64", to_f64),
        Scalar(BOOL, ctypes.c_int16, "boolean", to_flag, from_flag),
    )
}


def fits_i32(value):
    return -2**31 <= value < 2**31
