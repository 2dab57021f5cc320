"""Every allocation of the library's refused in turn, in calls of every member."""
import ctypes
import os
import struct
import unittest

from support import Case, declared

import orv2_geo
from orv2_geo import (
    DoubleArray, LongArray, Ref, RunFailure, ShortArray, SingleArray, StringArray, omitted,
)

CALLS = 8  # of a member
ARRAYS = {"D": DoubleArray, "S": SingleArray, "L": LongArray, "H": ShortArray, "T": StringArray}

_refuse = declared("refuse_allocation", ctypes.c_int32)
_in_use = declared("allocations_in_use")


def text_of(content):
    return bytes.fromhex(content).decode("utf-16-be", "surrogatepass")


def number_of(kind, content):
    """A value as Python has it, of a word of the vectors (tests/vectors/values.h)."""
    if kind in "ds":
        return struct.unpack(">" + "df"[kind == "s"], bytes.fromhex(content))[0]
    return content != "0" if kind == "b" else text_of(content) if kind == "t" else int(content)


def array_of(kind, content):
    if content == "-":
        return ARRAYS[kind]()
    shape, elements = content.split(":")
    lower, dims = map(int, shape.split("/"))
    if dims != 1:
        return ARRAYS[kind](dims=dims)
    return ARRAYS[kind]([number_of(kind.lower(), one) for one in elements.split(",")[:-1]], lower)


def seen(value):
    """What can be compared bit by bit."""
    if isinstance(value, float):
        return struct.pack("<d", value)
    if isinstance(value, Ref):
        return seen(value.value)
    if isinstance(value, orv2_geo.GeoArray):
        shape = (value.lower, value.upper) if value.allocated and value.dims == 1 else value.dims
        return shape, [seen(one) for one in value.tolist()] if value.dims == 1 else None
    return value


class Surface:
    """Takes whatever it is told."""
    Visible = Min = max = Value = 0

    def PSet(self, *_):
        pass


class Person:
    """Writes boxes down, and presses the buttons of forms."""

    def __init__(self):
        self.boxes = []
        self.forms = 0

    def error_box(self, text, flags, caption):
        self.boxes.append((text, flags, caption))

    def show_modal(self, form):
        self.forms += 1
        for button in ("cmdDatosaceptar", "cmdCalcular", "cmdEliminar"):
            if button in form.controls:
                form.click(button)


def calls_of_members():
    """Each class with the positions of members and the words of some calls of each."""
    with open(os.environ["ORV2_VECTORS"], encoding="ascii") as file:
        calls, name = {}, None
        for line in file:
            words = line.split()
            if words[0] == "class":
                name = words[1]
            elif words[0] == "call":
                of_member = calls.setdefault((name, int(words[1])), [])
                if len(of_member) < CALLS:
                    of_member.append(words[2:])
    return calls


def with_form(words):
    """The same call with what makes a routine show its form."""
    changes = {"b:0": "b:-1", "d:7ff8000000000000": "d:3f50624dd2f1a9fc"}
    return [changes.get(word, word) for word in words]


def arguments(words, parameters, host):
    given = []
    for word, parameter in zip(words, parameters):
        if word[0] == "=":
            given.append(given[int(word[1:])])
        elif word[0] == "~":
            given.append(omitted)
        else:
            kind, content = word.split(":", 1)
            if kind in ARRAYS:
                given.append(array_of(kind, content))
            elif kind == "o":
                given.append(host if content != "0" else None)
            else:
                value = number_of(kind, content)
                given.append(Ref(value) if parameter.type.endswith("&") else value)
    return given


class Refused(Case):
    def setUp(self):
        self.person, self.host = Person(), Surface()
        orv2_geo.set_user_interface(self.person)
        self.addCleanup(orv2_geo.set_user_interface, None)
        self.faults, self.calls = 0, 0

    def outcome(self, called, member, words, place=-1):
        """Failure, answer, variables and boxes; and whether an allocation was refused."""
        given = arguments(words, member.parameters, self.host)
        del self.person.boxes[:]
        failure, answer = 0, None
        call = called._callable[member.position]
        _refuse(place)
        try:
            answer = call(called, *given)
        except RunFailure as raised:
            failure = raised.number
        except MemoryError:
            failure = 7
        refused = _refuse(-1) != 0
        return (failure, seen(answer), [seen(one) for one in given if one is not self.host],
                list(self.person.boxes)), refused

    def check(self, called, member, words):
        usual, _ = self.outcome(called, member, words)
        place, refused = 0, True
        while refused:
            ended, refused = self.outcome(called, member, words, place)
            if refused and ended != usual:
                self.faults += 1
                told = any(" 7:" in box[0] for box in ended[3])
                self.assertTrue(ended[0] == 7 or told, (member.name, place, ended))
            elif refused:
                self.faults += 1
            else:
                self.assertEqual(ended, usual)
            place += 1 if place < 60 else 17
        self.assertEqual(self.outcome(called, member, words)[0], usual, member.name)
        self.calls += 1

    def test_each_of_every_members(self):
        kept = DoubleArray([1.0])
        if _in_use() == 0 and kept:
            self.skipTest("the sanitizer has the library's memory in its own hands")
        calls, covered = calls_of_members(), 0
        for name, one in orv2_geo.classes().items():
            called = one()
            for member in one.members:
                self.assertIn((name, member.position), calls, "no call of " + member.name)
                for words in calls[name, member.position]:
                    self.check(called, member, words)
                    if with_form(words) != words:
                        self.check(called, member, with_form(words))
                covered += 1
        self.assertEqual(covered, len(calls))
        self.assertGreater(self.faults, 2000)
        self.assertGreater(self.person.forms, 100)
        print(self.faults, "allocations refused in", self.calls, "calls of", covered, "members")

    def test_nothing_is_kept(self):
        """All again, when what a thread learns is learnt: as many are in use as before."""
        calls = calls_of_members()
        made = {name: one() for name, one in orv2_geo.classes().items()}

        def all_of_them():
            for (name, position), some in calls.items():
                for words in some[:3]:
                    self.check(made[name], made[name].members[position], words)
            _refuse(-1)
            return _in_use()

        all_of_them()
        before = all_of_them()
        self.assertEqual(all_of_them(), before)


if __name__ == "__main__":
    unittest.main()
