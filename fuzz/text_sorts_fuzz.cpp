// Texts of any 16-bit units sorted, beside the algorithm's own steps.
#include <algorithm>
#include <string>
#include <vector>

#include "fuzz/harness.h"
#include "fuzz/source.h"
#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/sorting/cgeo_Ordena.h"
#include "tests/sorting/restated_quicksort.h"
#include "tests/sorting/sort_data.h"
#include "tests/support/arrays.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using fuzzing::Source;
constexpr std::size_t most_texts = 24;
const cgeo_Ordena sorts;

std::vector<Text> texts_of(Source& source) {
  const std::size_t alphabet = source.below(Source::alphabet_count);
  const std::u16string common = source.one_in(3) ? source.units(12, alphabet) : std::u16string();
  const std::size_t longest = source.one_in(4) ? 40 : 6;
  std::vector<Text> texts(source.below(most_texts + 1));
  for (Text& text : texts) text = Text(common + source.units(longest, alphabet));
  return texts;
}

// The collation's order by keys that are made once.
class Collated {
 public:
  explicit Collated(const std::vector<Text>& texts) {
    for (const Text& text : texts) keys_.push_back(text_services::collation_key(text.view()));
  }
  Order by_number_from(std::int64_t first) const {
    return [this, first](std::int64_t a, std::int64_t b) {
      return key(a - first).compare(key(b - first));
    };
  }

 private:
  const std::u32string& key(std::int64_t at) const {
    if (at < 0 || at >= static_cast<std::int64_t>(keys_.size())) throw Missing();
    return keys_[static_cast<std::size_t>(at)];
  }
  std::vector<std::u32string> keys_;
};

// Bounds of an array and of a sort in it, at times beyond the array.
Place place_of(Source& source, std::size_t count) {
  Place place = {source.between(-20, 20), bound_from_array, bound_from_array};
  const auto last = place.lower + static_cast<std::int32_t>(count) - 1;
  if (source.one_in(2)) place.from = place.lower + source.between(-1, 3);
  if (source.one_in(2)) place.to = last + source.between(-3, 1);
  return place;
}

void expect_comparison(const Text& a, const Text& b) {
  const int order = text_services::compare(a.view(), b.view());
  const int turned = text_services::compare(b.view(), a.view());
  ASSERT_EQ(order<0, turned> 0);
  ASSERT_EQ(order == 0, turned == 0);
}

void sort_in_place(Source& source, const std::vector<Text>& texts, const Collated& collated) {
  const Place place = place_of(source, texts.size());
  StringArray array = strings(place.lower, texts);
  Elements restated = numbering(place.lower, texts.size(), 0);
  const bool sorted = sort_by_restated_steps(restated, collated.by_number_from(0), from_of(place),
                                             to_of(place, texts.size()));
  ASSERT_EQ(failure_of([&] { sorts.Ordena_StringArray(array, place.from, place.to); }),
            sorted ? 0 : 9);
  std::vector<Text> left = elements(array);
  if (sorted) {
    for (std::size_t i = 0; i < left.size(); ++i) {
      ASSERT_EQ(left[i], texts[static_cast<std::size_t>(restated.values[i])]);
    }
    return;
  }
  // Each text is still there once.
  std::vector<Text> all = texts;
  const auto before = [](const Text& a, const Text& b) { return a.view() < b.view(); };
  std::sort(left.begin(), left.end(), before);
  std::sort(all.begin(), all.end(), before);
  ASSERT_EQ(left, all);
}

void sort_index(Source& source, const std::vector<Text>& texts, const Collated& collated) {
  const std::int32_t first = source.between(-20, 20);
  const auto count = static_cast<std::int32_t>(texts.size());
  std::vector<std::int64_t> entries(source.below(most_texts + 1));
  const bool all_there = !source.one_in(4);
  for (std::int64_t& entry : entries) {
    entry = all_there ? first + source.between(0, std::max(count - 1, 0))
                      : first + source.between(-1, count);
  }
  const Place place = place_of(source, entries.size());
  const StringArray array = strings(first, texts);
  LongArray index = array_of<std::int32_t>(place.lower, entries);
  Elements restated{place.lower, entries};
  const bool sorted = sort_by_restated_steps(restated, collated.by_number_from(first),
                                             from_of(place), to_of(place, entries.size()));
  ASSERT_EQ(failure_of([&] { sorts.Ordena_StringIndexArray(array, index, place.from, place.to); }),
            sorted ? 0 : 9);
  ASSERT_EQ(elements(index), restated.as_longs());
  ASSERT_EQ(elements(array), texts);
}

}  // namespace
}  // namespace orv2_geo

void orv2_geo::fuzzing::try_input(const std::uint8_t* data, std::size_t size) {
  Source source(data, size);
  const std::vector<Text> texts = texts_of(source);
  const Collated collated(texts);
  for (std::size_t i = 1; i < texts.size(); ++i) expect_comparison(texts[i - 1], texts[i]);
  sort_in_place(source, texts, collated);
  sort_index(source, texts, collated);
}
