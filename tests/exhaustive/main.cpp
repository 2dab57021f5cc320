// Goes through every case of a check, on two threads:
//   exhaustive                          tells the checks
//   exhaustive all | CHECK...           runs them whole
//   exhaustive ... --part K/N           every N-th block from the K-th on (K from 1 to N)
//   exhaustive ... --night NUMBER       whole, but of what takes very long the part of this night
//   exhaustive ... --quick              the few blocks that a run of all tests takes
// Ends with 1 when anything differs.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tests/exhaustive/check.h"

namespace orv2_geo::exhaustive {
namespace {

constexpr std::size_t thread_count = 2;

/// The blocks from `first` on, each `step` behind the one before.
struct Part {
  std::uint64_t first = 0, step = 1;
};

struct Wish {
  std::vector<std::string> names;
  Part part;
  std::optional<std::uint64_t> night;
  bool quick = false;

  Part part_of(const Check& check) const {
    if (quick) return {0, check.quick_parts};
    if (night) return {*night % check.nights, check.nights};
    return part;
  }
};

std::vector<Check> all_checks() {
  std::vector<Check> all;
  for (const auto& some : {checks_of_single_numbers(), checks_of_pairs(), checks_of_whole_numbers(),
                           checks_of_sorts(), checks_of_surveys()}) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

// Takes blocks until there are no more; the cases that it went through.
std::uint64_t work(const Check& check, const Part& part, std::atomic<std::uint64_t>& next,
                   Tally& tally) {
  std::uint64_t cases = 0;
  while (true) {
    const std::uint64_t block = part.first + next.fetch_add(1) * part.step;
    if (block >= (check.cases + check.block - 1) / check.block) return cases;
    const std::uint64_t first = block * check.block;
    const std::uint64_t end = std::min(first + check.block, check.cases);
    check.run(first, end, tally);
    cases += end - first;
  }
}

bool holds(const Check& check, const Part& part) {
  const auto start = std::chrono::steady_clock::now();
  std::atomic<std::uint64_t> next = 0;
  Tally tallies[thread_count];
  std::uint64_t cases[thread_count] = {};
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < thread_count; ++i) {
    threads.emplace_back([&, i] { cases[i] = work(check, part, next, tallies[i]); });
  }
  for (std::thread& one : threads) one.join();
  for (std::size_t i = 1; i < thread_count; ++i) {
    tallies[0].add(tallies[i]);
    cases[0] += cases[i];
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  std::cout << check.name << ": " << cases[0] << " of " << check.cases << " cases, "
            << tallies[0].comparisons() << " comparisons, " << tallies[0].mismatches()
            << " mismatches, " << taken.count() << " s\n";
  for (const std::string& one : tallies[0].told()) std::cout << "  " << one << '\n';
  std::cout.flush();
  return cases[0] != 0 && tallies[0].mismatches() == 0;
}

std::optional<Part> part_from(const std::string& word) {
  Part part;
  char rest = 0;
  if (std::sscanf(word.c_str(), "%lu/%lu%c", &part.first, &part.step, &rest) != 2) return {};
  if (part.first < 1 || part.first > part.step) return {};
  --part.first;
  return part;
}

std::optional<Wish> wish_of(int count, char** words) {
  Wish wish;
  for (int i = 1; i < count; ++i) {
    const std::string word = words[i];
    if (word == "--quick") {
      wish.quick = true;
    } else if (word == "--part") {
      const std::optional<Part> part = i + 1 < count ? part_from(words[++i]) : std::nullopt;
      if (!part) return {};
      wish.part = *part;
    } else if (word == "--night") {
      std::uint64_t night = 0;
      if (i + 1 == count || std::sscanf(words[++i], "%lu", &night) != 1) return {};
      wish.night = night;
    } else {
      wish.names.push_back(word);
    }
  }
  if (wish.names.empty()) return {};
  return wish;
}

int tell_checks(const std::vector<Check>& checks) {
  std::cerr << "usage: exhaustive all|CHECK... [--part K/N | --night NUMBER | --quick]\n";
  for (const Check& check : checks) {
    std::cerr << "  " << check.name << " (" << check.cases << "): " << check.what << '\n';
  }
  return 2;
}

int run(int count, char** words) {
  const std::vector<Check> checks = all_checks();
  const std::optional<Wish> wish = wish_of(count, words);
  if (!wish) return tell_checks(checks);
  const auto is_known = [&](const std::string& name) {
    return name == "all" || std::any_of(checks.begin(), checks.end(),
                                        [&](const Check& check) { return name == check.name; });
  };
  if (!std::all_of(wish->names.begin(), wish->names.end(), is_known)) return tell_checks(checks);
  bool sound = true;
  for (const Check& check : checks) {
    const auto is_this = [&](const std::string& name) {
      return name == "all" || name == check.name;
    };
    if (std::none_of(wish->names.begin(), wish->names.end(), is_this)) continue;
    sound = holds(check, wish->part_of(check)) && sound;
  }
  return sound ? 0 : 1;
}

}  // namespace
}  // namespace orv2_geo::exhaustive

int main(int count, char** words) { return orv2_geo::exhaustive::run(count, words); }
