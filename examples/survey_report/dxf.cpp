#include "survey_report/dxf.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <vector>

#include "survey_report/extremes.h"
#include "survey_report/layout.h"
#include "survey_report/profile_drawing.h"
#include "survey_report/rounding.h"
#include "survey_report/utf8.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr std::size_t longest_layer = 31;
constexpr double letters_of_side = 1.0 / 400.0;  // of the survey's larger side
constexpr double profile_room = 0.25;            // of its length, that the heights may take
constexpr double beside = 0.15;                  // of the survey's width, to the profile
constexpr int least_decimals = 3;

// The colours of CAD programs, by their numbers.
constexpr int white = 7;
constexpr int red = 1;
constexpr int brown = 34;
constexpr int yellow = 2;
constexpr int green = 3;
constexpr int grey = 8;
constexpr std::array<int, 8> code_colours = {3, 5, 30, 6, 4, 94, 140, 200};

// ---- Texts

// Letters of western alphabets without what stands over them.
struct PlainLetter {
  std::u32string_view letters;
  char plain;
};

constexpr PlainLetter plain_letters[] = {
    {U"ÀÁÂÃÄÅàáâãäå", 'A'}, {U"ÈÉÊËèéêë", 'E'}, {U"ÌÍÎÏìíîï", 'I'}, {U"ÒÓÔÕÖØòóôõöø", 'O'},
    {U"ÙÚÛÜùúûü", 'U'},     {U"Ññ", 'N'},       {U"Çç", 'C'},
};

char layer_letter(char32_t character) {
  if (character >= 'a' && character <= 'z') return static_cast<char>(character - 'a' + 'A');
  const bool allowed = (character >= 'A' && character <= 'Z') ||
                       (character >= '0' && character <= '9') || character == '$' ||
                       character == '-';
  if (allowed) return static_cast<char>(character);
  for (const PlainLetter& letter : plain_letters) {
    if (letter.letters.find(character) != std::u32string_view::npos) return letter.plain;
  }
  return '_';
}

std::string layer_text(std::string_view text) {
  std::string name;
  while (!text.empty() && name.size() < longest_layer) {
    const std::optional<char32_t> character = take_character(text);
    if (!character) text.remove_prefix(1);
    name += layer_letter(character.value_or('_'));
  }
  return name;
}

void append_unit(std::string& text, char32_t unit) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  text += "\\U+";
  for (int shift = 12; shift >= 0; shift -= 4) text += digits[(unit >> shift) & 0xF];
}

// Western letters are bytes of the file's alphabet, which is Windows-1252. What is beyond 16
// bits has no way into such a file.
void append_character(std::string& text, char32_t character) {
  if (character >= 0xA0 && character <= 0xFF) {
    text += static_cast<char>(character);
  } else if (character >= 0x80 && character < 0x10000) {
    append_unit(text, character);
  } else if (character >= 0x10000) {
    text += '?';
  } else if (character == '^') {
    text += "^ ";
  } else {
    text += static_cast<char>(character);
  }
}

// ---- Pairs of a group code and a value

class Pairs {
 public:
  explicit Pairs(Writer& out) : out_(out) {}

  void text(int code, std::string_view value) {
    start(code);
    out_ << value << '\n';
  }
  void count(int code, std::size_t value) { text(code, std::to_string(value)); }
  void number(int code, double value) {
    start(code);
    append_exact(out_.buffer(), value, least_decimals);
    out_ << '\n';
  }
  void place(int code, const Place& place, double z) {
    number(code, place.x);
    number(code + 10, place.y);
    number(code + 20, z);
  }
  void entity(std::string_view kind, std::string_view layer) {
    text(0, kind);
    text(8, layer);
    out_.pause();
  }

 private:
  void start(int code) {
    if (code < 100) out_ << ' ';
    if (code < 10) out_ << ' ';
    out_ << std::to_string(code) << '\n';
  }

  Writer& out_;
};

struct Layer {
  std::string name;
  int colour = white;
};

// ---- The file

class Dxf {
 public:
  Dxf(Writer& out, const Figures& figures)
      : pairs_(out),
        points_(figures.survey.points),
        study_(figures.study),
        extents_(extents_of(points_)),
        letters_(letter_size()) {
    for (Layer* const layer : {&boundary_, &section_, &area_, &contours_, &index_, &profile_,
                               &profile_levels_, &profile_texts_}) {
      layer->name = names_.name_for(layer->name);
    }
    for (const SurveyPoint& point : points_) {
      if (codes_.find(point.code) != codes_.end()) continue;
      const bool has_code = !point.code.empty();
      const int colour = code_colours[codes_.size() % code_colours.size()];
      codes_.emplace(point.code, Layer{names_.name_for(has_code ? std::string_view(point.code)
                                                                : words::no_code.view()),
                                       colour});
    }
  }

  void write() {
    header();
    tables();
    pairs_.text(0, "SECTION");
    pairs_.text(2, "ENTITIES");
    points();
    lines();
    profile();
    pairs_.text(0, "ENDSEC");
    pairs_.text(0, "EOF");
  }

 private:
  double width() const { return extents_.x.max - extents_.x.min; }
  double height() const { return extents_.y.max - extents_.y.min; }

  double letter_size() const {
    const double size = letters_of_side * std::max(width(), height());
    return std::isfinite(size) && size > 0.0 ? size : 1.0;
  }

  // ---- What stands before the entities

  void header() {
    pairs_.text(0, "SECTION");
    pairs_.text(2, "HEADER");
    variable("$ACADVER");
    pairs_.text(1, "AC1009");
    variable("$DWGCODEPAGE");
    pairs_.text(3, "ANSI_1252");
    variable("$INSBASE");
    pairs_.place(10, {0.0, 0.0}, 0.0);
    variable("$EXTMIN");
    pairs_.place(10, {extents_.x.min, extents_.y.min}, extents_.z.min);
    variable("$EXTMAX");
    pairs_.place(10, {std::max(extents_.x.max, profile_end().x), extents_.y.max}, extents_.z.max);
    variable("$PDMODE");
    pairs_.count(70, 3);  // points are crosses
    variable("$PDSIZE");
    pairs_.number(40, letters_);
    pairs_.text(0, "ENDSEC");
  }

  void variable(std::string_view name) { pairs_.text(9, name); }

  void tables() {
    std::vector<const Layer*> layers = {&zero_,    &boundary_,       &section_,
                                        &area_,    &contours_,       &index_,
                                        &profile_, &profile_levels_, &profile_texts_};
    for (const auto& [code, layer] : codes_) layers.push_back(&layer);
    pairs_.text(0, "SECTION");
    pairs_.text(2, "TABLES");
    line_types();
    pairs_.text(0, "TABLE");
    pairs_.text(2, "LAYER");
    pairs_.count(70, layers.size());
    for (const Layer* const layer : layers) {
      pairs_.text(0, "LAYER");
      pairs_.text(2, layer->name);
      pairs_.count(70, 0);
      pairs_.count(62, static_cast<std::size_t>(layer->colour));
      pairs_.text(6, "CONTINUOUS");
    }
    pairs_.text(0, "ENDTAB");
    pairs_.text(0, "ENDSEC");
  }

  void line_types() {
    pairs_.text(0, "TABLE");
    pairs_.text(2, "LTYPE");
    pairs_.count(70, 1);
    pairs_.text(0, "LTYPE");
    pairs_.text(2, "CONTINUOUS");
    pairs_.count(70, 0);
    pairs_.text(3, "Solid line");
    pairs_.count(72, 65);
    pairs_.count(73, 0);
    pairs_.number(40, 0.0);
    pairs_.text(0, "ENDTAB");
  }

  // ---- The survey

  void points() {
    const bool with_texts = points_.size() <= most_point_texts;
    for (const SurveyPoint& point : points_) {
      const std::string& layer = codes_.find(point.code)->second.name;
      pairs_.entity("POINT", layer);
      pairs_.place(10, {point.x, point.y}, point.z);
      if (!with_texts) continue;
      text(layer, {point.x + letters_ / 2, point.y + letters_ / 4}, point.z, point.number);
      text(layer, {point.x + letters_ / 2, point.y - 5 * letters_ / 4}, point.z,
           fixed(point.z, least_decimals));
    }
  }

  void text(const std::string& layer, const Place& at, double z, std::string_view content) {
    pairs_.entity("TEXT", layer);
    pairs_.place(10, at, z);
    pairs_.number(40, letters_);
    pairs_.text(1, dxf_text(content));
  }

  void polyline(const std::string& layer, const std::vector<Place>& line, bool is_closed,
                double elevation) {
    if (line.size() < 2) return;
    pairs_.entity("POLYLINE", layer);
    pairs_.count(66, 1);
    pairs_.place(10, {0.0, 0.0}, elevation);
    pairs_.count(70, is_closed ? 1 : 0);
    for (const Place& place : line) {
      pairs_.entity("VERTEX", layer);
      pairs_.place(10, place, elevation);
    }
    pairs_.entity("SEQEND", layer);
  }

  void lines() {
    polyline(area_.name, study_.area.vertices, true, 0.0);
    if (!study_.complete()) return;
    polyline(boundary_.name, study_.boundary.vertices, true, 0.0);
    polyline(section_.name, {study_.section.line.from, study_.section.line.to}, false, 0.0);
    const int decimals = decimals_for(study_.contours.step);
    for (const Contour& contour : study_.contours.lines) {
      const std::string& layer = (contour.is_index ? index_ : contours_).name;
      polyline(layer, contour.line, contour.is_closed, contour.level);
      if (!contour.is_index) continue;
      const Place& middle = contour.line[contour.line.size() / 2];
      text(layer, middle, contour.level, fixed(contour.level, decimals));
    }
  }

  // ---- The profile, to the right of the survey

  bool has_profile() const { return study_.complete() && !study_.profile.stations.empty(); }

  Place profile_corner() const {
    return {extents_.x.max + beside * std::max(width(), height()), extents_.y.min};
  }

  Place profile_end() const {
    if (!has_profile()) return {extents_.x.max, extents_.y.max};
    return {profile_corner().x + study_.profile.terrain.back().distance, extents_.y.max};
  }

  void profile() {
    if (!has_profile()) return;
    const Profile& profile = study_.profile;
    const double length = profile.terrain.back().distance - profile.terrain.front().distance;
    const ProfileHeights heights =
        profile_heights(1.0, {profile.lowest, profile.highest}, profile_room * length, 1.0);
    const Place corner = profile_corner();
    const auto place = [&](double distance, double elevation) {
      return Place{corner.x + distance,
                   corner.y + (elevation - profile.lowest) * heights.exaggeration};
    };
    std::vector<Place> terrain;
    for (const ProfilePoint& point : profile.terrain) {
      terrain.push_back(place(point.distance, point.elevation));
    }
    polyline(profile_.name, terrain, false, 0.0);
    const double below = corner.y - 2 * letters_;
    const double first = profile.terrain.front().distance;
    polyline(profile_levels_.name,
             {{place(first, 0).x, below}, {place(first + length, 0).x, below}}, false, 0.0);
    for (const Station& station : profile.stations) {
      const Place top = place(station.distance, station.elevation);
      polyline(profile_levels_.name, {{top.x, below}, top}, false, 0.0);
      text(profile_texts_.name, {top.x, below - 2 * letters_}, 0.0,
           fixed(station.elevation, least_decimals));
      text(profile_texts_.name, {top.x, below - 4 * letters_}, 0.0,
           fixed(station.distance, least_decimals));
    }
    text(profile_texts_.name, {place(first, 0).x, below - 7 * letters_}, 0.0,
         words::dxf_profile.with({fixed(heights.exaggeration, 0), fixed(profile.lowest, 3)}));
  }

  Pairs pairs_;
  const std::vector<SurveyPoint>& points_;
  const Study& study_;
  Extents extents_;
  double letters_;
  LayerNames names_;
  Layer zero_{"0", white};
  Layer boundary_{words::boundary_layer.text(), white};
  Layer section_{words::section_layer.text(), red};
  Layer area_{words::area_layer.text(), yellow};
  Layer contours_{words::contours_layer.text(), brown};
  Layer index_{words::index_layer.text(), brown};
  Layer profile_{words::profile_layer.text(), green};
  Layer profile_levels_{words::profile_lines_layer.text(), grey};
  Layer profile_texts_{words::profile_texts_layer.text(), white};
  std::map<std::string, Layer, std::less<>> codes_;
};

}  // namespace

std::string LayerNames::name_for(std::string_view text) {
  const std::string plain = layer_text(text);
  std::string name = plain.empty() ? "_" : plain;
  for (std::size_t i = 2; name == "0" || taken_.contains(name); ++i) {
    const std::string tail = '_' + std::to_string(i);
    name = plain.substr(0, longest_layer - tail.size()) + tail;
  }
  taken_.insert(name);
  return name;
}

// Two percent signs begin a command; three are one that is drawn.
std::string dxf_text(std::string_view text) {
  const std::string plain = without_controls(text);
  std::string_view rest = plain;
  std::string escaped;
  while (!rest.empty()) {
    if (rest.starts_with("%%")) {
      escaped += "%%%";
      rest.remove_prefix(1);
      if (!rest.starts_with("%%")) {
        escaped += "%%%";
        rest.remove_prefix(1);
      }
      continue;
    }
    if (rest.starts_with("\\U+") || rest.starts_with("\\M+")) {
      append_unit(escaped, '\\');
      rest.remove_prefix(1);
      continue;
    }
    const std::optional<char32_t> character = take_character(rest);
    if (!character) rest.remove_prefix(1);
    append_character(escaped, character.value_or('?'));
  }
  return escaped;
}

void write_dxf(Writer& out, const Figures& figures) { Dxf(out, figures).write(); }

}  // namespace survey_report
