// floating_point_guard.h: the usual floating-point environment inside the library, the
// host's own in what it calls back.
#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

#include "orv2_geo/frame/floating_point_units.h"

namespace orv2_geo {

namespace floating_point {

#if defined(_WIN32)
// The system's own slot: the compiler's data of a thread takes a call and a lock to reach.
FloatingPointSettings* host_settings() noexcept;
void set_host(FloatingPointSettings* settings) noexcept;

// Where this thread keeps the host's settings.
class HostPlace {
 public:
  FloatingPointSettings* get() const noexcept { return host_settings(); }
  void set(FloatingPointSettings* settings) const noexcept { set_host(settings); }
};
#else
// What a call looks up about its thread, side by side: to find the place takes a call of the
// run-time's, and so is done once.
struct ThreadData {
  FloatingPointSettings* host;  // under which it computes in the library; null in the host's code
  std::uint64_t number;         // 0 where it was not asked for yet (platform/thread_number.h)
};
extern constinit thread_local ThreadData thread_data __attribute__((visibility("hidden")));

// Where this thread keeps the host's settings.
class HostPlace {
 public:
  FloatingPointSettings* get() const noexcept { return data_->host; }
  void set(FloatingPointSettings* settings) const noexcept { data_->host = settings; }
  std::uint64_t thread_number() const noexcept { return data_->number; }

 private:
  ThreadData* data_ = &thread_data;
};
#endif

// Memory is written before and read after, so that no formula moves out of the two.
inline void enter(const HostPlace& place, FloatingPointSettings& host,
                  FloatingPointSettings*& outer) noexcept {
  host = put_aside();
  outer = place.get();
  if (outer == nullptr) place.set(&host);  // else this is the library's own call
  std::atomic_signal_fence(std::memory_order_seq_cst);
}
inline void leave(const HostPlace& place, const FloatingPointSettings& host,
                  FloatingPointSettings* outer) noexcept {
  std::atomic_signal_fence(std::memory_order_seq_cst);
  if (outer == nullptr) place.set(nullptr);
  put_back(host);
}

}  // namespace floating_point

/// Stands where a call comes in from the host: what runs while this lives computes in the
/// usual environment; the host finds its own afterwards. The same as UsualFloatingPoint,
/// inline.
class FloatingPointGuard {
 public:
  FloatingPointGuard() noexcept { floating_point::enter(place_, host_, outer_); }
  FloatingPointGuard(const FloatingPointGuard&) = delete;
  FloatingPointGuard& operator=(const FloatingPointGuard&) = delete;
  ~FloatingPointGuard() { floating_point::leave(place_, host_, outer_); }

  const floating_point::HostPlace& place() const noexcept { return place_; }

 private:
  floating_point::HostPlace place_;
  FloatingPointSettings host_;
  FloatingPointSettings* outer_;
};

/// Stands around a call of the host's own code: it finds the host's settings, and what it
/// leaves is what the host finds when the library's call is over.
class HostFloatingPoint {
 public:
  HostFloatingPoint() noexcept : host_(place_.get()) {
    if (host_ == nullptr) return;  // the host's code calls itself, or C++ called without a scope
    place_.set(nullptr);
    library_ = floating_point::put_aside();
    floating_point::put_back(*host_);
  }
  HostFloatingPoint(const HostFloatingPoint&) = delete;
  HostFloatingPoint& operator=(const HostFloatingPoint&) = delete;
  ~HostFloatingPoint() {
    if (host_ == nullptr) return;
    *host_ = floating_point::put_aside();
    floating_point::put_back(library_);
    place_.set(host_);
  }

 private:
  floating_point::HostPlace place_;
  FloatingPointSettings* host_;
  FloatingPointSettings library_{};
};

/// Runs the host's code in the host's settings.
template <class Code>
decltype(auto) in_settings_of_host(Code&& code) {
  const HostFloatingPoint settings;
  return std::forward<Code>(code)();
}

}  // namespace orv2_geo
