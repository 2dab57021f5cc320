#include "survey_report/points.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "survey_report/decoding.h"
#include "survey_report/layout.h"
#include "survey_report/utf8.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr std::string_view blanks = " \t";
constexpr std::size_t fields_needed = 4;   // all but the code
constexpr std::size_t fields_allowed = 5;  // with the code
constexpr std::size_t fields_held = fields_allowed + 1;
constexpr std::size_t characters_shown = 40;
constexpr std::size_t longest_number = 400;  // of characters; past every double's exact digits
constexpr int fewest_decimals = 3;
constexpr std::size_t lines_a_look = 16384;  // between two words on the progress

// What is wrong with the line at hand, and at which of its bytes.
class LineFault : public std::runtime_error {
 public:
  LineFault(ExitCode code, std::size_t at, const std::string& what)
      : std::runtime_error(what), code_(code), at_(at) {}

  ExitCode code() const { return code_; }
  std::size_t at() const { return at_; }

 private:
  ExitCode code_;
  std::size_t at_;
};

bool is_blank(char letter) { return letter == ' ' || letter == '\t'; }

std::string_view after_blanks(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && is_blank(text[at])) ++at;
  return text.substr(at);
}

std::string_view before_blanks(std::string_view text) {
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view trimmed(std::string_view text) { return before_blanks(after_blanks(text)); }

// A field as a message quotes it: on one line, and not too long.
std::string quoted(std::string_view field) {
  std::string_view rest = field;
  for (std::size_t i = 0; i < characters_shown && !rest.empty(); ++i) take_character(rest);
  const std::string shown = without_controls(field.substr(0, field.size() - rest.size()));
  return '"' + shown + (rest.empty() ? "\"" : "...\"");
}

// ---- Fields of a line

struct Field {
  std::string_view text;
  std::size_t at = 0;  // in the line, in bytes
};

// What parts the fields of a file.
struct Separator {
  char letter;  // a blank: one or more blanks and tabs
  Word name;
};

constexpr Separator separators[] = {
    {',', words::commas}, {';', words::semicolons}, {'\t', words::tabs}, {' ', words::blanks}};

// The fields of one line. Those behind the ones that a point may have are only counted.
class Fields {
 public:
  // Throws LineFault.
  void split(std::string_view line, char separator) {
    line_ = line;
    rest_ = line;
    separator_ = separator;
    count_ = 0;
    skip_blanks();
    do take();
    while (!rest_.empty() && pass_separator());
  }

  std::size_t count() const { return count_; }
  const Field& operator[](std::size_t i) const { return fields_[i]; }

 private:
  bool between_blanks() const { return separator_ == ' '; }

  // A separating tab is no blank.
  void skip_blanks() {
    while (!rest_.empty() && is_blank(rest_.front()) && rest_.front() != separator_)
      rest_.remove_prefix(1);
    if (between_blanks()) rest_ = after_blanks(rest_);
  }

  // False at blanks that end the line.
  bool pass_separator() {
    if (!between_blanks()) rest_.remove_prefix(1);
    skip_blanks();
    return !between_blanks() || !rest_.empty();
  }

  void take() {
    const std::size_t at = line_.size() - rest_.size();
    const std::size_t i = std::min(count_, fields_held - 1);
    const std::string_view text = rest_.starts_with('"') ? take_quoted(i) : take_plain();
    if (count_ < fields_held) fields_[i] = {text, at};
    ++count_;
  }

  std::size_t plain_length() const {
    if (!between_blanks()) return std::min(rest_.find(separator_), rest_.size());
    if (count_ + 1 == fields_allowed) return rest_.size();
    return std::min(rest_.find_first_of(blanks), rest_.size());
  }

  std::string_view take_plain() {
    const std::string_view field = rest_.substr(0, plain_length());
    rest_.remove_prefix(field.size());
    return before_blanks(field);
  }

  // Its blanks stay, and two quotes inside are one.
  std::string_view take_quoted(std::size_t i) {
    std::string& field = unquoted_[i];
    field.clear();
    const std::size_t start = line_.size() - rest_.size();
    rest_.remove_prefix(1);
    for (;;) {
      const std::size_t quote = rest_.find('"');
      if (quote == std::string_view::npos) {
        throw LineFault(ExitCode::bad_line, start, words::no_closing_quote.text());
      }
      field += rest_.substr(0, quote);
      rest_.remove_prefix(quote + 1);
      if (!rest_.starts_with('"')) break;
      field += '"';
      rest_.remove_prefix(1);
    }
    end_quoted(field);
    return field;
  }

  void end_quoted(const std::string& field) {
    const bool parted = rest_.empty() || (between_blanks() && is_blank(rest_.front()));
    if (parted) return;
    skip_blanks();
    if (rest_.empty() || rest_.front() == separator_) return;
    throw LineFault(ExitCode::bad_line, line_.size() - rest_.size(),
                    words::text_after_quote.with({quoted(field)}));
  }

  std::string_view line_;
  std::string_view rest_;
  char separator_ = ',';
  std::size_t count_ = 0;
  std::array<Field, fields_held> fields_;
  std::array<std::string, fields_held> unquoted_;
};

// ---- Numbers

enum class Sign { none, point, comma };

const Word& name_of(Sign sign) {
  return sign == Sign::comma ? words::decimal_comma : words::decimal_point;
}

struct Number {
  std::errc error = std::errc::invalid_argument;
  double value = 0.0;
  Sign sign = Sign::none;
};

// Reads the whole field, whatever the locale; the error is empty when it is a number that a
// double can hold.
Number read_plain_number(std::string_view field, Sign sign) {
  if (field.starts_with('+') && !field.starts_with("+-")) field.remove_prefix(1);
  Number number;
  number.sign = sign;
  const char* const end = field.data() + field.size();
  const auto [stop, error] = std::from_chars(field.data(), end, number.value);
  if (stop == end) number.error = error;
  return number;
}

Number read_number(std::string_view field) {
  const std::size_t sign = field.find_first_of(".,");
  if (sign == field.npos) return read_plain_number(field, Sign::none);
  if (field[sign] == '.') return read_plain_number(field, Sign::point);
  std::array<char, longest_number> room;
  if (field.size() > room.size() || field.find('.', sign) != field.npos) return {};
  std::copy(field.begin(), field.end(), room.begin());
  room[sign] = '.';
  return read_plain_number({room.data(), field.size()}, Sign::comma);
}

bool reads_as_number(std::string_view field) {
  return read_number(field).error != std::errc::invalid_argument;
}

// ---- Which separator a file has

// Whether the line is a point, if that parts its fields.
bool is_point(std::string_view line, char separator, Fields& fields) try {
  fields.split(line, separator);
  if (fields.count() < fields_needed || fields.count() > fields_allowed) return false;
  for (std::size_t i = 1; i < fields_needed; ++i) {
    if (!reads_as_number(fields[i].text)) return false;
  }
  return true;
} catch (const LineFault&) {
  return false;
}

// Whether the fields are the names of columns.
bool is_header(const Fields& fields) {
  if (fields.count() < fields_needed) return false;
  for (std::size_t i = 1; i < fields_needed; ++i) {
    if (fields[i].text.empty() || reads_as_number(fields[i].text)) return false;
  }
  return true;
}
bool is_header(std::string_view line, char separator, Fields& fields) try {
  fields.split(line, separator);
  return is_header(fields);
} catch (const LineFault&) {
  return false;
}

// What may part the fields of a line. Between tabs and the like a line that also reads between
// blanks is one of tabs.
std::vector<const Separator*> separators_of(std::string_view line, Fields& fields) {
  std::vector<const Separator*> found;
  for (const Separator& separator : separators) {
    if (separator.letter == ' ' && !found.empty()) continue;
    if (is_point(line, separator.letter, fields)) found.push_back(&separator);
  }
  return found;
}

bool holds_nothing(std::string_view line) {
  line = after_blanks(line);
  return line.empty() || line.starts_with('#');
}

// ---- Lines

class Lines {
 public:
  explicit Lines(std::string_view text)
      : rest_(text), end_(text.find('\n') == text.npos ? '\r' : '\n') {}

  bool next(std::string_view& line) {
    if (rest_.empty()) return false;
    line = rest_.substr(0, rest_.find(end_));
    rest_.remove_prefix(std::min(line.size() + 1, rest_.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    ++number_;
    return true;
  }

  std::size_t number() const { return number_; }

 private:
  std::string_view rest_;
  char end_;
  std::size_t number_ = 0;
};

// What parts the fields, and the line that told it.
struct Parting {
  const Separator* separator = nullptr;
  std::size_t line = 0;
  std::optional<BadLine> fault;
};

std::string name_of(const Separator& separator) { return separator.name.text(); }

// Of a file without any point: what its first line is full of; blanks where it has nothing else.
const Separator* likely_separator(std::string_view line) {
  const auto count = [&](const Separator& separator) {
    return std::count(line.begin(), line.end(), separator.letter);
  };
  const auto last = std::end(separators) - 1;
  const auto best =
      std::max_element(std::begin(separators), last,
                       [&](const Separator& a, const Separator& b) { return count(a) < count(b); });
  return count(*best) > 0 || count(*last) == 0 ? best : last;
}

// Of what may part the fields, what parts the names of columns on the first line, where that
// tells them apart.
void keep_that_of_header(std::vector<const Separator*>& found, std::string_view first,
                         Fields& fields) {
  const auto parts_names = [&](const Separator* one) {
    return is_header(first, one->letter, fields);
  };
  const auto its = std::find_if(found.begin(), found.end(), parts_names);
  if (its == found.end() || std::any_of(its + 1, found.end(), parts_names)) return;
  found = {*its};
}

Parting parting_of(std::string_view text) {
  Parting parting;
  Fields fields;
  std::string_view line;
  std::string_view first;
  for (Lines lines(text); lines.next(line);) {
    if (holds_nothing(line)) continue;
    if (first.empty()) first = line;
    std::vector<const Separator*> found = separators_of(line, fields);
    if (found.size() > 1) keep_that_of_header(found, first, fields);
    if (found.size() == 1) return {found.front(), lines.number(), std::nullopt};
    if (found.size() < 2 || parting.fault) continue;
    parting.fault =
        BadLine{lines.number(), 1,
                words::ambiguous_separators.with({name_of(*found[0]), name_of(*found[1])}),
                ExitCode::mixed};
  }
  parting.separator = likely_separator(first);
  return parting;
}

// Reads a file line by line; only the first line that holds something may be a
// header.
class Reader {
 public:
  Reader(FieldOrder order, const Parting& parting) : order_(order), parting_(parting) {}

  void read(std::string_view text, Progress& progress) {
    const auto about = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n') + 1);
    file_.points.reserve(about);
    std::string_view line;
    for (Lines lines(text); lines.next(line);) {
      line_ = lines.number();
      if (!holds_nothing(line)) filled_line(line);
      if (line_ % lines_a_look == 0) {
        progress.reach(static_cast<double>(line_) / static_cast<double>(about));
      }
    }
  }

  PointFile take_file() { return std::move(file_); }

 private:
  void filled_line(std::string_view line) {
    try {
      read_line(line);
    } catch (const LineFault& fault) {
      file_.bad_lines.push_back(bad_line(line, fault));
    }
    header_possible_ = false;
  }

  void read_line(std::string_view line) {
    check_line_end(line);
    fields_.split(line, parting_.separator->letter);
    if (header_possible_ && is_header(fields_)) return;
    file_.points.push_back(point());
  }

  // Inside quotes a return is a letter.
  static void check_line_end(std::string_view line) {
    const std::size_t at = line.find('\r');
    if (at == line.npos || std::count(line.begin(), line.begin() + at, '"') % 2 != 0) return;
    throw LineFault(ExitCode::mixed, at, words::mixed_line_ends.text());
  }

  // A line that would be a point in another file is told to be one.
  BadLine bad_line(std::string_view line, const LineFault& fault) {
    const BadLine plain{line_, column_of(line, fault.at()), fault.what(), fault.code()};
    if (parting_.line == 0 || fault.code() == ExitCode::mixed) return plain;
    const std::vector<const Separator*> others = separators_of(line, fields_);
    const auto& here = *parting_.separator;
    if (others.empty() || others.front()->letter == here.letter) return plain;
    const std::size_t at = line.find(others.front()->letter);
    return {line_, column_of(line, at == line.npos ? 0 : at),
            words::mixed_separators.with(
                {name_of(*others.front()), name_of(here), std::to_string(parting_.line)}),
            ExitCode::mixed};
  }

  void check_count() const {
    const std::size_t count = fields_.count();
    const std::string fields =
        std::to_string(count) + ' ' + (count == 1 ? words::field : words::fields).text();
    const std::string names(field_names(order_));
    if (count < fields_needed) {
      const Field& last = fields_[count - 1];
      throw LineFault(ExitCode::few_columns, last.at + last.text.size(),
                      words::fields_needed.with({fields, names.substr(0, names.rfind(','))}));
    }
    if (count > fields_allowed) {
      const Word& what = has_decimal_commas() ? words::decimal_commas : words::fields_allowed;
      throw LineFault(ExitCode::many_columns, fields_[fields_allowed].at,
                      what.with({fields, names}));
    }
  }

  // "1,100,25,200,50,600,75": each coordinate is two whole numbers.
  bool has_decimal_commas() const {
    if (parting_.separator->letter != ',') return false;
    if (fields_.count() < 1 + 2 * 3 || fields_.count() > 2 + 2 * 3) return false;
    for (std::size_t i = 1; i < fields_held; ++i) {
      const std::string_view digits = fields_[i].text.substr(fields_[i].text.starts_with('-'));
      if (digits.empty() || digits.find_first_not_of("0123456789") != digits.npos) return false;
    }
    return true;
  }

  SurveyPoint point() {
    if (fields_.count() < fields_needed || fields_.count() > fields_allowed) check_count();
    if (fields_[0].text.empty()) {
      throw LineFault(ExitCode::bad_line, fields_[0].at, words::no_point_number.text());
    }
    const bool x_first = order_ == FieldOrder::x_first;
    SurveyPoint point;
    point.number = fields_[0].text;
    (x_first ? point.x : point.y) = coordinate(x_first ? "X" : "Y", fields_[1]);
    (x_first ? point.y : point.x) = coordinate(x_first ? "Y" : "X", fields_[2]);
    point.z = coordinate("Z", fields_[3]);
    if (fields_.count() > fields_needed) point.code = fields_[4].text;
    point.line = line_;
    return point;
  }

  double coordinate(std::string_view name, const Field& field) {
    const auto fail = [&](const Word& what) {
      throw LineFault(ExitCode::bad_number, field.at, what.with({name, quoted(field.text)}));
    };
    if (field.text.empty()) {
      throw LineFault(ExitCode::bad_number, field.at, words::is_empty.with({name}));
    }
    const Number number = read_number(field.text);
    if (number.error == std::errc::result_out_of_range) fail(words::out_of_range);
    if (number.error != std::errc{}) fail(words::not_a_number);
    if (!std::isfinite(number.value)) fail(words::not_finite);
    if (number.sign != Sign::none) agree(number.sign, name, field);
    return number.value;
  }

  // All lines have one decimal sign.
  void agree(Sign sign, std::string_view name, const Field& field) {
    if (sign_ == sign) return;
    if (sign_ != Sign::none) {
      throw LineFault(
          ExitCode::mixed, field.at,
          words::mixed_decimals.with({name, quoted(field.text), name_of(sign).view(),
                                      std::to_string(sign_line_), name_of(sign_).view()}));
    }
    sign_ = sign;
    sign_line_ = line_;
  }

  FieldOrder order_;
  const Parting& parting_;
  Fields fields_;
  std::size_t line_ = 0;
  bool header_possible_ = true;
  Sign sign_ = Sign::none;
  std::size_t sign_line_ = 0;
  PointFile file_;
};

}  // namespace

PointFile read_points(std::string_view bytes, FieldOrder order, Progress& progress) {
  const Decoded decoded(bytes);
  if (decoded.fault()) return {{}, {*decoded.fault()}};
  const Parting parting = parting_of(decoded.text());
  if (parting.fault) return {{}, {*parting.fault}};
  Reader reader(order, parting);
  reader.read(decoded.text(), progress);
  return reader.take_file();
}

void write_field(Writer& out, std::string_view field) {
  const bool plain = trimmed(field) == field && field.find_first_of(",\"#;\r\n") == field.npos;
  if (plain) {
    out << field;
    return;
  }
  out << '"';
  for (const char c : field) {
    if (c == '"') out << '"';
    out << c;
  }
  out << '"';
}

void write_point_file(Writer& out, const std::vector<SurveyPoint>& points, FieldOrder order) {
  const bool x_first = order == FieldOrder::x_first;
  out << words::number.view() << (x_first ? ",X,Y,Z," : ",Y,X,Z,") << words::code.view() << '\n';
  for (const SurveyPoint& point : points) {
    write_field(out, point.number);
    for (const double value : {x_first ? point.x : point.y, x_first ? point.y : point.x, point.z}) {
      out << ',';
      append_exact(out.buffer(), value, fewest_decimals);
    }
    out << ',';
    write_field(out, point.code);
    out << '\n';
    out.pause();
  }
}

std::string_view field_names(FieldOrder order) {
  return (order == FieldOrder::x_first ? words::fields_x_first : words::fields_y_first).view();
}

}  // namespace survey_report
