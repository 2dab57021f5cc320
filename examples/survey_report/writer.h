// writer.h: text on its way to a file.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace survey_report {

/// Takes text piece by piece and hands it on in large ones, or keeps all of it.
class Writer {
 public:
  using Drain = std::function<void(std::string_view text)>;

  /// Keeps the text.
  Writer() = default;
  /// Hands it on. What `drain` throws leaves whatever call was at work.
  explicit Writer(Drain drain);

  Writer& operator<<(std::string_view text) {
    buffer_ += text;
    return *this;
  }
  Writer& operator<<(char letter) {
    buffer_ += letter;
    return *this;
  }

  /// So many of one letter.
  void repeat(std::size_t count, char letter) { buffer_.append(count, letter); }

  /// To be called once in a while, such as after a row: hands on what is enough.
  void pause() {
    if (drain_ && buffer_.size() >= enough) flush();
  }

  /// Hands on what is left.
  void flush();

  /// What was kept.
  std::string take() { return std::move(buffer_); }

  /// What the next piece is put behind, for numbers that are written in place.
  std::string& buffer() { return buffer_; }

 private:
  static constexpr std::size_t enough = std::size_t{1} << 18;

  std::string buffer_;
  Drain drain_;
};

/// What writes the content of a file.
using Content = std::function<void(Writer& out)>;

/// That content as a text.
std::string text_of(const Content& content);

}  // namespace survey_report
