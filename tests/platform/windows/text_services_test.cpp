// What the system's own order of texts has to keep to.
#include "orv2_geo/platform/text_services.h"

#include <random>
#include <string>
#include <vector>

#include "orv2_geo/platform/prepared_texts.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

using namespace text_services;
using testing_support::RefusedAllocation;

TEST(SystemTexts, CaseIsIgnoredInEveryAlphabet) {
  const struct {
    const char* letter;
    const char16_t* upper;
    const char16_t* lower;
  } rows[] = {
      {"n with a tilde", u"PEÑA", u"peña"},
      {"accents", u"ÁÉÍÓÚÜ", u"áéíóúü"},
      {"zhe", u"\u0416", u"\u0436"},
      {"omega", u"\u03a9", u"\u03c9"},
      {"Deseret, of two units", u"a\U00010400", u"A\U00010428"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(compare(row.upper, row.lower), 0) << row.letter;
    EXPECT_EQ(collation_key(row.upper), collation_key(row.lower)) << row.letter;
  }
  EXPECT_LT(compare(u"n", u"Ñ"), 0);
  EXPECT_LT(compare(u"ñ", u"O"), 0);
  EXPECT_NE(compare(u"a", u"á"), 0);
}

TEST(SystemTexts, WhatStandsBehindAZeroCounts) {
  const std::u16string zero(1, u'\0');
  EXPECT_LT(compare(u"a", u"a" + zero), 0);
  EXPECT_LT(compare(u"a" + zero + u"b", u"a" + zero + u"c"), 0);
  EXPECT_LT(compare(u"a" + zero + u"z", u"b"), 0);
  EXPECT_EQ(compare(u"a" + zero + u"B", u"A" + zero + u"b"), 0);
}

TEST(SystemTexts, LongTextsHaveWholeKeys) {
  const std::u16string many(5000, u'x');
  EXPECT_LT(compare(many, many + u"a"), 0);
  EXPECT_LT(compare(many + u"a", many + u"B"), 0);
  EXPECT_EQ(compare(many + u"b", many + u"B"), 0);
}

TEST(SystemTexts, AKeyWithoutMemoryIs7OrTheRunTimesOwn) {
  const std::u16string text(5000, u'x');
  long let_pass = 0;
  for (bool refused = true; refused; ++let_pass) {
    const RefusedAllocation refusal(let_pass);
    bool fitted = true;
    try {
      collation_key(text);
    } catch (const std::bad_alloc&) {
      fitted = false;
    }
    refused = RefusedAllocation::happened();
    EXPECT_EQ(fitted, !refused);
  }
  EXPECT_GT(let_pass, 2);
}

// Signs of little weight, accents and cases, letters of two units, zeros.
Text any_text(std::mt19937_64& engine) {
  static const std::u16string units[] = {u"a",
                                         u"A",
                                         u"b",
                                         u"n",
                                         u"ñ",
                                         u"Ñ",
                                         u"á",
                                         u"-",
                                         u"'",
                                         u" ",
                                         u"1",
                                         u"9",
                                         u".",
                                         u"ß",
                                         u"\u0301",
                                         u"\u00ad",
                                         u"\U00010400",
                                         u"\U00010428",
                                         std::u16string(1, u'\xd801'),
                                         u"Z"};
  std::u16string text;
  for (auto left = engine() % 7; left > 0; --left) text += units[engine() % 20];
  if (engine() % 50 == 0) text.insert(text.begin(), u'\0');
  return Text(text);
}

int sign(int order) { return order < 0 ? -1 : order > 0 ? 1 : 0; }

// By parts where they decide, else by full keys, as a sort reads them.
int order_of(PreparedTexts& texts, std::uint32_t i, std::uint32_t j) {
  PreparedTexts::Part a = texts.first_part(i);
  PreparedTexts::Part b = texts.first_part(j);
  while (a.word == b.word) {
    if (texts.is_over(a)) return texts.parts_decide() ? 0 : sign(texts.compare(i, j));
    a = texts.next_part(a);
    b = texts.next_part(b);
  }
  return a.word < b.word ? -1 : 1;
}

TEST(SystemTexts, PreparedTextsHaveTheSameOrder) {
  std::mt19937_64 engine(61);
  int equal = 0;
  for (int round = 0; round < 20000; ++round) {
    const Text pair[] = {any_text(engine), any_text(engine)};
    const Text* const texts[] = {&pair[0], &pair[1]};
    PreparedTexts prepared(texts);
    const int expected = sign(compare(pair[0].view(), pair[1].view()));
    const bool same_keys = collation_key(pair[0].view()) == collation_key(pair[1].view());
    ASSERT_EQ(expected == 0, same_keys) << pair[0].to_utf8() << " and " << pair[1].to_utf8();
    ASSERT_EQ(order_of(prepared, 0, 1), expected)
        << pair[0].to_utf8() << " and " << pair[1].to_utf8();
    equal += expected == 0;
  }
  EXPECT_GT(equal, 200);
}

}  // namespace
}  // namespace orv2_geo
