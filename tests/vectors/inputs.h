// inputs.h: arguments that make members do real work and reach their branches and failures.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tests/vectors/values.h"

namespace orv2_geo::vectors {

struct Parameter {
  std::string name;
  Kind kind = Kind::none;
  bool by_reference = false;
  bool optional = false;
  std::int32_t default_value = 0;
};

struct Member {
  std::string name;
  std::vector<Parameter> parameters;
  bool elementary = false;
  bool on_profiles = false;  // its class works on profiles, whose distances ascend
};

/// Numbers by chance, the same on every run.
class Chance {
 public:
  explicit Chance(std::uint64_t seed) : state_(seed) {}

  std::uint64_t bits();
  std::int32_t between(std::int32_t low, std::int32_t high);
  double real_between(double low, double high);
  bool in(int percent) { return between(0, 99) < percent; }

  template <class T, std::size_t n>
  T one_of(const T (&choices)[n]) {
    return choices[between(0, static_cast<std::int32_t>(n) - 1)];
  }

 private:
  std::uint64_t state_;
};

/// The arguments of a call.
std::vector<Given> arguments_for(const Member& member, Chance& chance);

}  // namespace orv2_geo::vectors
