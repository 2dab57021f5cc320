// Whatever a host hands in: a status each time, nothing broken and nothing leaked.
#include <gtest/gtest.h>

#include "host.h"
#include "orv2_geo/library/catalogue.h"

using namespace orv2_geo;
using namespace orv2_geo::testing;

namespace {

// What a variant of some type is made of; the host's variables live as long as it does.
class Host {
 public:
  Host() {
    for (SAFEARRAY*& one : arrays_) one = nullptr;
    text_ = SysAllocStringLen(L"a\0b", 3);
    sink_ = new HostObject([](const HostObject::Call&) { return S_OK; });
    object_ = sink_;
  }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;
  ~Host() {
    for (SAFEARRAY* one : arrays_) {
      if (one != nullptr) SafeArrayDestroy(one);
    }
    SysFreeString(text_);
    sink_->Release();
  }

  // A fitting argument for a parameter.
  Value fitting(const ParameterDescription& parameter, std::size_t i) {
    switch (parameter.type) {
      case Type::object: return Value::ref(object_);
      case Type::double_array: return array(VT_R8, i);
      case Type::single_array: return array(VT_R4, i);
      case Type::long_array: return array(VT_I4, i);
      case Type::short_array: return array(VT_I2, i);
      case Type::string_array: return array(VT_BSTR, i);
      case Type::text: return Value(L"texto");
      // No dialog is asked for, and no box.
      case Type::boolean: return Value(false);
      case Type::i32:
      case Type::i16: return Value(3);
      default: return Value(1.0 + static_cast<double>(i));
    }
  }

  static constexpr int kinds = 64;

  // One of many kinds of argument.
  Value odd(int kind) {
    static const VARTYPE plain[] = {VT_EMPTY, VT_NULL, VT_I2,   VT_I4,  VT_R4,  VT_R8,
                                    VT_CY,    VT_DATE, VT_BOOL, VT_I1,  VT_UI1, VT_UI2,
                                    VT_UI4,   VT_I8,   VT_UI8,  VT_INT, VT_UINT};
    constexpr int plain_kinds = std::size(plain);
    if (kind < plain_kinds) return number(plain[kind]);
    kind -= plain_kinds;
    if (kind < plain_kinds) {
      inner_ = number(plain[kind]);
      return Value::ref(inner_);
    }
    kind -= plain_kinds;
    if (kind < plain_kinds) {
      return Value::by_reference(plain[kind], kind < 2 ? nullptr : &eight_bytes_);
    }
    kind -= plain_kinds;
    switch (kind) {
      case 0: return Value(L"no es un n\u00famero");
      case 1: return Value(object_);
      case 2: return Value(static_cast<IDispatch*>(nullptr));
      case 3: return script_array({1.0, L"x", Value(object_)});
      case 4: inner_ = script_array({1, 2, 3}); return Value::ref(inner_);
      case 5: return Value::by_reference(VT_VARIANT, nullptr);
      case 6: return Value::by_reference(VT_ARRAY | VT_R8, nullptr);
      case 7: return Value::ref(text_);
      case 8: return Value::left_out();
      case 9: inner_ = Value(1e300); return Value::ref(inner_);
      case 10: inner_ = Value(object_); return Value::ref(inner_);
      case 11: return decimal();
      default: return strange(static_cast<VARTYPE>(kind == 12 ? VT_RECORD : 0x7fff));
    }
  }

 private:
  Value array(VARTYPE type, std::size_t i) {
    SAFEARRAY*& place = arrays_[i];
    if (place != nullptr) SafeArrayDestroy(place);
    SAFEARRAYBOUND bound{5, 0};
    place = SafeArrayCreate(type, 1, &bound);
    return Value::array(type, place);
  }
  static Value number(VARTYPE type) {
    Value value;
    value.raw().vt = type;
    value.raw().llVal = 2;
    return value;
  }
  static Value decimal() {
    Value value;
    value.raw().decVal = DECIMAL{};
    value.raw().vt = VT_DECIMAL;
    return value;
  }
  // A type that the system does not know; there is nothing to clear.
  static Value strange(VARTYPE type) {
    Value value;
    value.raw().vt = static_cast<VARTYPE>(VT_BYREF | type);
    return value;
  }

  SAFEARRAY* arrays_[16];
  BSTR text_;
  HostObject* sink_;
  IDispatch* object_;
  Value inner_;
  long long eight_bytes_[2] = {};
};

// Every member with every kind of argument in each parameter's place.
int everything_once(int from, int step) {
  int calls = 0;
  for (int c = 0; c < 7; ++c) {
    const ClassDescription& of_class = *catalogue()[static_cast<std::size_t>(c)];
    const Held<IDispatch> object = Server::loaded().create(*class_identifiers[c]);
    for (const MemberDescription& member : of_class.members) {
      const std::wstring name(member.name.begin(), member.name.end());
      for (std::size_t p = 0; p < member.parameters.size(); ++p) {
        for (int kind = from; kind < Host::kinds; kind += step) {
          Host host;
          std::vector<Value> given;
          for (std::size_t i = 0; i < member.parameters.size(); ++i) {
            given.push_back(i == p ? host.odd(kind) : host.fitting(member.parameters[i], i));
          }
          const WORD ways = member.kind == MemberKind::property_write ? WORD{DISPATCH_PROPERTYPUT}
                                                                      : WORD{DISPATCH_METHOD};
          const Answer answer = call(object.get(), name.c_str(), given, ways);
          EXPECT_TRUE(answer.status == S_OK || FAILED(answer.status));
          ++calls;
        }
      }
    }
  }
  return calls;
}

TEST(Misuse, AnyArgumentInAnyPlaceIsAnsweredWithAStatus) {
  EXPECT_GT(everything_once(0, 1), 30000);
  EXPECT_EQ(Server::loaded().can_unload(), S_OK);
}

TEST(Misuse, NothingIsLeaked) {
  everything_once(0, 3);
  const std::size_t before = busy_blocks();
  for (int round = 0; round < 3; ++round) everything_once(0, 3);
  EXPECT_EQ(busy_blocks(), before);
}

}  // namespace
