#include "survey_report/symbols.h"

#include <gtest/gtest.h>

namespace survey_report {
namespace {

std::vector<SurveyPoint> with_codes(const std::vector<std::string>& codes) {
  std::vector<SurveyPoint> points;
  for (const std::string& code : codes) points.push_back({"1", 0, 0, 0, code, 1});
  return points;
}

TEST(Symbols, TheMostFrequentCodeComesFirstAndEqualsByName) {
  const auto groups = code_groups(with_codes({"B", "C", "A", "C", "", "C", "A", "B"}));
  ASSERT_EQ(groups.size(), 4);
  EXPECT_EQ(groups[0].name, "C");
  EXPECT_EQ(groups[1].name, "A");
  EXPECT_EQ(groups[2].name, "B");
  EXPECT_EQ(groups[3].name, "no code");
  EXPECT_EQ(groups[1].points, (std::vector<std::size_t>{2, 6}));
}

TEST(Symbols, TenCodesHaveNoOthers) {
  const auto groups = code_groups(with_codes({"A", "B", "C", "D", "E", "F", "G", "H", "I", "J"}));
  ASSERT_EQ(groups.size(), 10);
  EXPECT_EQ(groups.back().name, "J");
}

TEST(Symbols, FromTheEleventhCodeOnTheyAreOthers) {
  const auto groups =
      code_groups(with_codes({"L", "A", "B", "C", "D", "E", "F", "G", "H", "I", "J", "K"}));
  ASSERT_EQ(groups.size(), 11);
  EXPECT_EQ(groups.back().name, "other");
  EXPECT_EQ(groups.back().points, (std::vector<std::size_t>{0, 11}));
}

TEST(Symbols, NoTwoGroupsLookAlike) {
  for (std::size_t i = 0; i < 11; ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      const auto look = [](std::size_t group) {
        return symbol_of_group(group).outline({0, 0}, 1) + symbol_of_group(group).paint;
      };
      EXPECT_NE(look(i), look(j)) << i << ' ' << j;
    }
  }
}

}  // namespace
}  // namespace survey_report
