"""Objects of this side as the library sees them: reached by name."""

import ctypes
import inspect
import itertools
import threading
import types

from . import _refs
from ._calls import answering
from ._failures import NO_SUCH_MEMBER, TYPE_MISMATCH, RunFailure, check
from ._handles import Owner, new_handle, new_text, text_content
from ._library import (
    BOOL, BYREF, F64, I32, NONE, OBJECT, OMITTED, TEXT, UTF8, Call, HostObject, Release,
    SetProperty, library,
)
from ._numbers import SCALARS, fits_i32, plain
from ._texts import from_c, to_c


class Omitted:
    """An optional argument left out."""

    __slots__ = ()

    def __repr__(self):
        return "omitted"

    def __reduce__(self):
        return "omitted"


omitted = Omitted()


class Handled(Owner):
    """An object of the library: it crosses as itself."""

    __slots__ = ()


# ---- Lending ----------------------------------------------------------------

_contexts = itertools.count(1)
_targets = {}  # by context, until the library needs the object no longer


def lend(target):
    """A handle for an object, and whether it is to be given back."""
    if target is None:
        return 0, False
    if isinstance(target, Handled):
        return target._handle, False
    if isinstance(target, (bool, int, float, str, Omitted)):
        raise RunFailure(TYPE_MISMATCH)
    return _new_host(target), True


def _new_host(target):
    context = next(_contexts)
    _targets[context] = target
    try:
        return new_handle(library().orv2_host_object_new, _callbacks, context)
    except BaseException:
        del _targets[context]
        raise


def object_behind(handle):
    """The object of the library behind a handle that a callback was shown."""
    if handle == 0:
        return None
    check(library().orv2_reference(handle))
    return _wrapped(handle)


def _wrapped(handle):
    from ._objects import wrapped  # the classes come after the objects
    return wrapped(handle)


# ---- Callbacks --------------------------------------------------------------


@answering
def _set_property(context, name, value):
    with _Received(value, 1) as given:
        set_property(_targets[context], from_c(name), *given)


@answering
def _call(context, name, values, count, result):
    with _Received(values, count) as given:
        _give(result, call(_targets[context], from_c(name), given))


def _release(context):
    _targets.pop(context, None)


# One set for all objects, alive as long as the module.
_callbacks = HostObject(ctypes.sizeof(HostObject), SetProperty(_set_property), Call(_call),
                        Release(_release))


class _Received:
    """The arguments of a callback. Its variables are let go at the end."""

    def __init__(self, values, count):
        self.given = []
        self.refs = []
        for i in range(count):
            self.given.append(self._received(values[i]))

    def __enter__(self):
        return self.given

    def __exit__(self, *_raised):
        for ref in self.refs:
            ref._settle()

    def _received(self, value):
        if not value.tag & BYREF:
            return _by_value(value)
        ref = _refs.Ref._over(_refs.cell_of(value))
        self.refs.append(ref)
        return ref


def _by_value(value):
    tag = value.tag
    if tag == BOOL:
        return value.boolean != 0
    if tag in SCALARS:
        return getattr(value, SCALARS[tag].field)
    if tag == UTF8:
        return from_c(value.utf8)
    if tag == TEXT:
        return text_content(value.handle)
    if tag == OBJECT:
        return object_behind(value.handle)
    if tag in (NONE, OMITTED):
        return omitted
    raise RunFailure(TYPE_MISMATCH)


# ---- Answers and arguments by value -----------------------------------------

# What the last answer of each thread points at, until the library has taken it.
_answer = threading.local()


def _give(result, answer):
    """An answer that is no value of the interface is left out."""
    if not result or answer is None:
        return
    if isinstance(answer, Handled):
        result[0].tag, result[0].handle = OBJECT, answer._handle
        _answer.kept = answer
        return
    try:
        answer = plain(answer)
    except RunFailure:
        return
    _answer.kept = put(result[0], answer)


class _Text(Owner):
    __slots__ = ()

    def __init__(self, text):
        self._own(new_text(text))


def put(slot, value):
    """A plain value, by value. Answers with what must outlive the slot."""
    if isinstance(value, bool):
        slot.tag, slot.boolean = BOOL, -int(value)
    elif isinstance(value, int) and fits_i32(value):
        slot.tag, slot.i32 = I32, value
    elif isinstance(value, str):
        return _put_text(slot, value)
    else:
        slot.tag, slot.f64 = F64, SCALARS[F64].convert(value)
    return None


def _put_text(slot, text):
    if "\0" in text:
        kept = _Text(text)
        slot.tag, slot.handle = TEXT, kept._handle
    else:
        kept = to_c(text)
        slot.tag, slot.utf8 = UTF8, kept
    return kept


# ---- Members by name --------------------------------------------------------


def set_property(target, name, value):
    """Sets an attribute that the object has, or that its class makes up."""
    made_up = _makes_up(type(target), "__setattr__", "__getattr__", "__getattribute__")
    spelled = _spelled(target, name)
    if spelled is None and not made_up:
        raise RunFailure(NO_SUCH_MEMBER)
    try:
        setattr(target, spelled or name, value)
    except AttributeError as refused:
        if made_up or not _from_inside(refused):
            raise RunFailure(NO_SUCH_MEMBER) from refused
        raise


def call(target, name, arguments):
    """Calls a method; an attribute that is none is read, without arguments."""
    member = _member(target, name)
    if callable(member):
        return member(*arguments)
    if arguments:
        raise RunFailure(NO_SUCH_MEMBER)
    return member


def _member(target, name):
    made_up = _makes_up(type(target), "__getattr__", "__getattribute__")
    spelled = _spelled(target, name)
    if spelled is None and not made_up:
        raise RunFailure(NO_SUCH_MEMBER)
    try:
        return getattr(target, spelled or name)
    except AttributeError as missing:
        if made_up or not _from_inside(missing):
            raise RunFailure(NO_SUCH_MEMBER) from missing
        raise


def _spelled(target, name):
    """The attribute's name as the object spells it: exactly so, or else with
    case ignored."""
    try:
        inspect.getattr_static(target, name)
        return name
    except AttributeError:
        pass
    wanted = name.lower()
    return next((other for other in dir(target) if other.lower() == wanted), None)


def _makes_up(of_class, *hooks):
    """Whether the class looks its attributes up in a way of its own."""
    found = (getattr(of_class, hook, None) for hook in hooks)
    return any(hook is not None and not isinstance(hook, types.WrapperDescriptorType)
               for hook in found)


def _from_inside(raised):
    """Whether an exception comes out of the object's own code."""
    return raised.__traceback__.tb_next is not None
