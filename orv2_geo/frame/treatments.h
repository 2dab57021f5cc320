// treatments.h: what a routine does with a failure other than letting it pass.
#pragma once

#include <utility>

#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo {

/// Runs `statement` with `taken` as its handler: any failure in it, a refused
/// allocation included, reaches `taken` as a RunFailure, and what `taken`
/// throws goes to the caller. The handler's answer stands for the statement's.
template <class Statement, class Handler>
auto handled(const char* source, Statement&& statement, Handler&& taken)
    -> decltype(std::forward<Statement>(statement)()) {
  try {
    try {
      return std::forward<Statement>(statement)();
    } catch (...) {
      leave_signed(source);
    }
  } catch (const RunFailure& failure) {
    return std::forward<Handler>(taken)(failure);
  }
}

/// Runs one statement of a routine that skips failing statements: whatever
/// fails in it, the next statement runs, and variables that the statement was
/// to assign are unchanged.
template <class Statement>
void skip_on_failure(Statement&& statement) {
  handled("", std::forward<Statement>(statement), [](const RunFailure&) {});
}

}  // namespace orv2_geo
