#!/usr/bin/env python3
"""Breaks one rule at a time and looks whether a test notices.

    mutate.py [--count N] [--seed N] [--rooms ROOM,...] [--workers N] [--out FILE]
    mutate.py --summary FILE...

Each change is made in a copy of the committed tree below build/mutants/: the room is built and
its tests are run, then the tests of all that stands on it. A change that no test notices is
listed with its place. Those that nobody can notice stand, with the reason, in
tests/unnoticed_changes.txt; a summary takes them apart. For a nightly run: a change takes some ten
seconds, one in a header of frame/ a minute.
"""

import argparse
import collections
import concurrent.futures
import hashlib
import io
import json
import pathlib
import random
import re
import subprocess
import sys
import tarfile

ROOT = pathlib.Path(__file__).resolve().parents[1]
COPIES = ROOT / "build/mutants"
UNNOTICED = ROOT / "tests/unnoticed_changes.txt"
SECONDS = {"build": 900, "test": 180}

CXX_ROOMS = ("frame", "platform", "angles", "plane", "survey", "terrain", "sorting", "repeated",
             "dialogs", "arrays", "library", "c_api")

# What is built, and which tests are the room's own; then what stands on all of them.
Room = collections.namedtuple("Room", "folders targets tests")
ROOMS = {
    **{room: Room([f"orv2_geo/{room}"], [f"{room}_tests"], f"^{room}(_[a-zC].*)?$")
       for room in CXX_ROOMS},
    "platform": Room(["orv2_geo/platform", "orv2_geo/platform/posix"], ["platform_tests"],
                     "^platform(_.*)?$"),
    "c_api": Room(["orv2_geo/c_api"], ["all"], "^c_api"),
    "python": Room(["python/core", "python/orv2_geo"], ["all"], r"^python\."),
    "survey_report": Room(["examples/survey_report"], ["survey_report", "survey_report_test"],
                          r"^survey_report\.(?!page$|large)"),
}
ABOVE = (r"^(" + "|".join(CXX_ROOMS) + r"|vectors|packaging_kept|docs_cpp|docs_c)(_.*)?$|^c_api"
         r"|^python\.|^survey_report\.(figures|command_line|real)")


# ---- Changes: how a line of code may be broken

def swapped(pairs):
    return [(re.compile(rf"(?<=[\w)\]] ){re.escape(a)}(?= [\w(\-!.*&])"), b) for a, b in pairs]


COMPARISONS = swapped([("<", "<="), ("<=", "<"), (">", ">="), (">=", ">"), ("==", "!="),
                       ("!=", "=="), ("<", ">"), (">", "<")])
SIGNS = swapped([("+", "-"), ("-", "+"), ("*", "/"), ("/", "*"), ("+=", "-="), ("-=", "+=")])
LOGIC = swapped([("&&", "||"), ("||", "&&"), ("and", "or"), ("or", "and")]) + [
    (re.compile(r"(?<=[(\s])!(?=[\w(])"), ""), (re.compile(r"\bif \((?=[\w.]+\))"), "if (!"),
    (re.compile(r"\bnot (?=\w)"), ""), (re.compile(r"\btrue\b"), "false"),
    (re.compile(r"\bfalse\b"), "true"), (re.compile(r"\bTrue\b"), "False"),
    (re.compile(r"\bFalse\b"), "True")]
CASTS = [(re.compile(re.escape(a)), b) for a, b in (
    ("static_cast<float>", "static_cast<double>"), ("to_i16(", "to_i32("), ("to_i32(", "to_i16("),
    ("static_cast<std::int16_t>", "static_cast<std::int8_t>"),
    ("static_cast<std::int32_t>", "static_cast<std::int16_t>"),
    ("static_cast<std::uint32_t>", "static_cast<std::uint16_t>"),
    ("static_cast<unsigned char>", "static_cast<signed char>"),
    ("std::max(", "std::min("), ("std::min(", "std::max("), ("std::floor(", "std::ceil("),
    ("std::ceil(", "std::floor("), ("std::abs(", "("))]
NUMBER = re.compile(r"(?<![\w.'\"])(\d+\.\d+|\d+)(?=[\s,;)\]}fU]|$)")
ARGUMENTS = re.compile(r"(?<=[\w>])\(([\w.\[\]]+), ([\w.\[\]]+)(?=[,)])")
STATEMENT = re.compile(r"^\s+[\w:.\->\[\]()*&]+(\(.*\)|(\[.*\])?\s[-+*/|&^]?=\s.*|\+\+|--);$")
DECLARED = re.compile(r"^\s*(return|throw|using|const|auto|static|constexpr|template|typedef|goto)\b"
                      r"|^\s*[\w:<>,*& ]+[\w>*&]\s+\w+(\s*[=({].*)?;$")
PLAIN_PYTHON = re.compile(r"^\s+[\w.\[\]]+(\(.*\)|\s[-+*/]?=\s.*)$")


def other_number(text):
    if "." in text:
        return [repr(float(text) + 1.0) if float(text) else "1.0", repr(float(text) / 2.0 or 0.5)]
    return [str(int(text) + 1)] + ([str(int(text) - 1)] if int(text) > 0 else [])


def code_of(line, python):
    """The line without its comment; empty where it is no code."""
    mark = "#" if python else "//"
    code = line.split(f" {mark} ")[0].split(f"  {mark}")[0].rstrip("\n")
    left = code.lstrip()
    if not left or left.startswith((mark, "#", "*", '"', "static_assert", "namespace", "///")):
        return ""
    return code


def inside_text(code, at):
    return code[:at].count('"') % 2 == 1 or code[:at].count("'") % 2 == 1


def changes_of_line(code, python):
    for kind, table in (("comparison", COMPARISONS), ("sign", SIGNS), ("logic", LOGIC), ("cast", CASTS)):
        for pattern, other in table:
            for found in pattern.finditer(code):
                if not inside_text(code, found.start()):
                    yield kind, code[:found.start()] + other + code[found.end():]
    for found in NUMBER.finditer(code):
        if inside_text(code, found.start()):
            continue
        for other in other_number(found.group()):
            yield "constant", code[:found.start()] + other + code[found.end():]
    for found in ARGUMENTS.finditer(code):
        first, second = found.groups()
        if first != second and not inside_text(code, found.start()):
            yield "arguments", f"{code[:found.start()]}({second}, {first}{code[found.end():]}"
    if is_statement(code, python):
        indent = code[:len(code) - len(code.lstrip())]
        yield "deleted", indent + ("pass" if python else ";")


def is_statement(code, python):
    if python:
        return bool(PLAIN_PYTHON.match(code)) and code.count("(") == code.count(")")
    return bool(STATEMENT.match(code)) and not DECLARED.match(code) and \
        code.count("(") == code.count(")")


def changes_of(path):
    """(kind, line from 1, lines taken, the new ones) of everything that can be changed."""
    python = path.suffix == ".py"
    lines = path.read_text(encoding="utf-8").splitlines()
    codes = [code_of(line, python) for line in lines]
    for at, code in enumerate(codes):
        if not code:
            continue
        for kind, other in changes_of_line(code, python):
            yield kind, at + 1, [lines[at]], [other]
        after = codes[at + 1] if at + 1 < len(codes) else ""
        if after and is_statement(code, python) and is_statement(after, python):
            yield "order", at + 1, lines[at:at + 2], [after, code]


def all_changes(room):
    for folder in ROOMS[room].folders:
        for path in sorted((ROOT / folder).iterdir()):
            if path.suffix in (".cpp", ".h", ".py") and "_table" not in path.name and path.is_file():
                for kind, line, old, new in changes_of(path):
                    yield {"room": room, "file": str(path.relative_to(ROOT)), "kind": kind,
                           "line": line, "old": old, "new": new}


def drawn(rooms, count, seed):
    """So many of every room in turn, and in each of every kind in turn."""
    chance = random.Random(seed)
    piles = {}
    for room in rooms:
        kinds = collections.defaultdict(list)
        for change in all_changes(room):
            kinds[change["kind"]].append(change)
        for pile in kinds.values():
            chance.shuffle(pile)
        piles[room] = [change for turn in range(max(map(len, kinds.values())))
                       for pile in kinds.values() for change in pile[turn:turn + 1]]
    chosen = []
    for turn in range(max(map(len, piles.values()))):
        chosen += [pile[turn] for pile in piles.values() if turn < len(pile)]
    return chosen[:count]


# ---- What becomes of a change

class Copy:
    """A tree of its own, with its build."""

    def __init__(self, number):
        self.tree = COPIES / str(number)
        self.build = self.tree / "build"
        self.tree.mkdir(parents=True, exist_ok=True)
        self.take_committed()
        self.run(["cmake", "-G", "Ninja", "-S", self.tree, "-B", self.build, "-DCMAKE_BUILD_TYPE=Release",
                  "-DCMAKE_CXX_FLAGS_RELEASE=-O1", "-DCMAKE_C_FLAGS_RELEASE=-O1", "-DORV2_QT=OFF"],
                 SECONDS["build"], check=True)
        self.run(["cmake", "--build", self.build, "-j", "1"], 3600, check=True)

    # Files that did not change keep their times, and so what was built of them.
    def take_committed(self):
        archive = subprocess.run(["git", "archive", "HEAD"], cwd=ROOT, check=True, capture_output=True)
        with tarfile.open(fileobj=io.BytesIO(archive.stdout)) as files:
            wanted = {one.name: one for one in files if one.isfile()}
            for path in self.tree.rglob("*"):
                name = path.relative_to(self.tree)
                if path.is_file() and name.parts[0] != "build" and str(name) not in wanted:
                    path.unlink()
            for name, one in wanted.items():
                path, content = self.tree / name, files.extractfile(one).read()
                if not path.is_file() or path.read_bytes() != content:
                    path.parent.mkdir(parents=True, exist_ok=True)
                    path.write_bytes(content)
                path.chmod(one.mode)

    def run(self, command, seconds, check=False):
        try:
            done = subprocess.run(command, timeout=seconds, check=check, stdin=subprocess.DEVNULL,
                                  capture_output=True)
            return done.returncode == 0
        except subprocess.TimeoutExpired:
            return False

    def builds(self, targets):
        return self.run(["cmake", "--build", self.build, "-j", "1", "--target", *targets],
                        SECONDS["build"])

    def passes(self, tests):
        return self.run(["ctest", "--test-dir", self.build, "-R", tests, "--timeout", "60",
                         "--stop-on-failure"], SECONDS["test"] * (4 if tests == ABOVE else 1))

    def outcome(self, change):
        path = self.tree / change["file"]
        whole = path.read_text(encoding="utf-8")
        lines = whole.splitlines()
        at = change["line"] - 1
        lines[at:at + len(change["old"])] = change["new"]
        path.write_text("\n".join(lines) + "\n", encoding="utf-8")
        try:
            return self.noticed(ROOMS[change["room"]])
        finally:
            path.write_text(whole, encoding="utf-8")

    def noticed(self, room):
        if not self.builds(room.targets):
            return "not built"
        if not self.passes(room.tests):
            return "noticed by the room"
        if not self.builds(["all"]):
            return "noticed by what is built on it"
        return "noticed above" if not self.passes(ABOVE) else "not noticed"


def work(number, changes, out):
    copy = Copy(number)
    for change in changes:
        change["outcome"] = copy.outcome(change)
        with open(out, "a", encoding="utf-8") as file:
            file.write(json.dumps(change) + "\n")


# ---- What came of all of them

def name_of(change):
    """The same as long as the lines stay the same."""
    text = "\n".join([change["file"], *change["old"], *change["new"]])
    return hashlib.sha256(text.encode()).hexdigest()[:12]


def reasons():
    if not UNNOTICED.exists():
        return {}
    rows = [line.split(maxsplit=1) for line in UNNOTICED.read_text(encoding="utf-8").splitlines()
            if line and not line.startswith("#")]
    return {row[0]: row[1] for row in rows}


def summary(files):
    changes = {}
    for file in files:
        for line in pathlib.Path(file).read_text(encoding="utf-8").splitlines():
            change = json.loads(line)
            changes[name_of(change)] = change
    known = reasons()
    table = collections.defaultdict(collections.Counter)
    gaps = []
    for name, change in changes.items():
        outcome = change["outcome"]
        if outcome == "not noticed":
            outcome = "cannot be noticed" if name in known else "gap"
            if name not in known:
                gaps.append((name, change))
        table[change["room"]]["noticed" if outcome.startswith("noticed") else outcome] += 1
    columns = ("noticed", "cannot be noticed", "gap", "not built")
    print(f"{'room':<16}" + "".join(f"{column:>20}" for column in columns))
    total = collections.Counter()
    for room, counts in table.items():
        total += counts
        print(f"{room:<16}" + "".join(f"{counts[column]:>20}" for column in columns))
    print(f"{'all':<16}" + "".join(f"{total[column]:>20}" for column in columns))
    could = total["noticed"] + total["gap"]
    if could:
        print(f"{100 * total['noticed'] / could:.1f} % of {could} changes that a caller can notice")
    for name, change in gaps:
        print(f"\n{name} {change['file']}:{change['line']} {change['kind']}")
        for mark, lines in (("-", change["old"]), ("+", change["new"])):
            for line in lines:
                print(f"  {mark} {line.strip()}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--rooms", default=",".join(ROOMS))
    parser.add_argument("--workers", type=int, default=2)
    parser.add_argument("--out", default=str(COPIES / "results.jsonl"))
    parser.add_argument("--list", action="store_true", help="only say what would be changed")
    parser.add_argument("--summary", nargs="+", metavar="FILE")
    options = parser.parse_args()
    if options.summary:
        return summary(options.summary)
    changes = drawn(options.rooms.split(","), options.count, options.seed)
    if options.list:
        for change in changes:
            print(f"{change['file']}:{change['line']} {change['kind']}: {change['old'][0].strip()}"
                  f"  ->  {change['new'][0].strip()}")
        return None
    COPIES.mkdir(parents=True, exist_ok=True)
    with concurrent.futures.ThreadPoolExecutor(options.workers) as pool:
        parts = [pool.submit(work, number, changes[number::options.workers], options.out)
                 for number in range(options.workers)]
        for part in parts:
            part.result()
    return summary([options.out])


if __name__ == "__main__":
    sys.exit(main())
