// checked_math.h: arithmetic in binary64 that fails instead of going astray.
//
// A formula over Checked numbers reads as it stands in a book. It is worked out
// in one go, in the order written, and looked at once: a finite outcome proves
// that nothing overflowed and nothing invalid was asked. Only an outcome that is
// not finite is worked out again, step by step, to find the first failure among
// the exceptions of IEEE 754:
//   zero-divide             failure 11
//   invalid, overflow       failure 6
// and, in the elementary functions, 5 for an argument outside their domain. What
// a sum, difference or product raises is pending until the next division or the
// end of the formula; so a root of 1 - t t is failure 5 also where t t overflows.
// Underflow and lost digits say nothing. An infinity or a quiet NaN that a
// caller hands in raises nothing by itself: it travels on until an operation
// on it does. A comparison with NaN is failure 6.
#pragma once

#include <bit>
#include <cfloat>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

#include "orv2_geo/frame/elementary.h"
#include "orv2_geo/frame/run_failure.h"

static_assert(FLT_EVAL_METHOD == 0, "binary64 without extended intermediate results");
static_assert(std::numeric_limits<double>::is_iec559 && std::numeric_limits<float>::is_iec559);

namespace orv2_geo {

namespace checked {

/// A piece of a formula says so of itself. (A common base class would pad every
/// piece that holds another, and keep formulas out of the registers.)
template <class E>
concept Piece = requires {
  requires E::is_piece;
};

/// Types that widen to binary64 without loss.
template <class T>
concept Exact = std::same_as<T, double> || std::same_as<T, float> ||
    std::same_as<T, std::int32_t> || std::same_as<T, std::int16_t>;

template <class T>
concept Operand = Piece<T> || Exact<T>;

// In whole numbers: the exponent is not all ones. It leaves the floating-point
// units to the formula. Without its sign, one bit up, 1.0 is 0x7fe0000000000000,
// infinity 0xffe0000000000000 and NaN above that.
inline bool is_finite(double value) noexcept {
  constexpr std::uint64_t all_ones = 0xffe0000000000000U;
  return std::bit_cast<std::uint64_t>(value) << 1U < all_ones;
}

/// An overflow or invalid operation at which nobody has looked yet.
class Pending {
 public:
  void note(bool raised) noexcept { raised_ = raised_ || raised; }

  /// Failure 6 when something is pending.
  void look() const {
    if (raised_) raise(failure::overflow);
  }

 private:
  bool raised_ = false;
};

// One operation with its own test: where a failing formula finds its culprit. A
// division looks at what is pending; the others add to it.
double sum(double a, double b, Pending& pending);
double difference(double a, double b, Pending& pending);
double product(double a, double b, Pending& pending);
double quotient(double dividend, double divisor, const Pending& pending);

/// The formula E again over these numbers, each operation with its own test.
/// The numbers come one by one, so that a sound formula never has to stand in
/// memory as a whole.
template <Piece E, std::same_as<double>... Numbers>
[[gnu::noinline, gnu::cold]] double settle_stepwise(Numbers... numbers) {
  const double all[] = {numbers...};
  Pending pending;
  const double value = E::over(all).stepwise(pending);
  pending.look();
  return value;
}

template <Piece E, std::size_t... i>
[[gnu::always_inline]] inline double settle_stepwise(const E& formula, std::index_sequence<i...>) {
  return settle_stepwise<E>(formula.template number<i>()...);
}

/// The value of a formula, tested.
template <Piece E>
[[gnu::always_inline]] inline double settle(const E& formula) {
  bool sound = true;
  const double value = formula.quick(sound);
  if (sound && is_finite(value)) [[likely]] {
    return value;
  }
  return settle_stepwise(formula, std::make_index_sequence<E::size>{});
}

/// A piece that stands for its value wherever a number is needed.
template <class Self>
struct Valued {
  static constexpr bool is_piece = true;

  operator double() const { return settle(static_cast<const Self&>(*this)); }
};

}  // namespace checked

/// A number in a checked formula. Making one from a formula tests the formula.
class Checked {
 public:
  static constexpr bool is_piece = true;

  /// Known to have been tested, or to be the caller's own: may hide nothing.
  static constexpr bool settled = true;
  constexpr Checked() noexcept = default;
  template <checked::Exact T>
  constexpr Checked(T value) noexcept : value_(static_cast<double>(value)) {}
  template <checked::Piece E>
  requires(!std::same_as<E, Checked>) Checked(const E& formula)
      : value_(checked::settle(formula)) {}

  constexpr double value() const noexcept { return value_; }
  constexpr operator double() const noexcept { return value_; }
  explicit operator bool() const = delete;

  // What every piece of a formula offers: how many numbers it is over, the i-th
  // of them, the same piece over others; its value with one look at the end, and
  // its value with a look at each operation.
  static constexpr std::size_t size = 1;
  template <std::size_t>
  [[gnu::always_inline]] double number() const noexcept {
    return value_;
  }
  static Checked over(const double* numbers) noexcept { return *numbers; }
  [[gnu::always_inline]] double quick(bool&) const noexcept { return value_; }
  double stepwise(checked::Pending&) const noexcept { return value_; }

 private:
  double value_ = 0.0;
};

namespace checked {

template <Operand T>
using Term = std::conditional_t<Piece<T>, T, Checked>;

/// The value of a piece that a division or a function can swallow: an overflow
/// in it would come out as a zero.
template <Piece E>
[[gnu::always_inline]] inline double quick_seen(const E& piece, bool& sound) noexcept {
  const double value = piece.quick(sound);
  if constexpr (!E::settled) sound = sound && is_finite(value);
  return value;
}

/// What the pieces with two operands share.
template <class Self, Piece A, Piece B>
struct Binary : Valued<Self> {
  static constexpr bool settled = false;
  static constexpr std::size_t size = A::size + B::size;
  A a;
  B b;
  Binary(const A& left, const B& right) : a(left), b(right) {}
  template <std::size_t i>
  [[gnu::always_inline]] double number() const noexcept {
    if constexpr (i < A::size) {
      return a.template number<i>();
    } else {
      return b.template number<i - A::size>();
    }
  }
  static Self over(const double* numbers) {
    return Self(A::over(numbers), B::over(numbers + A::size));
  }
};

/// What the pieces with one operand share.
template <class Self, Piece A>
struct Unary : Valued<Self> {
  static constexpr std::size_t size = A::size;
  A a;
  explicit Unary(const A& operand) : a(operand) {}
  template <std::size_t i>
  [[gnu::always_inline]] double number() const noexcept {
    return a.template number<i>();
  }
  static Self over(const double* numbers) { return Self(A::over(numbers)); }
};

template <Piece A, Piece B>
struct Sum : Binary<Sum<A, B>, A, B> {
  using Binary<Sum, A, B>::Binary;
  using Binary<Sum, A, B>::a;
  using Binary<Sum, A, B>::b;
  [[gnu::always_inline]] double quick(bool& sound) const noexcept {
    const double left = a.quick(sound);
    return left + b.quick(sound);
  }
  double stepwise(Pending& pending) const {
    const double left = a.stepwise(pending);
    return sum(left, b.stepwise(pending), pending);
  }
};

template <Piece A, Piece B>
struct Difference : Binary<Difference<A, B>, A, B> {
  using Binary<Difference, A, B>::Binary;
  using Binary<Difference, A, B>::a;
  using Binary<Difference, A, B>::b;
  [[gnu::always_inline]] double quick(bool& sound) const noexcept {
    const double left = a.quick(sound);
    return left - b.quick(sound);
  }
  double stepwise(Pending& pending) const {
    const double left = a.stepwise(pending);
    return difference(left, b.stepwise(pending), pending);
  }
};

template <Piece A, Piece B>
struct Product : Binary<Product<A, B>, A, B> {
  using Binary<Product, A, B>::Binary;
  using Binary<Product, A, B>::a;
  using Binary<Product, A, B>::b;
  [[gnu::always_inline]] double quick(bool& sound) const noexcept {
    const double left = a.quick(sound);
    return left * b.quick(sound);
  }
  double stepwise(Pending& pending) const {
    const double left = a.stepwise(pending);
    return product(left, b.stepwise(pending), pending);
  }
};

template <Piece A, Piece B>
struct Quotient : Binary<Quotient<A, B>, A, B> {
  using Binary<Quotient, A, B>::Binary;
  using Binary<Quotient, A, B>::a;
  using Binary<Quotient, A, B>::b;
  [[gnu::always_inline]] double quick(bool& sound) const noexcept {
    const double dividend = a.quick(sound);
    return dividend / quick_seen(b, sound);  // an overflowed divisor would hide in a zero
  }
  double stepwise(Pending& pending) const {
    const double dividend = a.stepwise(pending);
    const double divisor = b.stepwise(pending);
    return quotient(dividend, divisor, pending);
  }
};

template <Piece A>
struct Negation : Unary<Negation<A>, A> {
  static constexpr bool settled = A::settled;
  using Unary<Negation, A>::Unary;
  using Unary<Negation, A>::a;
  [[gnu::always_inline]] double quick(bool& sound) const noexcept { return -a.quick(sound); }
  double stepwise(Pending& pending) const { return -a.stepwise(pending); }
};

/// A function of one argument: F::plain works it out, F::tested also fails.
template <class F, Piece A>
struct Function : Unary<Function<F, A>, A> {
  static constexpr bool settled = false;
  using Unary<Function, A>::Unary;
  using Unary<Function, A>::a;
  [[gnu::always_inline]] double quick(bool& sound) const noexcept {
    if constexpr (F::hides) return F::plain(quick_seen(a, sound));
    return F::plain(a.quick(sound));
  }
  double stepwise(Pending& pending) const { return F::tested(a.stepwise(pending)); }
};

template <Piece A, Piece B>
struct Power : Binary<Power<A, B>, A, B> {
  using Binary<Power, A, B>::Binary;
  using Binary<Power, A, B>::a;
  using Binary<Power, A, B>::b;
  [[gnu::always_inline]] double quick(bool& sound) const noexcept {
    const double base = quick_seen(a, sound);
    const double exponent = quick_seen(b, sound);
    return elementary::power(base, exponent);
  }
  double stepwise(Pending& pending) const {
    const double base = a.stepwise(pending);
    return elementary::tested_power(base, b.stepwise(pending));
  }
};

[[noreturn]] void unordered();

// A quiet NaN as it is; a signalling one is an invalid operation.
double widened_nan(float value);

/// Both sides of a comparison, worked out and tested, left first.
struct Sides {
  double a;
  double b;
};

template <Operand A, Operand B>
inline Sides sides(const A& left, const B& right) {
  const Checked a(left);
  const Checked b(right);
  if (std::isunordered(a.value(), b.value())) [[unlikely]]
    unordered();
  return {a.value(), b.value()};
}

template <class A, class B>
concept Operands = Operand<A> && Operand<B> &&(Piece<A> || Piece<B>);

}  // namespace checked

template <class A, class B>
requires checked::Operands<A, B>
inline auto operator+(const A& a, const B& b) {
  return checked::Sum<checked::Term<A>, checked::Term<B>>(a, b);
}
template <class A, class B>
requires checked::Operands<A, B>
inline auto operator-(const A& a, const B& b) {
  return checked::Difference<checked::Term<A>, checked::Term<B>>(a, b);
}
template <class A, class B>
requires checked::Operands<A, B>
inline auto operator*(const A& a, const B& b) {
  return checked::Product<checked::Term<A>, checked::Term<B>>(a, b);
}
template <class A, class B>
requires checked::Operands<A, B>
inline auto operator/(const A& a, const B& b) {
  return checked::Quotient<checked::Term<A>, checked::Term<B>>(a, b);
}
template <checked::Piece A>
inline auto operator-(const A& a) {
  return checked::Negation<A>(a);
}

template <class A, class B>
requires checked::Operands<A, B>
inline bool operator<(const A& left, const B& right) {
  const auto [a, b] = checked::sides(left, right);
  return a < b;
}
template <class A, class B>
requires checked::Operands<A, B>
inline bool operator<=(const A& left, const B& right) {
  const auto [a, b] = checked::sides(left, right);
  return a <= b;
}
template <class A, class B>
requires checked::Operands<A, B>
inline bool operator>(const A& left, const B& right) {
  const auto [a, b] = checked::sides(left, right);
  return a > b;
}
template <class A, class B>
requires checked::Operands<A, B>
inline bool operator>=(const A& left, const B& right) {
  const auto [a, b] = checked::sides(left, right);
  return a >= b;
}
template <class A, class B>
requires checked::Operands<A, B>
inline bool operator==(const A& left, const B& right) {
  const auto [a, b] = checked::sides(left, right);
  return a == b;
}
template <class A, class B>
requires checked::Operands<A, B>
inline bool operator!=(const A& left, const B& right) {
  const auto [a, b] = checked::sides(left, right);
  return a != b;
}

/// The elementary functions, in radians. Their failures: square root of a
/// negative, logarithm of zero or below, power of a negative with a fractional
/// exponent and of zero with a negative one: 5. Overflow, and an infinite
/// argument of a sine, cosine or tangent: 6.
template <checked::Piece A>
inline auto sqrt(const A& a) {
  return checked::Function<elementary::SquareRoot, A>(a);
}
template <checked::Piece A>
inline auto atan(const A& a) {
  return checked::Function<elementary::ArcTangent, A>(a);
}
template <checked::Piece A>
inline auto sin(const A& a) {
  return checked::Function<elementary::Sine, A>(a);
}
template <checked::Piece A>
inline auto cos(const A& a) {
  return checked::Function<elementary::Cosine, A>(a);
}
template <checked::Piece A>
inline auto tan(const A& a) {
  return checked::Function<elementary::Tangent, A>(a);
}
template <checked::Piece A>
inline auto exp(const A& a) {
  return checked::Function<elementary::Exponential, A>(a);
}
template <checked::Piece A>
inline auto ln(const A& a) {
  return checked::Function<elementary::NaturalLogarithm, A>(a);
}
template <checked::Piece A>
inline auto abs(const A& a) {
  return checked::Function<elementary::AbsoluteValue, A>(a);
}

/// base to the exponent, by the power function even where a product would do:
/// the two differ in the last bit now and then.
template <class A, class B>
requires checked::Operands<A, B>
inline auto power(const A& base, const B& exponent) {
  return checked::Power<checked::Term<A>, checked::Term<B>>(base, exponent);
}

/// Greatest whole number not above the value, staying a float.
inline Checked floor(Checked value) noexcept { return std::floor(value.value()); }

/// -1, 0 or 1. Failure 6 for NaN.
inline std::int16_t sign(Checked value) {
  if (value > 0.0) return 1;
  return value < 0.0 ? std::int16_t{-1} : std::int16_t{0};
}

/// To the nearest integer, ties to the even one. Failure 6 outside the range.
inline std::int32_t to_i32(Checked value) {
  // -2147483648.5 is a tie and goes to the even end of the range.
  if (!(value.value() >= -2147483648.5 && value.value() < 2147483647.5)) [[unlikely]]
    raise(failure::overflow);
  return static_cast<std::int32_t>(std::lrint(value.value()));
}
inline std::int16_t to_i16(Checked value) {
  if (!(value.value() >= -32768.5 && value.value() < 32767.5)) [[unlikely]]
    raise(failure::overflow);
  return static_cast<std::int16_t>(std::lrint(value.value()));
}

/// f32 to f64, exact.
/// Failure 6 for a signalling NaN.
inline Checked widen(float value) {
  if (std::isnan(value)) [[unlikely]] {
    return checked::widened_nan(value);
  }
  return Checked(value);
}

/// f64 to f32 with a test: failure 6 when a finite value leaves the f32 range.
inline float narrow(Checked value) {
  const auto narrowed = static_cast<float>(value.value());
  if (std::isinf(narrowed) && !std::isinf(value.value())) [[unlikely]]
    raise(failure::overflow);
  return narrowed;
}

/// f64 to f32 without a test: a value beyond the f32 range becomes an infinity.
inline float narrow_plain(Checked value) noexcept { return static_cast<float>(value.value()); }

}  // namespace orv2_geo
