#include "orv2_geo/sorting/text_order.h"

#include <algorithm>
#include <cstddef>
#include <new>

#include "orv2_geo/frame/memory.h"
#include "orv2_geo/platform/prepared_texts.h"
#include "orv2_geo/sorting/radix_sort.h"
#include "orv2_geo/sorting/word_quicksort.h"

namespace orv2_geo::sorting {

namespace {

// Throws std::bad_alloc.
template <class T>
Buffer<T> buffer(std::size_t count) {
  auto made = buffer_if_any<T>(count);
  if (!made) throw std::bad_alloc();
  return made;
}

// Ascending order of texts, part by part: the texts alike in one part are looked
// at again in the next, so that each is read once however many it is compared
// with.
class PartByPart {
 public:
  explicit PartByPart(std::span<const Text* const> texts)
      : prepared_(texts),
        count_(texts.size() - prepared_.unreadable().size()),
        parts_(buffer<Part>(count_)),
        spare_(buffer<Part>(count_)),
        tied_(count_) {
    make_first_parts();
    sort({parts_.get(), count_}, 1);
  }

  /// Their positions in that order, each with the bit that is tied to the one before.
  std::vector<std::uint32_t> order_with_ties() {
    std::vector<std::uint32_t> order;
    order.reserve(prepared_.size());
    std::size_t p = 0;
    for (const std::uint32_t text : sorted_unreadable()) {
      p = append_below(text, p, order);
      append(text, order);
      // The first of the parts' own group of equals becomes one of a larger.
      if (p < count_ && prepared_.compare(text, parts_[p].text) == 0) tied_[p] = true;
    }
    append_parts(p, count_, order);
    return order;
  }

 private:
  using Part = PreparedTexts::Part;
  static constexpr int most_parts = 16;  // beyond, whole texts are compared

  void make_first_parts() {
    auto unreadable = prepared_.unreadable().begin();
    Part* part = parts_.get();
    for (std::uint32_t i = 0; i < prepared_.size(); ++i) {
      if (unreadable != prepared_.unreadable().end() && *unreadable == i) {
        ++unreadable;
      } else {
        *part++ = prepared_.first_part(i);
      }
    }
  }

  std::vector<std::uint32_t> sorted_unreadable() {
    std::vector<std::uint32_t> texts(prepared_.unreadable().begin(), prepared_.unreadable().end());
    std::sort(texts.begin(), texts.end(),
              [&](std::uint32_t a, std::uint32_t b) { return prepared_.compare(a, b) < 0; });
    return texts;
  }

  // A text without parts, tied or not to the last of all.
  void append(std::uint32_t text, std::vector<std::uint32_t>& order) {
    const bool tied = !order.empty() && prepared_.compare(order.back() & ~tied_bit, text) == 0;
    order.push_back(text | (tied ? tied_bit : 0));
  }

  // The parts from p on whose texts come before this one; gives the place of the next.
  std::size_t append_below(std::uint32_t text, std::size_t p, std::vector<std::uint32_t>& order) {
    const auto comes_before = [&](const Part& part, std::uint32_t other) {
      return prepared_.compare(part.text, other) < 0;
    };
    const Part* const place =
        std::lower_bound(parts_.get() + p, parts_.get() + count_, text, comes_before);
    const auto end = static_cast<std::size_t>(place - parts_.get());
    append_parts(p, end, order);
    return end;
  }

  void append_parts(std::size_t p, std::size_t end, std::vector<std::uint32_t>& order) const {
    for (; p < end; ++p) order.push_back(parts_[p].text | (tied_[p] ? tied_bit : 0));
  }

  void sort(std::span<Part> parts, int number) {
    const std::span spare(spare_.get(), parts.size());
    const auto sorted = radix_sort(
        parts, spare, prepared_.word_bits(), [](const Part& part) { return part.word; },
        [](const Part& a, const Part& b) { return a.word < b.word; });
    if (sorted.data() != parts.data()) std::copy(sorted.begin(), sorted.end(), parts.begin());
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
      for (Part& part : parts) part = prepared_.next_part(part);
      return sort(parts, number + 1);
    }
    const bool equal = over && prepared_.parts_decide();
    if (!equal) {
      std::sort(parts.begin(), parts.end(), [&](const Part& a, const Part& b) {
        return prepared_.compare(a.text, b.text) < 0;
      });
    }
    for (std::size_t k = 1; k < parts.size(); ++k) {
      const auto place = static_cast<std::size_t>(&parts[k] - parts_.get());
      tied_[place] = equal || prepared_.compare(parts[k - 1].text, parts[k].text) == 0;
    }
  }

  PreparedTexts prepared_;
  std::size_t count_;  // of the texts that have parts
  Buffer<Part> parts_;
  Buffer<Part> spare_;
  std::vector<bool> tied_;  // to the one before
};

}  // namespace

std::vector<std::uint32_t> text_order(std::span<const Text* const> texts, std::int64_t first) {
  std::vector<std::uint32_t> order = PartByPart(texts).order_with_ties();
  const auto words = buffer<std::uint64_t>(texts.size() + 2 * words_around);
  std::fill_n(words.get(), words_around, 0);
  std::fill_n(words.get() + words_around + texts.size(), words_around, 0);
  const auto ties_up_to = buffer<std::uint32_t>(texts.size());
  settle_ties(order, first, words.get() + words_around, ties_up_to.get());
  return order;
}

}  // namespace orv2_geo::sorting
