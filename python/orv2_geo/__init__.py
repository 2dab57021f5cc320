"""Plane geometry for surveyors: centesimal bearings, arrays by reference.

    import orv2_geo

    algorismos = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
    bearing = orv2_geo.Ref(0.0)
    algorismos.Azimut(1.0, 0.0, bearing)
    bearing.value                                   # 99.99999999999999 centesimal

    heights = orv2_geo.DoubleArray([1.5, 2.5], lower=1)

A variable that a member writes is a Ref; a plain number in its place is a
temporary, and a GeoWarning says so. Arrays are always handed in by reference.
What fails raises RunFailure. help() on an object shows its members.

Without an installed user interface a box that only tells is a GeoWarning, and
one that tells of a failure that a routine traps raises that RunFailure in the
middle of the call: see set_user_interface.
"""

import os


def _find_core(paths):
    """In the library's own tree the compiled core stands in the build's folder."""
    package = paths[0]
    if any(name.startswith("_core.") for name in os.listdir(package)):
        return
    builds = os.path.join(os.path.dirname(os.path.dirname(package)), "build")
    for preset in ("release", "report", "debug", "clang", "bench", "asan"):
        folder = os.path.join(builds, preset, "python", "orv2_geo")
        if os.path.exists(os.path.join(folder, "_core.abi3.so")):
            paths.append(folder)
            return


_find_core(__path__)

# The names below come after the core has been found.
from ._arrays import (  # noqa: E402
    DoubleArray, GeoArray, LongArray, ShortArray, SingleArray, StringArray,
)
from ._bulk import Bulk, bulk  # noqa: E402
from ._core import Ref, omitted  # noqa: E402
from ._failures import GeoWarning, RunFailure  # noqa: E402
from ._interface import (  # noqa: E402
    Control, Controls, Form, console, screen, set_owner_window, set_user_interface,
)
from ._library import load, version  # noqa: E402
from ._objects import GeoObject, classes, create  # noqa: E402
from ._progress import Progress  # noqa: E402

__all__ = [
    "Bulk", "Control", "Controls", "DoubleArray", "Form", "GeoArray", "GeoObject", "GeoWarning",
    "LongArray", "Progress", "Ref", "RunFailure", "ShortArray", "SingleArray", "StringArray",
    "bulk", "classes", "console", "create", "load", "omitted", "screen", "set_owner_window",
    "set_user_interface",
]


def __getattr__(name):
    """The classes of the catalogue, such as orv2_geo.cgeo_Algorismos, and the version
    of the library in use."""
    if name.startswith("cgeo_") and name in classes():
        return classes()[name]
    if name == "__version__":
        return version()
    raise AttributeError("module {!r} has no attribute {!r}".format(__name__, name))


def __dir__():
    return sorted([*globals(), *classes(), "__version__"])
