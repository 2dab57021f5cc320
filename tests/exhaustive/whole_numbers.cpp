// Every number of 16 bits where a member takes one, and every pattern of a flag.
#include <algorithm>
#include <array>
#include <limits>
#include <string_view>
#include <vector>

#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "orv2_geo/arrays/cgeo_Matrices.h"
#include "orv2_geo/library/catalogue.h"
#include "orv2_geo/library/object.h"
#include "orv2_geo/survey/cgeo_api.h"
#include "tests/exhaustive/check.h"
#include "tests/exhaustive/outcome.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/arrays.h"
#include "tests/support/preamble.h"

namespace orv2_geo::exhaustive {
namespace {

constexpr std::uint64_t whole_numbers = 65536;
constexpr std::int32_t lowest = std::numeric_limits<std::int16_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int16_t>::max();

/// The number-th of them, from the lowest on.
std::int16_t nth(std::uint64_t number) {
  return static_cast<std::int16_t>(static_cast<std::int32_t>(number) + lowest);
}

bool is_number(const ParameterDescription& parameter) {
  return parameter.type == Type::f32 || parameter.type == Type::f64 ||
         parameter.type == Type::i32 || parameter.type == Type::i16;
}

// ---- In the place of another number ----------------------------------------

/// A member of the catalogue that takes so many numbers and nothing else.
struct Called {
  const ClassDescription* of_class;
  std::size_t position;
  const MemberDescription& member() const { return of_class->members[position]; }
};

std::vector<Called> members_of_numbers(std::size_t count) {
  std::vector<Called> all;
  for (const ClassDescription* of_class : catalogue()) {
    for (std::size_t m = 0; m < of_class->members.size(); ++m) {
      const MemberDescription& member = of_class->members[m];
      const auto& parameters = member.parameters;
      if (member.kind == MemberKind::method && parameters.size() == count &&
          std::all_of(parameters.begin(), parameters.end(), is_number)) {
        all.push_back({of_class, m});
      }
    }
  }
  return all;
}

/// The number as a parameter has it, by value.
Argument converted(const ParameterDescription& parameter, std::int16_t number) {
  switch (parameter.type) {
    case Type::f32: return static_cast<float>(number);
    case Type::f64: return static_cast<double>(number);
    case Type::i32: return std::int32_t{number};
    default: return number;
  }
}

Outcome outcome_of_call(Object& object, std::size_t position, std::span<const Argument> given) {
  return outcome_of([&] {
    const Variant answer = object.call(position, given);
    if (const auto* single = answer.get<float>()) return static_cast<double>(*single);
    const auto* number = answer.get<double>();
    return number != nullptr ? *number : -1.0e-99;
  });
}

// What the member does with the number in 16 bits is what it does with the number in the
// parameter's own type; a variable of another type is refused where the parameter is one.
class Converting {
 public:
  explicit Converting(const Called& called)
      : called_(called), object_(new Object(*called.of_class)), held_(object_) {}

  template <class... Numbers16>
  void compare(Tally& tally, Numbers16... numbers) {
    const auto& parameters = called_.member().parameters;
    std::size_t place = 0;
    const Argument own[] = {converted(parameters[place++], numbers)...};
    const Argument by_value[] = {numbers...};
    std::array variables{numbers...};
    std::array<Argument, sizeof...(numbers)> by_reference;
    for (std::size_t i = 0; i < variables.size(); ++i) by_reference[i] = ref(variables[i]);
    const Outcome expected = outcome_of_call(*object_, called_.position, own);
    const auto expect = [&](const Outcome& got, const Outcome& wanted) {
      tally.expect(got == wanted, [&](std::ostream& out) {
        out << called_.member().name;
        ((out << ' ' << numbers), ...);
        out << ": " << got << ", expected " << wanted;
      });
    };
    const bool refused = std::any_of(parameters.begin(), parameters.end(),
                                     [](const auto& one) { return one.by_reference; });
    expect(outcome_of_call(*object_, called_.position, by_value), expected);
    expect(outcome_of_call(*object_, called_.position, by_reference),
           refused ? failed(failure::type_mismatch) : expected);
  }

 private:
  const Called& called_;
  Object* object_;
  ObjectRef held_;
};

void every_whole_number(std::uint64_t first, std::uint64_t end, Tally& tally) {
  static const std::vector<Called> members = members_of_numbers(1);
  tally.expect(members.size() == 13, [](std::ostream& out) {
    out << members.size() << " members of one number: each of them needs a check";
  });
  for (const Called& called : members) {
    Converting converting(called);
    for (std::uint64_t number = first; number < end; ++number) {
      converting.compare(tally, nth(number));
    }
  }
}

constexpr std::int16_t of_interest[] = {-32768, -32767, -400, -181, -2,  -1, 0,    1,
                                        2,      100,    181,  182,  400, 46, 32767};

void every_pair(std::uint64_t first, std::uint64_t end, Tally& tally) {
  static const std::vector<Called> members = members_of_numbers(2);
  tally.expect(members.size() == 2, [](std::ostream& out) {
    out << members.size() << " members of two numbers: each of them needs a check";
  });
  for (const Called& called : members) {
    Converting converting(called);
    for (std::uint64_t number = first; number < end; ++number) {
      for (const std::int16_t other : of_interest) {
        converting.compare(tally, nth(number), other);
        converting.compare(tally, other, nth(number));
      }
    }
  }
}

// ---- Where a point lies ----------------------------------------------------

// Loc becomes -1 without a region; else, and in the retired members, it stays.
void every_place(std::uint64_t first, std::uint64_t end, Tally& tally) {
  const RecordingInterface screen;
  const DoubleArray x = doubles(1, {0, 2, 2, 0, 0}), y = doubles(1, {0, 0, 2, 2, 0});
  const SingleArray none;
  const auto expect = [&](const char* what, bool same, std::int16_t before, std::int16_t Loc) {
    tally.expect(same, [&](std::ostream& out) {
      out << what << " with Loc " << before << " leaves " << Loc;
    });
  };
  for (std::uint64_t number = first; number < end; ++number) {
    const std::int16_t before = nth(number);
    for (const std::int32_t vertices : {1, 2, 5}) {
      std::int16_t Loc = before;
      const bool inside = cgeo_api().Pto_in_Poligono(x, y, vertices, 1.0, 1.0, Loc);
      expect("Pto_in_Poligono", inside == (vertices == 5) && Loc == (inside ? before : -1), before,
             Loc);
    }
    std::int16_t Loc = before;
    const bool of_doubles = plane_tests::algorithms.Pto_en_Poligono_d(x, y, 5, 1.0, 1.0, Loc);
    expect("Pto_en_Poligono_d", !of_doubles && Loc == before, before, Loc);
    const bool of_singles = plane_tests::algorithms.Pto_en_Poligono(none, none, 5, 1.0F, 1.0F, Loc);
    expect("Pto_en_Poligono", !of_singles && Loc == before, before, Loc);
  }
  tally.expect(screen.boxes.size() == 2 * (end - first), [&](std::ostream& out) {
    out << screen.boxes.size() << " boxes of the retired members";
  });
}

// ---- Flags -----------------------------------------------------------------

// The extremes are shown for exactly true alone, whatever else counts as true.
void every_showing(std::uint64_t first, std::uint64_t end, Tally& tally) {
  RecordingInterface screen;
  int shown = 0;
  screen.user = [&](Form&) { ++shown; };
  const DoubleArray x = doubles(1, {4, 9}), y = doubles(1, {1, 3}), z = doubles(1, {8, 7});
  for (std::uint64_t number = first; number < end; ++number) {
    const std::int16_t flag = nth(number);
    for (const auto member : {&cgeo_Matrices::MaxMin_3Matriz, &cgeo_Matrices::MaxMin_3Matriz1}) {
      double all[6] = {};
      shown = 0;
      (cgeo_Matrices().*member)(x, y, z, all[0], all[1], all[2], all[3], all[4], all[5],
                                Bool::raw(flag));
      const bool extremes =
          all[0] == 9 && all[1] == 4 && all[2] == 3 && all[3] == 1 && all[4] == 8 && all[5] == 7;
      tally.expect(extremes && shown == (flag == -1 ? 1 : 0), [&](std::ostream& out) {
        out << "Ver " << flag << " shows the extremes " << shown << " times";
      });
    }
  }
}

// ---- Counted in 16 bits ----------------------------------------------------

// One point in each of three is left out; the count that no longer fits fails at the end.
void every_count(std::uint64_t first, std::uint64_t end, Tally& tally) {
  for (std::uint64_t number = first; number < end; ++number) {
    const std::int32_t given = nth(number);
    const std::int32_t upper = std::max(given, 0);
    DoubleArray X(0, upper), Y(0, upper), Z(0, upper);
    LongArray Indice(0, upper);
    for (std::int32_t i = 1; i <= upper; ++i) {
      X(i) = i, Y(i) = -i, Z(i) = i % 3, Indice(i) = i;
    }
    std::int32_t points = given;
    const std::int32_t failure = failure_of([&] {
      cgeo_Matrices().Quita_Puntos_fuera_interv_de_Cotas_con_indice(points, X, Y, Z, Indice, 1.0,
                                                                    0.0);
    });
    const std::int32_t left = upper - (upper + 1) / 3;
    bool same = failure == (given == highest ? 6 : 0);
    same = same && points == (failure == 0 ? left : given);
    same = same && X.upper() == (failure == 0 ? left : upper);
    std::int32_t kept = 0;
    for (std::int32_t i = 1; i <= upper; ++i) {
      if (i % 3 == 2) continue;
      ++kept;
      same = same && X(kept) == i && Y(kept) == -i && Z(kept) == i % 3 && Indice(kept) == i;
    }
    tally.expect(same, [&](std::ostream& out) {
      out << given << " points: failure " << failure << ", " << points << " left";
    });
  }
}

}  // namespace

std::vector<Check> checks_of_whole_numbers() {
  return {
      {"i16_numbers", "an i16 for the number of each member that takes one", whole_numbers, 256, 67,
       1, every_whole_number},
      {"i16_pairs", "an i16 and one of interest for the members that take two", whole_numbers, 256,
       131, 1, every_pair},
      {"i16_loc", "Loc of the three members that ask where a point lies", whole_numbers, 256, 5, 1,
       every_place},
      {"i16_ver", "Ver of the two members that show extremes", whole_numbers, 256, 5, 1,
       every_showing},
      {"i16_counts", "a count of points that is kept in 16 bits", whole_numbers, 64, 293, 1,
       every_count},
  };
}

}  // namespace orv2_geo::exhaustive
