"""What all pictures share: letters, colours and the file that comes of a figure.

Labels are numbers, symbols and the names of members, so that one picture serves every language.
"""

import matplotlib

matplotlib.use("Agg")
from matplotlib import pyplot  # noqa: E402

INK = "#24343b"
SOFT = "#9fb0b7"
FIRST = "#00796b"
SECOND = "#d84315"
THIRD = "#3949ab"
FILL = "#e0f2f1"

pyplot.rcParams.update({
    "font.family": "DejaVu Sans", "font.size": 9, "svg.fonttype": "path", "svg.hashsalt": "orv2_geo",
    "text.color": INK, "axes.edgecolor": SOFT, "axes.labelcolor": INK, "xtick.color": INK,
    "ytick.color": INK, "axes.linewidth": 0.8, "lines.solid_capstyle": "round",
    "figure.constrained_layout.use": True, "legend.frameon": False, "path.simplify": False,
})


def panels(count=1, height=3.2, **more):
    """Figures are one width, that of a page's column."""
    figure, axes = pyplot.subplots(1, count, figsize=(7.2, height), **more)
    return figure, axes


def plan(axes, title=None):
    """Axes of a plan: one scale, no frame."""
    axes.set_aspect("equal")
    axes.axis("off")
    if title:
        axes.set_title(title, fontsize=9)


def line(axes, xs, ys, colour=INK, **more):
    axes.plot(xs, ys, color=colour, **{"linewidth": 1.5, **more})


def dot(axes, x, y, colour=INK, label=None, at=(6, 6), **more):
    axes.plot([x], [y], "o", color=colour, markersize=5, **more)
    if label:
        axes.annotate(label, (x, y), xytext=at, textcoords="offset points", color=colour,
                      ha="left" if at[0] >= 0 else "right", va="bottom" if at[1] >= 0 else "top")


def arrow(axes, start, end, colour=INK, style="-|>", width=1.3, **more):
    axes.annotate("", end, start, arrowprops={
        "arrowstyle": style, "color": colour, "linewidth": width, "shrinkA": 0, "shrinkB": 0, **more})


def save(figure, path):
    figure.savefig(path, format="svg", metadata={"Date": None, "Creator": None})
    pyplot.close(figure)
