"""Arrays of points: order, extremes and repeated points, as the library answers."""

import csv
import pathlib

import orv2_geo
from orv2_geo import LongArray, Progress, Ref, StringArray
from style import FILL, FIRST, INK, SECOND, SOFT, THIRD, arrow, dot, line, panels, plan
from surfaces import counted

SURVEY = pathlib.Path(__file__).resolve().parents[2] / "examples/survey_report/sample_survey.csv"
matrices = orv2_geo.cgeo_Matrices()
ordena = orv2_geo.cgeo_Ordena()


def kept_numbers(xs, ys, zs, tolerance):
    """The points that stay, by their numbers, in X order."""
    count, numbers = Ref(len(xs)), LongArray(range(len(xs) + 1))
    matrices.Quita_Puntos_Repetidos_XYZ_con_indice1(
        count, counted(xs), counted(ys), counted(zs), numbers, Progress(), tolerance)
    return [numbers[i] for i in range(1, count.value + 1)]


def box(axes, x, y, text, colour, **more):
    axes.text(x, y, text, ha="center", va="center", **more,
              bbox={"boxstyle": "round", "edgecolor": colour,
                    "facecolor": FILL if colour == FIRST else "#fbe9e7"})


def index():
    """An index that sorts, and the values that stay where they are."""
    figure, axes = panels(height=2.4)
    axes.axis("off")
    values = [31.5, 12.25, 47.0, 5.0, 20.5]
    order = LongArray()
    ordena.Ordena_Double_Index_Array(counted(values), order)
    for i, value in enumerate(values, 1):
        box(axes, i, 2, f"{value:g}", FIRST)
        axes.text(i, 2.55, str(i), ha="center", color=SOFT)
        box(axes, i, 0, str(order[i]), SECOND)
        axes.text(i, -0.65, str(i), ha="center", color=SOFT)
        arrow(axes, (i, 0.35), (order[i], 1.65), SECOND, width=1)
    axes.text(0.2, 2, "DoubleA", ha="right", va="center", color=FIRST)
    axes.text(0.2, 0, "TheIndex", ha="right", va="center", color=SECOND)
    axes.set_xlim(-0.9, 5.6)
    axes.set_ylim(-1, 3)
    return figure


def in_place():
    """Texts before and after their sort, and numbers of either sign, which are lost."""
    figure, both = panels(2, height=2.2)
    names, numbers = ["pozo", "Arqueta", "lindero"], [47.0, -2.0, 20.5]
    texts, doubles = StringArray(names, lower=1), counted(numbers)
    ordena.Ordena_StringArray(texts)
    ordena.Ordena_Double_Array(doubles)
    shown = ([f"{one:.10g}" for one in numbers], [f"{one:.10g}" for one in list(doubles)[1:]])
    for axes, name, before, after in ((both[0], "Ordena_StringArray", names, list(texts)),
                                      (both[1], "Ordena_Double_Array", *shown)):
        axes.axis("off")
        axes.set_title(name, fontsize=9)
        for i, text in enumerate(before, 1):
            box(axes, i, 2, text, FIRST, fontsize=8)
            axes.text(i, 2.5, str(i), ha="center", color=SOFT)
            if text in after:
                arrow(axes, (i, 1.65), (after.index(text) + 1, 0.35), SOFT)
        for i, text in enumerate(after, 1):
            box(axes, i, 0, text, FIRST if text in before else SECOND, fontsize=8)
        axes.set_xlim(0.4, 3.6)
        axes.set_ylim(-0.5, 3)
    return figure


def others_go():
    """Quita_Puntos_Repetidos_XY_con_indice1: what repeats, and what is taken out."""
    figure, both = panels(2, height=2.4)
    xs, ys, zs = [7.0, 1.0, 5.0, 3.0, 5.5, 9.0], [2.6, 1.0, 1.2, 2.4, 0.7, 1.4], [0.0] * 6
    stay = kept_numbers(xs, ys, zs, 1.0)
    count, arrays, index = Ref(len(xs)), [counted(of) for of in (xs, ys, zs)], LongArray(range(7))
    ordena.Quita_Puntos_Repetidos_XY_con_indice1(count, *arrays, index, Progress(), 1.0)
    left = [index[i] for i in range(1, count.value + 1)]
    for axes, name, kept in ((both[0], "XYZ_con_indice1 (cgeo_Matrices)", stay),
                             (both[1], "XY_con_indice1 (cgeo_Ordena)", left)):
        plan(axes, f"Quita_Puntos_Repetidos_\n{name}")
        axes.fill([4, 6, 6, 4], [0.2, 0.2, 2.2, 2.2], color=FILL, edgecolor=FIRST, linewidth=0.8,
                  linestyle="--")
        for i, (x, y) in enumerate(zip(xs, ys), 1):
            stays = i in kept
            axes.plot([x], [y], "o" if stays else "x", color=FIRST if stays else SECOND,
                      markersize=6, markeredgewidth=1.8)
            axes.annotate(str(i), (x, y), xytext=(4, 5), textcoords="offset points",
                          color=FIRST if stays else SECOND)
        axes.set_xlim(0, 10.2)
        axes.set_ylim(0, 3.6)
    return figure


def order_in_x():
    """An index of the points in X order, and the points themselves put in it."""
    figure, both = panels(2, height=2.7)
    xs, ys, zs = [6.0, 2.0, 8.5, 4.0, 0.5], [1.6, 3.0, 2.6, 1.2, 1.8], [0.0] * 5
    index, arrays = LongArray(), [counted(of) for of in (xs, ys, zs)]
    matrices.Ordena_en_X_el_Indice_1Matriz(len(xs), arrays[0], index)
    before = [list(of)[1:] for of in arrays]
    matrices.Ordena_en_X_3_Matrices(len(xs), *arrays)
    after = [list(of)[1:] for of in arrays]
    for axes, name, points in ((both[0], "Ordena_en_X_el_Indice_1Matriz", before),
                               (both[1], "Ordena_en_X_3_Matrices", after)):
        plan(axes, name)
        line(axes, [-0.3, 9.3], [0, 0], SOFT, linewidth=0.8)
        axes.text(9.5, 0, "X", va="center", color=SOFT)
        for i, (x, y, _) in enumerate(zip(*points), 1):
            line(axes, [x, x], [0, y], SOFT, linestyle=":", linewidth=1)
            dot(axes, x, y, FIRST, str(i), (5, 3))
    for i in range(1, len(xs) + 1):
        both[0].text(xs[index[i] - 1], -0.55, str(index[i]), ha="center", va="center", color=SECOND)
    both[0].text(-0.2, -1.2, "ordenIndices", color=SECOND, va="center")
    for axes in both:
        axes.set_xlim(-0.6, 10)
        axes.set_ylim(-1.5, 3.8)
    return figure


def sums():
    """A layer's thickness added to elevations, and taken from them."""
    figure, both = panels(2, height=2.5, sharey=True)
    heights, layer = [101.0, 101.6, 101.2, 102.0, 101.5], [0.5, 0.8, 0.9, 0.7, 0.5]
    places = range(1, len(heights) + 1)
    for axes, name, colour in ((both[0], "Sumar_a_1Matriz_otra", THIRD),
                               (both[1], "Restar_a_1Matriz_otra", SECOND)):
        worked = counted(heights)
        getattr(matrices, name)(worked, counted(layer))
        after = list(worked)[1:]
        axes.fill_between(places, heights, after, color=FILL)
        line(axes, places, heights, SOFT, linestyle="--", linewidth=1)
        line(axes, places, after, colour)
        for i, first, last in zip(places, heights, after):
            arrow(axes, (i, first), (i, last), INK, width=0.8)
            dot(axes, i, last, colour)
            axes.annotate(f"{last:g}", (i, last), xytext=(0, 12 if last > first else -12),
                          textcoords="offset points", color=colour, ha="center", va="center")
        axes.set_title(name, fontsize=9)
        axes.set_xticks(places)
        axes.set_xlim(0.6, 5.6)
        axes.set_ylim(98.8, 104.2)
        axes.spines[["top", "right"]].set_visible(False)
    return figure


def repeated_points():
    """The anchored box of the sweep in X: what is in it is one spot with its first point."""
    figure, axes = panels(height=3.1)
    axes.set_aspect("equal")
    tolerance = 1.0
    xs = [0.0, 0.5, 1.3, 3.0, 3.3, 3.6, 6.0, 6.2, 6.5]
    ys = [1.0, 1.3, 1.2, 1.0, 2.4, 1.4, 1.0, 2.4, 1.2]
    zs = [10.0, 12.0, 9.0, 8.0, 5.0, 11.0, 7.0, 4.0, 6.0]
    kept = kept_numbers(xs, ys, zs, tolerance)
    for x, y in ((xs[0], ys[0]), (xs[3], ys[3])):
        axes.fill([x - tolerance, x + tolerance, x + tolerance, x - tolerance],
                  [y - tolerance, y - tolerance, y + tolerance, y + tolerance], color=FILL,
                  edgecolor=FIRST, linewidth=0.8, linestyle="--")
    for i, (x, y, z) in enumerate(zip(xs, ys, zs), 1):
        stays = i in kept
        axes.plot([x], [y], "o", color=FIRST if stays else SECOND, markersize=6,
                  fillstyle="full" if stays else "none", markeredgewidth=1.6)
        axes.annotate(f"{i}", (x, y), xytext=(-3, 7), textcoords="offset points", fontsize=8)
        axes.annotate(f"Z {z:g}", (x, y), xytext=(-9, -15), textcoords="offset points", fontsize=7,
                      color=SOFT)
    axes.set_xlim(-1.3, 7.6)
    axes.set_ylim(-0.2, 2.95)
    axes.spines[["top", "right"]].set_visible(False)
    axes.set_xlabel("X")
    axes.set_ylabel("Y")
    return figure


def extremes():
    """MaxMin of a few points, and the filter by elevation."""
    figure, both = panels(2, height=2.9)
    xs, ys, zs = [2, 5, 9, 7, 3.5, 6], [3, 1.2, 2.4, 7.5, 6.5, 4.2], [101, 97, 108, 112, 104, 103]
    found = [Ref(0.0) for _ in range(4)]
    matrices.MaxMin_2Matriz(counted(xs), counted(ys), *found)
    most_x, least_x, most_y, least_y = (one.value for one in found)
    axes = both[0]
    plan(axes, "MaxMin_2Matriz")
    line(axes, [least_x, most_x, most_x, least_x, least_x],
         [least_y, least_y, most_y, most_y, least_y], SOFT, linestyle="--", linewidth=1)
    axes.plot(xs, ys, "o", color=FIRST, markersize=5)
    middle_x, middle_y = (most_x + least_x) / 2, (most_y + least_y) / 2
    axes.text(middle_x, least_y - 0.8, f"MinY {least_y:g}", ha="center", color=SECOND)
    axes.text(middle_x, most_y + 0.3, f"MaxY {most_y:g}", ha="center", color=SECOND)
    axes.text(least_x - 0.2, middle_y, f"MinX\n{least_x:g}", ha="right", va="center", color=SECOND)
    axes.text(most_x + 0.2, middle_y, f"MaxX\n{most_x:g}", va="center", color=SECOND)
    axes.set_xlim(0, 11)
    axes.set_ylim(0, 8.6)
    axes = both[1]
    arrays = [counted(xs), counted(ys), counted(zs)]
    numbers, count = LongArray(range(7)), Ref(6)
    matrices.Quita_Puntos_fuera_interv_de_Cotas_con_indice(count, *arrays, numbers, 108.0, 101.0)
    stay = set(list(numbers)[1:])
    axes.axhspan(101, 108, color=FILL)
    for i, z in enumerate(zs, 1):
        dot(axes, i, z, FIRST if i in stay else SECOND, f"{z:g}", (4, 4))
    axes.set_title("Quita_Puntos_fuera_interv_de_Cotas\n_con_indice, MaxZ 108, MinZ 101", fontsize=8)
    axes.set_xlim(0.5, 6.9)
    axes.set_ylim(95, 115)
    axes.spines[["top", "right"]].set_visible(False)
    return figure


def read_survey():
    with SURVEY.open(encoding="utf-8", newline="") as file:
        rows = [row for row in csv.reader(file) if row and not row[0].startswith("#")][1:]
    return [(float(x), float(y), float(z), code) for _, x, y, z, code in rows]


def sample_survey():
    """The sample survey: elevations, the boundary, what is inside it, what is repeated."""
    figure, axes = panels(height=5.4)
    points = read_survey()
    xs, ys, zs = ([point[i] for point in points] for i in range(3))
    kept = set(kept_numbers(xs, ys, zs, 0.05))
    corners = [p for i, p in enumerate(points, 1) if p[3] == "LINDERO" and i in kept]
    ring = [*corners, corners[0]]
    ring_x, ring_y = [p[0] for p in ring], [p[1] for p in ring]
    inside = orv2_geo.bulk(orv2_geo.cgeo_api().Pto_in_Poligono, counted(ring_x), counted(ring_y),
                           len(ring), xs, ys).result
    axes.fill(ring_x, ring_y, color=FILL)
    line(axes, ring_x, ring_y, FIRST, linewidth=1.6, label="LINDERO")
    outside = [i for i, one in enumerate(inside) if not one]
    axes.plot([xs[i] for i in outside], [ys[i] for i in outside], ".", color=SOFT, markersize=4)
    within = [i for i, one in enumerate(inside) if one]
    drawn = axes.scatter([xs[i] for i in within], [ys[i] for i in within], c=[zs[i] for i in within],
                         cmap="viridis", s=16, zorder=3)
    gone = [i for i in range(len(points)) if i + 1 not in kept]
    axes.plot([xs[i] for i in gone], [ys[i] for i in gone], "o", color=SECOND, markersize=10,
              fillstyle="none", markeredgewidth=1.5)
    bar = figure.colorbar(drawn, ax=axes, shrink=0.7, pad=0.02)
    bar.set_label("Z (m)")
    axes.set_aspect("equal")
    axes.ticklabel_format(useOffset=False, style="plain")
    axes.tick_params(labelsize=7)
    axes.set_xlabel("X (m)")
    axes.set_ylabel("Y (m)")
    axes.spines[["top", "right"]].set_visible(False)
    longest = max(range(len(corners)), key=lambda i: orv2_geo.cgeo_Geometria().GF_Distancia(
        *ring[i][:2], *ring[i + 1][:2]))
    (x1, y1), (x2, y2) = ring[longest][:2], ring[longest + 1][:2]
    azimuth = Ref(0.0)
    orv2_geo.cgeo_Algorismos().Azimut(x2 - x1, y2 - y1, azimuth)
    line(axes, [x1, x2], [y1, y2], THIRD, linewidth=3)
    axes.annotate(f"{azimuth.value:.4f} gon", ((x1 + x2) / 2, (y1 + y2) / 2), xytext=(0, -22),
                  textcoords="offset points", color=THIRD, ha="center")
    axes.set_ylim(4473015, 4473200)
    return figure


PICTURES = {"index": index, "in_place": in_place, "others_go": others_go,
            "repeated_points": repeated_points, "extremes": extremes, "order_in_x": order_in_x,
            "sums": sums, "sample_survey": sample_survey}
