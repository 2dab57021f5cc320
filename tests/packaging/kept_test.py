#!/usr/bin/env python3
"""Compares what stays from one release to the next with the files that hold it.

    kept_test.py [--write] LIBRARY SOURCE COMPILER INTERFACE_TEXT VECTORS
    kept_test.py --results VECTORS      those of a library for another processor

The folder kept/ holds, beside this file:
  symbols.txt     what the shared library exports, with versions; weak functions, of which
                  hosts bring their own, are left out
  functions.txt   the declarations and constants of the door for C
  layouts.txt     size and fields of every structure and class that the two doors declare
  vtables.txt     the tables of virtual functions, slot by slot
  Orv2_Geo.idl    the component interfaces: identifiers, order of members, parameters
  results.txt     a digest of every member's answers over thousands of calls, for members
                  whose answers the system's elementary functions have no part in
--write writes them anew: for a release that begins a new major version, or for additions.
"""

import difflib
import hashlib
import json
import pathlib
import re
import subprocess
import sys
import tempfile

KEPT = pathlib.Path(__file__).parent / "kept"
DOORS = "#include <orv2_geo/orv2_geo.h>\n#include <orv2_geo/orv2_geo.hpp>\n"
OURS = re.compile(r"^Class (orv2_(?:geo::)?[\w:]+)$", re.M)

# Run by the debugger, which knows of layouts what the compiler told it.
LAYOUTS = """
import json
for name in json.loads({names!r}):
    shown = gdb.lookup_type(name)
    print(name, shown.sizeof)
    for field in shown.fields():
        if hasattr(field, "bitpos"):
            print("  %d %s %s" % (field.bitpos // 8, field.name, field.type))
print("end")
"""


def output(*command, **named):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE, **named).stdout


def symbols(library):
    told = output("nm", "-D", "--defined-only", library).splitlines()
    return sorted(line.split()[2] for line in told if line.split()[1] not in "AW")


def functions(source, compiler):
    told = output(compiler, "-E", "-P", "-I" + source, "-x", "c", source + "/orv2_geo/orv2_geo.h")
    first = told.index("orv2_version")
    return told[told.rindex("\n", 0, first) + 1:].splitlines()


def described(source, compiler):
    """The layouts and the tables of virtual functions, as lines."""
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        (work / "doors.cpp").write_text(DOORS, encoding="utf-8")
        subprocess.run([compiler, "-std=c++20", "-g", "-fno-eliminate-unused-debug-types",
                        "-femit-class-debug-always",
                        "-fdump-lang-class=doors.class", "-I" + source, "-c", "doors.cpp"],
                       cwd=work, check=True)
        dump = (work / "doors.class").read_text(encoding="utf-8")
        names = sorted(set(OURS.findall(dump)))
        (work / "layouts.py").write_text(LAYOUTS.format(names=json.dumps(names)), encoding="utf-8")
        layouts = output("gdb", "-nx", "-batch", "-x", "layouts.py", "doors.o", cwd=work)
    tables = re.findall(r"^Vtable for orv2_geo::.*?(?=\n\n)", dump, re.M | re.S)
    if not layouts.endswith("end\n"):  # the debugger's own status tells of no failure
        sys.exit("not every layout is known")
    return layouts.splitlines()[:-1], "\n\n".join(sorted(tables)).splitlines()


def results(vectors):
    """A digest for every exact member."""
    digests, exact, name, class_name = {}, {}, None, None
    for line in vectors.read_text(encoding="utf-8").splitlines():
        words = line.split()
        if words[0] == "class":
            class_name = words[1]
        elif words[0] == "member":
            exact[class_name, words[1]] = words[3] if words[2] == "exact" else None
        else:
            if words[0] == "call":
                name = exact[class_name, words[1]]
            if name:
                digests.setdefault(class_name + "." + name, hashlib.sha256()).update(
                    line.encode() + b"\n")
    return ["{} {}".format(key, digest.hexdigest()) for key, digest in digests.items()]


def changes(name, lines):
    """Whether the file holds other lines; what differs is printed."""
    if len(lines) < 10:
        sys.exit("too little is known for " + name)
    change = list(difflib.unified_diff((KEPT / name).read_text(encoding="utf-8").splitlines(),
                                       lines, "kept", "now", lineterm=""))
    print("FAILED" if change else "ok", name)
    print("\n".join(change[:60]))
    return bool(change)


def main(arguments):
    if arguments[0] == "--results":
        return changes("results.txt", results(pathlib.Path(arguments[1])))
    write = arguments[0] == "--write"
    library, source, compiler, interface_text, vectors = map(
        str, map(pathlib.Path.absolute, map(pathlib.Path, arguments[1 if write else 0:])))
    layouts, tables = described(source, compiler)
    now = {
        "symbols.txt": symbols(library),
        "functions.txt": functions(source, compiler),
        "layouts.txt": layouts,
        "vtables.txt": tables,
        "Orv2_Geo.idl": output(interface_text, "idl").splitlines(),
        "results.txt": results(pathlib.Path(vectors)),
    }
    if write:
        for name, lines in now.items():
            (KEPT / name).write_text("\n".join(lines) + "\n", encoding="utf-8")
        return 0
    return any([changes(name, lines) for name, lines in now.items()])


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
