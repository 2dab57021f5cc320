#include "orv2_geo/dialogs/m_sys.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "orv2_geo/frame/checked_integer.h"
#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/frame/treatments.h"
#include "orv2_geo/platform/text_services.h"

namespace orv2_geo {

namespace {

using text_services::default_text;
using text_services::leading_number;
using Short = CheckedInteger<std::int16_t>;

constexpr std::string_view pattern_source = "0.000000000000000";

// The parse stops at a comma, so that 17.857... comes back as 17.
bool comma_is_the_decimal_sign() {
  return default_text(leading_number(default_text(125.0 / 7.0).view())) == Text(u"17");
}

Text text_of(const Variant& number) {
  return std::visit(
      [](const auto& held) -> Text {
        using T = std::remove_cvref_t<decltype(held)>;
        if constexpr (std::is_same_v<T, Text>) return held;
        if constexpr (std::is_same_v<T, std::monostate>) return {};
        if constexpr (std::is_floating_point_v<T>) {
          if (!std::isfinite(held)) raise(failure::overflow);
        }
        if constexpr (std::is_arithmetic_v<T>) return default_text(held);
        raise(failure::type_mismatch);
      },
      number.value());
}

// The first comma only: of "1.234,5" the parse then reads 1.234.
Text with_a_point(const Text& text) {
  std::u16string units(text.view());
  const std::size_t comma = units.find(u',');
  if (comma != std::u16string::npos) units[comma] = u'.';
  return Text(units);
}

Text with_decimals(const Text& text, std::int16_t decimals) {
  const auto wanted = static_cast<std::size_t>((Short(decimals) + Short(2)).value());
  const std::string_view pattern = pattern_source.substr(0, wanted);
  const double value = leading_number(with_a_point(text).view());
  return with_a_point(text_services::pattern_format(value, static_cast<int>(pattern.size()) - 2));
}

std::u16string_view trimmed(std::u16string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(u' '), text.size());
  return text.substr(first, text.find_last_not_of(u' ') + 1 - first);
}

Short length_of(std::u16string_view text) {
  if (text.size() > std::numeric_limits<std::int16_t>::max()) raise(failure::overflow);
  return {static_cast<std::int16_t>(text.size())};
}

Text padded(const Text& text, std::int16_t decimals, std::int16_t width) {
  const std::u16string_view digits = trimmed(text.view());
  Short length = length_of(digits);
  // What was asked for is taken off, even where 15 decimals are all there are.
  if (decimals > 0) length = length - Short(decimals) - Short(1);
  if (width <= length.value()) return text;
  const Short blanks = Short(width) - length;
  return joined(std::u16string(static_cast<std::size_t>(blanks.value()), u' '), digits);
}

}  // namespace

Text Texto_de_Numero(const Variant& Numero, const std::int16_t& Decimales,
                     const std::int16_t& Ancho) {
  const auto work = [&] {
    // Asked on every call; with either answer the text is made the same way.
    [[maybe_unused]] const bool comma = comma_is_the_decimal_sign();
    Text text = text_of(Numero);
    if (Decimales > 0) text = with_decimals(text, Decimales);
    if (Ancho > 0) text = padded(text, Decimales, Ancho);
    return text;
  };
  return handled("", work, [](const RunFailure&) { return Text(); });
}

}  // namespace orv2_geo
