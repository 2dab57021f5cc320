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
  /// Removes as many points as repeat others in X and Y, and puts what is left in
  /// X order. Points are numbered from 1; element 0 is no point. The sweep, the
  /// clusters and their limits are told in repeated/mOrdena_repetidos.h.
  /// Units:    Precision in the unit of the coordinates: points strictly less
  ///           than it from a cluster's first point, on each axis by itself, are
  ///           repeats. 0, also when left out, stands for 0.0002; with a negative
  ///           one nothing is a repeat.
  /// Arrays:   X, Y, Z of lower bound 0, with elements 1 to nPtos.
  /// Writes:   nPtos, the new count; X, Y, Z, shrunk to subscripts 0 to nPtos;
  ///           Indice, subscripts 0 to the old nPtos: its first nPtos entries are
  ///           the points chosen, by their old numbers. Entries above hold
  ///           nothing of use.
  /// Choice:   without repeats the result is the points in X order. With repeats
  ///           a flagged point r takes out the point at place r of the X order,
  ///           on purpose, and that need not be a repeated one: points 1 to 4 at
  ///           X = 9, 0, 0, 5 become 2, 3, 1.
  /// Progress: Visible = true, Min = 0 (16 bits) and max (f64) on Progreso1 before
  ///           the sweep, Visible = true after it; Value is never set.
  /// Aviso:    not used.
  /// Failures: what stops the search for repeats (6 when a bound of the tolerance
  ///           overflows or NaN is compared, 9 when X or Y is too short, 11 when
  ///           nPtos is 0, 91 or 438 for Progreso1, 7) is shown in a box and then
  ///           passed over: nPtos becomes 0 and X, Y, Z end with subscript 0. To
  ///           the caller go 7; 9 when nPtos is negative, Z is too short or a
  ///           lower bound is not 0; 10 when X, Y or Z is locked. What had been
  ///           written by then stays.
  /// Source:   one sort in X and one sweep with an anchored box.
  void Quita_Puntos_Repetidos_XY_con_indice1(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y,
                                             DoubleArray& Z, LongArray& Indice,
                                             const ObjectRef& Progreso1, const double& Precision,
                                             const Bool& Aviso) const;
  /// Does nothing, on purpose: the texts and the number stay as they are.
  void SwapStrings(const Text& String1, const Text& String2, const std::int32_t& SwpVal) const;
};

}  // namespace orv2_geo
