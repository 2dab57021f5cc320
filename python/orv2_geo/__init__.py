"""Plane geometry for surveyors: centesimal bearings, arrays by reference.

    import orv2_geo

    algorismos = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
    bearing = orv2_geo.Ref(0.0)
    algorismos.Azimut(1.0, 0.0, bearing)
    bearing.value                                   # 99.99999999999999 centesimal

    heights = orv2_geo.DoubleArray([1.5, 2.5], lower=1)

A variable that a member writes is a Ref; a plain number in its place is a
temporary. Arrays are always handed in by reference. What fails raises
RunFailure. help() on an object shows its members.
"""

from ._arrays import DoubleArray, GeoArray, LongArray, ShortArray, SingleArray, StringArray
from ._failures import RunFailure
from ._host import omitted
from ._interface import Control, Controls, Form, set_owner_window, set_user_interface
from ._library import library, load
from ._objects import GeoObject, classes, create
from ._refs import Ref

__all__ = [
    "Control", "Controls", "DoubleArray", "Form", "GeoArray", "GeoObject", "LongArray", "Ref",
    "RunFailure", "ShortArray", "SingleArray", "StringArray", "classes", "create", "load",
    "omitted", "set_owner_window", "set_user_interface",
]


def _version():
    number = library().orv2_version()
    return "{}.{}.{}".format(number // 10000, number // 100 % 100, number % 100)


def __getattr__(name):
    """The classes of the catalogue, such as orv2_geo.cgeo_Algorismos, and the version
    of the library in use."""
    if name.startswith("cgeo_") and name in classes():
        return classes()[name]
    if name == "__version__":
        return _version()
    raise AttributeError("module {!r} has no attribute {!r}".format(__name__, name))
