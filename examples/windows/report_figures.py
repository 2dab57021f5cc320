#!/usr/bin/env python3
"""What survey_report.vbs prints of a survey, from the library of the machine that builds:

    report_figures.py LIBRARY SURVEY [--check FILE]

With --check it compares with FILE instead of printing."""
import math
import sys

import orv2_geo
from orv2_geo import DoubleArray, LongArray, Ref

TOLERANCE = 0.05
CODE = "LINDERO"


class Indicator:
    Visible = Min = max = Value = None


def points_of(path):
    for line in open(path, encoding="latin-1"):
        parts = line.rstrip("\r\n").split(",")
        if line.startswith("#") or len(parts) < 4:
            continue
        try:
            yield parts[0], float(parts[1]), float(parts[2]), float(parts[3]), ",".join(parts[4:5])
        except ValueError:
            continue


def fixed(number, decimals):
    units = math.floor(abs(number) * 10**decimals + 0.5)
    text = "{}.{:0{}}".format(units // 10**decimals, units % 10**decimals, decimals)
    return "-" + text if number < 0 and units else text


def extremes(points):
    results = [Ref(0.0) for _ in range(6)]
    arrays = [DoubleArray([0.0] + [point[i] for point in points]) for i in (1, 2, 3)]
    orv2_geo.cgeo_Matrices().MaxMin_3Matriz(*arrays, *results)
    yield "Points       {}".format(len(points))
    for name, most, least in zip("XYZ", results[::2], results[1::2]):
        yield "{}            {} to {}".format(name, fixed(least.value, 3), fixed(most.value, 3))
    kept = Ref(len(points))
    places = LongArray(list(range(len(points) + 1)))
    orv2_geo.cgeo_Matrices().Quita_Puntos_Repetidos_XYZ_con_indice1(
        kept, *arrays, places, Indicator(), TOLERANCE)
    yield "Without repeated points within " + fixed(TOLERANCE, 3)
    yield "             {}".format(kept.value)


def inside(points):
    ring = [point for point in points if point[4].strip() == CODE]
    ring.append(ring[0])
    x, y = (DoubleArray([0.0] + [point[i] for point in ring]) for i in (1, 2))
    test = orv2_geo.cgeo_api().Pto_in_Poligono
    count = sum(bool(test(x, y, len(ring), point[1], point[2])) for point in points)
    yield "Area of " + CODE
    yield "             {} corners, {} points inside".format(len(ring) - 1, count)


def legs(points):
    yield ""
    yield "    From      To   Azimuth   Distance"
    for (start, x1, y1, *_), (end, x2, y2, *_) in zip(points, points[1:]):
        distance = orv2_geo.cgeo_Geometria().GF_Distancia(x1, y1, x2, y2)
        azimuth = Ref(0.0)
        orv2_geo.cgeo_Algorismos().Azimut(x2 - x1, y2 - y1, azimuth)
        shown = fixed(azimuth.value, 4) if distance > 0 else "-"
        yield "{:>8}{:>8}{:>10}{:>11}".format(start, end, shown, fixed(distance, 3))


def main(library, survey, check=None, file=None):
    orv2_geo.load(library)
    points = list(points_of(survey))
    text = "\n".join([*extremes(points), *inside(points), *legs(points)]) + "\n"
    if check is None:
        sys.stdout.write(text)
    elif text != open(file).read():
        sys.exit("report_figures: the library's figures are not those of " + file)


main(*sys.argv[1:])
