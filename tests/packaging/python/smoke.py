"""One program with something of everything that the package is made of."""

import array
import os
import sys

import orv2_geo
from orv2_geo import DoubleArray, LongArray, Ref, _core, _library

algorismos = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
ordena = orv2_geo.create("Orv2_Geo.cgeo_Ordena")


def variables():
    x, y = Ref(-1.0), Ref(-1.0)
    return algorismos.Cruce_XY_2lineas(0, 0, 2, 2, 0, 2, 2, 0, x, y), x.value, y.value


def arrays():
    numbers = LongArray([3, 1, 2], lower=1)
    ordena.Ordena_LongArray(numbers)
    return list(numbers), numbers.lower, numbers.upper


def buffers():
    theirs = array.array("d", [3.0, 1.0, 2.0])
    ordena.Ordena_Double_Array(DoubleArray.over(theirs, lower=1))
    ours = DoubleArray([1.0, 2.0])
    with memoryview(ours) as view:
        view[1] = 7.0
        return theirs.tolist(), ours[1], view.format


def a_host():
    count, index, progress = Ref(4), LongArray(), orv2_geo.Progress(show=False)
    x, y, z = DoubleArray([0, 9, 0, 0, 5]), DoubleArray([0] * 5), DoubleArray(range(5))
    ordena.Quita_Puntos_Repetidos_XY_con_indice1(count, x, y, z, index, progress)
    return count.value, list(x), progress.Visible, progress.max


def bulk():
    written = orv2_geo.bulk(algorismos.Azimut, [0.0, -1.0], [1.0, 0.0]).written["aZ"]
    return [round(one, 4) for one in written]


def a_failure():
    try:
        algorismos.Azimut("nada", 1.0, Ref(0.0))
    except orv2_geo.RunFailure as failure:
        return failure.number, failure.source, str(failure)
    return None


def ndarrays():
    try:
        import numpy
    except ImportError:
        print("not tried with ndarrays: this Python has no NumPy")
        return 200.0
    written = orv2_geo.bulk(algorismos.Azimut, numpy.zeros(1), -numpy.ones(1)).written["aZ"]
    return round(float(written[0]), 4)


def folders():
    return {os.path.dirname(path) for path in (
        orv2_geo.__file__, _core.__file__, _library.loaded_from())}


WANTED = (
    (variables, (True, 1.0, 1.0)),
    (arrays, ([1, 2, 3], 1, 3)),
    (buffers, ([1.0, 2.0, 3.0], 7.0, "d")),
    (a_host, (3, [0.0, 0.0, 0.0, 9.0], True, 4 / 8001)),
    (bulk, [0.0, 300.0]),
    (a_failure, (13, "Orv2_Geo.cgeo_Algorismos",
                 "Azimut(dx, dy, aZ): dx must be a number, not 'nada' (13, No coinciden los tipos)")),
    (ndarrays, 200.0),
    (folders, {os.path.join(os.path.realpath(sys.argv[1]), "orv2_geo")}),
)


def main():
    failed = 0
    for what, wanted in WANTED:
        found = what()
        failed += found != wanted
        print("ok" if found == wanted else "FAILED", what.__name__, found)
    return failed


if __name__ == "__main__":
    sys.exit(main())
