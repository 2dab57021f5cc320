// decoding.h: the bytes of a point file as UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "survey_report/bad_line.h"

namespace survey_report {

/// The text of a file, or why it has none.
class Decoded {
 public:
  /// Reads UTF-8 with and without its mark, UTF-16 of either byte order with its mark, and
  /// Windows-1252, which contains Latin-1. `bytes` must outlive this. What is compressed, no
  /// text, or of two alphabets is a fault.
  explicit Decoded(std::string_view bytes);
  Decoded(const Decoded&) = delete;
  Decoded& operator=(const Decoded&) = delete;

  /// Without a mark.
  std::string_view text() const { return text_; }

  const std::optional<BadLine>& fault() const { return fault_; }

 private:
  void decode_utf16(std::string_view bytes, bool low_byte_first);
  void decode_bytes(std::string_view bytes);

  std::string converted_;  // where the file is not in UTF-8
  std::string_view text_;
  std::optional<BadLine> fault_;
};

}  // namespace survey_report
