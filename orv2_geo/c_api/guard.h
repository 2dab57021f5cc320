// guard.h: nothing but a status leaves a C function, and a host callback's
// status comes back as a failure.
#pragma once

#include <cstdint>
#include <type_traits>
#include <utility>

#include "orv2_geo/frame/floating_point_guard.h"
#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo::c_api {

/// Keeps the failure for orv2_last_failure and answers with its number; never 0.
std::int32_t remembered(const RunFailure& failure) noexcept;

/// Runs the body of a C function: 0, or the number of its failure. A body that asks for the
/// call's guard gets it.
template <class Body>
std::int32_t guarded(Body&& body) noexcept {
  const FloatingPointGuard usual;
  try {
    if constexpr (std::is_invocable_v<Body, const FloatingPointGuard&>) {
      std::forward<Body>(body)(usual);
    } else {
      std::forward<Body>(body)();
    }
    return 0;
  } catch (...) {
    return remembered(failure_in_flight());
  }
}

void forget_callback_failure() noexcept;
[[noreturn]] void raise_callback_failure(std::int32_t status);

/// Runs a host's callback and throws the failure that it answers with.
template <class Callback>
void asked(Callback&& callback) {
  forget_callback_failure();
  const std::int32_t status = in_settings_of_host(std::forward<Callback>(callback));
  if (status != 0) raise_callback_failure(status);
}

/// `pointer` itself. Failure 5 when it is null.
template <class T>
T* needed(T* pointer) {
  if (pointer == nullptr) raise(failure::invalid_call);
  return pointer;
}

}  // namespace orv2_geo::c_api
