// The calls of the file of test vectors.
#include "tests/vectors/vector_file.h"

#include <cmath>
#include <fstream>
#include <stdexcept>

#include "orv2_geo/orv2_geo.h"

namespace orv2_geo::vectors {

const std::vector<VectorClass>& classes_of_file() {
  static const std::vector<VectorClass> classes = [] {
    std::ifstream file(VECTORS, std::ios::binary);
    return read(file);
  }();
  return classes;
}

std::vector<bool> by_value(std::size_t class_index, const VectorCall& call) {
  std::vector<bool> flags;
  for (std::size_t i = 0; i < call.given.size(); ++i) {
    orv2_parameter_info info{};
    if (orv2_parameter_at(class_index, call.position, i, &info) != 0) {
      throw std::runtime_error("the file has more arguments than the catalogue");
    }
    flags.push_back((info.type & ORV2_BYREF) == 0);
  }
  return flags;
}

VectorCall with_form(VectorCall call) {
  for (Given& given : call.given) {
    Value& value = given.value;
    if (value.kind == Kind::boolean) value = whole(Kind::boolean, -1);
    if (value.kind == Kind::f64 && std::isnan(f64_of(value))) value = real(0.001);
  }
  return call;
}

std::vector<std::string> buttons_of_forms() {
  return {"cmdDatosaceptar", "cmdCalcular", "cmdEliminar"};
}

}  // namespace orv2_geo::vectors
