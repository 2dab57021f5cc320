// output.h: files read whole and written whole.
#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "survey_report/exit_code.h"
#include "survey_report/writer.h"

namespace survey_report {

/// A file that cannot be read or written. The message names it and says why.
class FileFault : public std::runtime_error {
 public:
  FileFault(ExitCode code, const std::string& what) : std::runtime_error(what), code_(code) {}

  ExitCode code() const noexcept { return code_; }

 private:
  ExitCode code_;
};

/// What the system says of an error, in the present language where it is a usual one.
std::string words_of(const std::error_code& error);

/// The bytes of a file.
std::string load(const std::filesystem::path& file);

/// The new content of a file, on its way. It is written beside the file, which
/// stays as it was until commit(); without that nothing is left behind.
class Replacement {
 public:
  /// Throws FileFault, and Interruption. A device or a pipe is not touched before commit().
  Replacement(const std::filesystem::path& file, const Content& content);
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;
  ~Replacement();

  /// Whether it is a device or a pipe, which has no older content to lose.
  bool is_device() const { return !partial_; }

  /// The file gets that content. Throws FileFault.
  void commit();

 private:
  class Partial;

  std::filesystem::path file_;
  std::string text_;
  std::unique_ptr<Partial> partial_;  // none for a device
};

/// A folder that is made where there is none, with those above it. Without keep()
/// it goes away again, if it was made here and nothing is in it.
class Folder {
 public:
  /// Throws FileFault.
  explicit Folder(std::filesystem::path folder);
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder();

  void keep() { made_.clear(); }

 private:
  std::filesystem::path made_;
};

/// Writes on standard output and sees that it arrives.
void print(const Content& content);

}  // namespace survey_report
