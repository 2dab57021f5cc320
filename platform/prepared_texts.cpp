#include "platform/prepared_texts.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>

#include "platform/text_services.h"

namespace orv2_geo {

namespace {

// What the collation makes of the characters seen so far on this thread. Each
// different one has a number from 1 on; upper and lower case have the same.
class Characters {
 public:
  static constexpr std::uint8_t illegible = 255;

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
    if (known == 0) known = stand_apart_in_fact(first, second) ? 1 : 2;
    return known == 1;
  }

  /// The weight of a character at the first level.
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

  // Only a character of one weight can be read by itself.
  std::uint8_t learn(char16_t unit) {
    const bool half_a_pair = unit >= 0xd800 && unit < 0xe000;
    if (unit == 0 || half_a_pair) return illegible;
    const std::u32string key = text_services::collation_key({&unit, 1});
    if (text_services::first_level(key) != 1) return illegible;
    const auto known = by_key_.find(key);
    if (known != by_key_.end()) return known->second;
    if (seen_.size() == illegible) return illegible;
    const auto number = static_cast<std::uint8_t>(seen_.size());
    by_key_.emplace(key, number);
    seen_.push_back({unit, key[0]});
    return number;
  }

  bool stand_apart_in_fact(std::uint8_t first, std::uint8_t second) const {
    const char16_t both[] = {seen_[first].unit, seen_[second].unit};
    const char32_t weights[] = {seen_[first].weight, seen_[second].weight};
    return first_level_of({both, 2}) == std::u32string_view(weights, 2);
  }

  std::unique_ptr<std::array<std::uint8_t, 0x10000>> numbers_ =
      std::make_unique<std::array<std::uint8_t, 0x10000>>();  // 0: not asked yet
  std::unique_ptr<std::array<std::uint8_t, 0x10000>> pairs_ =
      std::make_unique<std::array<std::uint8_t, 0x10000>>();
  std::map<std::u32string, std::uint8_t> by_key_;
  std::vector<Character> seen_ = {{}};  // number 0 is nobody's
};

Characters& characters() {
  thread_local Characters all;
  return all;
}

}  // namespace

PreparedTexts::PreparedTexts(std::span<const Text* const> texts) : texts_(texts) {
  read_texts();
  if (!legible_) return;
  rank_weights();
  make_prefixes();
}

void PreparedTexts::read_texts() {
  Characters& known = characters();
  numbers_ = known.numbers();
  ranks_.assign(256, 0);
  const std::u16string_view first = texts_.empty() ? std::u16string_view() : texts_[0]->view();
  in_common_ = first.size();
  for (const Text* text : texts_) {
    const std::u16string_view units = text->view();
    in_common_ = std::min(in_common_, units.size());
    std::uint8_t before = 0;
    for (std::size_t i = 0; i < units.size(); ++i) {
      const std::uint8_t number = known.number(units[i]);
      legible_ =
          number != Characters::illegible && (before == 0 || known.stand_apart(before, number));
      if (!legible_) return;
      ranks_[number] = 1;
      if (i < in_common_ && number != known.number(first[i])) in_common_ = i;
      before = number;
    }
  }
}

// Ranks instead of weights, so that more characters fit into a word.
void PreparedTexts::rank_weights() {
  const Characters& known = characters();
  std::vector<char32_t> weights;
  for (std::size_t n = 1; n < ranks_.size(); ++n) {
    if (ranks_[n] != 0) weights.push_back(known.weight(static_cast<std::uint8_t>(n)));
  }
  std::sort(weights.begin(), weights.end());
  const auto last = std::unique(weights.begin(), weights.end());
  decisive_ = last == weights.end();  // no two characters differ at later levels only
  weights.erase(last, weights.end());
  for (std::size_t n = 1; n < ranks_.size(); ++n) {
    if (ranks_[n] == 0) continue;
    const auto place = std::lower_bound(weights.begin(), weights.end(),
                                        known.weight(static_cast<std::uint8_t>(n)));
    ranks_[n] = static_cast<std::uint8_t>(place - weights.begin() + 1);  // 0: the text is over
  }
  rank_bits_ = 1;
  while (weights.size() >> rank_bits_ != 0) ++rank_bits_;
}

void PreparedTexts::make_prefixes() {
  prefixes_.resize(texts_.size());
  const std::size_t characters_a_word = 64 / static_cast<std::size_t>(rank_bits_);
  for (std::size_t i = 0; i < texts_.size(); ++i) {
    const std::u16string_view rest = texts_[i]->view().substr(in_common_);
    std::uint64_t prefix = 0;
    for (std::size_t k = 0; k < characters_a_word; ++k) {
      prefix <<= rank_bits_;
      if (k < rest.size()) prefix |= ranks_[numbers_[rest[k]]];
    }
    prefixes_[i] = prefix;
  }
}

int PreparedTexts::compare_ranks(std::u16string_view a, std::u16string_view b) const noexcept {
  const std::size_t both = std::min(a.size(), b.size());
  for (std::size_t k = in_common_; k < both; ++k) {
    const int order = ranks_[numbers_[a[k]]] - ranks_[numbers_[b[k]]];
    if (order != 0) return order;
  }
  return static_cast<int>(a.size() > b.size()) - static_cast<int>(a.size() < b.size());
}

int PreparedTexts::compare(std::size_t i, std::size_t j) {
  const std::u16string_view a = texts_[i]->view();
  const std::u16string_view b = texts_[j]->view();
  if (legible_) {
    const int order = compare_ranks(a, b);
    if (order != 0 || decisive_) return order;
  }
  return a == b ? 0 : full_key(i).compare(full_key(j));
}

const std::u32string& PreparedTexts::full_key(std::size_t i) {
  if (full_keys_.empty()) full_keys_.resize(texts_.size());
  if (full_keys_[i].empty()) full_keys_[i] = text_services::collation_key(texts_[i]->view());
  return full_keys_[i];
}

}  // namespace orv2_geo
