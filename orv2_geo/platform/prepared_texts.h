// prepared_texts.h: many texts made ready to be compared often.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "orv2_geo/frame/memory.h"
#include "orv2_geo/frame/text.h"

namespace orv2_geo {

/// Texts to be compared as text_services::compare does, over and over. What the
/// collation makes of single characters is asked once a thread. Texts in which each
/// character weighs what it weighs alone (no two are sorted as one letter, no accent
/// changes the one before) are then read as words of their characters' ranks. Where these leave two
/// texts equal, or texts cannot be read so, their full keys are made, each once.
/// What is read is kept, a byte a character: texts lie anywhere in memory, and waiting for
/// each in turn would be most of the time of a large sort.
///
/// The texts must stay where they are. Throws std::bad_alloc, and RunFailure 7.
class PreparedTexts {
 public:
  explicit PreparedTexts(std::span<const Text* const> texts);

  /// A part of a text as a word: of two texts that are alike in all parts before,
  /// the one with the lower word comes first.
  struct Part {
    std::uint64_t word;
    std::uint32_t text;  // its number
    std::uint32_t at;    // where its next part begins, among all characters
  };

  std::size_t size() const noexcept { return texts_.size(); }

  /// The texts, ascending, that cannot be read by characters where the others can: they
  /// have no parts, and are compared as a whole. Never more than a 256th of all, else
  /// none is read.
  std::span<const std::uint32_t> unreadable() const noexcept { return unreadable_; }

  /// A part's word is below 2 to the power of this.
  int word_bits() const noexcept { return ranks_a_word_ * rank_bits_; }

  Part first_part(std::uint32_t text) const noexcept;
  Part next_part(const Part& part) const noexcept { return part_at(part.text, part.at); }

  /// Whether this is the text's last part.
  bool is_over(const Part& part) const noexcept { return (part.word & last_rank_) == 0; }

  /// Whether texts with all parts alike are equal; otherwise `compare` tells.
  bool parts_decide() const noexcept { return parts_decide_; }

  /// Negative, zero or positive as text `i` comes before, with or after text `j`.
  int compare(std::uint32_t i, std::uint32_t j);

 private:
  using Used = std::array<bool, 256>;  // numbers of characters

  bool read_texts(Used& used);
  bool is_unreadable(std::uint32_t text) const noexcept;
  void make_room(std::size_t kept, std::size_t room);
  void rank_weights(const Used& used);
  Part part_at(std::uint32_t text, std::uint32_t at) const noexcept;
  bool are_of_same_characters(std::uint32_t i, std::uint32_t j) const noexcept;
  const std::u32string& full_key(std::uint32_t i);

  std::span<const Text* const> texts_;
  std::vector<std::uint32_t> unreadable_;
  std::size_t in_common_ = 0;              // characters that all texts begin with
  Buffer<std::uint8_t> numbers_;           // of the texts' characters, a 0 behind each text
  std::vector<std::uint32_t> starts_;      // of texts, there
  std::array<std::uint8_t, 256> ranks_{};  // by the number of a character; 0: of no weight
  int rank_bits_ = 0;
  int ranks_a_word_ = 0;         // 0 when the texts cannot be read by characters
  std::uint64_t last_rank_ = 0;  // the bits of a word's last rank
  bool parts_decide_ = false;
  std::vector<std::u32string> full_keys_;  // empty: not made yet
};

}  // namespace orv2_geo
