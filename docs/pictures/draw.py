#!/usr/bin/env python3
"""Draws the pictures of the pages, each of what the library answers.

usage: draw.py FOLDER [--check]

With --check nothing is written: the exit status tells whether the pictures of FOLDER are
those that are drawn today.
"""

import io
import pathlib
import sys

import lines
import points
import style
import surfaces

PICTURES = {**lines.PICTURES, **surfaces.PICTURES, **points.PICTURES}


def drawn(draw):
    text = io.StringIO()
    style.save(draw(), text)
    return text.getvalue()


def main():
    folder, wrong = pathlib.Path(sys.argv[1]), []
    for name, draw in PICTURES.items():
        path, text = folder / f"{name}.svg", drawn(draw)
        if "--check" not in sys.argv[2:]:
            path.write_text(text, encoding="utf-8")
        elif not path.exists() or path.read_text(encoding="utf-8") != text:
            wrong.append(path.name)
    for name in wrong:
        print(f"docs/pictures/{name} is not what is drawn today: run tools/docs.sh pictures")
    known = {f"{name}.svg" for name in PICTURES}
    stray = sorted(path.name for path in folder.glob("*.svg") if path.name not in known)
    for name in stray:
        print(f"docs/pictures/{name} is drawn by nobody")
    return 1 if wrong or stray else 0


if __name__ == "__main__":
    sys.exit(main())
