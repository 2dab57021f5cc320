// cgeo_Ordena.h: sorting of arrays and removal of repeated points.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/argument.h"
#include "orv2_geo/frame/class_description.h"
#include "orv2_geo/frame/export.h"

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
///
/// Expects the usual floating-point settings: see UsualFloatingPoint.
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
  /// with nothing written; 13 at the text of an infinite value, and 6 at that of
  /// one whose 15 digits are above the largest double, what is sorted before it
  /// being written.
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
  ///           X = 9, 0, 0, 5 become 2, 3, 1. A repeat with a lower number p than
  ///           its cluster's points before it also takes place p of that order
  ///           when the sweep is past there: a point may be chosen twice, and
  ///           another not at all.
  /// Progress: Visible = true, Min = 0 (16 bits) and max (f64) on Progreso1 before
  ///           the sweep, Visible = true after it; Value is never set.
  /// Aviso:    not used.
  /// Failures: what stops the search for repeats (6 when a bound of the tolerance
  ///           overflows or NaN is compared, 9 when X or Y is too short, 11 when
  ///           nPtos is 0, 91 or 438 for Progreso1, 7) is shown in a box and then
  ///           passed over: nPtos becomes 0 and X, Y, Z end with subscript 0. A
  ///           failure of the last write to Progreso1 is shown, and the answer is
  ///           whole. To the caller go 7; 9 when nPtos is negative, Z is too short or a
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
