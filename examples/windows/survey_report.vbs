' The core of a survey's report, from a script:
'
'   cscript //nologo survey_report.vbs FILE [TOLERANCE [CODE]]
'
' FILE is a point file, one point a line: number, X, Y, Z, code. A header line, blank lines and lines that
' start with # may be there. Points nearer than TOLERANCE to another in X and in Y are repeated (0.05 when
' left out). The points of CODE (LINDERO when left out), in the file's order, are the corners of an area.
' It ends with 0, with 1 where the library fails, 2 where the file cannot be used, and 3 where the library
' is not registered.
Option Explicit

Dim points, numbers, X, Y, Z, codes
Dim algorismos, api, geometria, matrices

Sub Leave(message, status)
  WScript.Echo "survey_report: " & message
  WScript.Quit status
End Sub

' ---- Numbers with a point as decimal sign, whatever the user's language ----

Function DigitsOnly(text)
  Dim i
  DigitsOnly = Len(text) > 0
  For i = 1 To Len(text)
    If InStr("0123456789", Mid(text, i, 1)) = 0 Then DigitsOnly = False
  Next
End Function

' Empty where the text is no number. A number of up to 15 digits is read exactly.
Function NumberIn(text)
  Dim digits, sign, place, decimals
  digits = Trim(text)
  sign = 1
  decimals = 0
  If Left(digits, 1) = "-" Then
    sign = -1
    digits = Mid(digits, 2)
  End If
  place = InStr(digits, ".")
  If place > 0 Then
    decimals = Len(digits) - place
    digits = Left(digits, place - 1) & Mid(digits, place + 1)
  End If
  If DigitsOnly(digits) Then
    NumberIn = sign * CDbl(digits) / 10 ^ decimals
  Else
    NumberIn = Empty
  End If
End Function

Function Fixed(number, decimals)
  Dim units, digits
  units = Int(Abs(number) * 10 ^ decimals + 0.5)
  digits = CStr(units)
  Do While Len(digits) <= decimals
    digits = "0" & digits
  Loop
  Fixed = Left(digits, Len(digits) - decimals) & "." & Right(digits, decimals)
  If number < 0 And units > 0 Then Fixed = "-" & Fixed
End Function

Function Wide(text, width)
  Wide = text
  Do While Len(Wide) < width
    Wide = " " & Wide
  Loop
End Function

' ---- The file ----

' A line as a point, where it is one. Points are numbered from 1.
Sub TakeLine(line)
  Dim parts, east, north, height
  If Left(line, 1) = "#" Then Exit Sub
  parts = Split(line, ",")
  If UBound(parts) < 3 Then Exit Sub
  east = NumberIn(parts(1))
  north = NumberIn(parts(2))
  height = NumberIn(parts(3))
  If IsEmpty(east) Or IsEmpty(north) Or IsEmpty(height) Then Exit Sub
  points = points + 1
  If points > UBound(X) Then Resize 2 * points
  numbers(points) = parts(0)
  X(points) = east
  Y(points) = north
  Z(points) = height
  codes(points) = ""
  If UBound(parts) > 3 Then codes(points) = Trim(parts(4))
End Sub

Sub Resize(upper)
  ReDim Preserve numbers(upper)
  ReDim Preserve X(upper)
  ReDim Preserve Y(upper)
  ReDim Preserve Z(upper)
  ReDim Preserve codes(upper)
End Sub

Sub ReadPoints(path)
  Dim files, file
  Set files = CreateObject("Scripting.FileSystemObject")
  If Not files.FileExists(path) Then Leave "there is no file " & path, 2
  ReDim numbers(99)
  ReDim X(99)
  ReDim Y(99)
  ReDim Z(99)
  ReDim codes(99)
  X(0) = 0.0
  Y(0) = 0.0
  Z(0) = 0.0
  points = 0
  Set file = files.OpenTextFile(path)
  Do While Not file.AtEndOfStream
    TakeLine file.ReadLine
  Loop
  file.Close
  If points < 2 Then Leave path & " holds fewer than two points", 2
  Resize points
End Sub

' ---- The library ----

Sub CreateObjects
  On Error Resume Next
  Set algorismos = CreateObject("Orv2_Geo.cgeo_Algorismos")
  Set api = CreateObject("Orv2_Geo.cgeo_api")
  Set geometria = CreateObject("Orv2_Geo.cgeo_Geometria")
  Set matrices = CreateObject("Orv2_Geo.cgeo_Matrices")
  If Err.Number <> 0 Then
    Leave "the library is not registered for scripts of this word length: regsvr32 Orv2_Geo.dll", 3
  End If
End Sub

' The script is its own progress indicator: the library sets these up before it looks for repeated points.
Dim Visible, Min, max, Value

Sub TellExtremes
  Dim most(3), least(3)
  matrices.MaxMin_3Matriz X, Y, Z, most(1), least(1), most(2), least(2), most(3), least(3)
  WScript.Echo "Points       " & points
  WScript.Echo "X            " & Fixed(least(1), 3) & " to " & Fixed(most(1), 3)
  WScript.Echo "Y            " & Fixed(least(2), 3) & " to " & Fixed(most(2), 3)
  WScript.Echo "Z            " & Fixed(least(3), 3) & " to " & Fixed(most(3), 3)
End Sub

' The library numbers the points that stay and leaves the coordinates alone.
Sub TellRepeated(tolerance)
  Dim kept, places, i
  ReDim places(points)
  For i = 0 To points
    places(i) = i
  Next
  kept = points
  matrices.Quita_Puntos_Repetidos_XYZ_con_indice1 kept, X, Y, Z, places, Me, tolerance
  WScript.Echo "Without repeated points within " & Fixed(tolerance, 3)
  WScript.Echo "             " & kept
End Sub

Sub TellInside(code)
  Dim cornerX, cornerY, corners, inside, i
  ReDim cornerX(points + 1)
  ReDim cornerY(points + 1)
  cornerX(0) = 0.0
  cornerY(0) = 0.0
  corners = 0
  For i = 1 To points
    If codes(i) = code Then
      corners = corners + 1
      cornerX(corners) = X(i)
      cornerY(corners) = Y(i)
    End If
  Next
  WScript.Echo "Area of " & code
  If corners < 3 Then
    WScript.Echo "             none: " & corners & " corners"
    Exit Sub
  End If
  corners = corners + 1
  cornerX(corners) = cornerX(1)
  cornerY(corners) = cornerY(1)
  ReDim Preserve cornerX(corners)
  ReDim Preserve cornerY(corners)
  inside = 0
  For i = 1 To points
    If api.Pto_in_Poligono(cornerX, cornerY, corners, X(i), Y(i)) Then inside = inside + 1
  Next
  WScript.Echo "             " & (corners - 1) & " corners, " & inside & " points inside"
End Sub

' Azimuths are centesimal, 0 on +Y, clockwise; points of one place have none.
Sub TellLegs
  Dim i, azimuth, distance, shown
  WScript.Echo ""
  WScript.Echo "    From      To   Azimuth   Distance"
  For i = 2 To points
    distance = geometria.GF_Distancia(X(i - 1), Y(i - 1), X(i), Y(i))
    shown = "-"
    If distance > 0 Then
      algorismos.Azimut X(i) - X(i - 1), Y(i) - Y(i - 1), azimuth
      shown = Fixed(azimuth, 4)
    End If
    WScript.Echo Wide(numbers(i - 1), 8) & Wide(numbers(i), 8) & Wide(shown, 10) & Wide(Fixed(distance, 3), 11)
  Next
End Sub

' ---- The report ----

Sub Report(tolerance, code)
  TellExtremes
  TellRepeated tolerance
  TellInside code
  TellLegs
End Sub

Dim tolerance, code
If WScript.Arguments.Count = 0 Then
  Leave "usage: cscript //nologo survey_report.vbs FILE [TOLERANCE [CODE]]", 2
End If
tolerance = 0.05
code = "LINDERO"
If WScript.Arguments.Count > 1 Then tolerance = NumberIn(WScript.Arguments(1))
If IsEmpty(tolerance) Then Leave "the tolerance is no number", 2
If WScript.Arguments.Count > 2 Then code = WScript.Arguments(2)

ReadPoints WScript.Arguments(0)
CreateObjects
On Error Resume Next
Report tolerance, code
If Err.Number <> 0 Then Leave Err.Source & ": " & Err.Description & " (" & Err.Number & ")", 1
