// Random calls of every member by a host that keeps no rule: a status each time, no lock
// left behind, nothing broken on the heap and nothing leaked. The seed is fixed.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <random>

#include "host.h"
#include "orv2_geo/library/catalogue.h"
#include "tests/soak/sample.h"

// Behind the system's own names.
#include <psapi.h>

using namespace orv2_geo;
using namespace orv2_geo::testing;

namespace {

// What a host has: variables for arrays, for anything, for numbers, and an object that
// does as it likes when the library calls it.
class RandomHost {
 public:
  explicit RandomHost(unsigned seed) : random_(seed) {
    for (std::size_t i = 0; i < std::size(objects_); ++i) {
      objects_[i] = Server::loaded().create(*class_identifiers[i]);
    }
    sink_ = new HostObject([this](const HostObject::Call& call) { return answer(call); });
    variable_ = sink_;
  }
  RandomHost(const RandomHost&) = delete;
  RandomHost& operator=(const RandomHost&) = delete;
  ~RandomHost() {
    sink_->Release();
    SysFreeString(text_);
  }

  void one_call() {
    for (std::size_t i = 0; i < std::size(arrays_); ++i) arrays_[i] = new_array(kinds[i % 6]);
    for (Value& one : anything_) one = new_value();
    variable_ = sink_;
    SAFEARRAY* const locked = once_in(5) ? arrays_[any(std::size(arrays_))] : nullptr;
    if (locked != nullptr) SafeArrayLock(locked);
    call_any_member();
    if (locked != nullptr) SafeArrayUnlock(locked);
    for (SAFEARRAY* one : arrays_) end(one);
    for (SAFEARRAY* one : orphans_) end(one);
    orphans_.clear();
    for (Value& one : anything_) {
      if ((one.type() & VT_ARRAY) != 0) unlock(one.raw().parray);
      one = Value();
    }
  }

 private:
  static constexpr VARTYPE kinds[] = {VT_R8, VT_R8, VT_I4, VT_BSTR, VT_I2, VT_R4};

  unsigned any(std::size_t below) { return static_cast<unsigned>(random_() % below); }
  bool once_in(unsigned times) { return any(times) == 0; }

  SAFEARRAY* new_array(VARTYPE kind) {
    if (once_in(12)) return nullptr;
    SAFEARRAYBOUND bounds[2] = {{any(9), once_in(5) ? static_cast<LONG>(any(5)) - 2 : 0}, {2, 0}};
    const bool vector = once_in(4);
    SAFEARRAY* const made =
        vector ? SafeArrayCreateVector(kind, bounds[0].lLbound, bounds[0].cElements)
               : SafeArrayCreate(kind, once_in(15) ? 2 : 1, bounds);
    const ULONG count = made->cDims == 1 ? made->rgsabound[0].cElements : 0;
    for (ULONG i = 0; i < count; ++i) {
      char* const place = static_cast<char*>(made->pvData) + std::size_t{i} * made->cbElements;
      if (kind == VT_R8) *reinterpret_cast<double*>(place) = any(7) / 2.0;
      if (kind == VT_R4) *reinterpret_cast<float*>(place) = static_cast<float>(any(7)) / 2;
      if (kind == VT_I4) *reinterpret_cast<LONG*>(place) = static_cast<LONG>(any(8));
      if (kind == VT_I2) *reinterpret_cast<short*>(place) = static_cast<short>(any(8));
      if (kind == VT_BSTR && !once_in(5)) {
        *reinterpret_cast<BSTR*>(place) = SysAllocStringByteLen("z\0\0\0a\0b\0", any(9));
      }
      if (kind == VT_VARIANT) *reinterpret_cast<VARIANT*>(place) = scalar().raw();
    }
    if (once_in(20)) made->fFeatures |= FADF_FIXEDSIZE;
    if (once_in(20) && !vector) SafeArrayDestroyData(made);
    return made;
  }

  static void unlock(SAFEARRAY* array) {
    if (array == nullptr) return;
    EXPECT_EQ(array->cLocks, 0U) << "a call leaves no lock behind";
    array->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
  }
  static void end(SAFEARRAY* array) {
    unlock(array);
    if (array != nullptr) SafeArrayDestroy(array);
  }

  // Nothing in it is to be freed.
  Value scalar() {
    switch (any(12)) {
      case 0: return Value(static_cast<int>(any(4)) - 2);
      case 1: return Value(1e300 * (any(3) - 1.0));
      case 2: return {};
      case 3: return Value(false);
      case 4: return Value(any(9) / 4.0);
      case 5: return Value::by_reference(VT_VARIANT, &anything_[any(4)].raw());
      case 6: return Value::left_out();
      default: return Value(static_cast<int>(any(6)));
    }
  }
  Value new_value() {
    Value value;
    switch (any(8)) {
      case 0: return Value(any(2) != 0 ? L"2,5" : L"3");
      case 1: return Value(sink_);
      case 2:
      case 3:
      case 4:
        value.raw().parray = new_array(once_in(4) ? VT_R8 : VT_VARIANT);
        value.raw().vt = static_cast<VARTYPE>(VT_ARRAY | VT_VARIANT);
        if (value.raw().parray == nullptr || value.raw().parray->cbElements != sizeof(VARIANT)) {
          value.raw().vt = VT_ARRAY | VT_R8;
        }
        return value;
      default: return scalar();
    }
  }

  Value array_of_kind(VARTYPE kind) {
    if (once_in(3)) return Value::ref(anything_[any(4)]);
    std::size_t i = any(std::size(arrays_));
    while (kinds[i % 6] != kind && !once_in(30)) i = any(std::size(arrays_));
    return Value::array(kind, arrays_[i]);
  }
  Value argument(const ParameterDescription& parameter) {
    if (depth_ == 0 && once_in(25)) return new_value_kept();
    switch (parameter.type) {
      case Type::double_array: return array_of_kind(VT_R8);
      case Type::single_array: return array_of_kind(VT_R4);
      case Type::long_array: return array_of_kind(VT_I4);
      case Type::short_array: return array_of_kind(VT_I2);
      case Type::string_array: return array_of_kind(VT_BSTR);
      case Type::object: return once_in(3) ? Value(sink_) : Value::ref(variable_);
      case Type::boolean: return Value(false);  // no dialog is asked for
      case Type::text: return once_in(2) ? Value::ref(text_) : Value(L"texto");
      default: break;
    }
    switch (any(6)) {
      case 0: return Value::ref(numbers_[any(3)]);
      case 1: return Value::ref(whole_[any(3)] = static_cast<LONG>(any(7)));
      case 2: return Value::ref(anything_[any(4)]);
      default: return scalar();
    }
  }
  // By reference, so that nothing has two owners.
  Value new_value_kept() { return Value::ref(anything_[any(4)] = new_value()); }

  void call_any_member() {
    const std::size_t c = any(7);
    const ClassDescription& of_class = *catalogue()[c];
    const std::size_t m = any(of_class.members.size());
    const MemberDescription& member = of_class.members[m];
    std::vector<Value> given;
    for (const ParameterDescription& one : member.parameters) given.push_back(argument(one));
    if (once_in(30) && !given.empty()) given.pop_back();
    std::vector<VARIANT> raw;
    for (auto one = given.rbegin(); one != given.rend(); ++one) raw.push_back(one->raw());
    std::array<DISPID, 2> named = {DISPID_PROPERTYPUT, static_cast<DISPID>(any(13)) - 1};
    DISPPARAMS parameters{raw.data(), named.data(), static_cast<UINT>(raw.size()), 0};
    if (member.kind == MemberKind::property_write) parameters.cNamedArgs = 1;
    if (once_in(20)) parameters.cNamedArgs = any(3), parameters.rgdispidNamedArgs += any(2);
    if (parameters.rgdispidNamedArgs != named.data()) parameters.cNamedArgs = any(2);
    const WORD ways = once_in(10) ? static_cast<WORD>(any(16)) : WORD{DISPATCH_METHOD};
    const Answer answer =
        call_with(objects_[c].get(), static_cast<DISPID>(m) + 1, parameters, ways);
    EXPECT_TRUE(answer.status == S_OK || FAILED(answer.status));
  }

  HRESULT answer(const HostObject::Call& call) {
    if (call.result != nullptr) call.result->vt = VT_I4, call.result->lVal = 2;
    const std::size_t i = any(std::size(arrays_));
    switch (any(12)) {
      case 0: return DISP_E_MEMBERNOTFOUND;
      case 1: return E_FAIL;
      case 2:  // its locks keep it
        if (arrays_[i] != nullptr && arrays_[i]->cLocks != 0) SafeArrayDestroy(arrays_[i]);
        break;
      case 3: orphans_.push_back(std::exchange(arrays_[i], new_array(kinds[i % 6]))); break;
      case 4: orphans_.push_back(std::exchange(arrays_[i], nullptr)); break;
      case 5: variable_ = nullptr; break;
      case 6:
        if (depth_ < 2) ++depth_, call_any_member(), --depth_;
        break;
      case 7: whole_[0] = 1000000, numbers_[0] = -1.0; break;
      default: break;
    }
    return S_OK;
  }

  std::mt19937 random_;
  Held<IDispatch> objects_[7];
  HostObject* sink_;
  IDispatch* variable_;
  SAFEARRAY* arrays_[12] = {};
  std::vector<SAFEARRAY*> orphans_;
  Value anything_[4];
  double numbers_[3] = {};
  LONG whole_[3] = {};
  BSTR text_ = SysAllocStringByteLen("a\0\0\0b", 5);
  int depth_ = 0;
};

void many_calls(unsigned seed, int count) {
  RandomHost host(seed);
  for (int i = 0; i < count && !::testing::Test::HasFailure(); ++i) {
    host.one_call();
    if (i % 1000 != 0) continue;
    ASSERT_TRUE(HeapValidate(GetProcessHeap(), 0, nullptr)) << "call " << i;
  }
}

TEST(RandomCalls, BreakAndLeakNothing) {
  many_calls(1, 20000);
  const std::size_t before = busy_blocks();
  many_calls(1, 20000);
  EXPECT_EQ(busy_blocks(), before);
  EXPECT_EQ(Server::loaded().can_unload(), S_OK);
}

// What the process holds of the system's.
std::vector<soak::Quantity> held_of_system() {
  HANDLE const process = GetCurrentProcess();
  PROCESS_MEMORY_COUNTERS memory{};
  GetProcessMemoryInfo(process, &memory, sizeof memory);
  DWORD handles = 0;
  GetProcessHandleCount(process, &handles);
  return {{"resident_bytes", static_cast<double>(memory.WorkingSetSize)},
          {"blocks", static_cast<double>(busy_blocks())},
          {"handles", static_cast<double>(handles)},
          {"gdi_objects", static_cast<double>(GetGuiResources(process, GR_GDIOBJECTS))},
          {"user_objects", static_cast<double>(GetGuiResources(process, GR_USEROBJECTS))}};
}

// For a second, or as long as tools/soak.sh says, with what tests/soak/steady.py judges.
TEST(RandomCalls, LeaveTheProcessAsItIs) {
  const char* const seconds = std::getenv("ORV2_SOAK_SECONDS");
  many_calls(1, 2000);
  const std::vector<soak::Quantity> before = held_of_system();
  unsigned seed = 2;
  soak::run(
      seconds != nullptr ? std::atof(seconds) : 1.0, [&] { many_calls(seed++, 100); },
      held_of_system);
  const std::vector<soak::Quantity> after = held_of_system();
  for (std::size_t i = 2; i < before.size(); ++i) {
    EXPECT_EQ(before[i].value, after[i].value) << before[i].name;
  }
}

}  // namespace
