// Arguments that make members do real work and reach their branches and failures.
#include "tests/vectors/inputs.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace orv2_geo::vectors {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double no_number = std::numeric_limits<double>::quiet_NaN();

// What a call's coordinates are like.
enum class Style { small_whole, survey, generic, repeating, extreme };

std::string lower_case(std::string_view name) {
  std::string lower(name);
  for (char& letter : lower) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return lower;
}

bool is_any(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

enum Axis { x_axis, y_axis, z_axis };

Axis axis_of(std::string_view lower_name) {
  if (lower_name.find('z') != std::string_view::npos) return z_axis;
  return lower_name.find('y') != std::string_view::npos ? y_axis : x_axis;
}

// The arguments of one call, which fit together.
class Scene {
 public:
  Scene(const Member& member, Chance& chance)
      : member_(member),
        chance_(chance),
        style_(drawn_style()),
        points_(drawn_points()),
        irregular_(chance.in(30)) {}

  std::vector<Given> arguments() {
    std::vector<Given> given;
    for (const Parameter& parameter : member_.parameters) given.push_back(argument(parameter));
    if (given.size() > 1 && chance_.in(12)) share_a_variable(given);
    return given;
  }

 private:
  Style drawn_style() {
    const std::int32_t drawn = chance_.between(0, 99);
    if (never_whole())
      return drawn < 90 ? (drawn < 45 ? Style::survey : Style::generic) : Style::extreme;
    if (drawn < 30) return Style::small_whole;
    if (drawn < 55) return Style::survey;
    if (drawn < 70) return Style::generic;
    return drawn < 90 ? Style::repeating : Style::extreme;
  }

  // Whole numbers bring it to where the last bit of a power decides.
  bool never_whole() const { return member_.name == "GetAngle3P"; }

  std::int32_t drawn_points() {
    const std::int32_t drawn = chance_.between(0, 99);
    if (drawn < 8) return chance_.between(0, 2);
    if (drawn >= 97 && !member_.elementary) return chance_.between(260, 600);
    return chance_.between(3, 24);
  }

  Given argument(const Parameter& parameter) {
    if (parameter.optional && chance_.in(30)) {
      return {default_of(parameter), -1, true};
    }
    return {content(parameter), -1, false};
  }

  static Value default_of(const Parameter& parameter) {
    if (parameter.kind == Kind::f64) return real(static_cast<double>(parameter.default_value));
    return whole(parameter.kind, parameter.default_value);
  }

  Value content(const Parameter& parameter) {
    const std::string name = lower_case(parameter.name);
    if (is_array(parameter.kind)) return array(parameter.kind, name);
    switch (parameter.kind) {
      case Kind::f64: return real(number(name));
      case Kind::f32: return real(single(name));
      case Kind::i32: return whole(Kind::i32, integer(name));
      case Kind::i16: return whole(Kind::i16, chance_.between(-3, 3));
      case Kind::boolean: return whole(Kind::boolean, flag(name));
      case Kind::object: return whole(Kind::object, chance_.in(92));
      default: return text_of(letters());
    }
  }

  // ---- Numbers ------------------------------------------------------------

  double number(const std::string& name) {
    if (const auto special = special_number(name)) return *special;
    if (is_any(name, {"dx", "dy"}) && style_ != Style::extreme)
      return chance_.in(15) ? 0.0 : offset();
    return coordinate(axis_of(name));
  }

  float single(const std::string& name) {
    if (name == "sradians" && chance_.in(10))
      return chance_.one_of({1.0F, -1.0F, 2.0F, 0.0F, 1e30F});
    if (name == "sradians") return static_cast<float>(chance_.real_between(-0.95, 0.6));
    if (name == "an" && chance_.in(20))
      return chance_.one_of({0.0F, 90.0F, 100.0F, 3.3e38F, -400.0F});
    if (name == "an") return static_cast<float>(chance_.real_between(-400.0, 400.0));
    const double wide = number(name);
    if (std::isfinite(wide) && std::abs(wide) > 3.4e38) return wide > 0.0 ? 3e38F : -3e38F;
    return static_cast<float>(wide);
  }

  std::optional<double> special_number(const std::string& name) {
    if (name == "angulo") return chance_.real_between(1.0, 399.0);
    if (is_any(name, {"distancia", "distanc"}))
      return chance_.in(15) ? 0.0 : chance_.real_between(-60.0, 90.0);
    if (name == "tolerancia") return chance_.one_of({0.0, 0.001, 0.01, 0.5, 2.0, 30.0});
    if (name == "precision") return precision();
    if (name == "angulo_centec") return centesimal_angle();
    if (member_.name.starts_with("F_")) return plain_number();
    if (name == "value") return chance_.one_of({3.0, -1.5, 1e300, 0.0});
    if (is_any(name, {"maxz", "minz"}) && member_.name.starts_with("Quita")) {
      return coordinate(z_axis) + (name == "maxz" ? 1.0 : -1.0) * chance_.real_between(0.0, 30.0);
    }
    return std::nullopt;
  }

  // A routine that shows a form, whatever it is given, unless it fails before.
  double precision() {
    if (member_.name == "Quita_Pts_Repetidos") return no_number;
    return chance_.one_of({0.0, 0.0, 0.001, 0.04, 1.0, 2.5, -1.0, infinity});
  }

  double centesimal_angle() {
    const bool of_a_ratio = member_.name.starts_with("F_Arc");
    if (chance_.in(10)) return of_a_ratio ? chance_.one_of({100.0, -70.0, 1e300}) : 0.0;
    if (of_a_ratio) return chance_.real_between(-58.0, 38.0);
    return 100.0 * chance_.between(-4, 3) + chance_.real_between(1.0, 99.0);
  }

  double plain_number() {
    if (member_.name.starts_with("F_Log")) {
      return chance_.in(25) ? chance_.one_of({0.0, -1.0, 1.0, 1e300, 1e-300, no_number})
                            : chance_.real_between(2.0, 2000.0);
    }
    if (chance_.in(15)) return chance_.one_of({0.0, 709.0, -709.0, 711.0, -711.0, 1e300});
    return chance_.real_between(1.5, 25.0) * (chance_.in(50) ? 1.0 : -1.0);
  }

  double offset() {
    if (style_ == Style::small_whole) return chance_.between(-4, 4);
    return chance_.real_between(-120.0, 120.0);
  }

  double coordinate(Axis axis) {
    const double drawn = fresh_coordinate(axis);
    std::vector<double>& earlier = seen_[axis];
    if (style_ == Style::repeating && !earlier.empty() && chance_.in(45)) {
      const auto last = static_cast<std::int32_t>(earlier.size()) - 1;
      const double again = earlier[static_cast<std::size_t>(chance_.between(0, last))];
      return chance_.in(60) ? again : again + chance_.one_of({0.0001, -0.0005, 0.03, 1.0});
    }
    earlier.push_back(drawn);
    return drawn;
  }

  double fresh_coordinate(Axis axis) {
    switch (style_) {
      case Style::small_whole: return chance_.between(-4, 4);
      case Style::generic: return chance_.real_between(-100.0, 100.0);
      case Style::extreme: return extreme_coordinate();
      default: break;
    }
    const double origin[] = {437200.0, 4474300.0, 640.0};
    return origin[axis] + std::floor(chance_.real_between(0.0, 90000.0)) / 1000.0;
  }

  // Where numbers are put in the order of their texts, none is so large that its text gets a sign,
  // another digit or an exponent: how these collate is the system's affair.
  double extreme_coordinate() {
    const bool by_texts =
        member_.name.starts_with("Ordena_") || member_.name.starts_with("Quita_P");
    if (by_texts) {
      return chance_.one_of(
          {600000000.5, -99999999.5, 0.0, 0.015625, -1e7, 3.0, 100.25, no_number});
    }
    return chance_.one_of({1e300, -1e300, 0.0, 1.7e308, 1e-300, 5e-324, -1e9, 3.0, 100.25, 32768.0,
                           infinity, no_number});
  }

  // ---- Whole numbers ------------------------------------------------------

  std::int32_t integer(const std::string& name) {
    if (is_any(name, {"napex", "nv", "nver", "nptos", "nptos1", "ptos"})) return count();
    if (name == "lowerbound") return bound(chance_.between(0, points_ / 2));
    if (name == "upperbound") return bound(chance_.between(points_ / 2, points_));
    if (style_ == Style::extreme) {
      return chance_.one_of({2147483647, -2147483647 - 1, 0, 1000000, 46341});
    }
    return chance_.between(-900, 900);
  }

  std::int32_t count() {
    const std::int32_t drawn = chance_.between(0, 99);
    if (drawn < 86) return points_;
    if (drawn < 90) return points_ + chance_.between(1, 3);
    return chance_.one_of({0, 1, -1, -40});
  }

  std::int32_t bound(std::int32_t inside) {
    if (chance_.in(30)) return -2147483647 - 1;
    return chance_.in(90) ? inside : chance_.one_of({-1, points_ + 4, 0, 9999});
  }

  // A form comes with Ver where there are points enough.
  std::int32_t flag(const std::string& name) {
    if (name == "ver") return chance_.in(15) ? -1 : chance_.one_of({0, 0, 1});
    return chance_.in(50) ? 0 : -1;
  }

  // ---- Arrays -------------------------------------------------------------

  Value array(Kind kind, const std::string& name) {
    Value drawn;
    drawn.kind = kind;
    const bool only_written = is_any(name, {"xc", "yc", "cotas"});
    if (chance_.in(only_written ? 60 : irregular_ ? 6 : 0)) return drawn;
    drawn.allocated = true;
    set_bounds(drawn);
    if (kind == Kind::longs && is_any(name, {"theindex", "indice", "ordenindices", "newind"})) {
      fill_with_indexes(drawn);
    } else if (ascends(name)) {
      fill_ascending(drawn);
    } else {
      for (Value& element : drawn.elements) element = array_element(element_of(kind), name);
    }
    if (name == "xx" || name == "yy") close_ring(drawn);
    return drawn;
  }

  void set_bounds(Value& array) {
    const std::int32_t drawn = irregular_ ? chance_.between(70, 99) : 0;
    std::int32_t last = points_;
    if (drawn >= 80 && drawn < 88) array.lower = 1;
    if (drawn == 88 || drawn == 89) array.lower = 5;
    if (drawn == 90) array.lower = -3;
    if (drawn >= 91 && drawn < 95) last = points_ / 2;
    if (drawn >= 95 && drawn < 98) last = points_ + 2;
    if (drawn == 98 && array.kind != Kind::texts) array.dimensions = 2;
    array.elements.resize(static_cast<std::size_t>(std::max(last - array.lower + 1, 1)));
  }

  Value array_element(Kind kind, const std::string& name) {
    switch (kind) {
      case Kind::f64: return real(coordinate(axis_of(name)));
      case Kind::f32: return real(single(name));
      case Kind::i32: return whole(kind, some_long());
      case Kind::i16: return whole(kind, chance_.between(-9, 9));
      default: return text_of(letters());
    }
  }

  std::int32_t some_long() {
    if (style_ == Style::extreme) return static_cast<std::int32_t>(chance_.bits());
    return chance_.between(-points_, points_);
  }

  // Few letters, so that there are ties and common beginnings.
  std::u16string letters() {
    std::u16string drawn;
    for (std::int32_t left = chance_.between(0, 5); left > 0; --left) {
      drawn += chance_.one_of({u'a', u'b', u'c', u'x', u'z', u'0', u'1', u'7'});
    }
    return drawn;
  }

  void fill_with_indexes(Value& array) {
    std::int32_t index = array.lower;
    for (Value& element : array.elements) element = whole(Kind::i32, index++);
    if (chance_.in(80)) return;
    for (std::size_t i = array.elements.size() - 1; i > 0; --i) {
      const auto other = chance_.between(0, static_cast<std::int32_t>(i));
      std::swap(array.elements[i], array.elements[static_cast<std::size_t>(other)]);
    }
    if (chance_.in(40)) array.elements.back() = whole(Kind::i32, points_ + 9);
  }

  bool ascends(const std::string& name) {
    const bool is_distance = is_any(name, {"xterr", "x", "disto", "distor"});
    return member_.on_profiles && is_distance && chance_.in(75);
  }

  void fill_ascending(Value& array) {
    double distance = coordinate(x_axis);
    for (Value& element : array.elements) {
      element = real(distance);
      if (chance_.in(85))
        distance += style_ == Style::small_whole ? 1.0 : chance_.real_between(0.5, 8.0);
    }
  }

  static void close_ring(Value& array) {
    if (array.lower <= 1 && array.elements.size() > 2) {
      array.elements.back() = array.elements[static_cast<std::size_t>(1 - array.lower)];
    }
  }

  // ---- Variables given twice ----------------------------------------------

  bool may_share(std::size_t i, const std::vector<Given>& given) const {
    const Parameter& parameter = member_.parameters[i];
    const std::string name = lower_case(parameter.name);
    // An angle that is another call's length would leave nothing of its last digits.
    const bool measure = is_any(name, {"angulo", "distancia", "distanc", "az"});
    return parameter.by_reference && !given[i].omitted && parameter.kind != Kind::object &&
           !(member_.elementary && measure);
  }

  void share_a_variable(std::vector<Given>& given) {
    std::vector<std::pair<std::size_t, std::size_t>> pairs;
    for (std::size_t i = 0; i < given.size(); ++i) {
      for (std::size_t k = i + 1; k < given.size(); ++k) {
        const bool alike = member_.parameters[i].kind == member_.parameters[k].kind;
        if (alike && may_share(i, given) && may_share(k, given)) pairs.emplace_back(i, k);
      }
    }
    if (pairs.empty()) return;
    const auto last = static_cast<std::int32_t>(pairs.size()) - 1;
    const auto [first, second] = pairs[static_cast<std::size_t>(chance_.between(0, last))];
    given[second] = {given[first].value, static_cast<int>(first), false};
  }

  const Member& member_;
  Chance& chance_;
  Style style_;
  std::int32_t points_;
  bool irregular_;  // its arrays need not be as long as the points are many
  std::vector<double> seen_[3];
};

}  // namespace

std::uint64_t Chance::bits() {
  state_ += 0x9e3779b97f4a7c15;
  std::uint64_t mixed = state_;
  mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9;
  mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111eb;
  return mixed ^ (mixed >> 31);
}

std::int32_t Chance::between(std::int32_t low, std::int32_t high) {
  const auto choices = static_cast<std::uint64_t>(std::int64_t{high} - low + 1);
  return static_cast<std::int32_t>(low + static_cast<std::int64_t>(bits() % choices));
}

double Chance::real_between(double low, double high) {
  return low + (high - low) * std::ldexp(static_cast<double>(bits() >> 11), -53);
}

std::vector<Given> arguments_for(const Member& member, Chance& chance) {
  return Scene(member, chance).arguments();
}

}  // namespace orv2_geo::vectors
