// Writes the file of test vectors: what every member does with some arguments.
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>

#include "tests/vectors/inputs.h"
#include "tests/vectors/portable_call.h"

namespace orv2_geo::vectors {
namespace {

constexpr int calls_of_a_member = 100;
constexpr int tries_of_a_member = 400;

// Members whose answers come from the C run-time's functions, and those that call them.
const std::map<std::string_view, Closeness> not_exact = {
    {"Azimut_s", Closeness::elementary},
    {"Azimut", Closeness::elementary},
    {"Atan2", Closeness::elementary},
    {"Atn2", Closeness::elementary},
    {"Arccos", Closeness::elementary},
    {"GetAngle3P", Closeness::elementary},
    {"Triangulo_pendiente", Closeness::elementary},
    {"recta_Angulo_y_Dist", Closeness::elementary},
    {"XY_de_Z_en_Recta", Closeness::sums},
    {"XY_dando_ANG_DIST", Closeness::sums},
    {"Cortes_R1_con_Pol", Closeness::elementary},
    {"F_Log10", Closeness::elementary},
    {"F_LogN", Closeness::elementary},
    {"F_SenH", Closeness::elementary},
    {"F_CosH", Closeness::elementary},
    {"F_TanH", Closeness::elementary},
    {"F_ArcSen", Closeness::elementary},
    {"F_ArcCos", Closeness::elementary},
    {"F_Sen", Closeness::elementary},
    {"F_Cos", Closeness::elementary},
    {"F_Tan", Closeness::elementary},
    {"GF_Angulo_de_1Recta", Closeness::elementary},
    {"GR_AngDist_de_1Recta", Closeness::elementary},
    {"GF_Distancia", Closeness::elementary},
    {"GF_Distancia_S", Closeness::elementary},
    {"GR_XY_de_AngDist", Closeness::sums},
    {"GR_Se_cortan_2_rectas", Closeness::elementary},
    {"GF_angulo_3_puntos", Closeness::bearings},
    {"GR_Paralela", Closeness::sums}};

Closeness closeness_of(std::string_view member) {
  const auto found = not_exact.find(member);
  return found == not_exact.end() ? Closeness::exact : found->second;
}

struct DescribedMember {
  Member member;
  std::int32_t kind;
};

void needed(std::int32_t status) {
  if (status != 0) throw std::runtime_error("the catalogue answers with " + std::to_string(status));
}

Parameter parameter_at(std::size_t class_index, std::size_t position, std::size_t i) {
  orv2_parameter_info info{};
  needed(orv2_parameter_at(class_index, position, i, &info));
  return {info.name, kind_of_tag(info.type), (info.type & ORV2_BYREF) != 0, info.optional != 0,
          info.has_default != 0 ? info.default_value : 0};
}

DescribedMember member_at(const orv2_class_info& owner, std::size_t class_index,
                          std::size_t position) {
  orv2_member_info info{};
  needed(orv2_member_at(class_index, position, &info));
  DescribedMember described{{info.name, {}, closeness_of(info.name) != Closeness::exact, false},
                            info.kind};
  described.member.on_profiles = std::string(owner.name) == "cgeo_Terreno";
  for (std::size_t i = 0; i < info.parameter_count; ++i) {
    described.member.parameters.push_back(parameter_at(class_index, position, i));
  }
  return described;
}

std::string name_in_file(const DescribedMember& described) {
  const char* const fronts[] = {"", "get_", "put_"};
  return fronts[described.kind] + described.member.name;
}

// What was reached: calls, and how often each failure.
struct Tally {
  int calls = 0, boxes = 0, told = 0;
  std::map<std::int32_t, int> failures;
};

class ClassOfVectors {
 public:
  explicit ClassOfVectors(std::size_t class_index) : class_index_(class_index) {
    needed(orv2_class_at(class_index, &info_));
    written_.name = info_.name;
  }

  const VectorClass& make() {
    PortableObject object(info_.registered_name);
    for (std::size_t position = 0; position < info_.member_count; ++position) {
      add_member(object, position);
    }
    return written_;
  }

 private:
  void add_member(PortableObject& object, std::size_t position) {
    const DescribedMember described = member_at(info_, class_index_, position);
    written_.members[position] = {name_in_file(described), closeness_of(described.member.name)};
    Chance chance(1000 * class_index_ + position);
    Tally tally;
    for (int i = 0; i < tries_of_a_member && tally.calls < calls_of_a_member; ++i) {
      add_call(object, position, described, arguments_for(described.member, chance), tally);
    }
    if (described.kind == ORV2_PROPERTY_WRITE) set_for_the_rest(object, position, described, tally);
    tell(described, tally);
  }

  // A class's public variables, as those of a host that works in centesimal units.
  void set_for_the_rest(PortableObject& object, std::size_t position,
                        const DescribedMember& described, Tally& tally) {
    constexpr double pi = 3.14159265358979;
    const double value = described.member.name == "Pi" ? pi : pi / 200.0;
    add_call(object, position, described, {Given{real(value), -1, false}}, tally);
  }

  void add_call(PortableObject& object, std::size_t position, const DescribedMember& described,
                const std::vector<Given>& given, Tally& tally) {
    std::vector<bool> by_value;
    for (const Parameter& p : described.member.parameters) by_value.push_back(!p.by_reference);
    const VectorCall call = {position, given, object.call(position, given, by_value)};
    if (object.showed_form()) return;  // a form waits for a person
    written_.calls.push_back(call);
    ++tally.calls;
    ++tally.failures[call.outcome.failure];
    tally.boxes += !call.outcome.boxes.empty();
    tally.told += !call.outcome.told.empty();
    if (described.kind == ORV2_PROPERTY_WRITE) read_back(object, position - 1);
  }

  void read_back(PortableObject& object, std::size_t position) {
    written_.calls.push_back({position, {}, object.call(position, {}, {})});
  }

  void tell(const DescribedMember& described, const Tally& tally) const {
    std::cout << info_.name << '.' << name_in_file(described) << ": " << tally.calls << " calls";
    if (tally.calls == 0) throw std::runtime_error(name_in_file(described) + " is never called");
    if (tally.boxes != 0) std::cout << ", " << tally.boxes << " with boxes";
    if (tally.told != 0) std::cout << ", " << tally.told << " that told an object";
    for (const auto& [number, count] : tally.failures) {
      if (number != 0) std::cout << ", " << count << " of failure " << number;
    }
    std::cout << '\n';
  }

  std::size_t class_index_;
  orv2_class_info info_{};
  VectorClass written_;
};

void write_all(const char* path) {
  std::ofstream file(path, std::ios::binary);
  for (std::size_t i = 0; i < orv2_class_count(); ++i) write(file, ClassOfVectors(i).make());
  file.close();
  if (!file) throw std::runtime_error(std::string("cannot write ") + path);
}

}  // namespace
}  // namespace orv2_geo::vectors

int main(int count, char** words) {
  if (count != 2) {
    std::cerr << "usage: make_vectors FILE\n";
    return 2;
  }
  try {
    orv2_geo::vectors::write_all(words[1]);
  } catch (const std::exception& failure) {
    std::cerr << "make_vectors: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}
