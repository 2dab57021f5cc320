// prepared_texts.h: many texts made ready to be compared often.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "frame/text.h"

namespace orv2_geo {

/// Texts to be compared as text_services::compare does, over and over. What the
/// collation makes of single characters is asked once a thread; a text whose
/// characters do not work upon each other is then compared character by
/// character. Where that leaves two texts equal, or a text cannot be read so, its
/// full key is made, once.
///
/// The texts must stay where they are. Throws std::bad_alloc, and RunFailure 7.
class PreparedTexts {
 public:
  explicit PreparedTexts(std::span<const Text* const> texts);

  /// A text with the lower prefix comes before. Equal prefixes tell nothing.
  std::uint64_t prefix(std::size_t i) const noexcept { return legible_ ? prefixes_[i] : 0; }

  /// Negative, zero or positive as text `i` comes before, with or after text `j`.
  int compare(std::size_t i, std::size_t j);

 private:
  void read_texts();
  void rank_weights();
  void make_prefixes();
  int compare_ranks(std::u16string_view a, std::u16string_view b) const noexcept;
  const std::u32string& full_key(std::size_t i);

  std::span<const Text* const> texts_;
  bool legible_ = true;        // every text can be read character by character
  bool decisive_ = true;       // and what is read equal is equal
  std::size_t in_common_ = 0;  // characters that all texts begin with
  int rank_bits_ = 0;
  const std::uint8_t* numbers_ = nullptr;  // of characters, by unit
  std::vector<std::uint8_t> ranks_;        // by the number of a character; 0: of no weight
  std::vector<std::uint64_t> prefixes_;
  std::vector<std::u32string> full_keys_;  // empty: not made yet
};

}  // namespace orv2_geo
