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
    """One bulk call: its columns, and the values that are the same in every row."""

    def __init__(self, member, given):
        self._member = getattr(member, "__func__", None)
        self._object = getattr(member, "__self__", None)
        if not isinstance(self._member, _core.Member):
            raise TypeError("bulk needs a member of an object, such as algorismos.Azimut")
        described = type(self._object).members[self._member.position]
        try:
            _core.expect_own_thread(self._object)
        except RunFailure as failure:
            failure.source = self._object.registered_name
            raise
        self._parameters = described.parameters
        self._tags = [one.tag & ~BYREF for one in self._parameters]
        self._result = _type_names[described.result]
        if len(given) > len(self._parameters):
            raise TypeError("{}() has {} parameters, {} columns were given".format(
                described.name, len(self._parameters), len(given)))
        self._given = [*given, *[omitted] * (len(self._parameters) - len(given))]
        self._is_column = [_is_column(*one) for one in zip(self._tags, self._given)]
        columns = [one for one, column in zip(self._given, self._is_column) if column]
        self._numpy = any(hasattr(type(one), "__array_interface__") for one in columns)
        self._rows = _length(columns)

    def called(self, masked):
        try:
            values = [self._value(place) for place in range(len(self._given))]
        except RunFailure:
            return self._called_one_by_one(masked)
        result = self._room(self._result)
        numbers = self._room(I32) if masked else None
        try:
            _core.call_rows(self._member, self._object, tuple(values), self._rows, result, numbers)
        except RunFailure as failure:
            if failure.row is not None:
                failure._failed(self._member, self._row(failure.row))
            raise
        written = {one.name: self._shown(value, tag)
                   for one, tag, value in zip(self._parameters, self._tags, values)
                   if self._is_written(one, tag)}
        return self._answer(result, written, numbers)

    # ---- Row by row, where a value is one that a call alone can convert or refuse ----

    def _called_one_by_one(self, masked):
        columns = [list(one) if column else None
                   for one, column in zip(self._given, self._is_column)]
        results, numbers = [], []
        written = {one.name: [] for one, tag in zip(self._parameters, self._tags)
                   if self._is_written(one, tag)}
        for row in range(self._rows):
            number, result, variables = self._called_row(row, columns, masked)
            numbers.append(number)
            results.append(result)
            for name, variable in variables.items():
                written[name].append(variable.value)
        tags = {one.name: tag for one, tag in zip(self._parameters, self._tags)}
        kept = {name: self._shown(self._kept(column, tags[name]), tags[name])
                for name, column in written.items()}
        return self._answer(self._kept(results, self._result), kept,
                            LongArray(numbers) if masked else None)

    def _called_row(self, row, columns, masked):
        values = [one[row] if one is not None else _plain(given)
                  for one, given in zip(columns, self._given)]
        variables = {}
        for place, parameter in enumerate(self._parameters):
            if self._is_written(parameter, self._tags[place]):
                values[place] = Ref(_start(values[place]))
                variables[parameter.name] = values[place]
        try:
            return 0, self._member(self._object, *_without_end(values)), variables
        except RunFailure as failure:
            if not masked:
                failure.row = row
                raise
            return failure.number, None, variables

    def _kept(self, values, tag):
        """A column of what rows gave; 0 for one that gave nothing of its type."""
        if tag == NONE:
            return None
        if tag == BOOL:
            return _flags(value if isinstance(value, int) else 0 for value in values)
        return _array_of[tag]([value if isinstance(value, (int, float)) else 0 for value in values])

    # ---- Columns ----

    @staticmethod
    def _is_written(parameter, tag):
        return parameter.use != READ and tag in _formats

    def _value(self, place):
        """A column of the parameter's own type, or a value for all rows."""
        parameter, tag, given = self._parameters[place], self._tags[place], self._given[place]
        if tag not in _formats:
            return given
        if self._is_column[place]:
            return self._column(tag, given, parameter.use != READ)
        if parameter.use == READ:
            return _constant(given)
        if given is omitted or given is None:
            return self._zeros(_array_of.get(tag, ShortArray))
        return self._column(tag, [_plain(given)] * self._rows, True)

    def _row(self, row):
        """What is given for a row, for the words of its failure."""
        values = [given[row + given.lower] if isinstance(given, GeoArray) else given[row]
                  if column else given for given, column in zip(self._given, self._is_column)]
        return tuple(0 if self._is_written(one, tag) and value in (None, omitted) else value
                     for one, tag, value in zip(self._parameters, self._tags, values))

    def _column(self, tag, given, is_written):
        if tag == BOOL:
            return _flags(given)
        if not is_written and _core.is_column(given, _formats[tag]):
            return given
        return _array_of[tag](given)

    def _room(self, tag):
        """For an answer a row."""
        return None if tag == NONE else self._zeros(_array_of.get(tag, ShortArray))

    def _zeros(self, of_class):
        return of_class.sized(0, self._rows - 1) if self._rows else of_class([])

    # ---- Answers ----

    def _answer(self, result, written, numbers):
        failed = None if numbers is None else self._shown(_truths(numbers), BOOL)
        return Bulk(self._shown(result, self._result), written, failed, self._shown(numbers, I32))

    def _shown(self, column, tag):
        if column is None:
            return None
        if tag == BOOL:
            column = _truths(column)
        if not self._numpy:
            return column
        import numpy  # there is one already: it made one of the columns
        return numpy.asarray(column)


def _start(given):
    """What a written variable holds before the call; a text is the number that it is read as."""
    if given is omitted or given is None:
        return 0
    if isinstance(given, str):
        try:
            return _core.number_of_text(given)
        except RunFailure:
            pass  # the call says so
    return given


def _without_end(values):
    """Without those at the end that are left out."""
    while values and values[-1] is omitted:
        values = values[:-1]
    return values


def _plain(value):
    return value.value if isinstance(value, Ref) else value


def _constant(value):
    """The same in every row: a scalar of an array library as its item, as it has a buffer
    like a column."""
    value = _plain(value)
    return _core.plain(value) if getattr(value, "shape", None) == () else value


def _is_column(tag, given):
    """Whether a value is a column: for a parameter that takes a number, whatever is not
    one, or worth one."""
    if tag not in _formats or given is omitted or given is None:
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
