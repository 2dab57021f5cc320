#!/usr/bin/env python3
"""A point file without its repeated points, and what a surveyor asks of it next.

usage: clean_points.py POINTS.csv [-o CLEAN.csv] [--tolerance 0.05] [--boundary LINDERO]
                       [--plot PLAN.png]

Reads lines of number, X, Y, Z, code; writes the points that stay; tells the azimuth and the
length of every leg of the boundary, and how many points lie inside it. The boundary are the
points of a code, in the order of the file. The plot takes matplotlib.
"""

from __future__ import annotations

import argparse
import csv
import pathlib
import sys
from typing import NamedTuple

import orv2_geo
from orv2_geo import DoubleArray, LongArray, Progress, Ref


class Point(NamedTuple):
    number: str
    x: float
    y: float
    z: float
    code: str


def read_points(path: pathlib.Path) -> list[Point]:
    """The points of a file; comments and a line of headings are passed over."""
    points: list[Point] = []
    with path.open(encoding="utf-8-sig", newline="") as file:
        for line, row in enumerate(csv.reader(file), 1):
            if not row or row[0].startswith("#"):
                continue
            try:
                x, y, z = map(float, row[1:4])
            except ValueError:
                if points:
                    raise SystemExit(f"{path}, line {line}: X, Y and Z are numbers")
                continue  # the headings
            points.append(Point(row[0], x, y, z, ",".join(row[4:]).strip()))
    return points


def counted_from_1(values: list[float]) -> DoubleArray:
    """Points are numbered from 1; element 0 is no point."""
    return DoubleArray([0.0, *values])


def without_repeats(points: list[Point], tolerance: float) -> list[Point]:
    """The points that stay, in the order of the file: of those nearer than the tolerance in X
    and in Y the highest."""
    count = Ref(len(points))
    numbers = LongArray(range(len(points) + 1))
    orv2_geo.cgeo_Matrices().Quita_Puntos_Repetidos_XYZ_con_indice1(
        count, counted_from_1([p.x for p in points]), counted_from_1([p.y for p in points]),
        counted_from_1([p.z for p in points]), numbers, Progress(), tolerance)
    return [points[i - 1] for i in sorted(numbers[1:count.value + 1])]


def legs(ring: list[Point]) -> list[tuple[str, str, float, float]]:
    """From, to, azimuth (400 units a circle, 0 on +Y, clockwise) and length of each leg."""
    ends = [*ring[1:], ring[0]]
    dx = DoubleArray(b.x - a.x for a, b in zip(ring, ends))
    dy = DoubleArray(b.y - a.y for a, b in zip(ring, ends))
    azimuths = orv2_geo.bulk(orv2_geo.cgeo_Algorismos().Azimut, dx, dy).written["aZ"]
    lengths = orv2_geo.bulk(orv2_geo.cgeo_Geometria().GF_Distancia, 0.0, 0.0, dx, dy).result
    return [(a.number, b.number, azimuth, length)
            for a, b, azimuth, length in zip(ring, ends, azimuths, lengths)]


def inside(points: list[Point], ring: list[Point]) -> list[bool]:
    """Whether each point lies in the ring."""
    corners = [*ring, ring[0]]
    answer = orv2_geo.bulk(
        orv2_geo.cgeo_api().Pto_in_Poligono, counted_from_1([p.x for p in corners]),
        counted_from_1([p.y for p in corners]), len(corners),
        [p.x for p in points], [p.y for p in points])
    return list(answer.result)


def write_points(path: pathlib.Path, points: list[Point]) -> None:
    with path.open("w", encoding="utf-8", newline="") as file:
        lines = csv.writer(file, lineterminator="\n")
        for p in points:
            lines.writerow((p.number, f"{p.x:.3f}", f"{p.y:.3f}", f"{p.z:.3f}", p.code))


def plot(path: pathlib.Path, points: list[Point], ring: list[Point], within: list[bool]) -> None:
    import matplotlib  # type: ignore[import]
    matplotlib.use("Agg")
    from matplotlib import pyplot
    figure, axes = pyplot.subplots(figsize=(8, 7), constrained_layout=True)
    for is_inside, name, colour in ((True, "inside", "#1f6f54"), (False, "outside", "#b0702a")):
        chosen = [p for p, one in zip(points, within) if one == is_inside]
        axes.plot([p.x for p in chosen], [p.y for p in chosen], ".", color=colour, markersize=4,
                  label=f"{name} ({len(chosen)})")
    closed = [*ring, ring[0]]
    axes.plot([p.x for p in closed], [p.y for p in closed], color="#333333", linewidth=1.2,
              label=f"boundary ({len(ring)} points)")
    axes.set(aspect="equal", xlabel="X (m)", ylabel="Y (m)")
    axes.ticklabel_format(useOffset=False, style="plain")
    axes.tick_params(axis="x", rotation=30)
    axes.legend(loc="lower center", bbox_to_anchor=(0.5, 1.0), ncols=3, frameon=False)
    figure.savefig(path, dpi=120)


def options() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=(__doc__ or "").splitlines()[0])
    parser.add_argument("points", type=pathlib.Path)
    parser.add_argument("-o", "--output", type=pathlib.Path, help="where the points that stay go")
    parser.add_argument("--tolerance", type=float, default=0.05,
                        help="in metres; 0.05 when left out")
    parser.add_argument("--boundary", default="LINDERO", help="the code of the boundary's points")
    parser.add_argument("--plot", type=pathlib.Path, help="a picture of the points, PNG or SVG")
    return parser.parse_args()


def main() -> None:
    given = options()
    points = read_points(given.points)
    kept = without_repeats(points, given.tolerance)
    print(f"{len(points)} points, {len(kept)} without those repeated within {given.tolerance} m")
    if given.output:
        write_points(given.output, kept)
    ring = [p for p in kept if p.code == given.boundary]
    if len(ring) < 3:
        raise SystemExit(f"{given.points}: fewer than three points have the code {given.boundary}")
    for start, end, azimuth, length in legs(ring):
        print(f"{start:>6} to {end:<6} {azimuth:9.4f} g {length:10.3f} m")
    within = inside(kept, ring)
    print(f"{sum(within)} points inside {given.boundary}")
    if given.plot:
        plot(given.plot, kept, ring, within)


if __name__ == "__main__":
    try:
        main()
    except (OSError, orv2_geo.RunFailure) as failure:
        sys.exit(f"clean_points: {failure}")
