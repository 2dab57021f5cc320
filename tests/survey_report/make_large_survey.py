#!/usr/bin/env python3
"""Makes a large survey, of as many points as asked for, as a drone's or a scanner's is.

    make_large_survey.py COUNT [FILE]     writes FILE, or standard output without it

Three kilometres by three; smooth hills; a boundary of 240 points, twenty other codes, and
one point in five thousand measured twice. Every run gives the same bytes.
"""

import math
import random
import sys

SIDE = 3000.0
EAST, NORTH = 431000.0, 4471000.0
CODES = ["TERRENO", "ARBOL", "EJE", "BORDILLO", "TALUD PIE", "TALUD CABEZA", "ARROYO MD",
         "ARROYO MI", "CAMINO", "VALLA", "MURO", "POZO", "FAROLA", "EDIF", "RELLENO", "ROCA",
         "CUNETA", "ACERA", "TUBERIA", "SE\u00d1AL"]
WEIGHTS = [40, 12, 3, 3, 6, 6, 2, 2, 4, 3, 3, 1, 1, 3, 4, 2, 2, 2, 0.5, 0.5]
BOUNDARY = 240


def elevation(x, y):
    return (620.0 + 45.0 * math.sin(x / 640.0) * math.cos(y / 510.0)
            + 14.0 * math.sin((x + 2.0 * y) / 333.0) + 0.012 * x + 0.02 * y)


def line(number, x, y, code, random_numbers):
    z = elevation(x, y) + random_numbers.uniform(-0.02, 0.02)
    return f"{number},{EAST + x:.3f},{NORTH + y:.3f},{z:.3f},{code}\n"


def lines(count):
    random_numbers = random.Random(7)
    yield "Number,X,Y,Z,Code\n"
    boundary = min(BOUNDARY, count)
    for i in range(boundary):
        angle = 2.0 * math.pi * i / boundary
        radius = SIDE * (0.46 + 0.03 * math.sin(5.0 * angle))
        yield line(i + 1, SIDE / 2 + radius * math.sin(angle), SIDE / 2 + radius * math.cos(angle),
                   "LINDERO", random_numbers)
    for number in range(boundary + 1, count + 1):
        if number % 5000 != 0:
            x, y = random_numbers.uniform(0.0, SIDE), random_numbers.uniform(0.0, SIDE)
        else:
            x += random_numbers.uniform(-0.01, 0.01)
        yield line(number, x, y, random_numbers.choices(CODES, WEIGHTS)[0], random_numbers)


def main():
    count = int(sys.argv[1])
    if len(sys.argv) > 2:
        with open(sys.argv[2], "w", encoding="utf-8", newline="") as file:
            file.writelines(lines(count))
    else:
        sys.stdout.reconfigure(encoding="utf-8", newline="")
        sys.stdout.writelines(lines(count))


if __name__ == "__main__":
    main()
