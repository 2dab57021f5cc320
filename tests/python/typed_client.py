"""A program that uses much of the package, as a type checker and the interpreter see it.

Each line of refused() is wrong, and marked so: a type checker that accepts one says that its
mark is of no use.
"""

from __future__ import annotations

import array
from typing import TYPE_CHECKING

import orv2_geo
from orv2_geo import (
    DoubleArray, Form, GeoArray, GeoObject, LongArray, Progress, Ref, RunFailure, ShortArray,
    SingleArray, StringArray,
)

if TYPE_CHECKING:
    from orv2_geo import PointSurface, ProgressSink, UserInterface


class Pen:
    """A surface that keeps its dots."""

    def __init__(self) -> None:
        self.dots: list[tuple[float, float]] = []

    def PSet(self, mode: int, x: Ref[float], y: Ref[float], colour: int) -> None:
        self.dots.append((x.value, y.value))


class Indicator:
    """A progress object of one's own."""

    Visible: bool = False
    Min: float = 0.0
    max: float = 0.0
    Value: float = 0.0


class Person:
    """A user interface that keeps the boxes and cancels the forms."""

    def __init__(self) -> None:
        self.boxes: list[str] = []

    def error_box(self, text: str, flags: int, caption: str | None) -> None:
        self.boxes.append(text)

    def show_modal(self, form: Form) -> None:
        for name, control in form.controls.items():
            if control.is_cancel:
                form.click(name)


def bearings() -> float:
    algorismos = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
    bearing = Ref(0.0)
    algorismos.Azimut(-1, 0.0, bearing)
    assert bearing.value == 300.0
    algorismos.Azimut(Ref(-1), dy=Ref(0.0), aZ=bearing)
    crossing: tuple[Ref[float], Ref[float]] = (Ref(0.0), Ref(0.0))
    found: bool = algorismos.Cruce_XY_2lineas(0, 0, 2, 2, 0, 2, 2, 0, *crossing)
    code: int = algorismos.PntOnLine(0, 0, 1, 1, 2, 2)
    length: float = algorismos.Distancia_Punto_Punto_l(0, 0, 3, 4)
    assert found and code == 3 and length == 5.0
    return bearing.value


def dots(surface: PointSurface) -> None:
    orv2_geo.create("Orv2_Geo.cgeo_Algorismos").Linea_a_puntos(surface, 0, 0, 3, 2)


def flags_and_variants() -> None:
    geometria = orv2_geo.create("Orv2_Geo.cgeo_Geometria")
    x, y, parallel = Ref(0.0), Ref(0.0), Ref(False)
    geometria.GR_Intersec_2_Rectas(0, 0, 2, 2, 0, 2, 2, 0, x, y, parallel)
    distance: float = geometria.GF_Distancia(0, 0, 3, 4)
    assert not parallel.value and distance == 5.0


def functions() -> None:
    functions = orv2_geo.create("Orv2_Geo.cgeo_FuncDeriv")
    functions.RPi = 0.01570796327
    rpi: float = functions.RPi
    assert rpi > 0.0 and functions.F_Cos(0) == 1.0


def arrays() -> None:
    heights = DoubleArray([1.5, 2.5, 0.5], lower=1)
    ordena = orv2_geo.create("Orv2_Geo.cgeo_Ordena")
    index = LongArray()
    ordena.Ordena_Double_Index_Array(heights, index)
    ordena.Ordena_Double_Index_Array(heights, index, UpperBound=3)
    first: int = index[1]
    assert first == 3 and list(index) == [0, 3, 1, 2]
    names = StringArray(["b", "a"], lower=1)
    ordena.Ordena_StringArray(names)
    name: str = names[1]
    assert name == "a" and isinstance(names, GeoArray)
    with heights.locked() as held:
        assert held.lower == 1 and held.upper == len(held) == 3
    heights.resize(1, 4, keep=True)
    total: float = sum(heights) + max(heights.view().tolist())
    assert total == 7.0
    assert SingleArray.sized(0, 1) == SingleArray([0.0, 0.0])
    assert ShortArray.over(array.array("h", [1, 2])).dims == 1


def wider_arrays() -> None:
    """Slices, and memory of one's own."""
    own = array.array("d", [1.0, 2.0, 3.0, 4.0])
    heights = DoubleArray.over(own, 1)
    some: DoubleArray = heights[2:4]
    heights[2:4] = [5, Ref(6.0)]
    values: list[float] = heights.tolist()
    assert some.lower == 2 and values == [1.0, 5.0, 6.0, 4.0] and heights.base is own
    assert 5.0 in heights and list(reversed(heights))[0] == 4.0


def reckoning() -> None:
    """Variables in the place of their values."""
    count, length = Ref(3), Ref(2.5)
    whole: int = count + 1
    real: float = 2 * length - count
    count += 1
    length /= 2
    numbers: range = range(1, count + 1)
    assert whole == 4 and real == 2.0 and len(numbers) == 4 and length == 1.25
    assert -length < 0.0 <= abs(length) and round(length, 1) == 1.2 and f"{length:.1f}" == "1.2"
    truth = Ref[bool](True)
    assert truth and float(count) == 4.0 and int(length) == 1


def removal(indicator: ProgressSink) -> int:
    ordena = orv2_geo.create("Orv2_Geo.cgeo_Ordena")
    count = Ref(3)
    x, y, z = (DoubleArray([0.0, 2.0, 1.0, 2.0]) for _ in range(3))
    ordena.Quita_Puntos_Repetidos_XY_con_indice1(count, x, y, z, LongArray(), indicator, 0.001)
    return count.value


def boxes(person: UserInterface) -> None:
    before = orv2_geo.set_user_interface(person)
    matrices = orv2_geo.create("Orv2_Geo.cgeo_Matrices")
    matrices.Sumar_a_1Matriz_otra(DoubleArray([0.0, 1.0, 2.0]), DoubleArray([0.0, 1.0]))
    matrices.Ordena_en_X_el_Indice_1Matriz1(0, DoubleArray(), LongArray([0]), None)
    orv2_geo.set_user_interface(before)


def failures() -> None:
    any_object: GeoObject = orv2_geo.create("orv2_geo.cgeo_api".upper())
    assert any_object.registered_name == "Orv2_Geo.cgeo_api"
    names: list[str] = [member.name for member in any_object.members]
    try:
        any_object.call(len(names))
    except RunFailure as failure:
        number: int = failure.number
        assert number == 438 and failure.description
    for name, of_class in orv2_geo.classes().items():
        assert of_class().registered_name == "Orv2_Geo." + name


def many() -> None:
    """A member for many rows at once."""
    api = orv2_geo.create("Orv2_Geo.cgeo_Geometria")
    answered = orv2_geo.bulk(api.GF_Distancia, [0.0], [0.0], [3.0], [4.0], failures="mask")
    assert list(answered.result) == [5.0] and not answered.written


def refused() -> None:
    """Never called."""
    algorismos = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
    ordena = orv2_geo.create("Orv2_Geo.cgeo_Ordena")
    matrices = orv2_geo.create("Orv2_Geo.cgeo_Matrices")
    whole, real, flag = Ref(0), Ref(0.0), Ref(False)
    values, numbers = DoubleArray(), LongArray()

    algorismos.Azimut(1.0, 0.0, 0.0)  # type: ignore[arg-type]
    algorismos.Azimut(1.0, 0.0, whole)  # type: ignore[arg-type]
    algorismos.Azimut("1", 0.0, real)  # type: ignore[arg-type]
    algorismos.Azimut(None, 0.0, real)  # type: ignore[arg-type]
    algorismos.Azimut(1.0, 0.0)  # type: ignore[call-arg]
    algorismos.Azimut(1.0, 0.0, az=real)  # type: ignore[call-arg]
    algorismos.azimut(1.0, 0.0, real)  # type: ignore[attr-defined]
    algorismos.Linea_a_puntos(Indicator(), 0, 0, 1, 1)  # type: ignore[arg-type]
    algorismos.Pto_en_Poligono_d(numbers, values, 1, 0, 0)  # type: ignore[arg-type]
    algorismos.Pto_en_Poligono_d(values, values, 1.5, 0, 0)  # type: ignore[arg-type]
    ordena.Ordena_StringArray(["b", "a"])  # type: ignore[arg-type]
    ordena.Ordena_LongArray(numbers, LowerBound="1")  # type: ignore[arg-type]
    ordena.SwapStrings(1, "b", 0)  # type: ignore[arg-type]
    ordena.Quita_Puntos_Repetidos_XY_con_indice1(
        whole, values, values, values, numbers, None)  # type: ignore[arg-type]
    ordena.Quita_Puntos_Repetidos_XY_con_indice1(
        real, values, values, values, numbers, Progress())  # type: ignore[arg-type]
    ordena.Quita_Puntos_Repetidos_XY_con_indice1(
        whole, values, values, values, numbers, Pen())  # type: ignore[arg-type]
    matrices.MaxMin_1Matriz(values, flag, real)  # type: ignore[arg-type]
    matrices.MaxMin_1Matriz(SingleArray(), real, real)  # type: ignore[arg-type]
    DoubleArray(["1"])  # type: ignore[list-item]
    LongArray([1.5])  # type: ignore[list-item]
    StringArray([1])  # type: ignore[list-item]
    numbers[1] = 1.5  # type: ignore[call-overload]
    values.lower = 1  # type: ignore[misc]
    whole.value = 1.5  # type: ignore[assignment]
    orv2_geo.set_user_interface(Pen())  # type: ignore[arg-type]
    orv2_geo.bulk(algorismos.Azimut, failures="skip")  # type: ignore[arg-type]
    text: str = algorismos.Atan2(1, 1)  # type: ignore[assignment]


def main() -> None:
    pen, person, indicator = Pen(), Person(), Indicator()
    assert bearings() == 300.0
    dots(pen)
    assert len(pen.dots) == 5
    flags_and_variants()
    functions()
    arrays()
    assert removal(indicator) == 2 and indicator.Visible
    boxes(person)
    assert len(person.boxes) == 1
    failures()
    wider_arrays()
    reckoning()
    shares: list[float] = []
    assert removal(Progress(shares.append)) == 2
    many()


if __name__ == "__main__":
    main()
