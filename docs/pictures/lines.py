"""Segments, lines, distances and bearings, as the library answers."""

import math

import orv2_geo
from orv2_geo import DoubleArray, Ref
from style import FILL, FIRST, INK, SECOND, SOFT, THIRD, arrow, dot, line, panels, plan

algorismos = orv2_geo.cgeo_Algorismos()
geometria = orv2_geo.cgeo_Geometria()


def azimut(dx, dy):
    answer = Ref(0.0)
    algorismos.Azimut(dx, dy, answer)
    return answer.value


def azimuths():
    """Azimut around the circle."""
    figure, axes = panels(height=3.8)
    plan(axes)
    circle = [2 * math.pi * i / 200 for i in range(201)]
    line(axes, [math.sin(a) for a in circle], [math.cos(a) for a in circle], SOFT, linewidth=1)
    for dx, dy, name in ((0, 1, "0"), (1, 0, "100"), (0, -1, "200"), (-1, 0, "300")):
        line(axes, [0, dx], [0, dy], SOFT, linewidth=0.8)
        axes.text(1.13 * dx, 1.1 * dy, name, ha="center", va="center", fontweight="bold")
    for dx, dy in ((3, 4), (4, -1.5), (-1, -2), (-3, 2)):
        far = math.hypot(dx, dy)
        x, y = dx / far, dy / far
        arrow(axes, (0, 0), (x, y), FIRST)
        axes.annotate(f"({dx:g}, {dy:g})  {azimut(dx, dy):.4f}", (x, y), color=FIRST,
                      xytext=(10 if x > 0 else -10, 0), textcoords="offset points",
                      ha="left" if x > 0 else "right", va="center")
    sweep = [a for a in circle if a <= math.atan2(3, 4)]
    line(axes, [0.35 * math.sin(a) for a in sweep], [0.35 * math.cos(a) for a in sweep], SECOND)
    axes.text(0.13, 0.43, "aZ", color=SECOND)
    axes.text(0.05, 0.86, "+Y", color=INK)
    axes.text(0.78, 0.05, "+X", color=INK)
    axes.set_xlim(-2.1, 2.1)
    return figure


def distances():
    """Distancia_Punto_Linea against Longitud_Linea, and the band of a tolerance."""
    figure, both = panels(2, height=2.9)
    ends = (0.0, 0.0, 6.0, 2.0)
    for axes, member, name in ((both[0], algorismos.Distancia_Punto_Linea, "Distancia_Punto_Linea"),
                               (both[1], algorismos.Longitud_Linea, "Longitud_Linea")):
        plan(axes, name)
        endless = name == "Longitud_Linea"
        if endless:
            line(axes, [-3, 9], [-1, 3], SOFT, linestyle="--", linewidth=1)
        line(axes, ends[::2], ends[1::2], INK, linewidth=2.2)
        for px, py in ((2.0, 3.0), (8.0, 4.4), (-2.0, 1.0)):
            share = (px * 6 + py * 2) / 40
            share = share if endless else min(max(share, 0), 1)
            line(axes, [px, 6 * share], [py, 2 * share], SECOND, linestyle=":")
            dot(axes, px, py, FIRST, f"{member(px, py, *ends):.3f}", (5, 4))
        axes.set_xlim(-3.4, 10.6)
        axes.set_ylim(-1.4, 5.6)
    return figure


def touching():
    """The edge of the tolerance: outside for one member, inside for the other."""
    figure, both = panels(2, height=2.4)
    ends, tolerance = (0.0, 0.0, 8.0, 0.0), 1.0
    points = ((2.0, 0.5, (5, 0)), (4.0, 1.0, (0, 5)), (6.0, 1.5, (0, 5)), (9.0, 0.0, (5, 3)))
    for axes, name in ((both[0], "Toca_Punto_Recta"), (both[1], "Toca_Punto_Recta_SN")):
        plan(axes, f"{name}, tolerancia = 1")
        half = [math.pi * i / 60 for i in range(61)]
        xs = [*(8 + math.sin(a) for a in half), *(-math.sin(a) for a in half)]
        ys = [*(math.cos(a) for a in half), *(-math.cos(a) for a in half)]
        axes.fill(xs, ys, color=FILL)
        line(axes, [*xs, xs[0]], [*ys, ys[0]], SOFT, linewidth=0.8, linestyle="--")
        line(axes, ends[::2], ends[1::2], INK, linewidth=2.2)
        for px, py, at in points:
            answer = getattr(algorismos, name)(px, py, *ends, tolerance)
            dot(axes, px, py, FIRST if answer else SECOND, f"{answer:g}" if name[-1] == "a"
                else str(answer), at)
        axes.set_xlim(-1.5, 11)
        axes.set_ylim(-1.3, 2.6)
    return figure


CASES = ((0, 0, 4, 3, 0, 3, 4, 0), (0, 0, 2, 1.5, 3, 3, 4, 0), (0, 0, 1.5, 1, 2.625, 1.75, 4.125, 2.75))


def crossings():
    """Two segments that cross, that do not, and that lie on one line."""
    figure, three = panels(3, height=3.0)
    for axes, ends in zip(three, CASES):
        plan(axes)
        line(axes, ends[0:4:2], ends[1:4:2], FIRST, linewidth=2)
        line(axes, ends[4::2], ends[5::2], THIRD, linewidth=2)
        told = [f"Se_cruzan_2lineas  {algorismos.Se_cruzan_2lineas(*ends)}"]
        for name in ("Cruce_XY_2lineas", "Intersec_XY_2lineas"):
            x, y = Ref(0.0), Ref(0.0)
            met = getattr(algorismos, name)(*ends, x, y)
            told.append(f"{name}  {met}")
            if met:
                dot(axes, x.value, y.value, SECOND)
        axes.set_title("\n".join(told), fontsize=7.5, loc="left")
        axes.set_xlim(-0.9, 4.9)
        axes.set_ylim(-0.3, 3.3)
    return figure


def polygon_cuts():
    """Cortes_R1_con_Pol: the cuts of a line with a chain, numbered from its first end."""
    figure, axes = panels(height=3.0)
    plan(axes)
    xs = [0, 1.0, 3.0, 4.0, 6.0, 7.5, 9.0, 8.0, 5.0, 3.5, 2.0, 1.0]
    ys = [0, 1.0, 3.2, 1.2, 3.4, 1.0, 2.8, 4.6, 4.2, 5.2, 4.4, 1.0]
    section = (0.0, 2.0, 10.0, 2.6)
    count, cut_x, cut_y = Ref(0), DoubleArray(), DoubleArray()
    algorismos.Cortes_R1_con_Pol(*section, len(xs) - 1, DoubleArray(xs), DoubleArray(ys), count,
                                 cut_x, cut_y)
    axes.fill(xs[1:], ys[1:], color=FILL)
    line(axes, xs[1:], ys[1:], FIRST)
    axes.set_xlim(-0.6, 10.6)
    axes.set_ylim(-0.2, 5.4)
    arrow(axes, section[:2], section[2:], INK)
    dot(axes, *section[:2], INK, "R1", (-2, 7))
    for i in range(1, count.value + 1):
        dot(axes, cut_x[i], cut_y[i], SECOND, str(i), (3, 6))
    return figure


def on_line():
    """PntOnLine's codes, and Cota_en_alineacion, which does not project."""
    figure, both = panels(2, height=2.5)
    axes = both[0]
    plan(axes, "PntOnLine")
    line(axes, [0, 4], [0, 2], INK, linewidth=2)
    dot(axes, 0, 0, INK, "P", (4, -6))
    dot(axes, 4, 2, INK, "q", (4, -6))
    for x in (-2.0, 1.0, 3.0, 6.0):
        code = algorismos.PntOnLine(0.0, 0.0, 4.0, 2.0, x, x / 2)
        dot(axes, x, x / 2, (SECOND, FIRST, THIRD)[code - 1], str(code), (-2, 6))
    axes.set_ylim(-1.6, 3.8)
    axes = both[1]
    first, second = (0.0, 0.0, 100.0), (8.0, 0.0, 108.0)
    line(axes, [0, 8], [100, 108], FIRST)
    for x in (2.0, 5.0, 8.0, 10.0):
        z = algorismos.Cota_en_alineacion(*first, *second, x, 0.0)
        line(axes, [x, x], [98, z], SOFT, linestyle=":", linewidth=1)
        dot(axes, x, z, SECOND, f"{z:g}", (-5, 4))
    axes.set_title("Cota_en_alineacion", fontsize=9)
    axes.set_xlim(-0.5, 11)
    axes.set_ylim(98, 110)
    axes.spines[["top", "right"]].set_visible(False)
    return figure


class Sheet:
    """A surface that keeps the dots that are set on it."""

    def __init__(self):
        self.dots = []

    def PSet(self, mode, x, y, colour):
        self.dots.append((x.value, y.value))


def dots_of_line():
    """Linea_a_puntos: one dot more than it has steps."""
    figure, axes = panels(height=2.2)
    sheet = Sheet()
    algorismos.Linea_a_puntos(sheet, 0.0, 0.0, 9.0, 4.0)
    axes.set_aspect("equal")
    axes.set_xticks(range(12))
    axes.set_yticks(range(7))
    axes.grid(color="#e3e9eb")
    line(axes, [0, 9], [0, 4], INK)
    axes.plot(*zip(*sheet.dots), "s", color=SECOND, markersize=6)
    axes.set_xlim(-0.5, 11)
    axes.set_ylim(-0.5, 6)
    axes.tick_params(length=0)
    return figure


def angle_helpers():
    """An360 on a dial, and GetAngle3P, which is placed by the quadrant of P2."""
    figure, both = panels(2, height=3.2)
    axes = both[0]
    plan(axes, "An360")
    circle = [2 * math.pi * i / 200 for i in range(201)]
    line(axes, [math.sin(a) for a in circle], [math.cos(a) for a in circle], SOFT, linewidth=1)
    for centesimal in range(0, 400, 50):
        x, y = math.sin(math.pi * centesimal / 200), math.cos(math.pi * centesimal / 200)
        line(axes, [0.95 * x, 1.05 * x], [0.95 * y, 1.05 * y], INK, linewidth=1)
        axes.text(1.24 * x, 1.2 * y, str(centesimal), color=FIRST, ha="center", va="center")
        axes.text(0.75 * x, 0.78 * y, f"{algorismos.An360(float(centesimal)):g}°", color=SECOND,
                  ha="center", va="center")
    axes.text(0, 0.2, "An", color=FIRST, ha="center", va="center")
    axes.text(0, -0.1, "An360(An)", color=SECOND, ha="center", va="center")
    axes.set_xlim(-1.5, 1.5)
    axes.set_ylim(-1.35, 1.35)
    axes = both[1]
    plan(axes, "GetAngle3P")
    line(axes, [-4, -1.6], [0, 0], SOFT, linestyle="--", linewidth=0.8)
    line(axes, [0, 0], [-2.6, 2.6], SOFT, linestyle="--", linewidth=0.8)
    third = (4.6, 0.0)
    arrow(axes, (0, 0), third, INK)
    dot(axes, *third, INK, "P3", (5, -4))
    for second in ((3.0, 2.0), (-3.0, 2.0), (-3.0, -2.0), (3.0, -2.0)):
        answer = algorismos.GetAngle3P(0.0, 0.0, *second, *third)
        arrow(axes, (0, 0), second, FIRST)
        dot(axes, *second, FIRST, f"P2  {answer:.2f}°", (0, 5 if second[1] > 0 else -6),
            zorder=3)
    dot(axes, 0, 0, INK)
    axes.text(-0.9, 0, "P1", ha="center", va="center")
    axes.set_xlim(-5, 6)
    axes.set_ylim(-3.2, 3.2)
    return figure


def bearing_and_distance():
    """A bearing with its distance, there and back."""
    figure, axes = panels(height=3.2)
    plan(axes)
    base, target = (0.0, 0.0), (6.0, 2.5)
    angle, distance = Ref(0.0), Ref(0.0)
    geometria.GR_AngDist_de_1Recta(*base, *target, angle, distance)
    x, y = Ref(0.0), Ref(0.0)
    geometria.GR_XY_de_AngDist(*base, angle.value + 50, 4.0, x, y)
    line(axes, [0, 0], [0, 3.2], SOFT, linestyle="--", linewidth=1)
    axes.text(0, 3.3, "0", ha="center", color=INK)
    arrow(axes, base, target, FIRST)
    arrow(axes, base, (x.value, y.value), THIRD)
    dot(axes, *base, INK, "Xinic, Yinic", (-6, -2))
    dot(axes, *target, FIRST, f"Angulo {angle.value:.4f}\nDistancia {distance.value:.4f}", (8, -4))
    dot(axes, x.value, y.value, THIRD,
        f"+50, 4:  X {x.value:.4f}  Y {y.value:.4f}", (8, -6))
    sweep = [math.atan2(6, 2.5) * i / 40 for i in range(41)]
    line(axes, [1.5 * math.sin(a) for a in sweep], [1.5 * math.cos(a) for a in sweep], SECOND)
    axes.text(1.0, 1.35, "Angulo", color=SECOND)
    axes.set_xlim(-2.2, 10.5)
    axes.set_ylim(-2.4, 3.8)
    return figure


def parallels():
    """GR_Paralela to either side, and the angle at a corner."""
    figure, both = panels(2, height=2.6)
    axes = both[0]
    plan(axes, "GR_Paralela")
    arrow(axes, (0, 0), (6, 2), INK)
    for distance, colour in ((1.0, FIRST), (-1.0, SECOND)):
        found = [Ref(0.0) for _ in range(4)]
        geometria.GR_Paralela(0.0, 0.0, 6.0, 2.0, *found, distance)
        xs, ys = [one.value for one in found[::2]], [one.value for one in found[1::2]]
        line(axes, xs, ys, colour)
        axes.annotate(f"distanc = {distance:g}", (xs[1], ys[1]), xytext=(5, -3),
                      textcoords="offset points", color=colour)
    axes.set_xlim(-0.8, 9.2)
    axes.set_ylim(-1.4, 3.4)
    axes = both[1]
    plan(axes, "GF_angulo_3_puntos")
    corners = (5.0, 0.4, 0.0, 0.0, 2.0, 2.6)
    line(axes, corners[::2], corners[1::2], FIRST)
    for i, at in ((0, (6, 0)), (1, (-6, -2)), (2, (6, 0))):
        dot(axes, corners[2 * i], corners[2 * i + 1], FIRST, f"P{i + 1}", at)
    start, end = math.atan2(0.4, 5), math.atan2(2.6, 2)
    sweep = [start + (end - start) * i / 40 for i in range(41)]
    line(axes, [1.3 * math.cos(a) for a in sweep], [1.3 * math.sin(a) for a in sweep], SECOND)
    axes.text(1.35, 0.7, f"{geometria.GF_angulo_3_puntos(*corners):.4f}", color=SECOND)
    axes.set_xlim(-1.2, 6.2)
    axes.set_ylim(-0.8, 3.2)
    return figure


def endless_lines():
    """GR_Intersec_2_Rectas crosses endless lines, GR_Se_cortan_2_rectas segments."""
    figure, axes = panels(height=2.8)
    plan(axes)
    ends = (0.0, 0.0, 3.0, 1.5, 1.0, 4.0, 4.0, 3.0)
    x, y, flag = Ref(0.0), Ref(0.0), Ref(False)
    geometria.GR_Intersec_2_Rectas(*ends, x, y, flag)
    cut = Ref(False)
    geometria.GR_Se_cortan_2_rectas(*ends, Ref(0.0), Ref(0.0), cut)
    for i, colour, name in ((0, FIRST, "R1"), (4, THIRD, "R2")):
        line(axes, [ends[i + 2], x.value], [ends[i + 3], y.value], SOFT, linestyle="--",
             linewidth=1)
        line(axes, ends[i:i + 4:2], ends[i + 1:i + 4:2], colour, linewidth=2.2)
        axes.annotate(name, (ends[i], ends[i + 1]), xytext=(-16, -3), textcoords="offset points",
                      color=colour)
    dot(axes, x.value, y.value, SECOND, f"X {x.value:g}  Y {y.value:g}\nParalelas {flag.value}\n"
        f"SECORTAN {cut.value}", (9, -8))
    axes.set_xlim(-1, 10)
    axes.set_ylim(-0.4, 4.4)
    return figure


PICTURES = {"azimuths": azimuths, "distances": distances, "touching": touching,
            "crossings": crossings, "polygon_cuts": polygon_cuts, "on_line": on_line,
            "dots_of_line": dots_of_line, "angle_helpers": angle_helpers,
            "bearing_and_distance": bearing_and_distance, "parallels": parallels,
            "endless_lines": endless_lines}
