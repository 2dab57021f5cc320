// Members over arrays whose neighbours in memory end the process: none is read or written.
#include <algorithm>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <vector>

#include "orv2_geo/library/catalogue.h"
#include "orv2_geo/library/object.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/guarded_array.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

// Coordinates as they come, sorted, of few values, or all the same.
std::vector<double> coordinates(Numbers& numbers, std::size_t count) {
  const std::uint64_t kind = numbers.below(4);
  std::vector<double> values(count);
  for (double& value : values) {
    value = kind == 0 ? numbers.between(-50.0, 50.0) : kind == 1 ? 3.0 : numbers.small_half();
  }
  if (numbers.below(3) == 0) std::sort(values.begin(), values.end());
  return values;
}

// Numbers of points, each once, behind an element 0.
std::vector<std::int32_t> numbering(Numbers& numbers, std::int32_t lower, std::size_t count) {
  std::vector<std::int32_t> values(count);
  std::iota(values.begin(), values.end(), lower);
  for (std::size_t i = lower == 0 ? 1 : 0; i + 1 < count; ++i) {
    std::swap(values[i], values[i + numbers.below(count - i)]);
  }
  return values;
}

// What one argument points at.
struct Variable {
  Variable(Numbers& numbers, std::int32_t points)
      : lower(numbers.below(4) == 0 ? 1 : 0),
        count(static_cast<std::size_t>(points) + (lower == 0 ? 1 : 0)),
        side(numbers.below(4) == 0 ? 1 : 0),
        f64(numbers.small_half()),
        f32(static_cast<float>(numbers.small_half())),
        i32(numbers.below(6) == 0 ? 1 : points),
        i16(static_cast<std::int16_t>(points)),
        doubles(static_cast<GuardedArray<double>::Flush>(side), lower, coordinates(numbers, count)),
        singles(static_cast<GuardedArray<float>::Flush>(side), lower, std::vector<float>(count, 1)),
        longs(static_cast<GuardedArray<std::int32_t>::Flush>(side), lower,
              numbering(numbers, lower, count)),
        shorts(static_cast<GuardedArray<std::int16_t>::Flush>(side), lower,
               std::vector<std::int16_t>(count, 1)),
        strings(lower, lower + static_cast<std::int32_t>(count) - 1) {
    for (std::size_t i = 0; i < count; ++i) {
      strings.data()[i] = Text::from_utf8(std::to_string(numbers.below(50)));
    }
  }

  Argument fitting(const ParameterDescription& parameter) {
    switch (parameter.type) {
      case Type::i16: return parameter.by_reference ? ref(i16) : Argument(i16);
      case Type::i32: return parameter.by_reference ? ref(i32) : Argument(i32);
      case Type::f32: return parameter.by_reference ? ref(f32) : Argument(f32);
      case Type::f64: return parameter.by_reference ? ref(f64) : Argument(f64);
      case Type::boolean: return ref(boolean);
      case Type::text: return ref(text);
      case Type::object: return ref(object);
      case Type::double_array: return ref(doubles.array);
      case Type::single_array: return ref(singles.array);
      case Type::long_array: return ref(longs.array);
      case Type::short_array: return ref(shorts.array);
      default: return ref(strings);
    }
  }

  std::int32_t lower;
  std::size_t count;
  std::uint64_t side;
  double f64;
  float f32;
  std::int32_t i32;
  std::int16_t i16;
  Bool boolean;
  Text text;
  ObjectRef object;
  GuardedArray<double> doubles;
  GuardedArray<float> singles;
  GuardedArray<std::int32_t> longs;
  GuardedArray<std::int16_t> shorts;
  StringArray strings;
};

// How often a member succeeds, of 40 calls with up to so many points.
int successes(const ClassDescription& of_class, std::size_t position, std::uint64_t most_points) {
  const ObjectRef object = create(of_class.registered_name);
  Numbers numbers(position);
  int count = 0;
  for (int run = 0; run < 40; ++run) {
    const auto points = static_cast<std::int32_t>(1 + numbers.below(most_points));
    std::vector<std::unique_ptr<Variable>> variables;
    std::vector<Argument> arguments;
    for (const ParameterDescription& parameter : of_class.members[position].parameters) {
      variables.push_back(std::make_unique<Variable>(numbers, points));
      arguments.push_back(variables.back()->fitting(parameter));
    }
    const std::int32_t failure =
        failure_of([&] { static_cast<Object&>(*object.get()).call(position, arguments); });
    count += failure == 0 ? 1 : 0;
  }
  return count;
}

bool takes_an_array(const MemberDescription& member) {
  return std::any_of(member.parameters.begin(), member.parameters.end(),
                     [](const ParameterDescription& one) { return is_array(one.type); });
}

TEST(GuardedArrays, NoMemberTouchesWhatLiesBesideAnArray) {
  RecordingInterface silent;
  std::set<std::string> never;
  for (const ClassDescription* one : catalogue()) {
    for (std::size_t i = 0; i < one->members.size(); ++i) {
      if (!takes_an_array(one->members[i])) continue;
      const int all = successes(*one, i, 12) + successes(*one, i, 200);
      if (all == 0) never.insert(std::string(one->name) + '.' + std::string(one->members[i].name));
    }
  }
  EXPECT_EQ(never, std::set<std::string>());
}

}  // namespace
}  // namespace orv2_geo
