#include "orv2_geo/sorting/text_order.h"

#include <algorithm>
#include <cstddef>

#include "orv2_geo/platform/prepared_texts.h"
#include "orv2_geo/sorting/word_quicksort.h"

namespace orv2_geo::sorting {

namespace {

// Ascending order of texts, part by part: the texts alike in one part are looked
// at again in the next, so that each is read once however many it is compared
// with.
class PartByPart {
 public:
  explicit PartByPart(std::span<const Text* const> texts)
      : prepared_(texts), parts_(texts.size()), tied_(texts.size()) {
    for (std::uint32_t i = 0; i < parts_.size(); ++i) {
      if (i + distance < parts_.size()) prepared_.prefetch_text(i + distance);
      parts_[i] = prepared_.first_part(i);
    }
    sort(parts_, 1);
  }

  /// Their positions in that order, each with the bit that is tied to the one before.
  std::vector<std::uint32_t> order_with_ties() const {
    std::vector<std::uint32_t> order(parts_.size());
    for (std::size_t p = 0; p < order.size(); ++p) {
      order[p] = parts_[p].text | (tied_[p] ? tied_bit : 0);
    }
    return order;
  }

 private:
  using Part = PreparedTexts::Part;
  static constexpr std::uint32_t distance = PreparedTexts::prefetch_distance;
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
        if (k + distance < parts.size()) prepared_.prefetch_text(parts[k + distance].text);
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

}  // namespace

std::vector<std::uint32_t> text_order(std::span<const Text* const> texts, std::int64_t first) {
  std::vector<std::uint32_t> order = PartByPart(texts).order_with_ties();
  std::vector<std::uint64_t> words(texts.size() + 2 * words_around);
  std::vector<std::uint32_t> ties_up_to(texts.size());
  settle_ties(order, first, words.data() + words_around, ties_up_to.data());
  return order;
}

}  // namespace orv2_geo::sorting
