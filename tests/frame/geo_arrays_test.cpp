#include "orv2_geo/frame/geo_arrays.h"

#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

template <class A>
class GeoArrays : public ::testing::Test {};
using AllArrays = ::testing::Types<DoubleArray, SingleArray, LongArray, ShortArray, StringArray>;
TYPED_TEST_SUITE(GeoArrays, AllArrays);

TYPED_TEST(GeoArrays, AnIndexMustLieWithinTheBounds) {
  TypeParam array(5, 7);
  for (const std::int32_t index : {5, 6, 7}) {
    EXPECT_EQ(failure_of([&] { (void)array(index); }), 0) << index;
  }
  for (const std::int32_t index : {4, 8, 0, -1, lowest_long, highest_long}) {
    EXPECT_EQ(failure_of([&] { (void)array(index); }), 9) << index;
  }
}

TYPED_TEST(GeoArrays, ARowIsThereWhenEveryElementOfItIs) {
  TypeParam array(5, 7);
  EXPECT_EQ(array.row(5, 7), array.data());
  EXPECT_EQ(array.row(6, 6), array.data() + 1);
  EXPECT_EQ(array.row(5, 8), nullptr);
  EXPECT_EQ(array.row(4, 7), nullptr);
  EXPECT_EQ(array.row(7, 6), nullptr);
  EXPECT_EQ(array.row(lowest_long, highest_long), nullptr);
  EXPECT_EQ(array.row(highest_long, lowest_long), nullptr);
  array.make(0, 4, 2);
  EXPECT_EQ(array.row(0, 0), nullptr);
  array.make(0, 0);
  EXPECT_EQ(array.row(0, -1), nullptr);
  array.release();
  EXPECT_EQ(array.row(0, 0), nullptr);
  array.make(highest_long, 1);
  EXPECT_EQ(array.row(highest_long, highest_long), array.data());
  EXPECT_EQ(array.row(lowest_long, highest_long), nullptr);
}

TYPED_TEST(GeoArrays, SizingFrom0LeavesTheLowerBoundAlone) {
  TypeParam array(0, 3);
  array.size_keeping_from_0(1);
  EXPECT_EQ(array.upper(), 1);
  TypeParam elsewhere(1, 3);
  EXPECT_EQ(failure_of([&] { elsewhere.size_keeping_from_0(2); }), 9);
  EXPECT_EQ(elsewhere.upper(), 3);
  TypeParam none;
  none.size_keeping_from_0(2);
  EXPECT_EQ(none.count(), 3U);
}

TYPED_TEST(GeoArrays, UnallocatedHasNoIndexAndNoBounds) {
  TypeParam array;
  EXPECT_FALSE(array.allocated());
  EXPECT_EQ(array.dimensions(), 0);
  for (const std::int32_t index : {0, 1, lowest_long, highest_long}) {
    EXPECT_EQ(failure_of([&] { (void)array(index); }), 9);
  }
  EXPECT_EQ(failure_of([&] { (void)array.lower(); }), 9);
  EXPECT_EQ(failure_of([&] { (void)array.upper(); }), 9);
}

TYPED_TEST(GeoArrays, ADimensionCountOtherThanOneHidesTheElements) {
  TypeParam array;
  array.make(0, 4, 2);
  EXPECT_TRUE(array.allocated());
  EXPECT_EQ(array.lower(), 0);
  EXPECT_EQ(array.upper(), 3);
  EXPECT_EQ(failure_of([&] { (void)array(0); }), 9);
  EXPECT_EQ(failure_of([&] { array.size_keeping(0, 5); }), 9);
  array.size(0, 5);
  EXPECT_EQ(array.dimensions(), 1);
  EXPECT_EQ(failure_of([&] { (void)array(5); }), 0);
}

TYPED_TEST(GeoArrays, BoundsReachBothEndsOfTheirRange) {
  TypeParam low(lowest_long, lowest_long + 2);
  EXPECT_EQ(low.upper(), lowest_long + 2);
  EXPECT_EQ(failure_of([&] { (void)low(lowest_long); }), 0);
  EXPECT_EQ(failure_of([&] { (void)low(lowest_long + 3); }), 9);
  EXPECT_EQ(failure_of([&] { (void)low(highest_long); }), 9);
  TypeParam high(highest_long - 1, highest_long);
  EXPECT_EQ(failure_of([&] { (void)high(highest_long); }), 0);
  EXPECT_EQ(failure_of([&] { (void)high(lowest_long); }), 9);
}

TYPED_TEST(GeoArrays, NewElementsAreZeroOrEmpty) {
  using T = typename TypeParam::value_type;
  TypeParam array(-3, 40);
  for (std::int32_t i = -3; i <= 40; ++i) EXPECT_TRUE(array(i) == T{});
}

TYPED_TEST(GeoArrays, ImpossibleSizesLeaveTheArrayAsItWas) {
  TypeParam array(1, 3);
  EXPECT_EQ(failure_of([&] { array.size(0, -1); }), 9);
  EXPECT_EQ(failure_of([&] { array.size(0, -2); }), 9);
  EXPECT_EQ(failure_of([&] { array.size_keeping(5, 4); }), 9);
  EXPECT_EQ(failure_of([&] { array.size(lowest_long, highest_long); }), 7);
  EXPECT_EQ(array.lower(), 1);
  EXPECT_EQ(array.upper(), 3);
}

TYPED_TEST(GeoArrays, ALockedArrayKeepsItsSize) {
  TypeParam array(1, 3);
  {
    const ArrayLock outer(array);
    const ArrayLock inner(array);
    EXPECT_EQ(failure_of([&] { array.size(0, 5); }), 10);
    EXPECT_EQ(failure_of([&] { array.size_keeping(1, 5); }), 10);
    EXPECT_EQ(failure_of([&] { array.release(); }), 10);
    EXPECT_EQ(failure_of([&] { array = TypeParam(0, 9); }), 10);
    EXPECT_EQ(failure_of([&] { (void)array(2); }), 0);
  }
  EXPECT_EQ(failure_of([&] { array.size(0, 5); }), 0);
}

TYPED_TEST(GeoArrays, ARefusedAllocationLosesNothing) {
  using T = typename TypeParam::value_type;
  const long before = allocations_in_use();
  {
    TypeParam array(1, 3);
    array(2) = T{};
    const RefusedAllocation next(0);
    EXPECT_EQ(failure_of([&] { array.size_keeping(1, 100); }), 7);
    EXPECT_EQ(array.upper(), 3);
  }
  {
    const RefusedAllocation next(0);
    EXPECT_EQ(failure_of([&] { TypeParam array(0, 9); }), 7);
  }
  EXPECT_EQ(allocations_in_use(), before);
}

TEST(DoubleArrays, SizingWithoutKeepingDropsTheContent) {
  DoubleArray array(1, 3);
  array(2) = 7.5;
  array.size(1, 3);
  EXPECT_EQ(array(2), 0.0);
}

TEST(DoubleArrays, SizingWithKeepingKeepsWhatBothRangesShare) {
  DoubleArray array(1, 4);
  for (std::int32_t i = 1; i <= 4; ++i) array(i) = i * 1.5;
  array.size_keeping(0, 2);
  EXPECT_EQ(array(0), 0.0);
  EXPECT_EQ(array(1), 1.5);
  EXPECT_EQ(array(2), 3.0);
  array.size_keeping(2, 6);
  EXPECT_EQ(array(2), 3.0);
  EXPECT_EQ(array(6), 0.0);
  array.size_keeping(100, 101);
  EXPECT_EQ(array(100), 0.0);
}

// Arrays that are sized again and again hold what a list of index and value would.
template <class Value, class MakeValue>
void size_at_random(MakeValue make_value) {
  std::mt19937_64 engine(14);
  const auto below = [&](std::uint64_t end) { return static_cast<std::int32_t>(engine() % end); };
  GeoArray<Value> array(0, 9);
  std::map<std::int32_t, Value> expected;
  for (std::int32_t i = 0; i <= 9; ++i) expected[i];
  for (int turn = 0; turn < 3000; ++turn) {
    const std::int32_t lower = below(2) == 0 ? array.lower() : below(4);
    const std::int32_t upper = lower + below(12);
    const bool keep = below(2) == 0;
    if (keep) {
      array.size_keeping(lower, upper);
    } else {
      array.size(lower, upper);
    }
    std::map<std::int32_t, Value> sized;
    for (std::int32_t i = lower; i <= upper; ++i) {
      sized[i] = keep && expected.count(i) != 0 ? expected[i] : Value();
    }
    expected = sized;
    ASSERT_EQ(array.lower(), lower) << turn;
    ASSERT_EQ(array.upper(), upper) << turn;
    for (const auto& [i, value] : expected) ASSERT_EQ(array(i), value) << turn << " at " << i;
    const std::int32_t i = lower + below(static_cast<std::uint64_t>(upper - lower) + 1);
    array(i) = expected[i] = make_value(turn + 1);
  }
}

TEST(DoubleArrays, HoldWhatAListWouldHoweverTheyAreSized) {
  size_at_random<double>([](int turn) { return static_cast<double>(turn); });
}

TEST(StringArrays, HoldWhatAListWouldHoweverTheyAreSized) {
  const long before = allocations_in_use();
  size_at_random<Text>([](int turn) { return Text(std::u16string(30, u'a') + char16_t(turn)); });
  EXPECT_EQ(allocations_in_use(), before);
}

TEST(DoubleArrays, ThatShrinkALittleStayWhereTheyAre) {
  DoubleArray array(0, 99);
  const double* const place = array.data();
  array.size_keeping(0, 60);
  array.size(5, 60);
  EXPECT_EQ(array.data(), place);
  array.size_keeping(5, 20);  // too much would lie idle
  EXPECT_NE(array.data(), place);
}

TEST(DoubleArrays, ACopyIsItsOwnArray) {
  DoubleArray array(3, 4);
  array(3) = 1.25;
  DoubleArray copy = array;
  copy(3) = 2.0;
  EXPECT_EQ(array(3), 1.25);
  EXPECT_EQ(copy.lower(), 3);
  copy = DoubleArray();
  EXPECT_FALSE(copy.allocated());
  copy = array;
  EXPECT_EQ(copy(3), 1.25);
}

TEST(DoubleArrays, ACopyHasTheBoundsAndDimensionsOfWhatItIsACopyOf) {
  struct Row {
    std::uint32_t count;
    std::uint16_t dimensions;
  };
  for (const auto& [count, dimensions] : {Row{0, 1}, Row{2, 1}, Row{2, 2}}) {
    DoubleArray array;
    array.make(-3, count, dimensions);
    const DoubleArray copy = array;
    EXPECT_EQ(copy.lower(), -3);
    EXPECT_EQ(copy.count(), count);
    EXPECT_EQ(copy.dimensions(), dimensions);
    EXPECT_EQ(failure_of([&] { copy(-3); }), count == 2 && dimensions == 1 ? 0 : 9);
  }
}

TEST(DoubleArrays, ACopyWithoutMemoryIs7) {
  const DoubleArray array(0, 9);
  const RefusedAllocation refused(0);
  EXPECT_EQ(failure_of([&] { const DoubleArray copy(array); }), 7);
}

TEST(StringArrays, TextsMoveAndEndOnce) {
  const long before = allocations_in_use();
  {
    StringArray released(0, 1);
    released(1) = Text(u"punto");
    released.release();
    EXPECT_FALSE(released.allocated());
    EXPECT_EQ(allocations_in_use(), before);
    StringArray array(0, 3);
    for (std::int32_t i = 0; i <= 3; ++i) array(i) = Text(u"punto");
    array.size_keeping(1, 6);
    EXPECT_EQ(array(3), Text(u"punto"));
    EXPECT_EQ(array(6), Text());
    StringArray copy = array;
    std::swap(copy(1), copy(6));
    EXPECT_EQ(copy(1), Text());
    array.size(0, 1);
    EXPECT_EQ(copy(2), Text(u"punto"));
  }
  EXPECT_EQ(allocations_in_use(), before);
}

TEST(StringArrays, ACopyRefusedAtAnyTextLeavesNothingBehind) {
  StringArray array(1, 5);
  for (std::int32_t i = 1; i <= 5; ++i) array(i) = Text(u"código");
  const long before = allocations_in_use();
  for (long let_pass = 0; let_pass < 6; ++let_pass) {
    const RefusedAllocation refused(let_pass);
    EXPECT_EQ(failure_of([&] { const StringArray copy(array); }), 7);
    EXPECT_EQ(allocations_in_use(), before);
  }
}

// A host's own storage, which grows up to a limit.
class HostStorage final : public ArrayOwner {
 public:
  explicit HostStorage(std::vector<double> elements, std::size_t limit)
      : elements_(std::move(elements)), limit_(limit) {}

  void* resize(std::int32_t lower, std::uint32_t count, bool keep) override {
    if (count > limit_) raise(failure::array_locked);
    if (!keep) elements_.assign(elements_.size(), 0.0);
    elements_.resize(count);
    asked_lower = lower;
    return elements_.data();
  }
  std::vector<double>& elements() { return elements_; }
  std::int32_t asked_lower = 0;

 private:
  std::vector<double> elements_;
  std::size_t limit_;
};

TEST(ForeignArrays, AreWorkedInPlaceAndResizedThroughTheirOwner) {
  HostStorage storage({1.0, 2.0, 3.0}, 5);
  DoubleArray array;
  array.adopt(storage, storage.elements().data(), 1, 3);
  array(2) = 20.0;
  EXPECT_EQ(storage.elements()[1], 20.0);
  array.size_keeping(1, 5);
  EXPECT_EQ(storage.elements().size(), 5U);
  EXPECT_EQ(storage.asked_lower, 1);
  EXPECT_EQ(array(2), 20.0);
  EXPECT_EQ(array(5), 0.0);
  EXPECT_EQ(failure_of([&] { array.size(0, 9); }), 10);
  EXPECT_EQ(array.upper(), 5);
  array = DoubleArray(0, 1);
  EXPECT_EQ(storage.elements().size(), 2U);
  array.release();
  EXPECT_FALSE(array.allocated());
  EXPECT_EQ(storage.elements().size(), 2U);
}

TEST(ForeignArrays, ThatBecomeUnallocatedStayTheirOwners) {
  HostStorage storage({1.0, 2.0, 3.0}, 5);
  DoubleArray array;
  array.adopt(storage, storage.elements().data(), 1, 3);
  array = DoubleArray();
  EXPECT_FALSE(array.allocated());
  EXPECT_EQ(failure_of([&] { (void)array(1); }), 9);
  EXPECT_TRUE(storage.elements().empty());
  array.size(2, 3);
  EXPECT_EQ(storage.elements().size(), 2U);
  array(2) = 4.0;
  EXPECT_EQ(storage.elements()[0], 4.0);
}

TEST(ForeignArrays, ThatCannotBecomeUnallocatedAreAsTheyWere) {
  class Fixed final : public ArrayOwner {
   public:
    void* resize(std::int32_t, std::uint32_t, bool) override { raise(failure::array_locked); }
  } owner;
  double elements[] = {1.0, 2.0, 3.0};
  DoubleArray array;
  array.adopt(owner, elements, 1, 3);
  EXPECT_EQ(failure_of([&] { array = DoubleArray(); }), 10);
  EXPECT_TRUE(array.allocated());
  EXPECT_EQ(array.upper(), 3);
  array(2) = 20.0;
  EXPECT_EQ(elements[1], 20.0);
}

TEST(ForeignArrays, TakeThePlaceOfStorageOfItsOwn) {
  HostStorage storage({1.0, 2.0}, 5);
  const long before = allocations_in_use();
  {
    DoubleArray array(0, 100);
    array.adopt(storage, storage.elements().data(), 1, 2);
    EXPECT_EQ(array(2), 2.0);
    EXPECT_EQ(allocations_in_use(), before);
  }
  EXPECT_EQ(allocations_in_use(), before);
}

TEST(ForeignArrays, BoundsMustFitTheirRange) {
  HostStorage storage({1.0, 2.0}, 5);
  DoubleArray array;
  EXPECT_EQ(failure_of([&] { array.adopt(storage, storage.elements().data(), highest_long, 2); }),
            9);
  array.adopt(storage, storage.elements().data(), highest_long - 1, 2);
  EXPECT_EQ(array(highest_long), 2.0);
}

TEST(ForeignArrays, AnEmptyOneHasAnUpperBoundBelowItsLower) {
  HostStorage storage({}, 5);
  DoubleArray array;
  array.adopt(storage, storage.elements().data(), 0, 0);
  EXPECT_EQ(array.upper(), -1);
  EXPECT_EQ(failure_of([&] { (void)array(0); }), 9);
  array.adopt(storage, storage.elements().data(), lowest_long, 0);
  EXPECT_EQ(failure_of([&] { (void)array.upper(); }), 6);
}

}  // namespace
}  // namespace orv2_geo
