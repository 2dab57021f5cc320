#include "orv2_geo/platform/prepared_texts.h"

#include <algorithm>
#include <array>
#include <bit>
#include <initializer_list>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <utility>

#include "orv2_geo/platform/prefetch.h"
#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/platform/thread_data.h"

namespace orv2_geo {

namespace {

// What the collation makes of the characters seen so far on this thread. Each
// different one has a number from 1 on; upper and lower case have the same.
class Characters {
 public:
  static constexpr std::uint8_t illegible = 255;

  std::uint8_t number(char16_t unit) {
    std::uint8_t& number = tables_->numbers[unit];
    if (number == 0) number = learn(unit);
    return number;
  }

  /// Writes the numbers of a text's characters, and which are used. False where the text
  /// cannot be read character by character.
  bool read(std::u16string_view text, std::uint8_t* numbers, std::array<bool, 256>& used) {
    const Tables* const tables = tables_.get();
    std::uint8_t before = 0;
    std::uint8_t before_that = 0;
    std::uint8_t pair_before = apart | plain;
    for (const char16_t unit : text) {
      std::uint8_t number = tables->numbers[unit];
      std::uint8_t pair = tables->pair(before, number);
      if ((pair & pair_before) != (apart | plain)) {
        number = number_behind(before_that, before, unit);
        if (number == illegible) return false;
        pair = tables->pair(before, number);
      }
      used[number] = true;
      *numbers++ = number;
      before_that = before;
      before = number;
      pair_before = pair;
    }
    return true;
  }

  /// Whether the weight of the two together is the weight of one and then of the
  /// other: no contraction, nothing that turns an order round.
  bool stand_apart(std::uint8_t first, std::uint8_t second) {
    std::uint8_t& known = tables_->pair(first, second);
    if (known == 0) {
      const bool both_plain = (tables_->pair(0, first) & tables_->pair(0, second) & plain) != 0;
      known = !stand_apart_in_fact({first, second}) ? not_apart
              : both_plain                          ? apart | plain
                                                    : apart;
    }
    return known != not_apart;
  }

  /// The same of three, of whom two and two stand apart. Contractions of three
  /// plain letters begin or end with one of two in every language; only where
  /// another character takes part is the collation asked.
  bool stand_apart(std::uint8_t first, std::uint8_t second, std::uint8_t third) {
    if ((tables_->pair(first, second) & tables_->pair(second, third) & plain) != 0) return true;
    const std::uint32_t three = std::uint32_t{first} << 16 | std::uint32_t{second} << 8 | third;
    // Multiplicative hashing, by the golden ratio.
    std::uint32_t& known = tables_->triples[three * 0x9e3779b9U >> (32 - triple_bits)];
    if (known >> 1 != three) known = three << 1 | stand_apart_in_fact({first, second, third});
    return (known & 1) != 0;
  }

  /// The weight of a character at the first level, 0 where it has none there.
  char32_t weight(std::uint8_t number) const { return seen_[number].weight; }

 private:
  struct Character {
    char16_t unit;
    char32_t weight;
  };

  static constexpr int triple_bits = 12;

  // What is known of two characters; 0: not asked yet.
  static constexpr std::uint8_t apart = 1;
  static constexpr std::uint8_t not_apart = 2;
  static constexpr std::uint8_t plain = 4;  // with apart: both are letters or digits

  struct Tables {
    std::array<std::uint8_t, 0x10000> numbers;  // of all units, 0: not asked yet
    // By first and second. With number 0 in front it is what a character is by itself;
    // what is no number has nothing known.
    std::array<std::uint8_t, 0x10000> pairs;
    std::uint8_t& pair(std::uint8_t first, std::uint8_t second) {
      return pairs[std::size_t{first} * 256 + second];
    }
    std::uint8_t pair(std::uint8_t first, std::uint8_t second) const {
      return pairs[std::size_t{first} * 256 + second];
    }
    // Three, and in the lowest bit whether they stand apart, at their hash: the ones met
    // last take the place of others.
    std::array<std::uint32_t, std::size_t{1} << triple_bits> triples;
  };

  // The character's number behind two others, of which those that are not there are 0;
  // illegible also where the three do not stand apart.
  std::uint8_t number_behind(std::uint8_t before_that, std::uint8_t before, char16_t unit) {
    const std::uint8_t number = this->number(unit);
    if (number == illegible || !stand_apart(before, number)) return illegible;
    if (before_that != 0 && !stand_apart(before_that, before, number)) return illegible;
    return number;
  }

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
    tables_->pair(0, number) = is_plain(unit) ? apart | plain : apart;
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

  static bool is_plain(char16_t unit) {
    return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'z') ||
           (unit >= u'A' && unit <= u'Z');
  }

  std::unique_ptr<Tables> tables_ = std::make_unique<Tables>();
  std::map<std::u32string, std::uint8_t> by_key_;
  std::vector<Character> seen_ = {{}};  // number 0 is nobody's
};

Characters& characters() { return of_this_thread<Characters>(); }

}  // namespace

PreparedTexts::PreparedTexts(std::span<const Text* const> texts)
    : texts_(texts), starts_(texts.size()) {
  Used used{};
  if (read_texts(used)) {
    rank_weights(used);
  } else {
    unreadable_.clear();
  }
}

// False where too many texts cannot be read character by character.
bool PreparedTexts::read_texts(Used& used) {
  constexpr std::uint32_t ahead = 16;       // texts to be fetched
  constexpr std::size_t usual_length = 12;  // more room is made where it is needed
  Characters& known = characters();
  std::size_t room = 0;
  std::size_t start = 0;
  for (std::uint32_t t = 0; t < texts_.size(); ++t) {
    if (t + ahead < texts_.size()) prefetch(texts_[t + ahead]->data());
    const std::u16string_view units = texts_[t]->view();
    const std::size_t end = start + units.size() + 1;
    if (end > std::numeric_limits<std::uint32_t>::max()) return false;
    if (end > room) {
      room = std::max({end, 2 * room, texts_.size() * usual_length});
      make_room(start, room);
    }
    std::uint8_t* const numbers = numbers_.get() + start;
    starts_[t] = static_cast<std::uint32_t>(start);
    if (!known.read(units, numbers, used)) {
      unreadable_.push_back(t);
      if (unreadable_.size() > texts_.size() / 256) return false;
      continue;
    }
    numbers[units.size()] = 0;
    in_common_ = start == 0 ? units.size() : std::min(in_common_, units.size());
    const auto differs = std::mismatch(numbers, numbers + in_common_, numbers_.get());
    in_common_ = static_cast<std::size_t>(differs.first - numbers);
    start = end;
  }
  return true;
}

// For so many characters in all, the first of which stay.
void PreparedTexts::make_room(std::size_t kept, std::size_t room) {
  auto numbers = buffer_if_any<std::uint8_t>(room);
  if (!numbers) throw std::bad_alloc();
  std::copy_n(numbers_.get(), kept, numbers.get());
  numbers_ = std::move(numbers);
}

// Ranks instead of weights, so that more characters fit into a word.
void PreparedTexts::rank_weights(const Used& used) {
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

PreparedTexts::Part PreparedTexts::part_at(std::uint32_t text, std::uint32_t at) const noexcept {
  const std::uint8_t* number = numbers_.get() + at;
  std::uint64_t word = 0;
  for (int behind = ranks_a_word_ - 1; behind >= 0; --behind) {
    while (*number != 0 && ranks_[*number] == 0) ++number;
    if (*number == 0) break;
    word |= std::uint64_t{ranks_[*number++]} << behind * rank_bits_;
  }
  return {word, text, static_cast<std::uint32_t>(number - numbers_.get())};
}

PreparedTexts::Part PreparedTexts::first_part(std::uint32_t text) const noexcept {
  return part_at(text, starts_[text] + static_cast<std::uint32_t>(in_common_));
}

bool PreparedTexts::is_unreadable(std::uint32_t text) const noexcept {
  return std::binary_search(unreadable_.begin(), unreadable_.end(), text);
}

bool PreparedTexts::are_of_same_characters(std::uint32_t i, std::uint32_t j) const noexcept {
  if (ranks_a_word_ == 0 || is_unreadable(i) || is_unreadable(j)) {
    return texts_[i]->view() == texts_[j]->view();
  }
  const std::uint8_t* a = numbers_.get() + starts_[i];
  const std::uint8_t* b = numbers_.get() + starts_[j];
  for (; *a == *b; ++a, ++b) {
    if (*a == 0) return true;
  }
  return false;
}

int PreparedTexts::compare(std::uint32_t i, std::uint32_t j) {
  if (are_of_same_characters(i, j)) return 0;
  return full_key(i).compare(full_key(j));
}

const std::u32string& PreparedTexts::full_key(std::uint32_t i) {
  if (full_keys_.empty()) full_keys_.resize(texts_.size());
  if (full_keys_[i].empty()) full_keys_[i] = text_services::collation_key(texts_[i]->view());
  return full_keys_[i];
}

}  // namespace orv2_geo
