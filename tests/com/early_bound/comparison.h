// comparison.h: what a call did here against what the vectors tell of it.
#pragma once

#include <string>
#include <vector>

#include "tests/vectors/values.h"

namespace orv2_geo::early_bound {

/// How far the answers of the C run-time's functions may differ, in units of the last place.
inline constexpr double allowed_ulps = 2.0;

/// The number by whose last place a call's answers are compared, where it is larger than they are.
double scale_of(vectors::Closeness closeness, const vectors::VectorCall& call);

class Comparison {
 public:
  /// Compares values; numbers with a fraction may be off by `allowed_ulps` unless they are exact.
  bool agree(const vectors::Value& expected, const vectors::Value& got,
             vectors::Closeness closeness, double scale);

  /// Of all numbers compared so far that were allowed to differ, and did not by more.
  double largest_ulps() const { return largest_; }

  /// How many there were that differed at all.
  int not_equal() const { return not_equal_; }

 private:
  bool close(const vectors::Value& expected, const vectors::Value& got, double scale);

  double largest_ = 0.0;
  int not_equal_ = 0;
};

}  // namespace orv2_geo::early_bound
