// The file of test vectors: that it says what it should, and enough of it.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "tests/vectors/portable_call.h"
#include "tests/vectors/vector_file.h"

namespace orv2_geo::vectors {
namespace {

std::string text_of_file() {
  std::ifstream file(VECTORS, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(Vectors, WhatIsReadIsWrittenAgain) {
  std::ostringstream again;
  for (const VectorClass& one : classes_of_file()) write(again, one);
  EXPECT_TRUE(again.str() == text_of_file());
}

// Every call again, in those settings of the host, where some are given.
void expect_the_same(const std::vector<VectorClass>& classes, const testing::OddUnits* odd) {
  std::size_t class_index = 0;
  for (const VectorClass& one : classes) {
    PortableObject object(("Orv2_Geo." + one.name).c_str());
    if (odd != nullptr) object.call_in(odd->units);
    for (const VectorCall& call : one.calls) {
      const Outcome again = object.call(call.position, call.given, by_value(class_index, call));
      EXPECT_TRUE(again == call.outcome) << one.name << ' ' << call.position;
    }
    EXPECT_TRUE(object.settings_held()) << one.name;
    ++class_index;
  }
}

TEST(Vectors, CallsDoTheSameAgain) { expect_the_same(classes_of_file(), nullptr); }

TEST(Vectors, CallsDoTheSameWhateverTheHostDidToItsFloatingPoint) {
  const std::vector<VectorClass>& classes = classes_of_file();
  for (const testing::OddUnits& odd : testing::odd_units()) {
    SCOPED_TRACE(odd.name);
    expect_the_same(classes, &odd);
  }
}

TEST(Vectors, NoMemberIsLeftOut) {
  const std::vector<VectorClass>& all = classes_of_file();
  ASSERT_EQ(all.size(), orv2_class_count());
  for (std::size_t i = 0; i < all.size(); ++i) {
    orv2_class_info info{};
    ASSERT_EQ(orv2_class_at(i, &info), 0);
    std::set<std::size_t> called;
    for (const VectorCall& call : all[i].calls) called.insert(call.position);
    EXPECT_EQ(all[i].name, info.name);
    EXPECT_EQ(called.size(), info.member_count) << info.name;
  }
}

TEST(Vectors, FailuresBoxesAndSharedVariablesAreReached) {
  std::set<std::int32_t> failures;
  std::size_t boxes = 0, told = 0, shared = 0, omitted = 0;
  for (const VectorClass& one : classes_of_file()) {
    for (const VectorCall& call : one.calls) {
      failures.insert(call.outcome.failure);
      boxes += call.outcome.boxes.size();
      told += call.outcome.told.size();
      for (const Given& given : call.given) shared += given.same_as >= 0, omitted += given.omitted;
    }
  }
  for (const std::int32_t number : {0, 3, 5, 6, 9, 11}) {
    EXPECT_TRUE(failures.contains(number)) << number;
  }
  for (const std::size_t count : {boxes, told, shared, omitted}) EXPECT_GT(count, 100U);
}

TEST(Vectors, OtherFilesAreRefused) {
  for (const char* text :
       {"call 0\n", "class a\nmember 0 nearly b\n", "class a\ncall x\n", "class a\ncall 0 q:1\n",
        "class a\ncall 0 d:1g\n", "class a\ncall 0 =0\n", "class a\ncall 0 D:0/1:00\n",
        "class a\nbox 0 00 -\n"}) {
    std::istringstream file(text);
    EXPECT_THROW(read(file), std::runtime_error) << text;
  }
}

}  // namespace
}  // namespace orv2_geo::vectors
