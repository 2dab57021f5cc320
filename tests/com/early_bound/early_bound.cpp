// Calls every member of every class by its place in the interface's table, and compares with what
// the vectors tell:
//
//   early_bound Orv2_Geo.dll vectors.txt            what each call gives and leaves behind
//   early_bound Orv2_Geo.dll vectors.txt --canary   32-bit: what each member takes from the stack
//
// The library need not be registered.
#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <set>
#include <string>

#include "tests/com/early_bound/bound_call.h"
#include "tests/com/early_bound/boxes.h"
#include "tests/com/early_bound/comparison.h"
#include "tests/com/early_bound/recorder.h"

namespace orv2_geo::early_bound {
namespace {

using vectors::Kind;
using vectors::Value;
using vectors::VectorCall;

constexpr std::size_t own_members_from = 7;  // behind those that all dispatch interfaces have
constexpr HRESULT numbered = static_cast<HRESULT>(0x800A0000);
constexpr int told_at_most = 40;

void needed(HRESULT status, const char* what) {
  if (FAILED(status)) throw std::runtime_error(std::string(what) + " fails");
}

class Library {
 public:
  explicit Library(const char* path) : module_(LoadLibraryA(path)) {
    if (module_ == nullptr) {
      throw std::runtime_error("cannot load " + std::string(path) + ": " +
                               std::to_string(GetLastError()));
    }
    entry(get_class_, "DllGetClassObject");
    entry(can_unload_, "DllCanUnloadNow");
  }

  HMODULE module() const { return module_; }

  IUnknown* create(const ClassIdentity& identity) const {
    IClassFactory* factory = nullptr;
    needed(get_class_(identity.of_class, IID_IClassFactory, reinterpret_cast<void**>(&factory)),
           "DllGetClassObject");
    IUnknown* object = nullptr;
    const HRESULT status =
        factory->CreateInstance(nullptr, identity.of_interface, reinterpret_cast<void**>(&object));
    factory->Release();
    needed(status, "CreateInstance");
    return object;
  }

  bool is_unused() const { return can_unload_() == S_OK; }

 private:
  template <class F>
  void entry(F& function, const char* name) {
    const FARPROC found = GetProcAddress(module_, name);
    if (found == nullptr) throw std::runtime_error(std::string("no entry ") + name);
    function = reinterpret_cast<F>(reinterpret_cast<void*>(found));
  }

  HMODULE module_;
  HRESULT(STDAPICALLTYPE* get_class_)(REFCLSID, REFIID, void**) = nullptr;
  HRESULT(STDAPICALLTYPE* can_unload_)() = nullptr;
};

// An object of the class that the calls at hand belong to.
class Instance {
 public:
  Instance(const Library& library, const std::string& class_name) {
    for (const ClassIdentity& identity : all_classes()) {
      if (identity.name == class_name) object_ = library.create(identity);
    }
    if (object_ == nullptr) throw std::runtime_error("no class " + class_name);
  }
  ~Instance() { object_->Release(); }
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  IUnknown* get() const { return object_; }

 private:
  IUnknown* object_ = nullptr;
};

using MembersByPlace = std::map<std::pair<std::string, std::size_t>, BoundMember>;

MembersByPlace members_by_place() {
  MembersByPlace members;
  for (const BoundMember& member : all_members()) {
    members.emplace(std::pair(member.interface_name.substr(1), member.position), member);
  }
  return members;
}

HRESULT status_of(std::int32_t failure) { return failure == 0 ? S_OK : numbered + failure; }

Value content_of(const Result& result, Kind expected) {
  const VARIANT& place = result.place;
  if (!result.is_variant) {
    Value value = vectors::whole(result.kind, 0);
    if (result.kind == Kind::i16) {
      short number = 0;
      std::memcpy(&number, &place, sizeof number);
      return vectors::whole(expected == Kind::boolean ? expected : result.kind, number);
    }
    if (result.kind == Kind::i32) {
      LONG number = 0;
      std::memcpy(&number, &place, sizeof number);
      return vectors::whole(result.kind, number);
    }
    std::memcpy(&value.bits, &place, result.kind == Kind::f32 ? 4 : 8);
    return value;
  }
  if (place.vt == VT_R8) return vectors::real(place.dblVal);
  if (place.vt == VT_R4) return vectors::real(place.fltVal);
  return {};
}

class Run {
 public:
  Run(const Library& library, bool boxes_are_taken)
      : library_(library), boxes_are_taken_(boxes_are_taken) {}

  void compare(const std::vector<vectors::VectorClass>& all) {
    for (const vectors::VectorClass& one : all) {
      const Instance instance(library_, one.name);
      for (const VectorCall& call : one.calls) compare(instance, one, call);
    }
    check_places();
    if (!library_.is_unused()) differ("the library is still in use when all objects are gone");
  }

  int summary() const {
    std::printf(
        "vectors: %d calls of %zu members, %d differences, largest ulp %.2f of %d numbers that "
        "are not equal, %d calls with boxes%s\n",
        calls_, called_.size(), differences_, comparison_.largest_ulps(), comparison_.not_equal(),
        boxes_, boxes_are_taken_ ? "" : " left out");
    return differences_ == 0 ? 0 : 1;
  }

 private:
  void compare(const Instance& instance, const vectors::VectorClass& owner,
               const VectorCall& call) {
    const vectors::VectorMember& described = owner.members.at(call.position);
    where_ = owner.name + "." + described.name;
    boxes_ += !call.outcome.boxes.empty();
    if (!call.outcome.boxes.empty() && !boxes_are_taken_) return;
    const auto found = members_.find({owner.name, call.position});
    if (found == members_.end()) return differ("no such member");
    if (found->second.name != described.name) differ("another name: " + found->second.name);
    ++calls_;
    called_.insert({owner.name, call.position});
    make(instance, found->second, call, described.closeness);
  }

  void make(const Instance& instance, const BoundMember& member, const VectorCall& call,
            vectors::Closeness closeness) {
    Recorder host;
    Variables variables(call.given, &host);
    Result result;
    const HRESULT status = member.call(instance.get(), variables, result);
    const HRESULT expected = status_of(call.outcome.failure);
    if (status != expected) differ_in_status(status, expected, call);
    compare_variables(variables, call, closeness);
    if (status == S_OK) compare_result(result, call, closeness);
    if (host.told != call.outcome.told) differ_in_told(host.told, call.outcome.told);
    if (host.references() != 1) differ("references left to the host's object");
    compare_boxes(taken_boxes(), call.outcome.boxes);
  }

  void compare_variables(const Variables& variables, const VectorCall& call,
                         vectors::Closeness closeness) {
    for (std::size_t i = 0; i < variables.count(); ++i) {
      const std::string misuse = variables[i].misuse();
      if (!misuse.empty()) differ("argument " + std::to_string(i) + ": " + misuse);
      // What an argument that was left out holds afterwards nobody can see.
      if (call.given[i].omitted) continue;
      check_value("argument " + std::to_string(i), call.outcome.after[i], variables[i].content(),
                  closeness, call);
    }
  }

  void compare_result(Result& result, const VectorCall& call, vectors::Closeness closeness) {
    const bool has_result = result.is_variant || result.kind != Kind::none;
    const Value got = has_result ? content_of(result, call.outcome.result.kind) : vectors::Value{};
    check_value("result", call.outcome.result, got, closeness, call);
    if (result.is_variant) VariantClear(&result.place);
  }

  void check_value(const std::string& what, const Value& expected, const Value& got,
                   vectors::Closeness closeness, const VectorCall& call) {
    if (comparison_.agree(expected, got, closeness, scale_of(closeness, call))) return;
    differ(what + " is " + word_of(got) + ", expected " + word_of(expected) + input_of(call));
  }

  void compare_boxes(const std::vector<vectors::Box>& got,
                     const std::vector<vectors::Box>& expected) {
    const auto same = [](const vectors::Box& a, const vectors::Box& b) {
      return a.text == b.text && a.flags == b.flags && (!b.has_caption || a.caption == b.caption);
    };
    if (std::equal(got.begin(), got.end(), expected.begin(), expected.end(), same)) return;
    differ(std::to_string(got.size()) + " boxes, expected " + std::to_string(expected.size()) +
           ", or with other words");
  }

  void differ_in_status(HRESULT got, HRESULT expected, const VectorCall& call) {
    char text[80];
    std::snprintf(text, sizeof text, "status %08lx, expected %08lx",
                  static_cast<unsigned long>(got), static_cast<unsigned long>(expected));
    differ(text + input_of(call));
  }

  void differ_in_told(const std::vector<vectors::Told>& got,
                      const std::vector<vectors::Told>& expected) {
    std::string text = "the object is told " + std::to_string(got.size()) + " things, expected " +
                       std::to_string(expected.size());
    for (std::size_t i = 0; i < std::min(got.size(), expected.size()); ++i) {
      if (got[i] == expected[i]) continue;
      text += "; first " + told_text(got[i]) + ", expected " + told_text(expected[i]);
      break;
    }
    differ(text);
  }

  static std::string told_text(const vectors::Told& told) {
    std::string text = told.name;
    for (const Value& value : told.values) text += " " + word_of(value);
    return text;
  }

  static std::string input_of(const VectorCall& call) {
    std::string text = " of (";
    for (const vectors::Given& given : call.given) {
      text += given.same_as >= 0 ? "=" + std::to_string(given.same_as) : word_of(given.value);
      text += " ";
    }
    return text.substr(0, 600) + ")";
  }

  void check_places() {
    for (const auto& [place, member] : members_) {
      where_ = member.interface_name + "." + member.name;
      if (member.slot != own_members_from + member.position) differ("another place in its table");
      if (!called_.contains(place)) differ("never called");
    }
  }

  void differ(const std::string& what) {
    if (++differences_ <= told_at_most) std::printf("%s: %s\n", where_.c_str(), what.c_str());
  }

  const Library& library_;
  bool boxes_are_taken_;
  MembersByPlace members_ = members_by_place();
  std::set<std::pair<std::string, std::size_t>> called_;
  Comparison comparison_;
  std::string where_;
  int calls_ = 0;
  int boxes_ = 0;
  int differences_ = 0;
};

#if defined(__i386__)

// All calls of every member, from stacks that begin at every multiple of four.
class StackWatch {
 public:
  int run(const Library& library, const std::vector<vectors::VectorClass>& all) {
    for (const vectors::VectorClass& one : all) {
      const Instance instance(library, one.name);
      for (const VectorCall& call : one.calls) watch(instance, one, call);
    }
    if (watched_.size() != members_.size()) ++differences_;
    std::printf("stack: %zu calls of %zu of %zu members, %d differences\n", calls_, watched_.size(),
                members_.size(), differences_);
    return differences_ == 0 ? 0 : 1;
  }

 private:
  void watch(const Instance& instance, const vectors::VectorClass& owner, const VectorCall& call) {
    const auto found = members_.find({owner.name, call.position});
    if (found == members_.end()) return;
    watched_.insert(found->first);
    const Watched seen = watched(instance, found->second, call, calls_++ % 4);
    if (seen.left == 0 && seen.kept && seen.status == status_of(call.outcome.failure)) return;
    ++differences_;
    std::printf("%s.%s: status %08lx, %ld bytes left on the stack%s\n", owner.name.c_str(),
                found->second.name.c_str(), static_cast<unsigned long>(seen.status),
                static_cast<long>(seen.left), seen.kept ? "" : ", which was written upon");
  }

  static Watched watched(const Instance& instance, const BoundMember& member,
                         const VectorCall& call, std::size_t beyond) {
    Recorder host;
    Variables variables(call.given, &host);
    Result result;
    const Watched seen = member.watched(instance.get(), variables, result, member.slot, 8 + beyond);
    if (result.is_variant) VariantClear(&result.place);
    return seen;
  }

  MembersByPlace members_ = members_by_place();
  std::set<std::pair<std::string, std::size_t>> watched_;
  std::size_t calls_ = 0;
  int differences_ = 0;
};

#endif

int watch_stack(const Library& library, const std::vector<vectors::VectorClass>& all) {
#if defined(__i386__)
  return StackWatch().run(library, all);
#else
  static_cast<void>(library), static_cast<void>(all);
  std::fputs("Here the caller takes the arguments from the stack: there is nothing to watch.\n",
             stderr);
  return 2;
#endif
}

std::vector<vectors::VectorClass> vectors_of(const char* path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error(std::string("cannot read ") + path);
  return vectors::read(file);
}

int run(const char* dll, const char* file, bool canary) {
  const Library library(dll);
  const bool boxes_are_taken = take_boxes_of(library.module());
  const auto all = vectors_of(file);
  if (canary) return watch_stack(library, all);
  Run comparing(library, boxes_are_taken);
  comparing.compare(all);
  return comparing.summary();
}

}  // namespace
}  // namespace orv2_geo::early_bound

int main(int count, char** words) {
  const bool canary = count == 4 && std::string_view(words[3]) == "--canary";
  if (count != 3 && !canary) {
    std::fputs("usage: early_bound DLL VECTORS [--canary]\n", stderr);
    return 2;
  }
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  try {
    const int status = orv2_geo::early_bound::run(words[1], words[2], canary);
    CoUninitialize();
    return status;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "early_bound: %s\n", failure.what());
    return 1;
  }
}
