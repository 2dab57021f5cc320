#include "orv2_geo/library/catalogue.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>
#include <new>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "orv2_geo/library/object.h"
#include "orv2_geo/platform/user_interface.h"
#include "tests/library/interface_rows.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

std::string type_name(Type type) {
  static const std::map<Type, std::string> names = {
      {Type::none, "none"},
      {Type::i16, "i16"},
      {Type::i32, "i32"},
      {Type::f32, "f32"},
      {Type::f64, "f64"},
      {Type::boolean, "bool"},
      {Type::text, "text"},
      {Type::object, "object"},
      {Type::variant, "variant"},
      {Type::double_array, "DoubleArray"},
      {Type::single_array, "SingleArray"},
      {Type::long_array, "LongArray"},
      {Type::short_array, "ShortArray"},
      {Type::string_array, "StringArray"},
  };
  return names.at(type);
}

std::string kind_name(MemberKind kind) {
  return kind == MemberKind::method          ? "method"
         : kind == MemberKind::property_read ? "read"
                                             : "write";
}

std::string described(const MemberDescription& member) {
  std::string text;
  for (const ParameterDescription& parameter : member.parameters) {
    if (!text.empty()) text += "; ";
    text += std::string(parameter.name) + ' ' + type_name(parameter.type);
    if (parameter.by_reference) text += '&';
    if (parameter.optional) text += " optional";
    if (parameter.has_default) text += " = " + std::to_string(parameter.default_value);
  }
  return text;
}

// The rows of one class, in order.
std::vector<InterfaceRow> rows_of(std::string_view name) {
  std::vector<InterfaceRow> rows;
  std::copy_if(std::begin(interface_rows), std::end(interface_rows), std::back_inserter(rows),
               [&](const InterfaceRow& row) { return row.of_class == name; });
  return rows;
}

TEST(Catalogue, HasTheSevenClasses) {
  std::set<std::string_view> expected;
  for (const InterfaceRow& row : interface_rows) expected.insert(row.of_class);
  std::set<std::string_view> got;
  for (const ClassDescription* one : catalogue()) {
    got.insert(one->name);
    EXPECT_EQ(one->registered_name, "Orv2_Geo." + std::string(one->name));
  }
  EXPECT_EQ(got, expected);
  EXPECT_EQ(got.size(), 7U);
}

TEST(Catalogue, IsTheInterfaceMemberByMember) {
  for (const ClassDescription* one : catalogue()) {
    const std::vector<InterfaceRow> rows = rows_of(one->name);
    ASSERT_EQ(one->members.size(), rows.size()) << one->name;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const MemberDescription& member = one->members[i];
      EXPECT_EQ(member.name, rows[i].member) << one->name << ' ' << i;
      EXPECT_EQ(kind_name(member.kind), rows[i].kind) << rows[i].member;
      EXPECT_EQ(described(member), rows[i].parameters) << rows[i].member;
      EXPECT_EQ(type_name(member.result), rows[i].result) << rows[i].member;
    }
  }
}

TEST(Catalogue, EveryNameIsFoundWhateverItsCase) {
  for (const ClassDescription* one : catalogue()) {
    for (std::size_t i = 0; i < one->members.size(); ++i) {
      const MemberDescription& member = one->members[i];
      const Wanted wanted = static_cast<Wanted>(member.kind);
      std::string upper(member.name);
      for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
      EXPECT_EQ(find_member(*one, member.name, wanted), i) << member.name;
      EXPECT_EQ(find_member(*one, upper, wanted), i) << member.name;
      EXPECT_EQ(find_member(*one, upper + "_", wanted), std::nullopt);
      EXPECT_EQ(find_member(*one, "x" + upper, wanted), std::nullopt);
    }
    EXPECT_EQ(find_member(*one, ""), std::nullopt);
    EXPECT_EQ(find_member(*one, std::string(1000, 'x')), std::nullopt);
  }
}

// Whether a member of the class has this name, letter by letter.
bool is_in(const ClassDescription& of_class, const std::string& given) {
  const auto lower = [](char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  };
  const auto same = [&](char a, char b) { return lower(a) == lower(b); };
  return std::any_of(
      of_class.members.begin(), of_class.members.end(), [&](const MemberDescription& member) {
        return std::equal(member.name.begin(), member.name.end(), given.begin(), given.end(), same);
      });
}

// Enough names for some to be looked up where a member's own would be.
std::vector<std::string> names_like(const std::string& name) {
  const std::string_view letters = "abcdefghijklmnopqrstuvwxyz_0123456789";
  std::vector<std::string> names;
  for (const char a : letters) {
    for (const char b : letters) {
      names.push_back(name + a + b);  // a tail
      names.push_back(std::string{a, b} + name);
      names.push_back(name.substr(0, name.size() / 2) + a + b);  // another end
    }
    names.push_back(name + a);
    names.push_back(a + name);
    for (std::size_t i = 0; i < name.size(); ++i) {
      names.push_back(name);
      names.back()[i] = a;  // one letter is another
    }
  }
  for (std::size_t kept = 0; kept < name.size(); ++kept) names.push_back(name.substr(0, kept));
  return names;
}

TEST(Catalogue, ANameThatIsLikeAMembersIsNone) {
  for (const ClassDescription* one : catalogue()) {
    for (const MemberDescription& member : one->members) {
      for (const std::string& like : names_like(std::string(member.name))) {
        ASSERT_EQ(find_member(*one, like).has_value(), is_in(*one, like))
            << like << " for " << member.name;
      }
    }
  }
}

// What stands behind a name belongs to the caller.
TEST(Catalogue, ANameIsFoundInTheMiddleOfALongerText) {
  for (const ClassDescription* one : catalogue()) {
    for (std::size_t i = 0; i < one->members.size(); ++i) {
      const MemberDescription& member = one->members[i];
      const std::string longer = "x" + std::string(member.name) + "Xyz";
      const std::string_view name = std::string_view(longer).substr(1, member.name.size());
      EXPECT_EQ(find_member(*one, name, static_cast<Wanted>(member.kind)), i) << name;
    }
  }
}

// Letters that a careless fold of case would take for others.
TEST(Catalogue, OnlyLettersHaveCase) {
  const ClassDescription& one = *find_class("orv2_geo.CGEO_funcderiv");
  EXPECT_NE(find_member(one, "f_sen"), std::nullopt);
  EXPECT_EQ(find_member(one, "F\x7fSen"), std::nullopt);
  EXPECT_EQ(find_member(one, "F\x3fSen"), std::nullopt);
}

TEST(Catalogue, APropertyHasTwoSides) {
  const ClassDescription& one = *find_class("Orv2_Geo.cgeo_FuncDeriv");
  EXPECT_EQ(find_member(one, "RPi", Wanted::property_read), 2U);
  EXPECT_EQ(find_member(one, "RPi", Wanted::property_write), 3U);
  EXPECT_EQ(find_member(one, "RPi", Wanted::any), 2U);
  EXPECT_EQ(find_member(one, "RPi", Wanted::method), std::nullopt);
  EXPECT_EQ(find_member(one, "F_Sen", Wanted::property_read), std::nullopt);
}

TEST(Catalogue, UnknownClassesAreNotFound) {
  for (const char* name : {"", "cgeo_api", "Orv2_Geo", "Orv2_Geo.", "Orv2_Geo.cgeo_apis"}) {
    EXPECT_EQ(find_class(name), nullptr) << name;
    EXPECT_EQ(failure_of([&] { (void)create(name); }), 429) << name;
  }
}

// An argument of the right type for a parameter, so that a call reaches the
// member itself.
struct Variables {
  std::int16_t i16 = 0;
  std::int32_t i32 = 0;
  float f32 = 0;
  double f64 = 0;
  Bool boolean;
  Text text;
  ObjectRef object;
  DoubleArray doubles;
  SingleArray singles;
  LongArray longs;
  ShortArray shorts;
  StringArray strings;

  Argument fitting(const ParameterDescription& parameter) {
    switch (parameter.type) {
      case Type::i16: return parameter.by_reference ? ref(i16) : Argument(i16);
      case Type::i32: return parameter.by_reference ? ref(i32) : Argument(i32);
      case Type::f32: return parameter.by_reference ? ref(f32) : Argument(f32);
      case Type::f64: return parameter.by_reference ? ref(f64) : Argument(f64);
      case Type::boolean: return ref(boolean);
      case Type::text: return ref(text);
      case Type::object: return ref(object);
      case Type::double_array: return ref(doubles);
      case Type::single_array: return ref(singles);
      case Type::long_array: return ref(longs);
      case Type::short_array: return ref(shorts);
      default: return ref(strings);
    }
  }

  std::vector<Argument> fitting(const MemberDescription& member) {
    std::vector<Argument> arguments;
    for (const ParameterDescription& parameter : member.parameters) {
      arguments.push_back(fitting(parameter));
    }
    return arguments;
  }
};

// Shows nothing: some members would put a box on the screen.
class Silent final : public UserInterface {
 public:
  void error_box(const Text&, std::int32_t, const Text*) override {}
  void show_modal(Form&) override {}
};

// Fails the way a host of C++ does.
class Failing final : public UserInterface {
 public:
  void error_box(const Text&, std::int32_t, const Text*) override {
    ++boxes;
    throw std::runtime_error("no screen");
  }
  void show_modal(Form&) override { throw std::bad_alloc(); }

  int boxes = 0;
};

// Every member takes its arguments, whatever then becomes of them.
TEST(Catalogue, EveryMemberAnswersItsKindsOfArguments) {
  Silent silent;
  UserInterface* const before = install_user_interface(&silent);
  for (const ClassDescription* one : catalogue()) {
    const ObjectRef object = create(one->registered_name);
    for (std::size_t i = 0; i < one->members.size(); ++i) {
      Variables variables;
      const std::vector<Argument> arguments = variables.fitting(one->members[i]);
      const std::int32_t number =
          failure_of([&] { static_cast<Object&>(*object.get()).call(i, arguments); });
      // Its own failures at most: a missing element or object, a division by zero.
      EXPECT_TRUE(std::set<std::int32_t>({0, 5, 6, 9, 11, 91}).contains(number))
          << one->members[i].name << ": " << number;
    }
  }
  install_user_interface(before);
}

// Whatever fails, the screen included, leaves a member as a failure of its class.
TEST(Catalogue, WhatLeavesAMemberIsSignedByItsClass) {
  Failing failing;
  UserInterface* const before = install_user_interface(&failing);
  for (const ClassDescription* one : catalogue()) {
    const ObjectRef object = create(one->registered_name);
    for (std::size_t i = 0; i < one->members.size(); ++i) {
      Variables variables;
      const std::vector<Argument> arguments = variables.fitting(one->members[i]);
      try {
        static_cast<Object&>(*object.get()).call(i, arguments);
      } catch (const RunFailure& failure) {
        EXPECT_EQ(failure.source(), one->registered_name) << one->members[i].name;
      } catch (...) {
        ADD_FAILURE() << one->members[i].name << " lets the host's own failure through";
      }
    }
  }
  EXPECT_GT(failing.boxes, 0);
  install_user_interface(before);
}

// Values that some step of a member cannot work with.
void make_hostile(Variables& variables, Numbers& numbers) {
  const double doubles[] = {0.0, 1.0, -7.5, 1e308, -1e308, 1e-320, nan, inf};
  const std::int32_t longs[] = {0, 1, 2, 5, -1, 400, -400, 32767};
  const auto one_of = [&](const auto& all) { return all[numbers.below(std::size(all))]; };
  variables.f64 = one_of(doubles);
  variables.f32 = static_cast<float>(std::min(one_of(doubles), 3e38));
  variables.i32 = one_of(longs);
  variables.i16 = static_cast<std::int16_t>(one_of(longs));
  if (numbers.below(2) == 0) return;  // arrays that are not allocated
  variables.doubles = DoubleArray(0, 4);
  for (std::int32_t i = 0; i <= 4; ++i) variables.doubles(i) = one_of(doubles);
  variables.singles = SingleArray(0, 2);
  variables.longs = LongArray(1, 3);
  variables.shorts = ShortArray(0, 1);
  variables.strings = StringArray(0, 2);
}

// The failures of a member with hostile arguments and a screen that fails, by their numbers.
std::set<std::int32_t> failures_of(const ClassDescription& of_class, std::size_t position) {
  std::set<std::int32_t> found;
  const ObjectRef object = create(of_class.registered_name);
  Numbers numbers(position);
  for (int run = 0; run < 300; ++run) {
    // Variables of their own, so that few are the same one.
    Variables variables[4];
    for (Variables& one : variables) make_hostile(one, numbers);
    std::vector<Argument> arguments;
    for (const ParameterDescription& parameter : of_class.members[position].parameters) {
      arguments.push_back(variables[numbers.below(4)].fitting(parameter));
    }
    try {
      static_cast<Object&>(*object.get()).call(position, arguments);
    } catch (const RunFailure& failure) {
      found.insert(failure.number());
      EXPECT_EQ(failure.source(), of_class.registered_name)
          << of_class.members[position].name << ' ' << failure.number();
    }
  }
  return found;
}

TEST(Catalogue, EveryMemberThatCanFailLetsItsFailureOut) {
  const std::set<std::string> cannot_fail = {
      "cgeo_FuncDeriv.Pi",  // variables
      "cgeo_FuncDeriv.RPi",
      "cgeo_Matrices.MaxMin_3Matriz",          // skips what fails
      "cgeo_Matrices.Quita_Pts_Repetidos_3D",  // do nothing
      "cgeo_Matrices.Quita_Puntos_Repetidos_XYZ_con_indice",
      "cgeo_Ordena.SwapStrings",
  };
  Failing failing;
  UserInterface* const before = install_user_interface(&failing);
  std::set<std::string> never;
  for (const ClassDescription* one : catalogue()) {
    for (std::size_t i = 0; i < one->members.size(); ++i) {
      if (failures_of(*one, i).empty()) {
        never.insert(std::string(one->name) + '.' + std::string(one->members[i].name));
      }
    }
  }
  install_user_interface(before);
  EXPECT_EQ(never, cannot_fail);
}

}  // namespace
}  // namespace orv2_geo
