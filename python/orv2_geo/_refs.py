"""Variables passed by reference, and the memory behind them during a call."""

import ctypes

from . import _host
from ._failures import TYPE_MISMATCH, RunFailure
from ._handles import new_text, release, set_text_content, text_content
from ._library import BYREF, OBJECT, TEXT
from ._numbers import SCALARS, to_text


class Ref:
    """A variable passed by reference.

    `value` reads and writes it. The variable takes the type of the parameter
    that it is given for; after the call, and in the middle of it too, `value`
    shows what the library wrote. The same Ref given twice is one variable.

        bearing = Ref(0.0)
        algorismos.Azimut(1.0, 0.0, bearing)
        bearing.value
    """

    __slots__ = ("_value", "_cell", "__weakref__")

    def __init__(self, value=0):
        self._value = value
        self._cell = None

    @property
    def value(self):
        cell = self._cell
        return self._value if cell is None else cell.read()

    @value.setter
    def value(self, value):
        if self._cell is None:
            self._value = value
        else:
            self._cell.write(value)

    def __float__(self):
        return float(self.value)

    def __int__(self):
        return int(self.value)

    def __bool__(self):
        return bool(self.value)

    def __repr__(self):
        return "Ref({!r})".format(self.value)

    def __reduce__(self):
        return Ref, (self.value,)

    def _bind(self, tag):
        """The memory for a parameter of this type.

        In a call already, the memory is there. RunFailure 13 when it is of
        another type.
        """
        if self._cell is None:
            self._cell = _new_cell(tag, self._value)
        elif self._cell.tag != tag:
            raise RunFailure(TYPE_MISMATCH)
        return self._cell

    def _settle(self):
        """The call is over: keeps the last value and lets go of the memory."""
        self._value = self.value
        self._let_go()

    def _let_go(self):
        """The call was not made: the value is as it was."""
        cell, self._cell = self._cell, None
        if cell is not None:
            cell.close()

    @classmethod
    def _over(cls, cell):
        """A variable of the library's own, for the length of a callback."""
        ref = cls()
        ref._cell = cell
        return ref


def _new_cell(tag, value):
    if tag in SCALARS:
        scalar = SCALARS[tag]
        return ScalarCell(scalar, scalar.cell(scalar.convert(value)))
    if tag == TEXT:
        return TextCell(new_text(to_text(value)), owned=True)
    if tag == OBJECT:
        return ObjectCell(ctypes.c_uint64(), value)
    raise RunFailure(TYPE_MISMATCH)


class ScalarCell:
    """A number or a flag, at an address."""

    __slots__ = ("tag", "scalar", "memory")

    def __init__(self, scalar, memory):
        self.tag = scalar.tag
        self.scalar = scalar
        self.memory = memory

    def put(self, slot):
        slot.tag = self.tag | BYREF
        slot.pointer = ctypes.addressof(self.memory)

    def read(self):
        return self.scalar.read(self.memory.value)

    def write(self, value):
        self.memory.value = self.scalar.convert(value)

    def close(self):
        pass


class TextCell:
    """A text variable of the library."""

    __slots__ = ("handle", "owned")
    tag = TEXT

    def __init__(self, handle, owned):
        self.handle = handle
        self.owned = owned

    def put(self, slot):
        slot.tag = TEXT | BYREF
        slot.handle = self.handle

    def read(self):
        return text_content(self.handle)

    def write(self, value):
        set_text_content(self.handle, to_text(value))

    def close(self):
        if self.owned:
            release(self.handle)


class ObjectCell:
    """A variable that holds a handle. What is written into it stays lent until
    the call is over."""

    __slots__ = ("memory", "lent", "known")
    tag = OBJECT

    def __init__(self, memory, *value):
        self.memory = memory
        self.lent = []
        self.known = {}
        if value:
            self.write(*value)

    def put(self, slot):
        slot.tag = OBJECT | BYREF
        slot.pointer = ctypes.addressof(self.memory)

    def read(self):
        handle = self.memory.value
        return self.known[handle] if handle in self.known else _host.object_behind(handle)

    def write(self, value):
        handle, owned = _host.lend(value)
        if owned:
            self.lent.append(handle)
        self.known[handle] = value
        self.memory.value = handle

    def close(self):
        while self.lent:
            release(self.lent.pop())


def cell_of(value):
    """The library's own variable that a value handed to a callback points at."""
    tag = value.tag & ~BYREF
    if tag in SCALARS:
        scalar = SCALARS[tag]
        return ScalarCell(scalar, scalar.cell.from_address(value.pointer))
    if tag == TEXT:
        return TextCell(value.handle, owned=False)
    if tag == OBJECT:
        return ObjectCell(ctypes.c_uint64.from_address(value.pointer))
    raise RunFailure(TYPE_MISMATCH)
