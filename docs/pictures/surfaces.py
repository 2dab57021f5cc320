"""Triangles, profiles, rings and functions, as the library answers."""

import orv2_geo
from orv2_geo import DoubleArray, Ref
from style import FILL, FIRST, SECOND, SOFT, THIRD, dot, line, panels, plan

algorismos = orv2_geo.cgeo_Algorismos()
terreno = orv2_geo.cgeo_Terreno()
api = orv2_geo.cgeo_api()


def counted(values):
    """Points are numbered from 1."""
    return DoubleArray([0.0, *values])


TRIANGLE = (0.0, 0.0, 102.0, 10.0, 1.0, 108.0, 3.0, 7.0, 104.0)


def triangle():
    """Elevations inside a triangle, and its slope."""
    figure, axes = panels(height=3.2)
    plan(axes)
    xs, ys = TRIANGLE[::3], TRIANGLE[1::3]
    axes.fill(xs, ys, color=FILL)
    line(axes, [*xs, xs[0]], [*ys, ys[0]], FIRST)
    for i, at in ((0, (-8, -2)), (1, (8, -2)), (2, (4, 6))):
        dot(axes, xs[i], ys[i], FIRST, f"Vz{i + 1} = {TRIANGLE[3 * i + 2]:g}", at)
    for px, py in ((4.5, 2.5), (6.5, 1.8), (3.2, 4.8), (2.2, 1.0)):
        z = algorismos.Triangulo_Cota_1p_interior(*TRIANGLE, px, py)
        dot(axes, px, py, SECOND, f"{z:.3f}", (5, 3))
    slope = algorismos.Triangulo_pendiente(*TRIANGLE)
    axes.text(9.0, 5.2, f"Triangulo_pendiente\n{slope:.4f} %", color=THIRD, ha="center")
    axes.set_xlim(-3.5, 13.5)
    return figure


PROFILE_X = (0.0, 10.0, 18.0, 30.0, 42.0, 55.0)
PROFILE_Y = (101.0, 104.5, 103.2, 107.8, 106.0, 109.5)


def profile():
    """A profile with what stands between its points and beyond its ends."""
    figure, axes = panels(height=2.9)
    xs, ys = counted(PROFILE_X), counted(PROFILE_Y)

    def elevation(distance):
        return terreno.TF_Y_del_Terreno_dando_su_X(xs, ys, distance)

    line(axes, [-8, 0], [elevation(-8.0), PROFILE_Y[0]], SOFT, linestyle="--")
    line(axes, [55, 63], [PROFILE_Y[-1], elevation(63.0)], SOFT, linestyle="--")
    axes.fill_between(PROFILE_X, PROFILE_Y, 97, color=FILL)
    line(axes, PROFILE_X, PROFILE_Y, FIRST)
    axes.plot(PROFILE_X, PROFILE_Y, "o", color=FIRST, markersize=4)
    for distance, at in ((-5.0, (6, -10)), (5.0, (-6, 5)), (24.0, (-6, 5)), (36.0, (4, 6)),
                         (60.0, (-6, 5))):
        z = elevation(distance)
        line(axes, [distance, distance], [97, z], SOFT, linestyle=":", linewidth=1)
        dot(axes, distance, z, SECOND, f"{z:.3f}", at)
    for member, colour in ((terreno.TF_Ymaxima_del_Terreno, THIRD),
                           (terreno.TF_Yminima_del_Terreno, THIRD)):
        axes.axhline(member(ys), color=colour, linewidth=0.8, linestyle="-.")
    axes.set_xlim(-10, 66)
    axes.set_ylim(97, 113)
    axes.spines[["top", "right"]].set_visible(False)
    return figure


def cleaned_profile():
    """Ordena_terreno_y_quita_repetidos: points as they came, and in order."""
    figure, both = panels(2, height=2.4, sharey=True)
    distances, heights = [20.0, 0.0, 10.0, 30.0, 10.0, 20.0], [103, 100, 102, 101, 102, 104.0]
    count, xs, ys = Ref(6), counted(distances), counted(heights)
    terreno.Ordena_terreno_y_quita_repetidos(count, xs, ys)
    after = list(zip(list(xs)[1:], list(ys)[1:]))
    for axes, points, colour in ((both[0], list(zip(distances, heights)), SECOND),
                                 (both[1], after, FIRST)):
        line(axes, *zip(*points), colour, linewidth=1)
        at = {}
        for i, point in enumerate(points, 1):
            at.setdefault(point, []).append(str(i))
        for point, numbers in at.items():
            dot(axes, *point, colour, ", ".join(numbers), (-7, 6))
        axes.set_title(f"Ptos = {len(points)}", fontsize=9)
        axes.set_xlim(-4.5, 34)
        axes.set_ylim(99.3, 105.2)
        axes.spines[["top", "right"]].set_visible(False)
    return figure


def holds(ring_x, ring_y, x, y):
    return api.Pto_in_Poligono(counted(ring_x), counted(ring_y), len(ring_x), x, y)


STAR_X = (5.0, 7.9, 0.3, 9.7, 2.1, 5.0)
STAR_Y = (10.0, 1.0, 6.5, 6.5, 1.0, 10.0)


def rings():
    """A ring that crosses itself, and two areas that share an edge."""
    figure, both = panels(2, height=3.0)
    axes = both[0]
    plan(axes)
    line(axes, STAR_X, STAR_Y, FIRST)
    grid = [(0.6 + 0.55 * i, 0.8 + 0.55 * j) for i in range(17) for j in range(17)]
    for x, y in grid:
        inside = holds(STAR_X, STAR_Y, x, y)
        axes.plot([x], [y], ".", color=FIRST if inside else SOFT, markersize=5 if inside else 2)
    axes = both[1]
    plan(axes)
    west, east = (0, 4, 4, 0, 0), (4, 8, 8, 4, 4)
    ys = (0, 0, 4, 4, 0)
    axes.fill(west, ys, color=FILL)
    line(axes, west, ys, FIRST)
    axes.fill(east, ys, color="#e8eaf6")
    line(axes, east, ys, THIRD)
    for x, y in ((0, 2), (2, 0), (4, 2), (2, 4), (8, 2), (6, 0), (6, 4), (2, 2), (6, 2)):
        colour = FIRST if holds(west, ys, x, y) else THIRD if holds(east, ys, x, y) else SECOND
        axes.plot([x], [y], "o" if colour != SECOND else "x", color=colour, markersize=7,
                  markeredgewidth=2, clip_on=False)
    return figure


def closing():
    """The same corners with the first one repeated, and without."""
    figure, both = panels(2, height=2.9)
    corner_x, corner_y = [0.0, 7.0, 9.0, 4.0, 0.0], [0.0, 0.0, 4.0, 6.0, 4.0]
    grid = [(0.25 + 0.5 * i, 0.25 + 0.5 * j) for i in range(18) for j in range(12)]
    closed = ([*corner_x, corner_x[0]], [*corner_y, corner_y[0]])
    for axes, ring in ((both[0], closed), (both[1], (corner_x, corner_y))):
        plan(axes, f"nVer = {len(ring[0])}")
        line(axes, *closed, SOFT, linestyle="--", linewidth=1)
        line(axes, *ring, FIRST)
        for x, y in grid:
            inside = holds(*ring, x, y)
            axes.plot([x], [y], ".", color=FIRST if inside else SOFT, markersize=5 if inside else 2)
        numbers = {}
        for i, corner in enumerate(zip(*ring), 1):
            numbers.setdefault(corner, []).append(str(i))
        for corner, of_corner in numbers.items():
            away = (-6 if corner[0] < 1 else 5, -6 if corner[1] < 1 else 5)
            dot(axes, *corner, SECOND, ", ".join(of_corner), away, zorder=3)
        axes.set_xlim(-1.4, 10)
        axes.set_ylim(-1.2, 7)
    return figure


def around(axes, below, above):
    """Axes of functions: their names above, zero as a line."""
    axes.set_ylim(below, above)
    axes.legend(fontsize=8, loc="upper right", ncols=3, bbox_to_anchor=(1, 1.14))
    axes.axhline(0, color=SOFT, linewidth=0.8)
    axes.spines[["top", "right"]].set_visible(False)


def functions():
    """The trigonometric members over centesimal angles, and the arc functions."""
    figure, both = panels(2, height=2.7)
    of = orv2_geo.cgeo_FuncDeriv()
    of.RPi = 0.01570796327
    gons = list(range(0, 401, 4))
    for name, colour in (("F_Sen", FIRST), ("F_Cos", THIRD)):
        line(both[0], gons, [getattr(of, name)(float(g)) for g in gons], colour, label=name)
    for start in (-100, 100, 300):
        part = [float(g) for g in range(start + 15, start + 186, 2) if 0 <= g <= 400]
        line(both[0], part, [of.F_Tan(g) for g in part], SECOND,
             label="F_Tan" if start == 100 else None, linewidth=1)
    both[0].set_xticks(range(0, 401, 100))
    around(both[0], -2.5, 2.5)
    of.RPi = 1.0
    ratios = [i / 100 for i in range(-99, 100)]
    for name, colour in (("F_ArcSen", FIRST), ("F_ArcCos", THIRD)):
        line(both[1], ratios, [getattr(of, name)(r) for r in ratios], colour, label=name)
    around(both[1], -2, 3.5)
    return figure


def growth():
    """The logarithms and the hyperbolic members."""
    figure, both = panels(2, height=2.7)
    of = orv2_geo.cgeo_FuncDeriv()
    above_zero = [i / 20 for i in range(1, 201)]
    for name, colour in (("F_LogN", FIRST), ("F_Log10", THIRD)):
        line(both[0], above_zero, [getattr(of, name)(x) for x in above_zero], colour, label=name)
    around(both[0], -3.2, 3.2)
    xs = [i / 20 - 2.5 for i in range(101)]
    for name, colour in (("F_SenH", FIRST), ("F_CosH", THIRD), ("F_TanH", SECOND)):
        line(both[1], xs, [getattr(of, name)(x) for x in xs], colour, label=name)
    around(both[1], -4, 6)
    return figure


PICTURES = {"triangle": triangle, "profile": profile, "cleaned_profile": cleaned_profile,
            "rings": rings, "closing": closing, "functions": functions, "growth": growth}
