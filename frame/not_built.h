// not_built.h: the answer of a member that a host can find but not use yet.
#pragma once

#include "frame/run_failure.h"

namespace orv2_geo {

/// Failure 445, signed with the member's class.
[[noreturn]] inline void not_built(const char* source) {
  throw RunFailure::signed_by(failure::action_not_supported, source);
}

}  // namespace orv2_geo
