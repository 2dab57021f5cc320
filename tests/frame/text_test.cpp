#include "orv2_geo/frame/text.h"

#include <cstring>

#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

struct Row {
  const char* rule;
  std::u16string units;
  std::string utf8;
};

const Row rows[] = {
    {"empty", u"", ""},
    {"ascii", u"LINDERO", "LINDERO"},
    {"two bytes", u"Precisi\u00f3n: n\u00ba", "Precisi\xc3\xb3n: n\xc2\xba"},
    {"three bytes", u"\u20ac", "\xe2\x82\xac"},
    {"the last of three bytes", u"\uffff", "\xef\xbf\xbf"},
    {"the first pair of surrogates", u"\U00010000", "\xf0\x90\x80\x80"},
    {"a pair of surrogates", u"\U0001F4D0", "\xf0\x9f\x93\x90"},
    {"a high surrogate alone",
     {u'a', char16_t(0xd83d), u'b'},
     "a\xed\xa0\xbd"
     "b"},
    {"a low surrogate alone", {char16_t(0xdcd0)}, "\xed\xb3\x90"},
    {"a zero inside", {u'a', u'\0', u'b'}, std::string("a\0b", 3)},
};

TEST(Text, Utf8ThereAndBack) {
  for (const Row& row : rows) {
    EXPECT_EQ(Text(row.units).to_utf8(), row.utf8) << row.rule;
    EXPECT_EQ(Text::from_utf8(row.utf8).view(), row.units) << row.rule;
  }
}

TEST(Text, BytesThatAreNoUtf8BecomeReplacements) {
  EXPECT_EQ(Text::from_utf8("a\xff"
                            "b")
                .view(),
            u"a\ufffd"
            u"b");
  EXPECT_EQ(Text::from_utf8("\xc3").view(), u"\ufffd");
  EXPECT_EQ(Text::from_utf8("\xc0\xaf").view(), u"\ufffd\ufffd");  // an overlong slash
  EXPECT_EQ(Text::from_utf8("\xf5\x80\x80\x80").size(), 4U);       // past the last point
}

TEST(Text, IsOnePointerWithItsLengthInFront) {
  const Text text(u"abc");
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, reinterpret_cast<const char*>(text.data()) - 4, 4);
  EXPECT_EQ(bytes, 6U);
  EXPECT_EQ(text.data()[3], u'\0');
  EXPECT_EQ(sizeof(Text), sizeof(void*));
  EXPECT_EQ(Text().size(), 0U);
  EXPECT_EQ(*Text().data(), u'\0');
}

TEST(Text, MovingMovesTheHandle) {
  Text a(u"uno");
  const char16_t* units = a.data();
  const long before = allocations_in_use();
  Text b = std::move(a);
  EXPECT_EQ(b.data(), units);
  EXPECT_TRUE(a.empty());
  a = std::move(b);
  EXPECT_EQ(a.data(), units);
  EXPECT_EQ(allocations_in_use(), before);
}

TEST(Text, ARefusedCopyLeavesTheTargetAsItWas) {
  const Text source(u"nuevo");
  Text target(u"viejo");
  const RefusedAllocation refused(0);
  EXPECT_EQ(failure_of([&] { target = source; }), 7);
  EXPECT_EQ(target, Text(u"viejo"));
}

TEST(Text, ConversionsWithoutMemoryAre7) {
  const std::string utf8(200, 'x');
  const Text text(std::u16string(200, u'x'));
  for (long let_pass = 0; let_pass < 2; ++let_pass) {
    const RefusedAllocation refused(let_pass);
    EXPECT_EQ(failure_of([&] { (void)Text::from_utf8(utf8); }), 7);
  }
  const RefusedAllocation refused(0);
  EXPECT_EQ(failure_of([&] { (void)text.to_utf8(); }), 7);
  const RefusedAllocation again(0);
  EXPECT_EQ(failure_of([&] { (void)joined(text.view(), text.view()); }), 7);
}

TEST(Text, AssignedToItselfStays) {
  Text text(u"igual");
  const Text& same = text;
  text = same;
  EXPECT_EQ(text, Text(u"igual"));
}

}  // namespace
}  // namespace orv2_geo
