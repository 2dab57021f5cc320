#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/frame/variant.h"
#include "survey_report/progress_bar.h"
#include "survey_report/progress_indicator.h"
#include "survey_report/repeats.h"

namespace survey_report {
namespace {

constexpr Stage first{{"first", "primero"}, 0.5};
constexpr Stage second{{"second", "segundo"}, 1.0};

// A terminal, and a clock that a test sets.
struct Terminal {
  double now = 100.0;
  std::string text;

  ProgressBar bar() {
    return {[this](std::string_view more) { text += more; }, [this] { return now; }};
  }

  std::string take() { return std::exchange(text, {}); }
};

TEST(ProgressBar, NothingIsShownOfAShortRun) {
  Terminal terminal;
  {
    ProgressBar bar = terminal.bar();
    bar.begin(first);
    terminal.now += 0.49;
    bar.begin(second);
    bar.reach(1.0);
  }
  EXPECT_EQ(terminal.text, "");
}

TEST(ProgressBar, ALongOneHasABarThatGoesAwayAtTheEnd) {
  Terminal terminal;
  {
    ProgressBar bar = terminal.bar();
    bar.begin(first);
    terminal.now += 0.6;
    bar.reach(0.2);
    EXPECT_EQ(terminal.take(), "\r\x1B[K[###...........................]  10 %  first");
    terminal.now += 0.05;
    bar.reach(0.5);
    EXPECT_EQ(terminal.take(), "");  // not that often
    terminal.now += 0.06;
    bar.begin(second);
    EXPECT_EQ(terminal.take(), "\r\x1B[K[###############...............]  50 %  second");
    terminal.now += 1.0;
    bar.reach(1.0);
    EXPECT_EQ(terminal.take(), "\r\x1B[K[##############################] 100 %  second");
  }
  EXPECT_EQ(terminal.take(), "\r\x1B[K");
}

// What is told of a stage that is the whole.
class Told final : public Progress {
 public:
  Told() { begin({{"all", "todo"}, 1.0}); }

  std::vector<double> parts;

 private:
  void show(double part, std::string_view) override { parts.push_back(part); }
};

TEST(ProgressIndicator, ItsValueMovesTheProgress) {
  Told told;
  const orv2_geo::ObjectRef indicator(new ProgressIndicator(told));
  indicator->set_property("Visible", orv2_geo::Variant(orv2_geo::Bool(true)));
  indicator->set_property("Min", orv2_geo::Variant(std::int16_t{10}));
  indicator->set_property("max", orv2_geo::Variant(30.0));
  indicator->set_property("Value", orv2_geo::Variant(15.0));
  indicator->set_property("VALUE", orv2_geo::Variant(std::int32_t{30}));
  EXPECT_EQ(told.parts, (std::vector<double>{0.0, 0.0, 0.25, 1.0}));
}

TEST(ProgressIndicator, WhatItHasNotIsRefused) {
  Told told;
  const orv2_geo::ObjectRef indicator(new ProgressIndicator(told));
  EXPECT_THROW(indicator->set_property("Colour", orv2_geo::Variant(1.0)), orv2_geo::RunFailure);
  EXPECT_THROW(indicator->set_property("Value", orv2_geo::Variant()), orv2_geo::RunFailure);
  EXPECT_THROW(indicator->call("Refresh", {}), orv2_geo::RunFailure);
}

TEST(ProgressIndicator, TheLibrarysRemovalMovesIt) {
  Told told;
  repeats_of({{"1", 0, 0, 0, "", 1}, {"2", 5, 5, 0, "", 2}}, 0.02, told);
  EXPECT_GT(told.parts.size(), 1U);
}

}  // namespace
}  // namespace survey_report
