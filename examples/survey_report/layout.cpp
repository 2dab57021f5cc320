#include "survey_report/layout.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "survey_report/utf8.h"

namespace survey_report {

namespace {

constexpr std::string_view gap = "  ";

std::string padded(const std::string& cell, std::size_t width, Align align) {
  const std::string blanks(width - display_width(cell), ' ');
  return align == Align::right ? blanks + cell : cell + blanks;
}

void end_line(std::string& text) {
  text.erase(text.find_last_not_of(' ') + 1);
  text += '\n';
}

// The longest finite number has 309 digits before the point, the smallest 324
// after it and 16 more.
using Room = std::array<char, 400>;

}  // namespace

std::string fixed(double value, int decimals) {
  Room room;
  const auto [end, error] = std::to_chars(room.data(), room.data() + room.size(), value,
                                          std::chars_format::fixed, decimals);
  std::string text(room.data(), end);
  const bool is_zero = text.find_first_not_of("-0.") == std::string::npos;
  if (is_zero && text.starts_with('-')) text.erase(0, 1);
  return text;
}

std::string exact(double value, int decimals) {
  Room room;
  const auto [end, error] =
      std::to_chars(room.data(), room.data() + room.size(), value, std::chars_format::fixed);
  const std::string text(room.data(), end);
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::size_t needed = point + 1 + static_cast<std::size_t>(decimals);
  if (decimals == 0 || text.size() >= needed) return text;
  return text + (point == text.size() ? "." : "") +
         std::string(needed - std::max(text.size(), point + 1), '0');
}

std::string azimuth_text(double azimuth) {
  const std::string text = fixed(azimuth, 4);
  return text == "400.0000" ? fixed(0.0, 4) : text;
}

void Table::add(std::vector<std::string> cells) {
  cells.resize(columns_.size());
  for (const std::string& cell : cells) cells_.push_back(without_controls(cell));
}

std::vector<std::size_t> Table::widths() const {
  std::vector<std::size_t> widths;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    std::size_t width = display_width(columns_[i].heading);
    for (std::size_t j = i; j < cells_.size(); j += columns_.size()) {
      width = std::max(width, display_width(cells_[j]));
    }
    widths.push_back(width);
  }
  return widths;
}

std::string Table::text() const {
  const std::vector<std::size_t> width = widths();
  std::string headings;
  std::string rule;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const std::string_view before = i == 0 ? "" : gap;
    headings.append(before).append(padded(columns_[i].heading, width[i], columns_[i].align));
    rule.append(before).append(width[i], '-');
  }
  end_line(headings);
  end_line(rule);
  std::string text = headings + rule;
  for (std::size_t row = 0; row < cells_.size(); row += columns_.size()) {
    std::string line;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      line.append(i == 0 ? "" : gap).append(padded(cells_[row + i], width[i], columns_[i].align));
    }
    end_line(line);
    text += line;
  }
  return text;
}

}  // namespace survey_report
