"""Failures that help: the member, its parameter, what it takes and what was given."""

import array
import os
import pickle
import unittest.mock

from support import Case

import orv2_geo
from orv2_geo import DoubleArray, LongArray, Ref, RunFailure, SingleArray, StringArray

algorismos = orv2_geo.create("Orv2_Geo.cgeo_Algorismos")
api = orv2_geo.create("Orv2_Geo.cgeo_api")
ordena = orv2_geo.create("Orv2_Geo.cgeo_Ordena")
functions = orv2_geo.create("Orv2_Geo.cgeo_FuncDeriv")
terreno = orv2_geo.create("Orv2_Geo.cgeo_Terreno")


class Words(Case):
    def raised(self, member, *given, **named):
        with self.assertRaises(RunFailure) as caught:
            member(*given, **named)
        return caught.exception

    def in_language(self, language):
        return unittest.mock.patch.dict(os.environ, {"LC_ALL": language})

    def test_the_refused_argument_in_english(self):
        rows = (
            (algorismos.Azimut, (1.0, 1.0, "x"),
             "Azimut(dx, dy, aZ): aZ must be a Ref of a number, not 'str' (13, No coinciden los tipos)"),
            (algorismos.Azimut, (1.0, "x", Ref(0.0)),
             "Azimut(dx, dy, aZ): dy must be a number, not 'x' (13, No coinciden los tipos)"),
            (algorismos.Azimut, (None, 1.0, Ref(0.0)),
             "Azimut(dx, dy, aZ): dx must be a number, not None (13, No coinciden los tipos)"),
            (algorismos.Azimut, (1.0, 1.0, Ref("x")),
             "Azimut(dx, dy, aZ): aZ must be a Ref of a number, not a Ref of 'str' "
             "(13, No coinciden los tipos)"),
            (algorismos.Azimut, (1.0,),
             "Azimut(dx, dy, aZ): dy is missing; it is a number (449, Argumento no opcional)"),
            (algorismos.Azimut, (1.0, 2.0),
             "Azimut(dx, dy, aZ): aZ is missing; it is a Ref of a number (449, Argumento no opcional)"),
            (algorismos.Azimut, (1, 2, 3, 4),
             "Azimut(dx, dy, aZ): 4 arguments for 3 parameters "
             "(450, Número de argumentos o asignación de propiedad incorrectos)"),
            (algorismos.An360, (1e300,),
             "An360(An): An must be a number of 32 bits, not 1e+300 (6, Desbordamiento)"),
            (algorismos.Distancia_Punto_Punto_l, (1, 1, 2, 3e9),
             "Distancia_Punto_Punto_l(X1, Y1, X2, Y2): Y2 must be a whole number from -2147483648 to "
             "2147483647, not 3000000000.0 (6, Desbordamiento)"),
            (api.Pto_in_Poligono, ([1, 2], DoubleArray(), 2, 1, 1),
             "Pto_in_Poligono(XX, YY, nVer, xp, yp, Loc): XX must be a DoubleArray, not 'list' "
             "(13, No coinciden los tipos)"),
            (api.Pto_in_Poligono, (DoubleArray(), SingleArray(), 2, 1, 1),
             "Pto_in_Poligono(XX, YY, nVer, xp, yp, Loc): YY must be a DoubleArray, not 'SingleArray' "
             "(13, No coinciden los tipos)"),
            (algorismos.Linea_a_puntos, (None, 0, 0, 1, 1),
             "Linea_a_puntos(f, X1, Y1, X2, Y2): f must be an object that has what the member calls, "
             "not None (91, Variable de objeto no establecida)"),
            (algorismos.Linea_a_puntos, (3, 0, 0, 1, 1),
             "Linea_a_puntos(f, X1, Y1, X2, Y2): f must be an object that has what the member calls, "
             "not 3 (13, No coinciden los tipos)"),
            (ordena.SwapStrings, (Ref("a"), 5, 0),
             "SwapStrings(String1, String2, SwpVal): String2 must be a text, not 5 "
             "(13, No coinciden los tipos)"),
        )
        with self.in_language("en_GB.UTF-8"):
            for member, given, words in rows:
                with self.subTest(words):
                    self.assertEqual(str(self.raised(member, *given)), words)

    def test_and_in_spanish(self):
        rows = (
            (algorismos.Azimut, (1.0, 1.0, "x"),
             "Azimut(dx, dy, aZ): aZ debe ser un Ref de un número, no 'str' (13, No coinciden los tipos)"),
            (algorismos.Azimut, (1.0,),
             "Azimut(dx, dy, aZ): falta dy, que es un número (449, Argumento no opcional)"),
            (algorismos.Azimut, (1, 2, 3, 4),
             "Azimut(dx, dy, aZ): 4 argumentos para 3 parámetros "
             "(450, Número de argumentos o asignación de propiedad incorrectos)"),
            (api.Pto_in_Poligono, ([1, 2], DoubleArray(), 2, 1, 1),
             "Pto_in_Poligono(XX, YY, nVer, xp, yp, Loc): XX debe ser un DoubleArray, no 'list' "
             "(13, No coinciden los tipos)"),
        )
        with self.in_language("es_ES.UTF-8"):
            for member, given, words in rows:
                with self.subTest(words):
                    self.assertEqual(str(self.raised(member, *given)), words)

    def test_the_parts_are_attributes(self):
        with self.in_language("C"):
            failure = self.raised(algorismos.Azimut, 1.0, 1.0, [1.0])
        self.assertEqual((failure.number, failure.source, failure.member, failure.parameter,
                          failure.expected, failure.given),
                         (13, "Orv2_Geo.cgeo_Algorismos", "Azimut", "aZ", "a Ref of a number", "'list'"))

    def test_a_fixed_buffer_says_so(self):
        with self.in_language("C"):
            failure = self.raised(terreno.TR_Cotas_en_unTerreno_dando_DistOr, DoubleArray(), DoubleArray(),
                                  DoubleArray([0, 1]), DoubleArray.over(array.array("d", [1.0])))
        self.assertEqual((failure.number, failure.parameter, failure.expected),
                         (10, "Cotas", "an array that can get another size"))

    def test_a_named_argument_is_named(self):
        failure = self.raised(algorismos.Azimut, 1.0, aZ=object(), dy=2.0)
        self.assertEqual((failure.member, failure.parameter), ("Azimut", "aZ"))

    def test_a_property_is_named(self):
        with self.assertRaises(RunFailure) as caught:
            functions.Pi = "uno"
        self.assertEqual((caught.exception.member, caught.exception.parameter), ("Pi", "value"))

    def test_the_members_own_failure_blames_no_argument(self):
        failure = self.raised(functions.F_LogN, 0.0)
        self.assertEqual((failure.member, failure.parameter), ("F_LogN", None))
        self.assertEqual(str(failure), "5: Argumento o llamada a procedimiento no válidos "
                                       "(Orv2_Geo.cgeo_FuncDeriv.F_LogN)")
        failure = self.raised(functions.F_SenH, 800.0)
        self.assertEqual((failure.number, failure.parameter), (6, None))
        failure = self.raised(ordena.Ordena_LongIndexArray, LongArray([3], lower=1), LongArray([1, 2], lower=1))
        self.assertEqual((failure.number, failure.parameter), (9, None))

    def test_long_values_are_cut(self):
        with self.in_language("C"):
            failure = self.raised(algorismos.Azimut, "x" * 1000, 1.0, Ref(0.0))
        self.assertLess(len(failure.given), 45)

    def test_a_failure_is_copied_whole(self):
        failure = self.raised(algorismos.Azimut, 1.0, 1.0, "x")
        other = pickle.loads(pickle.dumps(failure))
        self.assertEqual((str(other), other.parameter), (str(failure), "aZ"))

    def test_texts_for_texts_are_no_reason(self):
        self.assertIsNone(ordena.SwapStrings(Ref("a"), "b", 0))
        self.assertIsNone(ordena.Ordena_StringArray(StringArray(["b", "a"])))
