// Texts of numbers and numbers of texts, beside the C run-time's.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzz/harness.h"
#include "fuzz/source.h"
#include "orv2_geo/dialogs/m_sys.h"
#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/platform/text_services.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using fuzzing::Source;
using namespace text_services;

// ---- Texts read ------------------------------------------------------------

// The longest part at the front that is a number, read by the run-time under the C
// locale, which the programs here never leave.
struct Leading {
  double value = 0.0;
  std::size_t length = 0;
};

Leading leading_of(const std::string& text) {
  const std::string plain = text.substr(0, text.find_first_not_of("0123456789+-.eE"));
  char* end = nullptr;
  const double value = std::strtod(plain.c_str(), &end);
  return {value, static_cast<std::size_t>(end - plain.c_str())};
}

std::string bytes_of(std::u16string_view units) {
  std::string bytes;
  for (const char16_t unit : units) bytes.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
  return bytes;
}

void expect_number(std::int32_t expected_failure, double expected, auto&& read) {
  double value = 0.0;
  ASSERT_EQ(failure_of([&] { value = read(); }), expected_failure);
  if (expected_failure == 0) ASSERT_EQ(bits(value), bits(expected));
}

void read_texts(Source& source) {
  const std::u16string units = source.units(40);

  std::string plain = bytes_of(units);
  std::erase_if(plain, [](char c) { return std::strchr(" \t\n", c) != nullptr && c != '\0'; });
  const Leading leading = leading_of(plain);
  expect_number(std::isinf(leading.value) ? 6 : 0, leading.length == 0 ? 0.0 : leading.value,
                [&] { return leading_number(units); });

  std::string whole = bytes_of(units);
  const auto sign = static_cast<char>(decimal_sign());
  if (sign != '.') {
    std::replace(whole.begin(), whole.end(), '.', '?');
    std::replace(whole.begin(), whole.end(), sign, '.');
  }
  const std::size_t first = std::min(whole.find_first_not_of(' '), whole.size());
  whole = whole.substr(first, whole.find_last_not_of(' ') + 1 - first);
  const Leading number = leading_of(whole);
  const bool is_one = number.length != 0 && number.length == whole.size();
  expect_number(!is_one                    ? 13
                : std::isinf(number.value) ? 6
                                           : 0,
                number.value, [&] { return number_from_text(units); });
}

// ---- Numbers written -------------------------------------------------------

std::string printed(const char* format, double number) {
  char room[64];
  std::snprintf(room, sizeof room, format, number);
  return room;
}

std::string localised(std::string text) {
  std::replace(text.begin(), text.end(), '.', static_cast<char>(decimal_sign()));
  return text;
}

// What a default text is to be, with a point.
std::string general(const char* format, double number) {
  std::string text = printed(format, number);
  std::replace(text.begin(), text.end(), 'e', 'E');
  return text == "-0" ? "0" : text;
}

// The first `decimals` decimals of 15 digits, half away from zero: added at the place
// behind the last one and carried as on paper.
std::string on_paper(double number, int decimals) {
  const std::string text = printed("%.14e", std::fabs(number));
  const std::string digits = text[0] + text.substr(2, 14);
  const int exponent = std::atoi(text.c_str() + 17);
  std::string all(static_cast<std::size_t>(std::max(-exponent, 0)), '0');
  all += digits;
  const int whole = std::max(exponent, 0) + 1;  // digits before the point
  all.resize(std::max(all.size(), static_cast<std::size_t>(whole + decimals) + 1), '0');
  std::size_t at = static_cast<std::size_t>(whole + decimals);
  bool carry = all[at] >= '5';
  all.resize(at);
  while (carry && at-- > 0) {
    carry = all[at] == '9';
    all[at] = static_cast<char>(carry ? '0' : all[at] + 1);
  }
  std::size_t point = static_cast<std::size_t>(whole);
  if (carry) all.insert(all.begin(), '1'), ++point;
  const bool zero = all.find_first_not_of('0') == all.npos;
  if (decimals > 0) all.insert(point, 1, '.');
  return (std::signbit(number) && !zero ? "-" : "") + all;
}

void write_numbers(Source& source) {
  const double number = source.number();
  const float single = source.single();
  const std::int32_t whole = source.whole();
  const int decimals = source.between(0, source.one_in(8) ? 400 : 20);
  ASSERT_EQ(default_text(whole).to_utf8(), std::to_string(whole));
  ASSERT_EQ(signed_text(whole).to_utf8(), (whole < 0 ? "" : " ") + std::to_string(whole));
  if (std::isfinite(single)) {
    ASSERT_EQ(default_text(single).to_utf8(), localised(general("%.7g", single)));
  }
  if (!std::isfinite(number)) {
    ASSERT_EQ(failure_of([&] { pattern_format(number, decimals); }), 6);
    return;
  }
  const Text text = default_text(number);
  ASSERT_EQ(text.to_utf8(), localised(general("%.15g", number)));
  const Leading read = leading_of(general("%.15g", number));
  expect_number(std::isinf(read.value) ? 6 : 0, read.value,
                [&] { return number_from_text(text.view()); });
  ASSERT_EQ(pattern_format(number, decimals).to_utf8(), localised(on_paper(number, decimals)));
}

// ---- The text of a number in a cell ----------------------------------------

Variant any_variant(Source& source) {
  switch (source.below(8)) {
    case 0: return {};
    case 1: return Variant::Null{};
    case 2: return ObjectRef();
    case 3: return source.any<std::int16_t>();
    case 4: return source.whole();
    case 5: return source.single();
    case 6: return Text(source.units(30));
    default: return Bool(source.one_in(2));
  }
}

void write_cells(Source& source) {
  const auto decimals = static_cast<std::int16_t>(source.one_in(8) ? source.any<std::int16_t>()
                                                                   : source.between(-1, 17));
  const auto width = static_cast<std::int16_t>(source.between(-2, 30));
  const Variant any = any_variant(source);
  const std::string narrow = Texto_de_Numero(any, decimals, 0).to_utf8();
  const std::string wide = Texto_de_Numero(any, decimals, width).to_utf8();
  ASSERT_TRUE(wide == narrow || wide.empty() || wide.front() == ' ');

  const double number = source.number();
  const std::string cell = Texto_de_Numero(number, decimals, 0).to_utf8();
  const double read = leading_of(general("%.15g", number)).value;
  if (!std::isfinite(number) || !std::isfinite(read) || decimals > 32765) {
    // With no decimals asked for the text need not be read again.
    ASSERT_TRUE(cell.empty() || decimals <= 0);
  } else if (decimals > 0) {
    ASSERT_EQ(cell, on_paper(read, std::min<int>(decimals, 15)));
  } else {
    ASSERT_EQ(cell, localised(general("%.15g", number)));
  }
}

// ---- Conversions -----------------------------------------------------------

template <class Whole>
void expect_whole(double number, Whole (*convert)(Checked)) {
  const double nearest = std::nearbyint(number);
  const bool fits =
      nearest >= std::numeric_limits<Whole>::min() && nearest <= std::numeric_limits<Whole>::max();
  Whole value = 0;
  ASSERT_EQ(failure_of([&] { value = convert(number); }), fits ? 0 : 6);
  if (fits) ASSERT_EQ(static_cast<double>(value), nearest);
}

void convert_numbers(Source& source) {
  const double number = source.number();
  expect_whole<std::int32_t>(number, to_i32);
  expect_whole<std::int16_t>(number, to_i16);
  const auto single = static_cast<float>(number);
  float narrowed = 0.0F;
  ASSERT_EQ(failure_of([&] { narrowed = narrow(number); }),
            std::isinf(single) && !std::isinf(number) ? 6 : 0);
  if (std::isfinite(single)) ASSERT_EQ(bits(narrowed), bits(single));
  std::int16_t of = 0;
  ASSERT_EQ(failure_of([&] { of = sign(number); }), std::isnan(number) ? 6 : 0);
  ASSERT_EQ(of, (number > 0.0) - (number < 0.0));
}

}  // namespace
}  // namespace orv2_geo

void orv2_geo::fuzzing::try_input(const std::uint8_t* data, std::size_t size) {
  constexpr void (*checks[])(Source&) = {read_texts, write_numbers, write_cells, convert_numbers};
  Source source(data, size);
  source.one_of(checks)(source);
}
