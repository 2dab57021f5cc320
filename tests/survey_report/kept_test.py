"""Compares every file that survey_report writes, part by part, with the digests that are kept.

    kept_test.py [--write] PROGRAM SAMPLE_SURVEY

For what a ruler does not tell, such as the place of an entry in the legend: whoever changes a
drawing or a table on purpose looks at it and writes the digests anew. What the browser's style
sheet and script say is left out.
"""

import difflib
import hashlib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

KEPT = pathlib.Path(__file__).parent / "kept_test.txt"
CODES = ("BORDE", "ARBOL", "POZO", "MURO 1", "MURO 2", "FAROLA", "EJE", "CUNETA", "VALLA",
         "TALUD", "LINDERO", "ARQUETA", "FUENTE", "", "Una señal <&> de nombre largo")


def mixed(i, of):
    """Whole numbers that look drawn at random, the same everywhere."""
    return (i * i * 7919 + i * 104729 + 13) % 1000003 % of


def survey(count, across, up, codes):
    """So many points with repeats among them, as lines of a point file."""
    lines = []
    for i in range(count):
        at = i - 1 if i % 17 == 16 else i
        x, y = mixed(at, across * 1000) / 1000, mixed(at + 5000, up * 1000) / 1000
        z = 600 + x / 20 + y / 35 + mixed(i, 900) / 1000
        lines.append(f"{i + 1},{x:.3f},{y:.3f},{z:.3f},{codes[mixed(i, 4 * len(codes)) % len(codes)]}")
    return "\n".join(lines) + "\n"


SURVEYS = {
    "many codes, upright": survey(90, 60, 140, CODES),
    "many points": survey(900, 300, 200, CODES[:4]),
    "two points": "1,10,20,5,A\n2,110,60,9,B\n",
    "one point": "P,10,20,5,A\n",
    "level square": "1,0,0,7,A\n2,50,0,7,A\n3,50,50,7,A\n4,0,50,7,B\n",
    "on a line": "1,0,0,1,A\n2,10,10,2,A\n3,20,20,9,A\n",
    "a boundary due north, below 0": "1,-5,-30,-1,LINDERO\n2,-5,-20,-2,LINDERO\n3,-5,-10,-5,LINDERO\n",
    "below 0": "1,-50,-30,-900,A\n2,-5,-20,-880.5,A\n3,-25,10,-890,B\n4,-30,-10,-885,A\n",
    "small numbers": "1,0.001,0.002,0.5,A\n2,0.011,0.008,0.6,A\n3,0.004,0.019,0.55,A\n",
    "large numbers": "1,-4480000,4480000,1e5,A\n2,4480000,-4480000,-1e5,A\n3,1e6,2e6,0,A\n",
}

# The survey and the options.
CASES = [
    ("sample",),
    ("sample", "--language", "es", "--sheet", "A3", "--unit", "ft"),
    ("sample", "--sheet", "A2", "--scale", "1:500", "--profile-scale", "1:1000", "--contours", "0.5"),
    ("sample", "--grid", "7.5", "--corridor", "12", "--stations", "9", "--repeats", "2.5"),
    ("sample", "--section", "435050,4473050,435200,4473160", "--area-code", "LINDERO"),
    ("sample", "--northing-first", "--boundary", "no such code"),
    *((name,) for name in SURVEYS),
    ("many codes, upright", "--sheet", "A4", "--language", "es"),
    ("many codes, upright", "--boundary", "MURO", "--area", "10,20,50,30,40,120", "--unit", "us-ft"),
    ("many points", "--sheet", "A4", "--repeats", "0.5"),
]


def parts_of(name, text):
    """The text in pieces that a reader can find: groups of a drawing, sections of a report."""
    if name.endswith(".html"):
        text = re.sub(r"<(style|script|svg)\b.*?</\1>", "", text, flags=re.S)  # the drawings have their own files
    starts = {".svg": r'^<g id="([^"]+)"', ".html": r'<section aria-labelledby="([^"]+)"',
              ".txt": r"^(.+)\n[=]{3,}$", ".dxf": r"^SECTION\n  2\n(\w+)$"}
    marks = list(re.finditer(starts.get(pathlib.Path(name).suffix, r"(?!)"), text, flags=re.M))
    places = [0, *(mark.start() for mark in marks), len(text)]
    names = ["start", *(mark.group(1) for mark in marks)]
    return [(part, text[places[i]:places[i + 1]]) for i, part in enumerate(names)]


def output_of(program, files, case):
    """Every part that one run writes, by its name."""
    with tempfile.TemporaryDirectory() as folder:
        done = subprocess.run([program, files[case[0]], "-o", folder, *case[1:]], check=False, timeout=60,
                              capture_output=True, text=True, env={**os.environ, "LC_ALL": "C"})
        parts = {"status": str(done.returncode), "messages": done.stderr}
        for path in sorted(pathlib.Path(folder).iterdir()):
            for part, text in parts_of(path.name, path.read_text(encoding="utf-8", errors="replace")):
                name = f"{path.name} {part}"
                parts[name] = parts.get(name, "") + text
    return parts


def main(arguments):
    write = arguments[0] == "--write"
    program, sample = arguments[1:] if write else arguments
    lines = []
    with tempfile.TemporaryDirectory() as folder:
        files = {"sample": sample}
        for name, content in SURVEYS.items():
            files[name] = pathlib.Path(folder) / "survey.csv"
            files[name] = files[name].with_stem(re.sub(r"\W+", "_", name))
            files[name].write_text(content, encoding="utf-8")
        for case in CASES:
            lines.append(" ".join(case))
            lines += [f"  {hashlib.sha256(text.encode()).hexdigest()[:16]} {text.count(chr(10))} {name}"
                      for name, text in output_of(program, files, case).items()]
    if write:
        KEPT.write_text("\n".join(lines) + "\n", encoding="utf-8")
        return 0
    kept = KEPT.read_text(encoding="utf-8").splitlines()
    change = list(difflib.unified_diff(kept, lines, "kept", "now", lineterm="", n=100))
    print("\n".join(line for line in change if not line.startswith("   ")))
    return bool(change)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
