#!/usr/bin/env python3
"""Compares the pages with each other and with the library.

    pages_test.py LIBRARY

Both languages have the same headings and, but for the words of comments, the same examples; links
lead somewhere; every group of members in a class's guide has a picture; the failures are the
library's own list; the reference tells of every member of the catalogue what it means, with units,
what it writes and how it fails.
"""

import ctypes
import re
import sys

from pages import FENCE, ROOT, english_pages, spanish

sys.path.insert(0, str(ROOT / "docs" / "site"))
import reference  # noqa: E402

# For those who work on the library, and pages that are made or measured from it.
ENGLISH_ALONE = {"docs/layout.md", "docs/members.md", "docs/trust.md"}
TYPES = {1: "i16", 2: "i32", 3: "f32", 4: "f64", 5: "bool", 6: "text", 7: "object", 8: "variant",
         9: "DoubleArray", 10: "SingleArray", 11: "LongArray", 12: "ShortArray", 13: "StringArray"}
BYREF = 0x100
PICTURE = re.compile(r"!\[[^\]]+\]\(\.\./pictures/\w+\.svg\)")
COMMENTS = {"c": "///?", "cpp": "///?", "cmake": "#", "python": "#", "sh": "#", "vbs": "'"}
READ, WRITTEN, RESIZED = range(3)

failed = []


def expect(holds, what):
    if not holds:
        failed.append(what)
        print("FAILED", what)


# ---- Both languages ---------------------------------------------------------


def code_alone(language, code):
    """An example without the words of its comments, which are in the page's language."""
    if language not in COMMENTS:
        return code
    return re.sub(rf"[ \t]*(?<!\S)({COMMENTS[language]}) .*$", r" \1", code, flags=re.M)


def skeleton(text):
    """What both languages share, in its order: levels of headings, examples with what is said of
    them, pictures, and the figures in the rows of tables."""
    parts, end = [], 0
    for fence in [*FENCE.finditer(text), None]:
        between = text[end:fence.start() if fence else len(text)]
        parts += [re.sub(r"\D", "", row) for row in re.findall(r"^\|.*", between, re.M)]
        parts += re.findall(r"^(#+) |(<!-- .*? -->)|!\[[^\]]*\]\([^)]*?([\w.]+)\)", between, re.M)
        if fence:
            parts.append((fence[1], code_alone(*fence.groups())))
            end = fence.end()
    return parts


def compare_languages():
    for page in english_pages():
        name = str(page.relative_to(ROOT))
        if name in ENGLISH_ALONE:
            print("in English alone:", name)
            continue
        other = spanish(page)
        expect(other.exists(), f"{name} stands in Spanish")
        if not other.exists():
            continue
        here, there = (skeleton(one.read_text(encoding="utf-8")) for one in (page, other))
        for one, its_other in zip([*here, None], [*there, None]):
            expect(one == its_other, f"{name}: {one} and in Spanish {its_other}")
            if one != its_other:
                break
    known = {spanish(page) for page in english_pages()}
    for page in (ROOT / "docs" / "es").rglob("*.md"):
        expect(page in known, f"{page.relative_to(ROOT)} stands in English")


def follow_links():
    """In the sources, as a browser of files shows them."""
    for page in [*english_pages(), *map(spanish, english_pages())]:
        if page.exists():
            text = FENCE.sub("", page.read_text(encoding="utf-8"))
            for link in re.findall(r"\]\(([^)#\s]+)", text):
                expect((page.parent / link).exists(), f"{page.relative_to(ROOT)}: {link} is there")


def find_pictures():
    """The other language has the same."""
    guides = sorted((ROOT / "docs" / "guides").glob("*.md"))
    expect({guide.stem for guide in guides} == set(reference.class_names(ROOT)),
           "every class has a guide")
    for guide in guides:
        groups = re.split(r"^## (.+)\n", FENCE.sub("", guide.read_text(encoding="utf-8")), flags=re.M)
        expect(len(groups) > 1, f"{guide.name} has groups")
        for name, text in zip(groups[1::2], groups[2::2]):
            expect(PICTURE.search(text), f"{guide.name}: {name} has a picture")


# ---- The library ------------------------------------------------------------


class ClassInfo(ctypes.Structure):
    _fields_ = [("name", ctypes.c_char_p), ("registered_name", ctypes.c_char_p),
                ("member_count", ctypes.c_size_t)]


class MemberInfo(ctypes.Structure):
    _fields_ = [("name", ctypes.c_char_p), ("kind", ctypes.c_int32), ("result", ctypes.c_uint16),
                ("parameter_count", ctypes.c_size_t)]


class ParameterInfo(ctypes.Structure):
    _fields_ = [("name", ctypes.c_char_p), ("type", ctypes.c_uint16), ("optional", ctypes.c_int16),
                ("has_default", ctypes.c_int16), ("default_value", ctypes.c_int32)]


def at(function, made, *places):
    status = function(*(ctypes.c_size_t(place) for place in places), ctypes.byref(made))
    assert status == 0, (function, places, status)
    return made


def compare_failures(library):
    listed, number, words = [], ctypes.c_int32(), ctypes.c_char_p()
    while library.orv2_failure_at(ctypes.c_size_t(len(listed)), ctypes.byref(number),
                                  ctypes.byref(words)) == 0:
        listed.append((str(number.value), words.value.decode()))
    for name in ("docs/failures.md", "docs/es/failures.md"):
        told = re.findall(r"^\| (\d+) \| ([^|]+?) \|", (ROOT / name).read_text(encoding="utf-8"), re.M)
        expect(bool(listed) and told == listed, f"{name} has the library's failures")


def shown_use(type_name, use):
    if use == RESIZED:
        return "resized"
    if use == WRITTEN:
        return "worked in place" if type_name.endswith("Array") else "written"
    return "read"


def compare_parameters(library, places, of_member, part):
    rows = re.findall(r"^\| `(\w+)` \| ([^|]+) \| ([^|]+) \| ([^|]+) \|$", part, re.M)
    written = []
    for i in range(of_member.parameter_count):
        info = at(library.orv2_parameter_at, ParameterInfo(), *places, i)
        use = at(library.orv2_parameter_use, ctypes.c_int32(), *places, i).value
        name, type_name = info.name.decode(), TYPES[info.type & ~BYREF]
        shown = type_name + ("&" if info.type & BYREF else "")
        row = rows[i] if i < len(rows) else ("", "", "", "")
        where = f"{of_member.name.decode()}, parameter {name}"
        expect(row[:2] == (name, shown), f"{where}: {row[:2]} for {(name, shown)}")
        expect(bool(row[2].strip()), f"{where} has a unit")
        expect(row[3].split(",")[0] == shown_use(type_name, use), f"{where}: {row[3]}")
        expect(("optional" in row[3]) == bool(info.optional), f"{where} is optional or not")
        written += [f"`{name}`"] if use != READ else []
    expect(len(rows) == of_member.parameter_count, f"{of_member.name.decode()}: its parameters")
    return ", ".join(written) or "nothing"


def compare_member(library, places, parts):
    of_member = at(library.orv2_member_at, MemberInfo(), *places)
    name = of_member.name.decode()
    part = parts.get(name, "")
    expect(bool(part), f"{name} is in the reference")
    told = dict(re.findall(r"^\| (Answer|Written|Failures|Position) \| (.+) \|$", part, re.M))
    expect(set(told) == {"Answer", "Written", "Failures", "Position"}, f"{name}: what it tells")
    if not part or not told:
        return
    meaning = part.split("```\n")[1].split("\n|")[0].strip()
    expect(len(meaning) > 10, f"{name} has a meaning")
    expect(str(places[1]) in re.findall(r"\d+", told["Position"]), f"{name}: its position")
    if of_member.kind == 0:
        written = compare_parameters(library, places, of_member, part)
        expect(told["Written"] == written, f"{name}: {told['Written']} for {written}")
    if of_member.kind != 2:
        answer = TYPES.get(of_member.result, "none")
        expect(told["Answer"].split(",")[0] == answer, f"{name}: its answer")
        expect(answer == "none" or "," in told["Answer"], f"{name}: the unit of its answer")


def compare_reference(library):
    pages = reference.pages(ROOT)
    library.orv2_class_count.restype = ctypes.c_size_t
    count = library.orv2_class_count()
    expect(count == len(pages), "one page for each class")
    for i in range(count):
        of_class = at(library.orv2_class_at, ClassInfo(), i)
        page = pages[of_class.name.decode() + ".md"]
        parts = dict(re.findall(r"^## (\w+)\n(.*?)(?=^## |\Z)", page, re.M | re.S))
        for member in range(of_class.member_count):
            compare_member(library, (i, member), parts)


def main():
    library = ctypes.CDLL(sys.argv[1])
    compare_languages()
    follow_links()
    find_pictures()
    compare_failures(library)
    compare_reference(library)
    print("FAILED" if failed else "ok", "the pages")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
