// The sweep's three ways tell a sink the same, in the same order.
#include "orv2_geo/repeated/sweep.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "tests/repeated/engine_fixture.h"

namespace orv2_geo {
namespace {

using repeated::Progress;
using repeated::Sweep;
using repeated::XOrder;

// ---- What is told ----------------------------------------------------------

struct Told {
  enum What { first, opened, joined, placed } what;
  std::int32_t point;
  std::int32_t place = 0;  // of placed
  friend bool operator==(const Told&, const Told&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Told& one) {
    const char* const names[] = {"first ", "opened ", "joined ", "placed "};
    return out << names[one.what] << one.point << " at " << one.place;
  }
};

struct Account {
  std::vector<Told> told;
  std::int32_t clusters = 0;
  std::int32_t failure = 0;
  friend bool operator==(const Account&, const Account&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Account& account) {
    for (const Told& one : account.told) out << one << ", ";
    return out << account.clusters << " clusters, failure " << account.failure;
  }
};

// Writes down all that it is told.
template <std::size_t axes_of_box, bool reads_Z_of_points>
class Listener : public repeated::ClusterSink {
 public:
  static constexpr std::size_t axes = axes_of_box;
  static constexpr bool reads_Z = reads_Z_of_points;

  explicit Listener(Account& account) : account_(&account) {}

  template <class Points>
  void first(std::int32_t p, const Points&) {
    hear({Told::first, p}), ++found_;
  }
  template <class Points>
  void opened(std::int32_t p, const Points&) {
    open(p);
  }
  template <class Points>
  void joined(std::int32_t p, const Points&) {
    hear({Told::joined, p});
  }
  void placed(std::int32_t i, std::int32_t p) { hear({Told::placed, p, i}); }
  template <class PointAt>
  void opened_each(std::size_t from, std::size_t to, PointAt point_at) {
    for (std::size_t k = from; k < to; ++k) {
      open(point_at(k));
      placed(static_cast<std::int32_t>(k + 1), point_at(k));
    }
  }
  std::int32_t found() const { return found_; }

 private:
  void hear(const Told& one) { account_->told.push_back(one); }
  void open(std::int32_t p) { hear({Told::opened, p}), ++found_; }

  Account* account_;
  std::int32_t found_ = 0;
};

// ---- The ways --------------------------------------------------------------

struct Call {
  const PointList& list;
  double tolerance;
  repeated::Coordinates at() const { return {list.X, list.Y, list.Z}; }
};

template <class Run>
Account account_of(const Call& call, Run run) {
  const Indicator indicator;
  const Progress progress(call.list.nPtos, indicator.reference);
  Account account;
  account.failure = failure_of([&] { account.clusters = run(progress, account); });
  return account;
}

// The quickest there is; tells whether it went over words.
template <class Listener>
Account quickest(const Call& call, bool& over_words) {
  XOrder order(call.list.X, call.list.nPtos);
  Sweep<Listener::reads_Z> sweep(call.list.nPtos, call.at(), order, call.tolerance);
  over_words = sweep.cannot_fail();
  return account_of(call, [&](const Progress& progress, Account& account) {
    return sweep.run(progress, Listener(account));
  });
}

template <class Listener, class Points>
Account point_by_point(const Call& call, const Points& points) {
  return account_of(call, [&](const Progress& progress, Account& account) {
    return repeated::sweep_points(call.list.nPtos, points, call.tolerance, progress,
                                  Listener(account));
  });
}

LongArray order_of(const Call& call) {
  XOrder order(call.list.X, call.list.nPtos);
  order.put_in_order();
  return order.numbers();
}

// In plain steps; nothing is read that the box of `axes` does not compare.
Account restated_sweep(const Call& call, const LongArray& order, std::size_t axes) {
  Account account;
  restated::Doubles at[] = {restated::row_of(call.list.X), restated::row_of(call.list.Y),
                            restated::row_of(call.list.Z)};
  std::int32_t found = 0;
  try {
    std::int32_t anchor = order(1);
    account.told.push_back({Told::first, anchor});
    ++found;
    for (std::size_t axis = 0; axis < axes; ++axis) (void)at[axis](anchor);
    for (std::int32_t i = 2; i <= call.list.nPtos; ++i) {
      const std::int32_t p = order(i);
      std::vector<double> corner;
      std::vector<restated::Doubles*> read;
      for (std::size_t axis = 0; axis < axes; ++axis) {
        corner.push_back(at[axis](anchor));
        read.push_back(&at[axis]);
      }
      const bool inside = restated::in_box(corner, call.tolerance, read, p);
      account.told.push_back({inside ? Told::joined : Told::opened, p});
      account.told.push_back({Told::placed, p, i});
      if (inside) continue;
      anchor = p;
      ++found;
    }
    account.clusters = found;
  } catch (const restated::Stopped& stopped) {
    account.failure = stopped.number;
  }
  return account;
}

// Answers whether the quickest way was over words.
template <class Listener>
bool expect_same(const Call& call) {
  const LongArray order = order_of(call);
  const Account expected = restated_sweep(call, order, Listener::axes);
  const repeated::CheckedPoints checked(call.at(), order);
  EXPECT_EQ(point_by_point<Listener>(call, checked), expected) << "checked";
  const auto known =
      repeated::KnownPointsInOrder<Listener::reads_Z>::of(call.at(), order, call.list.nPtos);
  if (known) {
    EXPECT_EQ(point_by_point<Listener>(call, *known), expected) << "known";
  }
  bool over_words = false;
  EXPECT_EQ(quickest<Listener>(call, over_words), expected) << "the quickest";
  EXPECT_TRUE(known || !over_words);
  return over_words;
}

using InPlan = Listener<2, false>;
using InPlanWithZ = Listener<2, true>;
using InSpace = Listener<3, true>;

int expect_same_for_all(const Call& call) {
  return expect_same<InPlan>(call) + expect_same<InPlanWithZ>(call) + expect_same<InSpace>(call);
}

// ---- Tests -----------------------------------------------------------------

TEST(Sweep, TellsOfClustersInXOrder) {
  const PointList list({{5, 0, 0}, {0.25, 0, 9}, {0, 0, 0}, {0.25, 3, 0}});
  const std::vector<Told> plan = {{Told::first, 3},    {Told::joined, 2},    {Told::placed, 2, 2},
                                  {Told::opened, 4},   {Told::placed, 4, 3}, {Told::opened, 1},
                                  {Told::placed, 1, 4}};
  std::vector<Told> space = plan;
  space[1] = {Told::opened, 2};
  const Call call = {list, 0.5};
  bool over_words = false;
  EXPECT_EQ(quickest<InPlan>(call, over_words), (Account{plan, 3, 0}));
  EXPECT_TRUE(over_words);
  EXPECT_EQ(quickest<InSpace>(call, over_words), (Account{space, 4, 0}));
  EXPECT_TRUE(over_words);
  EXPECT_EQ(expect_same_for_all(call), 3);
}

struct WayRow {
  const char* rule;
  std::function<void(PointList&)> change;
  double tolerance;
  int over_words;  // of the three listeners
};

TEST(Sweep, GoesOverWordsWhereNothingCanFail) {
  const WayRow table[] = {
      {"a survey", [](PointList&) {}, 0.5, 3},
      {"a tolerance of nothing", [](PointList&) {}, -1.0, 3},
      {"X beside the span of words", [](PointList& list) { list.X(2) = 1e12; }, 0.5, 0},
      {"a Y that is not tame", [](PointList& list) { list.Y(2) = 1e301; }, 0.5, 0},
      {"a Y that is NaN", [](PointList& list) { list.Y(2) = nan; }, 0.5, 0},
      {"a Z that is not tame", [](PointList& list) { list.Z(2) = -1e301; }, 0.5, 1},
      {"a Z that is NaN", [](PointList& list) { list.Z(2) = nan; }, 0.5, 1},
      {"no Z at all", [](PointList& list) { list.Z.release(); }, 0.5, 1},
      {"a Y too short", [](PointList& list) { list.Y.size_keeping(0, 3); }, 0.5, 0},
      {"a tolerance that is not tame", [](PointList&) {}, 1e301, 0},
  };
  for (const WayRow& row : table) {
    PointList list({{5, 0, 0}, {0.25, 0, 9}, {0, 0, 0}, {0.25, 3, 0}});
    row.change(list);
    EXPECT_EQ(expect_same_for_all({list, row.tolerance}), row.over_words) << row.rule;
  }
}

TEST(Sweep, AnyPointsAreToldOfTheSameWayByAll) {
  Numbers numbers(110);
  const double tolerances[] = {0.0002, 0.5, 1.0, 0.003, -0.5, 1e-12};
  int over_words = 0;
  for (int round = 0; round < 1500; ++round) {
    const std::size_t count = 1 + numbers.below(round % 50 == 0 ? 2500 : 60);
    const double units[] = {0.0002, 0.5, 1.0};
    const PointList list(any_points(numbers, count, units[numbers.below(3)]));
    over_words += expect_same_for_all({list, tolerances[numbers.below(6)]});
    if (HasFailure()) FAIL() << "round " << round;
  }
  EXPECT_GT(over_words, 3000);
}

TEST(Sweep, WhatCannotBeComparedStopsAllAtOnePoint) {
  Numbers numbers(111);
  const double odd[] = {nan, inf, -inf, 1.7e308, -1.7e308};
  int stopped = 0;
  for (int round = 0; round < 1500; ++round) {
    PointList list(any_points(numbers, 1 + numbers.below(30), 0.5));
    const auto point = 1 + static_cast<std::int32_t>(numbers.below(list.nPtos));
    DoubleArray* const axes[] = {&list.Y, &list.Z};
    DoubleArray& axis = *axes[numbers.below(2)];
    if (numbers.below(3) == 0) {
      axis.size_keeping(0, point - 1);
    } else {
      axis(point) = odd[numbers.below(5)];
    }
    const Call call = {list, numbers.below(3) == 0 ? 1.7e308 : 0.5};
    expect_same_for_all(call);
    if (HasFailure()) FAIL() << "round " << round;
    stopped += restated_sweep(call, order_of(call), 3).failure != 0;
  }
  EXPECT_GT(stopped, 500);
}

TEST(Sweep, CannotFailWhereItGoesOverWords) {
  const PointList list({{5, 0, 0}, {0.25, 0, 9}, {0, 0, 0}, {0.25, 3, 0}});
  const Call call = {list, 0.5};
  XOrder order(list.X, list.nPtos);
  EXPECT_TRUE(Sweep<false>(list.nPtos, call.at(), order, 0.5).cannot_fail());
  XOrder again(list.X, list.nPtos);
  EXPECT_FALSE(Sweep<false>(list.nPtos, call.at(), again, 1e301).cannot_fail());
}

}  // namespace
}  // namespace orv2_geo
