// comparison.h: what a call did here against what the vectors tell of it.
#pragma once

#include <string>
#include <vector>

#include "tests/vectors/values.h"

namespace orv2_geo::early_bound {

/// The last digits in which the answers of the C run-time's functions may differ, in units in the
/// last place.
inline constexpr double allowed_ulps = 2.0;

class Comparison {
 public:
  /// Compares values; numbers with a fraction may be off by `allowed_ulps` where they are
  /// elementary.
  bool agree(const vectors::Value& expected, const vectors::Value& got, bool elementary);

  /// Of all numbers compared so far that were allowed to differ.
  double largest_ulps() const { return largest_; }

 private:
  bool close(const vectors::Value& expected, const vectors::Value& got);

  double largest_ = 0.0;
};

}  // namespace orv2_geo::early_bound
