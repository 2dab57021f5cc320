// Every order that up to eight elements can have, with every way to be equal, through every
// sort, beside the algorithm's own steps. Nine elements, with less around them, are where
// the parts of a partition are not all alike.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "orv2_geo/arrays/cgeo_Matrices.h"
#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/sorting/cgeo_Ordena.h"
#include "orv2_geo/terrain/cgeo_Terreno.h"
#include "tests/exhaustive/check.h"
#include "tests/platform/recording_interface.h"
#include "tests/sorting/restated_quicksort.h"
#include "tests/sorting/sort_data.h"
#include "tests/support/arrays.h"
#include "tests/support/exchange_by_passes.h"
#include "tests/support/preamble.h"

namespace orv2_geo::exhaustive {
namespace {

const cgeo_Ordena sorts;
const cgeo_Matrices matrices;

constexpr std::size_t most_elements = 9;

/// What stands where: ranks from 0 on, of which each up to the highest is there.
struct Word {
  std::array<std::uint8_t, most_elements> ranks{};
  std::size_t size = 0;

  std::int32_t count() const { return static_cast<std::int32_t>(size); }
  /// Each rank by its value in a table.
  template <class T, class Table>
  std::vector<T> values(const Table& table) const {
    std::vector<T> all(size);
    for (std::size_t i = 0; i < size; ++i) all[i] = static_cast<T>(table[ranks[i]]);
    return all;
  }
  friend std::ostream& operator<<(std::ostream& out, const Word& word) {
    for (std::size_t i = 0; i < word.size; ++i) out << int{word.ranks[i]};
    return out;
  }
};

// All words of a length, one rank more for each that is new.
void add_words(std::size_t size, std::vector<Word>& all) {
  Word word;
  word.size = size;
  while (true) {
    unsigned ranks = 0;
    for (std::size_t i = 0; i < size; ++i) ranks |= 1U << word.ranks[i];
    if ((ranks & (ranks + 1)) == 0) all.push_back(word);
    std::size_t at = size;
    while (at > 0 && word.ranks[at - 1] + 1U == size) word.ranks[--at] = 0;
    if (at == 0) return;
    ++word.ranks[at - 1];
  }
}
std::vector<Word> words_of_lengths(std::size_t from, std::size_t to) {
  std::vector<Word> all;
  for (std::size_t size = from; size <= to; ++size) add_words(size, all);
  return all;
}
/// 1 and 3 and 13 and ... and 545,835.
const std::vector<Word>& words_to_8() {
  static const std::vector<Word> all = words_of_lengths(1, 8);
  return all;
}
constexpr std::uint64_t words_to_8_count = 598444;
/// The words of nine elements are numbered as numbers of nine digits; most have a gap.
constexpr std::uint64_t numbers_of_9 = 387420489;

// What a sort is told of when it differs.
class Told {
 public:
  Told(Tally& tally, const Word& word) : tally_(tally), word_(word) {}
  void expect(std::string_view what, bool same) {
    tally_.expect(same, [&](std::ostream& out) { out << what << " of " << word_; });
  }

 private:
  Tally& tally_;
  const Word& word_;
};

bool same_bits(const std::vector<double>& a, const std::vector<double>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](double one, double other) { return bits(one) == bits(other); });
}

// ---- Whole numbers ---------------------------------------------------------

constexpr std::array<std::int32_t, most_elements> whole = {lowest_long, -7, -1, 0,           1,
                                                           2,           50, 99, highest_long};

/// The bounds of a sort beside those of the array.
struct Bounds {
  std::int32_t after_first, after_last;
};
constexpr Bounds all_bounds[] = {{0, 0}, {1, 0}, {0, -1}, {0, 1}, {-1, 0}};

void sort_numbers(const Word& word, Told& told) {
  const auto values = word.values<std::int64_t>(whole);
  for (const std::int32_t lower : {1, -3}) {
    for (const Bounds& bounds : all_bounds) {
      const std::int32_t from = lower + bounds.after_first;
      const std::int32_t to = lower + word.count() - 1 + bounds.after_last;
      LongArray array = array_of<std::int32_t>(lower, values);
      Elements restated{lower, values};
      const bool sorted = sort_by_restated_steps(restated, compare_numbers, from, to);
      const std::int32_t number = failure_of([&] { sorts.Ordena_LongArray(array, from, to); });
      told.expect("Ordena_LongArray", number == (sorted ? 0 : 9) &&
                                          elements(array) == restated.as_longs() &&
                                          array.lower() == lower);
    }
  }
}

void sort_index_of_numbers(const Word& word, Told& told) {
  const auto values = word.values<std::int64_t>(whole);
  const LongArray keys = array_of<std::int32_t>(1, values);
  for (const std::int32_t after_last : {0, -1, 1}) {
    const std::int32_t to = word.count() + after_last;
    LongArray index = counting(1, word.count());
    Elements restated = numbering(1, word.size, 1);
    const bool sorted = sort_by_restated_steps(restated, by_numbers(values, 1), 1, to);
    const std::int32_t number =
        failure_of([&] { sorts.Ordena_LongIndexArray(keys, index, bound_from_array, to); });
    told.expect("Ordena_LongIndexArray", number == (sorted ? 0 : 9) &&
                                             elements(index) == restated.as_longs() &&
                                             elements(keys) == word.values<std::int32_t>(whole));
  }
}

// ---- Texts -----------------------------------------------------------------

// Three letters of one rank, upper case where the place has a bit, so that equal texts differ.
std::vector<Text> texts_of(const Word& word) {
  std::vector<Text> all;
  for (std::size_t i = 0; i < word.size; ++i) {
    std::u16string text;
    for (std::size_t bit = 0; bit < 3; ++bit) {
      const int first = ((i >> bit) & 1U) != 0 ? u'A' : u'a';
      text.push_back(static_cast<char16_t>(first + word.ranks[i]));
    }
    all.emplace_back(text);
  }
  return all;
}

void sort_texts(const Word& word, Told& told) {
  const std::vector<Text> given = texts_of(word);
  Elements restated = numbering(1, word.size, 0);
  sort_by_restated_steps(restated, by_texts(given, 0), 1, word.count());
  StringArray array = strings(1, given);
  sorts.Ordena_StringArray(array, bound_from_array, bound_from_array);
  bool same = true;
  for (std::size_t i = 0; i < word.size; ++i) {
    same = same && array.data()[i] == given[static_cast<std::size_t>(restated.values[i])];
  }
  told.expect("Ordena_StringArray", same);
}

void sort_index_of_texts(const Word& word, Told& told) {
  const std::vector<Text> given = texts_of(word);
  const StringArray keys = strings(1, given);
  for (const std::int32_t after_last : {0, 1}) {
    const std::int32_t to = word.count() + after_last;
    LongArray index = counting(1, word.count());
    Elements restated = numbering(1, word.size, 1);
    const bool sorted = sort_by_restated_steps(restated, by_texts(given, 1), 1, to);
    const std::int32_t number =
        failure_of([&] { sorts.Ordena_StringIndexArray(keys, index, bound_from_array, to); });
    told.expect("Ordena_StringIndexArray", number == (sorted ? 0 : 9) &&
                                               elements(index) == restated.as_longs() &&
                                               elements(keys) == given);
  }
}

// ---- Doubles ---------------------------------------------------------------

/// Values by rank: the texts by which they are ordered, compared with one another once.
struct Values {
  std::string_view name;
  std::array<double, most_elements> of_rank{};
  std::array<double, most_elements> number_of_text{};
  int order[most_elements][most_elements]{};

  template <class Of>
  Values(std::string_view called, Of of) : name(called) {
    std::array<Text, most_elements> texts;
    for (std::size_t rank = 0; rank < most_elements; ++rank) {
      of_rank[rank] = of(static_cast<int>(rank));
      texts[rank] = restated_key(of_rank[rank]);
      number_of_text[rank] = text_services::number_from_text(texts[rank].view());
    }
    for (std::size_t a = 0; a < most_elements; ++a) {
      for (std::size_t b = 0; b < most_elements; ++b) {
        order[a][b] = text_services::compare(texts[a].view(), texts[b].view());
      }
    }
  }
};

// Positive ones, signs and zeros, equal to six decimals or not, and where texts decide.
const std::vector<Values>& kinds_of_values() {
  static const std::vector<Values> all = {
      {"positive", [](int rank) { return 430000.25 + rank; }},
      {"signed", [](int rank) { return (rank - 4) * 0.5; }},
      {"close", [](int rank) { return 1.0 + rank * 3e-7; }},
      {"beyond", [](int rank) { return (rank - 2) * 2e8; }},
  };
  return all;
}

// The places in order, from subscript 0, which is none.
std::vector<std::int32_t> restated_index(const Word& word, const Values& values, std::int32_t to) {
  const auto upper = static_cast<std::size_t>(to);
  Elements order = numbering(0, upper + 1, 0);
  const auto rank = [&](std::int64_t place) {
    return word.ranks[static_cast<std::size_t>(place - 1)];
  };
  sort_by_restated_steps(
      order, [&](std::int64_t a, std::int64_t b) { return values.order[rank(a)][rank(b)]; }, 1, to);
  return order.as_longs();
}

void sort_doubles(const Word& word, Told& told) {
  for (const Values& values : kinds_of_values()) {
    const auto given = word.values<double>(values.of_rank);
    const DoubleArray array = doubles(1, given);
    LongArray index(3, 5), in_X, shown;
    for (const std::int32_t to : {word.count(), word.count() - 1}) {
      sorts.Ordena_Double_Index_Array(array, index, bound_from_array, to);
      const auto expected = restated_index(word, values, to);
      told.expect("Ordena_Double_Index_Array", elements(index) == expected && index.lower() == 0);
      matrices.Ordena_en_X_el_Indice_1Matriz(to, array, in_X);
      told.expect("Ordena_en_X_el_Indice_1Matriz", elements(in_X) == expected);
      matrices.Ordena_en_X_el_Indice_1Matriz2(to, array, shown, ObjectRef());
      told.expect("Ordena_en_X_el_Indice_1Matriz2", elements(shown) == expected);
    }
    LongArray numbered(1, word.count());
    matrices.Ordena_en_X_el_Indice_1Matriz1(word.count(), array, numbered, ObjectRef());
    told.expect("Ordena_en_X_el_Indice_1Matriz1",
                elements(numbered) == elements(counting(1, word.count())));
    told.expect("what is ordered by an index stays", same_bits(elements(array), given));
    const auto order = restated_index(word, values, word.count());
    std::vector<double> written = given;
    for (std::size_t i = 0; i < word.size; ++i) {
      const auto from = static_cast<std::size_t>(order[i + 1] - 1);
      const double key = values.number_of_text[word.ranks[from]];
      written[i] = given[i] > 0.0 ? key - 300000000.0 : -key - 200000000.0;
    }
    DoubleArray in_place = doubles(1, given);
    sorts.Ordena_Double_Array(in_place, bound_from_array, bound_from_array);
    told.expect("Ordena_Double_Array", same_bits(elements(in_place), written));
  }
}

// ---- Exchanges -------------------------------------------------------------

void exchange(const Word& word, Told& told) {
  const auto x = word.values<double>(kinds_of_values()[1].of_rank);
  std::vector<double> places(word.size), signs(word.size);
  for (std::size_t i = 0; i < word.size; ++i) {
    places[i] = static_cast<double>(i) + 1;
    signs[i] = i % 2 == 0 ? 0.0 : -0.0;
  }
  std::vector<double> by_passes = x, y = places, z = signs;
  exchange_by_passes(0, by_passes, y, z);
  DoubleArray X = doubles(1, x), Y = doubles(1, places), Z = doubles(1, signs);
  matrices.Ordena_en_X_3_Matrices(word.count(), X, Y, Z);
  told.expect("Ordena_en_X_3_Matrices", same_bits(elements(X), by_passes) &&
                                            same_bits(elements(Y), y) && same_bits(elements(Z), z));
  // Two that are one array are exchanged twice.
  X = doubles(1, x), Y = doubles(1, places);
  matrices.Ordena_en_X_3_Matrices(word.count(), X, Y, Y);
  told.expect("Ordena_en_X_3_Matrices with one array twice",
              same_bits(elements(X), by_passes) && same_bits(elements(Y), places));
}

// The elevation of a point is its place, or the same for some, so that there are repeats.
void sort_terrain(const Word& word, Told& told) {
  for (const bool alike : {false, true}) {
    std::vector<double> distance(word.size + 1, -5.0), elevation(word.size + 1, -6.0);
    for (std::size_t i = 0; i < word.size; ++i) {
      distance[i + 1] = word.ranks[i];
      elevation[i + 1] = static_cast<double>(alike ? i / 4 : i);
    }
    DoubleArray DistO = doubles(0, distance), Z = doubles(0, elevation);
    std::int32_t points = word.count();
    cgeo_Terreno().Ordena_terreno_y_quita_repetidos(points, DistO, Z);
    std::vector<double> kept_d = distance, kept_z = elevation;
    if (word.size > 1) {
      exchange_by_passes(1, distance, elevation);
      kept_d = {0.0}, kept_z = {0.0};
      for (std::size_t i = 1; i <= word.size; ++i) {
        const bool repeated =
            i > 1 && distance[i] == distance[i - 1] && elevation[i] == elevation[i - 1];
        if (!repeated) kept_d.push_back(distance[i]), kept_z.push_back(elevation[i]);
      }
    }
    told.expect("Ordena_terreno_y_quita_repetidos",
                static_cast<std::size_t>(points) + 1 == kept_d.size() &&
                    same_bits(elements(DistO), kept_d) && same_bits(elements(Z), kept_z));
  }
}

// ---- The checks ------------------------------------------------------------

template <auto... sort>
void every_word(std::uint64_t first, std::uint64_t end, Tally& tally) {
  const RecordingInterface screen;
  for (std::uint64_t at = first; at < end; ++at) {
    const Word& word = words_to_8()[at];
    Told told(tally, word);
    (sort(word, told), ...);
  }
  tally.expect(screen.boxes.empty(), [](std::ostream& out) { out << "a box was shown"; });
}

// Elements of nine places that number 9 keys, and the keys themselves.
void every_word_of_9(std::uint64_t first, std::uint64_t end, Tally& tally) {
  for (std::uint64_t number = first; number < end; ++number) {
    Word word;
    word.size = most_elements;
    unsigned ranks = 0;
    std::uint64_t rest = number;
    for (std::uint8_t& rank : word.ranks) {
      rank = static_cast<std::uint8_t>(rest % most_elements);
      rest /= most_elements;
      ranks |= 1U << rank;
    }
    if ((ranks & (ranks + 1)) != 0) continue;
    Told told(tally, word);
    const auto values = word.values<std::int64_t>(whole);
    const LongArray keys = array_of<std::int32_t>(1, values);
    LongArray index = counting(1, word.count());
    Elements restated = numbering(1, word.size, 1);
    sort_by_restated_steps(restated, by_numbers(values, 1), 1, word.count());
    sorts.Ordena_LongIndexArray(keys, index, 1, word.count());
    told.expect("Ordena_LongIndexArray", elements(index) == restated.as_longs());
    LongArray sorted = keys;
    sorts.Ordena_LongArray(sorted, 1, word.count());
    bool same = true;
    for (std::int32_t i = 1; i <= word.count(); ++i) same = same && sorted(i) == keys(index(i));
    told.expect("Ordena_LongArray", same);
  }
}

}  // namespace

std::vector<Check> checks_of_sorts() {
  const auto check = [](const char* name, const char* what, auto run) {
    return Check{name, what, words_to_8_count, 256, 149, 1, run};
  };
  return {
      check("sorts_whole", "1 to 8 whole numbers in place and by an index, within bounds",
            every_word<sort_numbers, sort_index_of_numbers>),
      check("sorts_texts", "1 to 8 texts in place and by an index",
            every_word<sort_texts, sort_index_of_texts>),
      check("sorts_doubles", "1 to 8 doubles of four kinds in place and by an index",
            every_word<sort_doubles>),
      check("sorts_exchange", "1 to 8 points and profile points by exchanges",
            every_word<exchange, sort_terrain>),
      {"sorts_of_9", "numbers of nine digits: the 7,087,261 without a gap as whole numbers",
       numbers_of_9, 1U << 12U, 1021, 1, every_word_of_9},
  };
}

}  // namespace orv2_geo::exhaustive
