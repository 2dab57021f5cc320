"""A host in Python: the library's dialogs, and what came back."""
import os
import sys

import orv2_geo

orv2_geo.load(os.environ["ORV2_LIBRARY"])
if len(sys.argv) == 2:
    orv2_geo.set_owner_window(int(sys.argv[1]))
matrices = orv2_geo.create("Orv2_Geo.cgeo_Matrices")

count, precision = orv2_geo.Ref(3), orv2_geo.Ref(0.0)
x = orv2_geo.DoubleArray([0, 10, 10, 20])
y = orv2_geo.DoubleArray([0, 5, 5, 5])
z = orv2_geo.DoubleArray([0, 1, 1, 1])
codes = orv2_geo.StringArray(["", "uno", "dos", "tres"])
numbers = orv2_geo.LongArray([0, 0, 0, 0])
matrices.Quita_Pts_Repetidos(count, x, y, z, codes, orv2_geo.StringArray(codes),
                             orv2_geo.ShortArray([0, 0, 0, 0]), numbers, True, precision)
print(count.value, list(x), list(codes), list(numbers), precision.value, flush=True)

found = [orv2_geo.Ref(0.0) for _ in range(6)]
matrices.MaxMin_3Matriz(x, y, z, *found, True)
print(found[0].value, found[1].value, flush=True)
