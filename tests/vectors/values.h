// values.h: the file of test vectors, which tells of calls on one system what another must do too.
//
// A line each, words parted by blanks:
//
//   class cgeo_Algorismos
//   member 9 elementary Azimut
//   call 9 d:3ff0000000000000 =0 d:0000000000000000
//   did PSet h:0 d:3fe0000000000000 d:3fe0000000000000 h:0
//   did Visible= b:-1
//   box 16 006f0062 -
//   gave 0 . . d:4049000000000000 > -
//
// `class` makes an object, which takes the calls that follow. `member` tells how closely its
// answers can be compared on another system (Closeness below). A call has a word for each
// parameter: a value, "=k" for the variable of argument k, or "~" and a value for an optional one
// that is left out, whose place has the value in a call by position. `did` is what a host's object
// was told, a property's name ending in "=". `box` has flags, text and caption, "-" being the
// default one. `gave` has the failure's number or 0, what each variable holds after the call, "."
// where that is what it held before, and after ">" the result.
//
// A value is a letter for its type, a colon and its content: numbers with a fraction as the bits in
// hexadecimals, whole numbers as decimals, texts as four hexadecimals a unit, an object as 1 or 0.
// An array is "D:lower/dimensions:element,element" or "D:-" where it is unallocated.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace orv2_geo::vectors {

enum class Kind : char {
  none = '-',
  i16 = 'h',
  i32 = 'l',
  f32 = 's',
  f64 = 'd',
  boolean = 'b',
  text = 't',
  object = 'o',
  shorts = 'H',
  longs = 'L',
  singles = 'S',
  doubles = 'D',
  texts = 'T'
};

constexpr bool is_array(Kind kind) { return kind >= Kind::doubles && kind <= Kind::texts; }

/// The type of an array's elements.
constexpr Kind element_of(Kind array) {
  return static_cast<Kind>(static_cast<char>(array) - 'A' + 'a');
}

/// A value of any type. Numbers are their bits, sign-extended where they are whole.
struct Value {
  Kind kind = Kind::none;
  std::uint64_t bits = 0;
  std::u16string text;

  // Of arrays.
  bool allocated = false;
  std::int32_t lower = 0;
  std::uint16_t dimensions = 1;
  std::vector<Value> elements;

  bool operator==(const Value&) const = default;
};

Value whole(Kind kind, std::int64_t number);
Value real(double number);
Value real(float number);
Value text_of(std::u16string_view units);
double f64_of(const Value& value);
float f32_of(const Value& value);

/// What a call has for a parameter.
struct Given {
  Value value;
  int same_as = -1;  // the earlier argument whose variable this is
  bool omitted = false;
};

/// What a host's object was told.
struct Told {
  std::string name;
  std::vector<Value> values;
  bool operator==(const Told&) const = default;
};

struct Box {
  std::int32_t flags = 0;
  std::u16string text;
  bool has_caption = false;
  std::u16string caption;
  bool operator==(const Box&) const = default;
};

struct Outcome {
  std::int32_t failure = 0;
  std::vector<Value> after;
  Value result;
  std::vector<Told> told;
  std::vector<Box> boxes;
  bool operator==(const Outcome&) const = default;
};

struct VectorCall {
  std::size_t position = 0;
  std::vector<Given> given;
  Outcome outcome;
};

/// How closely a member's numbers with a fraction agree from system to system; all else is exact.
/// The C run-time's elementary functions differ in their last bits, and a sum that cancels most of
/// a larger number brings these forward: it is compared by the last place of that number.
enum class Closeness {
  exact,
  elementary,  // to the last places of the answer
  bearings,    // to those of 400: a difference of bearings
  sums         // to those of the call's largest number
};

struct VectorMember {
  std::string name;
  Closeness closeness = Closeness::exact;
};

struct VectorClass {
  std::string name;
  std::map<std::size_t, VectorMember> members;
  std::vector<VectorCall> calls;
};

std::string word_of(const Value& value);

void write(std::ostream& file, const VectorClass& all);

/// Throws std::runtime_error where the file is not one of vectors.
std::vector<VectorClass> read(std::istream& file);

}  // namespace orv2_geo::vectors
