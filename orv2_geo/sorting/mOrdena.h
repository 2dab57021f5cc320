// mOrdena.h: the library's sorts, for every room that orders something.
//
// All sort ascending by one algorithm, an iterative quicksort that takes the
// median of three for its pivot and leaves up to seven elements to insertion.
// None is stable: the order of equal elements is the algorithm's, and it is a
// rule on which callers rely. Where nothing can fail the same order is found in
// other ways, in n log n steps also where the algorithm itself would take more.
//
//   |                           | usual | worst   | memory             | where a step can fail |
//   |---------------------------|-------|---------|--------------------|-----------------------|
//   | Ordena_LongArray          | n     | n       | 4 bytes a number   | the algorithm: usual  |
//   | Ordena_LongIndexArray     | n     | n log n | 24 bytes a number  | n log n, worst n^2,   |
//   | Ordena_Double_Index_Array | n     | n log n | 16 bytes a value   | 32 ranges             |
//   | Ordena_Double_Array       | n     | n       | 16 bytes a value   |                       |
//   | the two of texts          | n     | n log n | 60 bytes a text    |                       |
//
// Linear is a radix sort, in up to six passes, or one pass where elements come in order or
// nearly; ties add n log n of the ties. A few doubles beyond the span of double_keys.h add
// their own texts to that (mixed_keys.h), and doubles so far apart that key and position
// fit no word take 52 bytes a value; more make texts of all. Texts take a byte a character
// more beyond twelve.
#pragma once

#include <cstdint>
#include <limits>

#include "orv2_geo/frame/geo_arrays.h"

namespace orv2_geo::mOrdena {

/// As a bound: taken from the array.
inline constexpr std::int32_t bound_from_array = std::numeric_limits<std::int32_t>::min();

/// Sorts the texts LowerBound to UpperBound in the collation of the user's
/// locale, case ignored. Failures: 9 for bounds of an unallocated array and for
/// elements that are missing; 6 where bounds are too far apart; 7. The array is
/// then as far sorted as the algorithm had got, each text still in it once.
void Ordena_StringArray(StringArray& TheArray, const std::int32_t& LowerBound,
                        const std::int32_t& UpperBound);

/// Sorts the numbers LowerBound to UpperBound. Failures 9, 6.
void Ordena_LongArray(LongArray& TheArray, const std::int32_t& LowerBound,
                      const std::int32_t& UpperBound);

/// Sorts the entries LowerBound to UpperBound of TheIndex by the texts of
/// TheArray that they number. Failures as Ordena_StringArray, and 9 for an entry
/// that numbers no text.
void Ordena_StringIndexArray(const StringArray& TheArray, LongArray& TheIndex,
                             const std::int32_t& LowerBound, const std::int32_t& UpperBound);

/// Sorts the entries 1 to UpperBound of TheIndex by the numbers of TheArray that
/// they number. LowerBound is asked for and then passed over: the range starts at
/// 1 whatever it says. Failures 9, 6.
void Ordena_LongIndexArray(const LongArray& TheArray, LongArray& TheIndex,
                           const std::int32_t& LowerBound, const std::int32_t& UpperBound);

/// Gives TheIndex the bounds 0 to upper and the numbers 1 to upper in the order
/// of DoubleA's values, upper being UpperBound or DoubleA's upper bound. Values
/// are ordered by their keys: see double_keys.h. Failures: 9 for bounds of an
/// unallocated array, an upper below 0 and elements that are missing, TheIndex
/// then being filled up to these; 6 for NaN; 10 when TheIndex is locked; 7.
void Ordena_Double_Index_Array(const DoubleArray& DoubleA, LongArray& TheIndex,
                               const std::int32_t& LowerBound, const std::int32_t& UpperBound);

/// Writes over DoubleA(1) to DoubleA(upper) the numbers that its sorted keys
/// stand for: the sorted values, rounded to six decimals, when all are positive.
/// Failures 9, 6, 7, with the values before unchanged; 13 and 6 at keys that are
/// infinite or above the largest double, after those that are sorted before them.
void Ordena_Double_Array(DoubleArray& DoubleA, const std::int32_t& LowerBound,
                         const std::int32_t& UpperBound);

}  // namespace orv2_geo::mOrdena
