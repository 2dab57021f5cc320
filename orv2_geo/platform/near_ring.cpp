#include "orv2_geo/platform/near_ring.h"

#include <cmath>
#include <cstring>

#include "orv2_geo/platform/vertex_block.h"

namespace orv2_geo::vertices {

namespace {

constexpr double furthest = 67108864.0;  // 2^26
// 2^30: with `furthest` more a coordinate still fits 32 bits.
constexpr double furthest_point = 1073741824.0;
// 3 2^51: numbers of this size have no digits after the point, so that a sum with it is
// rounded to the nearest whole number, ties to the even one.
constexpr double rounding = 6755399441055744.0;

constexpr std::uint64_t sign = std::uint64_t{1} << 63U;
constexpr std::uint64_t yes = ~std::uint64_t{0};

// Which edges of a group count. From its middle on all; from n places before it all but the first
// n, which the group before has counted.
constexpr std::uint64_t masks[] = {0, 0, 0, yes, yes, yes, yes};
constexpr const std::uint64_t* all_edges = masks + 3;

// Vertices that are walked at a time. Groups are handed over by reference: by value, a caller built
// for any processor and a function built for one of them would look for them in different places.
struct Pairs {
  static constexpr std::size_t width = 2;
  using Doubles = NumberPair;
  using Bits = PairBits;

  // The starts of edges that end in a group.
  [[gnu::always_inline]] static void join(Doubles& starts, const Doubles& before,
                                          const Doubles& group) noexcept {
    starts = __builtin_shufflevector(before, group, 1, 2);
  }
};
struct Fours {
  static constexpr std::size_t width = 4;
  using Doubles [[gnu::vector_size(32)]] = double;
  using Bits [[gnu::vector_size(32)]] = std::uint64_t;

  [[gnu::always_inline]] static void join(Doubles& starts, const Doubles& before,
                                          const Doubles& group) noexcept {
    starts = __builtin_shufflevector(before, group, 3, 4, 5, 6);
  }
};

// A ring seen from a point.
template <class Group>
class Walk {
 public:
  // Around (x, y), from the vertex before the first.
  [[gnu::always_inline]] Walk(double x, double y, double x_before, double y_before) noexcept
      : column_(Doubles{} + (scale * x + rounding)),
        row_(Doubles{} + (scale * y + rounding)),
        x_(scale * x_before + rounding - column_),
        y_(scale * y_before + rounding - row_) {}

  // To the next group, by the edges that end in its vertices.
  [[gnu::always_inline]] void go_on(const double* xs, const double* ys,
                                    const std::uint64_t* counted) noexcept {
    Doubles ax = x_;
    Doubles ay = y_;
    std::memcpy(&x_, xs, sizeof x_);
    std::memcpy(&y_, ys, sizeof y_);
    x_ = scale * x_ + rounding - column_;
    y_ = scale * y_ + rounding - row_;
    Group::join(ax, ax, x_);
    Group::join(ay, ay, y_);
    add_edges(ax, ay, counted);
    const auto x_size = __builtin_bit_cast(Doubles, __builtin_bit_cast(Bits, x_) & ~sign);
    const auto y_size = __builtin_bit_cast(Doubles, __builtin_bit_cast(Bits, y_) & ~sign);
    near_ &= __builtin_bit_cast(Bits, x_size + y_size < furthest);
  }

  [[gnu::always_inline]] Place place() const noexcept {
    const Bits all_near = near_;
    const Bits windings = winding_;
    std::uint64_t near = yes;
    std::uint64_t winding = 0;
    for (std::size_t i = 0; i < Group::width; ++i) {
      near &= all_near[i];
      winding += windings[i];
    }
    if (near == 0) return Place::unknown;
    return winding != 0 ? Place::inside : Place::outside;
  }

 private:
  using Doubles = typename Group::Doubles;
  using Bits = typename Group::Bits;

  // Of edges from (ax, ay) to where the walk is, what winding_of_edge tells of the point (0, 0): of
  // a rising one 1 where the cross product is positive, of a falling one -1 where it is negative.
  [[gnu::always_inline]] void add_edges(const Doubles& ax, const Doubles& ay,
                                        const std::uint64_t* counted) noexcept {
    Bits which;
    std::memcpy(&which, counted, sizeof which);
    const auto a_above = __builtin_bit_cast(Bits, ay > 0.0);
    const auto b_above = __builtin_bit_cast(Bits, y_ > 0.0);
    const auto cross = __builtin_bit_cast(Bits, ax * y_ - x_ * ay);
    const auto ahead = __builtin_bit_cast(Doubles, cross ^ (~b_above & sign));
    // A mask that is true is -1.
    winding_ += (a_above - b_above) & __builtin_bit_cast(Bits, ahead > 0.0) & which;
  }

  Doubles column_;
  Doubles row_;
  Doubles x_;
  Doubles y_;
  Bits near_ = ~Bits{};
  Bits winding_ = {};
};

bool near_zero(double x, double y) noexcept {
  return std::abs(scale * x) < furthest_point && std::abs(scale * y) < furthest_point;
}

// Of a group of vertices or more.
template <class Group>
[[gnu::always_inline]] inline Place walk(const double* xs, const double* ys, std::size_t count,
                                         double x, double y) noexcept {
  if (!near_zero(x, y)) return Place::unknown;
  Walk<Group> ring(x, y, xs[count - 1], ys[count - 1]);
  std::size_t i = 0;
  for (; i + Group::width <= count; i += Group::width) ring.go_on(xs + i, ys + i, all_edges);
  if (i < count) {  // the last group again takes some of the one before
    const std::size_t first = count - Group::width;
    ring.go_on(xs + first, ys + first, all_edges - (i - first));
  }
  return ring.place();
}

// mingw keeps a stack at multiples of 16 bytes, which is not enough for a group of four.
#if defined(__x86_64__) && !defined(_WIN32)
[[gnu::target("avx2")]] Place walk_in_fours(const double* xs, const double* ys, std::size_t count,
                                            double x, double y) noexcept {
  return walk<Fours>(xs, ys, count, x, y);
}
bool has_fours() noexcept { return __builtin_cpu_supports("avx2") != 0; }
#else
constexpr auto walk_in_fours = place_in_pairs;
bool has_fours() noexcept { return false; }
#endif

}  // namespace

Place place_near(const double* xs, const double* ys, std::size_t count, double x,
                 double y) noexcept {
  return count >= Fours::width && has_fours() ? walk_in_fours(xs, ys, count, x, y)
                                              : place_in_pairs(xs, ys, count, x, y);
}

Place place_in_pairs(const double* xs, const double* ys, std::size_t count, double x,
                     double y) noexcept {
  return walk<Pairs>(xs, ys, count, x, y);
}

}  // namespace orv2_geo::vertices
