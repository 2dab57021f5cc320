#include "orv2_geo/platform/prepared_texts.h"

#include <algorithm>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "orv2_geo/platform/text_services.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

int sign_of(int order) { return order < 0 ? -1 : order > 0 ? 1 : 0; }

// By parts as long as they tell, then as a whole.
int order_of(PreparedTexts& prepared, std::uint32_t i, std::uint32_t j) {
  PreparedTexts::Part a = prepared.first_part(i), b = prepared.first_part(j);
  while (a.word == b.word && !prepared.is_over(a)) {
    a = prepared.next_part(a);
    b = prepared.next_part(b);
  }
  if (a.word != b.word) return a.word < b.word ? -1 : 1;
  return prepared.parts_decide() ? 0 : sign_of(prepared.compare(i, j));
}

void expect_the_collation(const std::vector<Text>& texts) {
  std::vector<const Text*> all;
  for (const Text& text : texts) all.push_back(&text);
  PreparedTexts prepared(all);
  for (std::uint32_t i = 0; i < texts.size(); ++i) {
    for (std::uint32_t j = 0; j < texts.size(); ++j) {
      const int order = sign_of(text_services::compare(texts[i].view(), texts[j].view()));
      ASSERT_EQ(order_of(prepared, i, j), order)
          << texts[i].to_utf8() << " | " << texts[j].to_utf8();
      ASSERT_EQ(sign_of(prepared.compare(i, j)), order);
    }
  }
}

TEST(PreparedTexts, CompareAsTheCollationDoes) {
  const std::vector<Text> table[] = {
      {},
      {u""},
      {u"", u"a", u"A", u"b", u""},
      {u"P1", u"P10", u"P2", u"p1", u"P01", u"P", u"P-1", u"P 1", u"P.1", u"P_1"},
      {u"año", u"ano", u"anp", u"AÑO", u"añp", u"nn", u"ñ", u"o", u"n"},
      {u"lindero", u"líndero", u"lindEro", u"líndera", u"linderó", u"lindero1"},
      {u"chopo", u"cz", u"cho", u"d", u"llano", u"lz", u"m"},
      {u"straße", u"strasse", u"strasze", u"œuvre", u"oeuvre", u"of"},
      // One letter that is sorted as two.
      {u"æ", u"a", u"ad", u"ae", u"af", u"b", u"Æ", u"\u01e3"},
      {u"ß", u"s", u"sr", u"ss", u"st", u"t"},
      {u"œ", u"o", u"od", u"oe", u"of", u"p"},
      {u"\u0132", u"i", u"ii", u"ij", u"ik", u"j"},
      {u"\ufb01", u"f", u"fh", u"fi", u"fj", u"g"},
      {u"300000012", u"300000012.5", u"300000012,5", u"1300000000", u"-5", u"5E+15", u"5E-15"},
      {std::u16string_view(u"a\0b", 3), std::u16string_view(u"a\0", 2), u"a", u"ab",
       std::u16string_view(u"\0", 1)},
      {u"😀", u"😁", u"a😀", u"a", u"\xd83d", u"\xde00", u"z"},
      {u"común-1", u"común-10", u"COMÚN-2", u"común-"},
      {u"\u0001", u"a\u0001b", u"ab", u"a\u0001"},
      {u"a\u0301", u"á", u"a", u"b\u0301", u"e\u0308x"},
      {u"日本", u"日", u"本", u"abc", u"Ω", u"ω", u"я"},
  };
  for (const std::vector<Text>& texts : table) expect_the_collation(texts);
}

TEST(PreparedTexts, RandomTextsOfManyAlphabets) {
  Numbers numbers(91);
  const std::u16string_view alphabets[] = {
      u"0123456789",
      u"0123456789PpAaBb-._ ",
      u"abcABCáéíóúüñÑçÇàèºª",
      u"chllrrCHLLdzDZss",
      u"aábβbcдя日😀\u0301\u0001",
      u"'\"-_.,;:!?()[]{}@#$%&/\\+*=<>|~^` \t\u00a0\u00ad",
  };
  const auto below = [&](std::size_t end) { return static_cast<std::size_t>(numbers.below(end)); };
  for (int run = 0; run < 300; ++run) {
    const std::u16string_view alphabet = alphabets[below(std::size(alphabets))];
    const std::u16string common(below(2) * below(12), alphabet[0]);
    std::vector<Text> texts(2 + below(15));
    for (Text& text : texts) {
      std::u16string units = common;
      for (std::size_t k = below(run % 2 == 0 ? 4 : 25); k > 0; --k) {
        units.push_back(alphabet[below(alphabet.size())]);
      }
      text = Text(units);
    }
    expect_the_collation(texts);
  }
}

// One in 256 that cannot be read by characters leaves the others as they are.
TEST(PreparedTexts, AFewThatCannotBeRead) {
  for (const std::size_t n : {255U, 256U, 600U}) {
    std::vector<Text> texts;
    for (std::size_t i = 0; i < n; ++i)
      texts.push_back(text_services::default_text(static_cast<std::int32_t>(i)));
    texts[0] = u"😀";
    if (n == 600) texts[300] = u"3\xd83d";
    std::vector<const Text*> all;
    for (const Text& text : texts) all.push_back(&text);
    PreparedTexts prepared(all);
    const auto unreadable = prepared.unreadable();
    EXPECT_EQ(std::vector<std::uint32_t>(unreadable.begin(), unreadable.end()),
              n == 255   ? std::vector<std::uint32_t>{}
              : n == 256 ? std::vector<std::uint32_t>{0}
                         : std::vector<std::uint32_t>({0, 300}));
    const auto is_there = [&](std::uint32_t i) {
      return std::ranges::find(unreadable, i) == unreadable.end();
    };
    for (std::uint32_t i = 0; i < n; i += 3) {
      for (std::uint32_t j = 0; j < n; j += 5) {
        const int order = sign_of(text_services::compare(texts[i].view(), texts[j].view()));
        ASSERT_EQ(sign_of(prepared.compare(i, j)), order);
        if (is_there(i) && is_there(j)) {
          ASSERT_EQ(order_of(prepared, i, j), order);
        }
      }
    }
  }
}

// More different characters than have a number.
TEST(PreparedTexts, ManyDifferentCharacters) {
  std::vector<Text> texts;
  for (char16_t unit = 0x4e00; unit < 0x4f80; unit = static_cast<char16_t>(unit + 3)) {
    texts.push_back(Text(std::u16string(2, unit)));
  }
  for (char16_t unit = 0x100; unit < 0x280; unit = static_cast<char16_t>(unit + 2)) {
    texts.push_back(Text(std::u16string(1, unit)));
  }
  expect_the_collation(texts);
}

// Each allocation in turn is refused on a thread that knows no character as yet. What it
// learnt by then must be true: the same texts, prepared again there, are in order.
TEST(PreparedTexts, KnowNothingFalseAfterRefusedMemory) {
  const std::vector<Text> texts = {u"azb", u"b1-2", u"a,b", u"c.h-x", u"ñ-n", u"d e", u"ch'o"};
  bool refused = true;
  long n = 0;
  for (; refused; ++n) {
    std::thread([&] {
      std::vector<const Text*> all;
      for (const Text& text : texts) all.push_back(&text);
      {
        const testing_support::RefusedAllocation refusal(n);
        try {
          const PreparedTexts prepared(all);
        } catch (const std::bad_alloc&) {
        } catch (const RunFailure& failure) {
          EXPECT_EQ(failure.number(), failure::out_of_memory);
        }
        refused = testing_support::RefusedAllocation::happened();
      }
      SCOPED_TRACE(n);
      expect_the_collation(texts);
    }).join();
  }
  EXPECT_GT(n, 20);
}

// A thread that meets ever other texts does not keep something of each.
TEST(PreparedTexts, WhatAThreadKeepsHasAnEnd) {
  std::u16string marks =
      u"!#$%&()*+,-./:;<=>?@[]^_{|}~\u00a1\u00a7\u00ab\u00b0\u00b1\u00b5\u00b7\u00bb\u00bf";
  for (char16_t letter = u'\u03b1'; letter <= u'\u03c9'; ++letter) marks.push_back(letter);
  std::thread([&] {
    const auto meet = [](const std::u16string& units) {
      const Text text(units);
      const Text* const both[] = {&text, &text};
      const PreparedTexts prepared(both);
    };
    for (const char16_t one : marks) meet({one});
    const long before = allocations_in_use();
    for (const char16_t one : marks) {
      for (const char16_t two : marks) {
        for (const char16_t three : marks) meet({one, two, three});
      }
    }
    EXPECT_LE(allocations_in_use() - before, 0x4000 + 2);
  }).join();
}

}  // namespace
}  // namespace orv2_geo
