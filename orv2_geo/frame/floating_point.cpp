#include "orv2_geo/frame/floating_point_guard.h"

namespace orv2_geo {

#if !defined(_WIN32)
constinit thread_local FloatingPointSettings* floating_point::host_of_thread = nullptr;
#endif

UsualFloatingPoint::UsualFloatingPoint() noexcept { floating_point::enter({}, host_, outer_); }

UsualFloatingPoint::~UsualFloatingPoint() { floating_point::leave({}, host_, outer_); }

}  // namespace orv2_geo
