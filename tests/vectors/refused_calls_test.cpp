// Every allocation of every member refused in turn, through C and through C++: the call ends
// as the member's header says, the object works on, and nothing is kept.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <set>

#include "tests/support/refused_memory.h"
#include "tests/vectors/direct_call.h"
#include "tests/vectors/vector_file.h"

namespace orv2_geo::vectors {
namespace {

using testing_support::allocations_in_use;
using testing_support::RefusedAllocation;

constexpr std::int32_t out_of_memory = 7;

// Of a member so many calls have allocations refused in them, and each of a call's first so many
// allocations is, then every such one.
constexpr int calls_of_a_member = 25;
constexpr long each_of = 300;
constexpr long then_every = 37;

// ---- How a call may end -------------------------------------------------------

// A routine that traps its failures shows their number behind its own title.
bool tells_of_refusal(const Outcome& outcome) {
  return std::any_of(outcome.boxes.begin(), outcome.boxes.end(),
                     [](const Box& box) { return box.text.find(u" 7:") != std::u16string::npos; });
}

// Members that write an array before they can fail for memory, as their headers say. All others
// leave arrays as they were.
const std::set<std::string_view> write_as_far_as_they_get = {
    "Cortes_R1_con_Pol",
    "Ordena_Double_Index_Array",
    "Ordena_en_X_el_Indice_1Matriz",
    "Ordena_en_X_el_Indice_1Matriz1",
    "Ordena_en_X_el_Indice_1Matriz2",
    "Ordena_terreno_y_quita_repetidos",
    "Quita_Pts_Repetidos",
    "Quita_Puntos_Repetidos_XYZ_con_indice1",
    "Quita_Puntos_Repetidos_XY_con_indice1",
    "Quita_Puntos_fuera_interv_de_Cotas_con_indice"};

// Of these what is in place is a permutation.
const std::set<std::string_view> sort_in_place = {"Ordena_terreno_y_quita_repetidos"};

std::multiset<std::string> words_of(const Value& array) {
  std::multiset<std::string> words;
  for (const Value& element : array.elements) words.insert(word_of(element));
  return words;
}

bool is_zero(const Value& element) { return element.bits == 0 && element.text.empty(); }

// One array of a call that was left half-way: as it was, as it would have become, or between,
// with nothing in it that does not stem from either.
void expect_between(const Value& is, const Value& was, const Value& will, bool sorted) {
  if (is == was || is == will) return;
  EXPECT_TRUE(is.allocated);
  // While they are looked for, cuts of a line have room for one more.
  EXPECT_LE(is.elements.size(), std::max(was.elements.size(), will.elements.size()) + 1);
  EXPECT_TRUE(is.lower == was.lower || is.lower == will.lower);
  const auto before = words_of(was), after = words_of(will);
  for (const Value& element : is.elements) {
    const std::string word = word_of(element);
    EXPECT_TRUE(is_zero(element) || before.contains(word) || after.contains(word)) << word;
  }
  if (sorted) {
    EXPECT_EQ(words_of(is), before);
  }
}

// ---- The calls ------------------------------------------------------------------

struct Tally {
  std::size_t members = 0, calls = 0, faults = 0;
  std::size_t as_usual = 0, refused = 0, told = 0;
  std::set<std::string> with_forms;
};

template <class Caller>
class Refusals {
 public:
  Refusals(Caller& object, std::size_t class_index, Tally& tally)
      : object_(object), class_index_(class_index), tally_(tally) {
    object_.tell_who_runs([](bool library) { RefusedAllocation::count(library); });
    object_.press(buttons_of_forms());
  }

  void refuse_in(const VectorCall& call, const std::string& member, bool as_in_file) {
    SCOPED_TRACE(classes_of_file()[class_index_].name + "." + member);
    by_value_ = vectors::by_value(class_index_, call);
    const Outcome usual = plain(call);
    if (as_in_file) {
      EXPECT_TRUE(usual == call.outcome);
    }
    const bool form = object_.showed_form();
    if (!as_in_file && !form) return;
    ++tally_.calls;
    if (form) tally_.with_forms.insert(member);
    for (long n = 0; refused_at(n, call, member, usual); n += n < each_of ? 1 : then_every) {
    }
    EXPECT_TRUE(plain(call) == usual) << "afterwards";
  }

 private:
  Outcome plain(const VectorCall& call) {
    return object_.call(call.position, call.given, by_value_);
  }

  // What a thread has learnt about the characters of texts it keeps: the second time nothing
  // is left to learn.
  bool refused_at(long n, const VectorCall& call, const std::string& member, const Outcome& usual) {
    SCOPED_TRACE("allocation " + std::to_string(n));
    const long before = allocations_in_use();
    bool refused = refused_once(n, call, member, usual);
    if (const long once = allocations_in_use(); once != before) {
      refused = refused_once(n, call, member, usual);
      EXPECT_EQ(allocations_in_use(), once);
    }
    return refused;
  }

  bool refused_once(long n, const VectorCall& call, const std::string& member,
                    const Outcome& usual) {
    Outcome outcome;
    bool refused = false;
    {
      const RefusedAllocation refusal(n);
      RefusedAllocation::count(false);
      outcome = plain(call);
      refused = RefusedAllocation::happened();
    }
    orv2_release(1);  // the words of the failure
    if (refused) {
      look_at(outcome, usual, call, member);
    } else {
      EXPECT_TRUE(outcome == usual) << "with nothing refused";
    }
    return refused;
  }

  void look_at(const Outcome& outcome, const Outcome& usual, const VectorCall& call,
               const std::string& member) {
    ++tally_.faults;
    // It did without the memory.
    if (outcome == usual) return void(++tally_.as_usual);
    const bool refused = outcome.failure == out_of_memory;
    const bool told = tells_of_refusal(outcome);
    EXPECT_TRUE(refused || told) << "failure " << outcome.failure;
    ++(refused ? tally_.refused : tally_.told);
    for (std::size_t i = 0; i < call.given.size(); ++i) {
      if (!is_array(call.given[i].value.kind)) continue;
      SCOPED_TRACE("argument " + std::to_string(i));
      if (write_as_far_as_they_get.contains(member)) {
        expect_between(outcome.after[i], call.given[i].value, usual.after[i],
                       sort_in_place.contains(member));
      } else {
        EXPECT_TRUE(outcome.after[i] == call.given[i].value);
      }
    }
  }

  Caller& object_;
  std::size_t class_index_;
  Tally& tally_;
  std::vector<bool> by_value_;
};

template <class Caller>
Tally refuse_everywhere() {
  Tally tally;
  for (std::size_t c = 0; c < classes_of_file().size(); ++c) {
    const VectorClass& one = classes_of_file()[c];
    Caller object(("Orv2_Geo." + one.name).c_str());
    Refusals<Caller> refusals(object, c, tally);
    std::map<std::size_t, int> tried;
    for (const VectorCall& call : one.calls) {
      // Public variables of the class have every value that the file gives them.
      const bool variable = one.members.at(call.position).name.starts_with("put_");
      if (tried[call.position]++ >= calls_of_a_member && !variable) continue;
      const std::string& name = one.members.at(call.position).name;
      refusals.refuse_in(call, name, true);
      refusals.refuse_in(with_form(call), name, false);
    }
    tally.members += tried.size();
  }
  return tally;
}

std::size_t members_of_library() {
  std::size_t members = 0;
  orv2_class_info info{};
  for (std::size_t i = 0; orv2_class_at(i, &info) == 0; ++i) members += info.member_count;
  return members;
}

template <class Caller>
void expect_refusals_survived(const char* through) {
  const Tally tally = refuse_everywhere<Caller>();
  std::cout << through << ": " << tally.faults << " allocations refused in " << tally.calls
            << " calls of " << tally.members << " members; " << tally.refused << " ended in 7, "
            << tally.told << " in the routine's own box, " << tally.as_usual
            << " did without the memory\n";
  EXPECT_EQ(tally.members, members_of_library());
  EXPECT_EQ(tally.with_forms,
            (std::set<std::string>{"MaxMin_3Matriz", "MaxMin_3Matriz1", "Quita_Pts_Repetidos"}));
  EXPECT_GT(tally.refused, 1000U);
  EXPECT_GT(tally.told, 100U);
}

TEST(RefusedCalls, ThroughC) { expect_refusals_survived<PortableObject>("C"); }
TEST(RefusedCalls, InCpp) { expect_refusals_survived<DirectObject>("C++"); }

}  // namespace
}  // namespace orv2_geo::vectors
