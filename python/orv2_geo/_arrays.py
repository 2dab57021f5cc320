"""Arrays handed in by reference: any lower bound, possibly unallocated."""

import contextlib

from . import _core
from ._core import DoubleArray, GeoArray, LongArray, ShortArray, SingleArray, StringArray

__all__ = ["DoubleArray", "GeoArray", "LongArray", "ShortArray", "SingleArray", "StringArray"]


@contextlib.contextmanager
def locked(self):
    """Locks for the length of a with statement."""
    self.lock()
    try:
        yield self
    finally:
        self.unlock()


GeoArray.locked = locked


def grown(base, count, size):
    """What stands for `base` when an array over it gets `count` elements of `size` bytes:
    for an ndarray of such elements a new one of zeros. None for what cannot be followed. -1
    only asks whether it can."""
    if not hasattr(type(base), "__array_interface__") or base.dtype.itemsize != size:
        return None
    import numpy  # there is one already: it made the array
    return numpy.zeros(max(count, 0), dtype=base.dtype)


_core.use("grown", grown)
