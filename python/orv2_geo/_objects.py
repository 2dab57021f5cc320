"""The library's objects: one Python class for each class of the catalogue."""

import functools
import inspect
import threading
import types
from ctypes import byref, c_size_t
from typing import NamedTuple, Optional, Tuple

from ._arguments import passed
from ._failures import INVALID_CALL, RunFailure, check
from ._handles import new_handle, release
from ._host import Handled, omitted
from ._library import (
    ANY, BYREF, METHOD, NONE, PROPERTY_READ, PROPERTY_WRITE, ClassInfo, MemberInfo, ParameterInfo,
    library,
)
from ._numbers import to_text
from ._texts import from_c, to_c

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
    left out is `default`."""
    name: str
    type: str
    tag: int
    optional: bool
    default: Optional[int]


class Member(NamedTuple):
    """A member; a property has two, its read side and its write side."""
    position: int
    name: str
    kind: int
    result: str
    parameters: Tuple[Parameter, ...]
    tags: Tuple[int, ...]


# Past the end of every class: the library itself refuses it.
_nobody = Member(2**31 - 1, "", METHOD, _type_name(NONE), (), ())


def _read_parameter(class_index, position, i):
    info = ParameterInfo()
    check(library().orv2_parameter_at(class_index, position, i, byref(info)))
    optional = info.optional != 0
    default = (info.default_value if info.has_default else 0) if optional else None
    return Parameter(from_c(info.name), _type_name(info.type), info.type, optional, default)


def _read_member(class_index, position):
    info = MemberInfo()
    check(library().orv2_member_at(class_index, position, byref(info)))
    parameters = tuple(_read_parameter(class_index, position, i)
                       for i in range(info.parameter_count))
    tags = tuple(parameter.tag for parameter in parameters)
    return Member(position, from_c(info.name), info.kind, _type_name(info.result), parameters, tags)


# ---- Objects ----------------------------------------------------------------


class GeoObject(Handled):
    """An object of the library. It is used on the thread that made it
    (RunFailure 5 elsewhere)."""

    __slots__ = ()

    registered_name = ""
    members = ()
    _spelled = {}

    def __init__(self):
        self._own(new_handle(library().orv2_create, to_c(self.registered_name)))

    def call(self, member, /, *arguments, **named):
        """Calls a member by its name, case ignored, or by its position in
        interface order, from 0. A property is read without an argument and
        written with one. RunFailure 438 for a member that is not there."""
        if isinstance(member, str):
            member = self._position(member, bool(arguments or named))
        if not 0 <= member < len(self.members):
            return _invoke(self, _nobody, (), {})
        return _invoke(self, self.members[member], arguments, named)

    def _position(self, name, with_argument):
        position = self._find(name, ANY)
        if with_argument and self.members[position].kind == PROPERTY_READ:
            return self._find(name, PROPERTY_WRITE)
        return position

    def _find(self, name, kind):
        position = c_size_t()
        try:
            check(library().orv2_find_member(self._handle, to_c(name), kind, byref(position)))
        except RunFailure as failure:
            failure.source = failure.source or self.registered_name
            raise
        return position.value

    def __getattr__(self, name):
        spelled = self._spelled.get(name.lower(), name)
        if spelled == name:
            raise AttributeError("{} has no member {!r}".format(self.registered_name, name))
        return getattr(self, spelled)

    def __setattr__(self, name, value):
        super().__setattr__(self._spelled.get(name.lower(), name), value)

    def __repr__(self):
        return "<{}>".format(self.registered_name)


def _invoke(self, member, arguments, named):
    if threading.get_ident() != self._thread:
        raise RunFailure(INVALID_CALL, source=self.registered_name)  # before anything runs
    if named:
        arguments = _in_order(member, arguments, named)
    call = functools.partial(library().orv2_call, self._handle, member.position)
    return passed(call, member.tags, arguments, self.registered_name)


def _in_order(member, arguments, named):
    """Keyword arguments at their places. TypeError as for any function."""
    names = [parameter.name for parameter in member.parameters]
    for name in named:
        if name not in names:
            raise TypeError("{}() has no parameter {!r}".format(member.name, name))
        if name in names[:len(arguments)]:
            raise TypeError("{}() got {!r} twice".format(member.name, name))
    last = max(names.index(name) for name in named)
    rest = [named.get(name, omitted) for name in names[len(arguments):last + 1]]
    return (*arguments, *rest)


def create(registered_name):
    """A new object of the class "Orv2_Geo.cgeo_Algorismos" or the like, case
    ignored. RunFailure 429 for an unknown name."""
    return wrapped(new_handle(library().orv2_create, to_c(to_text(registered_name))))


def wrapped(handle):
    """The object behind a handle; one reference becomes its own."""
    index = c_size_t()
    try:
        check(library().orv2_class_of(handle, byref(index)))
    except RunFailure:
        release(handle)
        raise
    of_class = tuple(classes().values())[index.value]
    made = of_class.__new__(of_class)
    made._own(handle)
    return made


# ---- Classes ----------------------------------------------------------------


_making = threading.RLock()


def classes():
    """The classes by name, in the order of the interface."""
    with _making:
        return _classes()


@functools.lru_cache(maxsize=None)
def _classes():
    made = (_new_class(i) for i in range(library().orv2_class_count()))
    return types.MappingProxyType({one.__name__: one for one in made})


def _new_class(index):
    info = ClassInfo()
    check(library().orv2_class_at(index, byref(info)))
    name, registered_name = from_c(info.name), from_c(info.registered_name)
    members = tuple(_read_member(index, i) for i in range(info.member_count))
    body = {
        "__slots__": (),
        "__module__": "orv2_geo",
        "__doc__": _class_doc(registered_name, members),
        "registered_name": registered_name,
        "members": members,
        "_spelled": {member.name.lower(): member.name for member in members},
    }
    for member in members:
        body[member.name] = _attribute(name, member, members)
    return type(name, (GeoObject,), body)


def _attribute(class_name, member, members):
    if member.kind == METHOD:
        return _method(class_name, member)
    read = next(one for one in members if one.name == member.name and one.kind == PROPERTY_READ)
    write = next((one for one in members
                  if one.name == member.name and one.kind == PROPERTY_WRITE), None)
    return _property(read, write)


def _method(class_name, member):
    def method(self, /, *arguments, **named):
        return _invoke(self, member, arguments, named)

    method.__name__ = member.name
    method.__qualname__ = class_name + "." + member.name
    method.__module__ = "orv2_geo"
    method.__doc__ = _method_doc(member)
    method.__signature__ = _signature(member)
    return method


def _property(read, write):
    def get(self):
        return _invoke(self, read, (), {})

    def put(self, value):
        _invoke(self, write, (value,), {})

    doc = "{}, {}.".format(read.result, "read and write" if write else "read only")
    return property(get, put if write else None, doc=doc)


# ---- Documentation ----------------------------------------------------------


def _signature(member):
    named = [inspect.Parameter("self", inspect.Parameter.POSITIONAL_OR_KEYWORD)]
    for one in member.parameters:
        named.append(inspect.Parameter(
            one.name, inspect.Parameter.POSITIONAL_OR_KEYWORD, annotation=one.type,
            default=omitted if one.optional else inspect.Parameter.empty))
    return inspect.Signature(named, return_annotation=member.result)


def _parameter_line(parameter, width):
    line = "    {:{}}  {}".format(parameter.name, width, parameter.type)
    if parameter.optional:
        line += ", optional: {} when left out".format(parameter.default)
    return line


def _method_doc(member):
    width = max((len(parameter.name) for parameter in member.parameters), default=0)
    lines = ["Member {} of the interface.".format(member.position), "", "Parameters:"]
    lines += [_parameter_line(parameter, width) for parameter in member.parameters]
    lines += ["", "Answer: {}".format(member.result)]
    return "\n".join(lines)


_kinds = {METHOD: "method", PROPERTY_READ: "property, read", PROPERTY_WRITE: "property, write"}


def _class_doc(registered_name, members):
    lines = [registered_name, "", "Members in interface order:"]
    lines += ["    {:2}  {} ({})".format(member.position, member.name, _kinds[member.kind])
              for member in members]
    return "\n".join(lines)
