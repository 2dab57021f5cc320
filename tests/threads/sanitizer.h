// sanitizer.h: whether a sanitizer looks on, which takes time and memory of its own.
#pragma once

namespace orv2_geo::testing_support {

#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
inline constexpr bool instrumented = true;
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer) || __has_feature(address_sanitizer)
inline constexpr bool instrumented = true;
#else
inline constexpr bool instrumented = false;
#endif
#else
inline constexpr bool instrumented = false;
#endif

}  // namespace orv2_geo::testing_support
