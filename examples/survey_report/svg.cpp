#include "survey_report/svg.h"

#include <optional>

#include "survey_report/layout.h"
#include "survey_report/utf8.h"

namespace survey_report {

namespace {

std::string_view entity_for(char mark) {
  switch (mark) {
    case '&': return "&amp;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '"': return "&quot;";
    case '\'': return "&apos;";
    default: return {};
  }
}

bool allowed_in_xml(char32_t character) { return character != 0xFFFE && character != 0xFFFF; }

void append_escaped(std::string& escaped, std::string_view character) {
  const std::string_view entity = entity_for(character.front());
  escaped += entity.empty() ? character : entity;
}

std::string attribute(std::string_view name, std::string_view value) {
  return ' ' + std::string(name) + "=\"" + std::string(value) + '"';
}

std::string attribute(std::string_view name, double value) {
  return attribute(name, sheet_number(value));
}

std::string after_blank(std::string_view attributes) {
  return attributes.empty() ? std::string() : ' ' + std::string(attributes);
}

std::string pair_of(const Place& place) {
  return sheet_number(place.x) + ' ' + sheet_number(place.y);
}

std::string_view anchor_name(Anchor anchor) {
  if (anchor == Anchor::start) return "start";
  return anchor == Anchor::middle ? "middle" : "end";
}

std::string attributes_of(const Lettering& lettering, const Place& at) {
  std::string text = attribute("font-size", lettering.size) + attribute("fill", lettering.colour);
  if (lettering.anchor != Anchor::start) {
    text += attribute("text-anchor", anchor_name(lettering.anchor));
  }
  if (lettering.bold) text += attribute("font-weight", "bold");
  if (lettering.halo) {
    text += R"( stroke="#ffffff" stroke-width="0.5" stroke-linejoin="round" paint-order="stroke")";
  }
  if (lettering.upwards) text += attribute("transform", "rotate(-90 " + pair_of(at) + ")");
  return text;
}

}  // namespace

std::string xml_escaped(std::string_view text) {
  const std::string plain = without_controls(text);
  std::string_view rest = plain;
  std::string escaped;
  while (!rest.empty()) {
    const std::string_view before = rest;
    const std::optional<char32_t> character = take_character(rest);
    if (!character) rest.remove_prefix(1);  // a byte that is no UTF-8
    if (character && allowed_in_xml(*character)) {
      append_escaped(escaped, before.substr(0, before.size() - rest.size()));
    } else {
      escaped += '?';
    }
  }
  return escaped;
}

std::string sheet_number(double value) {
  std::string text = fixed(value, 3);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text;
}

void Svg::open_group(std::string_view attributes) {
  text_ += "<g" + after_blank(attributes) + ">\n";
}

void Svg::open_code(std::string_view code, std::string_view attributes) {
  text_ += "<g" + attribute("class", "code") + attribute("data-code", xml_escaped(code)) +
           after_blank(attributes) + ">\n";
}

void Svg::line(const Place& from, const Place& to) {
  text_ += "<line" + attribute("x1", from.x) + attribute("y1", from.y) + attribute("x2", to.x) +
           attribute("y2", to.y) + "/>\n";
}

void Svg::rectangle(const Place& corner, double width, double height, std::string_view attributes) {
  text_ += "<rect" + attribute("x", corner.x) + attribute("y", corner.y) +
           attribute("width", width) + attribute("height", height) + after_blank(attributes) +
           "/>\n";
}

void Svg::path(std::string_view data, std::string_view attributes) {
  text_ += "<path" + attribute("d", data) + after_blank(attributes) + "/>\n";
}

void Svg::titled_path(std::string_view data, std::string_view title) {
  text_ += "<path" + attribute("d", data) + "><title>" + xml_escaped(title) + "</title></path>\n";
}

void Svg::clip(std::string_view name, const Place& corner, double width, double height) {
  text_ += "<clipPath" + attribute("id", name) + ">\n";
  rectangle(corner, width, height, {});
  text_ += "</clipPath>\n";
}

void Svg::text(const Place& at, std::string_view content, const Lettering& lettering) {
  text_ += "<text" + attribute("x", at.x) + attribute("y", at.y) + attributes_of(lettering, at) +
           '>' + xml_escaped(content) + "</text>\n";
}

std::string Svg::element(double width, double height, std::string_view title) const {
  const std::string w = sheet_number(width);
  const std::string h = sheet_number(height);
  const std::string head =
      "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\"" + attribute("width", w + "mm") +
      attribute("height", h + "mm") + attribute("viewBox", "0 0 " + w + ' ' + h) +
      attribute("font-family", "Liberation Sans, Arial, Helvetica, sans-serif") + ">\n<title>" +
      xml_escaped(title) + "</title>\n";
  constexpr std::string_view tail = "</svg>\n";
  std::string element;
  element.reserve(head.size() + text_.size() + tail.size());  // it may be large
  return element.append(head).append(text_).append(tail);
}

std::string path_through(const std::vector<Place>& places, bool closed) {
  std::string data;
  for (const Place& place : places) {
    data += (data.empty() ? "M " : " L ") + pair_of(place);
  }
  return closed ? data + " Z" : data;
}

}  // namespace survey_report
