"""The library's objects: one Python class for each class of the catalogue."""

import functools
import inspect
import threading
import types
from typing import NamedTuple, Optional, Tuple

from . import _core, _host
from ._core import Member as _CoreMember
from ._core import omitted
from ._failures import RunFailure
from ._library import (
    ANY, BYREF, METHOD, PROPERTY_READ, PROPERTY_WRITE, RESIZED, WRITTEN, needed,
)

assert _host  # what the library calls on this side's objects is there

_type_names = (
    "none", "i16", "i32", "f32", "f64", "bool", "text", "object", "variant", "DoubleArray",
    "SingleArray", "LongArray", "ShortArray", "StringArray",
)


class _TypeName(str):
    """A type as signatures show it."""

    __slots__ = ()

    def __repr__(self):
        return str(self)


def _type_name(tag):
    return _TypeName(_type_names[tag & ~BYREF] + ("&" if tag & BYREF else ""))


# ---- The catalogue ----------------------------------------------------------


class Parameter(NamedTuple):
    """A parameter: `&` in its type means by reference. An optional one that is
    left out is `default`. `use` is READ, WRITTEN or RESIZED."""
    name: str
    type: str
    tag: int
    optional: bool
    default: Optional[int]
    use: int


class Member(NamedTuple):
    """A member; a property has two, its read side and its write side."""
    position: int
    name: str
    kind: int
    result: str
    parameters: Tuple[Parameter, ...]
    tags: Tuple[int, ...]


def _read_parameter(class_index, position, i):
    name, tag, optional, default, use = _core.described_parameter(class_index, position, i)
    return Parameter(name, _type_name(tag), tag, bool(optional), default if optional else None,
                     use)


def _read_member(class_index, position):
    name, kind, result, count = _core.described_member(class_index, position)
    parameters = tuple(_read_parameter(class_index, position, i) for i in range(count))
    tags = tuple(parameter.tag for parameter in parameters)
    return Member(position, name, kind, _type_name(result), parameters, tags)


# ---- Objects ----------------------------------------------------------------


class GeoObject(_core.Object):
    """An object of the library. It is used on the thread that made it
    (RunFailure 5 elsewhere)."""

    __slots__ = ()

    registered_name = ""
    members = ()
    _callable = ()
    _spelled = {}

    def call(self, member, /, *arguments, **named):
        """Calls a member by its name, case ignored, or by its position in
        interface order, from 0. A property is read without an argument and
        written with one. RunFailure 438 for a member that is not there."""
        if isinstance(member, str):
            member = self._position(member, bool(arguments or named))
        elif not 0 <= member < len(self.members):
            raise RunFailure(438, source=self.registered_name)
        return self._callable[member](self, *arguments, **named)

    def _position(self, name, with_argument):
        position = self._find(name, ANY)
        if with_argument and self.members[position].kind == PROPERTY_READ:
            return self._find(name, PROPERTY_WRITE)
        return position

    def _find(self, name, kind):
        try:
            return _core.find_member(self, name, kind)
        except RunFailure as failure:
            failure.source = failure.source or self.registered_name
            raise

    def __repr__(self):
        return "<{}>".format(self.registered_name)


def create(registered_name):
    """A new object of the class "Orv2_Geo.cgeo_Algorismos" or the like, case
    ignored. RunFailure 429 for an unknown name."""
    needed()
    return _core.create(registered_name)


def wrapped(handle):
    """The object behind a handle."""
    return _core.adopted(tuple(classes().values())[_core.class_of(handle)], handle)


# ---- Classes ----------------------------------------------------------------


_making = threading.RLock()


def classes():
    """The classes by name, in the order of the interface."""
    with _making:
        return _classes()


@functools.lru_cache(maxsize=None)
def _classes():
    needed()
    made = (_new_class(i) for i in range(_core.class_count()))
    return types.MappingProxyType({one.__name__: one for one in made})


def _new_class(index):
    name, registered_name, count = _core.described_class(index)
    members = tuple(_read_member(index, i) for i in range(count))
    called = tuple(_callable(name, index, member) for member in members)
    body = {
        "__slots__": (),
        "__module__": "orv2_geo",
        "__doc__": _class_doc(name, registered_name, members),
        "registered_name": registered_name,
        "members": members,
        "_callable": called,
        "_spelled": {member.name.lower(): member.name for member in members},
    }
    for member in members:
        body[member.name] = _attribute(name, member, members, called)
    made = type(name, (GeoObject,), body)
    for one in called:
        one.__objclass__ = made
    return made


def _callable(class_name, class_index, member):
    one = _CoreMember(class_index, member.position)
    one.__doc__ = _method_doc(class_name, member)
    one.__signature__ = _signature(member)
    return one


def _attribute(class_name, member, members, called):
    if member.kind == METHOD:
        return called[member.position]
    sides = {one.kind: called[one.position] for one in members if one.name == member.name}
    doc = _helped(class_name, member.name) or ""
    return property(sides[PROPERTY_READ], sides.get(PROPERTY_WRITE), doc=doc)


# ---- Documentation ----------------------------------------------------------


@functools.lru_cache(maxsize=None)
def _help():
    """What the headers say, made from them when the library is built; None where that
    was not done."""
    try:
        from . import _help as told
    except ImportError:
        return None
    return told


def _helped(class_name, member_name):
    return _help().MEMBERS[class_name, member_name] if _help() is not None else None


def _signature(member):
    named = [inspect.Parameter("self", inspect.Parameter.POSITIONAL_OR_KEYWORD)]
    for one in member.parameters:
        named.append(inspect.Parameter(
            one.name, inspect.Parameter.POSITIONAL_OR_KEYWORD, annotation=one.type,
            default=omitted if one.optional else inspect.Parameter.empty))
    return inspect.Signature(named, return_annotation=member.result)


_uses = {WRITTEN: ", written: a Ref", RESIZED: ", resized"}


def _parameter_line(parameter, width):
    line = "    {:{}}  {}".format(parameter.name, width, parameter.type)
    line += _uses.get(parameter.use, "")
    if parameter.optional:
        line += ", optional: {} when left out".format(parameter.default)
    return line


def _method_doc(class_name, member):
    helped = _helped(class_name, member.name)
    if helped is not None:
        return helped
    width = max((len(parameter.name) for parameter in member.parameters), default=0)
    lines = ["Member {} of the interface.".format(member.position), "", "Parameters:"]
    lines += [_parameter_line(parameter, width) for parameter in member.parameters]
    lines += ["", "Answer: {}".format(member.result)]
    return "\n".join(lines)


_kinds = {METHOD: "method", PROPERTY_READ: "property, read", PROPERTY_WRITE: "property, write"}


def _class_doc(name, registered_name, members):
    if _help() is not None:
        return _help().CLASSES[name]
    lines = [registered_name, "", "Members in interface order:"]
    lines += ["    {:2}  {} ({})".format(member.position, member.name, _kinds[member.kind])
              for member in members]
    return "\n".join(lines)


_core.use("wrapped", wrapped)
