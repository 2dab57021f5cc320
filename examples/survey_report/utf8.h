// utf8.h: how wide a text is in a fixed-pitch font, and whether it is UTF-8.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace survey_report {

/// Takes the first character off `text`. Nothing when the bytes there are no
/// UTF-8 or `text` is empty; `text` then stays as it is.
std::optional<char32_t> take_character(std::string_view& text);

/// Where the bytes stop being UTF-8, from 0; nothing when all of them are.
std::optional<std::size_t> first_byte_not_utf8(std::string_view text);

/// The column, counted in characters from 1, of the byte at that place of a line.
std::size_t column_of(std::string_view line, std::size_t at);

/// Columns that a UTF-8 text takes: one a character, none for an accent that
/// is put over the letter before it.
std::size_t display_width(std::string_view utf8);

/// The text with every control character (tabs, escapes) as a blank, so that
/// it stays on its line.
std::string without_controls(std::string_view utf8);

/// A text of at most so many characters: of a longer one the beginning and "…".
std::string shortened(std::string_view text, std::size_t longest);

}  // namespace survey_report
