"""The shared library: where it is."""

import os
import threading

from . import _core

# The tags of the interface.
NONE, I16, I32, F32, F64, BOOL, TEXT, OBJECT, VARIANT = range(9)
DOUBLE_ARRAY, SINGLE_ARRAY, LONG_ARRAY, SHORT_ARRAY, STRING_ARRAY, OMITTED, UTF8 = range(9, 16)
BYREF = 0x100

METHOD, PROPERTY_READ, PROPERTY_WRITE, ANY = range(4)
READ, WRITTEN, RESIZED = range(3)

_soname = "liborv2_geo.so.2"
_file_names = (_soname, "liborv2_geo.so")

_lock = threading.RLock()
_loaded_from = None


def load(path):
    """Uses the library at `path`. To be called before anything else is used.

    Asking for the same library again changes nothing; for another one it is
    too late: RuntimeError.
    """
    wanted = os.path.realpath(os.fspath(path))
    with _lock:
        if _loaded_from is None:
            _open(wanted)
        elif _loaded_from != wanted:
            raise RuntimeError("the library is in use already, from " + _loaded_from)


def needed():
    """Opens the library on first use."""
    if _loaded_from is None:
        with _lock:
            if _loaded_from is None:
                _open(_found())


def loaded_from():
    """The path of the library in use, or None."""
    return _loaded_from


def version():
    """The version of the library in use."""
    needed()
    number = _core.version()
    return "{}.{}.{}".format(number // 10000, number // 100 % 100, number % 100)


def _open(path):
    global _loaded_from
    why_not = _core.open_library(path)
    if why_not:
        raise OSError(why_not)
    _loaded_from = os.path.realpath(_core.path_of_library())


def _found():
    """Beside the package or its core, in the same build's folder, or wherever the
    loader finds it."""
    core = os.path.dirname(os.path.abspath(_core.__file__))
    build = os.path.dirname(os.path.dirname(core))
    places = [os.path.dirname(os.path.abspath(__file__)), core, os.path.join(build, "lib")]
    for place in places:
        for name in _file_names:
            path = os.path.join(place, name)
            if os.path.exists(path):
                return os.path.realpath(path)
    return _soname


_core.use("open", needed)
