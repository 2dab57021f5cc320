"""Failures: the one exception of the library, in words that help; and its warning."""

import locale
import operator
import os
import sys
import warnings

from . import _core
from ._library import (
    BOOL, BYREF, DOUBLE_ARRAY, F32, F64, I16, I32, LONG_ARRAY, OBJECT, READ, SHORT_ARRAY,
    SINGLE_ARRAY, STRING_ARRAY, TEXT,
)

INVALID_CALL = 5
OVERFLOW = 6
SUBSCRIPT_OUT_OF_RANGE = 9
ARRAY_LOCKED = 10
TYPE_MISMATCH = 13
OBJECT_NOT_SET = 91
NO_SUCH_MEMBER = 438
ARGUMENT_NOT_OPTIONAL = 449
WRONG_ARGUMENT_COUNT = 450

_arrays = {
    DOUBLE_ARRAY: "DoubleArray", SINGLE_ARRAY: "SingleArray", LONG_ARRAY: "LongArray",
    SHORT_ARRAY: "ShortArray", STRING_ARRAY: "StringArray",
}
_numbers = (I16, I32, F32, F64, BOOL)


class GeoWarning(UserWarning):
    """What a box of the library only tells, and an answer that is lost because a
    plain number stands where a Ref belongs."""


class RunFailure(Exception):
    """What every call raises when it fails.

    number       the failure's number, such as 9
    description  what went wrong, in words; the library's own unless given
    source       the component that raised it, such as "Orv2_Geo.cgeo_Algorismos"
    member       the member that was called, such as "Azimut"; None elsewhere
    parameter    the parameter whose argument was refused; None when none was
    expected     what the parameter takes, in words
    given        what was given for it, in words
    row          in a bulk call, the row that failed, from 0
    """

    def __init__(self, number, description="", source=""):
        super().__init__(number, description, source)
        self.number = operator.index(number)
        self.source = source
        self.member = None
        self.parameter = None
        self.expected = None
        self.given = None
        self.row = None
        self._description = description
        self._call = None

    @property
    def description(self):
        return self._description or described(self.number)

    def __str__(self):
        words = self._words()
        return words if self.row is None else _words()["row"].format(row=self.row, words=words)

    def _words(self):
        if self.parameter is not None or self.number == WRONG_ARGUMENT_COUNT and self._call:
            return self._argument_words()
        text = str(self.number)
        if self.description:
            text += ": " + self.description
        source = ".".join(part for part in (self.source, self.member) if part)
        return text + " (" + source + ")" if source else text

    def _argument_words(self):
        form = _words()[_form_of(self)]
        told = form.format(call=self._call, parameter=self.parameter, expected=self.expected,
                           given=self.given)
        return "{} ({}, {})".format(told, self.number, self.description)

    def _of(self, member):
        self.member = member.__name__
        self._call = "{}({})".format(member.__name__, ", ".join(member.parameter_names))

    def _blame(self, member, place, given):
        parameter = member.__objclass__.members[member.position].parameters[place]
        self.parameter = parameter.name
        self.expected = expected(parameter, self.number)
        self.given = _shown(given, self.number == OVERFLOW or parameter.use == READ)

    # What the compiled core tells.

    def _refused(self, member, place, given, source):
        """An argument was refused before the call."""
        self.source = self.source or source
        if member is not None:
            self._of(member)
            self._blame(member, place, given)

    def _failed(self, member, arguments):
        """A call failed. Where an argument is why, it is named."""
        self._of(member)
        parameters = member.__objclass__.members[member.position].parameters
        if self.number == WRONG_ARGUMENT_COUNT:
            self.expected, self.given = str(len(parameters)), str(len(arguments))
        place = _guilty(self.number, parameters, arguments)
        if place is not None:
            given = arguments[place] if place < len(arguments) else _core.omitted
            self._blame(member, place, given)


def _guilty(number, parameters, arguments):
    """The place of the argument that a call failed for; None when none is why."""
    guilty = _guilts.get(number)
    if guilty is None or len(arguments) > len(parameters):
        return None
    for place, parameter in enumerate(parameters):
        given = arguments[place] if place < len(arguments) else _core.omitted
        if guilty(parameter, given.value if isinstance(given, _core.Ref) else given):
            return place
    return None


def _is_missing(parameter, given):
    return given is _core.omitted and not parameter.optional


def _is_no_object(parameter, given):
    return parameter.tag & ~BYREF == OBJECT and given is None


def _is_of_another_kind(parameter, given):
    tag = parameter.tag & ~BYREF
    if given is _core.omitted:
        return False
    if tag in _arrays:
        return type(given).__name__ != _arrays[tag]
    if tag == OBJECT:
        return isinstance(given, (int, float, str, _core.GeoArray))
    if tag in _numbers:
        return _number(given) is None
    return tag == TEXT and not isinstance(given, str)


def _is_too_large(parameter, given):
    tag = parameter.tag & ~BYREF
    if tag not in _numbers or given is _core.omitted:
        return False
    number = _number(given)
    return number is not None and not _core.fits(number, tag)


def _number(given):
    """The number that a value is worth, a text as the library reads it; else None."""
    try:
        worth = _core.plain(given)
        return _core.number_of_text(worth) if isinstance(worth, str) else worth
    except RunFailure:
        return None


_guilts = {
    OVERFLOW: _is_too_large, TYPE_MISMATCH: _is_of_another_kind, OBJECT_NOT_SET: _is_no_object,
    ARGUMENT_NOT_OPTIONAL: _is_missing,
}


# ---- Words ------------------------------------------------------------------

_english = {
    "refused": "{call}: {parameter} must be {expected}, not {given}",
    "missing": "{call}: {parameter} is missing; it is {expected}",
    "too many": "{call}: {given} arguments for {expected} parameters",
    "number": "a number", "whole": "a whole number", "flag": "True or False", "text": "a text",
    "Ref number": "a Ref of a number", "Ref whole": "a Ref of a whole number",
    "Ref flag": "a Ref of True or False", "Ref text": "a Ref of a text",
    I16: "a whole number from -32768 to 32767",
    I32: "a whole number from -2147483648 to 2147483647",
    F32: "a number of 32 bits", F64: "a number of 64 bits",
    BOOL: "True, False or a number of 16 bits",
    "array": "a {}", "resizable": "an array that can get another size",
    "sink": "an object with Visible, Min, max and Value, such as orv2_geo.Progress()",
    "object": "an object that has what the member calls",
    "row": "row {row}: {words}", "nothing": "nothing", "Ref of": "a Ref of {}",
}

_spanish = {
    "refused": "{call}: {parameter} debe ser {expected}, no {given}",
    "missing": "{call}: falta {parameter}, que es {expected}",
    "too many": "{call}: {given} argumentos para {expected} parámetros",
    "number": "un número", "whole": "un número entero", "flag": "True o False",
    "text": "un texto",
    "Ref number": "un Ref de un número", "Ref whole": "un Ref de un número entero",
    "Ref flag": "un Ref de True o False", "Ref text": "un Ref de un texto",
    I16: "un número entero de -32768 a 32767",
    I32: "un número entero de -2147483648 a 2147483647",
    F32: "un número de 32 bits", F64: "un número de 64 bits",
    BOOL: "True, False o un número de 16 bits",
    "array": "un {}", "resizable": "una matriz que pueda cambiar de tamaño",
    "sink": "un objeto con Visible, Min, max y Value, como orv2_geo.Progress()",
    "object": "un objeto que tenga lo que el miembro llama",
    "row": "fila {row}: {words}", "nothing": "nada", "Ref of": "un Ref de {}",
}


def _words():
    """In the language of the user's messages, Spanish or English."""
    for variable in ("LC_ALL", "LC_MESSAGES", "LANG"):
        if os.environ.get(variable):
            return _spanish if os.environ[variable].lower().startswith("es") else _english
    language = locale.getlocale()[0] or ""
    return _spanish if language.lower().startswith(("es", "spanish")) else _english


def _form_of(failure):
    if failure.number == WRONG_ARGUMENT_COUNT:
        return "too many"
    return "missing" if failure.number == ARGUMENT_NOT_OPTIONAL else "refused"


def expected(parameter, number=TYPE_MISMATCH):
    """What a parameter takes, in words."""
    words, tag = _words(), parameter.tag & ~BYREF
    if tag in _arrays:
        return words["resizable"] if number == ARRAY_LOCKED else words["array"].format(_arrays[tag])
    if tag == OBJECT:
        return words["sink" if parameter.name.startswith("Progre") else "object"]
    if number == OVERFLOW:
        return words[tag]
    kind = {I16: "whole", I32: "whole", F32: "number", F64: "number", BOOL: "flag"}.get(tag, "text")
    return words[kind if parameter.use == READ else "Ref " + kind]


def _shown(given, by_value):
    """What was given, in words: a number or a text where that is what was wrong, else the
    name of its type."""
    if given is _core.omitted:
        return _words()["nothing"]
    if isinstance(given, _core.Ref):
        return _words()["Ref of"].format(_shown(given.value, by_value))
    if by_value and isinstance(given, (int, float, str)):
        value = repr(given)
        return value if len(value) <= 40 else value[:37] + "..."
    return "None" if given is None else "'{}'".format(type(given).__name__)


def warn(words):
    """A GeoWarning where the package is called from, past what of it is Python."""
    level, frame = 2, sys._getframe(1)
    while frame is not None and frame.f_globals.get("__name__", "").startswith("orv2_geo."):
        level, frame = level + 1, frame.f_back
    warnings.warn(words, GeoWarning, stacklevel=level)


def described(number):
    """The library's own description of a number; empty for a foreign one."""
    return _core.failures().get(number, "")


_core.use("run_failure", RunFailure)
_core.use("warning", GeoWarning)
_core.use("warn", warn)
