"""What owns a handle of the library, and gives it back."""

import threading
import weakref
from ctypes import byref, c_size_t, c_uint64, c_void_p

from ._failures import check
from ._library import library
from ._texts import from_units, to_units


class Owner:
    """Owns one reference to a handle for as long as it lives."""

    __slots__ = ("_handle", "_finalizer", "_thread", "__weakref__")

    def _own(self, handle, *kept):
        """`kept` lives until the handle is given back."""
        self._handle = handle
        self._thread = threading.get_ident()
        self._finalizer = weakref.finalize(self, release, handle, *kept)
        self._finalizer.atexit = False  # at the end of the process there is no need

    def __reduce_ex__(self, protocol):
        raise TypeError(type(self).__name__ + " cannot be copied or pickled")


def release(handle, *_kept):
    """Gives a handle back, on whatever thread; a stale one is left alone."""
    library().orv2_release(handle)


def new_handle(function, *arguments):
    """The handle that a function of the library makes."""
    handle = c_uint64()
    check(function(*arguments, byref(handle)))
    return handle.value


def new_text(text):
    """A text variable with this content."""
    return new_handle(library().orv2_text_new, *to_units(text))


def text_content(handle):
    return units_from(library().orv2_text_get, handle)


def set_text_content(handle, text):
    check(library().orv2_text_set(handle, *to_units(text)))


def units_from(function, *arguments):
    """The str that a function shows as units and a count."""
    units, count = c_void_p(), c_size_t()
    check(function(*arguments, byref(units), byref(count)))
    return from_units(units.value, count.value)
