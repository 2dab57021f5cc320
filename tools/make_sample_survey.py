#!/usr/bin/env python3
"""Makes the sample survey: a hillside plot measured with a total station.

    make_sample_survey.py [FILE]     writes FILE, or standard output without it

Every run gives the same bytes, on every machine: the random numbers come from
a fixed seed, and the shapes need nothing but sums, products, quotients and
square roots, which round alike everywhere. Lengths are in metres; inside this
file x and y count from the south-west corner of the plot.
"""

import math
import random
import sys

ORIGIN_EAST = 435012.0
ORIGIN_NORTH = 4473028.0
PLOT = [(6, 4), (48, 1), (92, 3), (131, 9), (168, 6), (203, 14), (209, 47), (204, 83), (212, 118),
        (198, 149), (163, 158), (124, 152), (88, 161), (45, 155), (9, 147), (2, 108), (5, 71),
        (1, 36)]
HALF_ROAD = 3.5
KERB = 0.12
TELEPHONE_CHAMBER = "POZO 60x60, TELEF"  # a code with a comma, so it is written in quotes


# ---- The ground


def bump(x, y, at_x, at_y, height, radius):
    """A rounded knoll; a hollow when height is negative."""
    far = ((x - at_x) ** 2 + (y - at_y) ** 2) / (radius * radius)
    return height / (1.0 + far)


def stream_x(y):
    """The stream comes down the hill to the south in two bends."""
    t = (y - 70.0) / 70.0
    return 146.0 + 9.0 * t - 16.0 * t * t * t


def hillside(x, y):
    """The smooth slope, before the stream cut into it."""
    slope = 604.5 + 0.025 * x + 0.125 * y + 0.0004 * y * y
    return slope + bump(x, y, 60, 110, 3.2, 28) + bump(x, y, 185, 60, -1.6, 25)


def ground(x, y):
    away = (x - stream_x(y)) / 5.0
    return hillside(x, y) - 1.9 / (1.0 + away * away)


def road_y(x):
    """The axis of the road crosses the plot from west to east."""
    t = (x - 100.0) / 100.0
    return 52.0 + 9.0 * t - 7.0 * t * t


def road_z(x):
    """The grade of the axis: a long even climb, over the stream on a culvert."""
    return 611.2 + 0.026 * x


def beside_road(x, offset):
    """The place at `offset` to the left of the axis."""
    slope = road_y(x + 0.5) - road_y(x - 0.5)
    length = math.sqrt(1.0 + slope * slope)
    return x - offset * slope / length, road_y(x) + offset / length


# ---- The field book


class FieldBook:
    """Points in the order in which they were measured."""

    def __init__(self, seed):
        self.chance = random.Random(seed)
        self.points = []

    def between(self, low, high):
        return low + (high - low) * self.chance.random()

    def measure(self, x, y, z, code, noise=0.012):
        """One shot; `noise` is the roughness of the spot, up or down."""
        shot = (x + self.between(-0.03, 0.03), y + self.between(-0.03, 0.03),
                z + self.between(-noise, noise), code)
        self.points.append(shot)

    def on_ground(self, x, y, code):
        self.measure(x, y, ground(x, y), code, noise=0.04)

    def again(self, index, off_x, off_y, off_z):
        """The same spot once more, as far off as a second setup gives it."""
        x, y, z, code = self.points[index]
        self.points.append((x + off_x, y + off_y, z + off_z, code))


def steps(first, last, count):
    return [first + (last - first) * i / (count - 1) for i in range(count)]


def boundary(book):
    """The closed boundary, with a stake half way along each side."""
    first = len(book.points)
    for (x, y), (next_x, next_y) in zip(PLOT, PLOT[1:] + PLOT[:1]):
        book.on_ground(x, y, "LINDERO")
        book.on_ground((x + next_x) / 2.0, (y + next_y) / 2.0, "LINDERO")
    book.again(first, 0.006, -0.004, 0.003)


def kerb(book, places, offset):
    for x in places:
        px, py = beside_road(x, offset)
        book.measure(px, py, road_z(x) - 0.02 * HALF_ROAD + KERB, "BORDILLO")


def road(book):
    """Out along one kerb, back along the other, then the axis."""
    kerb(book, steps(4, 204, 21), HALF_ROAD)
    kerb(book, steps(204, 4, 21), -HALF_ROAD)
    for x in steps(4, 204, 21):
        book.measure(x, road_y(x), road_z(x), "EJE")
    # The last shot of the axis was taken twice: nothing moved but the height.
    book.again(-1, 0.0, 0.0, 0.004)


def road_furniture(book):
    for x in steps(18, 193, 8):
        px, py = beside_road(x, HALF_ROAD + 0.8)
        book.measure(px, py, road_z(x) + 0.1, "FAROLA")
    for x in (31, 74, 117, 181):
        px, py = beside_road(x, -1.2)
        book.measure(px, py, road_z(x) - 0.03, "POZO")
    for x, code in ((28, "SEÑAL"), (88, TELEPHONE_CHAMBER), (91, "ARQUETA"), (154, "SEÑAL"), (160, "ARQUETA")):
        px, py = beside_road(x, -HALF_ROAD - 1.1)
        book.measure(px, py, road_z(x) + 0.08, code)


def cut_slope(book):
    """Above the road the hill is cut: head and foot of the slope."""
    for x in steps(12, 126, 13):
        px, py = beside_road(x, HALF_ROAD + 2.0)
        book.measure(px, py, road_z(x) + 0.05, "TALUD P", noise=0.03)
    for x in steps(126, 12, 13):
        px, py = beside_road(x, HALF_ROAD + 6.0 + book.between(-0.6, 0.6))
        book.on_ground(px, py, "TALUD C")


def stream(book):
    """Down the bed, up again along the right bank, and down along the left."""
    for offset, code, places in ((0.0, "ARROYO", steps(150, 10, 15)),
                                 (-2.6, "ARROYO MD", steps(14, 146, 12)),
                                 (2.6, "ARROYO MI", steps(146, 14, 12))):
        for y in places:
            x = stream_x(y) + offset + book.between(-0.3, 0.3)
            if abs(y - road_y(x)) > 6.0:  # under the road it runs in a culvert
                book.on_ground(x, y, code)


def building(book, corner_x, corner_y, walls, code):
    """Corners of a building that stands askew: its axes are 4/5 and 3/5."""
    for along, across in walls:
        x = corner_x + 0.8 * along - 0.6 * across
        y = corner_y + 0.6 * along + 0.8 * across
        book.on_ground(x, y, code)


def buildings(book):
    house = [(0, 0), (14.2, 0), (14.2, 6.1), (9.4, 6.1), (9.4, 11.8), (0, 11.8)]
    building(book, 38.0, 84.0, house, "EDIF")
    building(book, 78.0, 18.0, [(0, 0), (8.6, 0), (8.6, 5.2), (0, 5.2)], "EDIF")
    building(book, 176.0, 104.0, [(0, 0), (5.5, 0), (5.5, 4.0), (0, 4.0)], "EDIF/MURO")
    building(book, 176.0, 109.2, [(0, 0), (7.5, 0.3), (15.5, 0.1)], "MURO")


def trees(book):
    while sum(code == "ARBOL" for *_, code in book.points) < 46:
        x = book.between(12, 196)
        y = book.between(14, 144)
        in_house = abs(x - 41) < 11 and abs(y - 93) < 13
        if abs(y - road_y(x)) > 12 and abs(x - stream_x(y)) > 4 and not in_house:
            book.on_ground(x, y, "ARBOL")


def filling(book):
    """Shots on open ground, so that the slope between the lines is known."""
    for y in (20, 32, 82, 108, 134):
        for x in steps(16, 192, 10):
            px = x + book.between(-4, 4)
            py = y + book.between(-4, 4)
            book.on_ground(px, py, "RELLENO" if book.chance.random() < 0.85 else "")


def check_shots(book):
    """From the second station some points of the first are measured again."""
    for _ in range(7):
        index = int(book.between(0, len(book.points)))
        book.again(index, book.between(-0.013, 0.013), book.between(-0.013, 0.013),
                   book.between(-0.006, 0.006))


def survey():
    book = FieldBook(seed=20240417)
    book.on_ground(52, 66, "BASE 1")
    book.on_ground(158, 74, "BASE 2")
    for walk in (boundary, road, road_furniture, cut_slope, stream, buildings, trees, filling,
                 check_shots):
        walk(book)
    return book.points


# ---- The file


def field(text):
    if "," in text or '"' in text:
        return '"' + text.replace('"', '""') + '"'
    return text


def lines():
    yield "# Hillside plot with a road and a stream; metres. Made by tools/make_sample_survey.py"
    yield "Number,X,Y,Z,Code"
    for number, (x, y, z, code) in enumerate(survey(), start=1):
        east = ORIGIN_EAST + x
        north = ORIGIN_NORTH + y
        yield f"{number},{east:.3f},{north:.3f},{z:.3f},{field(code)}"


def main():
    content = "".join(line + "\n" for line in lines()).encode("utf-8")
    if len(sys.argv) > 1:
        with open(sys.argv[1], "wb") as file:
            file.write(content)
    else:
        sys.stdout.buffer.write(content)


if __name__ == "__main__":
    main()
