// check.h: a check that goes through every case there is, and what it finds.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace orv2_geo::exhaustive {

/// What one thread finds.
class Tally {
 public:
  /// Counts one comparison; one that does not hold is told in the words that `tell` writes.
  template <class Tell>
  void expect(bool same, Tell&& tell) {
    ++comparisons_;
    if (same) return;
    ++mismatches_;
    if (told_.size() >= most_told) return;
    std::ostringstream words;
    words.precision(17);
    std::forward<Tell>(tell)(words);
    told_.push_back(words.str());
  }

  void add(const Tally& other) {
    comparisons_ += other.comparisons_;
    mismatches_ += other.mismatches_;
    for (const std::string& one : other.told_) {
      if (told_.size() < most_told) told_.push_back(one);
    }
  }

  std::uint64_t comparisons() const { return comparisons_; }
  std::uint64_t mismatches() const { return mismatches_; }
  const std::vector<std::string>& told() const { return told_; }

 private:
  static constexpr std::size_t most_told = 5;
  std::uint64_t comparisons_ = 0;
  std::uint64_t mismatches_ = 0;
  std::vector<std::string> told_;
};

/// Cases that are numbered from 0. They are gone through block by block: a block is what
/// a thread takes at a time, and the least that a part consists of.
struct Check {
  const char* name;
  const char* what;  // what one case is, and what is compared
  std::uint64_t cases;
  std::uint64_t block;
  std::uint64_t quick_parts;  // of so many parts the quick run takes one
  std::uint64_t nights;       // of so many parts each night takes the next
  void (*run)(std::uint64_t first, std::uint64_t end, Tally& tally);
};

std::vector<Check> checks_of_single_numbers();
std::vector<Check> checks_of_pairs();
std::vector<Check> checks_of_whole_numbers();
std::vector<Check> checks_of_sorts();
std::vector<Check> checks_of_surveys();

}  // namespace orv2_geo::exhaustive
