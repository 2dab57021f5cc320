// not_built.h: the answer of a member that a host can find but not use yet.
#pragma once

#include "frame/run_failure.h"

namespace orv2_geo {

/// Failure 445, signed with the member's class.
[[noreturn]] inline void not_built(const char* source) {
  RunFailure failure(failure::action_not_supported);
  failure.sign(source);
  throw failure;
}

}  // namespace orv2_geo
