// A host's own objects: what reaches the callbacks, and what comes back.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "orv2_geo/c_api/guard.h"
#include "orv2_geo/c_api/handles.h"
#include "orv2_geo/c_api/values.h"
#include "orv2_geo/frame/variant.h"
#include "tests/c_api/boundary.h"
#include "tests/support/expect_failure.h"

namespace orv2_geo::testing_support {
namespace {

using Calling =
    std::function<std::int32_t(const char*, const orv2_value*, std::size_t, orv2_value*)>;
using Setting = std::function<std::int32_t(const char*, const orv2_value*)>;

struct Host {
  Calling on_call;
  Setting on_set;

  static std::int32_t call(void* context, const char* name, const orv2_value* arguments,
                           std::size_t count, orv2_value* result) {
    return static_cast<Host*>(context)->on_call(name, arguments, count, result);
  }
  static std::int32_t set(void* context, const char* name, const orv2_value* value) {
    return static_cast<Host*>(context)->on_set(name, value);
  }
};

class HostObjects : public ::testing::Test {
 protected:
  ObjectRef object() {
    const orv2_host_object callbacks{sizeof(callbacks), Host::set, Host::call, nullptr};
    orv2_handle handle = 0;
    orv2_host_object_new(&callbacks, &host, &handle);
    const Owned owned(handle);
    return c_api::object_of(handle);
  }
  Host host;
};

RunFailure failure_from(const std::function<void()>& work) {
  try {
    work();
  } catch (const RunFailure& failure) {
    return failure;
  }
  ADD_FAILURE() << "nothing failed";
  return RunFailure(0);
}

// ---- Arguments and answers -------------------------------------------------

TEST_F(HostObjects, SeeScalarsAsTheyAreAndTextsAsUtf8) {
  const Text words(u"año");
  double variable = 1.5;
  const Argument given[] = {Argument(std::int16_t{-3}), Argument(2.5F), Argument::of_value(words),
                            Argument(), ref(variable)};
  host.on_call = [&](const char* name, const orv2_value* values, std::size_t count, orv2_value*) {
    EXPECT_STREQ(name, "Line");
    EXPECT_EQ(count, 5U);
    EXPECT_EQ(values[0].tag, ORV2_I16);
    EXPECT_EQ(values[0].as.i16, -3);
    EXPECT_EQ(values[1].as.f32, 2.5F);
    EXPECT_EQ(values[2].tag, ORV2_UTF8);
    EXPECT_STREQ(values[2].as.utf8, "a\u00f1o");
    EXPECT_EQ(values[3].tag, ORV2_OMITTED);
    EXPECT_EQ(values[4].tag, ORV2_F64 | ORV2_BYREF);
    *static_cast<double*>(values[4].as.pointer) = 9.0;
    return 0;
  };
  EXPECT_TRUE(object()->call("Line", given).holds<std::monostate>());
  EXPECT_EQ(variable, 9.0);
}

TEST_F(HostObjects, AnswerWithAnyScalarATextOrAnObject) {
  const Owned other(new_object());
  const Owned words(new_text(u"si"));
  const orv2_value answers[] = {tagged(ORV2_NONE),
                                tagged(ORV2_I16, 7),
                                tagged(ORV2_I32, 8),
                                by_value_of(1.5F),
                                by_value_of(2.5),
                                tagged(ORV2_BOOL, 0xffff),
                                utf8("no"),
                                tagged(ORV2_TEXT, words),
                                tagged(ORV2_OBJECT, other),
                                tagged(ORV2_OBJECT, 0)};
  const Variant expected[] = {
      Variant(),   std::int16_t{7}, std::int32_t{8},         1.5F,       2.5, Bool(true),
      Text(u"no"), Text(u"si"),     c_api::object_of(other), ObjectRef()};
  for (std::size_t i = 0; i < std::size(answers); ++i) {
    host.on_call = [&](const char*, const orv2_value*, std::size_t, orv2_value* result) {
      *result = answers[i];
      return 0;
    };
    EXPECT_EQ(object()->call("Get", {}).value(), expected[i].value()) << "tag " << answers[i].tag;
  }
}

TEST_F(HostObjects, AnswersThatMeanNothingAreFailures) {
  struct Row {
    orv2_value answer;
    std::int32_t expected;
  };
  const Owned stale(new_text());
  orv2_release(stale);
  const Row rows[] = {{tagged(ORV2_OMITTED), 13},
                      {tagged(ORV2_VARIANT), 13},
                      {tagged(ORV2_DOUBLE_ARRAY), 13},
                      {tagged(ORV2_F64 | ORV2_BYREF), 13},
                      {tagged(0x4000), 13},
                      {utf8(nullptr), 5},
                      {tagged(ORV2_TEXT, stale), 5},
                      {tagged(ORV2_OBJECT, stale), 5}};
  for (const Row& row : rows) {
    host.on_call = [&](const char*, const orv2_value*, std::size_t, orv2_value* result) {
      *result = row.answer;
      return 0;
    };
    EXPECT_EQ(failure_of([&] { object()->call("Get", {}); }), row.expected) << row.answer.tag;
  }
}

TEST_F(HostObjects, AreNotCalledWithWhatTheyCannotTake) {
  bool called = false;
  host.on_call = [&](auto...) { return called = true, 0; };
  DoubleArray array(0, 3);
  ObjectRef none;
  const Argument arrays[] = {ref(array)};
  const Argument objects[] = {Argument::of_value(none)};
  const std::vector<Argument> many(17, Argument(1.0));
  EXPECT_EQ(failure_of([&] { object()->call("Get", arrays); }), 13);
  EXPECT_EQ(failure_of([&] { object()->call("Get", objects); }), 13);
  EXPECT_EQ(failure_of([&] { object()->call("Get", many); }), 450);
  EXPECT_FALSE(called);
}

TEST_F(HostObjects, ReceiveProperties) {
  std::vector<std::string> seen;
  host.on_set = [&](const char* name, const orv2_value* value) {
    std::string shown = value->tag == ORV2_UTF8 ? value->as.utf8 : std::to_string(value->tag);
    seen.push_back(std::string(name) + "=" + shown);
    return 0;
  };
  const ObjectRef target = object();
  target->set_property("Caption", Text(u"ñ"));
  target->set_property("Value", 2.5);
  target->set_property("Nothing", Variant());
  EXPECT_EQ(seen, (std::vector<std::string>{"Caption=\u00f1", "Value=4", "Nothing=0"}));
  EXPECT_EQ(failure_of([&] { target->set_property("Other", target); }), 13);
}

TEST_F(HostObjects, WithoutACallbackDoNotHaveTheMember) {
  const orv2_host_object callbacks{sizeof(callbacks), nullptr, nullptr, nullptr};
  orv2_handle handle = 0;
  ASSERT_EQ(orv2_host_object_new(&callbacks, nullptr, &handle), 0);
  const Owned owned(handle);
  EXPECT_EQ(failure_of([&] { c_api::object_of(handle)->call("Get", {}); }), 438);
  EXPECT_EQ(failure_of([&] { c_api::object_of(handle)->set_property("Value", 1.0); }), 438);
}

// ---- Failures --------------------------------------------------------------

TEST_F(HostObjects, FailWithTheWordsTheyNamed) {
  for (const std::int32_t number : {1234, 5, -1, -2147467259, 2147483647}) {
    host.on_call = [&](auto...) {
      orv2_set_failure(number, "se rompi\u00f3", "Host.Line");
      return number;
    };
    const RunFailure failure = failure_from([&] { object()->call("Line", {}); });
    EXPECT_EQ(failure.number(), number);
    EXPECT_EQ(failure.description(), "se rompi\u00f3");
    EXPECT_EQ(failure.source(), "Host.Line");
  }
}

TEST_F(HostObjects, FailWithTheNumberAloneWhenTheyNamedNothing) {
  for (const std::int32_t number : {1234, 5, -1}) {
    host.on_call = [&](auto...) { return number; };
    const RunFailure failure = failure_from([&] { object()->call("Line", {}); });
    EXPECT_EQ(failure.number(), number);
    EXPECT_EQ(failure.description(), failure::description_of(number));
    EXPECT_EQ(failure.source(), "");
  }
}

TEST_F(HostObjects, WordsOfAnotherNumberAreNotTaken) {
  host.on_call = [&](auto...) {
    orv2_set_failure(1, "words of 1", "Host");
    return 2;
  };
  const RunFailure failure = failure_from([&] { object()->call("Line", {}); });
  EXPECT_EQ(failure.number(), 2);
  EXPECT_EQ(failure.description(), "");
}

TEST_F(HostObjects, WordsNamedBeforeTheCallOrInASuccessfulOneAreForgotten) {
  std::int32_t status = 0;
  host.on_call = [&](auto...) {
    if (status == 0) orv2_set_failure(7, "left behind", "Host");
    return status;
  };
  const ObjectRef target = object();
  target->call("Line", {});
  orv2_set_failure(7, "before", "Host");
  status = 7;
  const RunFailure failure = failure_from([&] { target->call("Line", {}); });
  EXPECT_EQ(failure.description(), failure::description_of(7));
  EXPECT_EQ(failure.source(), "");
}

TEST_F(HostObjects, ANumberOfZeroCannotBeNamed) {
  std::int32_t named = -1;
  host.on_call = [&](auto...) {
    named = orv2_set_failure(0, "nothing", "Host");
    return 0;
  };
  object()->call("Line", {});
  EXPECT_EQ(named, 5);
}

TEST_F(HostObjects, FailInSettingAsInCalling) {
  host.on_set = [&](auto...) {
    orv2_set_failure(-9, "no se puede", "Host.Value");
    return -9;
  };
  const RunFailure failure = failure_from([&] { object()->set_property("Value", 1.0); });
  EXPECT_EQ(failure.number(), -9);
  EXPECT_EQ(failure.description(), "no se puede");
}

TEST(Guard, AFailureWithoutANumberNeverReadsAsSuccess) {
  const std::int32_t status = c_api::guarded([] { throw RunFailure(0, "words", "Host"); });
  EXPECT_EQ(status, 440);
  const LastFailure failure = last_failure();
  EXPECT_EQ(failure.number, 440);
  EXPECT_EQ(failure.description, "words");
  EXPECT_EQ(failure.source, "Host");
}

TEST(Guard, TurnsEveryExceptionIntoAFailure) {
  EXPECT_EQ(c_api::guarded([] { throw std::bad_alloc(); }), 7);
  EXPECT_EQ(c_api::guarded([] { throw std::length_error("long"); }), 7);
  EXPECT_EQ(c_api::guarded([] { throw std::logic_error("odd"); }), 440);
  EXPECT_EQ(last_failure().description, "odd");
  EXPECT_EQ(c_api::guarded([] { throw 1; }), 440);
  EXPECT_EQ(c_api::guarded([] { throw RunFailure(-3); }), -3);
  EXPECT_EQ(c_api::guarded([] {}), 0);
}

}  // namespace
}  // namespace orv2_geo::testing_support
