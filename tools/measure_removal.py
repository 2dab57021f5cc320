#!/usr/bin/env python3
"""Measures what each way of removing repeated points does to one survey, for
docs/removal.md: 100,000 points, of which a tenth repeat another.

    measure_removal.py LIBRARY           prints the table
    measure_removal.py LIBRARY --check   compares it with the page
"""

import collections
import os
import random
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "python"))

import orv2_geo  # noqa: E402
from orv2_geo import DoubleArray, LongArray, Ref, ShortArray, StringArray  # noqa: E402

PLACES, REPEATS = 90000, 10000
PAGE = os.path.join(ROOT, "docs", "removal.md")


def made_survey():
    """Centimetres in a square of 5 km. Half of the repeats have another height."""
    rng = random.Random(20)
    places = set()
    while len(places) < PLACES:
        places.add((rng.randrange(500000), rng.randrange(500000)))
    points = [(435000 + x / 100, 4473000 + y / 100, 600 + rng.randrange(10000) / 100)
              for x, y in sorted(places)]
    for x, y, z in rng.sample(points, REPEATS):
        points.append((x, y, z + (rng.randrange(1, 6) / 100 if rng.random() < 0.5 else 0.0)))
    rng.shuffle(points)
    return points


class Progress:
    Visible = Min = max = Value = 0


class Person:
    """Counts and removes; chooses 3D where that is wanted."""

    def __init__(self, option):
        self.option = option

    def error_box(self, text, flags, caption):
        raise AssertionError(text)

    def show_modal(self, form):
        form.select(self.option)
        form.click("cmdCalcular")
        form.click("cmdEliminar")


class Arrays:
    """The survey in arrays of bounds 0 to n; element 0 is no point."""

    def __init__(self, points):
        self.n = Ref(len(points))
        self.X, self.Y, self.Z = (DoubleArray([0.0, *axis]) for axis in zip(*points))
        self.index = LongArray(list(range(len(points) + 1)))

    def kept(self):
        n = self.n.value
        return list(zip(list(self.X)[1:n + 1], list(self.Y)[1:n + 1], list(self.Z)[1:n + 1]))


matrices = orv2_geo.create("Orv2_Geo.cgeo_Matrices")
sorts = orv2_geo.create("Orv2_Geo.cgeo_Ordena")


def in_place(survey):
    a = Arrays(survey)
    matrices.Quita_Puntos_Repetidos(a.n, a.X, a.Y, a.Z)
    return a.kept()


def by_index(survey):
    a = Arrays(survey)
    matrices.Quita_Puntos_Repetidos_XYZ_con_indice1(a.n, a.X, a.Y, a.Z, a.index, Progress())
    return [survey[p - 1] for p in list(a.index)[1:a.n.value + 1]]


def in_x_order(survey):
    a = Arrays(survey)
    sorts.Quita_Puntos_Repetidos_XY_con_indice1(a.n, a.X, a.Y, a.Z, a.index, Progress())
    return a.kept()


def empty_with_index(survey):
    a = Arrays(survey)
    matrices.Quita_Puntos_Repetidos_XYZ_con_indice(a.n, a.X, a.Y, a.Z, a.index)
    return a.kept()


def empty_3D(survey):
    a = Arrays(survey)
    matrices.Quita_Pts_Repetidos_3D(a.n, a.X, a.Y, a.Z, StringArray(), StringArray(), ShortArray(),
                                    a.index, Progress(), False)
    return a.kept()


def in_the_dialog(option):
    def removed(survey):
        a = Arrays(survey)
        texts, names = (StringArray([""] * (len(survey) + 1)) for _ in range(2))
        layers = ShortArray([0] * (len(survey) + 1))
        before = orv2_geo.set_user_interface(Person(option))
        try:
            matrices.Quita_Pts_Repetidos(a.n, a.X, a.Y, a.Z, texts, names, layers, a.index, False)
        finally:
            orv2_geo.set_user_interface(before)
        return a.kept()
    return removed


WAYS = (
    ("`cgeo_Matrices.Quita_Puntos_Repetidos`", in_place),
    ("`cgeo_Matrices.Quita_Puntos_Repetidos_XYZ_con_indice1`", by_index),
    ("`cgeo_Ordena.Quita_Puntos_Repetidos_XY_con_indice1`", in_x_order),
    ("`cgeo_Matrices.Quita_Pts_Repetidos`, \"2D\"", in_the_dialog("Opt3D(0)")),
    ("`cgeo_Matrices.Quita_Pts_Repetidos`, \"3D\"", in_the_dialog("Opt3D(1)")),
    ("`cgeo_Matrices.Quita_Puntos_Repetidos_XYZ_con_indice`", empty_with_index),
    ("`cgeo_Matrices.Quita_Pts_Repetidos_3D`", empty_3D),
)


def figures(survey, kept):
    """Points kept, places lost, repeats left in plan and in all three axes."""
    def more_than_one(points):
        return sum(n - 1 for n in collections.Counter(points).values())

    in_plan = [point[:2] for point in kept]
    lost = len({point[:2] for point in survey} - set(in_plan))
    return len(kept), lost, more_than_one(in_plan), more_than_one(kept)


def table():
    survey = made_survey()
    lines = ["| way | points kept | places lost | repeats left in X, Y | in X, Y, Z |",
             "|---|---:|---:|---:|---:|"]
    for name, way in WAYS:
        lines.append("| {} | {:,} | {:,} | {:,} | {:,} |".format(name, *figures(survey, way(survey))))
    return "\n".join(lines) + "\n"


def main(arguments):
    orv2_geo.load(arguments[0])
    measured = table()
    if arguments[1:] != ["--check"]:
        print(measured, end="")
        return 0
    with open(PAGE, encoding="utf-8") as page:
        same = measured in page.read()
    print("the table of docs/removal.md is as measured" if same else
          "docs/removal.md does not hold this table:\n" + measured)
    return 0 if same else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
