// sanitizer.h: whether the thread sanitizer looks on.
#pragma once

namespace orv2_geo::testing_support {

#if defined(__SANITIZE_THREAD__)
inline constexpr bool thread_sanitizer = true;
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
inline constexpr bool thread_sanitizer = true;
#else
inline constexpr bool thread_sanitizer = false;
#endif
#else
inline constexpr bool thread_sanitizer = false;
#endif

}  // namespace orv2_geo::testing_support
