// floating_point.h: what a host may have done to the floating-point units of its thread.
#pragma once

#include <cfenv>
#include <cstdint>
#include <vector>

namespace orv2_geo::testing {

/// The settings and the raised flags of a thread.
struct Units {
#if defined(__x86_64__) || defined(__i386__)
  std::uint32_t sse = 0;
  std::uint16_t x87_control = 0, x87_flags = 0;
#elif defined(__aarch64__)
  std::uint64_t control = 0, status = 0;
#else
  int rounding = 0, flags = 0;
#endif
  bool operator==(const Units&) const = default;
};

#if defined(__x86_64__) || defined(__i386__)

inline Units units() {
  Units found;
  found.sse = __builtin_ia32_stmxcsr();
  __asm__ volatile("fnstcw %0" : "=m"(found.x87_control));
  __asm__ volatile("fnstsw %0" : "=m"(found.x87_flags));
  found.x87_flags &= 0x3f;
  return found;
}

inline void set_units(const Units& wanted) {
  struct {
    std::uint32_t control, status, tags, pointers[4];
  } environment;
  __asm__ volatile("fnstenv %0" : "=m"(environment));
  environment.control = (environment.control & 0xffff0000U) | wanted.x87_control;
  environment.status = (environment.status & ~0x3fU) | wanted.x87_flags;
  __asm__ volatile("fldenv %0" : : "m"(environment));
  __builtin_ia32_ldmxcsr(wanted.sse);
}

#elif defined(__aarch64__)

inline Units units() {
  Units found;
  __asm__ volatile("mrs %0, fpcr" : "=r"(found.control));
  __asm__ volatile("mrs %0, fpsr" : "=r"(found.status));
  return found;
}

inline void set_units(const Units& wanted) {
  __asm__ volatile("msr fpcr, %0" : : "r"(wanted.control));
  __asm__ volatile("msr fpsr, %0" : : "r"(wanted.status));
}

#else

inline Units units() { return {std::fegetround(), std::fetestexcept(FE_ALL_EXCEPT)}; }

inline void set_units(const Units& wanted) {
  std::fesetround(wanted.rounding);
  std::feclearexcept(FE_ALL_EXCEPT);
  std::feraiseexcept(wanted.flags);
}

#endif

/// What hosts may have set, and a name for each.
struct OddUnits {
  const char* name;
  Units units;
};

/// Of settings of every kind: rounding, small numbers, traps, precision, raised flags.
inline std::vector<OddUnits> odd_units() {
#if defined(__x86_64__) || defined(__i386__)
  return {{"up", {0x5f80, 0x0b7f, 0}},
          {"down", {0x3f80, 0x077f, 0}},
          {"towards zero", {0x7f80, 0x0f7f, 0}},
          {"flush to zero", {0x9f80, 0x037f, 0}},
          {"denormals are zero", {0x1fc0, 0x037f, 0}},
          {"invalid, zero divide and overflow trapped", {0x1900, 0x0372, 0}},
          {"all trapped", {0x0000, 0x0340, 0}},
          {"all trapped, up, no small numbers", {0xc040, 0x0b40, 0}},
          {"all trapped, and raised", {0x003f, 0x0340, 0x3f}},
          {"invalid trapped, and raised", {0x1f01, 0x037e, 0x01}},
          {"inexact trapped, and raised", {0x0fa0, 0x035f, 0x20}},
          {"short precision", {0x1f80, 0x007f, 0}},
          {"flags raised", {0x1fbf, 0x037f, 0x3f}},
          {"no flag raised", {0x1f80, 0x037f, 0}},
          {"some flags raised", {0x1f94, 0x037f, 0x14}}};
#elif defined(__aarch64__)
  return {{"up", {1U << 22, 0}},
          {"down", {2U << 22, 0}},
          {"towards zero", {3U << 22, 0}},
          {"flush to zero", {1U << 24, 0}},
          {"one NaN for all", {1U << 25, 0}},
          {"flags raised", {0, 0x1f}},
          {"no flag raised", {0, 0}}};
#else
  return {{"up", {FE_UPWARD, 0}},
          {"down", {FE_DOWNWARD, FE_INEXACT}},
          {"towards zero", {FE_TOWARDZERO, 0}}};
#endif
}

/// Those settings while it lives.
class WithUnits {
 public:
  explicit WithUnits(const Units& wanted) : before_(units()) { set_units(wanted); }
  WithUnits(const WithUnits&) = delete;
  WithUnits& operator=(const WithUnits&) = delete;
  ~WithUnits() { set_units(before_); }

 private:
  Units before_;
};

}  // namespace orv2_geo::testing
