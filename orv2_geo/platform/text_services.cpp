// The part of the text services that is the same on every system.
#include "orv2_geo/platform/text_services.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo::text_services {

namespace {

constexpr int significant_digits = 15;
constexpr int significant_digits_f32 = 7;

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Length of the longest part at the front that is a number: sign, digits,
// point, digits, exponent; at least one digit before the exponent.
std::size_t number_length(std::string_view text) {
  std::size_t i = 0;
  const auto digits = [&] {
    const std::size_t start = i;
    while (i < text.size() && is_digit(text[i])) ++i;
    return i - start;
  };
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  std::size_t mantissa = digits();
  if (i < text.size() && text[i] == '.') {
    ++i;
    mantissa += digits();
  }
  if (mantissa == 0) return 0;
  const std::size_t end = i;
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    if (digits() != 0) return i;
  }
  return end;
}

// The place of the first digit that is not zero: 1 for units, 0 for tenths.
long long power_of_ten(std::string_view number) {
  const std::size_t e = std::min(number.find_first_of("eE"), number.size());
  const std::string_view mantissa = number.substr(0, e);
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t first = std::min(mantissa.find_first_of("123456789"), mantissa.size());
  const auto place = static_cast<long long>(point) - static_cast<long long>(first);
  long long exponent = 0;
  if (e < number.size()) {
    std::string_view digits = number.substr(e + 1);
    if (digits.front() == '+') digits.remove_prefix(1);
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    const bool endless = read.ec == std::errc::result_out_of_range;
    if (endless) exponent = digits.front() == '-' ? -(1LL << 60) : 1LL << 60;
  }
  return exponent + (first > point ? place + 1 : place);
}

// The value of a text that number_length has measured in full.
double value_of(std::string_view number) {
  const bool negative = number.front() == '-';
  if (negative || number.front() == '+') number.remove_prefix(1);
  double value = 0.0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error == std::errc::result_out_of_range) {
    if (power_of_ten(number) > 0) raise(failure::overflow);
    value = 0.0;  // too small
  }
  return negative ? -value : value;
}

// ASCII as it is; anything else becomes a character that no number holds.
std::string ascii(std::u16string_view text) {
  std::string plain(text.size(), '?');
  std::transform(text.begin(), text.end(), plain.begin(),
                 [](char16_t unit) { return unit < 0x80 ? static_cast<char>(unit) : '?'; });
  return plain;
}

Text localised(std::string_view plain) {
  std::u16string units(plain.begin(), plain.end());
  std::replace(units.begin(), units.end(), u'.', decimal_sign());
  return Text(units);
}

// The 15 digits of a finite number and the power of ten of the first.
struct Decimal {
  bool negative;
  std::string digits;
  int exponent;
};

Decimal decimal_of(double number) {
  std::array<char, 40> buffer{};
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(number),
                    std::chars_format::scientific, significant_digits - 1);
  const std::string_view text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::size_t e = text.find('e');
  Decimal decimal{std::signbit(number), std::string(1, text[0]), 0};
  decimal.digits += text.substr(2, e - 2);
  const char* exponent = text.data() + e + (text[e + 1] == '+' ? 2 : 1);
  std::from_chars(exponent, end, decimal.exponent);
  return decimal;
}

// Adds one to the last digit; true when a digit was carried out in front.
bool increase(std::string& digits) {
  for (std::size_t i = digits.size(); i-- > 0;) {
    if (digits[i] != '9') return ++digits[i], false;
    digits[i] = '0';
  }
  digits.insert(digits.begin(), '1');
  return true;
}

Text default_text(double number, int digits) {
  std::array<char, 40> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                          std::chars_format::general, digits);
  std::string text(buffer.data(), end);
  std::replace(text.begin(), text.end(), 'e', 'E');
  return localised(text == "-0" ? "0" : text);
}

}  // namespace

Text default_text(double number) { return default_text(number, significant_digits); }

Text default_text(float number) {
  return default_text(static_cast<double>(number), significant_digits_f32);
}

Text default_text(std::int32_t number) { return localised(std::to_string(number)); }

Text signed_text(std::int32_t number) {
  return number < 0 ? default_text(number) : joined(u" ", default_text(number).view());
}

double leading_number(std::u16string_view text) {
  std::string plain = ascii(text);
  std::erase_if(plain, [](char c) { return c == ' ' || c == '\t' || c == '\n'; });
  const std::size_t length = number_length(plain);
  return length == 0 ? 0.0 : value_of(std::string_view(plain).substr(0, length));
}

double number_from_text(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(u' ');
  if (first == std::u16string_view::npos) raise(failure::type_mismatch);
  const std::size_t last = text.find_last_not_of(u' ');
  std::u16string number(text.substr(first, last - first + 1));
  const char16_t sign = decimal_sign();
  if (sign != u'.') {
    std::replace(number.begin(), number.end(), u'.', u'?');
    std::replace(number.begin(), number.end(), sign, u'.');
  }
  const std::string plain = ascii(number);
  if (number_length(plain) != plain.size()) raise(failure::type_mismatch);
  return value_of(plain);
}

Text pattern_format(double number, int decimals) {
  if (!std::isfinite(number)) raise(failure::overflow);
  Decimal decimal = decimal_of(number);
  // Digits that stay: those before the point, the point's place, the decimals.
  const int kept = decimal.exponent + 1 + decimals;
  if (kept < 0) {
    decimal.digits.clear();
  } else if (static_cast<std::size_t>(kept) < decimal.digits.size()) {
    const bool up = decimal.digits[static_cast<std::size_t>(kept)] >= '5';
    decimal.digits.resize(static_cast<std::size_t>(kept));
    if (up && increase(decimal.digits)) ++decimal.exponent;
  }
  std::string text;
  bool zero = true;
  for (int place = std::max(decimal.exponent, 0); place >= -decimals; --place) {
    if (place == -1) text.push_back('.');
    const int i = decimal.exponent - place;
    const bool held = i >= 0 && static_cast<std::size_t>(i) < decimal.digits.size();
    text.push_back(held ? decimal.digits[static_cast<std::size_t>(i)] : '0');
    zero = zero && text.back() == '0';
  }
  if (decimal.negative && !zero) text.insert(text.begin(), '-');
  return localised(text);
}

// Through the keys, so that texts compared once and texts compared often have one
// order: a system's own comparison of two texts can differ from that of its keys.
int compare(std::u16string_view a, std::u16string_view b) {
  return a == b ? 0 : collation_key(a).compare(collation_key(b));
}

}  // namespace orv2_geo::text_services
