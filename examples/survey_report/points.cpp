#include "survey_report/points.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "survey_report/layout.h"
#include "survey_report/utf8.h"

namespace survey_report {

namespace {

constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t";
constexpr std::size_t fields_needed = 4;   // all but the code
constexpr std::size_t fields_allowed = 5;  // with the code
constexpr std::size_t bad_lines_shown = 20;
constexpr std::size_t characters_shown = 40;
constexpr int fewest_decimals = 3;

// What is wrong with the line at hand.
class LineFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

using Fields = std::vector<std::string>;

std::string_view after_blanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

std::string_view trimmed(std::string_view text) {
  text = after_blanks(text);
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

// A field as a message quotes it: on one line, and not too long.
std::string quoted(std::string_view field) {
  std::string_view rest = field;
  for (std::size_t i = 0; i < characters_shown && !rest.empty(); ++i) take_character(rest);
  const std::string shown = without_controls(field.substr(0, field.size() - rest.size()));
  return '"' + shown + (rest.empty() ? "\"" : "...\"");
}

// ---- Fields of a line

// Takes a quoted field; its blanks stay, and two quotes inside are one.
std::string take_quoted(std::string_view& rest) {
  std::string field;
  rest.remove_prefix(1);
  for (;;) {
    const std::size_t quote = rest.find('"');
    if (quote == std::string_view::npos) throw LineFault("a quoted field has no closing quote");
    field += rest.substr(0, quote);
    rest.remove_prefix(quote + 1);
    if (!rest.starts_with('"')) break;
    field += '"';
    rest.remove_prefix(1);
  }
  rest = after_blanks(rest);
  if (!rest.empty() && !rest.starts_with(',')) {
    throw LineFault("text after the closing quote of " + quoted(field));
  }
  return field;
}

std::string take_plain(std::string_view& rest) {
  const std::string_view field = rest.substr(0, rest.find(','));
  rest.remove_prefix(field.size());
  return std::string(trimmed(field));
}

Fields fields_of(std::string_view line) {
  Fields fields;
  for (;;) {
    line = after_blanks(line);
    fields.push_back(line.starts_with('"') ? take_quoted(line) : take_plain(line));
    if (line.empty()) return fields;
    line.remove_prefix(1);  // the comma
  }
}

// ---- Numbers

// Reads the whole field, whatever the locale; the error is empty when the
// field is a number that a double can hold.
std::errc read_number(std::string_view field, double& value) {
  if (field.starts_with('+') && !field.starts_with("+-")) field.remove_prefix(1);
  const char* const end = field.data() + field.size();
  const auto [stop, error] = std::from_chars(field.data(), end, value);
  return stop == end ? error : std::errc::invalid_argument;
}

bool reads_as_number(std::string_view field) {
  double ignored = 0.0;
  return read_number(field, ignored) != std::errc::invalid_argument;
}

double coordinate(std::string_view name, std::string_view field) {
  const std::string subject(name);
  if (field.empty()) throw LineFault(subject + " is empty");
  double value = 0.0;
  const std::errc error = read_number(field, value);
  if (error == std::errc::result_out_of_range) {
    throw LineFault(subject + ' ' + quoted(field) + " is out of range");
  }
  if (error != std::errc{}) throw LineFault(subject + ' ' + quoted(field) + " is not a number");
  if (!std::isfinite(value)) throw LineFault(subject + ' ' + quoted(field) + " is not finite");
  return value;
}

// ---- Lines

void check_utf8(std::string_view line) {
  const std::optional<std::size_t> at = first_byte_not_utf8(line);
  if (!at) return;
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(line[*at]);
  throw LineFault(std::string("not UTF-8 text (byte ") + digits[byte / 16] + digits[byte % 16] +
                  " in column " + std::to_string(*at + 1) + ")");
}

void check_count(const Fields& fields, FieldOrder order) {
  const std::string count =
      std::to_string(fields.size()) + (fields.size() == 1 ? " field" : " fields");
  const std::string names(field_names(order));
  const std::string without_code = names.substr(0, names.rfind(','));
  if (fields.size() < fields_needed)
    throw LineFault(count + ", but " + without_code + " are needed");
  if (fields.size() > fields_allowed)
    throw LineFault(count + ", but only " + names + " are allowed");
}

SurveyPoint point_of(const Fields& fields, FieldOrder order) {
  check_count(fields, order);
  if (fields[0].empty()) throw LineFault("the point number is empty");
  const bool x_first = order == FieldOrder::x_first;
  SurveyPoint point;
  point.number = fields[0];
  (x_first ? point.x : point.y) = coordinate(x_first ? "X" : "Y", fields[1]);
  (x_first ? point.y : point.x) = coordinate(x_first ? "Y" : "X", fields[2]);
  point.z = coordinate("Z", fields[3]);
  if (fields.size() > fields_needed) point.code = fields[4];
  return point;
}

bool is_header(const Fields& fields) {
  if (fields.size() < fields_needed) return false;
  const auto is_title = [](const std::string& f) { return !f.empty() && !reads_as_number(f); };
  return std::all_of(fields.begin() + 1, fields.begin() + fields_needed, is_title);
}

bool holds_nothing(std::string_view line) {
  line = after_blanks(line);
  return line.empty() || line.starts_with('#');
}

std::string_view take_line(std::string_view& text) {
  std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

// Reads a file line by line; only the first line that holds something may be a
// header.
class Reader {
 public:
  explicit Reader(FieldOrder order) : order_(order) {}

  void line(std::string_view line) {
    ++line_;
    if (holds_nothing(line)) return;
    try {
      filled_line(line);
    } catch (const LineFault& fault) {
      file_.bad_lines.push_back({line_, fault.what()});
    }
    header_possible_ = false;
  }

  PointFile take_file() { return std::move(file_); }

 private:
  void filled_line(std::string_view line) {
    check_utf8(line);
    const Fields fields = fields_of(line);
    if (header_possible_ && is_header(fields)) return;
    SurveyPoint point = point_of(fields, order_);
    point.line = line_;
    file_.points.push_back(std::move(point));
  }

  FieldOrder order_;
  std::size_t line_ = 0;
  bool header_possible_ = true;
  PointFile file_;
};

// ---- Writing

std::string written(std::string_view field) {
  const bool plain = trimmed(field) == field && field.find_first_of(",\"#\r") == field.npos;
  if (plain) return std::string(field);
  std::string text = "\"";
  for (const char c : field) text.append(c == '"' ? 2 : 1, c);
  return text + '"';
}

}  // namespace

PointFile read_points(std::string_view text, FieldOrder order) {
  if (text.starts_with(utf8_mark)) text.remove_prefix(utf8_mark.size());
  Reader reader(order);
  while (!text.empty()) reader.line(take_line(text));
  return reader.take_file();
}

std::string point_file(const std::vector<SurveyPoint>& points, FieldOrder order) {
  const bool x_first = order == FieldOrder::x_first;
  std::string text = x_first ? "Number,X,Y,Z,Code\n" : "Number,Y,X,Z,Code\n";
  for (const SurveyPoint& point : points) {
    text += written(point.number) + ',' + exact(x_first ? point.x : point.y, fewest_decimals) +
            ',' + exact(x_first ? point.y : point.x, fewest_decimals) + ',' +
            exact(point.z, fewest_decimals) + ',' + written(point.code) + '\n';
  }
  return text;
}

std::string_view field_names(FieldOrder order) {
  return order == FieldOrder::x_first ? "number, X, Y, Z, code" : "number, Y, X, Z, code";
}

std::string messages(std::string_view file, const std::vector<BadLine>& bad_lines) {
  const std::string name(file);
  const std::size_t shown = std::min(bad_lines.size(), bad_lines_shown);
  std::string text;
  for (std::size_t i = 0; i < shown; ++i) {
    text += name + ':' + std::to_string(bad_lines[i].line) + ": " + bad_lines[i].what + '\n';
  }
  const std::size_t others = bad_lines.size() - shown;
  if (others > 0) {
    text += name + ": and " + std::to_string(others) +
            (others == 1 ? " more bad line\n" : " more bad lines\n");
  }
  return text;
}

}  // namespace survey_report
