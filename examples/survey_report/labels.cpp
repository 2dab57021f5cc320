#include "survey_report/labels.h"

#include <algorithm>
#include <cmath>

#include "survey_report/utf8.h"

namespace survey_report {

namespace {

constexpr double cell = 0.25;  // the side of the squares in which room is counted
constexpr double block = 2.5;  // the side of those in which failures are counted
constexpr std::uint8_t most_failures = 4;
constexpr std::size_t word_bits = 64;
constexpr double line_step = 0.4;  // a line is taken as a row of squares
constexpr double line_reach = 0.25;
constexpr double leader_reach = 0.15;

// ---- Letters

constexpr std::string_view wide_letters = "MWmw@%";
constexpr std::string_view narrow_letters = " .,:;'|!ijl-()[]/";

// Of the letters' size, in the widest of the usual fonts.
double width_of(char32_t character) {
  if (character >= 0x1100) return 1.0;
  if (character >= 0x80) return 0.79;
  const char letter = static_cast<char>(character);
  if (wide_letters.find(letter) != std::string_view::npos) return 1.0;
  if (narrow_letters.find(letter) != std::string_view::npos) return 0.4;
  return letter >= 'A' && letter <= 'Z' ? 0.79 : 0.64;
}

bool stands_on_the_line(char letter) {
  const bool digit = letter >= '0' && letter <= '9';
  const bool capital = letter >= 'A' && letter <= 'Z' && letter != 'Q';
  return digit || capital || letter == '.' || letter == '-' || letter == '+' || letter == ' ';
}

// ---- Positions

bool inside(const Rect& rect, const Rect& area) {
  return rect.left >= area.left && rect.right <= area.right && rect.top >= area.top &&
         rect.bottom <= area.bottom;
}

// Where a label may stand, the best first.
struct Position {
  double x;  // -1: left of the symbol, 0: centred, 1: right of it
  double y;  // -1: above, 0: centred, 1: below
};

constexpr Position positions[] = {{1, 0},   {1, -1}, {1, 1},  {-1, 0},
                                  {-1, -1}, {-1, 1}, {0, -1}, {0, 1}};

Rect box_at(const Position& position, const Place& at, double reach, double width, double height) {
  // Beside the symbol a label needs to be raised or lowered by half its height
  // only; it is then off a level line through the symbol.
  const bool is_beside = position.x != 0.0;
  const double off_y = is_beside ? line_reach + 0.1 : reach;
  const double x = at.x + position.x * (reach + width / 2) - width / 2;
  const double y = at.y + position.y * (off_y + height / 2) - height / 2;
  return {x, y, x + width, y + height};
}

// ---- Leaders

constexpr double leader_lengths[] = {2.0, 3.5, 5.0, 7.0, 9.5, 12.0};

constexpr double slanted = 0.7071067811865476;
constexpr double steep = 0.9238795325112867;
constexpr double flat = 0.3826834323650898;
constexpr Position directions[] = {{slanted, -slanted},
                                   {slanted, slanted},
                                   {-slanted, -slanted},
                                   {-slanted, slanted},
                                   {steep, -flat},
                                   {steep, flat},
                                   {-steep, -flat},
                                   {-steep, flat},
                                   {flat, -steep},
                                   {flat, steep},
                                   {-flat, -steep},
                                   {-flat, steep},
                                   {1, 0},
                                   {-1, 0}};

Place along(const Place& at, const Position& direction, double distance) {
  return {at.x + direction.x * distance, at.y + direction.y * distance};
}

// The leader meets the middle of the side that looks at the point.
Rect box_at_end(const Place& end, const Position& direction, double width, double height) {
  const double left = direction.x > 0.0 ? end.x : end.x - width;
  return {left, end.y - height / 2, left + width, end.y + height / 2};
}

std::size_t cells_for(double length, double side) {
  return static_cast<std::size_t>(std::max(1.0, std::ceil(length / side)));
}

std::size_t clamped(double index, std::size_t count) {
  return static_cast<std::size_t>(std::clamp(index, 0.0, static_cast<double>(count)));
}

// The bits from `first` up to `last` of the word that starts at `word`.
std::uint64_t bits_of(std::size_t word, std::size_t first, std::size_t last) {
  const std::size_t from = std::max(first, word) - word;
  const std::size_t count = std::min(last, word + word_bits) - word - from;
  const std::uint64_t ones =
      count == word_bits ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
  return ones << from;
}

template <class Visit>
void visit_line(const Place& from, const Place& to, double reach, double step, Visit visit) {
  const double length = std::hypot(to.x - from.x, to.y - from.y);
  const auto steps = static_cast<int>(std::max(1.0, std::ceil(length / step)));
  for (int i = 0; i <= steps; ++i) {
    const double part = static_cast<double>(i) / steps;
    const double x = std::lerp(from.x, to.x, part);
    const double y = std::lerp(from.y, to.y, part);
    visit(Rect{x - reach, y - reach, x + reach, y + reach});
  }
}

}  // namespace

double text_width(std::string_view utf8, double size) {
  double width = 0.0;
  while (!utf8.empty()) {
    const std::string_view before = utf8;
    const std::optional<char32_t> character = take_character(utf8);
    if (!character) utf8.remove_prefix(1);
    const std::size_t bytes = before.size() - utf8.size();
    const bool seen = bytes == 1 || display_width(before.substr(0, bytes)) > 0;
    if (seen) width += width_of(character.value_or('0'));
  }
  return width * size;
}

LetterReach letter_reach(std::string_view utf8, double size) {
  const bool plain = std::all_of(utf8.begin(), utf8.end(), stands_on_the_line);
  return plain ? LetterReach{0.01 * size, 0.74 * size} : LetterReach{0.24 * size, 0.95 * size};
}

// From a column and row up to others, which are not of it.
struct LabelBoard::Cells {
  std::size_t left;
  std::size_t top;
  std::size_t right;
  std::size_t bottom;
};

LabelBoard::LabelBoard(const Rect& area)
    : area_(area),
      columns_(cells_for(area.width(), cell)),
      rows_(cells_for(area.height(), cell)),
      words_in_row_((columns_ + word_bits - 1) / word_bits),
      taken_(words_in_row_ * rows_),
      block_columns_(cells_for(area.width(), block)),
      block_rows_(cells_for(area.height(), block)),
      failures_(block_columns_ * block_rows_) {}

LabelBoard::Cells LabelBoard::cells_of(const Rect& rect) const {
  return {clamped(std::floor((rect.left - area_.left) / cell), columns_),
          clamped(std::floor((rect.top - area_.top) / cell), rows_),
          clamped(std::ceil((rect.right - area_.left) / cell), columns_),
          clamped(std::ceil((rect.bottom - area_.top) / cell), rows_)};
}

bool LabelBoard::is_free(const Rect& rect) const {
  const Cells cells = cells_of(rect);
  for (std::size_t row = cells.top; row < cells.bottom; ++row) {
    for (std::size_t word = cells.left / word_bits; word * word_bits < cells.right; ++word) {
      const std::uint64_t bits = bits_of(word * word_bits, cells.left, cells.right);
      if ((taken_[row * words_in_row_ + word] & bits) != 0) return false;
    }
  }
  return true;
}

void LabelBoard::occupy(const Rect& rect) {
  const Cells cells = cells_of(rect);
  for (std::size_t row = cells.top; row < cells.bottom; ++row) {
    for (std::size_t word = cells.left / word_bits; word * word_bits < cells.right; ++word) {
      taken_[row * words_in_row_ + word] |= bits_of(word * word_bits, cells.left, cells.right);
    }
  }
}

void LabelBoard::occupy_line(const Place& from, const Place& to) {
  visit_line(from, to, line_reach, line_step, [&](const Rect& rect) { occupy(rect); });
}

bool LabelBoard::is_clear(const Place& from, const Place& to) const {
  bool clear = true;
  visit_line(from, to, leader_reach, 2 * leader_reach,
             [&](const Rect& rect) { clear = clear && is_free(rect); });
  return clear;
}

std::size_t LabelBoard::block_of(const Place& at) const {
  const std::size_t column = clamped((at.x - area_.left) / block, block_columns_ - 1);
  const std::size_t row = clamped((at.y - area_.top) / block, block_rows_ - 1);
  return row * block_columns_ + column;
}

bool LabelBoard::is_given_up(const Place& at) const {
  return failures_[block_of(at)] >= most_failures;
}

std::optional<LabelRoom> LabelBoard::beside(const Place& at, double reach, double width,
                                            double height) const {
  for (const Position& position : positions) {
    const Rect box = box_at(position, at, reach, width, height);
    if (inside(box, area_) && is_free(box)) return LabelRoom{box, std::nullopt};
  }
  return std::nullopt;
}

std::optional<LabelRoom> LabelBoard::led(const Place& at, double reach, double width,
                                         double height) const {
  for (const double length : leader_lengths) {
    for (const Position& direction : directions) {
      const Place end = along(at, direction, reach + length);
      const Rect box = box_at_end(end, direction, width, height);
      if (!inside(box, area_) || !is_free(box)) continue;
      // Off the symbol's own square, whose corners are farther than its sides.
      const double larger = std::max(std::abs(direction.x), std::abs(direction.y));
      const Place start = along(at, direction, (reach + cell + leader_reach) / larger);
      if (is_clear(start, end)) return LabelRoom{box, Leader{along(at, direction, reach), end}};
    }
  }
  return std::nullopt;
}

std::optional<LabelRoom> LabelBoard::place(const Place& at, double reach, double width,
                                           double height) {
  if (is_given_up(at)) return std::nullopt;
  std::optional<LabelRoom> room = beside(at, reach, width, height);
  if (!room) room = led(at, reach, width, height);
  if (!room) {
    ++failures_[block_of(at)];
    return std::nullopt;
  }
  occupy(room->box);
  if (room->leader) {
    visit_line(room->leader->from, room->leader->to, leader_reach, 2 * leader_reach,
               [&](const Rect& rect) { occupy(rect); });
  }
  return room;
}

}  // namespace survey_report
