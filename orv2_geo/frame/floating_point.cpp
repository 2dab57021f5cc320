#include "orv2_geo/frame/floating_point_guard.h"

namespace orv2_geo {

#if !defined(_WIN32)
constinit thread_local floating_point::ThreadData floating_point::thread_data{nullptr, 0};
#endif

UsualFloatingPoint::UsualFloatingPoint() noexcept { floating_point::enter({}, host_, outer_); }

UsualFloatingPoint::~UsualFloatingPoint() { floating_point::leave({}, host_, outer_); }

}  // namespace orv2_geo
