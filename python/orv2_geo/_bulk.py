"""One member for every row of some columns."""

import numbers
from typing import NamedTuple

from . import _core
from ._arrays import DoubleArray, GeoArray, LongArray, ShortArray, SingleArray
from ._core import Ref, omitted
from ._failures import RunFailure
from ._library import BOOL, BYREF, F32, F64, I16, I32, NONE, READ

_array_of = {F64: DoubleArray, F32: SingleArray, I32: LongArray, I16: ShortArray}
_formats = {F64: "d", F32: "f", I32: "i", I16: "h", BOOL: "h"}
_type_names = {"f64": F64, "f32": F32, "i32": I32, "i16": I16, "bool": BOOL, "variant": F64,
               "none": NONE}


class Bulk(NamedTuple):
    """What a bulk call answers with.

    result   the answers, a row each; None where the member has none
    written  the columns of the parameters that the member writes, by their names
    failed   with failures="mask", whether each row failed; else None
    numbers  with failures="mask", the number of each row's failure, 0 for none; else None

    Columns are ndarrays where one of the given ones is, and else arrays of this package;
    truths are a memoryview.
    """
    result: object
    written: dict
    failed: object
    numbers: object


def bulk(member, /, *columns, failures="raise"):
    """Calls a member for every row of some columns: the same bits as the loop.

        azimuths = orv2_geo.bulk(algorismos.Azimut, dx, dy).written["aZ"]
        inside = orv2_geo.bulk(api.Pto_in_Poligono, xs, ys, len(xs) - 1, px, py).result

    `member` is a member of an object. For each parameter comes a column (a list, an
    array, an ndarray or anything with a buffer), or a value that is the same in every
    row; arrays and objects are the same in every row. Columns have one length.
    A parameter that is written is given the values before the call, or None for 0;
    those at the end may be left out. What was given stays as it was.

    failures   "raise": the first RunFailure is raised, its row in `row`; "mask": every
               row is called, and the answer tells which failed, and with which number.
               What a row wrote before it failed stays written.
    """
    if failures not in ("raise", "mask"):
        raise ValueError('failures is "raise" or "mask"')
    return _Bulk(member, columns).called(failures == "mask")


class _Bulk:
    """The columns of one bulk call, in the shape that the core takes."""

    def __init__(self, member, given):
        self._member = getattr(member, "__func__", None)
        self._object = getattr(member, "__self__", None)
        if not isinstance(self._member, _core.Member):
            raise TypeError("bulk needs a member of an object, such as algorismos.Azimut")
        described = type(self._object).members[self._member.position]
        self._parameters = described.parameters
        self._result = _type_names[described.result]
        if len(given) > len(self._parameters):
            raise TypeError("{}() has {} parameters, {} columns were given".format(
                described.name, len(self._parameters), len(given)))
        given = [*given, *[omitted] * (len(self._parameters) - len(given))]
        columns = [_is_column(*one) for one in zip(self._parameters, given)]
        self._numpy = any(hasattr(type(one), "__array_interface__")
                          for one, column in zip(given, columns) if column)
        self._rows = _length(one for one, column in zip(given, columns) if column)
        self._values = [self._taken(place, one, columns[place]) for place, one in enumerate(given)]

    def called(self, masked):
        result = self._room(self._result)
        numbers = self._room(I32) if masked else None
        try:
            _core.call_rows(self._member, self._object, tuple(self._values), self._rows, result,
                            numbers)
        except RunFailure as failure:
            if failure.member is None:
                failure._of(self._member)
            raise
        written = {one.name: self._shown(value, one.tag & ~BYREF)
                   for one, value in zip(self._parameters, self._values)
                   if one.use != READ and one.tag & ~BYREF in _formats}
        return Bulk(self._shown(result, self._result), written, self._failed(numbers),
                    self._shown(numbers, I32))

    def _taken(self, place, given, is_column):
        try:
            return self._value(self._parameters[place], given, is_column)
        except RunFailure as failure:
            failure._refused(self._member, place, given, self._object.registered_name)
            raise

    def _value(self, parameter, given, is_column):
        """A column of the parameter's own type, or a value for all rows."""
        tag = parameter.tag & ~BYREF
        if tag not in _formats:
            return given
        if is_column:
            return self._column(tag, given, parameter.use != READ)
        if parameter.use == READ:
            return _constant(given)
        value = 0 if given is omitted or given is None else _plain(given)
        column = self._zeros(_array_of.get(tag, ShortArray))
        if value:
            column[:] = self._column(tag, [value] * self._rows, True)
        return column

    def _column(self, tag, given, is_written):
        if tag == BOOL:
            return _flags(given)
        if not is_written and _core.is_column(given, _formats[tag]):
            return given
        return _array_of[tag](given)

    def _room(self, tag):
        """For an answer a row."""
        if tag == NONE:
            return None
        return self._zeros(_array_of.get(tag, ShortArray))

    def _zeros(self, of_class):
        return of_class.sized(0, self._rows - 1) if self._rows else of_class([])

    def _shown(self, column, tag):
        if column is None:
            return None
        if tag == BOOL:
            column = _truths(column)
        if not self._numpy:
            return column
        import numpy  # there is one already: it made one of the columns
        return numpy.asarray(column)

    def _failed(self, numbers):
        return None if numbers is None else self._shown(_truths(numbers), BOOL)


def _plain(value):
    return value.value if isinstance(value, Ref) else value


def _constant(value):
    """The same in every row: a scalar of an array library as its item, as it has a buffer
    like a column."""
    value = _plain(value)
    return _core.plain(value) if getattr(value, "shape", None) == () else value


def _is_column(parameter, given):
    """Whether a value is a column: for a parameter that takes a number, whatever is not
    one, or worth one."""
    if parameter.tag & ~BYREF not in _formats or given is omitted or given is None:
        return False
    if isinstance(given, (numbers.Number, str, Ref)) or getattr(given, "shape", None) == ():
        return False
    return isinstance(given, GeoArray) or hasattr(type(given), "__len__")


def _length(columns):
    lengths = {len(column) for column in columns}
    if not lengths:
        raise TypeError("bulk needs a column; the member itself takes plain values")
    if len(lengths) > 1:
        raise ValueError("columns of different lengths: " + ", ".join(map(str, sorted(lengths))))
    return lengths.pop()


def _flags(given):
    """The 16 bits of flags: a truth is -1 or 0, a whole number its own bits."""
    return ShortArray([_core.flag(value) for value in given])


def _truths(column):
    return memoryview(bytes(value != 0 for value in column)).cast("?")
