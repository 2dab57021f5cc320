// words.h: everything that a person reads, in every language of the report.
#pragma once

#include "survey_report/word.h"

namespace survey_report::words {

// ---- Counted

inline constexpr Word point{"point", "punto"};
inline constexpr Word points{"points", "puntos"};
inline constexpr Word leg{"leg", "tramo"};
inline constexpr Word legs{"legs", "tramos"};
inline constexpr Word node{"node", "nodo"};
inline constexpr Word nodes{"nodes", "nodos"};
inline constexpr Word point_lies{"point lies", "punto está"};
inline constexpr Word points_lie{"points lie", "puntos están"};
inline constexpr Word field{"field", "campo"};
inline constexpr Word fields{"fields", "campos"};

// ---- Headings of columns, and names of facts

inline constexpr Word axis{"Axis", "Eje"};
inline constexpr Word minimum{"Minimum", "Mínimo"};
inline constexpr Word maximum{"Maximum", "Máximo"};
inline constexpr Word difference{"Difference", "Diferencia"};
inline constexpr Word number{"Number", "Número"};
inline constexpr Word point_title{"Point", "Punto"};
inline constexpr Word points_title{"Points", "Puntos"};
inline constexpr Word code{"Code", "Código"};
inline constexpr Word azimuth{"Azimuth", "Acimut"};
inline constexpr Word distance{"Distance", "Distancia"};
inline constexpr Word elevation{"Elevation", "Cota"};
inline constexpr Word slope_percent{"Slope %", "Pendiente %"};
inline constexpr Word triangle{"Triangle", "Triángulo"};
inline constexpr Word cut{"Cut", "Corte"};
inline constexpr Word station{"Station", "Estación"};
inline constexpr Word rise{"Rise", "Desnivel"};
inline constexpr Word would_be_removed{"Would be removed", "Se quitaría"};
inline constexpr Word kept{"Kept", "Conservado"};
inline constexpr Word stands_for{"Stands for", "Sustituye a"};
inline constexpr Word traverse{"Traverse", "Itinerario"};
inline constexpr Word tolerance{"Tolerance", "Tolerancia"};
inline constexpr Word pairs{"Pairs", "Parejas"};
inline constexpr Word file{"File", "Fichero"};
inline constexpr Word boundary{"Boundary", "Lindero"};
inline constexpr Word vertices{"Vertices", "Vértices"};
inline constexpr Word perimeter{"Perimeter", "Perímetro"};
inline constexpr Word section{"Section", "Sección"};
inline constexpr Word bearing{"Bearing", "Acimut"};
inline constexpr Word length{"Length", "Longitud"};
inline constexpr Word terrain{"Terrain", "Terreno"};
inline constexpr Word lowest{"Lowest", "Cota mínima"};
inline constexpr Word highest{"Highest", "Cota máxima"};
inline constexpr Word stations{"Stations", "Estaciones"};
inline constexpr Word area{"Area", "Zona"};
inline constexpr Word box{"Box", "Recuadro"};
inline constexpr Word inside{"Inside", "Dentro"};

inline constexpr Word first_point{"First point", "Primer punto"};
inline constexpr Word first_code{"First code", "Primer código"};
inline constexpr Word second_point{"Second point", "Segundo punto"};
inline constexpr Word second_code{"Second code", "Segundo código"};
inline constexpr Word first_removed{"First would be removed", "Se quitaría el primero"};
inline constexpr Word second_removed{"Second would be removed", "Se quitaría el segundo"};
inline constexpr Word vertex_1{"Vertex 1", "Vértice 1"};
inline constexpr Word vertex_2{"Vertex 2", "Vértice 2"};
inline constexpr Word vertex_3{"Vertex 3", "Vértice 3"};
inline constexpr Word minimum_point{"Point of the minimum", "Punto del mínimo"};
inline constexpr Word maximum_point{"Point of the maximum", "Punto del máximo"};

// ---- The report

inline constexpr Word survey_report{"Survey report: {1}", "Informe del levantamiento: {1}"};
inline constexpr Word read_as{"{1}, read as {2}", "{1}, leídos como {2}"};
inline constexpr Word in_plan{"{1} in plan, {2}", "{1} en planta, {2}"};
inline constexpr Word repeated_points{"Repeated points", "Puntos repetidos"};
inline constexpr Word in_x_and_y{"{1}, in X and in Y", "{1}, en X y en Y"};
inline constexpr Word too_many_pairs{"more than {1}: not listed", "más de {1}: no se relacionan"};
inline constexpr Word none_would_be_removed{"none would be removed: {1}",
                                            "no se quitaría ninguno: {1}"};
inline constexpr Word so_many_would_be_removed{"{1} of {2} would be removed",
                                               "se quitarían {1} de {2}"};
inline constexpr Word about_pairs{
    "A pair is any two points nearer than the tolerance in X and in Y; distance in plan,\n"
    "rise from the first. A removal would go once through the points in the order of X,\n"
    "take neighbours that near to the first of them for one point, and keep the\n"
    "highest. It would not see a pair that another point parts in that order: both may\n"
    "stay. This report and its drawings are of all points, none of them removed.\n",
    "Son pareja dos puntos cualesquiera más próximos que la tolerancia en X y en Y; la\n"
    "distancia es en planta y el desnivel, desde el primero. Al quitar repetidos se\n"
    "recorrerían los puntos una vez en el orden de X, se tomarían por un solo punto los\n"
    "vecinos así de próximos al primero de ellos y se conservaría el más alto. No se\n"
    "vería una pareja que otro punto separa en ese orden: pueden quedar los dos. Este\n"
    "informe y sus planos son de todos los puntos, sin quitar ninguno.\n"};
inline constexpr Word kept_in_dialog{"Points kept in the dialog",
                                     "Puntos conservados en el diálogo"};
inline constexpr Word dialog_cancelled{
    "Cancelled: no file of kept points was written.\n",
    "Cancelado: no se escribió fichero de puntos conservados.\n"};
inline constexpr Word so_many_of{"{1} of {2}", "{1} de {2}"};
inline constexpr Word others_left_out{
    "The others are left out of the file alone: this report and its drawings are of all\n"
    "points.\n",
    "Los demás faltan solo en ese fichero: este informe y sus planos son de todos los\n"
    "puntos.\n"};
inline constexpr Word boundary_and_section{"Boundary and section line",
                                           "Lindero y línea de sección"};
inline constexpr Word points_with_code{"{1} whose code begins with {2}",
                                       "{1} cuyo código empieza por {2}"};
inline constexpr Word in_order_of_file{"{1}, in the order of the file",
                                       "{1}, en el orden del fichero"};
inline constexpr Word hull_for_want{
    "convex hull of all points, for want of a boundary: {1}",
    "envolvente convexa de todos los puntos, a falta de lindero: {1}"};
inline constexpr Word measured_again{"{1}; {2} where an earlier one does: measured again",
                                     "{1}; {2} donde otro anterior: medido de nuevo"};
inline constexpr Word no_area{"None: the points do not enclose an area.\n",
                              "No hay: los puntos no encierran una superficie.\n"};
inline constexpr Word no_enclosed_area{"the points do not enclose an area",
                                       "los puntos no encierran una superficie"};
inline constexpr Word not_computed{"Not computed: {1}.\n", "Sin calcular: {1}.\n"};
inline constexpr Word not_computed_inside{"not computed: {1}.", "sin calcular: {1}."};
inline constexpr Word from_to{"from {1} to {2}", "de {1} a {2}"};
inline constexpr Word box_from_to{"{1} to {2}", "de {1} a {2}"};
inline constexpr Word gon{"{1} gon", "{1} gon"};
inline constexpr Word no_cut{"The section line does not cut the boundary.\n",
                             "La línea de sección no corta al lindero.\n"};
inline constexpr Word distance_from_start{"Distance from the start of the section line.\n",
                                          "Distancia desde el origen de la línea de sección.\n"};
inline constexpr Word elevations_and_slopes{"Elevations and slopes", "Cotas y pendientes"};
inline constexpr Word no_node{
    "No node of a grid of {1} lies inside the boundary with three points "
    "around it.\n",
    "Ningún nodo de una cuadrícula de {1} está dentro del lindero con "
    "tres puntos a su\nalrededor.\n"};
inline constexpr Word about_nodes{
    "At the nodes of a grid of {1}, in the triangle of the three points named.\n"
    "Slope, where two of the three are level with each other: from the nearest of the side\n"
    "between them to the third. Where all three levels differ it is not the steepest slope\n"
    "of the triangle, which may be several times as large, and it changes with how high the\n"
    "triangle lies above the lowest point of the survey: read from it which ground is level,\n"
    "and no gradient.\n",
    "En los nodos de una cuadrícula de {1}, en el triángulo de los tres puntos citados.\n"
    "La pendiente, cuando dos de los tres están a la misma cota: del más próximo del lado\n"
    "entre ellos al tercero. Cuando las tres cotas difieren no es la línea de máxima\n"
    "pendiente del triángulo, que puede ser varias veces mayor, y cambia con la altura del\n"
    "triángulo sobre el punto más bajo del levantamiento: sirve para ver qué terreno es\n"
    "llano, no para medir inclinaciones.\n"};
inline constexpr Word slope_dash{"Slope - where the triangle has none.\n",
                                 "Pendiente - donde el triángulo no la tiene.\n"};
inline constexpr Word relief_summary{
    "{1}; elevation lowest {2}, highest {3}, mean {4}; mean of the slopes {5}",
    "{1}; cota mínima {2}, máxima {3}, media {4}; media de las pendientes {5}"};
inline constexpr Word longitudinal_profile{"Longitudinal profile", "Perfil longitudinal"};
inline constexpr Word no_profile_reason{"None: {1}.\n", "No hay: {1}.\n"};
inline constexpr Word too_few_points_near{
    "fewer than two points within {1} of the section line give it an elevation",
    "menos de dos puntos a menos de {1} de la línea de sección le dan cota"};
inline constexpr Word section_line_axis{"the section line; distances from its start",
                                        "la línea de sección; distancias desde su origen"};
inline constexpr Word terrain_points{"{1} within {2} of the axis, at most {3} apart along it",
                                     "{1} a menos de {2} del eje, separados a lo sumo {3} en él"};
inline constexpr Word every_and_ends{"every {1}, and both ends of the terrain",
                                     "cada {1}, y los dos extremos del terreno"};
inline constexpr Word about_profile{
    "The terrain has a point where each of these points is beside the axis: with its own\n"
    "elevation where it is on the axis, else with that of the triangle of three points\n"
    "around the place on the axis. From one to the next it runs straight.\n",
    "El terreno tiene un punto frente a cada uno de esos puntos: con su propia cota si está\n"
    "sobre el eje, y si no con la del triángulo de tres puntos que rodea el pie en el eje.\n"
    "De uno al siguiente es recto.\n"};
inline constexpr Word contours{"Contours", "Curvas de nivel"};
inline constexpr Word contour_step{"Step", "Equidistancia"};
inline constexpr Word contour_levels{"{1}, every fifth level an index contour: {2}",
                                     "{1}, una de cada cinco es maestra: {2}"};
inline constexpr Word contour_line{"{1} line", "{1} línea"};
inline constexpr Word contour_lines{"{1} lines", "{1} líneas"};
inline constexpr Word triangles{"Triangles", "Triángulos"};
inline constexpr Word between_spots{"{1} between {2} places of {3}",
                                    "{1} entre {2} lugares de {3}"};
inline constexpr Word triangles_left_out{"{1}; {2} with a side outside the boundary are left out",
                                         "{1}; se omiten {2} con un lado fuera del lindero"};
inline constexpr Word thinned_triangles{
    "Of so many points a part makes the triangles, spread over the survey.\n",
    "De tantos puntos forma los triángulos una parte, repartida por el levantamiento.\n"};
inline constexpr Word contour_entry{"Contour, step {1}", "Curva de nivel, cada {1}"};
inline constexpr Word index_entry{"Index contour", "Curva maestra"};
inline constexpr Word work_area{"Work area", "Zona de trabajo"};
inline constexpr Word so_many_inside{"{1} of {2}, to a hundredth", "{1} de {2}, a la centésima"};
inline constexpr Word as_given{"as given", "la indicada"};
inline constexpr Word middle_half{"rectangle over the middle half of the boundary",
                                  "rectángulo sobre la mitad central del lindero"};
inline constexpr Word about_traverse{
    "Azimuth and distance lead to the point on the next row, in plan.\n"
    "Azimuths in gon: 400 to the circle, 0 along +Y, clockwise.\n",
    "Acimut y distancia llevan al punto de la fila siguiente, en planta.\n"
    "Acimutes en grados centesimales (gon): 400 en la circunferencia, 0 hacia +Y, en el\n"
    "sentido de las agujas del reloj.\n"};
inline constexpr Word azimuth_dash{"Azimuth - where the next point has the same X and Y.\n",
                                   "Acimut - donde el punto siguiente tiene las mismas X e Y.\n"};
inline constexpr Word no_code{"no code", "sin código"};
inline constexpr Word other_codes{"other", "otros"};

// ---- Why something is not computed

inline constexpr Word failure_of{"{1} (failure {2} of {3})", "{1} (fallo {2} de {3})"};
inline constexpr Word boundary_too_large{"the boundary is too large",
                                         "el lindero es demasiado grande"};
inline constexpr Word area_larger_than{"the area is larger than {1}", "la zona es mayor que {1}"};
inline constexpr Word no_region{"the system makes no region of the area",
                                "el sistema no forma una región con la zona"};
inline constexpr Word distances_not_in_order{"the distances of the profile are not in order",
                                             "las distancias del perfil no están en orden"};
inline constexpr Word search_failed{"the library's search failed",
                                    "falló la búsqueda de la biblioteca"};
inline constexpr Word between_points{"from point {1} to point {2}: {3}",
                                     "del punto {1} al punto {2}: {3}"};
inline constexpr Word azimuth_between{"azimuth from point {1} to point {2}: {3}",
                                      "acimut del punto {1} al punto {2}: {3}"};
inline constexpr Word too_far_apart{"too far apart", "demasiado alejados"};
inline constexpr Word traverse_too_long{"the traverse becomes too long",
                                        "el itinerario resulta demasiado largo"};
inline constexpr Word no_scale_for_profile{"the terrain has no scale for a profile",
                                           "no hay escala para el perfil del terreno"};
inline constexpr Word points_too_far_apart{"the points are too far apart for a plan",
                                           "los puntos están demasiado alejados para un plano"};
inline constexpr Word no_profile{"no profile: {1}", "no hay perfil: {1}"};
inline constexpr Word repeated_points_fault{"repeated points: {1}", "puntos repetidos: {1}"};

inline constexpr Word no_triangles{"no triangles between the points",
                                   "no hay triángulos entre los puntos"};
inline constexpr Word level_terrain{"the terrain is level", "el terreno es llano"};

// ---- Choices that do not fit the survey

inline constexpr Word grid_too_fine{"--grid gives more than {1} nodes",
                                    "--grid da más de {1} nodos"};
inline constexpr Word too_many_stations{"--stations gives more than {1} stations",
                                        "--stations da más de {1} estaciones"};
inline constexpr Word area_code_too_few{"--area-code gives fewer than three vertices",
                                        "--area-code da menos de tres vértices"};
inline constexpr Word too_many_levels{"--contours gives more than {1} levels",
                                      "--contours da más de {1} curvas"};
inline constexpr Word scale_does_not_fit{
    "{1} {2} does not fit {3}: the largest round scale that does is {4}",
    "{1} {2} no cabe en {3}: la mayor escala redonda que cabe es {4}"};

// ---- Drawings

inline constexpr Word metres{"metres", "metros"};
inline constexpr Word feet{"feet", "pies"};
inline constexpr Word us_survey_feet{"US survey feet", "pies topográficos de EE. UU."};
inline constexpr Word assumed{"{1} assumed", "{1} supuestos"};
inline constexpr Word no_labels_left_out{"no labels left out", "ningún rótulo omitido"};
inline constexpr Word label_left_out{"{1} label left out", "{1} rótulo omitido"};
inline constexpr Word labels_left_out{"{1} labels left out", "{1} rótulos omitidos"};
inline constexpr Word points_drawn{"{1} of {2} points drawn", "{1} de {2} puntos dibujados"};
inline constexpr Word plan_title{"Plan", "Plano"};
inline constexpr Word dxf_title{"DXF", "DXF"};
inline constexpr Word points_drawn_note{"{1} of {2} points are drawn, as others would cover them",
                                        "se dibujan {1} de {2} puntos, pues otros los taparían"};
inline constexpr Word convex_hull{"Convex hull", "Envolvente convexa"};
inline constexpr Word section_line{"Section line", "Línea de sección"};
inline constexpr Word cut_by_number{"Cut, by its number", "Corte, con su número"};
inline constexpr Word node_entry{"Grid node, elevation", "Nodo, con su cota"};
inline constexpr Word inside_entry{"Point inside it", "Punto dentro de ella"};
inline constexpr Word plan_scale{"Plan, scale {1}", "Plano, escala {1}"};
inline constexpr Word sheet{"Sheet {1}", "Hoja {1}"};
inline constexpr Word x_east{"X east, Y north, {1}", "X este, Y norte, {1}"};
inline constexpr Word date{"Date", "Fecha"};
inline constexpr Word drawn{"Drawn", "Dibujado"};
inline constexpr Word profile_title{"Longitudinal profile: {1}", "Perfil longitudinal: {1}"};
inline constexpr Word profile_notes{
    "Distances from the start of the section line. Dots: points of the terrain.",
    "Distancias al origen de la línea de sección. Puntos: puntos del terreno."};
inline constexpr Word profile_cuts_note{" Red: cuts of the boundary, by their numbers.",
                                        " En rojo: cortes del lindero, con su número."};
inline constexpr Word datum{"Datum {1}", "P.C. {1}"};
inline constexpr Word exaggeration{"Exaggeration {1}, {2}", "Exageración {1}, {2}"};
inline constexpr Word profile_scales{"Scale {1}, vertical {2}", "Escala {1}, vertical {2}"};

// ---- Point files

inline constexpr Word fields_x_first{"number, X, Y, Z, code", "número, X, Y, Z, código"};
inline constexpr Word fields_y_first{"number, Y, X, Z, code", "número, Y, X, Z, código"};

inline constexpr Word more_bad_line{"and {1} more bad line", "y {1} línea errónea más"};
inline constexpr Word more_bad_lines{"and {1} more bad lines", "y {1} líneas erróneas más"};
inline constexpr Word no_points_read{"no points", "no hay puntos"};
inline constexpr Word empty_file{"the file is empty", "el fichero está vacío"};
inline constexpr Word no_closing_quote{"a quoted field has no closing quote",
                                       "faltan las comillas de cierre de un campo"};
inline constexpr Word text_after_quote{"text after the closing quote of {1}",
                                       "texto tras las comillas de cierre de {1}"};
inline constexpr Word is_empty{"{1} is empty", "{1} está vacío"};
inline constexpr Word out_of_range{"{1} {2} is out of range", "{1} {2} está fuera de rango"};
inline constexpr Word not_a_number{"{1} {2} is not a number", "{1} {2} no es un número"};
inline constexpr Word not_finite{"{1} {2} is not finite", "{1} {2} no es finito"};
inline constexpr Word no_point_number{"the point number is empty", "falta el número del punto"};
inline constexpr Word fields_needed{"{1}, but {2} are needed", "{1}, pero hacen falta {2}"};
inline constexpr Word fields_allowed{"{1}, but only {2} are allowed",
                                     "{1}, pero solo se admiten {2}"};
inline constexpr Word decimal_commas{
    "{1}, but only {2} are allowed: with decimal commas, part the fields by semicolons",
    "{1}, pero solo se admiten {2}: con comas decimales, separe los campos con puntos y coma"};
inline constexpr Word commas{"commas", "comas"};
inline constexpr Word semicolons{"semicolons", "puntos y comas"};
inline constexpr Word tabs{"tabs", "tabuladores"};
inline constexpr Word blanks{"blanks", "blancos"};
inline constexpr Word mixed_separators{
    "{1} between the fields here, but {2} in line {3}",
    "aquí los campos se separan con {1}, pero en la línea {3} con {2}"};
inline constexpr Word ambiguous_separators{
    "{1} or {2} may be what is between the fields: it reads as a point both ways",
    "los campos pueden separarse con {1} o con {2}: se lee como punto de ambas maneras"};
inline constexpr Word decimal_point{"a decimal point", "punto decimal"};
inline constexpr Word decimal_comma{"a decimal comma", "coma decimal"};
inline constexpr Word mixed_decimals{"{1} {2} has {3}, but line {4} has {5}",
                                     "{1} {2} lleva {3}, pero la línea {4} lleva {5}"};
inline constexpr Word mixed_line_ends{"a line ends in CR here, but line 1 ends in LF",
                                      "aquí una línea acaba en CR, pero la línea 1 acaba en LF"};
inline constexpr Word two_alphabets{"Windows-1252 text here, but line {1} is UTF-8 text",
                                    "aquí el texto es Windows-1252, pero el de la línea {1} es "
                                    "UTF-8"};
inline constexpr Word no_character{
    "byte {1} is no character of Windows-1252, and this is not UTF-8",
    "el byte {1} no es un carácter de Windows-1252, y esto no es "
    "UTF-8"};
inline constexpr Word half_a_character{"half a character of UTF-16", "medio carácter de UTF-16"};
inline constexpr Word a_zero{"not a text file: it holds a zero byte (UTF-16 needs its mark)",
                             "no es un fichero de texto: contiene un byte cero (UTF-16 necesita "
                             "su marca)"};
inline constexpr Word a_zip_file{
    "a zip file, as spreadsheets are too: unpack it, or save the sheet as CSV",
    "es un fichero zip, como lo son las hojas de cálculo: descomprímalo, o guarde la hoja como "
    "CSV"};
inline constexpr Word a_compressed_file{"a compressed file: unpack it first",
                                        "es un fichero comprimido: descomprímalo antes"};
inline constexpr Word a_pdf_file{"a PDF file, not a point file",
                                 "es un fichero PDF, no un fichero de puntos"};
inline constexpr Word an_office_file{
    "an office document, not a point file: save the sheet as CSV",
    "es un documento de oficina, no un fichero de puntos: guarde la hoja como CSV"};
inline constexpr Word a_drawing_file{"a CAD drawing, not a point file",
                                     "es un dibujo de CAD, no un fichero de puntos"};
inline constexpr Word no_memory{"not enough memory", "no hay memoria suficiente"};

// ---- Layers of a CAD drawing, in letters that they may have

inline constexpr Word boundary_layer{"BOUNDARY", "POLIGONAL_LINDERO"};
inline constexpr Word section_layer{"SECTION_LINE", "LINEA_DE_SECCION"};
inline constexpr Word area_layer{"WORK_AREA", "ZONA_DE_TRABAJO"};
inline constexpr Word contours_layer{"CONTOURS", "CURVAS_DE_NIVEL"};
inline constexpr Word index_layer{"INDEX_CONTOURS", "CURVAS_MAESTRAS"};
inline constexpr Word profile_layer{"PROFILE", "PERFIL"};
inline constexpr Word profile_lines_layer{"PROFILE_LINES", "PERFIL_LINEAS"};
inline constexpr Word profile_texts_layer{"PROFILE_TEXTS", "PERFIL_TEXTOS"};
inline constexpr Word dxf_profile{"Longitudinal profile, exaggeration {1}, lowest {2}",
                                  "Perfil longitudinal, exageración {1}, cota mínima {2}"};
inline constexpr Word no_texts_note{"without texts of the points, which are more than {1}",
                                    "sin textos de los puntos, que son más de {1}"};

// ---- Files

inline constexpr Word cannot_read{"cannot read {1}: {2}", "no se puede leer {1}: {2}"};
inline constexpr Word cannot_write{"cannot write {1}: {2}", "no se puede escribir {1}: {2}"};
inline constexpr Word standard_output{"standard output", "la salida estándar"};
inline constexpr Word no_such_file{"No such file or directory",
                                   "No existe el fichero o la carpeta"};
inline constexpr Word permission_denied{"Permission denied", "Permiso denegado"};
inline constexpr Word is_a_folder{"Is a directory", "Es una carpeta"};
inline constexpr Word not_a_folder{"Not a directory", "No es una carpeta"};
inline constexpr Word no_space{"No space left on device", "No queda espacio en el dispositivo"};
inline constexpr Word file_too_large{"File too large", "El fichero es demasiado grande"};
inline constexpr Word input_output_error{"Input/output error", "Error de entrada o salida"};
inline constexpr Word read_only{"Read-only file system", "Sistema de ficheros de solo lectura"};

// ---- What is being done

inline constexpr Word reading{"reading the points", "leyendo los puntos"};
inline constexpr Word finding_boundary{"finding the boundary", "buscando el lindero"};
inline constexpr Word finding_repeats{"looking for repeated points", "buscando puntos repetidos"};
inline constexpr Word finding_inside{"looking into the work area", "mirando la zona de trabajo"};
inline constexpr Word computing_relief{"computing elevations and slopes",
                                       "calculando cotas y pendientes"};
inline constexpr Word computing_profile{"computing the profile", "calculando el perfil"};
inline constexpr Word computing_traverse{"computing azimuths and distances",
                                         "calculando acimutes y distancias"};
inline constexpr Word computing_contours{"computing the contours",
                                         "calculando las curvas de nivel"};
inline constexpr Word drawing{"drawing", "dibujando"};
inline constexpr Word writing_dxf{"writing the CAD drawing", "escribiendo el dibujo de CAD"};
inline constexpr Word writing_tables{"writing the tables", "escribiendo las tablas"};
inline constexpr Word writing_report{"writing the report", "escribiendo el informe"};

// ---- Options

inline constexpr Word try_help{"Try survey_report --help", "Pruebe survey_report --help"};
inline constexpr Word and_or{" or ", " o "};
inline constexpr Word point_file{"point file", "fichero de puntos"};
inline constexpr Word output_folder{"output folder", "carpeta de salida"};
inline constexpr Word option_file{"{1} file", "fichero de {1}"};
inline constexpr Word more_than_one{"more than one {1} is given", "se da más de un {1}"};
inline constexpr Word empty_name{"the {1} has an empty name", "el nombre del {1} está vacío"};
inline constexpr Word empty_code{"{1} has an empty code", "{1} tiene un código vacío"};
inline constexpr Word option_needs{"{1} needs {2}", "falta {2} tras {1}"};
inline constexpr Word needs_other{"{1} needs {2}", "{1} necesita {2}"};
inline constexpr Word a_file_name{"a file name", "un nombre de fichero"};
inline constexpr Word a_folder_name{"a folder's name", "un nombre de carpeta"};
inline constexpr Word a_code{"a code", "un código"};
inline constexpr Word a_step{"a step", "un intervalo"};
inline constexpr Word a_width{"a width", "una anchura"};
inline constexpr Word a_tolerance{"a tolerance", "una tolerancia"};
inline constexpr Word a_format{"a format", "un formato"};
inline constexpr Word a_scale{"a scale", "una escala"};
inline constexpr Word a_unit{"a unit", "una unidad"};
inline constexpr Word a_language{"a language", "un idioma"};
inline constexpr Word section_form{"X1,Y1,X2,Y2", "X1,Y1,X2,Y2"};
inline constexpr Word area_form{"X1,Y1,X2,Y2,X3,Y3,...", "X1,Y1,X2,Y2,X3,Y3,..."};
inline constexpr Word no_point_file{"no point file is given", "no se da ningún fichero de puntos"};
inline constexpr Word unknown_option{"unknown option {1}", "opción desconocida {1}"};
inline constexpr Word not_four_numbers{"{1} is not four numbers X1,Y1,X2,Y2",
                                       "{1} no son cuatro números X1,Y1,X2,Y2"};
inline constexpr Word starts_where_it_ends{"{1} starts where it ends", "{1} empieza donde acaba"};
inline constexpr Word not_a_scale{"{1} is not a scale such as 1:500, from 1000:1 to 1:1e15",
                                  "{1} no es una escala como 1:500, de 1000:1 a 1:1e15"};
inline constexpr Word is_not_one_of{"{1} is not {2}", "{1} no es {2}"};
inline constexpr Word not_positive{"{1} is not a positive number", "{1} no es un número positivo"};
inline constexpr Word not_pairs{"{1} is not pairs of numbers X1,Y1,X2,Y2,X3,Y3,...",
                                "{1} no son parejas de números X1,Y1,X2,Y2,X3,Y3,..."};
inline constexpr Word too_few_vertices{"{1} has fewer than three vertices",
                                       "{1} tiene menos de tres vértices"};
inline constexpr Word names_the_same{"{1} names the {2}", "{1} nombra el {2}"};
inline constexpr Word file_of_folder{"file {1} of the output folder",
                                     "fichero {1} de la carpeta de salida"};
inline constexpr Word output_writes_over{"--output writes {1}, which is the point file",
                                         "--output escribe {1}, que es el fichero de puntos"};

// ---- Help

inline constexpr Word usage{"Usage: survey_report [options] FILE\n",
                            "Uso: survey_report [opciones] FICHERO\n"};
inline constexpr Word about_program{
    "Prints a survey: its extremes, its repeated points, its boundary with a section\n"
    "line across it, elevations and slopes at the nodes of a grid, a longitudinal\n"
    "profile along the section line, the points inside a work area, and all points\n"
    "with azimuth and distance from each to the next. With --output it writes all of\n"
    "that into a folder: a page with plan, contours and profile (index.html), both\n"
    "drawings (SVG), a CAD drawing (DXF) and tables (CSV).\n"
    "\n"
    "FILE is a point file, one point a line: number, X, Y, Z, code. The code may be\n"
    "left out. A header line, blank lines and lines that start with # may be there.\n"
    "Commas, semicolons, tabs or blanks part the fields; the decimal sign is a point,\n"
    "or a comma where commas part no fields. Letters are in UTF-8, UTF-16 with its\n"
    "mark, or Windows-1252. All lines of a file are alike in this.\n"
    "Azimuths are in gon: 400 to the circle, 0 along +Y, clockwise.",
    "Presenta un levantamiento: sus extremos, sus puntos repetidos, su lindero con\n"
    "una línea de sección que lo cruza, cotas y pendientes en los nodos de una\n"
    "cuadrícula, un perfil longitudinal por la línea de sección, los puntos dentro\n"
    "de una zona de trabajo y todos los puntos con acimut y distancia de cada uno al\n"
    "siguiente. Con --output escribe todo en una carpeta: una página con plano,\n"
    "curvas de nivel y perfil (index.html), los dos dibujos (SVG), un dibujo de CAD\n"
    "(DXF) y tablas (CSV).\n"
    "\n"
    "FICHERO es un fichero de puntos, uno por línea: número, X, Y, Z, código. El\n"
    "código puede faltar. Puede haber una cabecera, líneas vacías y líneas que\n"
    "empiezan por #. Separan los campos comas, puntos y comas, tabuladores o blancos;\n"
    "el signo decimal es el punto, o la coma si no separa campos. Las letras son de\n"
    "UTF-8, UTF-16 con su marca o Windows-1252. Todas las líneas de un fichero son\n"
    "iguales en eso.\n"
    "Los acimutes son centesimales (gon): 400 en la circunferencia, 0 hacia +Y, en\n"
    "el sentido de las agujas del reloj."};
inline constexpr Word options_title{"Options", "Opciones"};
inline constexpr Word file_value{"FILE", "FICHERO"};
inline constexpr Word folder_value{"FOLDER", "CARPETA"};
inline constexpr Word format_value{"FORMAT", "FORMATO"};
inline constexpr Word scale_value{"1:N", "1:N"};
inline constexpr Word unit_value{"UNIT", "UNIDAD"};
inline constexpr Word code_value{"CODE", "CÓDIGO"};
inline constexpr Word step_value{"STEP", "INTERVALO"};
inline constexpr Word width_value{"WIDTH", "ANCHURA"};
inline constexpr Word tolerance_value{"TOLERANCE", "TOLERANCIA"};
inline constexpr Word language_value{"en|es", "en|es"};

inline constexpr Word help_northing{"the lines of FILE are number, Y, X, Z, code",
                                    "las líneas de FICHERO son número, Y, X, Z,\ncódigo"};
inline constexpr Word help_output{
    "write into FOLDER, which is made if need be,\neach file whole or not at all: index.html, "
    "which\n"
    "is the report for a browser, report.txt,\nplan.svg, profile.svg, survey.dxf and tables in\n"
    "CSV; if not given, the report is printed",
    "escribir en CARPETA, que se crea si hace falta,\ncada fichero entero o nada: index.html, que "
    "es\n"
    "el informe para un navegador, report.txt,\nplan.svg, profile.svg, survey.dxf y tablas en\n"
    "CSV; si falta, se imprime el informe"};
inline constexpr Word help_plan{"draw a plan to FILE, in SVG, whole or not at\nall",
                                "dibujar un plano en FICHERO, en SVG, entero o\nnada"};
inline constexpr Word help_profile{"draw the profile to FILE, in SVG, whole or not\nat all",
                                   "dibujar el perfil en FICHERO, en SVG, entero o\nnada"};
inline constexpr Word help_sheet{
    "draw on a sheet of A4, A3, A2 or A1; if not\ngiven, on the smallest with room for "
    "most\nlabels",
    "dibujar en una hoja A4, A3, A2 o A1; si falta,\nen la menor donde caben casi todos los "
    "rótulos"};
inline constexpr Word help_scale{
    "the scale of the plan; if not given, the\nlargest round one that the sheet has room for",
    "la escala del plano; si falta, la mayor escala\nredonda que cabe en la hoja"};
inline constexpr Word help_profile_scale{
    "the scale of the profile's distances; if not\ngiven, a large round one; elevations are drawn\n"
    "1, 2, 5, 10, ... times as large, to a round\nscale that fills the sheet",
    "la escala de las distancias del perfil; si\nfalta, una redonda y grande; las cotas se\n"
    "dibujan 1, 2, 5, 10, ... veces mayores, a una\nescala redonda que llena la hoja"};
inline constexpr Word help_unit{
    "the unit of lengths, for the scales: m, ft\n(0.3048 m) or us-ft (1200/3937 m); if not\n"
    "given, m is assumed",
    "la unidad de longitud, para las escalas: m, ft\n(0.3048 m) o us-ft (1200/3937 m); si falta, "
    "se\nsupone m"};
inline constexpr Word help_boundary{
    "the boundary is the points whose code begins\nwith CODE (LINDERO if not given), in their\n"
    "order; where these are fewer than three, the\nconvex hull of all points",
    "el lindero son los puntos cuyo código empieza\npor CÓDIGO (LINDERO si falta), en su orden; "
    "si\n"
    "son menos de tres, la envolvente convexa de\ntodos los puntos"};
inline constexpr Word help_section{
    "the ends of the section line; if not given,\nfrom west to east through the middle of the\n"
    "boundary; it is the axis of the profile",
    "los extremos de la línea de sección; si faltan,\nde oeste a este por el centro del lindero; "
    "es\n"
    "el eje del perfil"};
inline constexpr Word help_grid{
    "the step of the grid; if not given, a round one\nthat makes about 8 x 8 nodes",
    "el paso de la cuadrícula; si falta, uno redondo\nque da unos 8 x 8 nodos"};
inline constexpr Word help_corridor{
    "the profile is made at the points that lie as\nnear as WIDTH to the section line, on either\n"
    "side; if not given, half of the step that the\ngrid has by itself",
    "el perfil se hace con los puntos que están a\nmenos de ANCHURA de la línea de sección, a\n"
    "cada lado; si falta, la mitad del paso que\ntiene de por sí la cuadrícula"};
inline constexpr Word help_stations{
    "the step of the stations along the profile; if\nnot given, a round one that makes 8 to 20 "
    "of\nthem",
    "el intervalo de las estaciones del perfil; si\nfalta, uno redondo que da de 8 a 20"};
inline constexpr Word help_contours{
    "the step of the contour lines on the plan; if\nnot given, a round one that makes 10 to 20 of\n"
    "them; every fifth is an index contour",
    "la equidistancia de las curvas de nivel del\nplano; si falta, una redonda que da de 10 a 20;\n"
    "una de cada cinco es maestra"};
inline constexpr Word help_area{
    "the vertices of the work area; if not given, a\nrectangle over the middle half of the "
    "boundary",
    "los vértices de la zona de trabajo; si faltan,\nun rectángulo sobre la mitad central "
    "del\nlindero"};
inline constexpr Word help_area_code{
    "the vertices of the work area are the points\nwhose code begins with CODE, in their order",
    "los vértices de la zona de trabajo son los\npuntos cuyo código empieza por CÓDIGO, en "
    "su\norden"};
inline constexpr Word help_repeats{
    "two points are a pair of repeated points when\nthey are nearer than TOLERANCE in X and in Y\n"
    "(0.02 if not given)",
    "dos puntos son pareja de repetidos si están más\npróximos que TOLERANCIA en X y en Y (0.02 "
    "si\nfalta)"};
inline constexpr Word help_kept{
    "write a copy of the survey without its repeated\npoints to FILE, as a point file, whole or "
    "not at\n"
    "all; report and drawings are of all points",
    "escribir una copia del levantamiento sin sus\npuntos repetidos en FICHERO, como fichero de\n"
    "puntos, entera o nada; informe y planos son de\ntodos los puntos"};
inline constexpr Word help_repetidos{
    "choose the points for that copy in the\nlibrary's dialog, with the tolerance typed\n"
    "there; it goes to the present folder under the\nname of FILE with _kept.csv if --kept is not\n"
    "given; a dialog that is cancelled, as it is\nwithout a screen, writes none",
    "elegir los puntos de esa copia en el diálogo de\nla biblioteca, con la tolerancia que se "
    "escribe\n"
    "en él; va a la carpeta actual con el nombre de\nFICHERO y _kept.csv si falta --kept; un "
    "diálogo\n"
    "que se cancela, como ocurre sin pantalla, no\nescribe ninguna"};
inline constexpr Word help_ver{
    "show the extremes in the library's dialog, for\ntwo points or more",
    "mostrar los extremos en el diálogo de la\nbiblioteca, con dos puntos o más"};
inline constexpr Word help_language{
    "English or Spanish; if not given, that of the\nlocale (LC_ALL, LC_MESSAGES, LANG), else "
    "English",
    "inglés o español; si falta, el de la\nconfiguración regional (LC_ALL, LC_MESSAGES,\nLANG), y "
    "si no "
    "inglés"};
inline constexpr Word help_help{"print this help and stop", "imprimir esta ayuda y acabar"};
inline constexpr Word help_version{"print the version and stop", "imprimir la versión y acabar"};
inline constexpr Word help_dashes{"After -- a word is FILE, even if it starts with -.\n",
                                  "Tras -- una palabra es FICHERO, aunque empiece por -.\n"};
inline constexpr Word help_status{
    "The status is 0 when everything was written; at any other a message on standard\n"
    "error tells why it was not:\n",
    "El estado es 0 si se escribió todo; con cualquier otro, un mensaje en la salida\n"
    "de errores dice por qué no:\n"};

// ---- The page

inline constexpr Word to_tables{"To the tables", "Ir a las tablas"};
inline constexpr Word sections_of_page{"Sections of this page", "Apartados de esta página"};
inline constexpr Word tables{"Tables", "Tablas"};
inline constexpr Word files{"Files", "Ficheros"};
inline constexpr Word extremes{"Extremes", "Extremos"};
inline constexpr Word layers{"Layers", "Capas"};
inline constexpr Word drawn_lines{"Lines and labels", "Líneas y rótulos"};
inline constexpr Word points_by_code{"Points by code", "Puntos por código"};
inline constexpr Word filter_codes{"Filter", "Filtrar"};
inline constexpr Word points_inside{"Points in the work area", "Puntos de la zona de trabajo"};
inline constexpr Word profile_stations{"Stations of the profile", "Estaciones del perfil"};
inline constexpr Word grid_nodes{"Grid nodes", "Nodos de la cuadrícula"};
inline constexpr Word contours_title{"Contours", "Curvas de nivel"};
inline constexpr Word labels{"Labels", "Rótulos"};
inline constexpr Word all{"All", "Todas"};
inline constexpr Word none{"None", "Ninguna"};
inline constexpr Word yes{"yes", "sí"};
inline constexpr Word no{"no", "no"};
inline constexpr Word zoom_in{"Zoom in", "Acercar"};
inline constexpr Word zoom_out{"Zoom out", "Alejar"};
inline constexpr Word whole{"Whole", "Todo"};
inline constexpr Word whole_drawing{"Whole drawing", "Todo el dibujo"};
inline constexpr Word find_point{"Point", "Punto"};
inline constexpr Word find{"Find", "Buscar"};
inline constexpr Word no_such_point{"No point has that number", "Ningún punto tiene ese número"};
inline constexpr Word no_such_point_drawn{"No drawn point has that number",
                                          "Ningún punto dibujado tiene ese número"};
inline constexpr Word keys_of_drawing{
    "Arrows move it, plus and minus zoom, 0 shows all of it",
    "Las flechas lo desplazan, más y menos lo acercan y alejan, 0 lo muestra entero"};
inline constexpr Word not_drawn{"There is no drawing.", "No hay dibujo."};
inline constexpr Word first_rows{"The first {1} rows of {2}; all of them are in {3}",
                                 "Las primeras {1} filas de {2}; están todas en {3}"};

}  // namespace survey_report::words
