// cgeo_Matrices.h: extremes, sums, sorts and removal of points on arrays.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/argument.h"
#include "orv2_geo/frame/class_description.h"
#include "orv2_geo/frame/export.h"

namespace orv2_geo {

/// Array toolkit: extremes, element-wise sums, sorts in X, removal of points.
/// Points are numbered from 1; element 0 is no point. A pure function table.
///
/// Expects the usual floating-point settings: see UsualFloatingPoint.
class ORV2_PUBLIC cgeo_Matrices {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_Matrices";

  /// The members in interface order.
  static const ClassDescription& description();

  /// Greatest and least of X(1) to X(upper bound), in one scan: max and Min. Of
  /// equal extremes the first stands (of zeros, with its sign). Element 0 takes no
  /// part, here and in all members.
  /// Failures: 9 when X is unallocated or has no element 1, with nothing written;
  /// 6 at NaN, with the extremes of the elements before.
  void MaxMin_1Matriz(const DoubleArray& X, double& max, double& Min) const;

  /// The same for X and Y together. X's upper bound alone is read: a Y that is
  /// shorter fails with 9 at its first missing element, X being one further. One
  /// point is compared with nothing, so that NaN passes.
  void MaxMin_2Matriz(const DoubleArray& X, const DoubleArray& Y, double& MaxX, double& MinX,
                      double& MaxY, double& MinY) const;

  /// MaxMin_2Matriz of X and Y, then of X1 (to its own upper bound) and Y1 into
  /// the same results. Failure 9 for X1 comes when the first pair is done.
  void MaxMin_4_matrices_XY_XY(const DoubleArray& X, const DoubleArray& Y, const DoubleArray& X1,
                               const DoubleArray& Y1, double& MaxX, double& MinX, double& MaxY,
                               double& MinY) const;

  /// Outdated, and says so at every call in a box ("obsoleto"). As MaxMin_2Matriz
  /// for three arrays; with Ver exactly true (-1) and two points or more the
  /// extremes are shown in a dialog before the call returns.
  /// Failures: as MaxMin_2Matriz; 6 when a difference to be shown overflows.
  void MaxMin_3Matriz1(const DoubleArray& X, const DoubleArray& Y, const DoubleArray& Z,
                       double& MaxX, double& MinX, double& MaxY, double& MinY, double& MaxZ,
                       double& MinZ, const Bool& Ver) const;

  /// Extremes of three arrays; with Ver exactly true (-1) and two points or more
  /// they are shown in a dialog, each with the number of the point that holds it.
  ///
  /// Never fails: what fails is skipped, statement by statement. A result whose
  /// element 1 is missing starts from the caller's value; without X nothing is
  /// written. A comparison that fails counts as one that held: a missing element
  /// leaves the results as they are and NaN is taken, and in both cases the point
  /// shown is the one at which that happened last.
  void MaxMin_3Matriz(const DoubleArray& X, const DoubleArray& Y, const DoubleArray& Z,
                      double& MaxX, double& MinX, double& MaxY, double& MinY, double& MaxZ,
                      double& MinZ, const Bool& Ver) const;

  /// Adds Matriz_a_Sumar(i) to MatrizOrigen(i), i from 1 to the upper bound of
  /// Matriz_a_Sumar. Unequal upper bounds are told to the user in a critical box,
  /// and the work goes on: elements beyond a shorter Matriz_a_Sumar stay, and a
  /// longer one ends in failure 9 when MatrizOrigen has been worked whole.
  /// MatrizOrigen with an upper bound below 1 is left alone.
  /// Failures: 9; 6 where a sum overflows, the elements before being summed.
  void Sumar_a_1Matriz_otra(DoubleArray& MatrizOrigen, const DoubleArray& Matriz_a_Sumar) const;

  /// Subtracts Matriz_a_Sumar(i) from MatrizOrigen(i), otherwise as
  /// Sumar_a_1Matriz_otra.
  void Restar_a_1Matriz_otra(DoubleArray& MatrizOrigen, const DoubleArray& Matriz_a_Sumar) const;

  /// Sorts the points 1 to nPtos by X, Y and Z moving along, as exchanges of
  /// neighbours do that are made at equality too: two points of equal X change
  /// places. Fewer than two points need no arrays.
  /// Failures: 9 at a missing element, 6 at NaN in X; the exchanges before it are
  /// made, X's before Y's before Z's.
  void Ordena_en_X_3_Matrices(const std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y,
                              DoubleArray& Z) const;

  /// ordenIndices anew, with bounds 0 to nPtos: the numbers 1 to nPtos in the order
  /// of X. Order and failures are those of cgeo_Ordena::Ordena_Double_Index_Array.
  void Ordena_en_X_el_Indice_1Matriz(const std::int32_t& nPtos, const DoubleArray& X,
                                     LongArray& ordenIndices) const;

  /// Does not sort: writes 1 to nPtos into the elements 1 to nPtos of ordenIndices
  /// as it is, and reads neither X nor Progreso1. A failure (9 for an element that
  /// is missing) is shown in a critical box, "Ordena en X el Indice una Matriz1 -
  /// Error nº ", and the call returns.
  void Ordena_en_X_el_Indice_1Matriz1(const std::int32_t& nPtos, const DoubleArray& X,
                                      LongArray& ordenIndices, const ObjectRef& Progreso1) const;

  /// Ordena_en_X_el_Indice_1Matriz with its failures shown, under the title of
  /// Ordena_en_X_el_Indice_1Matriz1. Progreso1 is never touched.
  void Ordena_en_X_el_Indice_1Matriz2(const std::int32_t& nPtos, const DoubleArray& X,
                                      LongArray& ordenIndices, const ObjectRef& Progreso1) const;

  /// Removes points strictly less than 0.0002 in X and in Y from their predecessor
  /// in X order: of such points at the very start the first stays, of each later
  /// run the first two. The points that stay come back in X order at 1 to the new
  /// nPtos; bounds and what stands above are left. Precision and Aviso have no
  /// effect. Failures are shown ("Quita Puntos Repetidos 2D 0 - Error nº ").
  void Quita_Puntos_Repetidos(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y, DoubleArray& Z,
                              const double& Precision, const Bool& Aviso) const;

  /// Finds repeated points and leaves the coordinates alone. Indice holds on entry
  /// the caller's number of each point; on return its bounds are 0 to the old
  /// nPtos1, and its elements 1 to the new nPtos1 are the caller's numbers of the
  /// points that stay, in X order; the others are 0. Neighbours in X order that lie
  /// strictly less than Precision (0: 0.0002) from the first of them in X and in Y
  /// are one spot, of which the highest point stays, of equal ones the first.
  /// Progreso1 gets Visible, Min and max. Aviso has no effect.
  /// Failures: of the search, shown
  /// ("m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X - Error nº "), nPtos1 then
  /// being 0; where Progreso1 leaves Indice locked, so that it cannot be replaced
  /// at the end, nPtos1 is the number of points that stay all the same. 9 when
  /// Indice had no element for a point that stays; 7.
  void Quita_Puntos_Repetidos_XYZ_con_indice1(std::int32_t& nPtos1, const DoubleArray& X1,
                                              const DoubleArray& Y1, const DoubleArray& Z1,
                                              LongArray& Indice, const ObjectRef& Progreso1,
                                              const double& Precision, const Bool& Aviso) const;

  /// Does nothing.
  void Quita_Puntos_Repetidos_XYZ_con_indice(const std::int32_t& nPtos, const DoubleArray& X,
                                             const DoubleArray& Y, const DoubleArray& Z,
                                             const LongArray& Indice, const double& Precision,
                                             const Bool& Aviso) const;

  /// Does nothing.
  void Quita_Pts_Repetidos_3D(const std::int32_t& nPtos, const DoubleArray& X, const DoubleArray& Y,
                              const DoubleArray& Z, const StringArray& codigo,
                              const StringArray& Nombre, const ShortArray& CapaP,
                              const LongArray& Indice, const ObjectRef& ProgressBar1,
                              const Bool& Aviso, const double& Precision) const;

  /// Lets the user remove repeated points in a dialog, with the tolerance typed
  /// there. When confirmed, the points that stay are at 1 to the new nPtos of all
  /// six arrays, in their old order; X, Y, Z, codigo and CapaP end at nPtos, Nombre
  /// keeps its bound; NewInd, 0 to the old nPtos, has the new number of every old
  /// point. When cancelled nothing changes, but for a Precision of 0, which becomes
  /// 0.001 in any case. Precision and Aviso have no other effect. Arrays are
  /// expected to start at 0.
  /// Failures: 9 for arrays without an element for each point (or that do not start
  /// at 0), 10, 7; the arrays are then written as far as it got. 6 for a typed
  /// tolerance beyond all numbers and 9 for a negative nPtos close the dialog, with
  /// nothing changed but that Precision.
  void Quita_Pts_Repetidos(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y, DoubleArray& Z,
                           StringArray& codigo, StringArray& Nombre, ShortArray& CapaP,
                           LongArray& NewInd, const Bool& Aviso, double& Precision) const;

  /// Drops the points whose Z lies above MaxZ or below MinZ, which both are inside.
  /// The others move up in order; nPtos becomes their number, and X, Y, Z and
  /// Indice end at it. Points are counted in 16 bits.
  /// Failures: 6 for nPtos beyond 32767, with nothing changed, for exactly 32767
  /// once all points are handled and before nPtos and the bounds change, and at NaN;
  /// 9 at a missing element, and in the end for arrays that do not start at 0; 10.
  void Quita_Puntos_fuera_interv_de_Cotas_con_indice(std::int32_t& nPtos, DoubleArray& X,
                                                     DoubleArray& Y, DoubleArray& Z,
                                                     LongArray& Indice, const double& MaxZ,
                                                     const double& MinZ) const;
};

}  // namespace orv2_geo
