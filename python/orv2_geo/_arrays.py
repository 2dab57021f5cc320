"""Arrays handed in by reference: any lower bound, possibly unallocated."""

import array
import contextlib
import ctypes
import operator
from ctypes import byref, c_void_p

from ._failures import (
    INVALID_CALL, SUBSCRIPT_OUT_OF_RANGE, TYPE_MISMATCH, RunFailure, check,
)
from ._handles import Owner, new_handle, units_from
from ._library import (
    DOUBLE_ARRAY, F32, F64, I16, I32, LONG_ARRAY, SHORT_ARRAY, SINGLE_ARRAY, STRING_ARRAY,
    ArrayInfo, Resize, library,
)
from ._numbers import SCALARS, to_i32, to_text
from ._texts import to_units


class GeoArray(Owner):
    """What the five arrays share.

    Array()                      unallocated
    Array([1, 2, 3], lower=1)    these elements, from index 1
    Array([])                    allocated, without elements
    Array.sized(1, 3)            zeros (or empty texts) from index 1 to 3
    Array(dims=2)                of a foreign dimension count: its elements
                                 cannot be reached

    An index outside the bounds is RunFailure 9.
    """

    __slots__ = ()
    __hash__ = None
    _tag = 0

    def __init__(self, elements=None, lower=0, dims=1):
        if dims != 1:
            self._make(elements, lower, dims)
        elif elements is None:
            self._own(new_handle(library().orv2_array_new, self._tag))
        else:
            elements = self._converted(elements)
            self._own(self._made(lower, len(elements), 1))
            self._fill(elements)

    def _make(self, elements, lower, dims):
        if elements is not None:
            raise TypeError("elements need one dimension")
        self._own(self._made(lower, 1, dims))

    @classmethod
    def _made(cls, lower, count, dims):
        return new_handle(library().orv2_array_make, cls._tag, to_i32(lower), count, dims)

    @classmethod
    def sized(cls, lower, upper):
        """Zeros, or empty texts, from `lower` to `upper`. RunFailure 9 when
        `upper` is below `lower`."""
        array_ = cls()
        array_.resize(lower, upper)
        return array_

    def _describe(self):
        info = ArrayInfo()
        check(library().orv2_array_describe(self._handle, byref(info)))
        return info

    def _bounds(self):
        lower, upper = ctypes.c_int32(), ctypes.c_int32()
        check(library().orv2_array_bounds(self._handle, byref(lower), byref(upper)))
        return lower.value, upper.value

    @property
    def lower(self):
        """The first index. RunFailure 9 when unallocated."""
        info = self._describe()
        return info.lower if info.allocated else self._bounds()[0]

    @property
    def upper(self):
        """The last index. RunFailure 9 when unallocated."""
        return self._bounds()[1]

    @property
    def allocated(self):
        return self._describe().allocated != 0

    @property
    def dims(self):
        """How many dimensions; 0 when unallocated."""
        return self._describe().dimensions

    def resize(self, lower, upper, keep=False):
        """New bounds. With `keep`, elements whose index exists in both ranges
        survive; all others are zero or empty. RunFailure 9 when `upper` is
        below `lower`, 10 when locked or over a foreign buffer."""
        check(library().orv2_array_resize(self._handle, to_i32(lower), to_i32(upper),
                                          -1 if keep else 0))

    def lock(self):
        """Locks against resizing, once more."""
        check(library().orv2_array_lock(self._handle))

    def unlock(self):
        """Takes one lock away. RunFailure 5 when there is none."""
        check(library().orv2_array_unlock(self._handle))

    @contextlib.contextmanager
    def locked(self):
        """Locks for the length of a with statement."""
        self.lock()
        try:
            yield self
        finally:
            self.unlock()

    def __len__(self):
        return self._describe().count

    def __iter__(self):
        """The elements in order, as they are now."""
        return iter(self._elements())

    def __reversed__(self):
        return reversed(self._elements())

    def _elements(self):
        return self._read(self._reachable()) if len(self) else []

    def _reachable(self):
        """The description of an array whose elements can be reached. RunFailure 9."""
        info = self._describe()
        if info.dimensions != 1:
            raise RunFailure(SUBSCRIPT_OUT_OF_RANGE)
        return info

    def _place(self, index):
        """Where an element lies, from 0. RunFailure 9."""
        info = self._reachable()
        place = operator.index(index) - info.lower
        if not 0 <= place < info.count:
            raise RunFailure(SUBSCRIPT_OUT_OF_RANGE)
        return place

    def __eq__(self, other):
        if type(other) is not type(self):
            return NotImplemented
        return self._shape() == other._shape()

    def _shape(self):
        info = self._describe()
        elements = self._read(info) if info.dimensions == 1 else []
        return info.dimensions, info.lower, info.count, elements

    def __repr__(self):
        name, info = type(self).__name__, self._describe()
        if not info.allocated:
            return name + "()"
        if info.dimensions != 1:
            return "{}(lower={}, dims={})".format(name, info.lower, info.dimensions)
        return "{}({!r}, lower={})".format(name, self._read(info), info.lower)

    def __reduce_ex__(self, protocol):
        """A copy is an array of its own."""
        info = self._describe()
        if not info.allocated:
            return type(self), ()
        if info.dimensions != 1:
            return type(self), (None, info.lower, info.dimensions)
        return type(self), (self._read(info), info.lower)


class _NumberArray(GeoArray):
    __slots__ = ()
    _scalar = None
    _format = ""

    @classmethod
    def over(cls, buffer, lower=0):
        """An array over a writable buffer of this side, worked in place.

        The buffer holds the array's own element type, or bytes. It stays in
        use as long as the array, whose size is fixed (RunFailure 10).
        """
        cells = cls._cells_over(buffer)
        adopted = cls.__new__(cls)
        address = ctypes.addressof(cells)
        handle = new_handle(library().orv2_array_adopt, cls._tag, address, to_i32(lower),
                            len(cells), Resize(), None)
        adopted._own(handle, cells)
        return adopted

    @classmethod
    def _cells_over(cls, buffer):
        with memoryview(buffer) as view:
            cls._check_elements(view)
            cells = (cls._scalar.cell * (view.nbytes // cls._size())).from_buffer(buffer)
        if len(cells) != 0 and ctypes.addressof(cells) % cls._size() != 0:
            raise RunFailure(INVALID_CALL)
        return cells

    @classmethod
    def _size(cls):
        return ctypes.sizeof(cls._scalar.cell)

    @classmethod
    def _check_elements(cls, view):
        """RunFailure 13 for a buffer of another element type."""
        kind = view.format.lstrip("@=<")
        own = kind == cls._format or {kind, cls._format} == {"i", "l"}
        fits = view.itemsize == cls._size() if own else kind in ("B", "b", "c")
        if not fits or view.nbytes % cls._size() != 0:
            raise RunFailure(TYPE_MISMATCH)

    def view(self):
        """The elements as a memoryview, without copying.

        It keeps the array alive, and is valid until the array is resized: by
        resize(), or by a member that it is handed to.
        """
        info = self._reachable()
        if info.count == 0:
            return memoryview(array.array(self._format))
        cells = (self._scalar.cell * info.count).from_address(self._data())
        cells.owner = self
        return memoryview(cells).cast("B").cast(self._format)

    def __buffer__(self, flags):
        return self.view()

    def _data(self):
        data = c_void_p()
        check(library().orv2_array_data(self._handle, byref(data)))
        return data.value

    def _read(self, info):
        return self.view().tolist() if info.count else []

    def __getitem__(self, index):
        return self._cell(index).value

    def __setitem__(self, index, value):
        self._cell(index).value = self._scalar.convert(value)

    def _cell(self, index):
        place = self._place(index)
        return self._scalar.cell.from_address(self._data() + place * self._size())

    @classmethod
    def _converted(cls, elements):
        elements = list(elements)
        if cls._format != "d" or any(type(element) is not float for element in elements):
            elements = [cls._scalar.convert(element) for element in elements]
        return array.array(cls._format, elements)

    def _fill(self, elements):
        self.view()[:] = memoryview(elements)


class DoubleArray(_NumberArray):
    __slots__ = ()
    __doc__ = "Numbers of 64 bits.\n\n" + GeoArray.__doc__
    _tag = DOUBLE_ARRAY
    _scalar = SCALARS[F64]
    _format = "d"


class SingleArray(_NumberArray):
    __slots__ = ()
    __doc__ = "Numbers of 32 bits.\n\n" + GeoArray.__doc__
    _tag = SINGLE_ARRAY
    _scalar = SCALARS[F32]
    _format = "f"


class LongArray(_NumberArray):
    __slots__ = ()
    __doc__ = "Whole numbers of 32 bits.\n\n" + GeoArray.__doc__
    _tag = LONG_ARRAY
    _scalar = SCALARS[I32]
    _format = "i"


class ShortArray(_NumberArray):
    __slots__ = ()
    __doc__ = "Whole numbers of 16 bits.\n\n" + GeoArray.__doc__
    _tag = SHORT_ARRAY
    _scalar = SCALARS[I16]
    _format = "h"


class StringArray(GeoArray):
    __slots__ = ()
    __doc__ = "Texts.\n\n" + GeoArray.__doc__
    _tag = STRING_ARRAY

    def __getitem__(self, index):
        self._place(index)
        return self._text(index)

    def __setitem__(self, index, text):
        self._place(index)
        self._set_text(index, to_text(text))

    def _text(self, index):
        return units_from(library().orv2_array_get_text, self._handle, index)

    def _set_text(self, index, text):
        check(library().orv2_array_set_text(self._handle, index, *to_units(text)))

    def _read(self, info):
        return [self._text(index) for index in range(info.lower, info.lower + info.count)]

    @classmethod
    def _converted(cls, elements):
        return [to_text(element) for element in elements]

    def _fill(self, texts):
        for index, text in enumerate(texts, self.lower):
            self._set_text(index, text)
