// cgeo_Ordena.h: sorting of arrays and removal of repeated points.
#pragma once

#include <cstdint>

#include "frame/argument.h"
#include "frame/class_description.h"
#include "frame/export.h"

namespace orv2_geo {

/// Sorting of arrays, in place or through an index, and removal of repeated
/// points. A pure function table.
///
/// All sorts ascend and none is stable. LowerBound and UpperBound left out, or
/// -2147483648, are taken from the array that is sorted (failure 9 when it is
/// unallocated). The order in which equal elements end is that of one algorithm:
/// iterative quicksort, median of three, insertion for up to seven elements (which
/// do keep the order of equals). A failure leaves an array as far sorted as the
/// algorithm had got, each element in it once.
class ORV2_PUBLIC cgeo_Ordena {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_Ordena";

  /// The members in interface order.
  static const ClassDescription& description();

  /// The order of the values DoubleA(1) to DoubleA(upper), upper being UpperBound
  /// or DoubleA's upper bound: TheIndex is sized anew with bounds 0 to upper,
  /// element 0 being 0, and TheIndex(1) numbers the lowest value. LowerBound has no
  /// effect. DoubleA stays as it is.
  ///
  /// Values from -100000000 to below 700000000 are ordered as numbers, to six
  /// decimals: closer ones are equal. When any lies beyond, all are ordered by
  /// texts, the value plus 200000000 (negative ones) or 300000000 in 15 digits,
  /// which is then no order of numbers.
  ///
  /// Failures: 9 for an upper below 0 and at a value that is missing, TheIndex
  /// then being filled up to it; 6 at NaN; 10 when TheIndex is locked; 7.
  void Ordena_Double_Index_Array(const DoubleArray& DoubleA, LongArray& TheIndex,
                                 const std::int32_t& LowerBound,
                                 const std::int32_t& UpperBound) const;

  /// Sorts the values DoubleA(1) to DoubleA(upper), rounded to six decimals, when
  /// all are positive. Only then: element i becomes the i-th of the sorted texts
  /// of Ordena_Double_Index_Array less 300000000 where a positive value stood
  /// before, and its negative less 200000000 where a negative one or zero stood,
  /// which is no value of the array. Sort data with other signs through an index.
  /// Failures: 9 for an upper below 0 or a value that is missing, 6 at NaN, 7,
  /// with nothing written.
  void Ordena_Double_Array(DoubleArray& DoubleA, const std::int32_t& LowerBound,
                           const std::int32_t& UpperBound) const;

  /// Sorts the texts LowerBound to UpperBound in the collation of the user's
  /// locale, case ignored. Failures: 9 at an element that is missing, 6 for bounds
  /// too far apart, 7.
  void Ordena_StringArray(StringArray& TheArray, const std::int32_t& LowerBound,
                          const std::int32_t& UpperBound) const;

  /// Sorts the numbers LowerBound to UpperBound. Failures 9 and 6 as
  /// Ordena_StringArray.
  void Ordena_LongArray(LongArray& TheArray, const std::int32_t& LowerBound,
                        const std::int32_t& UpperBound) const;

  /// Sorts the entries LowerBound to UpperBound of TheIndex by the texts of
  /// TheArray that they number; TheArray stays as it is. Failures as
  /// Ordena_StringArray, and 9 at an entry that numbers no text.
  void Ordena_StringIndexArray(const StringArray& TheArray, LongArray& TheIndex,
                               const std::int32_t& LowerBound,
                               const std::int32_t& UpperBound) const;

  /// Sorts the entries 1 to UpperBound of TheIndex by the numbers of TheArray that
  /// they number; TheArray stays as it is. The range starts at 1 whatever
  /// LowerBound says. Failures 9 and 6 as Ordena_StringIndexArray.
  void Ordena_LongIndexArray(const LongArray& TheArray, LongArray& TheIndex,
                             const std::int32_t& LowerBound, const std::int32_t& UpperBound) const;
  void Quita_Puntos_Repetidos_XY_con_indice1(std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y,
                                             DoubleArray& Z, LongArray& Indice,
                                             const ObjectRef& Progreso1, const double& Precision,
                                             const Bool& Aviso) const;
  void SwapStrings(const Text& String1, const Text& String2, const std::int32_t& SwpVal) const;
};

}  // namespace orv2_geo
