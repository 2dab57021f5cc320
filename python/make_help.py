#!/usr/bin/env python3
"""Writes what an editor shows of the package: its stub and its docstrings.

usage: make_help.py --source REPOSITORY --out FOLDER

FOLDER gets _help.py (CLASSES and MEMBERS, the docstrings by name), __init__.pyi (the
hand-written __init__.pyi.in with the classes in it) and py.typed. All of it comes from the
class headers, that is the comments and signatures, and from the class tables, that is the
order of members and the names of parameters. Where these do not say all, a message tells
what is missing, nothing is written, and the exit status is 1.
"""

import argparse
import keyword
import pathlib
import re
import sys
import textwrap
from typing import NamedTuple, Optional, Tuple

WIDTH = 84  # of a docstring, so that it fits a hundred columns at its place in the stub

# C++ types by the names that the interface shows.
TYPES = {
    "std::int16_t": "i16", "std::int32_t": "i32", "float": "f32", "double": "f64", "Bool": "bool",
    "Text": "text", "ObjectRef": "object", "Variant": "variant", "DoubleArray": "DoubleArray",
    "SingleArray": "SingleArray", "LongArray": "LongArray", "ShortArray": "ShortArray",
    "StringArray": "StringArray",
}

# What a parameter of a type is in the stub where it is read, and where it is written.
READ = {
    "i16": "Whole", "i32": "Whole", "f32": "Real", "f64": "Real", "bool": "Flag", "text": "Words",
}
WRITTEN = {
    "i16": "Ref[int]", "i32": "Ref[int]", "f32": "Ref[float]", "f64": "Ref[float]",
    "bool": "Ref[bool]", "text": "Ref[str]",
}
RESULTS = {
    "none": "None", "i16": "int", "i32": "int", "f32": "float", "f64": "float", "bool": "bool",
    "text": "str", "variant": "float",
}
LEFT_OUT = {"i16": "0", "i32": "0", "f32": "0.0", "f64": "0.0", "bool": "False"}

# What an object is, by the name of its parameter.
OBJECTS = {"Progreso1": "ProgressSink", "ProgressBar1": "ProgressSink", "f": "PointSurface"}

# Whether a member touches the progress object that it takes.
PROGRESS = {
    ("cgeo_Ordena", "Quita_Puntos_Repetidos_XY_con_indice1"): True,
    ("cgeo_Matrices", "Ordena_en_X_el_Indice_1Matriz1"): False,
    ("cgeo_Matrices", "Ordena_en_X_el_Indice_1Matriz2"): False,
    ("cgeo_Matrices", "Quita_Puntos_Repetidos_XYZ_con_indice1"): True,
    ("cgeo_Matrices", "Quita_Pts_Repetidos_3D"): False,
}

# Whether a member shows boxes: each whose comment speaks of something like it is here,
# and those too whose comment refers to another member's.
BOXES = {
    ("cgeo_Algorismos", "Pto_en_Poligono_d"): True,
    ("cgeo_Algorismos", "Pto_en_Poligono"): True,
    ("cgeo_Algorismos", "Cortes_R1_con_Pol"): False,  # its box is in the plane
    ("cgeo_Terreno", "TF_DistaOrigen_estan_ordenadas"): True,
    ("cgeo_api", "Pto_in_Poligono"): True,
    ("cgeo_Ordena", "Quita_Puntos_Repetidos_XY_con_indice1"): True,
    ("cgeo_Matrices", "MaxMin_3Matriz1"): True,
    ("cgeo_Matrices", "MaxMin_3Matriz"): False,  # a dialog
    ("cgeo_Matrices", "Sumar_a_1Matriz_otra"): True,
    ("cgeo_Matrices", "Restar_a_1Matriz_otra"): True,
    ("cgeo_Matrices", "Ordena_en_X_el_Indice_1Matriz1"): True,
    ("cgeo_Matrices", "Ordena_en_X_el_Indice_1Matriz2"): True,
    ("cgeo_Matrices", "Quita_Puntos_Repetidos"): True,
    ("cgeo_Matrices", "Quita_Puntos_Repetidos_XYZ_con_indice1"): True,
}
SPEAKS_OF_BOX = re.compile(r"\b(box|boxes|shown)\b")
SPEAKS_OF_DIALOG = re.compile(r"\bdialog\b")

BOX = (
    "Without an installed user interface a box that only tells is a GeoWarning, and one that "
    "tells of a failure that the routine traps raises that RunFailure in the middle of the call. "
    "set_user_interface(orv2_geo.console) and set_user_interface(orv2_geo.screen) give the "
    "library's own behaviour."
)
DIALOG = (
    "The dialog is a form for the installed user interface: orv2_geo.screen draws it, and "
    "orv2_geo.console leaves it as its cancel button would."
)
SINK_USED = (
    "{}: orv2_geo.Progress() is a ready one. None is failure 91, and an object without Visible, "
    "Min or max is failure 438: they end as told above."
)
SINK_UNUSED = "{} is not touched: None does as well as orv2_geo.Progress()."


class Unclear(Exception):
    """Something is missing in the headers, or cannot be understood."""


class Parameter(NamedTuple):
    name: str
    type: str
    by_reference: bool
    written: bool
    resized: bool = False
    optional: bool = False
    default: int = 0


class Declaration(NamedTuple):
    """A public member of a header; a variable has no parameters."""
    name: str
    result: str
    parameters: Optional[Tuple[Parameter, ...]]
    comment: Tuple[str, ...]


class Given(NamedTuple):
    """A parameter as a table names it."""
    name: str
    resized: bool
    optional: bool
    default: int


class Line(NamedTuple):
    """A line of a table."""
    kind: str
    declared: str
    parameters: Tuple[Given, ...]
    name: str


class Member(NamedTuple):
    """A method, or both sides of a property. Its positions are those of the interface."""
    name: str
    positions: Tuple[int, ...]
    kinds: Tuple[str, ...]
    result: str
    parameters: Tuple[Parameter, ...]
    comment: Tuple[str, ...]


class Class(NamedTuple):
    name: str
    registered_name: str
    comment: Tuple[str, ...]
    members: Tuple[Member, ...]


# ---- Headers ----------------------------------------------------------------


class Header:
    """The public face of a class, read from its header line by line."""

    def __init__(self, path, name):
        self.path = path
        self.name = name
        self.comment = ()
        self.registered_name = None
        self.declarations = {}
        self._read(path.read_text(encoding="utf-8").splitlines())

    def _read(self, lines):
        first = self._first_line(lines)
        self.comment = self._comment_above(lines, first)
        if not self.comment:
            raise Unclear(f"{self.path}: class {self.name} has no comment")
        try:
            last = lines.index("};", first)
        except ValueError:
            raise Unclear(f"{self.path}: class {self.name} does not end") from None
        self._read_body(lines[first + 1:last])
        if self.registered_name is None:
            raise Unclear(f"{self.path}: class {self.name} has no registered_name")

    def _first_line(self, lines):
        opening = re.compile(rf"class (ORV2_PUBLIC )?{self.name} {{")
        for i, line in enumerate(lines):
            if opening.fullmatch(line):
                return i
        raise Unclear(f"{self.path}: no class {self.name}")

    @staticmethod
    def _comment_above(lines, first):
        start = first
        while start > 0 and lines[start - 1].startswith("///"):
            start -= 1
        return tuple(without_slashes(line) for line in lines[start:first])

    def _read_body(self, lines):
        access, comment, above, statement = "private", [], None, ""
        for line in (line.strip() for line in lines):
            if line.startswith("///"):
                comment.append(without_slashes(line))
            elif re.fullmatch(r"(public|protected|private):", line):
                access = line[:-1]
            elif line and not line.startswith("//"):
                statement = f"{statement} {line}".strip()
                if statement.endswith(";"):
                    if access == "public":
                        above = self._take(statement, tuple(comment), above)
                    comment, statement = [], ""
            elif not line:
                comment, above = [], None
        if statement:
            raise Unclear(f"{self.path}: cannot understand: {statement}")

    def _take(self, statement, comment, above):
        """Keeps a declaration. One of the same shape right below another shares its
        comment."""
        if statement.startswith("static "):
            self._take_static(statement)
            return None
        made = self._declaration(statement, comment)
        if not comment and above is not None and shape(above) == shape(made):
            made = made._replace(comment=above.comment)
        if not made.comment:
            raise Unclear(f"{self.path}: {self.name}.{made.name} has no comment")
        if made.name in self.declarations:
            raise Unclear(f"{self.path}: {self.name}.{made.name} is declared twice")
        self.declarations[made.name] = made
        return made

    def _take_static(self, statement):
        found = re.fullmatch(r'static constexpr char registered_name\[\] = "(.+)";', statement)
        if found:
            self.registered_name = found.group(1)
        elif statement != "static const ClassDescription& description();":
            raise Unclear(f"{self.path}: cannot understand: {statement}")

    def _declaration(self, statement, comment):
        method = re.fullmatch(r"([\w:]+) (\w+)\((.*)\)( const)?;", statement)
        if method:
            result, name, parameters = method.group(1, 2, 3)
            return Declaration(name, self._result(result, name),
                               self._parameters(parameters, name), comment)
        variable = re.fullmatch(r"([\w:]+) (\w+) = [\w.]+;", statement)
        if variable:
            type_name, name = variable.groups()
            return Declaration(name, self._type(type_name, name), None, comment)
        raise Unclear(f"{self.path}: cannot understand: {statement}")

    def _result(self, text, member):
        result = "none" if text == "void" else self._type(text, member)
        if result not in RESULTS:
            raise Unclear(f"{self.path}: {self.name}.{member} answers with {text}, "
                          "which has no type in the stub")
        return result

    def _parameters(self, text, member):
        return tuple(self._parameter(one.strip(), member) for one in text.split(",") if one.strip())

    def _parameter(self, text, member):
        found = re.fullmatch(r"(const )?([\w:]+)(&)? (\w+)", text)
        if not found:
            raise Unclear(f"{self.path}: cannot understand {text!r} of {self.name}.{member}")
        constant, type_name, by_reference, name = found.groups()
        of_type = self._type(type_name, member)
        written = bool(by_reference) and not constant
        if not stub_type(name, of_type, written):
            raise Unclear(f"{self.path}: {text!r} of {self.name}.{member} has no type in the stub")
        return Parameter(name, of_type, bool(by_reference), written)

    def _type(self, text, member):
        if text not in TYPES:
            raise Unclear(f"{self.path}: unknown type {text} in {self.name}.{member}")
        return TYPES[text]


def shape(declaration):
    return declaration.result, declaration.parameters


def without_slashes(line):
    return line.strip()[3:].replace(" ", "", 1)


# ---- Tables -----------------------------------------------------------------

_NAME = r'"(\w+)"'
_PARAMETER = re.compile(
    rf'\s*,\s*(?:{_NAME}|(optional|resized)\(\s*{_NAME}\s*(?:,\s*([\w-]+)\s*)?\))')
_LINE = re.compile(
    r"\s*Line::template\s+(method|property_read|property_write)\s*<\s*&C::(\w+)"
    r'((?:\s*,\s*(?:"\w+"|\w+\([^()]*\)))*)\s*>\s*\(\s*' + _NAME + r"\s*\)\s*,?")
_CONSTANT = re.compile(r"constexpr\s+[\w:]+\s+(\w+)\s*=\s*([^;]+);")
_KNOWN_VALUES = {
    "std::numeric_limits<std::int32_t>::min()": -2**31,
    "std::numeric_limits<std::int32_t>::max()": 2**31 - 1,
}


class Table:
    """The lines of a class's table."""

    def __init__(self, path):
        self.path = path
        text = re.sub(r"//[^\n]*", "", path.read_text(encoding="utf-8"))
        body = re.search(r"return std::array\s*\{(.*?)\};", text, re.DOTALL)
        if not body:
            raise Unclear(f"{path}: no lines of a table")
        self._constants = dict(_CONSTANT.findall(text))
        self.lines = tuple(self._lines(body.group(1)))

    def _lines(self, text):
        at = 0
        while text[at:].strip():
            found = _LINE.match(text, at)
            if not found:
                self._unclear(text[at:])
            kind, declared, parameters, name = found.groups()
            yield Line(kind, declared, tuple(self._parameters(parameters)), name)
            at = found.end()

    def _parameters(self, text):
        at = 0
        while text[at:].strip():
            found = _PARAMETER.match(text, at)
            if not found or (found.group(2) == "resized" and found.group(4)):
                self._unclear(text[at:])
            plain, marker, marked, default = found.groups()
            yield Given(plain or marked, marker == "resized", marker == "optional",
                        self._number(default) if default else 0)
            at = found.end()

    def _number(self, text):
        value = self._constants.get(text, text).strip()
        if value in _KNOWN_VALUES:
            return _KNOWN_VALUES[value]
        try:
            return int(value)
        except ValueError:
            raise Unclear(f"{self.path}: {text} is no number that is known here") from None

    def _unclear(self, text):
        raise Unclear(f"{self.path}: cannot understand: {' '.join(text.split())[:90]}")


# ---- Both together ----------------------------------------------------------


def read_classes(source):
    """The classes in the order of the interface."""
    tables = source / "orv2_geo" / "library" / "class_tables.h"
    if not tables.exists():
        raise Unclear(f"{tables} is not there")
    text = tables.read_text(encoding="utf-8")
    includes = dict(re.findall(r'#include "(orv2_geo/[\w/]+/(\w+)_table\.h)"', text))
    paths = {name: source / path for path, name in includes.items()}
    listed = re.search(r"ClassTables\s*=\s*std::tuple<([^>]*)>", text)
    if not listed:
        raise Unclear(f"{tables}: no list of the classes")
    names = [one.strip()[:-len("_table")] for one in listed.group(1).split(",")]
    for name in names:
        if name not in paths:
            raise Unclear(f"{tables}: the table of {name} is not included")
    return tuple(read_class(paths[name], name) for name in names)


def read_class(table_path, name):
    header_path = table_path.with_name(name + ".h")
    for path in (header_path, table_path):
        if not path.exists():
            raise Unclear(f"{path} is not there")
    header, table = Header(header_path, name), Table(table_path)
    made = Class(name, header.registered_name, header.comment,
                 tuple(members_of(header, table)))
    known = {member.name for member in made.members}
    for declared in header.declarations:
        if declared not in {line.declared for line in table.lines}:
            raise Unclear(f"{table_path}: {name}.{declared} is declared, but not in the table")
    for class_name, member in (*PROGRESS, *BOXES):
        if class_name == name and member not in known:
            raise Unclear(f"{table_path}: {name}.{member} is known here, but not in the table")
    return made


def members_of(header, table):
    """The members in interface order, the two sides of a property as one."""
    positions = {}
    for i, line in enumerate(table.lines):
        positions.setdefault(line.name, []).append(i)
    for name, places in positions.items():
        kinds = tuple(table.lines[i].kind for i in places)
        if kinds not in (("method",), ("property_read",), ("property_read", "property_write")):
            raise Unclear(f"{table.path}: {header.name}.{name} stands there as "
                          + " and ".join(kinds))
        yield member_of(header, table.lines[places[0]], tuple(places), kinds)


def member_of(header, line, positions, kinds):
    declared = header.declarations.get(line.declared)
    if declared is None:
        raise Unclear(f"{header.path}: no declaration of {header.name}.{line.declared}")
    if (line.kind == "method") != (declared.parameters is not None):
        raise Unclear(f"{header.path}: {header.name}.{line.name} is no {line.kind}")
    return Member(line.name, positions, kinds, declared.result,
                  parameters_of(header, line, declared), declared.comment)


def parameters_of(header, line, declared):
    where = f"{header.path}: {header.name}.{line.name}"
    of_header = declared.parameters or ()
    names = [one.name for one in of_header], [one.name for one in line.parameters]
    if names[0] != names[1]:
        raise Unclear(f"{where} has the parameters {names[0]}, and in the table {names[1]}")
    for one in of_header:
        if keyword.iskeyword(one.name):
            raise Unclear(f"{where} has a parameter {one.name}, which is no name in Python")
    return tuple(parameter_of(where, *both) for both in zip(of_header, line.parameters))


def parameter_of(where, declared, given):
    if given.resized and not (declared.written and is_array(declared.type)):
        raise Unclear(f"{where} cannot resize {given.name}: it writes no such array")
    if given.optional and declared.type not in LEFT_OUT:
        raise Unclear(f"{where} cannot do without {given.name}: nothing is known of one left out")
    return declared._replace(resized=given.resized, optional=given.optional,
                             default=given.default)


def is_array(type_name):
    return type_name.endswith("Array")


# ---- Docstrings -------------------------------------------------------------

# A line that begins a paragraph of its own, such as "Failures: ".
_LABELLED = re.compile(r"(\w+):( +)(?=\S)")
_OWN_PARAGRAPH = ("Failures", "Source")


def paragraphs(comment):
    """The paragraphs of a comment, each on one line; with True those that begin with a label
    and stand by themselves."""
    found, fresh = [], True
    for line, following in zip(comment, (*comment[1:], "")):
        labelled = is_labelled(line, following)
        if line.strip():
            if fresh or labelled or is_past_label(line, found[-1]):
                found.append(([], labelled))
            found[-1][0].append(line)
        fresh = not line.strip()
    return [(joined(lines), labelled) for lines, labelled in found]


def is_labelled(line, following):
    label = _LABELLED.match(line)
    return bool(label) and (len(label.group(2)) > 1 or following.startswith("  ")
                            or label.group(1) in _OWN_PARAGRAPH)


def is_past_label(line, paragraph):
    """Whether a line stands below a labelled paragraph whose lines are set in."""
    lines, labelled = paragraph
    return (labelled and len(lines) > 1 and lines[1].startswith("  ")
            and not line.startswith("  "))


def joined(lines):
    """One line, with C++'s way of naming a member turned into Python's."""
    text = " ".join(" ".join(lines).split())
    return re.sub(r"\b(cgeo_\w+)::", r"\1.", text)


def wrapped(text, indent="", hanging=""):
    return textwrap.fill(text, WIDTH, initial_indent=indent, subsequent_indent=indent + hanging,
                         break_long_words=False, break_on_hyphens=False)


def shown_comment(comment):
    """The paragraphs, wrapped; labelled ones follow each other without a gap."""
    text, before = "", False
    for paragraph, labelled in paragraphs(comment):
        if text:
            text += "\n" if labelled and before else "\n\n"
        text += wrapped(paragraph, hanging="    " if labelled else "")
        before = labelled
    return text


def first_sentence(comment):
    text, _ = paragraphs(comment)[0]
    return re.split(r"(?<=\.)\s", text, maxsplit=1)[0]


def shown_type(parameter):
    return parameter.type + ("&" if parameter.by_reference else "")


def shown_use(parameter):
    if is_array(parameter.type):
        if parameter.resized:
            return "resized"
        return "worked in place" if parameter.written else "read"
    return "written: a Ref" if parameter.written else "read"


def shown_default(parameter):
    return str(parameter.default) if parameter.default else LEFT_OUT[parameter.type]


def parameter_line(parameter, width):
    line = f"    {parameter.name:{width}}  {shown_type(parameter)}, {shown_use(parameter)}"
    if parameter.optional:
        line += f", optional: {shown_default(parameter)} when left out"
    return line


def parameter_list(member):
    if not member.parameters:
        return "Parameters: none"
    width = max(len(one.name) for one in member.parameters)
    return "\n".join(["Parameters:", *(parameter_line(one, width) for one in member.parameters)])


def remarks(of_class, member):
    """What the comment leaves to say about boxes and progress objects."""
    key, text = (of_class.name, member.name), " ".join(member.comment)
    if SPEAKS_OF_BOX.search(text) and key not in BOXES:
        raise Unclear(f"{of_class.name}.{member.name}: its comment speaks of a box; "
                      "say in BOXES whether it shows one")
    if SPEAKS_OF_DIALOG.search(text):
        yield DIALOG
    if BOXES.get(key):
        yield BOX
    for one in member.parameters:
        if OBJECTS.get(one.name) == "ProgressSink" and one.type == "object":
            yield (SINK_USED if touches_progress(key) else SINK_UNUSED).format(one.name)


def touches_progress(key):
    if key not in PROGRESS:
        raise Unclear("{}.{}: say in PROGRESS whether it touches its progress object".format(*key))
    return PROGRESS[key]


def is_property(member):
    return member.kinds[0] != "method"


def member_doc(of_class, member):
    parts = [shown_comment(member.comment), *map(wrapped, remarks(of_class, member))]
    if is_property(member):
        sides = "read and write" if len(member.kinds) > 1 else "read only"
        return "\n\n".join([*parts, f"{member.result}, {sides}."])
    return "\n\n".join([*parts, parameter_list(member), f"Answer: {member.result}"])


def class_doc(of_class):
    lines = ["Members in interface order:"]
    for member in of_class.members:
        places = ", ".join(map(str, member.positions))
        lines += [f"    {places}  {member.name}",
                  wrapped(first_sentence(member.comment), indent=" " * 8)]
    return "\n\n".join([shown_comment(of_class.comment),
                        f"Registered as {of_class.registered_name}.", "\n".join(lines)])


# ---- The files --------------------------------------------------------------


def literal(text):
    """A text as Python spells it, line breaks as they are."""
    text = text.replace("\\", "\\\\").replace('"""', '\\"\\"\\"')
    return '"""' + (text[:-1] + '\\"' if text.endswith('"') else text) + '"""'


def quoted(text, indent):
    """A docstring at its place."""
    if "\n" not in text:
        return literal(text)
    return literal(textwrap.indent(text, indent).lstrip() + "\n" + indent)


def entry(key, text):
    return f"    {key}: " + literal("\n" + text).replace("\n", "\\\n", 1) + ","


def quoted_name(*names):
    return ", ".join(f'"{name}"' for name in names)


def help_module(classes):
    of_classes = [entry(quoted_name(one.name), class_doc(one)) for one in classes]
    of_members = [entry(f"({quoted_name(one.name, member.name)})", member_doc(one, member))
                  for one in classes for member in one.members]
    lines = ['"""The docstrings of the classes and their members. Made by make_help.py."""', "",
             "CLASSES = {", *of_classes, "}", "", "MEMBERS = {", *of_members, "}", ""]
    return "\n".join(lines)


def stub_type(name, type_name, written, unused=False):
    """The stub's type of a parameter; None when it has none."""
    if is_array(type_name):
        return type_name
    if type_name == "object" and not written and name in OBJECTS:
        return OBJECTS[name] + (" | None" if unused else "")
    return (WRITTEN if written else READ).get(type_name)


def stub_parameter(of_class, member, one):
    sink = one.type == "object" and OBJECTS[one.name] == "ProgressSink"
    unused = sink and not touches_progress((of_class.name, member.name))
    text = f"{one.name}: {stub_type(one.name, one.type, one.written, unused)}"
    return text + (" = ..." if one.optional else "")


def stub_method(of_class, member):
    parameters = ["self", *(stub_parameter(of_class, member, one) for one in member.parameters)]
    head = wrapped_call(f"    def {member.name}(", parameters, f") -> {RESULTS[member.result]}:")
    return f"{head}\n        {quoted(member_doc(of_class, member), ' ' * 8)}"


def wrapped_call(start, parameters, end):
    line = start + ", ".join(parameters) + end
    if len(line) <= 100:
        return line
    listed = textwrap.wrap(", ".join(one.replace(" ", "\0") for one in parameters), 91)
    inner = "\n".join(" " * 8 + one for one in listed).replace("\0", " ")
    return f"{start}\n{inner},\n    {end}"


def stub_property(of_class, member):
    type_name = RESULTS[member.result]
    lines = ["    @property", f"    def {member.name}(self) -> {type_name}:",
             f"        {quoted(member_doc(of_class, member), ' ' * 8)}"]
    if len(member.kinds) > 1:
        lines += [f"    @{member.name}.setter",
                  f"    def {member.name}(self, value: {READ[member.result]}) -> None: ..."]
    return "\n".join(lines)


def stub_class(of_class):
    made = [f"class {of_class.name}(GeoObject):", f"    {quoted(class_doc(of_class), '    ')}"]
    for member in of_class.members:
        shown = stub_property if is_property(member) else stub_method
        made += ["", shown(of_class, member)]
    return "\n".join(made)


def stub_creation(of_class):
    return (f'@overload\ndef create(registered_name: Literal["{of_class.registered_name}"]'
            f") -> {of_class.name}: ...")


def stub(template, classes):
    """The hand-written stub with the classes at its markers."""
    text = template.read_text(encoding="utf-8")
    parts = {"# @classes@": "\n\n\n".join(map(stub_class, classes)),
             "# @creation@": "\n".join(map(stub_creation, classes))}
    for marker, made in parts.items():
        if text.count(marker + "\n") != 1:
            raise Unclear(f"{template}: {marker} is wanted once, on a line of its own")
        text = text.replace(marker + "\n", made + "\n")
    return text


def main(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--source", type=pathlib.Path, required=True)
    parser.add_argument("--out", type=pathlib.Path, required=True)
    given = parser.parse_args(arguments)
    try:
        classes = read_classes(given.source)
        template = given.source / "python" / "orv2_geo" / "__init__.pyi.in"
        if not template.exists():
            raise Unclear(f"{template} is not there")
        files = {"_help.py": help_module(classes), "__init__.pyi": stub(template, classes),
                 "py.typed": ""}
    except Unclear as told:
        print(f"make_help.py: {told}", file=sys.stderr)
        return 1
    given.out.mkdir(parents=True, exist_ok=True)
    for name, text in files.items():
        (given.out / name).write_text(text, encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main())
