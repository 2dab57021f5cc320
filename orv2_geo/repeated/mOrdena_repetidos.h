// mOrdena_repetidos.h: the repeated-point engine.
//
// Points of a survey that stand on the same spot within a tolerance are found
// without comparing all pairs: the points are put in order of X, and one sweep
// over that order gathers neighbours into clusters.
//
//   - A point is a number from 1 to nPtos; element 0 of its arrays is no point.
//   - The first point of a cluster is its anchor. The next point in X order
//     joins when it lies in the box about the anchor: strictly less than the
//     tolerance away on each axis. Otherwise it opens the next cluster.
//   - The anchor never follows the cluster, so a chain of points, each close to
//     the one before, ends its cluster at the first point a tolerance or more
//     away from the anchor.
//   - A point is compared with the cluster at hand alone. Two points on one spot
//     are both kept when a point outside their box comes between them in X
//     order, such as one of equal X and another Y.
//   - X order and its ties are those of Ordena_Double_Index_Array.
//   - Tolerance: Precision, in the unit of the coordinates. Exactly 0 asks for
//     0.0002. A negative one stays negative: no point is then a repeat.
//   - Cost: that of the sort, linear for coordinates that it keys as numbers, and one
//     pass. Memory: 16 to 24 bytes a point beside the indexes; the in-place removals
//     hold copies of the coordinates too.
//   - Progreso1 gets Visible = true, Min = 0 and max, in this order, between the
//     sort and the sweep. None of the routines hides it again.
//
// All but Quita_Puntos_Repetidos_XY_con_indice1 are trapped routines: a failure
// is shown in a box under the routine's title and the routine returns normally,
// what it had written staying. The numbers are 6 when a bound of a box overflows
// or NaN is compared, 7, 9 when nPtos is negative or an array lacks a subscript
// from 1 to nPtos, 11 when nPtos is 0 and there is progress to show, 91 without
// a progress object, 438 when it lacks a property, and whatever it fails with.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/bool.h"
#include "orv2_geo/frame/geo_arrays.h"
#include "orv2_geo/frame/late_bound.h"

namespace orv2_geo::mOrdena {

using BoolArray = GeoArray<Bool>;

/// The survivors in X order. The box is of X and Y; of a cluster the highest
/// point survives, and among equal Z the lowest number.
/// Writes:   nNuevos, the number of clusters; Indice, subscripts 0 to nPtos:
///           Indice(k) survives cluster k, entries above nNuevos are 0.
/// Trapped:  "m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X - Error nº "; Indice
///           is then all zeros (unless it could not be allocated), nNuevos as it
///           was. One exception: where Indice cannot be replaced at the end (the
///           host locked it meanwhile, 10), nNuevos has been written before.
void m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X(const std::int32_t& nPtos, const DoubleArray& X,
                                                   const DoubleArray& Y, const DoubleArray& Z,
                                                   std::int32_t& nNuevos, LongArray& Indice,
                                                   const double& Precision,
                                                   const ObjectRef& Progreso1);

/// The survivors by ascending number, and every point's new number. The box is
/// of X and Y, whatever the Z; of a cluster the highest point survives, and
/// among equal Z the lowest number.
/// Writes:   nNuevos, the number of survivors; subscripts 0 to nPtos of
///           IndiceNuevos (the survivors, ascending; 0 above nNuevos),
///           IndiceGeneral (the new number of each point, repeated or not) and
///           Repetido (all false, always). IndiceNuevos(IndiceGeneral(p)) is the
///           survivor that stands for p. Progreso1 is made visible once more.
/// Trapped:  "m_Indice_de_Puntos_sin_Repetir_2 - Error nº "; up to the end of the
///           sweep all are zeros and nNuevos is as it was. Then IndiceGeneral is
///           written, nNuevos, IndiceNuevos and Progreso1, in this order: a failure
///           at one leaves those before it written, so that after one of the last
///           write of all the answer is whole.
void m_Indice_de_Puntos_sin_Repetir_2(const std::int32_t& nPtos, const DoubleArray& X,
                                      const DoubleArray& Y, const DoubleArray& Z,
                                      std::int32_t& nNuevos, LongArray& IndiceNuevos,
                                      LongArray& IndiceGeneral, BoolArray& Repetido,
                                      const double& Precision, const ObjectRef& Progreso1);

/// As m_Indice_de_Puntos_sin_Repetir_2, with a box of all three axes about the
/// cluster's first point and the lowest number of a cluster surviving. (The
/// names read the other way round; this one compares Z.)
/// Trapped:  "m_Indice_de_Puntos_sin_Repetir_2D - Error nº ".
void m_Indice_de_Puntos_sin_Repetir_2D(const std::int32_t& nPtos, const DoubleArray& X,
                                       const DoubleArray& Y, const DoubleArray& Z,
                                       std::int32_t& nNuevos, LongArray& IndiceNuevos,
                                       LongArray& IndiceGeneral, BoolArray& Repetido,
                                       const double& Precision, const ObjectRef& Progreso1);

/// Flags all points of a cluster but the lowest number. The box is of X and Y;
/// Z is never read.
/// Writes:   subscripts 0 to nPtos of Repetido, by point number; of Secuencia,
///           the points in X order, where a point that takes over as survivor
///           is also written under its own number; and of Indice: points not
///           flagged are numbered by ascending number, a flagged point p gets
///           what Indice holds at Secuencia(p) at that moment. nNuevos, the
///           number of clusters. Progreso1 is made visible once more.
/// Trapped:  "m_Indice_de_Puntos_sin_Repetir_2 - Error nº ", on purpose the title
///           of the routine of that name. After a failure of that last write the
///           answer is whole, nNuevos included; before, nNuevos is as it was.
void m_Indice_de_Puntos_sin_Repetir_XY(const std::int32_t& nPtos, const DoubleArray& X,
                                       const DoubleArray& Y, const DoubleArray& Z,
                                       std::int32_t& nNuevos, LongArray& Secuencia,
                                       LongArray& Indice, BoolArray& Repetido,
                                       const double& Precision, const ObjectRef& Progreso1);

/// What cgeo_Ordena::Quita_Puntos_Repetidos_XY_con_indice1 does. Not trapped.
void Quita_Puntos_Repetidos_XY_con_indice1(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y,
                                           DoubleArray& Z, LongArray& Indice,
                                           const ObjectRef& Progreso1, const double& Precision,
                                           const Bool& Aviso);

/// Removes points that stand near their predecessor in X order, kept or not:
/// strictly less than 0.0002 away in X and in Y. There are no clusters: of near
/// points at the very start the first stays, of each later run the first two.
/// Writes:   nPtos, the points kept; X, Y, Z: the kept points in X order at
///           subscripts 1 to the new nPtos. Elements above and bounds stay.
/// Aviso:    not used.
/// Trapped:  "Quita Puntos Repetidos 2D 0 - Error nº "; nPtos = 0 is 9.
void Quita_Puntos_Repetidos_2D_0(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y,
                                 DoubleArray& Z, const Bool& Aviso);

}  // namespace orv2_geo::mOrdena
