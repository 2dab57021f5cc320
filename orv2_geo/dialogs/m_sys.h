// m_sys.h: the text of a number in a table's cell.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/text.h"
#include "orv2_geo/frame/variant.h"

namespace orv2_geo {

/// A number, or a text that reads as one, with `Decimales` decimals and a point
/// as decimal sign in every locale: 1234.5678 with 3 is "1234.568".
///
/// The number passes through its default text, so that 15 significant digits
/// reach the decimals, and is rounded half away from zero. A text is read up to
/// where it stops being a number, its first comma as the point; without a
/// number in front it is 0.
///
/// Decimales  1 to 15, above 15 as 15. 0 or less: the default text as it
///            stands, the locale's decimal sign included.
/// Ancho      blanks are put in front until the whole part, sign included, is
///            so wide; with `Decimales` 0 or less, until the whole text is. 0
///            or less, or a part as wide already: nothing is put in front and
///            nothing cut off.
///
/// Never fails. What has no text, such as a null, an object or a number that is
/// not finite, gives empty text; so do a `Decimales` above 32765 and widths
/// that do not fit in 16 bits.
Text Texto_de_Numero(const Variant& Numero, const std::int16_t& Decimales,
                     const std::int16_t& Ancho);

}  // namespace orv2_geo
