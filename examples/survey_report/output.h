// output.h: files read whole and written whole.
#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace survey_report {

/// A file that cannot be read or written. The message names it and says why.
class FileFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The bytes of a file.
std::string load(const std::filesystem::path& file);

/// The new content of a file, on its way. It is written beside the file, which
/// stays as it was until commit(); without that nothing is left behind.
class Replacement {
 public:
  /// Throws FileFault. A device or a pipe is not touched before commit().
  Replacement(const std::filesystem::path& file, std::string_view text);
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;
  ~Replacement();

  /// The file becomes `text`. Throws FileFault.
  void commit();

 private:
  class Partial;

  std::filesystem::path file_;
  std::string text_;
  std::unique_ptr<Partial> partial_;  // none for a device
};

/// Writes `text` as the content of `file`: all of it, or the file stays as it
/// was. The text goes to a new file beside it, which then takes its name; a
/// device or a pipe is written directly. A link is followed.
void save(const std::filesystem::path& file, std::string_view text);

/// Writes `text` on standard output and sees that it arrives.
void print(std::string_view text);

}  // namespace survey_report
