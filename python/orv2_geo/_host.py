"""Objects of this side as the library sees them: their members by name."""

import inspect
import types

from . import _core
from ._failures import NO_SUCH_MEMBER, RunFailure


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


_core.use("set_property", set_property)
_core.use("call", call)
