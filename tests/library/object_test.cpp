#include "orv2_geo/library/object.h"

#include <optional>
#include <string>
#include <thread>

#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "orv2_geo/angles/cgeo_FuncDeriv.h"
#include "orv2_geo/library/catalogue.h"
#include "orv2_geo/platform/text_services.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

Object& as_object(const ObjectRef& object) { return static_cast<Object&>(*object.get()); }

double number(const Variant& answer) { return *answer.get<double>(); }

TEST(Objects, AreCreatedByNameWhateverItsCase) {
  EXPECT_EQ(as_object(create("Orv2_Geo.cgeo_Algorismos")).description().name, "cgeo_Algorismos");
  EXPECT_EQ(as_object(create("orv2_GEO.CGEO_API")).description().name, "cgeo_api");
}

TEST(Objects, ByNameAndByPositionAreOneCall) {
  const ObjectRef object = create("Orv2_Geo.cgeo_Algorismos");
  double dx = -1.0, dy = 0.0, aZ = 0.0;
  const Argument arguments[] = {ref(dx), ref(dy), ref(aZ)};
  object->call("azimut", arguments);
  EXPECT_EQ(aZ, 300.0);
  aZ = 0.0;
  as_object(object).call(9, arguments);
  EXPECT_EQ(aZ, 300.0);
}

TEST(Objects, APrecisionLeftOutOpensTheDialogWithItsOwn) {
  RecordingInterface screen;
  std::string typed;
  screen.user = [&](Form& form) {
    typed = form.control("TxtPresc").text().to_utf8();
    form.press_escape();
  };
  std::int32_t points = 0;
  DoubleArray x(0, 0), y(0, 0), z(0, 0);
  StringArray codes(0, 0), names(0, 0);
  ShortArray layers(0, 0);
  LongArray index(0, 0);
  Bool aviso;
  const Argument arguments[] = {ref(points), ref(x),      ref(y),     ref(z),    ref(codes),
                                ref(names),  ref(layers), ref(index), ref(aviso)};
  create("Orv2_Geo.cgeo_Matrices")->call("Quita_Pts_Repetidos", arguments);
  EXPECT_EQ(typed, "0.001");
}

TEST(Objects, TwoParametersThatAreOneVariableBehaveAsOne) {
  const ObjectRef object = create("Orv2_Geo.cgeo_Algorismos");
  double both = 0.0;
  const Argument arguments[] = {ref(both), ref(both)};
  const Variant answer = object->call("Atn2", arguments);
  EXPECT_EQ(both, 1e-09);  // X is read after Y was replaced: the two are equal
  EXPECT_EQ(*answer.get<float>(), static_cast<float>((runtime.atan(1.0) - 3.141592 / 2.0)));
}

TEST(Objects, PropertiesAreStorageOfTheirObject) {
  const ObjectRef a = create("Orv2_Geo.cgeo_FuncDeriv");
  const ObjectRef b = create("Orv2_Geo.cgeo_FuncDeriv");
  EXPECT_EQ(number(a->call("Pi", {})), 0.0);
  EXPECT_EQ(number(a->call("RPi", {})), 0.0);
  a->set_property("rpi", 1.5);
  const Argument two[] = {2.0};
  b->call("RPi", two);
  EXPECT_EQ(number(a->call("RPi", {})), 1.5);
  EXPECT_EQ(number(b->call("RPi", {})), 2.0);
  EXPECT_EQ(as_object(a).as<cgeo_FuncDeriv>()->RPi, 1.5);
  EXPECT_EQ(as_object(a).as<cgeo_Algorismos>(), nullptr);
}

// One argument for a member with one by-value f64 (F_CosH) or one by-reference
// f32 (An400), and what becomes of it.
struct ArgumentRow {
  const char* rule;
  const char* member;
  Argument argument;
  std::int32_t failure;
  double expected;
};

TEST(Objects, ArgumentsConvertAsALateBoundCallWould) {
  const Text two(u" 2 ");
  const Text word(u"dos");
  const Text huge(u"1e999");
  const Text none;
  std::int16_t short_two = 2;
  float single = 90.0F;
  double wide = 90.0;
  Text text_variable(u"2");
  DoubleArray array;
  const double cosh_two = cgeo_FuncDeriv().F_CosH(2.0);
  const double cosh_one = cgeo_FuncDeriv().F_CosH(-1.0);
  const ArgumentRow table[] = {
      {"an i16 by value", "F_CosH", std::int16_t{2}, 0, cosh_two},
      {"an i32 by value", "F_CosH", 2, 0, cosh_two},
      {"an f32 by value", "F_CosH", 2.0F, 0, cosh_two},
      {"true is -1", "F_CosH", true, 0, cosh_one},
      {"any other flag is -1 too", "F_CosH", Bool::raw(7), 0, cosh_one},
      {"a text that reads as a number", "F_CosH", Argument::of_value(two), 0, cosh_two},
      {"a text variable that reads as a number", "F_CosH", ref(text_variable), 0, cosh_two},
      {"a text that does not", "F_CosH", Argument::of_value(word), 13, 0},
      {"an empty text", "F_CosH", Argument::of_value(none), 13, 0},
      {"a text out of range", "F_CosH", Argument::of_value(huge), 6, 0},
      {"a variable of another type for a by-value parameter", "F_CosH", ref(short_two), 0,
       cosh_two},
      {"no object", "F_CosH", Argument::of_value(ObjectRef()), 13, 0},
      {"an array", "F_CosH", ref(array), 13, 0},
      {"left out", "F_CosH", Argument(), 449, 0},
      {"a variable of the exact type", "An400", ref(single), 0, 100.0},
      {"a variable of another type for a by-reference parameter", "An400", ref(wide), 13, 0},
      {"a value becomes a temporary", "An400", 90.0, 0, 100.0},
      {"a text becomes a temporary", "An400", Argument::of_value(two), 0,
       static_cast<float>(2.22222222222222)},
      {"a value beyond f32", "An400", 1e300, 6, 0},
  };
  const ObjectRef functions = create("Orv2_Geo.cgeo_FuncDeriv");
  const ObjectRef algorithms = create("Orv2_Geo.cgeo_Algorismos");
  for (const ArgumentRow& row : table) {
    const bool double_answer = row.member == std::string_view("F_CosH");
    const ObjectRef& object = double_answer ? functions : algorithms;
    Variant answer;
    EXPECT_EQ(failure_of([&] {
                answer = object->call(row.member, {&row.argument, 1});
              }),
              row.failure)
        << row.rule;
    if (row.failure != 0) continue;
    const double got = double_answer ? *answer.get<double>() : *answer.get<float>();
    EXPECT_EQ(got, row.expected) << row.rule;
  }
}

TEST(Objects, ArgumentsAreCounted) {
  const ObjectRef object = create("Orv2_Geo.cgeo_Algorismos");
  double a = 1.0;
  const Argument four[] = {ref(a), ref(a), ref(a), ref(a)};
  EXPECT_EQ(failure_of([&] { object->call("Azimut", {four, 4}); }), 450);
  EXPECT_EQ(failure_of([&] { object->call("Azimut", {four, 2}); }), 449);
  EXPECT_EQ(failure_of([&] { object->call("Azimut", {}); }), 449);
  const ObjectRef functions = create("Orv2_Geo.cgeo_FuncDeriv");
  EXPECT_EQ(failure_of([&] { functions->call("Pi", {four, 2}); }), 450);
}

TEST(Objects, UnknownMembersAre438) {
  const ObjectRef object = create("Orv2_Geo.cgeo_FuncDeriv");
  EXPECT_EQ(failure_of([&] { object->call("F_Sin", {}); }), 438);
  EXPECT_EQ(failure_of([&] { as_object(object).call(14, {}); }), 438);
  EXPECT_EQ(failure_of([&] { object->set_property("F_Sen", 1.0); }), 438);
  EXPECT_EQ(failure_of([&] { object->set_property("Rho", 1.0); }), 438);
}

TEST(Objects, AFailureArrivesWhole) {
  const ObjectRef object = create("Orv2_Geo.cgeo_FuncDeriv");
  const Argument zero[] = {0.0};
  try {
    object->call("F_LogN", zero);
    FAIL();
  } catch (const RunFailure& failure) {
    EXPECT_EQ(failure.number(), 5);
    EXPECT_EQ(failure.description(), "Argumento o llamada a procedimiento no válidos");
    EXPECT_EQ(failure.source(), "Orv2_Geo.cgeo_FuncDeriv");
  }
}

TEST(Objects, ANumberGivenForAFlagIsTrueUnlessItIsZero) {
  const auto flag = [](const Argument& given) {
    return description::to_bool(given, &text_services::number_from_text).bits;
  };
  EXPECT_EQ(flag(0.0), 0);
  EXPECT_EQ(flag(-0.0), 0);
  EXPECT_EQ(flag(1.0), -1);
  EXPECT_EQ(flag(-0.5), -1);
  EXPECT_EQ(flag(std::int32_t{0}), 0);
  EXPECT_EQ(flag(std::int32_t{7}), -1);
  EXPECT_EQ(flag(Bool::raw(7)), 7);
}

TEST(Objects, AnotherThreadIsRefusedBeforeAnythingRuns) {
  const ObjectRef object = create("Orv2_Geo.cgeo_Algorismos");
  double x = 1.0, y = 1.0, azimuth = -1.0;
  std::int32_t numbers[2] = {};
  std::thread([&] {
    const Argument arguments[] = {ref(x), ref(y), ref(azimuth)};
    Object& called = as_object(object);
    const std::size_t position = *find_member(called.description(), "Azimut", Wanted::any);
    numbers[0] = failure_of([&] { called.call("Azimut", arguments); });
    numbers[1] = failure_of([&] { called.call(position, arguments); });
  }).join();
  EXPECT_EQ(numbers[0], 5);
  EXPECT_EQ(numbers[1], 5);
  EXPECT_EQ(azimuth, -1.0);
}

TEST(Objects, AThreadThatHasEndedLeavesItsObjectsToNobody) {
  ObjectRef object;
  std::thread([&] { object = create("Orv2_Geo.cgeo_FuncDeriv"); }).join();
  const Argument one[] = {1.0};
  std::int32_t numbers[2] = {};
  std::thread([&] {
    numbers[0] = failure_of([&] { object->call("F_LogN", one); });
    numbers[1] = failure_of([&] { object->call("no_such_member", one); });
  }).join();
  EXPECT_EQ(numbers[0], 5);
  EXPECT_EQ(numbers[1], 5);
  EXPECT_EQ(failure_of([&] { object->set_property("RPi", 1.0); }), 5);
}

// A surface whose member releases the host's reference to a library object.
class Releasing final : public LateBound {
 public:
  explicit Releasing(std::optional<ObjectRef>& held) : held_(held) {}
  Variant call(std::string_view, std::span<const Argument>) override {
    held_.reset();
    return {};
  }
  void set_property(std::string_view, const Variant&) override {}

 private:
  std::optional<ObjectRef>& held_;
};

// A class whose one member calls a late-bound object and then looks at its own
// data.
struct Calling {
  static constexpr char registered_name[] = "Orv2_Geo.Calling";
  double own = 42.5;
  double Llama(const ObjectRef& surface) const {
    surface->call("PSet", {});
    return own;
  }
};
constexpr MemberDescription calling_members[] = {method<&Calling::Llama, "f">("Llama")};
constexpr ClassDescription calling_class =
    describe_class<Calling>("Calling", "Orv2_Geo.Calling", calling_members);

TEST(Objects, OneReleasedInTheMiddleOfACallLivesUntilItEnds) {
  const long before = allocations_in_use();
  {
    std::optional<ObjectRef> held(ObjectRef(new Object(calling_class)));
    Object& object = as_object(*held);
    const ObjectRef surface(new Releasing(held));
    const Argument arguments[] = {Argument::of_value(surface)};
    const Variant answer = object.call("Llama", arguments);
    EXPECT_FALSE(held.has_value());
    EXPECT_EQ(*answer.get<double>(), 42.5);
  }
  EXPECT_EQ(allocations_in_use(), before);
}

TEST(Objects, NoObjectWhereOneIsUsedIs91) {
  const ObjectRef object(new Object(calling_class));
  const Argument arguments[] = {Argument::of_value(ObjectRef())};
  EXPECT_EQ(failure_of([&] { object->call("Llama", arguments); }), 91);
}

TEST(Objects, ARefusedAllocationIs7) {
  const long before = allocations_in_use();
  for (long let_pass = 0; let_pass < 2; ++let_pass) {
    const RefusedAllocation refused(let_pass);
    EXPECT_EQ(failure_of([] { (void)create("Orv2_Geo.cgeo_Matrices"); }), 7) << let_pass;
    const RefusedAllocation again(let_pass);
    EXPECT_EQ(failure_of([] { ObjectRef(new (std::nothrow) Object(calling_class)); }),
              let_pass == 0 ? 0 : 7);
  }
  EXPECT_EQ(allocations_in_use(), before);
}

// Optional parameters and how they arrive.
struct Optional {
  static constexpr char registered_name[] = "Orv2_Geo.Optional";
  double De(const double& required, const double& zero, const std::int32_t& bound,
            const Bool& flag) const {
    return required + zero + bound + flag.bits;
  }
};
constexpr MemberDescription optional_members[] = {
    method<&Optional::De, "required", optional("zero"), optional("bound", -7), optional("flag")>(
        "De")};
constexpr ClassDescription optional_class =
    describe_class<Optional>("Optional", "Orv2_Geo.Optional", optional_members);

TEST(Objects, OptionalParametersLeftOutArriveAsZeroOrTheirDefault) {
  const ObjectRef object(new Object(optional_class));
  const Argument all[] = {1.0, 10.0, 100, true};
  EXPECT_EQ(number(object->call("De", {all, 1})), -6.0);
  EXPECT_EQ(number(object->call("De", {all, 2})), 4.0);
  EXPECT_EQ(number(object->call("De", {all, 3})), 111.0);
  EXPECT_EQ(number(object->call("De", {all, 4})), 110.0);
  const Argument hole[] = {1.0, Argument(), 100};
  EXPECT_EQ(number(object->call("De", hole)), 101.0);
  EXPECT_EQ(failure_of([&] { object->call("De", {}); }), 449);
}

}  // namespace
}  // namespace orv2_geo
