"""Random calls of every member, through the package and through C: the same status, the same
answer and the same values written, bit for bit.

ORV2_ROUNDS=1000000 makes that many calls, ORV2_SEED=1 others.
"""
import ctypes
import math
import os
import random
import struct
import warnings
from ctypes import (
    POINTER, byref, c_char_p, c_int16, c_int32, c_size_t, c_uint16, c_uint32, c_uint64, c_void_p,
)

from support import Case, Value

import orv2_geo
from orv2_geo import (
    DoubleArray, LongArray, Ref, RunFailure, ShortArray, SingleArray, StringArray, _library, omitted,
)

ROUNDS = int(os.environ.get("ORV2_ROUNDS", "20000"))
SEED = int(os.environ.get("ORV2_SEED", "2024"))

I16, I32, F32, F64 = _library.I16, _library.I32, _library.F32, _library.F64
BOOL, TEXT, OBJECT, BYREF = _library.BOOL, _library.TEXT, _library.OBJECT, _library.BYREF
UTF8, OMITTED, NONE = _library.UTF8, _library.OMITTED, _library.NONE

ARRAYS = {_library.DOUBLE_ARRAY: (DoubleArray, "d"), _library.SINGLE_ARRAY: (SingleArray, "f"),
          _library.LONG_ARRAY: (LongArray, "i"), _library.SHORT_ARRAY: (ShortArray, "h"),
          _library.STRING_ARRAY: (StringArray, None)}
CELLS = {I16: ctypes.c_int16, I32: ctypes.c_int32, F32: ctypes.c_float, F64: ctypes.c_double,
         BOOL: ctypes.c_int16, OBJECT: ctypes.c_uint64}
WHOLE = {I16: (-2 ** 15, 2 ** 15 - 1), I32: (-2 ** 31, 2 ** 31 - 1)}

# ---- The library through C ------------------------------------------------------------------


class Info(ctypes.Structure):
    _fields_ = [("type", c_uint16), ("dimensions", c_uint16), ("allocated", c_int16),
                ("locked", c_int16), ("lower", c_int32), ("count", c_uint32)]


SetProperty = ctypes.CFUNCTYPE(c_int32, c_void_p, c_char_p, POINTER(Value))
Call = ctypes.CFUNCTYPE(c_int32, c_void_p, c_char_p, POINTER(Value), c_size_t, POINTER(Value))
Release = ctypes.CFUNCTYPE(None, c_void_p)


class HostObject(ctypes.Structure):
    _fields_ = [("size", c_size_t), ("set_property", SetProperty), ("call", Call),
                ("release", Release)]


_c = ctypes.CDLL(os.environ["ORV2_TEST_LIBRARY"])
for _name, _types in {
        "create": (c_char_p, POINTER(c_uint64)), "release": (c_uint64,),
        "call": (c_uint64, c_size_t, POINTER(Value), c_size_t, POINTER(Value)),
        "array_new": (c_uint16, POINTER(c_uint64)),
        "array_make": (c_uint16, c_int32, c_uint32, c_uint16, POINTER(c_uint64)),
        "array_describe": (c_uint64, POINTER(Info)), "array_data": (c_uint64, POINTER(c_void_p)),
        "array_get_text": (c_uint64, c_int32, POINTER(c_void_p), POINTER(c_size_t)),
        "array_set_text": (c_uint64, c_int32, c_char_p, c_size_t),
        "text_new": (c_char_p, c_size_t, POINTER(c_uint64)),
        "text_get": (c_uint64, POINTER(c_void_p), POINTER(c_size_t)),
        "host_object_new": (POINTER(HostObject), c_void_p, POINTER(c_uint64)),
        "set_failure": (c_int32, c_char_p, c_char_p)}.items():
    getattr(_c, "orv2_" + _name).argtypes = _types


def asked(name, *given):
    status = getattr(_c, "orv2_" + name)(*given)
    assert status == 0, (name, status)


def handle_of(name, *given):
    handle = c_uint64()
    asked(name, *given, byref(handle))
    return handle.value


def units(text):
    encoded = text.encode("utf-16-le", "surrogatepass")
    return encoded, len(encoded) // 2


def text_at(address, count):
    return ctypes.string_at(address, 2 * count.value).decode("utf-16-le", "surrogatepass") \
        if count.value else ""


class Refused(Exception):
    """The package refuses an argument before the call."""


# ---- An argument of each kind: what the package is given, and the same for C ------------------


def as_number(value):
    if isinstance(value, str) or value is None:
        raise Refused(13)
    return -int(value) if isinstance(value, bool) else value


def cell_of(value, type_):
    """What a variable of a type has in its memory for a value."""
    if type_ == BOOL and not isinstance(value, (str, type(None))):
        if isinstance(value, float):
            return -int(value != 0.0)
        value = -int(value) if isinstance(value, bool) else value
        value = value - 0x10000 if 0x8000 <= value <= 0xFFFF else value
        type_ = I16
    number = as_number(value)
    if type_ in WHOLE:
        if isinstance(number, float):
            if not math.isfinite(number):
                raise Refused(6)
            number = round(number)
        if not WHOLE[type_][0] <= number <= WHOLE[type_][1]:
            raise Refused(6)
        return number
    try:
        number = float(number)
    except OverflowError:
        raise Refused(6) from None
    if type_ == F32 and math.isinf(ctypes.c_float(number).value) and not math.isinf(number):
        raise Refused(6)
    return number


class Plain:
    """A number, a text, nothing or an omitted argument."""

    def __init__(self, value):
        self.given = value

    def put(self, slot, parameter, kept, _bound):
        value = self.given
        if value is omitted:
            slot.tag = OMITTED
        elif value is None:
            slot.tag, slot.handle = OBJECT, 0
        elif parameter.tag & ~BYREF == BOOL and isinstance(value, int):
            slot.tag, slot.boolean = BOOL, cell_of(value, BOOL)
        elif isinstance(value, bool):
            slot.tag, slot.boolean = BOOL, -int(value)
        elif isinstance(value, str):
            if "\0" in value:
                handle = handle_of("text_new", *units(value))
                kept.append(lambda: _c.orv2_release(handle))
                slot.tag, slot.handle = TEXT, handle
            else:
                slot.tag, slot.utf8 = UTF8, value.encode("utf-8", "surrogatepass")
                kept.append(slot.utf8)
        elif isinstance(value, int) and -2 ** 31 <= value < 2 ** 31:
            slot.tag, slot.i32 = I32, value
        else:
            slot.tag, slot.f64 = F64, cell_of(value, F64)

    def compare(self, _case):
        pass


class Variable:
    """A Ref."""

    def __init__(self, value):
        self.value, self.given = value, Ref(value)
        self.type = self.cell = self.text = None

    def put(self, slot, parameter, kept, bound):
        type_ = parameter.tag & ~BYREF
        if not (parameter.tag & BYREF and (type_ in CELLS or type_ == TEXT)):
            return Plain(self.value).put(slot, parameter, kept, bound)
        if self.type is None:
            self.enter(type_, kept)
            bound.append(self)
        elif self.type != type_:
            raise Refused(13)
        slot.tag = type_ | BYREF
        if type_ == TEXT:
            slot.handle = self.text
        else:
            slot.pointer = ctypes.addressof(self.cell)
        return None

    def enter(self, type_, kept):
        if type_ == TEXT:
            if not isinstance(self.value, str):
                raise Refused(13)
            self.text = handle_of("text_new", *units(self.value))
            kept.append(lambda: _c.orv2_release(self.text))
        elif type_ == OBJECT:
            if self.value is not None:
                raise Refused(13)
            self.cell = CELLS[type_](0)
        else:
            self.cell = CELLS[type_](cell_of(self.value, type_))
        self.type = type_

    def restore(self):
        self.type = None

    def compare(self, case):
        value = self.given.value
        if self.type is None:
            case.assertIs(type(value), type(self.value))
            case.assertEqual(repr(value), repr(self.value))
        elif self.type == TEXT:
            address, count = c_void_p(), c_size_t()
            asked("text_get", self.text, byref(address), byref(count))
            case.assertEqual(value, text_at(address.value, count))
        elif self.type == OBJECT:
            case.assertIsNone(value)
        elif self.type in (F32, F64):
            case.assertEqual(struct.pack("<d", value), struct.pack("<d", self.cell.value))
        else:
            flag = isinstance(value, bool)
            case.assertEqual(-int(value) if flag else value, self.cell.value)
            case.assertEqual(flag, self.type == BOOL and self.cell.value in (0, -1))


class Array:
    def __init__(self, tag, lower, values, dims=1, fixed=False):
        kind, self.format = ARRAYS[tag]
        self.tag, self.fixed = tag, fixed
        if dims == 2:
            self.given = kind(lower=lower, dims=2)
            self.handle = handle_of("array_make", tag, lower, 1, 2)
        elif values is None:
            self.given, self.handle = kind(), handle_of("array_new", tag)
        else:
            self.given = kind(values, lower=lower)
            if fixed:
                self.given = kind.over(bytearray(bytes(self.given.view())), lower=lower)
            self.fill(lower, values)

    def fill(self, lower, values):
        self.handle = handle_of("array_make", self.tag, lower, len(values), 1)
        if self.format is None:
            for i, text in enumerate(values):
                asked("array_set_text", self.handle, lower + i, *units(text))
        elif values:
            address = c_void_p()
            asked("array_data", self.handle, byref(address))
            ctypes.memmove(address.value, struct.pack("<%d%s" % (len(values), self.format), *values),
                           len(values) * struct.calcsize(self.format))

    def put(self, slot, parameter, _kept, _bound):
        if parameter.use == _library.RESIZED and self.fixed:
            raise Refused(10)
        slot.tag, slot.handle = self.tag | BYREF, self.handle

    def compare(self, case):
        info, given = Info(), self.given
        asked("array_describe", self.handle, byref(info))
        case.assertEqual((given.allocated, given.dims, len(given)),
                         (info.allocated != 0, info.dimensions, info.count))
        if info.allocated:
            case.assertEqual(given.lower, info.lower)
        if info.dimensions == 1 and info.count:
            case.assertEqual(given.tolist() if self.format is None else bytes(given.view()),
                             self.elements(info))

    def elements(self, info):
        address, count = c_void_p(), c_size_t()
        if self.format is not None:
            asked("array_data", self.handle, byref(address))
            return ctypes.string_at(address.value, info.count * struct.calcsize(self.format))
        texts = []
        for i in range(info.count):
            asked("array_get_text", self.handle, info.lower + i, byref(address), byref(count))
            texts.append(text_at(address.value, count))
        return texts

    def end(self):
        _c.orv2_release(self.handle)


class Host:
    """An object of this side that counts what it is told, and has enough of it at times."""

    MOST = 60

    def __init__(self):
        self.told, self.told_through_c = [], []
        self.given = _Sink(self.told)
        self.callbacks = HostObject(ctypes.sizeof(HostObject), SetProperty(self.set_property),
                                    Call(self.call), Release())
        self.handle = handle_of("host_object_new", byref(self.callbacks), None)

    def set_property(self, _, name, value):
        return self.tell(name, value[:1])

    def call(self, _, name, values, count, _result):
        return self.tell(name, values[:count])

    def tell(self, name, values):
        if len(self.told_through_c) == self.MOST:
            _c.orv2_set_failure(1234, b"enough", b"")
            return 1234
        self.told_through_c.append((name.decode(), [_seen(value) for value in values]))
        return 0

    def put(self, slot, parameter, _kept, _bound):
        slot.tag, slot.handle = OBJECT, self.handle
        if parameter.tag & ~BYREF != OBJECT:
            raise Refused(13)

    def compare(self, case):
        case.assertEqual(repr(self.told), repr(self.told_through_c))

    def end(self):
        _c.orv2_release(self.handle)


class _Sink:
    def __init__(self, told):
        self.__dict__["_told"] = told

    def _tell(self, name, values):
        if len(self._told) == Host.MOST:
            raise RunFailure(1234, "enough")
        self._told.append((name, [one.value if isinstance(one, Ref) else one for one in values]))

    def __setattr__(self, name, value):
        self._tell(name, [value])

    def PSet(self, *values):
        self._tell("PSet", values)


def _seen(value):
    type_ = value.tag & ~BYREF
    if value.tag & BYREF:
        found = CELLS[type_].from_address(value.pointer).value
    else:
        found = {I16: value.i16, I32: value.i32, F32: value.f32, F64: value.f64,
                 BOOL: value.boolean}[type_]
    return found != 0 if type_ == BOOL else found


class LibraryObject:
    def __init__(self, pair):
        self.given, self.handle = pair

    def put(self, slot, _parameter, _kept, _bound):
        slot.tag, slot.handle = OBJECT, self.handle

    def compare(self, _case):
        pass


# ---- Random arguments -------------------------------------------------------------------------

NUMBERS = (0, 1, 2, 3, 5, 7, -1, 100, 400, 0.5, 1.5, 2.5, -0.0, 0.001, 1e-300, 1e308, -1e308, 3.5e38,
           float("inf"), float("nan"), True, False, 70000, -40000, 65535, 2 ** 31, -2 ** 40, 2 ** 70)
TEXTS = ("", "1", "1.5", "-3", "x", " 2 ", "é", "a\0b", "\ud800", "1,5")


class Chooser:
    def __init__(self, seed, objects):
        self.random, self.objects = random.Random(seed), objects

    def number(self):
        chance = self.random.random()
        if chance < 0.35:
            return self.random.choice(NUMBERS)
        if chance < 0.6:
            return self.random.randrange(-3, 12)
        return round(self.random.uniform(-50, 50), self.random.randrange(4))

    def array(self, tag):
        chance = self.random.random()
        lower = self.random.choice((0, 0, 0, 1, 1, -3))
        if chance < 0.06:
            return Array(tag, lower, None)
        if chance < 0.09:
            return Array(tag, lower, None, dims=2)
        count = self.random.choice((0, 1, 2, 5, 8, 20))
        if tag == _library.STRING_ARRAY:
            return Array(tag, lower, [self.random.choice(TEXTS) for _ in range(count)])
        whole = tag in (_library.LONG_ARRAY, _library.SHORT_ARRAY)
        values = [self.random.randrange(0, 12) if whole else round(self.random.uniform(-9, 9), 1)
                  for _ in range(count)]
        return Array(tag, lower, values, fixed=chance < 0.15)

    def odd(self):
        return self.random.choice((
            lambda: Plain(None), lambda: Plain(self.random.choice(TEXTS)), lambda: Plain(omitted),
            lambda: self.array(self.random.choice(tuple(ARRAYS))),
            lambda: LibraryObject(self.random.choice(self.objects)),
            lambda: Variable(self.random.choice(TEXTS)), lambda: Variable(None),
            lambda: Plain(10 ** 400)))()

    def fitting(self, parameter):
        type_ = parameter.tag & ~BYREF
        if type_ in ARRAYS:
            return self.array(type_)
        if type_ == OBJECT:
            return Host() if self.random.random() < 0.7 else Plain(None)
        if type_ == TEXT:
            return Variable(self.random.choice(TEXTS))
        value = self.number()
        variable = parameter.use != _library.READ or self.random.random() < 0.3
        return Variable(value) if variable else Plain(value)

    def arguments(self, parameters):
        chosen = []
        for parameter in parameters:
            if chosen and self.random.random() < 0.06:
                chosen.append(self.random.choice(chosen))
            else:
                chosen.append(self.odd() if self.random.random() < 0.03
                              else self.fitting(parameter))
        chance = self.random.random()
        if chance < 0.02:
            return chosen[:-1]
        return chosen + [Plain(1)] if chance < 0.03 else chosen


class Differential(Case):
    def test_random_calls_end_as_they_do_through_c(self):
        classes = list(orv2_geo.classes().values())
        self.objects = [(one(), handle_of("create", one.registered_name.encode()))
                        for one in classes]
        chooser = Chooser(SEED, self.objects)
        members = [(i, member) for i, one in enumerate(classes) for member in one.members]
        self.statuses, quiet = {}, _Quiet()
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")
            for i in range(ROUNDS):
                place, member = chooser.random.choice(members)
                # The system would tell of every form on standard error.
                shows = any(one.tag & ~BYREF not in CELLS for one in member.parameters)
                orv2_geo.set_user_interface(quiet if shows or i % 4 == 0 else None)
                self.once(chooser, place, member)
        orv2_geo.set_user_interface(None)
        self.assertGreater(self.statuses[0], ROUNDS // 4)
        self.assertGreater(len(self.statuses), 5)

    def once(self, chooser, place, member):
        chosen = chooser.arguments(member.parameters)
        kept, bound = [], []
        wanted, answer, values = self.through_c(place, member, chosen, kept, bound)
        called, number = self.objects[place][0], 0
        try:
            result = called._callable[member.position](called, *[one.given for one in chosen])
        except RunFailure as failure:
            result, number = None, failure.number
        with self.subTest(member=member.name, given=[one.given for one in chosen]):
            self.assertEqual(number, wanted)
            self.statuses[number] = self.statuses.get(number, 0) + 1
            if number == 0:
                self.compare_answers(result, answer)
            for one in chosen:
                one.compare(self)
        for one in kept:
            if callable(one):
                one()
        for one in set(chosen):
            if hasattr(one, "end"):
                one.end()

    def through_c(self, place, member, chosen, kept, bound):
        values = (Value * (len(chosen) + 1))()
        answer = Value()
        try:
            for i, one in enumerate(chosen):
                if len(chosen) > len(member.parameters):
                    values[i].tag = OMITTED
                else:
                    one.put(values[i], member.parameters[i], kept, bound)
        except Refused as refusal:
            for one in bound:
                one.restore()
            return refusal.args[0], None, values
        status = _c.orv2_call(self.objects[place][1], member.position, values, len(chosen),
                              byref(answer))
        return status, answer, values

    def compare_answers(self, result, answer):
        if answer.tag == NONE:
            return self.assertIsNone(result)
        if answer.tag in (F32, F64):
            wide = answer.f64 if answer.tag == F64 else answer.f32
            return self.assertEqual(struct.pack("<d", result), struct.pack("<d", wide))
        if answer.tag == BOOL:
            return self.assertIs(result, answer.boolean != 0)
        return self.assertEqual(result, {I16: answer.i16, I32: answer.i32}[answer.tag])


class _Quiet:
    def error_box(self, *_):
        pass

    def show_modal(self, form):
        form.close()
