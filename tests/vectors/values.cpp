// The file of test vectors, written and read.
#include "tests/vectors/values.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <istream>
#include <iterator>
#include <ostream>
#include <sstream>
#include <stdexcept>

namespace orv2_geo::vectors {

namespace {

constexpr std::string_view closeness_words[] = {"exact", "elementary", "bearings", "sums"};

[[noreturn]] void refuse(std::string_view word) {
  throw std::runtime_error("no word of a file of vectors: \"" + std::string(word) + "\"");
}

std::string hexadecimals(std::uint64_t bits, int digits) {
  std::string word(static_cast<std::size_t>(digits), '0');
  for (auto digit = word.rbegin(); digit != word.rend(); ++digit, bits >>= 4) {
    *digit = "0123456789abcdef"[bits & 15];
  }
  return word;
}

template <class Number>
Number number_of(std::string_view word, int base = 10) {
  Number number{};
  const auto end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, number, base);
  if (error != std::errc() || stop != end) refuse(word);
  return number;
}

std::string units_of(std::u16string_view text) {
  std::string word;
  for (const char16_t unit : text) word += hexadecimals(unit, 4);
  return word;
}

std::u16string text_from(std::string_view word) {
  if (word.size() % 4 != 0) refuse(word);
  std::u16string text;
  for (std::size_t i = 0; i < word.size(); i += 4) {
    text += static_cast<char16_t>(number_of<std::uint16_t>(word.substr(i, 4), 16));
  }
  return text;
}

std::string content_of(const Value& value) {
  switch (value.kind) {
    case Kind::f64: return hexadecimals(value.bits, 16);
    case Kind::f32: return hexadecimals(value.bits, 8);
    case Kind::text: return units_of(value.text);
    default: return std::to_string(static_cast<std::int64_t>(value.bits));
  }
}

Value from_content(Kind kind, std::string_view content) {
  Value value;
  value.kind = kind;
  switch (kind) {
    case Kind::f64:
    case Kind::f32: value.bits = number_of<std::uint64_t>(content, 16); break;
    case Kind::text: value.text = text_from(content); break;
    default: value.bits = static_cast<std::uint64_t>(number_of<std::int64_t>(content));
  }
  return value;
}

std::string array_content(const Value& array) {
  if (!array.allocated) return "-";
  std::string content = std::to_string(array.lower) + "/" + std::to_string(array.dimensions) + ":";
  for (const Value& element : array.elements) content += content_of(element) + ",";
  return content;
}

// What stands before a sign, which is taken away with it.
std::string_view up_to(char sign, std::string_view& rest) {
  const std::size_t place = rest.find(sign);
  if (place == std::string_view::npos) refuse(rest);
  const std::string_view front = rest.substr(0, place);
  rest.remove_prefix(place + 1);
  return front;
}

Value array_from(Kind kind, std::string_view content) {
  Value array;
  array.kind = kind;
  if (content == "-") return array;
  array.allocated = true;
  array.lower = number_of<std::int32_t>(up_to('/', content));
  array.dimensions = number_of<std::uint16_t>(up_to(':', content));
  while (!content.empty()) {
    array.elements.push_back(from_content(element_of(kind), up_to(',', content)));
  }
  return array;
}

Kind kind_of(char letter) {
  if (std::string_view("hlsdbtoHLSDT").find(letter) == std::string_view::npos) {
    refuse(std::string_view(&letter, 1));
  }
  return static_cast<Kind>(letter);
}

Value value_from(std::string_view word) {
  if (word == "-") return {};
  if (word.size() < 2 || word[1] != ':') refuse(word);
  const Kind kind = kind_of(word[0]);
  return is_array(kind) ? array_from(kind, word.substr(2)) : from_content(kind, word.substr(2));
}

std::string given_word(const Given& given) {
  if (given.same_as >= 0) return "=" + std::to_string(given.same_as);
  return (given.omitted ? "~" : "") + word_of(given.value);
}

void write_call(std::ostream& file, const VectorCall& call) {
  file << "call " << call.position;
  for (const Given& given : call.given) file << ' ' << given_word(given);
  for (const Told& told : call.outcome.told) {
    file << "\ndid " << told.name;
    for (const Value& value : told.values) file << ' ' << word_of(value);
  }
  for (const Box& box : call.outcome.boxes) {
    file << "\nbox " << box.flags << ' ' << units_of(box.text) << ' '
         << (box.has_caption ? units_of(box.caption) : "-");
  }
  file << "\ngave " << call.outcome.failure;
  for (std::size_t i = 0; i < call.given.size(); ++i) {
    const Value& after = call.outcome.after[i];
    file << ' ' << (after == call.given[i].value ? "." : word_of(after));
  }
  file << " > " << word_of(call.outcome.result) << '\n';
}

using Words = std::istringstream;

std::string next_word(Words& words) {
  std::string word;
  if (!(words >> word)) refuse(words.str());
  return word;
}

Given given_from(std::string_view word, const std::vector<Given>& earlier) {
  if (word.starts_with('=')) {
    const auto other = number_of<std::size_t>(word.substr(1));
    if (other >= earlier.size()) refuse(word);
    return {earlier[other].value, static_cast<int>(other), false};
  }
  const bool omitted = word.starts_with('~');
  return {value_from(omitted ? word.substr(1) : word), -1, omitted};
}

void read_call(Words& words, VectorClass& all) {
  VectorCall call;
  call.position = number_of<std::size_t>(next_word(words));
  for (std::string word; words >> word;) call.given.push_back(given_from(word, call.given));
  all.calls.push_back(call);
}

void read_told(Words& words, Outcome& outcome) {
  Told told;
  told.name = next_word(words);
  for (std::string word; words >> word;) told.values.push_back(value_from(word));
  outcome.told.push_back(told);
}

void read_box(Words& words, Outcome& outcome) {
  Box box;
  box.flags = number_of<std::int32_t>(next_word(words));
  box.text = text_from(next_word(words));
  const std::string caption = next_word(words);
  box.has_caption = caption != "-";
  if (box.has_caption) box.caption = text_from(caption);
  outcome.boxes.push_back(box);
}

void read_outcome(Words& words, VectorCall& call) {
  call.outcome.failure = number_of<std::int32_t>(next_word(words));
  for (const Given& given : call.given) {
    const std::string word = next_word(words);
    call.outcome.after.push_back(word == "." ? given.value : value_from(word));
  }
  if (next_word(words) != ">") refuse(words.str());
  call.outcome.result = value_from(next_word(words));
}

void read_member(Words& words, VectorClass& all) {
  const auto position = number_of<std::size_t>(next_word(words));
  const auto word =
      std::find(std::begin(closeness_words), std::end(closeness_words), next_word(words));
  if (word == std::end(closeness_words)) refuse(words.str());
  const auto closeness = static_cast<Closeness>(word - closeness_words);
  all.members[position] = {next_word(words), closeness};
}

void read_in_class(const std::string& first, Words& words, VectorClass& all) {
  if (first == "member") return read_member(words, all);
  if (first == "call") return read_call(words, all);
  if (all.calls.empty()) refuse(first);
  if (first == "did") return read_told(words, all.calls.back().outcome);
  if (first == "box") return read_box(words, all.calls.back().outcome);
  if (first == "gave") return read_outcome(words, all.calls.back());
  refuse(first);
}

}  // namespace

Value whole(Kind kind, std::int64_t number) {
  Value value;
  value.kind = kind;
  value.bits = static_cast<std::uint64_t>(number);
  return value;
}

Value real(double number) { return whole(Kind::f64, std::bit_cast<std::int64_t>(number)); }

Value real(float number) { return whole(Kind::f32, std::bit_cast<std::uint32_t>(number)); }

Value text_of(std::u16string_view units) {
  Value value;
  value.kind = Kind::text;
  value.text = units;
  return value;
}

double f64_of(const Value& value) { return std::bit_cast<double>(value.bits); }

float f32_of(const Value& value) {
  return std::bit_cast<float>(static_cast<std::uint32_t>(value.bits));
}

std::string word_of(const Value& value) {
  if (value.kind == Kind::none) return "-";
  return std::string(1, static_cast<char>(value.kind)) + ":" +
         (is_array(value.kind) ? array_content(value) : content_of(value));
}

void write(std::ostream& file, const VectorClass& all) {
  file << "class " << all.name << '\n';
  for (const auto& [position, member] : all.members) {
    file << "member " << position << ' ' << closeness_words[static_cast<int>(member.closeness)]
         << ' ' << member.name << '\n';
  }
  for (const VectorCall& call : all.calls) write_call(file, call);
}

std::vector<VectorClass> read(std::istream& file) {
  std::vector<VectorClass> classes;
  for (std::string line; std::getline(file, line);) {
    Words words(line);
    const std::string first = next_word(words);
    if (first == "class") {
      classes.emplace_back().name = next_word(words);
    } else {
      if (classes.empty()) refuse(first);
      read_in_class(first, words, classes.back());
    }
  }
  return classes;
}

}  // namespace orv2_geo::vectors
