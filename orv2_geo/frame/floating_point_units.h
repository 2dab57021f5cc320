// floating_point_units.h: how the processor's floating-point settings are read and set.
#pragma once

#include "orv2_geo/frame/floating_point.h"

namespace orv2_geo::floating_point {

#if defined(__x86_64__) || defined(__i386__)

// MXCSR: bits 0 to 5 are the flags, 6 is denormals-are-zero, 7 to 12 mask the exceptions,
// 13 and 14 round, 15 is flush-to-zero. Usual is that all are masked, and nothing else.
inline constexpr std::uint32_t sse_flags = 0x3f;
inline constexpr std::uint32_t sse_usual = 0x1f80;
// All masked, 64 bits of precision, to nearest.
inline constexpr std::uint16_t x87_usual = 0x037f;
inline constexpr std::uint16_t x87_exceptions = 0x3f;
inline constexpr std::uint16_t x87_flags = 0x7f;  // those, and of its stack

// Where the run-time's functions compute in the x87 unit, and so raise its flags.
#if defined(__i386__) || defined(_WIN32)
inline constexpr bool x87_computes = true;
#else
inline constexpr bool x87_computes = false;
#endif

inline std::uint32_t sse() noexcept { return __builtin_ia32_stmxcsr(); }
inline void set_sse(std::uint32_t settings) noexcept { __builtin_ia32_ldmxcsr(settings); }

inline std::uint16_t x87_control() noexcept {
  std::uint16_t control;
  __asm__ volatile("fnstcw %0" : "=m"(control));
  return control;
}
inline void set_x87_control(std::uint16_t control) noexcept {
  __asm__ volatile("fldcw %0" : : "m"(control));
}

inline std::uint16_t x87_status() noexcept {
  std::uint16_t status;
  __asm__ volatile("fnstsw %0" : "=m"(status));
  return status;
}
inline void set_x87_flags(std::uint16_t status) noexcept {
  if ((status & x87_flags) == 0) {
    __asm__ volatile("fnclex");
    return;
  }
  struct {
    std::uint32_t control, status, tags, pointers[4];
  } environment;
  __asm__ volatile("fnstenv %0" : "=m"(environment));
  environment.status = (environment.status & ~std::uint32_t{x87_flags}) | (status & x87_flags);
  __asm__ volatile("fldenv %0" : : "m"(environment));
}

/// The settings of this thread, which then has the usual ones.
inline FloatingPointSettings put_aside() noexcept {
  FloatingPointSettings found{sse(), x87_control(), x87_computes ? x87_status() : std::uint16_t{0}};
  if ((found.sse & ~sse_flags) != sse_usual) [[unlikely]] {
    set_sse(sse_usual | (found.sse & sse_flags));
  }
  if (found.x87_control != x87_usual) [[unlikely]] {
    found.x87_status = x87_status();
    // Of a raised flag whose exception traps, the unit's next instruction would be the trap.
    if ((found.x87_status & ~found.x87_control & x87_exceptions) != 0) set_x87_flags(0);
    set_x87_control(x87_usual);
  }
  return found;
}

/// This thread has those settings again, with those flags and no others. They are written
/// without a look at the flags raised meanwhile: to look takes longer than to write.
inline void put_back(const FloatingPointSettings& settings) noexcept {
  set_sse(settings.sse);
  const bool was_set = settings.x87_control != x87_usual;
  if ((x87_computes || was_set) && ((x87_status() ^ settings.x87_status) & x87_flags) != 0) {
    set_x87_flags(settings.x87_status);
  }
  // Last, as the unit may now trap.
  if (was_set) [[unlikely]] {
    set_x87_control(settings.x87_control);
  }
}

#elif defined(__aarch64__)

// FPCR is 0 where all is usual; FPSR holds the flags.
inline FloatingPointSettings put_aside() noexcept {
  FloatingPointSettings found;
  __asm__ volatile("mrs %0, fpcr" : "=r"(found.control));
  __asm__ volatile("mrs %0, fpsr" : "=r"(found.status));
  if (found.control != 0) [[unlikely]] {
    __asm__ volatile("msr fpcr, %0" : : "r"(std::uint64_t{0}));
  }
  return found;
}

inline void put_back(const FloatingPointSettings& settings) noexcept {
  std::uint64_t status;
  __asm__ volatile("mrs %0, fpsr" : "=r"(status) : : "memory");
  if (status != settings.status) {
    __asm__ volatile("msr fpsr, %0" : : "r"(settings.status) : "memory");
  }
  if (settings.control != 0) [[unlikely]] {
    __asm__ volatile("msr fpcr, %0" : : "r"(settings.control) : "memory");
  }
}

#else

inline FloatingPointSettings put_aside() noexcept {
  FloatingPointSettings found;
  std::feholdexcept(&found.all);
  std::fesetround(FE_TONEAREST);
  return found;
}

inline void put_back(const FloatingPointSettings& settings) noexcept {
  std::fesetenv(&settings.all);
}

#endif

/// The usual settings for work that calls nobody back.
class UsualMeanwhile {
 public:
  UsualMeanwhile() noexcept : found_(put_aside()) {}
  UsualMeanwhile(const UsualMeanwhile&) = delete;
  UsualMeanwhile& operator=(const UsualMeanwhile&) = delete;
  ~UsualMeanwhile() { put_back(found_); }

 private:
  FloatingPointSettings found_;
};

}  // namespace orv2_geo::floating_point
