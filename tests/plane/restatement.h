// restatement.h: routines stated once more, statement by statement in plain doubles.
#pragma once

#include <cfenv>
#include <cmath>
#include <type_traits>

#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "tests/support/preamble.h"

namespace orv2_geo::plane_tests {

inline const cgeo_Algorismos algorithms;

/// A number of a statement: read from memory where the statement names it, so
/// that nothing is folded, contracted or moved across a look at the exceptions.
using Number = const volatile double;
using In = const volatile double&;
using Out = volatile double&;

/// The value of one statement (no division inside another's), after a look at
/// the processor's exceptions.
template <class Statement>
double stated(Statement&& statement) {
  std::feclearexcept(FE_ALL_EXCEPT);
  const volatile double value = statement();
  if (std::fetestexcept(FE_DIVBYZERO) != 0) raise(failure::division_by_zero);
  if (std::fetestexcept(FE_INVALID | FE_OVERFLOW) != 0) raise(failure::overflow);
  return value;
}

inline double plain(Bool answer) { return answer.bits; }
template <class T>
requires std::is_arithmetic_v<T>
double plain(T answer) { return static_cast<double>(answer); }

}  // namespace orv2_geo::plane_tests
