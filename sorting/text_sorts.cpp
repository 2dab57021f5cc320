// Sorts of texts, in place or through an index.
#include <algorithm>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "platform/prepared_texts.h"
#include "platform/text_services.h"
#include "sorting/bounds.h"
#include "sorting/kernel.h"
#include "sorting/mOrdena.h"
#include "sorting/rearrange.h"
#include "sorting/settle_ties.h"
#include "sorting/word_steps.h"

namespace orv2_geo {

namespace {

using sorting::Range;

bool comes_after(const Text& a, const Text& b) {
  return text_services::compare(a.view(), b.view()) > 0;
}

// A text that moves by exchanges alone: handles are moved, a text is never copied,
// and at every point where a failure can leave each is in one place.
class HeldText {
 public:
  HeldText(StringArray& array, std::int32_t at) : array_(array), at_(at) {}

  bool is_above(std::int32_t i) const { return comes_after(array_(at_), array_(i)); }
  bool is_below(std::int32_t i) const { return comes_after(array_(i), array_(at_)); }
  void shift(std::int32_t i) { settle(i); }
  void put(std::int32_t) {}  // the gap is where it is
  void settle(std::int32_t j) {
    array_(at_).swap(array_(j));
    at_ = j;
  }

 private:
  StringArray& array_;
  std::int32_t at_;
};

struct TextsInPlace {
  StringArray& array;
  bool above(std::int32_t i, std::int32_t j) const { return comes_after(array(i), array(j)); }
  void swap(std::int32_t i, std::int32_t j) { array(i).swap(array(j)); }
  auto hold(std::int32_t k) {
    (void)array(k);
    return HeldText(array, k);
  }
};

struct TextsByIndex {
  const StringArray& array;
  LongArray& index;
  const Text& key(std::int32_t k) const { return array(index(k)); }
  bool above(std::int32_t i, std::int32_t j) const { return comes_after(key(i), key(j)); }
  void swap(std::int32_t i, std::int32_t j) { std::swap(index(i), index(j)); }

  struct Held {
    TextsByIndex& elements;
    std::int32_t at;
    std::int32_t entry;
    const Text& key;
    bool is_above(std::int32_t i) const { return comes_after(key, elements.key(i)); }
    bool is_below(std::int32_t i) const { return comes_after(elements.key(i), key); }
    void shift(std::int32_t i) { elements.index(i + 1) = elements.index(i); }
    void put(std::int32_t k) { elements.index(k) = entry; }
    void settle(std::int32_t j) {
      elements.index(at) = elements.index(j);
      put(j);
    }
  };
  auto hold(std::int32_t k) { return Held{*this, k, index(k), key(k)}; }
};

// Ascending order of texts, part by part: the texts alike in one part are looked
// at again in the next, so that each is read once however many it is compared
// with.
class TextOrder {
 public:
  explicit TextOrder(std::span<const Text* const> texts)
      : prepared_(texts), parts_(texts.size()), tied_(texts.size()) {
    for (std::uint32_t i = 0; i < parts_.size(); ++i) {
      if (i + PreparedTexts::ahead < parts_.size()) prepared_.announce(i + PreparedTexts::ahead);
      parts_[i] = prepared_.first_part(i);
    }
    sort(parts_, 1);
  }

  /// Their positions in that order, ties marked.
  std::vector<std::uint32_t> marked() const {
    std::vector<std::uint32_t> order(parts_.size());
    for (std::size_t p = 0; p < order.size(); ++p) {
      order[p] = parts_[p].text | (tied_[p] ? sorting::tied_mark : 0);
    }
    return order;
  }

 private:
  using Part = PreparedTexts::Part;
  static constexpr int most_parts = 16;  // beyond, whole texts are compared

  void sort(std::span<Part> parts, int number) {
    std::sort(parts.begin(), parts.end(),
              [](const Part& a, const Part& b) { return a.word < b.word; });
    for (auto start = parts.begin(); start != parts.end();) {
      const auto differs = [&](const Part& part) { return part.word != start->word; };
      const auto end = std::find_if(start + 1, parts.end(), differs);
      if (end - start > 1) sort_alike({start, end}, number);
      start = end;
    }
  }

  void sort_alike(std::span<Part> parts, int number) {
    const bool over = prepared_.is_over(parts[0]);
    if (!over && number < most_parts) {
      for (std::size_t k = 0; k < parts.size(); ++k) {
        if (k + PreparedTexts::ahead < parts.size()) {
          prepared_.announce(parts[k + PreparedTexts::ahead].text);
        }
        parts[k] = prepared_.next_part(parts[k]);
      }
      return sort(parts, number + 1);
    }
    const bool equal = over && prepared_.parts_decide();
    if (!equal) {
      std::sort(parts.begin(), parts.end(), [&](const Part& a, const Part& b) {
        return prepared_.compare(a.text, b.text) < 0;
      });
    }
    for (std::size_t k = 1; k < parts.size(); ++k) {
      const auto place = static_cast<std::size_t>(&parts[k] - parts_.data());
      tied_[place] = equal || prepared_.compare(parts[k - 1].text, parts[k].text) == 0;
    }
  }

  PreparedTexts prepared_;
  std::vector<Part> parts_;
  std::vector<bool> tied_;  // to the one before
};

// The positions of the texts in the order in which the algorithm leaves them at
// the subscripts from `first` on.
std::vector<std::uint32_t> order_of(std::span<const Text* const> texts, std::int64_t first) {
  std::vector<std::uint32_t> order = TextOrder(texts).marked();
  std::vector<std::uint64_t> items(texts.size() + 2 * sorting::words_around);
  std::vector<std::uint32_t> ties_up_to(texts.size());
  sorting::settle_ties(order, first, items.data() + sorting::words_around, ties_up_to.data());
  return order;
}

// Both: false, and nothing changed, where the algorithm itself must be run.
bool sort_at_once(StringArray& array, Range range) try {
  const std::span<Text> moving = sorting::movable(array, range);
  if (moving.empty()) return false;
  std::vector<const Text*> keys(moving.size());
  for (std::size_t p = 0; p < keys.size(); ++p) keys[p] = &moving[p];
  sorting::rearrange(moving, order_of(keys, range.lo));
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

bool sort_index_at_once(const StringArray& array, LongArray& index, Range range) try {
  const std::span<std::int32_t> moving = sorting::movable(index, range);
  if (moving.empty()) return false;
  std::vector<const Text*> keys(moving.size());
  for (std::size_t p = 0; p < keys.size(); ++p) {
    keys[p] = array.row(moving[p], moving[p]);
    if (keys[p] == nullptr) return false;
  }
  sorting::rearrange(moving, order_of(keys, range.lo));
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace

void mOrdena::Ordena_StringArray(StringArray& TheArray, const std::int32_t& LowerBound,
                                 const std::int32_t& UpperBound) {
  const Range range = {sorting::lower_bound_of(TheArray, LowerBound),
                       sorting::upper_bound_of(TheArray, UpperBound)};
  if (sort_at_once(TheArray, range)) return;
  sorting::sort_by_steps(TextsInPlace{TheArray}, range);
}

void mOrdena::Ordena_StringIndexArray(const StringArray& TheArray, LongArray& TheIndex,
                                      const std::int32_t& LowerBound,
                                      const std::int32_t& UpperBound) {
  const Range range = {sorting::lower_bound_of(TheIndex, LowerBound),
                       sorting::upper_bound_of(TheIndex, UpperBound)};
  if (sort_index_at_once(TheArray, TheIndex, range)) return;
  sorting::sort_by_steps(TextsByIndex{TheArray, TheIndex}, range);
}

}  // namespace orv2_geo
