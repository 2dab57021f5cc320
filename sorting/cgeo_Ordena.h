// cgeo_Ordena.h: sorting of arrays and removal of repeated points.
#pragma once

#include <cstdint>

#include "frame/argument.h"
#include "frame/class_description.h"
#include "frame/export.h"

namespace orv2_geo {

/// Sorting of arrays, in place or through an index, and removal of repeated
/// points. A pure function table.
class ORV2_PUBLIC cgeo_Ordena {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_Ordena";

  /// The members in interface order.
  static const ClassDescription& description();

  void Ordena_Double_Index_Array(const DoubleArray& DoubleA, LongArray& TheIndex,
                                 const std::int32_t& LowerBound,
                                 const std::int32_t& UpperBound) const;
  void Ordena_Double_Array(DoubleArray& DoubleA, const std::int32_t& LowerBound,
                           const std::int32_t& UpperBound) const;
  void Ordena_StringArray(StringArray& TheArray, const std::int32_t& LowerBound,
                          const std::int32_t& UpperBound) const;
  void Ordena_LongArray(LongArray& TheArray, const std::int32_t& LowerBound,
                        const std::int32_t& UpperBound) const;
  void Ordena_StringIndexArray(const StringArray& TheArray, LongArray& TheIndex,
                               const std::int32_t& LowerBound,
                               const std::int32_t& UpperBound) const;
  void Ordena_LongIndexArray(const LongArray& TheArray, LongArray& TheIndex,
                             const std::int32_t& LowerBound, const std::int32_t& UpperBound) const;
  void Quita_Puntos_Repetidos_XY_con_indice1(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y,
                                             DoubleArray& Z, LongArray& Indice,
                                             const ObjectRef& Progreso1, const double& Precision,
                                             const Bool& Aviso) const;
  void SwapStrings(const Text& String1, const Text& String2, const std::int32_t& SwpVal) const;
};

}  // namespace orv2_geo
