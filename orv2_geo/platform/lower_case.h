// lower_case.h: lower case over all of Unicode, without a locale.
#pragma once

namespace orv2_geo {

/// The lower-case form of a code point, or the code point itself where it has none.
/// Of a form of several letters the first.
/// Source: the simple case mappings of the Unicode Character Database 14.0.
char32_t lower_case(char32_t point) noexcept;

}  // namespace orv2_geo
