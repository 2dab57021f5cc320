#include "orv2_geo/frame/late_bound.h"

#include <string>
#include <vector>

#include "orv2_geo/frame/progress_sink.h"
#include "orv2_geo/frame/variant.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

// Writes down the properties set on it; fails at the n-th.
class Indicator final : public LateBound {
 public:
  explicit Indicator(std::size_t good = 100) : good_(good) {}
  Variant call(std::string_view, std::span<const Argument>) override { raise(438); }
  void set_property(std::string_view name, const Variant& value) override {
    if (set.size() == good_) raise(1234);
    set.emplace_back(name, value);
  }
  std::vector<std::pair<std::string, Variant>> set;

 private:
  std::size_t good_;
};

TEST(ProgressSink, SetsItsFourPropertiesWithTheirTypes) {
  auto* const indicator = new Indicator;
  const ObjectRef object(indicator);
  const ProgressSink sink(object);
  sink.visible(true);
  sink.min(0);
  sink.max(30.3);
  sink.value(2.0);
  ASSERT_EQ(indicator->set.size(), 4U);
  EXPECT_EQ(indicator->set[0].first, "Visible");
  EXPECT_EQ(indicator->set[0].second.get<Bool>()->bits, -1);
  EXPECT_EQ(indicator->set[1].first, "Min");
  EXPECT_EQ(*indicator->set[1].second.get<std::int16_t>(), 0);
  EXPECT_EQ(indicator->set[2].first, "max");
  EXPECT_EQ(*indicator->set[2].second.get<double>(), 30.3);
  EXPECT_EQ(indicator->set[3].first, "Value");
  EXPECT_EQ(*indicator->set[3].second.get<double>(), 2.0);
}

TEST(ProgressSink, NoObjectIs91AndTheObjectsOwnFailureStays) {
  const ObjectRef none;
  EXPECT_EQ(failure_of([&] { ProgressSink(none).visible(true); }), 91);
  const ObjectRef failing(new Indicator(1));
  ProgressSink(failing).visible(true);
  EXPECT_EQ(failure_of([&] { ProgressSink(failing).min(0); }), 1234);
}

TEST(Variants, CarryTheirType) {
  EXPECT_TRUE(Variant().holds<std::monostate>());
  EXPECT_TRUE(Variant(Variant::Null{}).holds<Variant::Null>());
  EXPECT_EQ(*Variant(2.5).get<double>(), 2.5);
  EXPECT_EQ(Variant(2.5).get<float>(), nullptr);
  EXPECT_EQ(*Variant(Text(u"x")).get<Text>(), Text(u"x"));
  EXPECT_EQ(Variant(Bool(true)).get<Bool>()->bits, -1);
}

TEST(Flags, EveryNonZeroPatternIsTrue) {
  EXPECT_EQ(Bool(true).bits, -1);
  EXPECT_EQ(Bool(false).bits, 0);
  EXPECT_TRUE(Bool::raw(2));
  EXPECT_FALSE(Bool::raw(0));
}

}  // namespace
}  // namespace orv2_geo
