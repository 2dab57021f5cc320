#!/usr/bin/env python3
"""Writes docs/members.md, the list of members, from the library's catalogue.

usage: make_member_list.py LIBRARY [--check]

With --check nothing is written: the exit status tells whether the file is the
one that the catalogue gives.
"""
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "python"))
import orv2_geo  # noqa: E402

TARGET = ROOT / "docs" / "members.md"
HEAD = """# Members

Every public class with its members in interface order; positions count from 0. `&` marks a parameter by
reference. Meaning, units, what is written and failures stand beside each declaration in the class's
header, and in the reference of the site that `tools/docs.sh` builds. This page is made from the catalogue
by `tools/make_member_list.py`.
"""


def parameter(one):
    text = f"`{one.name}` {one.type}"
    if one.optional:
        text += " optional" if not one.default else f" optional = {one.default}"
    return text


def member(one):
    kind = {1: " (read)", 2: " (write)"}.get(one.kind, "")
    parameters = ", ".join(parameter(p) for p in one.parameters) or "none"
    return f"| {one.position} | `{one.name}`{kind} | {parameters} | {one.result} |"


def page():
    lines = [HEAD]
    for name in orv2_geo.classes():
        of_class = getattr(orv2_geo, name.rpartition(".")[2])
        lines += [f"## {name}", "", "| | member | parameters | result |", "|---|---|---|---|"]
        lines += [member(one) for one in of_class.members] + [""]
    return "\n".join(lines)


def main():
    orv2_geo.load(sys.argv[1])
    if "--check" in sys.argv[2:]:
        if TARGET.read_text(encoding="utf-8") != page():
            print("docs/members.md is not what the catalogue gives: run tools/make_member_list.py")
            return 1
        return 0
    TARGET.write_text(page(), encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main())
