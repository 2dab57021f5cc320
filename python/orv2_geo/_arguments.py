"""The arguments of one call, from what Python hands in to what the library takes."""

from ctypes import byref

from . import _host
from ._arrays import GeoArray
from ._calls import run
from ._failures import RunFailure
from ._handles import release, text_content
from ._library import BOOL, BYREF, NONE, OBJECT, OMITTED, TEXT, Value
from ._numbers import SCALARS, plain, to_flag
from ._refs import Ref

_variables = frozenset(SCALARS) | {TEXT, OBJECT}  # what a Ref can stand for


def passed(call, parameters, given, source=""):
    """Calls with the values of `given` and answers with the result.

    `parameters` are the tags of the member's parameters; `call` takes the
    values, their count and the place of the result.
    """
    arguments = _Arguments()
    result = Value()
    try:
        values = arguments.take(parameters, given, source)
        try:
            run(call, values, len(given), byref(result))
        finally:
            arguments.settle()
    finally:
        arguments.let_go()
    return _answer(result)


class _Arguments:
    """Values on their way in, and what is lent for them until the call is over."""

    def __init__(self):
        self.bound = []  # variables that this call gave memory to
        self.kept = []   # what the values point at
        self.hosts = {}  # one handle for each object, however often it is given

    def take(self, parameters, given, source):
        values = (Value * max(len(given), 1))()
        try:
            for i, value in enumerate(given):
                self._put(values[i], parameters, i, value, len(given))
        except RunFailure as failure:
            failure.source = failure.source or source
            raise
        return values

    def settle(self):
        for ref in self.bound:
            ref._settle()

    def let_go(self):
        for ref in self.bound:
            ref._let_go()
        for handle in self.hosts.values():
            release(handle)

    def _put(self, slot, parameters, i, value, count):
        if value is _host.omitted or count > len(parameters):
            slot.tag = OMITTED  # the library itself refuses too many
        elif isinstance(value, Ref):
            self._put_ref(slot, parameters[i], value)
        else:
            self._put_value(slot, parameters[i], value)

    def _put_ref(self, slot, parameter, ref):
        tag = parameter & ~BYREF
        if not parameter & BYREF or tag not in _variables:
            return self._put_value(slot, parameter, ref.value)
        if ref._cell is None:
            self.bound.append(ref)
        cell = ref._bind(tag)
        self.kept.append(cell)
        cell.put(slot)

    def _put_value(self, slot, parameter, value):
        if isinstance(value, GeoArray):
            slot.tag, slot.handle = value._tag | BYREF, value._handle
        elif value is None or isinstance(value, _host.Handled):
            slot.tag, slot.handle = OBJECT, _host.lend(value)[0]
        elif parameter & ~BYREF == OBJECT and not isinstance(value, (bool, int, float, str)):
            slot.tag, slot.handle = OBJECT, self._host(value)
        else:
            self._put_plain(slot, parameter, plain(value))

    def _put_plain(self, slot, parameter, value):
        if parameter & ~BYREF == BOOL and isinstance(value, int):
            slot.tag, slot.boolean = BOOL, to_flag(value)
        else:
            self.kept.append(_host.put(slot, value))

    def _host(self, target):
        if id(target) not in self.hosts:
            self.hosts[id(target)] = _host.lend(target)[0]
        return self.hosts[id(target)]


def _answer(result):
    if result.tag == NONE:
        return None
    if result.tag == BOOL:
        return result.boolean != 0
    if result.tag in SCALARS:
        return getattr(result, SCALARS[result.tag].field)
    if result.tag == TEXT:
        try:
            return text_content(result.handle)
        finally:
            release(result.handle)
    return _host.object_behind(result.handle)
