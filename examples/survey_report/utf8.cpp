#include "survey_report/utf8.h"

#include <algorithm>

namespace survey_report {

namespace {

// What a first byte announces: how many bytes, the bits it gives, and the
// smallest character that may be written with so many.
struct Lead {
  std::size_t length;
  char32_t bits;
  char32_t smallest;
};

std::optional<Lead> lead_of(unsigned char byte) {
  const char32_t value = byte;
  if (value < 0x80) return Lead{1, value, 0};
  if ((value & 0xE0) == 0xC0) return Lead{2, value & 0x1F, 0x80};
  if ((value & 0xF0) == 0xE0) return Lead{3, value & 0x0F, 0x800};
  if ((value & 0xF8) == 0xF0) return Lead{4, value & 0x07, 0x10000};
  return std::nullopt;
}

bool is_character(char32_t value) {
  const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
  return value <= 0x10FFFF && !surrogate;
}

bool stands_over_another(char32_t character) { return character >= 0x300 && character <= 0x36F; }

bool is_ascii(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

bool is_control(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return value < 0x20 || value == 0x7F;
}

}  // namespace

std::optional<char32_t> take_character(std::string_view& text) {
  if (text.empty()) return std::nullopt;
  const std::optional<Lead> lead = lead_of(static_cast<unsigned char>(text.front()));
  if (!lead || lead->length > text.size()) return std::nullopt;
  char32_t character = lead->bits;
  for (const char byte : text.substr(1, lead->length - 1)) {
    const char32_t value = static_cast<unsigned char>(byte);
    if ((value & 0xC0) != 0x80) return std::nullopt;
    character = (character << 6) | (value & 0x3F);
  }
  if (character < lead->smallest || !is_character(character)) return std::nullopt;
  text.remove_prefix(lead->length);
  return character;
}

std::optional<std::size_t> first_byte_not_utf8(std::string_view text) {
  std::string_view rest = text;
  while (take_character(rest)) {
  }
  if (rest.empty()) return std::nullopt;
  return text.size() - rest.size();
}

std::size_t column_of(std::string_view line, std::size_t at) {
  const std::string_view before = line.substr(0, at);
  const auto begins = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
  return static_cast<std::size_t>(std::count_if(before.begin(), before.end(), begins)) + 1;
}

std::size_t display_width(std::string_view utf8) {
  if (std::all_of(utf8.begin(), utf8.end(), is_ascii)) return utf8.size();  // most texts
  std::size_t width = 0;
  while (const std::optional<char32_t> character = take_character(utf8)) {
    if (!stands_over_another(*character)) ++width;
  }
  return width + utf8.size();  // bytes that are no UTF-8 count one each
}

std::string without_controls(std::string_view utf8) {
  std::string plain(utf8);
  std::replace_if(plain.begin(), plain.end(), is_control, ' ');
  return plain;
}

std::string shortened(std::string_view text, std::size_t longest) {
  if (display_width(text) <= longest) return std::string(text);
  std::string_view rest = text;
  for (std::size_t i = 0; i + 1 < longest; ++i) {
    if (!take_character(rest)) rest.remove_prefix(1);
  }
  return std::string(text.substr(0, text.size() - rest.size())) + "\u2026";
}

}  // namespace survey_report
