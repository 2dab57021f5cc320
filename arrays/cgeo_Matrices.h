// cgeo_Matrices.h: extremes, sums, sorts and removal of points on arrays.
#pragma once

#include <cstdint>

#include "frame/argument.h"
#include "frame/class_description.h"
#include "frame/export.h"

namespace orv2_geo {

/// Array toolkit: extremes, element-wise sums, sorts in X, removal of points.
/// Points are numbered from 1; element 0 is no point. A pure function table.
class ORV2_PUBLIC cgeo_Matrices {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_Matrices";

  /// The members in interface order.
  static const ClassDescription& description();

  void MaxMin_1Matriz(const DoubleArray& X, double& max, double& Min) const;
  void MaxMin_2Matriz(const DoubleArray& X, const DoubleArray& Y, double& MaxX, double& MinX,
                      double& MaxY, double& MinY) const;
  void MaxMin_4_matrices_XY_XY(const DoubleArray& X, const DoubleArray& Y, const DoubleArray& X1,
                               const DoubleArray& Y1, double& MaxX, double& MinX, double& MaxY,
                               double& MinY) const;
  void MaxMin_3Matriz1(const DoubleArray& X, const DoubleArray& Y, const DoubleArray& Z,
                       double& MaxX, double& MinX, double& MaxY, double& MinY, double& MaxZ,
                       double& MinZ, const Bool& Ver) const;
  void MaxMin_3Matriz(const DoubleArray& X, const DoubleArray& Y, const DoubleArray& Z,
                      double& MaxX, double& MinX, double& MaxY, double& MinY, double& MaxZ,
                      double& MinZ, const Bool& Ver) const;
  void Sumar_a_1Matriz_otra(DoubleArray& MatrizOrigen, const DoubleArray& Matriz_a_Sumar) const;
  void Restar_a_1Matriz_otra(DoubleArray& MatrizOrigen, const DoubleArray& Matriz_a_Sumar) const;
  void Ordena_en_X_3_Matrices(const std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y,
                              DoubleArray& Z) const;
  void Ordena_en_X_el_Indice_1Matriz(const std::int32_t& nPtos, const DoubleArray& X,
                                     LongArray& ordenIndices) const;
  void Ordena_en_X_el_Indice_1Matriz1(const std::int32_t& nPtos, const DoubleArray& X,
                                      LongArray& ordenIndices, const ObjectRef& Progreso1) const;
  void Ordena_en_X_el_Indice_1Matriz2(const std::int32_t& nPtos, const DoubleArray& X,
                                      LongArray& ordenIndices, const ObjectRef& Progreso1) const;
  void Quita_Puntos_Repetidos(const std::int32_t& nPtos, const DoubleArray& X, const DoubleArray& Y,
                              const DoubleArray& Z, const double& Precision,
                              const Bool& Aviso) const;
  void Quita_Puntos_Repetidos_XYZ_con_indice1(std::int32_t& nPtos1, DoubleArray& X1,
                                              DoubleArray& Y1, DoubleArray& Z1, LongArray& Indice,
                                              const ObjectRef& Progreso1, const double& Precision,
                                              const Bool& Aviso) const;
  void Quita_Puntos_Repetidos_XYZ_con_indice(const std::int32_t& nPtos, const DoubleArray& X,
                                             const DoubleArray& Y, const DoubleArray& Z,
                                             const LongArray& Indice, const double& Precision,
                                             const Bool& Aviso) const;
  void Quita_Pts_Repetidos_3D(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y, DoubleArray& Z,
                              StringArray& codigo, StringArray& Nombre, ShortArray& CapaP,
                              LongArray& Indice, const ObjectRef& ProgressBar1, const Bool& Aviso,
                              const double& Precision) const;
  void Quita_Pts_Repetidos(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y, DoubleArray& Z,
                           StringArray& codigo, StringArray& Nombre, ShortArray& CapaP,
                           LongArray& NewInd, const Bool& Aviso, const double& Precision) const;
  void Quita_Puntos_fuera_interv_de_Cotas_con_indice(std::int32_t& nPtos, const DoubleArray& X,
                                                     const DoubleArray& Y, const DoubleArray& Z,
                                                     LongArray& Indice, const double& MaxZ,
                                                     const double& MinZ) const;
};

}  // namespace orv2_geo
