#include "survey_report/layout.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "survey_report/utf8.h"

namespace survey_report {

namespace {

constexpr std::string_view gap = "  ";

// One absurdly long cell does not widen all rows: it runs over its column.
constexpr std::size_t widest_column = 60;

void put_padded(Writer& out, std::string_view cell, std::size_t width, Align align) {
  const std::size_t blanks = width - std::min(width, display_width(cell));
  if (align == Align::right) out.repeat(blanks, ' ');
  out << cell;
  if (align == Align::left) out.repeat(blanks, ' ');
}

void end_line(Writer& out) {
  std::string& text = out.buffer();
  text.erase(text.find_last_not_of(' ') + 1);
  out << '\n';
}

bool is_control(char letter) { return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F; }

// ---- Numbers of few decimals, without the long way that any number needs

constexpr int most_quick_decimals = 4;
constexpr std::array<int, most_quick_decimals + 1> powers_of_ten = {1, 10, 100, 1000, 10000};
constexpr double largest_quick = 1e11;  // times a power of ten it has 15 digits, which doubles hold

// A whole number of 10^-decimals.
void append_units(std::string& text, bool negative, std::uint64_t units, int decimals) {
  std::array<char, 24> room;
  const auto [end, error] = std::to_chars(room.data(), room.data() + room.size(), units);
  const std::string_view digits(room.data(), static_cast<std::size_t>(end - room.data()));
  const auto behind = static_cast<std::size_t>(decimals);
  if (negative) text += '-';
  if (digits.size() <= behind) text.append(behind + 1 - digits.size(), '0');
  text += digits;
  if (behind > 0) text.insert(text.size() - behind, 1, '.');
}

// A product with 10^4 is exact in 64 bits, so that it is rounded but once.
bool append_fixed_quickly(std::string& text, double value, int decimals) {
  if constexpr (std::numeric_limits<long double>::digits < 64) return false;
  if (decimals > most_quick_decimals || !(std::abs(value) < largest_quick)) return false;
  const long double exactly =
      static_cast<long double>(std::abs(value)) * powers_of_ten[static_cast<std::size_t>(decimals)];
  const auto units = static_cast<std::uint64_t>(std::llrint(exactly));
  append_units(text, std::signbit(value) && units != 0, units, decimals);
  return true;
}

// Of no more than 15 digits only one number is nearest to a double, and so the shortest.
bool append_exact_quickly(std::string& text, double value, int decimals) {
  if (decimals == 0 || decimals > most_quick_decimals) return false;
  if (!(std::abs(value) < largest_quick)) return false;
  const double power = powers_of_ten[static_cast<std::size_t>(decimals)];
  const auto units = static_cast<std::uint64_t>(std::llrint(std::abs(value) * power));
  if (static_cast<double>(units) / power != std::abs(value)) return false;
  append_units(text, std::signbit(value), units, decimals);
  return true;
}

// The longest finite number has 309 digits before the point, the smallest 324
// after it and 16 more.
using Room = std::array<char, 400>;

}  // namespace

void append_fixed(std::string& text, double value, int decimals) {
  if (append_fixed_quickly(text, value, decimals)) return;
  Room room;
  const auto [end, error] = std::to_chars(room.data(), room.data() + room.size(), value,
                                          std::chars_format::fixed, decimals);
  const std::string_view digits(room.data(), static_cast<std::size_t>(end - room.data()));
  const bool no_sign =
      digits.starts_with('-') && digits.find_first_not_of("-0.") == std::string_view::npos;
  text += no_sign ? digits.substr(1) : digits;
}

std::string fixed(double value, int decimals) {
  std::string text;
  append_fixed(text, value, decimals);
  return text;
}

void append_exact(std::string& text, double value, int decimals) {
  if (append_exact_quickly(text, value, decimals)) return;
  Room room;
  const auto [end, error] =
      std::to_chars(room.data(), room.data() + room.size(), value, std::chars_format::fixed);
  const std::string_view digits(room.data(), static_cast<std::size_t>(end - room.data()));
  text += digits;
  const std::size_t point = std::min(digits.find('.'), digits.size());
  const std::size_t needed = point + 1 + static_cast<std::size_t>(decimals);
  if (decimals == 0 || digits.size() >= needed) return;
  if (point == digits.size()) text += '.';
  text.append(needed - std::max(digits.size(), point + 1), '0');
}

std::string exact(double value, int decimals) {
  std::string text;
  append_exact(text, value, decimals);
  return text;
}

std::string azimuth_text(double azimuth) {
  const std::string text = fixed(azimuth, 4);
  return text == "400.0000" ? fixed(0.0, 4) : text;
}

TableRows::TableRows(std::vector<Column> columns, std::vector<std::size_t> widths)
    : columns_(std::move(columns)), widths_(std::move(widths)) {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    widths_[i] = std::min(std::max(widths_[i], display_width(columns_[i].heading)), widest_column);
  }
}

void TableRows::head(Writer& out) const {
  std::vector<std::string_view> headings;
  for (const Column& column : columns_) headings.push_back(column.heading);
  row(out, headings);
  for (std::size_t i = 0; i < widths_.size(); ++i) {
    if (i > 0) out << gap;
    out.repeat(widths_[i], '-');
  }
  out << '\n';
}

void TableRows::row(Writer& out, std::span<const std::string_view> cells) const {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (i > 0) out << gap;
    const bool plain = std::none_of(cells[i].begin(), cells[i].end(), is_control);
    put_padded(out, plain ? cells[i] : without_controls(cells[i]), widths_[i], columns_[i].align);
  }
  end_line(out);
  out.pause();
}

void Table::add(std::vector<std::string> cells) {
  cells.resize(columns_.size());
  for (std::string& cell : cells) cells_.push_back(std::move(cell));
}

std::vector<std::size_t> Table::widths() const {
  std::vector<std::size_t> widths(columns_.size());
  for (std::size_t i = 0; i < cells_.size(); ++i) {
    std::size_t& width = widths[i % columns_.size()];
    width = std::max(width, display_width(cells_[i]));
  }
  return widths;
}

std::string Table::text() const {
  const TableRows rows(columns_, widths());
  Writer out;
  rows.head(out);
  std::vector<std::string_view> cells(columns_.size());
  for (std::size_t row = 0; row < cells_.size(); row += columns_.size()) {
    for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = cells_[row + i];
    rows.row(out, cells);
  }
  return out.take();
}

}  // namespace survey_report
