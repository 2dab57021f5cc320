#include "orv2_geo/frame/run_failure.h"

#include <new>
#include <stdexcept>
#include <string>

#include "orv2_geo/frame/treatments.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

TEST(RunFailure, EveryNumberThatCanLeaveHasWords) {
  for (const std::int32_t number : {3, 5, 6, 7, 9, 10, 11, 13, 91, 429, 438, 440, 449, 450}) {
    EXPECT_NE(failure::description_of(number), "") << number;
    EXPECT_EQ(RunFailure(number).description(), failure::description_of(number));
  }
  EXPECT_EQ(failure::description_of(6), "Desbordamiento");
  EXPECT_EQ(failure::description_of(11), "División por cero");
  EXPECT_EQ(failure::description_of(12345), "");
}

TEST(RunFailure, TheInnermostSourceStays) {
  RunFailure failure(6);
  EXPECT_EQ(failure.source(), "");
  failure.sign("Orv2_Geo.cgeo_Algorismos");
  failure.sign("Orv2_Geo.cgeo_Matrices");
  EXPECT_EQ(failure.source(), "Orv2_Geo.cgeo_Algorismos");
}

TEST(RunFailure, AHostsOwnKeepsItsWords) {
  RunFailure failure(-2147352567, "la superficie falla", "Host.Superficie");
  failure.sign("Orv2_Geo.cgeo_Algorismos");
  EXPECT_EQ(failure.number(), -2147352567);
  EXPECT_STREQ(failure.what(), "la superficie falla");
  EXPECT_EQ(failure.source(), "Host.Superficie");
}

TEST(RunFailure, WithoutMemoryForWordsTheNumberStays) {
  const RefusedAllocation refused(0);
  const RunFailure failure(440, "una descripción bastante larga", "una fuente bastante larga");
  EXPECT_EQ(failure.number(), 440);
  EXPECT_EQ(failure.description(), failure::description_of(440));
}

template <class Thrown>
RunFailure left(const Thrown& thrown) {
  try {
    try {
      throw thrown;
    } catch (...) {
      leave_signed("Orv2_Geo.cgeo_api");
    }
  } catch (const RunFailure& failure) {
    return failure;
  }
}

TEST(RunFailure, NothingElseLeavesARoutine) {
  EXPECT_EQ(left(std::bad_alloc()).number(), 7);
  EXPECT_EQ(left(std::length_error("too long")).number(), 7);
  EXPECT_EQ(left(std::runtime_error("roto")).number(), 440);
  EXPECT_EQ(left(std::runtime_error("roto")).description(), "roto");
  EXPECT_EQ(left(42).number(), 440);
  EXPECT_EQ(left(RunFailure(9)).number(), 9);
  EXPECT_EQ(left(RunFailure(9)).source(), "Orv2_Geo.cgeo_api");
}

TEST(Treatments, ASkippedStatementChangesNothingAndTheNextRuns) {
  double a = 1.0;
  double b = 1.0;
  skip_on_failure([&] { a = (raise(11), 2.0); });
  skip_on_failure([&] { b = 2.0; });
  EXPECT_EQ(a, 1.0);
  EXPECT_EQ(b, 2.0);
}

// A C++ host may throw one of its own from an object of its own.
TEST(RunFailure, OneDerivedFromItLeavesAsItIs) {
  struct Broken final : RunFailure {
    Broken() : RunFailure(1234) {}
  };
  const auto leaving = [] {
    try {
      throw Broken();
    } catch (...) {
      leave_signed("Orv2_Geo.Testing");
    }
  };
  try {
    leaving();
    FAIL();
  } catch (const Broken& failure) {
    EXPECT_EQ(failure.source(), "Orv2_Geo.Testing");
  }
}

TEST(Treatments, AHandlerSeesTheFailureAndMayRaiseItsOwn) {
  std::int32_t seen = 0;
  const std::int32_t out = failure_of([&] {
    handled(
        "Orv2_Geo.cgeo_Algorismos", [] { raise(11); },
        [&](const RunFailure& failure) {
          seen = failure.number();
          raise(3);
        });
  });
  EXPECT_EQ(seen, 11);
  EXPECT_EQ(out, 3);
}

TEST(Treatments, AHandlersAnswerStandsForTheStatements) {
  EXPECT_EQ(handled(
                "", [] { return 4; }, [](const RunFailure&) { return 0; }),
            4);
  EXPECT_EQ(handled(
                "", []() -> int { throw std::bad_alloc(); },
                [](const RunFailure& failure) { return failure.number(); }),
            7);
}

}  // namespace
}  // namespace orv2_geo
