#!/usr/bin/env python3
"""Breaks one rule at a time and looks whether a test notices.

    mutate.py [--count N] [--seed N] [--rooms ROOM,...] [--workers N] [--out FILE] [--again]
    mutate.py --summary FILE...

Each change is made in a copy of the committed tree below build/mutants/: the room is built and
its tests are run, then the tests of what stands on it. A change that no test notices is
listed with its place. Those that nobody can notice stand, with the reason, in
tests/unnoticed_changes.txt; a summary takes them apart. For a nightly run: a change takes some ten
seconds, one in a header of frame/ minutes.

Before the first change all tests must pass with nothing broken. A change that makes them run
several times as long counts as noticed. Results are added to the file line by line, and what
stands in it already is not tried once more, so a run can be stopped and started at will; --again
tries its gaps again first. With ccache as CMAKE_CXX_COMPILER_LAUNCHER what is mended again after a
change need not be compiled again.
"""

import argparse
import collections
import concurrent.futures
import hashlib
import io
import json
import os
import pathlib
import random
import re
import resource
import signal
import subprocess
import sys
import tarfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
COPIES = ROOT / "build/mutants"
UNNOTICED = ROOT / "tests/unnoticed_changes.txt"
BUILD_SECONDS = 1800
MEMORY = 6 << 30  # of one test: a change may make a loop endless that takes memory

CXX_ROOMS = ("frame", "platform", "angles", "plane", "survey", "terrain", "sorting", "repeated",
             "dialogs", "arrays", "library", "c_api")

# The same tests again under other locales.
LOCALES = r"(_(C|es_ES|xx_XX)\.UTF-8)?"
# What takes minutes, and what need not come out the same twice.
LEFT_OUT = r"^survey_report\.(page|large|.*real_survey)|threads"
LIBRARY = ["orv2_geo", "orv2_geo_testing", "orv2_geo_python_package", "c_api_tests", "plain_c_test",
           "vectors_tests"]

# Targets and the tests of what they make.
Tests = collections.namedtuple("Tests", "targets names")


def tests_of_rooms(rooms):
    return Tests([f"{room}_tests" for room in rooms], f"^({'|'.join(rooms)}){LOCALES}$")


# The way that a caller takes, then the rooms of the floors above with the refusals of memory.
INTERFACES = Tests(LIBRARY, r"^(vectors|c_api.*|python\.test_(arrays|bulk|differential|failures"
                            r"|floating_point|host|interface|members|objects|refs|words))$")


def above(room):
    floors = tests_of_rooms(CXX_ROOMS[CXX_ROOMS.index(room) + 1:-1] or ("library",))
    return [INTERFACES, Tests([*floors.targets, "refused_calls_tests"], f"{floors.names}|^refused_calls$")]


# Each room's folders, and its tests followed by those above it.
Room = collections.namedtuple("Room", "folders steps")
ROOMS = {
    **{room: Room([f"orv2_geo/{room}"], [tests_of_rooms([room]), *above(room)]) for room in CXX_ROOMS[:-1]},
    "platform": Room(["orv2_geo/platform", "orv2_geo/platform/posix"],
                     [Tests(["platform_tests", "screen_probe", "stand_in_module"],
                            f"^platform({LOCALES}|_screen_module)$"), *above("platform")]),
    "c_api": Room(["orv2_geo/c_api"], [Tests(LIBRARY, "^c_api"), *above("c_api")]),
    "python": Room(["python/core", "python/orv2_geo"], [Tests(LIBRARY, r"^python\.")]),
    "survey_report": Room(["examples/survey_report"],
                          [Tests(["survey_report", "survey_report_test"], r"^survey_report\.")]),
}


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
                before = collections.Counter()
                for kind, line, old, new in changes_of(path):
                    alike = "\n".join(old + new)
                    yield {"room": room, "file": str(path.relative_to(ROOT)), "kind": kind,
                           "line": line, "alike_before": before[alike], "old": old, "new": new}
                    before[alike] += 1


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

    def __init__(self, number, jobs):
        self.tree = COPIES / str(number)
        self.build = self.tree / "build/release"
        self.jobs = str(jobs)
        self.patience = {}  # how long tests may take before a change counts as noticed
        self.tree.mkdir(parents=True, exist_ok=True)
        self.take_committed()
        if not self.run(["cmake", "--preset", "release", "-S", self.tree, "-DORV2_QT=OFF"],
                        BUILD_SECONDS):
            sys.exit(f"{self.tree}: cannot be configured")

    def pass_unbroken(self, steps):
        """With nothing broken all tests must pass; how long each takes is kept."""
        start = time.monotonic()
        if not self.builds(sorted({target for step in steps for target in step.targets})):
            sys.exit(f"{self.tree}: does not build with nothing broken")
        built = time.monotonic()
        wanted = {step.names: None for step in steps}
        # Again where the machine was so busy that a test ran out of its time.
        if not any(self.passes("|".join(wanted), BUILD_SECONDS) for _ in range(3)):
            sys.exit(f"{self.tree}: fails with nothing broken: {self.failed()}")
        print(f"built in {built - start:.0f} s, passed in {time.monotonic() - built:.0f} s", flush=True)
        costs = (self.build / "Testing/Temporary/CTestCostData.txt").read_text(encoding="utf-8")
        rows = (line.split() for line in costs.split("---")[0].splitlines())
        seconds = {name: float(mean) for name, _, mean in rows}
        self.patience = {names: 30 + 5 * sum(seconds[one] for one in self.tests(names)) for names in wanted}

    def tests(self, names):
        told = subprocess.run(["ctest", "--test-dir", self.build, "--show-only=json-v1"], check=True,
                              capture_output=True).stdout
        every = [one["name"] for one in json.loads(told)["tests"]]
        return [one for one in every if re.search(names, one) and not re.search(LEFT_OUT, one)]

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

    def run(self, command, seconds):
        """Whether it ends well in time. What it started ends with it."""
        def alone():
            os.setsid()
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
        with subprocess.Popen(command, cwd=self.tree, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, preexec_fn=alone,
                              env={**os.environ, "GTEST_FAIL_FAST": "1"}) as process:
            try:
                return process.wait(seconds) == 0
            except subprocess.TimeoutExpired:
                return False
            finally:
                try:
                    os.killpg(process.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass

    def builds(self, targets):
        return self.run(["cmake", "--build", self.build, "-j", self.jobs, "--target", *targets],
                        BUILD_SECONDS)

    def passes(self, names, seconds):
        self.log().unlink(missing_ok=True)
        known = "|".join(map(re.escape, self.tests(names)))  # its own expressions know less
        return self.run(["ctest", "--test-dir", self.build, "-R", f"^({known})$", "-j", self.jobs,
                         "--no-tests=error", "--stop-on-failure"], seconds)

    def log(self):
        return self.build / "Testing/Temporary/LastTestsFailed.log"

    def failed(self):
        """The tests that failed last; none where they ran out of time."""
        return self.log().read_text(encoding="utf-8").split() if self.log().exists() else []

    def outcome(self, change):
        path = self.tree / change["file"]
        whole = path.read_text(encoding="utf-8")
        lines = whole.splitlines()
        at = change["line"] - 1
        lines[at:at + len(change["old"])] = change["new"]
        path.write_text("\n".join(lines) + "\n", encoding="utf-8")
        try:
            return self.noticed(ROOMS[change["room"]].steps)
        finally:
            path.write_text(whole, encoding="utf-8")

    def noticed(self, steps):
        """What became of the change, and the tests that failed."""
        for step in steps:
            own = step is steps[0]
            if not self.builds(step.targets):
                return "not built" if own else "noticed above", ["build"]
            if not self.passes(step.names, self.patience[step.names]):
                return "noticed by the room" if own else "noticed above", self.failed() or ["time"]
        return "not noticed", []


def work(number, jobs, changes, out):
    copy = Copy(number, jobs)
    rooms = dict.fromkeys(change["room"] for change in changes)
    copy.pass_unbroken([step for room in rooms for step in ROOMS[room].steps])
    for change in changes:
        start = time.monotonic()
        change["outcome"], change["by"] = copy.outcome(change)
        change["seconds"] = round(time.monotonic() - start)
        with open(out, "a", encoding="utf-8") as file:
            file.write(json.dumps(change) + "\n")


# ---- What came of all of them

def name_of(change):
    """The same as long as the lines stay the same; where they stand in several places, one for each."""
    before = change.get("alike_before", 0)
    text = "\n".join([change["file"], *change["old"], *change["new"], *([str(before)] if before else [])])
    return hashlib.sha256(text.encode()).hexdigest()[:12]


def reasons():
    if not UNNOTICED.exists():
        return {}
    rows = [line.split(maxsplit=1) for line in UNNOTICED.read_text(encoding="utf-8").splitlines()
            if line and not line.startswith("#")]
    return {row[0]: row[1] for row in rows}


def results(files):
    """What came of each change, by its name; of one that was tried again, the last."""
    lines = [line for file in files for line in pathlib.Path(file).read_text(encoding="utf-8").splitlines()]
    return {name_of(change): change for change in map(json.loads, lines)}


def to_try(options):
    tried = results([options.out]) if pathlib.Path(options.out).exists() else {}
    rooms = options.rooms.split(",")
    gaps = {name for name, change in tried.items()
            if options.again and change["outcome"] == "not noticed" and name not in reasons()}
    changes = drawn(rooms, None, options.seed)
    new = [change for change in changes if name_of(change) not in tried]
    return [change for change in changes if name_of(change) in gaps] + new[:options.count]


def summary(files):
    changes = results(files)
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
    parser.add_argument("--again", action="store_true", help="first what no test noticed the last time")
    parser.add_argument("--summary", nargs="+", metavar="FILE")
    options = parser.parse_args()
    if options.summary:
        return summary(options.summary)
    changes = to_try(options)
    if options.list:
        for change in changes:
            print(f"{change['file']}:{change['line']} {change['kind']}: {change['old'][0].strip()}"
                  f"  ->  {change['new'][0].strip()}")
        return None
    COPIES.mkdir(parents=True, exist_ok=True)
    signal.signal(signal.SIGINT, signal.default_int_handler)  # ignored behind a shell's "&", and a test's concern
    with concurrent.futures.ThreadPoolExecutor(options.workers) as pool:
        parts = [pool.submit(work, number, max(1, 2 // options.workers), changes[number::options.workers],
                             options.out)
                 for number in range(options.workers)]
        for part in parts:
            part.result()
    return summary([options.out])


if __name__ == "__main__":
    sys.exit(main())
