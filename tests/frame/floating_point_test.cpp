// The host's floating-point settings: put aside for a call, and there again afterwards.
#include "orv2_geo/frame/floating_point.h"

#include <gtest/gtest.h>

#include <limits>

#include "orv2_geo/frame/floating_point_guard.h"
#include "tests/support/floating_point.h"

namespace orv2_geo {
namespace {

using testing::odd_units;
using testing::OddUnits;
using testing::Units;
using testing::units;
using testing::WithUnits;

volatile double one = 1.0, three = 3.0, least = std::numeric_limits<double>::min(), zero = 0.0;

// A third to nearest, half the least normal number, no trap where it divides by zero.
bool computes_as_usual() {
  const volatile double third = one / three, small = least / 2.0, infinite = one / zero;
  return third == 0x1.5555555555555p-2 && -third == -one / three && small * 2.0 == least &&
         infinite == std::numeric_limits<double>::infinity();
}

// Runs `compute` in those settings and answers with the settings that it leaves.
template <class Compute>
Units left_by(const OddUnits& odd, Compute&& compute) {
  const WithUnits of_host(odd.units);
  compute();
  return units();
}

TEST(FloatingPoint, AScopeComputesAsUsualAndLeavesTheHostsSettings) {
  for (const OddUnits& odd : odd_units()) {
    bool usual = false;
    const Units left = left_by(odd, [&] {
      const UsualFloatingPoint scope;
      usual = computes_as_usual();
    });
    EXPECT_TRUE(usual) << odd.name;
    EXPECT_EQ(left, odd.units) << odd.name;
  }
}

TEST(FloatingPoint, AScopeInAScopeEndsWithItsOwn) {
  for (const OddUnits& odd : odd_units()) {
    bool usual = false;
    const Units left = left_by(odd, [&] {
      const UsualFloatingPoint outer;
      {
        const UsualFloatingPoint inner;
        usual = computes_as_usual();
      }
      usual = computes_as_usual() && usual;
    });
    EXPECT_TRUE(usual) << odd.name;
    EXPECT_EQ(left, odd.units) << odd.name;
  }
}

TEST(FloatingPoint, TheHostsCodeFindsItsSettings) {
  for (const OddUnits& odd : odd_units()) {
    bool usual = false;
    Units found;
    const Units left = left_by(odd, [&] {
      const UsualFloatingPoint scope;
      usual = computes_as_usual();
      in_settings_of_host([&] { found = units(); });
      usual = computes_as_usual() && usual;
    });
    EXPECT_TRUE(usual) << odd.name;
    EXPECT_EQ(found, odd.units) << odd.name;
    EXPECT_EQ(left, odd.units) << odd.name;
  }
}

TEST(FloatingPoint, TheHostsCodeFindsItsSettingsFromAScopeInAScope) {
  for (const OddUnits& odd : odd_units()) {
    bool usual = false;
    Units found;
    const Units left = left_by(odd, [&] {
      const UsualFloatingPoint outer;
      {
        const UsualFloatingPoint inner;
        in_settings_of_host([&] { found = units(); });
        usual = computes_as_usual();
      }
      usual = computes_as_usual() && usual;
    });
    EXPECT_TRUE(usual) << odd.name;
    EXPECT_EQ(found, odd.units) << odd.name;
    EXPECT_EQ(left, odd.units) << odd.name;
  }
}

TEST(FloatingPoint, WhatTheHostsCodeSetsIsWhatTheHostFinds) {
  for (const OddUnits& before : odd_units()) {
    for (const OddUnits& after : odd_units()) {
      bool usual = false;
      const Units left = left_by(before, [&] {
        const UsualFloatingPoint scope;
        in_settings_of_host([&] { testing::set_units(after.units); });
        usual = computes_as_usual();
      });
      EXPECT_TRUE(usual) << before.name << ", " << after.name;
      EXPECT_EQ(left, after.units) << before.name << ", " << after.name;
    }
  }
}

TEST(FloatingPoint, TheHostsCodeMayCallTheLibraryAgain) {
  for (const OddUnits& odd : odd_units()) {
    bool usual = false;
    Units found;
    const Units left = left_by(odd, [&] {
      const UsualFloatingPoint scope;
      in_settings_of_host([&] {
        const UsualFloatingPoint again;
        in_settings_of_host([&] { found = units(); });
        usual = computes_as_usual();
      });
    });
    EXPECT_TRUE(usual) << odd.name;
    EXPECT_EQ(found, odd.units) << odd.name;
    EXPECT_EQ(left, odd.units) << odd.name;
  }
}

TEST(FloatingPoint, AFailureOnItsWayOutLeavesTheHostsSettings) {
  for (const OddUnits& odd : odd_units()) {
    const Units left = left_by(odd, [&] {
      try {
        const UsualFloatingPoint scope;
        in_settings_of_host([&] { throw 1; });
      } catch (int) {
      }
    });
    EXPECT_EQ(left, odd.units) << odd.name;
  }
}

TEST(FloatingPoint, WithoutAScopeTheHostsCodeRunsAsItIs) {
  for (const OddUnits& odd : odd_units()) {
    Units found;
    const Units left = left_by(odd, [&] { in_settings_of_host([&] { found = units(); }); });
    EXPECT_EQ(found, odd.units) << odd.name;
    EXPECT_EQ(left, odd.units) << odd.name;
  }
}

}  // namespace
}  // namespace orv2_geo
