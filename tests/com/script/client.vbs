' A script as a client: objects by their registered names, variables and arrays that are the script's own.
' What is expected was worked out by the library on another system. A number that a script's literal does
' not hold to the last bit is written as its bits. Literals have at most 15 digits: those are read exactly
' everywhere. Results through functions of the system's run-time may differ by two units in the last place.
'
' The word "broken" on the command line adds a check that fails, "aborted" ends the script half-way, and
' "unregistered" asks for objects that nobody has registered.
Option Explicit

Dim checks, failed
checks = 0
failed = 0

' ---- What is compared ----

' The number whose bits in the order of reading are these hexadecimal digits.
Function Bits(digits)
  Dim high, mantissa
  high = CLng("&H0" & Mid(digits, 1, 4))
  mantissa = (high And 15) * 2 ^ 48 + CLng("&H" & Mid(digits, 5, 6)) * 2 ^ 24 + CLng("&H" & Mid(digits, 11, 6))
  Bits = (mantissa + 2 ^ 52) * 2 ^ ((high And 32752) \ 16 - 1075)
  If (high And 32768) <> 0 Then Bits = -Bits
End Function

' One unit in the last place of a number.
Function UnitOf(number)
  Dim power
  power = 1
  Do While power * 2 <= Abs(number)
    power = power * 2
  Loop
  Do While power > Abs(number) And power > 2 ^ -1000
    power = power / 2
  Loop
  UnitOf = power * 2 ^ -52
End Function

Function Shown(value)
  If IsObject(value) Or IsArray(value) Then
    Shown = TypeName(value)
  Else
    Shown = value & " (" & TypeName(value) & ")"
  End If
End Function

Sub Tell(holds, what, got, expected)
  checks = checks + 1
  If holds Then Exit Sub
  failed = failed + 1
  WScript.Echo "failed: " & what & ": " & Shown(got) & ", expected " & Shown(expected)
End Sub

' The same type and the same value.
Sub Check(what, got, expected)
  Dim holds
  holds = TypeName(got) = TypeName(expected)
  If holds Then holds = (got = expected)
  Tell holds, what, got, expected
End Sub

' A double within two units in the last place.
Sub Near(what, got, expected)
  Dim holds
  holds = TypeName(got) = "Double"
  If holds Then holds = Abs(got - expected) <= 2 * UnitOf(expected)
  Tell holds, what, got, expected
End Sub

' An array of one dimension from 0, by its elements' values.
Sub CheckAll(what, got, expected)
  Dim i
  checks = checks + 1
  If Not IsArray(got) Then
    failed = failed + 1
    WScript.Echo "failed: " & what & " is no array"
    Exit Sub
  End If
  If LBound(got) <> 0 Or UBound(got) <> UBound(expected) Then
    failed = failed + 1
    WScript.Echo "failed: " & what & " has bounds " & LBound(got) & " to " & UBound(got)
    Exit Sub
  End If
  For i = 0 To UBound(expected)
    If got(i) <> expected(i) Then
      failed = failed + 1
      WScript.Echo "failed: " & what & "(" & i & "): " & Shown(got(i)) & ", expected " & Shown(expected(i))
      Exit Sub
    End If
  Next
End Sub

' An array with room that was asked for while the script runs.
Function Sized(elements)
  Dim result, i
  ReDim result(UBound(elements))
  For i = 0 To UBound(elements)
    result(i) = elements(i)
  Next
  Sized = result
End Function

' ---- The script itself as an object that the library calls ----

Dim dots, pen, Visible, Min, max, Value

Sub ForgetDots
  dots = 0
  pen = Empty
End Sub

Sub PSet(mode, x, y, colour)
  If IsEmpty(pen) Then
    ReDim pen(3)
  Else
    ReDim Preserve pen(UBound(pen) + 4)
  End If
  pen(4 * dots) = mode
  pen(4 * dots + 1) = x
  pen(4 * dots + 2) = y
  pen(4 * dots + 3) = colour
  dots = dots + 1
End Sub

Class Surface
  Public Dots
  Public Sub PSet(mode, x, y, colour)
    Dots = Dots + 1
  End Sub
End Class

Sub ForgetProgress
  Visible = Empty
  Min = Empty
  max = Empty
  Value = Empty
End Sub

' ---- The objects ----

Dim words
words = ""
If WScript.Arguments.Count > 0 Then words = WScript.Arguments(0)

Dim algorismos, derivadas, terreno, api, ordena, geometria, matrices

If words = "unregistered" Then
  On Error Resume Next
  Set algorismos = CreateObject("Orv2_Geo.cgeo_Algorismos")
  If Err.Number = 429 Then WScript.Echo "nobody has registered it"
  WScript.Quit 0
End If

Set algorismos = CreateObject("Orv2_Geo.cgeo_Algorismos")
Set derivadas = CreateObject("Orv2_Geo.cgeo_FuncDeriv")
Set terreno = CreateObject("Orv2_Geo.cgeo_Terreno")
Set api = CreateObject("Orv2_Geo.cgeo_api")
Set ordena = CreateObject("Orv2_Geo.cgeo_Ordena")
Set geometria = CreateObject("Orv2_Geo.cgeo_Geometria")
Set matrices = CreateObject("Orv2_Geo.cgeo_Matrices")

Dim a, b, c, d, e, f, x, y, z, u, v, w, t, answer

' ---- cgeo_Algorismos ----

a = 7
algorismos.Azimut 3.0, 4.0, a
Near "Azimut a", a, Bits("40447BB801ADB78D")  ' 40.96655293447757
' Due west, with the pi of its rule.
a = 7
algorismos.Azimut -1.0, 0.0, a
Near "Azimut a", a, 300.0
' Arguments of other types are converted, the answer is a double.
a = 0
algorismos.Azimut 2, CLng(2), a
Near "Azimut a", a, Bits("4048FFFFFFF1FAD7")  ' 49.999999993471356
a = 7
algorismos.Azimut_s 3.0, 4.0, a
Check "Azimut_s a", a, CInt(7)
answer = algorismos.Se_cruzan_2lineas(0, 0, 4, 4, 0, 4, 4, 0)
Check "Se_cruzan_2lineas", answer, True
answer = algorismos.Se_cruzan_2lineas(0, 0, 1, 1, 3, 0, 4, -1.0)
Check "Se_cruzan_2lineas", answer, False
answer = algorismos.se_cruzan_2lineass_s(0, 0, 4, 4, 0, 4, 4, 0)
Check "se_cruzan_2lineass_s", answer, True
a = 7
b = 7
answer = algorismos.Intersec_XY_2lineas(0, 0, 3, 1, 0, 5, 1, 4.5, a, b)
Check "Intersec_XY_2lineas", answer, True
Check "Intersec_XY_2lineas a", a, Bits("4018000000000001")  ' 6.000000000000001
Check "Intersec_XY_2lineas b", b, 2.0
' Parallel lines leave the variables as they were.
a = 7
b = 7
answer = algorismos.Intersec_XY_2lineas(0, 0, 1, 1, 0, 1, 1, 2, a, b)
Check "Intersec_XY_2lineas", answer, False
Check "Intersec_XY_2lineas a", a, CInt(7)
Check "Intersec_XY_2lineas b", b, CInt(7)
a = 7
b = 7
answer = algorismos.Intersec_XY_2lineas_s(0, 0, 3, 1, 0, 5, 1, 4.5, a, b)
Check "Intersec_XY_2lineas_s", answer, True
Check "Intersec_XY_2lineas_s a", a, CSng(6.0)
Check "Intersec_XY_2lineas_s b", b, CSng(2.0)
a = 7
b = 7
answer = algorismos.Cruce_XY_2lineas(0, 0, 3, 1, 0, 2, 2, -1.0, a, b)
Check "Cruce_XY_2lineas", answer, True
Check "Cruce_XY_2lineas a", a, Bits("3FF1745D1745D175")  ' 1.090909090909091
Check "Cruce_XY_2lineas b", b, Bits("3FD745D1745D1746")  ' 0.36363636363636365
a = 7
b = 7
answer = algorismos.Cruce_XY_2lineas(0, 0, 1, 1, 5, 0, 5, 9, a, b)
Check "Cruce_XY_2lineas", answer, False
Check "Cruce_XY_2lineas a", a, CInt(7)
Check "Cruce_XY_2lineas b", b, CInt(7)
a = 7
b = 7
answer = algorismos.Cruce_XY_2lineas_s(0, 0, 3, 1, 0, 2, 2, -1.0, a, b)
Check "Cruce_XY_2lineas_s", answer, True
Check "Cruce_XY_2lineas_s a", a, CSng(Bits("3FF1745D20000000"))  ' 1.0909091234207153
Check "Cruce_XY_2lineas_s b", b, CSng(Bits("3FD745D180000000"))  ' 0.3636363744735718
ForgetDots
algorismos.Linea_a_puntos Me, 0, 0, 3, 2
Check "Linea_a_puntos dots", dots, 5
CheckAll "Linea_a_puntos dots", pen, Array(0, 0.5, 0.5, 0, 0, 1.25, 1.0, 0, 0, 2.0, 1.5, 0, 0, 2.75, 2.0, 0, 0, 3.5, 2.5, 0)
ForgetDots
algorismos.Linea_a_puntos_s Me, 0, 0, 3, 2
Check "Linea_a_puntos_s dots", dots, 5
CheckAll "Linea_a_puntos_s dots", pen, Array(0, 0.5, 0.5, 0, 0, 1.25, 1.0, 0, 0, 2.0, 1.5, 0, 0, 2.75, 2.0, 0, 0, 3.5, 2.5, 0)
answer = algorismos.Distancia_Punto_Punto_l(1, 2, 4, 6)
Check "Distancia_Punto_Punto_l", answer, CSng(5.0)
answer = algorismos.Distancia_Punto_Punto_l(0, 0, 1, 2)
Check "Distancia_Punto_Punto_l", answer, CSng(2.2360680103302)
answer = algorismos.Distancia_Punto_Linea(2.0, 3.0, 0.0, 0.0, 4.0, 1.0)
Check "Distancia_Punto_Linea", answer, 2.42535625036333
answer = algorismos.Distancia_Punto_Linea_s(2, 3, 0, 0, 4, 1)
Check "Distancia_Punto_Linea_s", answer, CSng(Bits("4003672120000000"))  ' 2.425356149673462
answer = algorismos.Toca_Punto_Recta(2, 1, 0, 0, 4, 0, 1.5)
Check "Toca_Punto_Recta", answer, -1.0
answer = algorismos.Toca_Punto_Recta(2, 1, 0, 0, 4, 0, 1)
Check "Toca_Punto_Recta", answer, 0.0
answer = algorismos.Toca_Punto_Recta_s(2, 1, 0, 0, 4, 0, 1.5)
Check "Toca_Punto_Recta_s", answer, CSng(-1.0)
answer = algorismos.Toca_Punto_Recta_sSN(5, 4, 2, 0, 2, 0, 1.5)
Check "Toca_Punto_Recta_sSN", answer, 5.0
answer = algorismos.Toca_Punto_Recta_SN(2, 1, 0, 0, 4, 0, 1)
Check "Toca_Punto_Recta_SN", answer, True
answer = algorismos.Longitud_Linea(2, 3, 0, 0, 4, 1)
Check "Longitud_Linea", answer, 2.42535625036333
answer = algorismos.Longitud_Linea_s(2, 3, 0, 0, 4, 1)
Check "Longitud_Linea_s", answer, CSng(Bits("4003672120000000"))  ' 2.425356149673462
answer = algorismos.PntOnLine(0, 0, 4, 4, 2, 2)
Check "PntOnLine", answer, CInt(2)
answer = algorismos.PntOnLine(0, 0, 4, 4, 6, 6)
Check "PntOnLine", answer, CInt(3)
answer = algorismos.PntOnLine_s(0, 0, 4, 4, -1, -1)
Check "PntOnLine_s", answer, CInt(1)
answer = algorismos.PntOnLine_s(0, 0, 4, 4, 0, 3)
Check "PntOnLine_s", answer, CInt(0)
answer = algorismos.Atan2(1.0, -2.0)
Check "Atan2", answer, CSng(Bits("40056C6E80000000"))  ' 2.677945137023926
a = 1
answer = algorismos.Atn2(1.0, a)
Check "Atn2", answer, CSng(Bits("BFE921FAA0000000"))  ' -0.7853978276252747
Check "Atn2 a", a, CInt(1)
' A Y of zero is replaced in the variable.
a = 0
answer = algorismos.Atn2(1.0, a)
Check "Atn2", answer, CSng(Bits("3E95DD1D20000000"))  ' 3.2579490039097436e-07
Check "Atn2 a", a, 1E-09
answer = algorismos.Arccos(0.25)
Check "Arccos", answer, CSng(Bits("3FF51700E0000000"))  ' 1.3181160688400269
answer = algorismos.An360(100)
Check "An360", answer, CSng(90.0)
answer = algorismos.An400(30)
Check "An400", answer, CSng(Bits("4040AAAAA0000000"))  ' 33.33333206176758
answer = algorismos.GetAngle3P(1, 1, 4, 5, 3, 1)
Check "GetAngle3P", answer, CSng(Bits("404A90A740000000"))  ' 53.130104064941406
answer = algorismos.Triangulo_Cota_1p_interior(0, 0, 100, 10, 0, 110, 0, 10, 107, 3, 4)
Check "Triangulo_Cota_1p_interior", answer, 105.8
answer = algorismos.Cota_en_alineacion(0, 0, 100, 30, 40, 125, 6, 8)
Check "Cota_en_alineacion", answer, 105.0
answer = algorismos.Triangulo_pendiente(0, 0, 100, 10, 0, 100, 5, 10, 107)
Check "Triangulo_pendiente", answer, 70.0
a = 7
b = 7
algorismos.recta_Angulo_y_Dist 1, 1, 4, 5, a, b
Near "recta_Angulo_y_Dist a", a, Bits("40447BB801C9C1DF")  ' 40.96655294753486
Near "recta_Angulo_y_Dist b", b, 5.0
a = 7
b = 7
algorismos.XY_de_Z_en_Recta 0, 0, 100, 30, 40, 125, a, b, 110
Near "XY_de_Z_en_Recta a", a, Bits("4032000000152453")  ' 18.00000000492248
Near "XY_de_Z_en_Recta b", b, Bits("4037FFFFFFF024C1")  ' 23.999999996308137
a = 7
b = 7
algorismos.XY_dando_ANG_DIST 100, 200, 35.5, 50, a, b
Near "XY_dando_ANG_DIST a", a, Bits("405F9D5F7009BE3E")  ' 126.45895005179861
Near "XY_dando_ANG_DIST b", b, Bits("406E4D9DC8B6E334")  ' 242.42551074714868
' A variable without content gets an array, another array new bounds.
x = Sized(Array(0.0, 0.0, 10.0, 10.0, 0.0, 0.0))
y = Sized(Array(0.0, 0.0, 0.0, 10.0, 10.0, 0.0))
a = 0
z = Empty
u = Sized(Array(5.0, 6.0, 7.0, 8.0, 9.0))
algorismos.Cortes_R1_con_Pol -5, 1, 25, 7, 5, x, y, a, z, u
CheckAll "Cortes_R1_con_Pol x", x, Array(0.0, 0.0, 10.0, 10.0, 0.0, 0.0)
CheckAll "Cortes_R1_con_Pol y", y, Array(0.0, 0.0, 0.0, 10.0, 10.0, 0.0)
Check "Cortes_R1_con_Pol a", a, CLng(2)
CheckAll "Cortes_R1_con_Pol z", z, Array(0.0, 0.0, 10.0)
CheckAll "Cortes_R1_con_Pol u", u, Array(0.0, 2.0, 4.0)
' Without cuts the arrays stay.
x = Sized(Array(0.0, 0.0, 10.0, 10.0, 0.0, 0.0))
y = Sized(Array(0.0, 0.0, 0.0, 10.0, 10.0, 0.0))
a = 7
z = Sized(Array(4.0))
u = Sized(Array(5.0, 6.0))
algorismos.Cortes_R1_con_Pol -5, 11, 25, 17, 5, x, y, a, z, u
CheckAll "Cortes_R1_con_Pol x", x, Array(0.0, 0.0, 10.0, 10.0, 0.0, 0.0)
CheckAll "Cortes_R1_con_Pol y", y, Array(0.0, 0.0, 0.0, 10.0, 10.0, 0.0)
Check "Cortes_R1_con_Pol a", a, CLng(0)
CheckAll "Cortes_R1_con_Pol z", z, Array(4.0)
CheckAll "Cortes_R1_con_Pol u", u, Array(5.0, 6.0)

' ---- cgeo_FuncDeriv ----

Check "Pi read", derivadas.Pi, 0.0
derivadas.Pi = 3.25
Check "Pi written", derivadas.Pi, 3.25
Check "RPi read", derivadas.RPi, 0.0
derivadas.RPi = 63.5
Check "RPi written", derivadas.RPi, 63.5
derivadas.Pi = 3
Check "Pi from a whole number", derivadas.Pi, 3.0
derivadas.Pi = Bits("400921FB54442D18")
Check "Pi", derivadas.Pi, Bits("400921FB54442D18")  ' 3.141592653589793
derivadas.RPi = Bits("3F9015BF9217271A")
Check "RPi", derivadas.RPi, Bits("3F9015BF9217271A")  ' 0.015707963267948967
answer = derivadas.F_Log10(250.0)
Near "F_Log10", answer, Bits("40032EFB2BD8217F")  ' 2.397940008672037
answer = derivadas.F_LogN(2.5)
Near "F_LogN", answer, Bits("3FED5240F0E0E078")  ' 0.9162907318741551
answer = derivadas.F_SenH(1.5)
Near "F_SenH", answer, Bits("400108C3AABD6A60")  ' 2.1292794550948173
answer = derivadas.F_CosH(1.5)
Near "F_CosH", answer, Bits("4002D1BC21E22022")  ' 2.352409615243247
answer = derivadas.F_TanH(0.5)
Near "F_TanH", answer, Bits("3FDD9353D7568AF4")  ' 0.4621171572600098
answer = derivadas.F_ArcSen(25.0)
Near "F_ArcSen", answer, Bits("3FD9D400A5242F62")  ' 0.4035646069248654
answer = derivadas.F_ArcCos(25.0)
Near "F_ArcCos", answer, Bits("3FF2ACFB2AFB2140")  ' 1.1672317198700313
answer = derivadas.F_Sen(30.0)
Near "F_Sen", answer, Bits("3FDD0E2E2B44DE01")  ' 0.4539904997395468
answer = derivadas.F_Cos(30.0)
Near "F_Cos", answer, Bits("3FEC83201D3D2C6D")  ' 0.8910065241883679
answer = derivadas.F_Tan(30.0)
Near "F_Tan", answer, Bits("3FE04E0850C1DD5D")  ' 0.5095254494944289

' ---- cgeo_Terreno ----

x = Sized(Array(0.0, 0.0, 10.0, 25.0, 40.0))
y = Sized(Array(0.0, 100.0, 103.0, 101.5, 107.25))
z = Sized(Array(0.0, 5.0, 12.5, 30.0, 45.0, -2.0))
u = Sized(Array(1.0, 2.0))
terreno.TR_Cotas_en_unTerreno_dando_DistOr x, y, z, u
CheckAll "TR_Cotas_en_unTerreno_dando_DistOr x", x, Array(0.0, 0.0, 10.0, 25.0, 40.0)
CheckAll "TR_Cotas_en_unTerreno_dando_DistOr y", y, Array(0.0, 100.0, 103.0, 101.5, 107.25)
CheckAll "TR_Cotas_en_unTerreno_dando_DistOr z", z, Array(0.0, 5.0, 12.5, 30.0, 45.0, -2.0)
CheckAll "TR_Cotas_en_unTerreno_dando_DistOr u", u, Array(0.0, 101.5, 102.75, Bits("4059DAAAAAAAAAAB"), Bits("405B4AAAAAAAAAAB"), 99.4)  ' 103.41666666666667 109.16666666666667
x = Sized(Array(0.0, 0.0, 10.0, 25.0, 40.0))
y = Sized(Array(0.0, 100.0, 103.0, 101.5, 107.25))
z = Sized(Array(0.0, 17.0))
u = Empty
terreno.TR_Cotas_en_unTerreno_dando_DistOr x, y, z, u
CheckAll "TR_Cotas_en_unTerreno_dando_DistOr x", x, Array(0.0, 0.0, 10.0, 25.0, 40.0)
CheckAll "TR_Cotas_en_unTerreno_dando_DistOr y", y, Array(0.0, 100.0, 103.0, 101.5, 107.25)
CheckAll "TR_Cotas_en_unTerreno_dando_DistOr z", z, Array(0.0, 17.0)
CheckAll "TR_Cotas_en_unTerreno_dando_DistOr u", u, Array(0.0, 102.3)
x = Sized(Array(0.0, 0.0, 10.0, 25.0, 40.0))
y = Sized(Array(0.0, 100.0, 103.0, 101.5, 107.25))
answer = terreno.TF_Y_del_Terreno_dando_su_X(x, y, 33.0)
Check "TF_Y_del_Terreno_dando_su_X", answer, Bits("405A244444444444")  ' 104.56666666666666
CheckAll "TF_Y_del_Terreno_dando_su_X x", x, Array(0.0, 0.0, 10.0, 25.0, 40.0)
CheckAll "TF_Y_del_Terreno_dando_su_X y", y, Array(0.0, 100.0, 103.0, 101.5, 107.25)
answer = terreno.TF_ProyeccVertical_de_X_en_1R(0, 100, 7, 103, 2.5)
Check "TF_ProyeccVertical_de_X_en_1R", answer, Bits("4059449249249249")  ' 101.07142857142857
x = Sized(Array(0.0, 100.0, 103.0, 101.5, 107.25))
answer = terreno.TF_Yminima_del_Terreno(x)
Check "TF_Yminima_del_Terreno", answer, 100.0
CheckAll "TF_Yminima_del_Terreno x", x, Array(0.0, 100.0, 103.0, 101.5, 107.25)
x = Sized(Array(0.0, 100.0, 103.0, 101.5, 107.25))
answer = terreno.TF_Ymaxima_del_Terreno(x)
Check "TF_Ymaxima_del_Terreno", answer, 107.25
CheckAll "TF_Ymaxima_del_Terreno x", x, Array(0.0, 100.0, 103.0, 101.5, 107.25)
x = Sized(Array(0.0, 0.0, 10.0, 25.0, 40.0))
answer = terreno.TF_DistaOrigen_estan_ordenadas(x)
Check "TF_DistaOrigen_estan_ordenadas", answer, True
CheckAll "TF_DistaOrigen_estan_ordenadas x", x, Array(0.0, 0.0, 10.0, 25.0, 40.0)
a = 5
x = Sized(Array(0.0, 30.0, 10.0, 20.0, 10.0, 0.5))
y = Sized(Array(0.0, 3.0, 1.0, 2.0, 1.0, 0.25))
terreno.Ordena_terreno_y_quita_repetidos a, x, y
Check "Ordena_terreno_y_quita_repetidos a", a, CLng(4)
CheckAll "Ordena_terreno_y_quita_repetidos x", x, Array(0.0, 0.5, 10.0, 20.0, 30.0)
CheckAll "Ordena_terreno_y_quita_repetidos y", y, Array(0.0, 0.25, 1.0, 2.0, 3.0)

' ---- cgeo_api ----

x = Sized(Array(0.0, 0.0, 10.0, 10.0, 0.0, 0.0))
y = Sized(Array(0.0, 0.0, 0.0, 10.0, 10.0, 0.0))
a = 7
answer = api.Pto_in_Poligono(x, y, 5, 4.0, 6.0, a)
Check "Pto_in_Poligono", answer, True
CheckAll "Pto_in_Poligono x", x, Array(0.0, 0.0, 10.0, 10.0, 0.0, 0.0)
CheckAll "Pto_in_Poligono y", y, Array(0.0, 0.0, 0.0, 10.0, 10.0, 0.0)
Check "Pto_in_Poligono a", a, CInt(7)
' An argument that may be left out.
x = Sized(Array(0.0, 0.0, 10.0, 10.0, 0.0, 0.0))
y = Sized(Array(0.0, 0.0, 0.0, 10.0, 10.0, 0.0))
answer = api.Pto_in_Poligono(x, y, 5, 14.0, 6.0)
Check "Pto_in_Poligono", answer, False
CheckAll "Pto_in_Poligono x", x, Array(0.0, 0.0, 10.0, 10.0, 0.0, 0.0)
CheckAll "Pto_in_Poligono y", y, Array(0.0, 0.0, 0.0, 10.0, 10.0, 0.0)
x = Sized(Array(0.0, 0.0, 10.0, 10.0, 0.0, 0.0))
y = Sized(Array(0.0, 0.0, 0.0, 10.0, 10.0, 0.0))
answer = api.Pto_in_Poligono(x, y, 5, 4.0, 6.0)
Check "Pto_in_Poligono", answer, True
CheckAll "Pto_in_Poligono x", x, Array(0.0, 0.0, 10.0, 10.0, 0.0, 0.0)
CheckAll "Pto_in_Poligono y", y, Array(0.0, 0.0, 0.0, 10.0, 10.0, 0.0)

' ---- cgeo_Ordena ----

x = Sized(Array(0.0, 7.5, -3.25, 12.0, 0.5, 7.25))
y = Sized(Array(9, 9))
ordena.Ordena_Double_Index_Array x, y
CheckAll "Ordena_Double_Index_Array x", x, Array(0.0, 7.5, -3.25, 12.0, 0.5, 7.25)
CheckAll "Ordena_Double_Index_Array y", y, Array(0, 2, 4, 5, 1, 3)
x = Sized(Array(0.0, 7.5, -3.25, 12.0, 0.5, 7.25))
y = Empty
ordena.Ordena_Double_Index_Array x, y, 1, 3
CheckAll "Ordena_Double_Index_Array x", x, Array(0.0, 7.5, -3.25, 12.0, 0.5, 7.25)
CheckAll "Ordena_Double_Index_Array y", y, Array(0, 2, 1, 3)
x = Sized(Array(0.0, 7.5, 3.25, 12.0, 0.5, 7.1234567))
ordena.Ordena_Double_Array x
CheckAll "Ordena_Double_Array x", x, Array(0.0, 0.5, 3.25, Bits("401C7E6B84000000"), 7.5, 12.0)  ' 7.1234570145606995
x = Sized(Array("pera", "Manzana", "uva", "higo"))
ordena.Ordena_StringArray x
CheckAll "Ordena_StringArray x", x, Array("higo", "Manzana", "pera", "uva")
x = Sized(Array("pera", "Manzana", "uva", "higo"))
ordena.Ordena_StringArray x, 0, 1
CheckAll "Ordena_StringArray x", x, Array("Manzana", "pera", "uva", "higo")
x = Sized(Array(30000, -5, 12, 7))
ordena.Ordena_LongArray x
CheckAll "Ordena_LongArray x", x, Array(-5, 7, 12, 30000)
x = Sized(Array(30000, -5, 12, 7))
ordena.Ordena_LongArray x, 2
CheckAll "Ordena_LongArray x", x, Array(30000, -5, 7, 12)
x = Sized(Array("pera", "manzana", "uva", "higo"))
y = Sized(Array(0, 1, 2, 3))
ordena.Ordena_StringIndexArray x, y
CheckAll "Ordena_StringIndexArray x", x, Array("pera", "manzana", "uva", "higo")
CheckAll "Ordena_StringIndexArray y", y, Array(3, 1, 0, 2)
x = Sized(Array(30, 20, 10, 0))
y = Sized(Array(0, 1, 2, 3))
ordena.Ordena_LongIndexArray x, y
CheckAll "Ordena_LongIndexArray x", x, Array(30, 20, 10, 0)
CheckAll "Ordena_LongIndexArray y", y, Array(0, 3, 2, 1)
a = 7
ordena.SwapStrings "a", "b", a
Check "SwapStrings a", a, CInt(7)
ForgetProgress
a = 6
x = Sized(Array(0.0, 5.0, 1.0, 5.05, 3.0, 1.02, 9.0))
y = Sized(Array(0.0, 2.0, 1.0, 2.05, 7.0, 1.01, 4.0))
z = Sized(Array(0.0, 10.0, 20.0, 30.0, 40.0, 50.0, 60.0))
u = Sized(Array(0))
ordena.Quita_Puntos_Repetidos_XY_con_indice1 a, x, y, z, u, Me, 0.1, False
Check "Quita_Puntos_Repetidos_XY_con_indice1 points", a, CLng(4)
CheckAll "Quita_Puntos_Repetidos_XY_con_indice1 x", x, Array(0.0, 1.0, 1.02, 5.0, 9.0)
CheckAll "Quita_Puntos_Repetidos_XY_con_indice1 y", y, Array(0.0, 1.0, 1.01, 2.0, 4.0)
CheckAll "Quita_Puntos_Repetidos_XY_con_indice1 z", z, Array(0.0, 20.0, 50.0, 10.0, 60.0)
CheckAll "Quita_Puntos_Repetidos_XY_con_indice1 u", u, Array(0, 2, 5, 1, 6, 2, 4)
Check "Quita_Puntos_Repetidos_XY_con_indice1 Visible", Visible, True
Check "Quita_Puntos_Repetidos_XY_con_indice1 Min", Min, CInt(0)
Check "Quita_Puntos_Repetidos_XY_con_indice1 max", max, Bits("3F526E009370049C")  ' 0.0011248593925759281
Check "Quita_Puntos_Repetidos_XY_con_indice1 Value", IsEmpty(Value), True
ForgetProgress
a = 6
x = Sized(Array(0.0, 5.0, 1.0, 5.05, 3.0, 1.02, 9.0))
y = Sized(Array(0.0, 2.0, 1.0, 2.05, 7.0, 1.01, 4.0))
z = Sized(Array(0.0, 10.0, 20.0, 30.0, 40.0, 50.0, 60.0))
u = Sized(Array(0))
ordena.Quita_Puntos_Repetidos_XY_con_indice1 a, x, y, z, u, Me
Check "Quita_Puntos_Repetidos_XY_con_indice1 points", a, CInt(6)
CheckAll "Quita_Puntos_Repetidos_XY_con_indice1 x", x, Array(0.0, 1.0, 1.02, 3.0, 5.0, 5.05, 9.0)
CheckAll "Quita_Puntos_Repetidos_XY_con_indice1 y", y, Array(0.0, 1.0, 1.01, 7.0, 2.0, 2.05, 4.0)
CheckAll "Quita_Puntos_Repetidos_XY_con_indice1 z", z, Array(0.0, 20.0, 50.0, 40.0, 10.0, 30.0, 60.0)
CheckAll "Quita_Puntos_Repetidos_XY_con_indice1 u", u, Array(0, 2, 5, 4, 1, 3, 6)
Check "Quita_Puntos_Repetidos_XY_con_indice1 Visible", Visible, True
Check "Quita_Puntos_Repetidos_XY_con_indice1 Min", Min, CInt(0)
Check "Quita_Puntos_Repetidos_XY_con_indice1 max", max, Bits("3F526E009370049C")  ' 0.0011248593925759281
Check "Quita_Puntos_Repetidos_XY_con_indice1 Value", IsEmpty(Value), True

' ---- cgeo_Geometria ----

answer = geometria.GF_Angulo_de_1Recta(0, 0, 3, 4)
Near "GF_Angulo_de_1Recta", answer, Bits("40447BB801C9C1DF")  ' 40.96655294753486
a = 7
b = 7
geometria.GR_AngDist_de_1Recta 0, 0, 3, 4, a, b
Near "GR_AngDist_de_1Recta a", a, Bits("40447BB801C9C1DF")  ' 40.96655294753486
Near "GR_AngDist_de_1Recta b", b, 5.0
answer = geometria.GF_Distancia(0, 0, 1, 2)
Check "GF_Distancia", answer, 2.23606797749979
answer = geometria.GF_Distancia_S(0, 0, 2, 3)
Check "GF_Distancia_S", answer, Bits("400CD82B446159F3")  ' 3.605551275463989
a = 7
b = 7
geometria.GR_XY_de_AngDist 100, 200, 130.25, 40, a, b
Near "GR_XY_de_AngDist a", a, Bits("4060F23293235A8F")  ' 135.56867367653874
Near "GR_XY_de_AngDist b", b, Bits("4066B66AFFC06B1B")  ' 181.7005614050075
a = 7
b = 7
c = False
geometria.GR_Intersec_2_Rectas 0, 0, 3, 1, 0, 5, 1, 4.5, a, b, c
Check "GR_Intersec_2_Rectas a", a, 6.0
Check "GR_Intersec_2_Rectas b", b, 2.0
Check "GR_Intersec_2_Rectas c", c, False
a = 7
b = 7
c = False
geometria.GR_Intersec_2_Rectas 0, 0, 1, 2, 5, 0, 6, 2, a, b, c
Check "GR_Intersec_2_Rectas a", a, CInt(7)
Check "GR_Intersec_2_Rectas b", b, CInt(7)
Check "GR_Intersec_2_Rectas c", c, True
a = 7
b = 7
c = False
geometria.GR_Intersec_2_Rectas_S 0, 0, 1, 2, 5, 0, 6, 2, a, b, c
Check "GR_Intersec_2_Rectas_S a", a, CInt(7)
Check "GR_Intersec_2_Rectas_S b", b, CInt(7)
Check "GR_Intersec_2_Rectas_S c", c, True
a = 7
b = 7
c = False
geometria.GR_Se_cortan_2_rectas 0, 0, 4, 4, 0, 4, 4, 1, a, b, c
Check "GR_Se_cortan_2_rectas a", a, Bits("4002492492492491")  ' 2.285714285714285
Check "GR_Se_cortan_2_rectas b", b, Bits("4002492492492493")  ' 2.285714285714286
Check "GR_Se_cortan_2_rectas c", c, True
a = 7
b = 7
answer = geometria.GF_Se_cortan_2_rectas(0, 0, 3, 1, 0, 5, 1, 4.5, a, b)
Check "GF_Se_cortan_2_rectas", answer, False
Check "GF_Se_cortan_2_rectas a", a, 6.0
Check "GF_Se_cortan_2_rectas b", b, 2.0
answer = geometria.GF_angulo_3_puntos(1, 5, 0, 0, 4, 1)
Near "GF_angulo_3_puntos", answer, Bits("4051F59AF2B23A38")  ' 71.83758227734586
a = 7
b = 7
c = 7
d = 7
geometria.GR_Paralela 0, 0, 30, 40, a, b, c, d, 5
Near "GR_Paralela a", a, Bits("400FFFFFFFFFFFFF")  ' 3.9999999999999996
Near "GR_Paralela b", b, Bits("C008000000000001")  ' -3.0000000000000004
Near "GR_Paralela c", c, 34.0
Near "GR_Paralela d", d, 37.0

' ---- cgeo_Matrices ----

x = Sized(Array(0.0, 3.5, -1.25, 8.0, 2.0))
a = 7
b = 7
matrices.MaxMin_1Matriz x, a, b
CheckAll "MaxMin_1Matriz x", x, Array(0.0, 3.5, -1.25, 8.0, 2.0)
Check "MaxMin_1Matriz a", a, 8.0
Check "MaxMin_1Matriz b", b, -1.25
x = Sized(Array(0.0, 3.5, -1.25, 8.0, 2.0))
y = Sized(Array(0.0, 1.0, 2.0, -7.5, 4.0))
a = 7
b = 7
c = 7
d = 7
matrices.MaxMin_2Matriz x, y, a, b, c, d
CheckAll "MaxMin_2Matriz x", x, Array(0.0, 3.5, -1.25, 8.0, 2.0)
CheckAll "MaxMin_2Matriz y", y, Array(0.0, 1.0, 2.0, -7.5, 4.0)
Check "MaxMin_2Matriz a", a, 8.0
Check "MaxMin_2Matriz b", b, -1.25
Check "MaxMin_2Matriz c", c, 4.0
Check "MaxMin_2Matriz d", d, -7.5
x = Sized(Array(0.0, 3.5, -1.25, 8.0, 2.0))
y = Sized(Array(0.0, 1.0, 2.0, -7.5, 4.0))
z = Sized(Array(0.0, 20.0))
u = Sized(Array(0.0, -30.0))
a = 7
b = 7
c = 7
d = 7
matrices.MaxMin_4_matrices_XY_XY x, y, z, u, a, b, c, d
CheckAll "MaxMin_4_matrices_XY_XY x", x, Array(0.0, 3.5, -1.25, 8.0, 2.0)
CheckAll "MaxMin_4_matrices_XY_XY y", y, Array(0.0, 1.0, 2.0, -7.5, 4.0)
CheckAll "MaxMin_4_matrices_XY_XY z", z, Array(0.0, 20.0)
CheckAll "MaxMin_4_matrices_XY_XY u", u, Array(0.0, -30.0)
Check "MaxMin_4_matrices_XY_XY a", a, 20.0
Check "MaxMin_4_matrices_XY_XY b", b, -1.25
Check "MaxMin_4_matrices_XY_XY c", c, 4.0
Check "MaxMin_4_matrices_XY_XY d", d, -30.0
x = Sized(Array(0.0, 3.5, -1.25, 8.0, 2.0))
y = Sized(Array(0.0, 1.0, 2.0, -7.5, 4.0))
z = Sized(Array(0.0, 600.5, 601.25, 599.75, 610.0))
a = 7
b = 7
c = 7
d = 7
e = 7
f = 7
matrices.MaxMin_3Matriz x, y, z, a, b, c, d, e, f
CheckAll "MaxMin_3Matriz x", x, Array(0.0, 3.5, -1.25, 8.0, 2.0)
CheckAll "MaxMin_3Matriz y", y, Array(0.0, 1.0, 2.0, -7.5, 4.0)
CheckAll "MaxMin_3Matriz z", z, Array(0.0, 600.5, 601.25, 599.75, 610.0)
Check "MaxMin_3Matriz a", a, 8.0
Check "MaxMin_3Matriz b", b, -1.25
Check "MaxMin_3Matriz c", c, 4.0
Check "MaxMin_3Matriz d", d, -7.5
Check "MaxMin_3Matriz e", e, 610.0
Check "MaxMin_3Matriz f", f, 599.75
x = Sized(Array(0.0, 3.5, -1.25, 8.0, 2.0))
y = Sized(Array(0.0, 1.0, 2.0, -7.5, 4.0))
z = Sized(Array(0.0, 600.5, 601.25, 599.75, 610.0))
a = 7
b = 7
c = 7
d = 7
e = 7
f = 7
matrices.MaxMin_3Matriz x, y, z, a, b, c, d, e, f, False
CheckAll "MaxMin_3Matriz x", x, Array(0.0, 3.5, -1.25, 8.0, 2.0)
CheckAll "MaxMin_3Matriz y", y, Array(0.0, 1.0, 2.0, -7.5, 4.0)
CheckAll "MaxMin_3Matriz z", z, Array(0.0, 600.5, 601.25, 599.75, 610.0)
Check "MaxMin_3Matriz a", a, 8.0
Check "MaxMin_3Matriz b", b, -1.25
Check "MaxMin_3Matriz c", c, 4.0
Check "MaxMin_3Matriz d", d, -7.5
Check "MaxMin_3Matriz e", e, 610.0
Check "MaxMin_3Matriz f", f, 599.75
x = Sized(Array(0.0, 3.5, -1.25, 8.0, 2.0))
y = Sized(Array(0.0, 600.5, 601.25, 599.75, 610.0))
matrices.Sumar_a_1Matriz_otra x, y
CheckAll "Sumar_a_1Matriz_otra x", x, Array(0.0, 604.0, 600.0, 607.75, 612.0)
CheckAll "Sumar_a_1Matriz_otra y", y, Array(0.0, 600.5, 601.25, 599.75, 610.0)
x = Sized(Array(0.0, 3.5, -1.25, 8.0, 2.0))
y = Sized(Array(0.0, 0.1, 0.2, 0.3, 0.7))
matrices.Restar_a_1Matriz_otra x, y
CheckAll "Restar_a_1Matriz_otra x", x, Array(0.0, 3.4, -1.45, 7.7, 1.3)
CheckAll "Restar_a_1Matriz_otra y", y, Array(0.0, 0.1, 0.2, 0.3, 0.7)
x = Sized(Array(0.0, 3.5, -1.25, 8.0, 2.0))
y = Sized(Array(0.0, 1.0, 2.0, -7.5, 4.0))
z = Sized(Array(0.0, 600.5, 601.25, 599.75, 610.0))
matrices.Ordena_en_X_3_Matrices 4, x, y, z
CheckAll "Ordena_en_X_3_Matrices x", x, Array(0.0, -1.25, 2.0, 3.5, 8.0)
CheckAll "Ordena_en_X_3_Matrices y", y, Array(0.0, 2.0, 4.0, 1.0, -7.5)
CheckAll "Ordena_en_X_3_Matrices z", z, Array(0.0, 601.25, 610.0, 600.5, 599.75)
x = Sized(Array(0.0, 3.5, -1.25, 8.0, 2.0))
y = Empty
matrices.Ordena_en_X_el_Indice_1Matriz 4, x, y
CheckAll "Ordena_en_X_el_Indice_1Matriz x", x, Array(0.0, 3.5, -1.25, 8.0, 2.0)
CheckAll "Ordena_en_X_el_Indice_1Matriz y", y, Array(0, 2, 4, 1, 3)
x = Sized(Array(0.0, 3.5, -1.25, 8.0, 2.0))
y = Sized(Array(9, 9, 9, 9, 9))
matrices.Ordena_en_X_el_Indice_1Matriz1 4, x, y, Nothing
CheckAll "Ordena_en_X_el_Indice_1Matriz1 x", x, Array(0.0, 3.5, -1.25, 8.0, 2.0)
CheckAll "Ordena_en_X_el_Indice_1Matriz1 y", y, Array(9, 1, 2, 3, 4)
x = Sized(Array(0.0, 3.5, -1.25, 8.0, 2.0))
y = Sized(Array(9))
matrices.Ordena_en_X_el_Indice_1Matriz2 4, x, y, Nothing
CheckAll "Ordena_en_X_el_Indice_1Matriz2 x", x, Array(0.0, 3.5, -1.25, 8.0, 2.0)
CheckAll "Ordena_en_X_el_Indice_1Matriz2 y", y, Array(0, 2, 4, 1, 3)
a = 5
x = Sized(Array(0.0, 5.0, 1.0, 5.0001, 3.0, 1.0001))
y = Sized(Array(0.0, 2.0, 1.0, 2.0001, 7.0, 1.0001))
z = Sized(Array(0.0, 1.0, 2.0, 3.0, 4.0, 5.0))
matrices.Quita_Puntos_Repetidos a, x, y, z
Check "Quita_Puntos_Repetidos a", a, CLng(4)
CheckAll "Quita_Puntos_Repetidos x", x, Array(0.0, 1.0, 3.0, 5.0, 5.0001, 1.0001)
CheckAll "Quita_Puntos_Repetidos y", y, Array(0.0, 1.0, 7.0, 2.0, 2.0001, 1.0001)
CheckAll "Quita_Puntos_Repetidos z", z, Array(0.0, 2.0, 4.0, 1.0, 3.0, 5.0)
ForgetProgress
a = 6
x = Sized(Array(0.0, 5.0, 1.0, 5.05, 3.0, 1.02, 9.0))
y = Sized(Array(0.0, 2.0, 1.0, 2.05, 7.0, 1.01, 4.0))
z = Sized(Array(0.0, 10.0, 20.0, 30.0, 40.0, 50.0, 60.0))
u = Sized(Array(0, 101, 102, 103, 104, 105, 106))
matrices.Quita_Puntos_Repetidos_XYZ_con_indice1 a, x, y, z, u, Me, 0.1, False
Check "Quita_Puntos_Repetidos_XYZ_con_indice1 points", a, CLng(4)
CheckAll "Quita_Puntos_Repetidos_XYZ_con_indice1 x", x, Array(0.0, 5.0, 1.0, 5.05, 3.0, 1.02, 9.0)
CheckAll "Quita_Puntos_Repetidos_XYZ_con_indice1 y", y, Array(0.0, 2.0, 1.0, 2.05, 7.0, 1.01, 4.0)
CheckAll "Quita_Puntos_Repetidos_XYZ_con_indice1 z", z, Array(0.0, 10.0, 20.0, 30.0, 40.0, 50.0, 60.0)
CheckAll "Quita_Puntos_Repetidos_XYZ_con_indice1 u", u, Array(0, 105, 104, 103, 106, 0, 0)
Check "Quita_Puntos_Repetidos_XYZ_con_indice1 Visible", Visible, True
Check "Quita_Puntos_Repetidos_XYZ_con_indice1 Min", Min, CInt(0)
Check "Quita_Puntos_Repetidos_XYZ_con_indice1 max", max, Bits("3F526E009370049C")  ' 0.0011248593925759281
Check "Quita_Puntos_Repetidos_XYZ_con_indice1 Value", IsEmpty(Value), True
ForgetProgress
a = 6
x = Sized(Array(0.0, 5.0, 1.0, 5.05, 3.0, 1.02, 9.0))
y = Sized(Array(0.0, 2.0, 1.0, 2.05, 7.0, 1.01, 4.0))
z = Sized(Array(0.0, 10.0, 20.0, 30.0, 40.0, 50.0, 60.0))
u = Sized(Array(0, 101, 102, 103, 104, 105, 106))
matrices.Quita_Puntos_Repetidos_XYZ_con_indice1 a, x, y, z, u, Me
Check "Quita_Puntos_Repetidos_XYZ_con_indice1 points", a, CInt(6)
CheckAll "Quita_Puntos_Repetidos_XYZ_con_indice1 x", x, Array(0.0, 5.0, 1.0, 5.05, 3.0, 1.02, 9.0)
CheckAll "Quita_Puntos_Repetidos_XYZ_con_indice1 y", y, Array(0.0, 2.0, 1.0, 2.05, 7.0, 1.01, 4.0)
CheckAll "Quita_Puntos_Repetidos_XYZ_con_indice1 z", z, Array(0.0, 10.0, 20.0, 30.0, 40.0, 50.0, 60.0)
CheckAll "Quita_Puntos_Repetidos_XYZ_con_indice1 u", u, Array(0, 102, 105, 104, 101, 103, 106)
Check "Quita_Puntos_Repetidos_XYZ_con_indice1 Visible", Visible, True
Check "Quita_Puntos_Repetidos_XYZ_con_indice1 Min", Min, CInt(0)
Check "Quita_Puntos_Repetidos_XYZ_con_indice1 max", max, Bits("3F526E009370049C")  ' 0.0011248593925759281
Check "Quita_Puntos_Repetidos_XYZ_con_indice1 Value", IsEmpty(Value), True
a = 4
x = Sized(Array(0.0, 3.5, -1.25, 8.0, 2.0))
y = Sized(Array(0.0, 1.0, 2.0, -7.5, 4.0))
z = Sized(Array(0.0, 600.5, 601.25, 599.75, 610.0))
u = Sized(Array(0, 1, 2, 3, 4))
matrices.Quita_Puntos_Repetidos_XYZ_con_indice a, x, y, z, u
Check "Quita_Puntos_Repetidos_XYZ_con_indice a", a, CInt(4)
CheckAll "Quita_Puntos_Repetidos_XYZ_con_indice x", x, Array(0.0, 3.5, -1.25, 8.0, 2.0)
CheckAll "Quita_Puntos_Repetidos_XYZ_con_indice y", y, Array(0.0, 1.0, 2.0, -7.5, 4.0)
CheckAll "Quita_Puntos_Repetidos_XYZ_con_indice z", z, Array(0.0, 600.5, 601.25, 599.75, 610.0)
CheckAll "Quita_Puntos_Repetidos_XYZ_con_indice u", u, Array(0, 1, 2, 3, 4)
a = 1
x = Sized(Array(0.0, 1.0))
y = Sized(Array(0.0, 2.0))
z = Sized(Array(0.0, 3.0))
u = Sized(Array("", "a"))
v = Sized(Array("", "b"))
w = Sized(Array(0, 3))
t = Sized(Array(0, 1))
matrices.Quita_Pts_Repetidos_3D a, x, y, z, u, v, w, t, Nothing, False
Check "Quita_Pts_Repetidos_3D a", a, CInt(1)
CheckAll "Quita_Pts_Repetidos_3D x", x, Array(0.0, 1.0)
CheckAll "Quita_Pts_Repetidos_3D y", y, Array(0.0, 2.0)
CheckAll "Quita_Pts_Repetidos_3D z", z, Array(0.0, 3.0)
CheckAll "Quita_Pts_Repetidos_3D u", u, Array("", "a")
CheckAll "Quita_Pts_Repetidos_3D v", v, Array("", "b")
CheckAll "Quita_Pts_Repetidos_3D w", w, Array(0, 3)
CheckAll "Quita_Pts_Repetidos_3D t", t, Array(0, 1)
a = 4
x = Sized(Array(0.0, 3.5, -1.25, 8.0, 2.0))
y = Sized(Array(0.0, 1.0, 2.0, -7.5, 4.0))
z = Sized(Array(0.0, 600.5, 601.25, 599.75, 610.0))
u = Sized(Array(0, 11, 12, 13, 14))
matrices.Quita_Puntos_fuera_interv_de_Cotas_con_indice a, x, y, z, u, 602, 600
Check "Quita_Puntos_fuera_interv_de_Cotas_con_indice a", a, CLng(2)
CheckAll "Quita_Puntos_fuera_interv_de_Cotas_con_indice x", x, Array(0.0, 3.5, -1.25)
CheckAll "Quita_Puntos_fuera_interv_de_Cotas_con_indice y", y, Array(0.0, 1.0, 2.0)
CheckAll "Quita_Puntos_fuera_interv_de_Cotas_con_indice z", z, Array(0.0, 600.5, 601.25)
CheckAll "Quita_Puntos_fuera_interv_de_Cotas_con_indice u", u, Array(0, 11, 12)

' ---- A variable's type, and arrays of fixed size ----

Dim dx, dy, same
dx = "3"
dy = CLng(4)
a = CSng(1)
algorismos.Azimut dx, dy, a
Check "a text that is a number", dx, "3"
Check "a whole number", dy, CLng(4)
Near "the answer's type", a, Bits("40447BB801ADB78D")
same = 1
algorismos.Azimut same, same, same
Near "one variable three times", same, Bits("4048FFFFFFF1FAD7")

Dim fixed(4), sorted(3)
fixed(1) = 3.5
fixed(2) = -1.25
fixed(3) = 8
fixed(4) = 2
matrices.MaxMin_1Matriz fixed, a, b
Check "of a fixed array the greatest", a, 8.0
Check "of a fixed array the least", b, -1.25
sorted(0) = 3
sorted(1) = 1
sorted(2) = 2
sorted(3) = 0
ordena.Ordena_LongArray sorted
CheckAll "a fixed array is sorted in place", sorted, Array(0, 1, 2, 3)

' ---- Failures ----

Dim number, description, source

Sub Keep
  number = Err.Number
  description = Err.Description
  source = Err.Source
  Err.Clear
End Sub

Sub Failure(what, wanted, words, signed)
  Check what & ": number", number, CLng(wanted)
  Check what & ": description", description, words
  Check what & ": source", source, "Orv2_Geo." & signed
End Sub

' Of what the script's own engine finds out before the library is asked, the words are the engine's.
Sub Refused(what, wanted)
  Check what, number, CLng(wanted)
End Sub

' Letters beyond plain ones in the system's code page, as this engine makes them.
Dim of_matrix, of_object, of_argument
of_matrix = "La matriz es fija o est" & Chr(225) & " bloqueada temporalmente"
of_object = "El objeto no admite esta propiedad o m" & Chr(233) & "todo"
of_argument = "Argumento o llamada a procedimiento no v" & Chr(225) & "lidos"

On Error Resume Next

a = 7
algorismos.Azimut 1E+200, 1E-200, a
Keep
Failure "an overflow", 6, "Desbordamiento", "cgeo_Algorismos"
Check "is not written", a, 7
algorismos.XY_de_Z_en_Recta 0, 0, 5, 3, 4, 5, a, b, 7
Keep
Failure "level ends", 11, "Divisi" & Chr(243) & "n por cero", "cgeo_Algorismos"
answer = algorismos.Triangulo_pendiente(0, 0, 1E+200, 1E+200, 0, 5, 0, 1E+200, 9)
Keep
Failure "a triangle", 3, "Return sin GoSub", "cgeo_Algorismos"
ForgetDots
algorismos.Linea_a_puntos Nothing, 0, 0, 3, 2
Keep
Failure "no surface", 91, "Variable de objeto no establecida", "cgeo_Algorismos"
algorismos.Linea_a_puntos derivadas, 0, 0, 3, 2
Keep
Failure "a surface without dots", 438, of_object, "cgeo_Algorismos"
algorismos.Linea_a_puntos Me, 0, 0, 40000, 2
Keep
Failure "a line too long", 6, "Desbordamiento", "cgeo_Algorismos"
Check "no dot is set", dots, 0
Dim sheet
Set sheet = New Surface
algorismos.Linea_a_puntos sheet, 0, 0, 3, 2
Keep
Check "an object of a class", number, CLng(0)
Check "its dots", sheet.Dots, 5
answer = derivadas.F_LogN(-1)
Keep
Failure "a logarithm", 5, of_argument, "cgeo_FuncDeriv"
x = Empty
answer = terreno.TF_Yminima_del_Terreno(x)
Keep
Failure "no array", 9, "El sub" & Chr(237) & "ndice est" & Chr(225) & " fuera del intervalo", "cgeo_Terreno"
Check "the variable stays empty", IsEmpty(x), True
x = Sized(Array(0.0, 2.0, 1.0))
matrices.Ordena_en_X_el_Indice_1Matriz 2, x, fixed
Keep
Failure "a fixed array is not resized", 10, of_matrix, "cgeo_Matrices"
Check "its upper bound", UBound(fixed), CLng(4)
Check "its elements", fixed(1), 3.5
terreno.TR_Cotas_en_unTerreno_dando_DistOr x, x, x, fixed
Keep
Failure "a fixed array is not written anew", 10, of_matrix, "cgeo_Terreno"
x = Sized(Array(0.0, 30.0, 10.0))
ordena.Ordena_LongArray x, 0, 5
Keep
Failure "an element too many", 9, "El sub" & Chr(237) & "ndice est" & Chr(225) & " fuera del intervalo", "cgeo_Ordena"

algorismos.No_hay 1
Keep
Refused "a member that is not there", 438
derivadas.F_LogN = 4
Keep
Refused "a method is no property", 438
algorismos.Azimut 1.0
Keep
Refused "an argument too few", 450
algorismos.Azimut 1.0, 1.0, a, 3
Keep
Refused "an argument too many", 450
answer = derivadas.Pi(3)
Keep
Refused "a property has no argument", 450
algorismos.Azimut "abc", 1.0, a
Keep
Refused "a text that is no number", 13
algorismos.Azimut Null, 1.0, a
Keep
Refused "nothing valid", 13
matrices.MaxMin_1Matriz 3, a, b
Keep
Refused "a number is no array", 13
x = Array(0.0, "uno", 2.0)
matrices.MaxMin_1Matriz x, a, b
Keep
Refused "an element that is no number", 13
answer = algorismos.Distancia_Punto_Punto_l(1, 2, 3000000000, 4)
Keep
Refused "a number too big for its type", 6
Set answer = CreateObject("Orv2_Geo.cgeo_Nada")
Keep
Refused "a class that is not there", 429
derivadas.Pi = "tres"
Keep
Refused "a property of another type", 13
Check "the property stays", derivadas.Pi, Bits("400921FB54442D18")

On Error GoTo 0

' ---- The end ----

If words = "aborted" Then algorismos.No_hay 1
If words = "broken" Then Check "a broken expectation", 1, 2
If failed > 0 Then
  WScript.Echo failed & " of " & checks & " checks failed"
  WScript.Quit 1
End If
WScript.Echo "all " & checks & " checks passed"
