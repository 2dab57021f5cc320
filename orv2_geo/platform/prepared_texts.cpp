#include "orv2_geo/platform/prepared_texts.h"

#include <algorithm>
#include <array>
#include <bit>
#include <initializer_list>
#include <map>
#include <memory>
#include <unordered_map>

#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/platform/thread_data.h"

namespace orv2_geo {

namespace {

// What the collation makes of the characters seen so far on this thread. Each
// different one has a number from 1 on; upper and lower case have the same.
class Characters {
 public:
  static constexpr std::uint8_t illegible = 255;
  static constexpr std::size_t most_triples = 0x4000;

  std::uint8_t number(char16_t unit) {
    std::uint8_t& number = (*numbers_)[unit];
    if (number == 0) number = learn(unit);
    return number;
  }

  /// The numbers of all units, 0 for those not seen yet.
  const std::uint8_t* numbers() const noexcept { return numbers_->data(); }

  /// Whether the weight of the two together is the weight of one and then of the
  /// other: no contraction, nothing that turns an order round.
  bool stand_apart(std::uint8_t first, std::uint8_t second) {
    std::uint8_t& known = (*pairs_)[std::size_t{first} * 256 + second];
    if (known == 0) known = stand_apart_in_fact({first, second}) ? 1 : 2;
    return known == 1;
  }

  /// The same of three, of whom two and two stand apart. Contractions of three
  /// plain letters begin or end with one of two in every language; only where
  /// another character takes part is the collation asked.
  bool stand_apart(std::uint8_t first, std::uint8_t second, std::uint8_t third) {
    if (is_plain(first) && is_plain(second) && is_plain(third)) return true;
    const std::uint32_t three = std::uint32_t{first} << 16 | std::uint32_t{second} << 8 | third;
    const auto known = triples_.find(three);
    if (known != triples_.end()) return known->second;
    // A host may show a thread any texts: what is kept of them has an end, and is asked again.
    if (triples_.size() == most_triples) triples_.clear();
    return triples_.emplace(three, stand_apart_in_fact({first, second, third})).first->second;
  }

  /// The weight of a character at the first level, 0 where it has none there.
  char32_t weight(std::uint8_t number) const { return seen_[number].weight; }

 private:
  struct Character {
    char16_t unit;
    char32_t weight;
  };

  static std::u32string first_level_of(std::u16string_view text) {
    const std::u32string key = text_services::collation_key(text);
    return key.substr(0, text_services::first_level(key));
  }

  // Only a character of at most one weight can be read by itself.
  std::uint8_t learn(char16_t unit) {
    const bool half_a_pair = unit >= 0xd800 && unit < 0xe000;
    if (unit == 0 || half_a_pair) return illegible;
    const std::u32string key = text_services::collation_key({&unit, 1});
    const std::size_t weights = text_services::first_level(key);
    if (weights > 1) return illegible;
    const auto known = by_key_.find(key);
    if (known != by_key_.end()) return known->second;
    if (seen_.size() == illegible) return illegible;
    const auto number = static_cast<std::uint8_t>(seen_.size());
    seen_.reserve(illegible);  // where memory is refused, nothing of the character is known
    by_key_.emplace(key, number);
    seen_.push_back({unit, weights == 1 ? key[0] : U'\0'});
    return number;
  }

  bool stand_apart_in_fact(std::initializer_list<std::uint8_t> numbers) const {
    std::u16string units;
    std::u32string weights;
    for (const std::uint8_t number : numbers) {
      units.push_back(seen_[number].unit);
      if (weight(number) != 0) weights.push_back(weight(number));
    }
    return first_level_of(units) == weights;
  }

  bool is_plain(std::uint8_t number) const {
    const char16_t unit = seen_[number].unit;
    return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'z') ||
           (unit >= u'A' && unit <= u'Z');
  }

  std::unique_ptr<std::array<std::uint8_t, 0x10000>> numbers_ =
      std::make_unique<std::array<std::uint8_t, 0x10000>>();  // 0: not asked yet
  std::unique_ptr<std::array<std::uint8_t, 0x10000>> pairs_ =
      std::make_unique<std::array<std::uint8_t, 0x10000>>();
  std::unordered_map<std::uint32_t, bool> triples_;
  std::map<std::u32string, std::uint8_t> by_key_;
  std::vector<Character> seen_ = {{}};  // number 0 is nobody's
};

Characters& characters() { return of_this_thread<Characters>(); }

}  // namespace

PreparedTexts::PreparedTexts(std::span<const Text* const> texts) : texts_(texts) {
  std::vector<bool> used(ranks_.size());
  if (read_texts(used)) rank_weights(used);
}

// False where the texts cannot be read character by character.
bool PreparedTexts::read_texts(std::vector<bool>& used) {
  Characters& known = characters();
  numbers_ = known.numbers();
  const std::u16string_view first = texts_.empty() ? std::u16string_view() : texts_[0]->view();
  in_common_ = first.size();
  for (std::uint32_t t = 0; t < texts_.size(); ++t) {
    if (t + prefetch_distance < texts_.size()) prefetch_text(t + prefetch_distance);
    const std::u16string_view units = texts_[t]->view();
    in_common_ = std::min(in_common_, units.size());
    std::uint8_t before = 0;
    std::uint8_t before_that = 0;
    for (std::size_t i = 0; i < units.size(); ++i) {
      const std::uint8_t number = known.number(units[i]);
      if (number == Characters::illegible) return false;
      if (before != 0 && !known.stand_apart(before, number)) return false;
      if (before_that != 0 && !known.stand_apart(before_that, before, number)) return false;
      used[number] = true;
      if (i < in_common_ && number != numbers_[first[i]]) in_common_ = i;
      before_that = before;
      before = number;
    }
  }
  return true;
}

// Ranks instead of weights, so that more characters fit into a word.
void PreparedTexts::rank_weights(const std::vector<bool>& used) {
  const Characters& known = characters();
  const auto weight = [&](std::size_t n) { return known.weight(static_cast<std::uint8_t>(n)); };
  std::vector<char32_t> weights;
  for (std::size_t n = 1; n < used.size(); ++n) {
    if (used[n]) weights.push_back(weight(n));
  }
  std::sort(weights.begin(), weights.end());
  const auto last = std::unique(weights.begin(), weights.end());
  // No two characters differ at later levels only, and none is left out.
  parts_decide_ = last == weights.end() && (weights.empty() || weights[0] != 0);
  weights.erase(last, weights.end());
  std::erase(weights, U'\0');
  for (std::size_t n = 1; n < used.size(); ++n) {
    if (!used[n] || weight(n) == 0) continue;
    const auto place = std::lower_bound(weights.begin(), weights.end(), weight(n));
    ranks_[n] = static_cast<std::uint8_t>(place - weights.begin() + 1);  // 0: the text is over
  }
  rank_bits_ = std::max(1, static_cast<int>(std::bit_width(weights.size())));
  ranks_a_word_ = 64 / rank_bits_;
  last_rank_ = (std::uint64_t{1} << rank_bits_) - 1;
}

PreparedTexts::Part PreparedTexts::part_at(std::uint32_t text, std::size_t at) const noexcept {
  const std::u16string_view units = texts_[text]->view();
  std::uint64_t word = 0;
  for (int k = 0; k < ranks_a_word_; ++k) {
    std::uint8_t rank = 0;
    while (rank == 0 && at < units.size()) rank = ranks_[numbers_[units[at++]]];
    word = word << rank_bits_ | rank;
  }
  return {word, text, static_cast<std::uint32_t>(at)};
}

PreparedTexts::Part PreparedTexts::first_part(std::uint32_t text) const noexcept {
  return part_at(text, in_common_);
}

int PreparedTexts::compare(std::uint32_t i, std::uint32_t j) {
  if (texts_[i]->view() == texts_[j]->view()) return 0;
  return full_key(i).compare(full_key(j));
}

const std::u32string& PreparedTexts::full_key(std::uint32_t i) {
  if (full_keys_.empty()) full_keys_.resize(texts_.size());
  if (full_keys_[i].empty()) full_keys_[i] = text_services::collation_key(texts_[i]->view());
  return full_keys_[i];
}

}  // namespace orv2_geo
