// floating_point.h: the floating-point environment that the library computes in.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/export.h"

#if !defined(__x86_64__) && !defined(__i386__) && !defined(__aarch64__)
#include <cfenv>
#endif

namespace orv2_geo {

/// Settings of a thread's floating-point units that were put aside, with the flags of the
/// exceptions that had been raised.
struct FloatingPointSettings {
#if defined(__x86_64__) || defined(__i386__)
  std::uint32_t sse;
  std::uint16_t x87_control;
  std::uint16_t x87_status;
#elif defined(__aarch64__)
  std::uint64_t control;
  std::uint64_t status;
#else
  std::fenv_t all;
#endif
};

/// While one of these lives, its thread computes as the library expects: rounding to
/// nearest, numbers below the least normal one kept, no exception trapped. When it ends,
/// the thread has the settings and the flags that it had before, and nothing that the
/// library raised.
///
/// Calls through C, Python, components and by name do this themselves. Who calls the
/// classes directly in C++ and has changed the settings makes one around the calls, as
/// many as there are; without it the last bits may differ, and a trapped exception ends
/// the process. What the library calls back (a progress indicator, a surface, the host's
/// own screen, memory of the host's arrays) finds the host's settings, and may change
/// them. The library's own screens are drawn in the usual ones.
///
/// They end in the opposite order to that in which they began, on the same thread.
class ORV2_PUBLIC UsualFloatingPoint {
 public:
  UsualFloatingPoint() noexcept;
  UsualFloatingPoint(const UsualFloatingPoint&) = delete;
  UsualFloatingPoint& operator=(const UsualFloatingPoint&) = delete;
  ~UsualFloatingPoint();

 private:
  FloatingPointSettings host_;
  FloatingPointSettings* outer_;
};

}  // namespace orv2_geo
