"""What an editor shows, the stub and the docstrings, against the catalogue."""

import ast
import contextlib
import ctypes
import importlib.util
import inspect
import io
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

from support import REPOSITORY, Case

import orv2_geo

REPOSITORY = pathlib.Path(REPOSITORY)
METHOD, PROPERTY_READ, PROPERTY_WRITE = range(3)
READ, WRITTEN, RESIZED = range(3)

READ_TYPES = {"i16": "Whole", "i32": "Whole", "f32": "Real", "f64": "Real", "bool": "Flag",
              "text": "Words"}
WRITTEN_TYPES = {"i16": "Ref[int]", "i32": "Ref[int]", "f32": "Ref[float]", "f64": "Ref[float]",
                 "bool": "Ref[bool]", "text": "Ref[str]"}
RESULTS = {"none": "None", "i16": "int", "i32": "int", "f32": "float", "f64": "float",
           "bool": "bool", "variant": "float"}
OBJECTS = {"Progreso1": "ProgressSink", "ProgressBar1": "ProgressSink", "f": "PointSurface"}
NOT_TOUCHED = {"Ordena_en_X_el_Indice_1Matriz1", "Ordena_en_X_el_Indice_1Matriz2",
               "Quita_Pts_Repetidos_3D"}

# The members that show boxes, as their routines do.
SHOW_BOXES = {
    "Pto_en_Poligono_d", "Pto_en_Poligono", "TF_DistaOrigen_estan_ordenadas", "Pto_in_Poligono",
    "Quita_Puntos_Repetidos_XY_con_indice1", "MaxMin_3Matriz1", "Sumar_a_1Matriz_otra",
    "Restar_a_1Matriz_otra", "Ordena_en_X_el_Indice_1Matriz1", "Ordena_en_X_el_Indice_1Matriz2",
    "Quita_Puntos_Repetidos", "Quita_Puntos_Repetidos_XYZ_con_indice1",
}

_made = []  # keeps the folder alive, where the tests make their own


def load_module(name, path):
    spec = importlib.util.spec_from_file_location(name, path)
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


make_help = load_module("make_help", REPOSITORY / "python" / "make_help.py")


def made_folder():
    """The folder with orv2_geo/_help.py and the stub: the build's, or else one made here."""
    if "ORV2_PYTHON_FOLDER" in os.environ:
        return pathlib.Path(os.environ["ORV2_PYTHON_FOLDER"])
    if not _made:
        _made.append(tempfile.TemporaryDirectory())
        out = pathlib.Path(_made[0].name) / "orv2_geo"
        make_help.main(["--source", str(REPOSITORY), "--out", str(out)])
    return pathlib.Path(_made[0].name)


def use_of(class_index, position, parameter):
    """What the library says a member does with a parameter."""
    told = ctypes.c_int32()
    function = ctypes.CDLL(os.environ["ORV2_TEST_LIBRARY"]).orv2_parameter_use
    function.argtypes = (ctypes.c_size_t,) * 3 + (ctypes.c_void_p,)
    if function(class_index, position, parameter, ctypes.addressof(told)) != 0:
        raise LookupError((class_index, position, parameter))
    return told.value


def every_member():
    """Class index, class and member, for all of the catalogue."""
    for i, of_class in enumerate(orv2_geo.classes().values()):
        for member in of_class.members:
            yield i, of_class, member


class HelpCase(Case):
    @classmethod
    def setUpClass(cls):
        folder = made_folder() / "orv2_geo"
        cls.help = load_module("_help", folder / "_help.py")
        cls.module = ast.parse((folder / "__init__.pyi").read_text(encoding="utf-8"))
        cls.classes = {node.name: node for node in cls.module.body
                       if isinstance(node, ast.ClassDef) and node.name.startswith("cgeo_")}

    def functions(self, class_name):
        """The functions of a class in the stub, in their order."""
        return [node for node in self.classes[class_name].body
                if isinstance(node, ast.FunctionDef)]

    def function(self, class_name, name):
        return next(node for node in self.functions(class_name) if node.name == name)


# ---- The stub ---------------------------------------------------------------


class Stub(HelpCase):
    def test_the_classes_are_those_of_the_catalogue_in_order(self):
        self.assertEqual(list(self.classes), list(orv2_geo.classes()))
        for node in self.classes.values():
            self.assertEqual([ast.unparse(base) for base in node.bases], ["GeoObject"])

    def test_the_members_are_those_of_the_catalogue_in_order(self):
        for name, of_class in orv2_geo.classes().items():
            with self.subTest(name):
                self.assertEqual([node.name for node in self.functions(name)],
                                 [member.name for member in of_class.members])

    def test_properties_have_the_sides_of_the_catalogue(self):
        decorators = {METHOD: [], PROPERTY_READ: ["property"]}
        for name, of_class in orv2_geo.classes().items():
            for node, member in zip(self.functions(name), of_class.members):
                wanted = decorators.get(member.kind, [member.name + ".setter"])
                with self.subTest(member.name):
                    self.assertEqual([ast.unparse(one) for one in node.decorator_list], wanted)

    def test_parameters_have_the_names_and_the_order_of_the_catalogue(self):
        for _, of_class, member in every_member():
            with self.subTest(of_class=of_class.__name__, member=member.name):
                node = self.side(of_class, member)
                self.assertEqual([one.arg for one in node.args.args],
                                 ["self", *(one.name for one in member.parameters)])
                self.assertFalse(node.args.kwonlyargs or node.args.posonlyargs)
                self.assertIsNone(node.args.vararg or node.args.kwarg)

    def test_parameters_have_the_types_of_the_catalogue(self):
        for i, of_class, member in every_member():
            node = self.side(of_class, member)
            for p, one in enumerate(member.parameters):
                use = use_of(i, member.position, p)
                with self.subTest(of_class=of_class.__name__, member=member.name, name=one.name):
                    self.assertEqual(ast.unparse(node.args.args[p + 1].annotation),
                                     self.stub_type(member, one, use))

    def test_parameters_are_optional_as_in_the_catalogue(self):
        for _, of_class, member in every_member():
            node = self.side(of_class, member)
            required = len(node.args.args) - 1 - len(node.args.defaults)
            with self.subTest(of_class=of_class.__name__, member=member.name):
                self.assertEqual([p >= required for p in range(len(member.parameters))],
                                 [one.optional for one in member.parameters])

    def test_results_are_those_of_the_catalogue(self):
        for _, of_class, member in every_member():
            with self.subTest(of_class=of_class.__name__, member=member.name):
                self.assertEqual(ast.unparse(self.side(of_class, member).returns),
                                 RESULTS[member.result])

    def test_creating_by_name_tells_the_class(self):
        told = {}
        for node in self.module.body:
            if isinstance(node, ast.FunctionDef) and node.name == "create":
                name = ast.unparse(node.args.args[0].annotation)
                told[name] = ast.unparse(node.returns)
        wanted = {"Literal[{!r}]".format(of_class.registered_name): name
                  for name, of_class in orv2_geo.classes().items()}
        self.assertEqual(told, {**wanted, "str": "GeoObject"})

    def test_every_public_name_of_the_package_is_in_the_stub(self):
        names = {node.name for node in self.module.body if hasattr(node, "name")}
        names |= {node.target.id for node in self.module.body if isinstance(node, ast.AnnAssign)}
        self.assertLessEqual(set(orv2_geo.__all__), names)

    def side(self, of_class, member):
        """The function of the stub at a member's place."""
        return self.functions(of_class.__name__)[member.position]

    @staticmethod
    def stub_type(member, parameter, use):
        of_type = parameter.type.rstrip("&")
        if of_type.endswith("Array"):
            return of_type
        if of_type == "object":
            return OBJECTS[parameter.name] + (" | None" if member.name in NOT_TOUCHED else "")
        return (READ_TYPES if use == READ else WRITTEN_TYPES)[of_type]


# ---- The docstrings ---------------------------------------------------------


class Docstrings(HelpCase):
    def test_there_is_one_for_each_class_and_member(self):
        self.assertEqual(list(self.help.CLASSES), list(orv2_geo.classes()))
        wanted = dict.fromkeys((of_class.__name__, member.name)
                               for _, of_class, member in every_member())
        self.assertEqual(list(self.help.MEMBERS), list(wanted))

    @unittest.skipUnless(importlib.util.find_spec("orv2_geo._help"), "the build makes the help")
    def test_the_package_shows_them(self):
        for _, owner, member in every_member():
            self.assertEqual(owner.__doc__, self.help.CLASSES[owner.__name__])
            shown = getattr(owner, member.name).__doc__
            self.assertEqual(shown, self.help.MEMBERS[owner.__name__, member.name])

    def test_the_stub_has_the_same(self):
        for name, node in self.classes.items():
            self.assertEqual(ast.get_docstring(node), self.help.CLASSES[name])
            for one in self.functions(name):
                if [ast.unparse(d) for d in one.decorator_list] != [one.name + ".setter"]:
                    with self.subTest(one.name):
                        self.assertEqual(ast.get_docstring(one),
                                         self.help.MEMBERS[name, one.name])

    def test_they_are_written_cleanly(self):
        for text in (*self.help.CLASSES.values(), *self.help.MEMBERS.values()):
            self.assertEqual(text, inspect.cleandoc(text))
            self.assertNotIn("///", text)
            self.assertNotIn("::", text)
            self.assertLess(max(map(len, text.splitlines())), 100)

    def test_parameters_are_listed_as_the_catalogue_has_them(self):
        for i, of_class, member in every_member():
            if member.kind == METHOD:
                wanted = [(one.name, one.type, self.use(i, member, p), self.default(one))
                          for p, one in enumerate(member.parameters)]
                with self.subTest(of_class=of_class.__name__, member=member.name):
                    self.assertEqual(self.listed(of_class, member), wanted)

    def test_the_answer_is_that_of_the_catalogue(self):
        for _, of_class, member in every_member():
            text = self.help.MEMBERS[of_class.__name__, member.name]
            with self.subTest(of_class=of_class.__name__, member=member.name):
                if member.kind == METHOD:
                    self.assertTrue(text.endswith("\n\nAnswer: " + member.result))
                else:
                    self.assertTrue(text.endswith("\n\nf64, read and write."))

    def test_each_begins_with_the_words_of_its_header(self):
        for _, of_class, member in every_member():
            text = self.help.MEMBERS[of_class.__name__, member.name]
            header = next(REPOSITORY.glob("orv2_geo/*/{}.h".format(of_class.__name__)))
            words = re.sub(r"\s*///\s*", " ", header.read_text(encoding="utf-8"))
            said = " ".join(text.split("\n\n")[0].split())
            with self.subTest(of_class=of_class.__name__, member=member.name):
                self.assertIn(said.replace("cgeo_Ordena.", "cgeo_Ordena::"),
                              " ".join(words.split()))

    def test_a_class_lists_its_members_with_their_first_sentences(self):
        for class_name, line in (
                ("cgeo_FuncDeriv", "    0, 1  Pi\n        Storage for the host; nothing in the "
                                   "class reads it.\n    2, 3  RPi\n"),
                ("cgeo_Ordena", "    3  Ordena_LongArray\n        Sorts the numbers LowerBound to "
                                "UpperBound.\n    4  Ordena_StringIndexArray\n")):
            self.assertIn(line, self.help.CLASSES[class_name])
        for name, of_class in orv2_geo.classes().items():
            listed = re.findall(r"^    [\d, ]+  (\w+)$", self.help.CLASSES[name], re.MULTILINE)
            self.assertEqual(listed, list(dict.fromkeys(one.name for one in of_class.members)))

    def test_labelled_paragraphs_stay_apart(self):
        text = self.help.MEMBERS["cgeo_Ordena", "Quita_Puntos_Repetidos_XY_con_indice1"]
        self.assertEqual(re.findall(r"^([A-Z]\w+):(?= )", text, re.MULTILINE), [
            "Units", "Arrays", "Writes", "Choice", "Progress", "Aviso", "Failures", "Source",
            "Progreso1", "Answer"])

    def test_those_that_show_boxes_say_what_comes_of_them(self):
        for key, text in self.help.MEMBERS.items():
            with self.subTest(key):
                self.assertEqual("GeoWarning" in text, key[1] in SHOW_BOXES)
                self.assertEqual("set_user_interface(orv2_geo.console)" in text,
                                 key[1] in SHOW_BOXES)

    def test_those_that_take_a_progress_object_name_a_ready_one(self):
        for _, of_class, member in every_member():
            text = self.help.MEMBERS[of_class.__name__, member.name]
            takes = any(OBJECTS.get(one.name) == "ProgressSink" for one in member.parameters)
            with self.subTest(of_class=of_class.__name__, member=member.name):
                self.assertEqual("orv2_geo.Progress()" in text, takes)
                self.assertEqual("is not touched: None does" in text, member.name in NOT_TOUCHED)

    def listed(self, of_class, member):
        text = self.help.MEMBERS[of_class.__name__, member.name]
        lines = text.split("\n\nParameters:\n")[1].split("\n\nAnswer:")[0].splitlines()
        return [self.parsed(line) for line in lines]

    @staticmethod
    def parsed(line):
        found = re.fullmatch(r"    (\w+) +(\w+&?), (.*?)(?:, optional: (\S+) when left out)?", line)
        name, of_type, use, default = found.groups()
        numbers = {None: None, "False": 0, "0.0": 0}
        return name, of_type, use, numbers[default] if default in numbers else int(default)

    @staticmethod
    def default(parameter):
        return parameter.default if parameter.optional else None

    @staticmethod
    def use(class_index, member, p):
        is_array = member.parameters[p].type.rstrip("&").endswith("Array")
        written = "worked in place" if is_array else "written: a Ref"
        return ("read", written, "resized")[use_of(class_index, member.position, p)]


# ---- The program that makes both --------------------------------------------

HEADER = '''\
#pragma once

namespace orv2_geo {

/// Samples of members.
class ORV2_PUBLIC cgeo_Prueba {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_Prueba";

  /// The members in interface order.
  static const ClassDescription& description();

  /// Storage.
  double Pi = 0.0;

  /// Writes y, \\ of """x""". And more.
  void Uno(const double& x, double& y) const;

  /// Both double.
  float Dos(float x) const;
  float Tres(float x) const;

  /// Sorts.
  void Cuatro(LongArray& A, DoubleArray& B, const std::int32_t& Desde) const;
};

}  // namespace orv2_geo
'''

TABLE = '''\
struct cgeo_Prueba_table {
  using Class = cgeo_Prueba;

  template <class Line>
  static constexpr auto lines() {
    using C = Class;
    constexpr std::int32_t from_array = std::numeric_limits<std::int32_t>::min();
    return std::array{
        Line::template property_read<&C::Pi>("Pi"),
        Line::template property_write<&C::Pi>("Pi"),  // a comment
        Line::template method<&C::Uno, "x", "y">("Uno"),
        Line::template method<&C::Dos, "x">("Dos"),
        Line::template method<&C::Tres, "x">("Tres"),
        Line::template method<&C::Cuatro, "A", resized("B"), optional("Desde", from_array)>(
            "Cuatro"),
    };
  }
};
'''

LIST = '''\
#include "orv2_geo/room/cgeo_Prueba_table.h"

using ClassTables = std::tuple<cgeo_Prueba_table>;
'''

TEMPLATE = '''\
"""Samples."""

# @classes@

# @creation@
'''

FILES = {
    "header": ("orv2_geo/room/cgeo_Prueba.h", HEADER),
    "table": ("orv2_geo/room/cgeo_Prueba_table.h", TABLE),
    "list": ("orv2_geo/library/class_tables.h", LIST),
    "template": ("python/orv2_geo/__init__.pyi.in", TEMPLATE),
}


class Making(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.source = pathlib.Path(folder.name) / "source"
        self.out = pathlib.Path(folder.name) / "out"

    def make(self, of_file="header", old="", new=""):
        """Runs the program over the samples with one text replaced; its status and words."""
        for name, (path, text) in FILES.items():
            if name == of_file and old:
                self.assertEqual(text.count(old), 1, old)
                text = text.replace(old, new)
            (self.source / path).parent.mkdir(parents=True, exist_ok=True)
            (self.source / path).write_text(text, encoding="utf-8")
        return self.run_program()

    def run_program(self):
        said = io.StringIO()
        with contextlib.redirect_stderr(said):
            status = make_help.main(["--source", str(self.source), "--out", str(self.out)])
        return status, said.getvalue()

    def made(self):
        made = load_module("_help", self.out / "_help.py")
        return made, (self.out / "__init__.pyi").read_text(encoding="utf-8")

    def test_the_samples_are_understood(self):
        self.assertEqual(self.make(), (0, ""))
        made, stub = self.made()
        self.assertEqual(made.MEMBERS["cgeo_Prueba", "Uno"],
                         'Writes y, \\ of """x""". And more.\n\nParameters:\n    x  f64&, read\n'
                         '    y  f64&, written: a Ref\n\nAnswer: none')
        self.assertIn('\\ of """x"""', ast.get_docstring(ast.parse(stub).body[1].body[3]))
        self.assertIn("    def Cuatro(self, A: LongArray, B: DoubleArray, "
                      "Desde: Whole = ...) -> None:\n", stub)
        self.assertIn("@Pi.setter\n    def Pi(self, value: Real) -> None: ...", stub)

    def test_arrays_are_told_by_what_happens_to_them(self):
        self.make()
        text = self.made()[0].MEMBERS["cgeo_Prueba", "Cuatro"]
        self.assertIn("    A      LongArray&, worked in place\n    B      DoubleArray&, resized\n"
                      "    Desde  i32&, read, optional: -2147483648 when left out\n", text)

    def test_neighbours_of_one_shape_share_a_comment(self):
        self.make()
        made = self.made()[0].MEMBERS
        self.assertEqual(made["cgeo_Prueba", "Dos"], made["cgeo_Prueba", "Tres"])

    def test_what_is_not_there_or_not_understood_is_told(self):
        for of_file, old, new, told in (
                ("header", "  float Dos(float x) const;\n", "",
                 "no declaration of cgeo_Prueba.Dos"),
                ("header", "  /// Sorts.\n", "", "cgeo_Prueba.Cuatro has no comment"),
                ("header", "  /// Storage.\n", "", "cgeo_Prueba.Pi has no comment"),
                ("header", "Tres(float x)", "Tres(double x)", "cgeo_Prueba.Tres has no comment"),
                ("header", "/// Samples of members.\n", "", "class cgeo_Prueba has no comment"),
                ("header", "Dos(float x)", "Dos(long x)", "unknown type long in cgeo_Prueba.Dos"),
                ("header", "double Pi", "bool Pi", "unknown type bool in cgeo_Prueba.Pi"),
                ("header", "float Dos", "int Dos", "unknown type int in cgeo_Prueba.Dos"),
                ("header", "float Dos", "DoubleArray Dos", "Dos answers with DoubleArray"),
                ("header", "(float x) const;\n  float T", "(float* x) const;\n  float T",
                 "cannot understand 'float* x' of cgeo_Prueba.Dos"),
                ("header", "(const double& x, ", "(const ObjectRef& x, ",
                 "'const ObjectRef& x' of cgeo_Prueba.Uno has no type in the stub"),
                ("header", "double& y)", "double& z)",
                 "Uno has the parameters ['x', 'z'], and in the table ['x', 'y']"),
                ("header", "Dos(float x)", "Uno(float x)", "cgeo_Prueba.Uno is declared twice"),
                ("header", "Dos(float x) const", "operator()(float x) const", "cannot understand"),
                ("header", "};\n", "\n", "class cgeo_Prueba does not end"),
                ("header", "class ORV2_PUBLIC cgeo_Prueba", "class cgeo_Otra",
                 "no class cgeo_Prueba"),
                ("header", "registered_name[]", "name[]", "cannot understand: static"),
                ("header", "/// Both double.", "/// A box is shown.",
                 "cgeo_Prueba.Dos: its comment speaks of a box"),
                ("header", "DoubleArray& B", "const DoubleArray& B", "cannot resize B"),
                ("table", 'Line::template method<&C::Dos, "x">("Dos"),\n', "",
                 "cgeo_Prueba.Dos is declared, but not in the table"),
                ("table", '<&C::Dos, "x">', '<&C::Dos, resized("x")>', "cannot resize x"),
                ("table", 'resized("B")', 'moved("B")', 'cannot understand: , moved("B")'),
                ("table", 'resized("B")', 'resized("B", 1)', "cannot understand"),
                ("table", '"A", ', 'optional("A"), ', "cannot do without A"),
                ("table", "std::numeric_limits<std::int32_t>::min()", "lowest()",
                 "from_array is no number that is known here"),
                ("table", '("Tres"),', '("Tres") + 1,', "cannot understand: + 1"),
                ("table", "property_read<&C::Pi>", "method<&C::Pi>",
                 "Pi stands there as method and property_write"),
                ("table", "method<&C::Dos, ", "property_read<&C::Dos, ", "Dos is no property_read"),
                ("table", "return std::array{", "return std::tuple{", "no lines of a table"),
                ("list", '#include "orv2_geo/room/cgeo_Prueba_table.h"', "",
                 "the table of cgeo_Prueba is not included"),
                ("list", "room/", "other/", "cgeo_Prueba.h is not there"),
                ("list", "std::tuple<cgeo_Prueba_table>", "void", "no list of the classes"),
                ("template", "# @classes@\n", "", "# @classes@ is wanted once")):
            with self.subTest(file=of_file, old=old, new=new):
                shutil.rmtree(self.out, ignore_errors=True)
                status, said = self.make(of_file, old, new)
                self.assertIn(told, said)
                self.assertEqual(status, 1)
                self.assertFalse(self.out.exists())

    def test_a_progress_object_needs_a_word_on_its_use(self):
        status, said = self.make("header", "(const double& x, double& y)",
                                 "(const ObjectRef& Progreso1, double& y)")
        self.assertEqual((status, "in the table ['x', 'y']" in said), (1, True))
        table = self.source / FILES["table"][0]
        table.write_text(TABLE.replace('Uno, "x"', 'Uno, "Progreso1"'), encoding="utf-8")
        status, said = self.run_program()
        self.assertEqual((status, "say in PROGRESS" in said), (1, True))

    def test_a_missing_file_is_told(self):
        for name, (path, _) in FILES.items():
            with self.subTest(name):
                self.make()
                (self.source / path).unlink()
                status, said = self.run_program()
                self.assertEqual((status, pathlib.Path(path).name in said), (1, True))

    def test_what_is_known_of_a_member_that_is_gone_is_told(self):
        make_help.BOXES["cgeo_Prueba", "Nada"] = True
        self.addCleanup(make_help.BOXES.pop, ("cgeo_Prueba", "Nada"))
        status, said = self.make()
        self.assertEqual((status, "cgeo_Prueba.Nada is known here" in said), (1, True))

    def test_it_runs_as_a_program(self):
        self.make("header", "/// Samples of members.\n", "")
        program = [sys.executable, str(REPOSITORY / "python" / "make_help.py"),
                   "--source", str(self.source), "--out", str(self.out)]
        ended = subprocess.run(program, stderr=subprocess.PIPE, check=False)
        self.assertEqual(ended.returncode, 1)
        self.assertTrue(ended.stderr.startswith(b"make_help.py: "))
        self.assertNotIn(b"Traceback", ended.stderr)


class Typed(unittest.TestCase):
    @unittest.skipUnless(shutil.which("mypy"), "needs mypy")
    def test_a_typed_program_is_accepted_and_its_wrong_lines_are_not(self):
        stub = made_folder() / "orv2_geo" / "__init__.pyi"
        client = pathlib.Path(__file__).with_name("typed_client.py")
        checked = subprocess.run(
            ["mypy", "--strict", "--warn-unused-ignores", "--no-error-summary",
             "--cache-dir", os.devnull, str(client), str(stub)],
            env={**os.environ, "MYPYPATH": str(made_folder())}, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, check=False)
        self.assertEqual((checked.returncode, checked.stdout.decode()), (0, ""))
