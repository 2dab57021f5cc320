"""Texts: str on this side, counted 16-bit units or char strings on the other.

Unpaired surrogates survive both ways.
"""

import ctypes
import sys

_units = "utf-16-le" if sys.byteorder == "little" else "utf-16-be"


def to_units(text):
    """The 16-bit units of a str, and how many they are."""
    units = text.encode(_units, "surrogatepass")
    return units, len(units) // 2


def from_units(address, count):
    if count == 0:
        return ""
    return ctypes.string_at(address, count * 2).decode(_units, "surrogatepass")


def to_c(text):
    """A str as a char string. A zero cannot travel in one and becomes U+FFFD."""
    return text.replace("\0", "\ufffd").encode("utf-8", "surrogatepass")


def from_c(utf8):
    """The str of a char string; a null one counts as empty."""
    try:
        return (utf8 or b"").decode("utf-8", "surrogatepass")
    except UnicodeDecodeError:
        return utf8.decode("utf-8", "replace")
