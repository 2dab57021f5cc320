#include "survey_report/decoding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "survey_report/utf8.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

using std::string_view_literals::operator""sv;

// How files begin that are no text.
struct Signature {
  std::string_view bytes;
  ExitCode code;
  Word what;
};

constexpr Signature signatures[] = {
    {"PK\x03\x04"sv, ExitCode::zipped, words::a_zip_file},
    {"PK\x05\x06"sv, ExitCode::zipped, words::a_zip_file},
    {"\x1F\x8B"sv, ExitCode::zipped, words::a_compressed_file},
    {"BZh"sv, ExitCode::zipped, words::a_compressed_file},
    {"\xFD"
     "7zXZ"sv,
     ExitCode::zipped, words::a_compressed_file},
    {"7z\xBC\xAF"sv, ExitCode::zipped, words::a_compressed_file},
    {"Rar!"sv, ExitCode::zipped, words::a_compressed_file},
    {"%PDF-"sv, ExitCode::binary, words::a_pdf_file},
    {"\xD0\xCF\x11\xE0"sv, ExitCode::binary, words::an_office_file},
    {"AC10"sv, ExitCode::binary, words::a_drawing_file},
};

constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";
constexpr std::string_view low_first_mark = "\xFF\xFE";
constexpr std::string_view high_first_mark = "\xFE\xFF";
constexpr char end_of_file = '\x1A';  // as some old programs write it

// Of Windows-1252, from 80 to 9F; 0 is no character.
constexpr std::array<char16_t, 32> windows_letters = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

constexpr char32_t first_surrogate = 0xD800;
constexpr char32_t second_surrogate = 0xDC00;
constexpr char32_t past_surrogates = 0xE000;

bool is_high(char byte) { return static_cast<unsigned char>(byte) >= 0x80; }

// The first byte from there on that is not of ASCII, eight at a time.
std::size_t next_high(std::string_view bytes, std::size_t from) {
  constexpr std::uint64_t high_bits = 0x8080808080808080;
  std::uint64_t word = 0;
  while (from + sizeof word <= bytes.size()) {
    std::memcpy(&word, bytes.data() + from, sizeof word);
    if ((word & high_bits) != 0) break;
    from += sizeof word;
  }
  while (from < bytes.size() && !is_high(bytes[from])) ++from;
  return from;
}

void append_utf8(std::string& text, char32_t character) {
  const auto tail = [&](int shift) {
    text += static_cast<char>(0x80 | ((character >> shift) & 0x3F));
  };
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | (character >> 6));
    tail(0);
  } else if (character < 0x10000) {
    text += static_cast<char>(0xE0 | (character >> 12));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0 | (character >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

// A line counted from 1; its end is LF, or CR where the text has no LF.
struct LinePlace {
  std::size_t line;
  std::size_t begin;
};

LinePlace line_of(std::string_view text, std::size_t at) {
  const char end = text.find('\n') == text.npos ? '\r' : '\n';
  const std::string_view before = text.substr(0, at);
  const std::size_t last = before.rfind(end);
  return {static_cast<std::size_t>(std::count(before.begin(), before.end(), end)) + 1,
          last == before.npos ? 0 : last + 1};
}

// Where every byte is a character.
BadLine fault_at(std::string_view bytes, std::size_t at, ExitCode code, std::string what) {
  const LinePlace place = line_of(bytes, at);
  return {place.line, at - place.begin + 1, std::move(what), code};
}

BadLine fault_behind(std::string_view utf8, std::string what) {
  const LinePlace place = line_of(utf8, utf8.size());
  return {place.line, column_of(utf8.substr(place.begin), utf8.size() - place.begin),
          std::move(what), ExitCode::bad_characters};
}

std::string hexadecimal(char byte) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto value = static_cast<unsigned char>(byte);
  return {digits[value / 16], digits[value % 16]};
}

// What the bytes that are not of ASCII are: the first of either sort.
struct Alphabets {
  std::size_t utf8 = std::string_view::npos;
  std::size_t other = std::string_view::npos;
};

Alphabets alphabets_of(std::string_view bytes) {
  Alphabets found;
  std::size_t at = next_high(bytes, 0);
  while (at < bytes.size()) {
    std::string_view rest = bytes.substr(at);
    const bool valid = take_character(rest).has_value();
    std::size_t& first = valid ? found.utf8 : found.other;
    first = std::min(first, at);
    at = next_high(bytes, valid ? bytes.size() - rest.size() : at + 1);
  }
  return found;
}

std::optional<char32_t> windows_character(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  if (value < 0x80 || value >= 0xA0) return value;
  const char16_t letter = windows_letters[value - 0x80U];
  return letter == 0 ? std::nullopt : std::optional<char32_t>(letter);
}

}  // namespace

Decoded::Decoded(std::string_view bytes) {
  for (const Signature& signature : signatures) {
    if (!bytes.starts_with(signature.bytes)) continue;
    fault_ = BadLine{0, 0, signature.what.text(), signature.code};
    return;
  }
  if (bytes.starts_with(low_first_mark) || bytes.starts_with(high_first_mark)) {
    decode_utf16(bytes.substr(low_first_mark.size()), bytes.starts_with(low_first_mark));
    return;
  }
  if (bytes.starts_with(utf8_mark)) bytes.remove_prefix(utf8_mark.size());
  if (bytes.ends_with(end_of_file)) bytes.remove_suffix(1);
  decode_bytes(bytes);
}

void Decoded::decode_utf16(std::string_view bytes, bool low_byte_first) {
  const auto unit = [&](std::size_t i) -> char32_t {
    const auto first = static_cast<unsigned char>(bytes[2 * i]);
    const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
    return low_byte_first ? first + 256U * second : 256U * first + second;
  };
  const std::size_t units = bytes.size() / 2;
  converted_.reserve(units + units / 8);
  for (std::size_t i = 0; i < units; ++i) {
    char32_t character = unit(i);
    const bool first = character >= first_surrogate && character < second_surrogate;
    const char32_t second = first && i + 1 < units ? unit(i + 1) : 0;
    if (first && second >= second_surrogate && second < past_surrogates) {
      character = 0x10000 + ((character - first_surrogate) << 10) + (second - second_surrogate);
      ++i;
    } else if (character >= first_surrogate && character < past_surrogates) {
      fault_ = fault_behind(converted_, words::half_a_character.text());
      return;
    } else if (character == 0) {
      fault_ = fault_behind(converted_, words::a_zero.text());
      fault_->code = ExitCode::binary;
      return;
    }
    append_utf8(converted_, character);
  }
  if (bytes.size() % 2 != 0) {
    fault_ = fault_behind(converted_, words::half_a_character.text());
    return;
  }
  text_ = converted_;
}

void Decoded::decode_bytes(std::string_view bytes) {
  if (const std::size_t zero = bytes.find('\0'); zero != bytes.npos) {
    fault_ = fault_at(bytes, zero, ExitCode::binary, words::a_zero.text());
    return;
  }
  const Alphabets found = alphabets_of(bytes);
  text_ = bytes;
  if (found.other == bytes.npos) return;
  if (found.utf8 != bytes.npos) {
    const std::string line = std::to_string(line_of(bytes, found.utf8).line);
    fault_ = fault_at(bytes, found.other, ExitCode::mixed, words::two_alphabets.with({line}));
    return;
  }
  converted_.reserve(bytes.size() + bytes.size() / 8);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const std::optional<char32_t> character = windows_character(bytes[i]);
    if (!character) {
      fault_ = fault_at(bytes, i, ExitCode::bad_characters,
                        words::no_character.with({hexadecimal(bytes[i])}));
      return;
    }
    append_utf8(converted_, *character);
  }
  text_ = converted_;
}

}  // namespace survey_report
