// text_services.h: numbers and texts the way of the user's locale.
//
// On Windows it is the locale that the user has chosen in the system's settings; case is
// ignored as the system does it, and beyond 16 bits over all of Unicode. Elsewhere the
// environment names it, by category: LC_COLLATE the order of texts,
// LC_CTYPE letters of a language's own, LC_NUMERIC the decimal sign; LC_ALL before
// them and LANG after them stand for all. A category whose locale is not installed
// counts as C.UTF-8 and leaves the others as they are named: order by code points,
// the point as decimal sign. Case is ignored over all of Unicode in every locale, C
// included, and where none is installed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "orv2_geo/frame/text.h"

namespace orv2_geo::text_services {

/// The decimal sign of the user's locale.
char16_t decimal_sign();

/// The default text of a number: up to 15 significant digits, trailing zeros
/// dropped, exponent form outside the plain range, the locale's decimal sign.
/// An f32 gives up to 7.
Text default_text(double number);
Text default_text(float number);
Text default_text(std::int32_t number);

/// The same with one blank in front of a number that is not negative.
Text signed_text(std::int32_t number);

/// Reads the longest leading part that is a number, with the point as decimal
/// sign in every locale; blanks, tabs and line feeds are passed over. A text
/// with no such part gives 0. Failure 6 when the number is out of range.
double leading_number(std::u16string_view text);

/// Reads a whole text as a number with the locale's decimal sign, blanks
/// around it allowed. Failures: 13 when it is none, 6 out of range.
double number_from_text(std::u16string_view text);

/// The number with at least one integer digit and exactly `decimals` (0 or
/// more) decimals, taken from its form with 15 significant digits and rounded
/// half away from zero; the locale's decimal sign; no minus before a zero.
Text pattern_format(double number, int decimals);

/// Negative, zero or positive as `a` comes before, with or after `b` in the
/// collation of the user's locale, case ignored.
int compare(std::u16string_view a, std::u16string_view b);

/// What a text is to the collation: keys compare, unit by unit, as `compare`
/// compares their texts. For texts that are compared often.
std::u32string collation_key(std::u16string_view text);

/// How many units at the front of a key are its first level, which decides before
/// all others. Of two keys whose first levels differ, one being the beginning of
/// the other or not, the other levels are of no account.
std::size_t first_level(std::u32string_view key);

}  // namespace orv2_geo::text_services
