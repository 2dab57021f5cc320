#include "survey_report/output.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "survey_report/interruption.h"
#include "survey_report/words.h"

namespace survey_report {

namespace fs = std::filesystem;

namespace {

struct Close {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, Close>;

std::error_code last_error() { return {errno, std::generic_category()}; }

ExitCode reading_code(const std::error_code& error) {
  if (error == std::errc::no_such_file_or_directory) return ExitCode::no_such_file;
  return error == std::errc::is_a_directory ? ExitCode::is_folder : ExitCode::unreadable;
}

FileFault cannot_read(const fs::path& file, const std::error_code& error) {
  return {reading_code(error), words::cannot_read.with({file.string(), words_of(error)})};
}

FileFault cannot_write(const std::string& name, const std::error_code& error) {
  return {ExitCode::not_written, words::cannot_write.with({name, words_of(error)})};
}

void write_piece(std::FILE* stream, std::string_view text, const std::string& name) {
  check_interruption();
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stream) == text.size()) return;
  throw cannot_write(name, last_error());
}

// Empties the buffer, which is when a full disk shows.
void flush(std::FILE* stream, const std::string& name) {
  errno = 0;
  if (std::fflush(stream) != 0) throw cannot_write(name, last_error());
}

void write_all(std::FILE* stream, const Content& content, const std::string& name) {
  Writer out([&](std::string_view text) { write_piece(stream, text, name); });
  content(out);
  out.flush();
  flush(stream, name);
}

void write_and_close(Stream stream, const Content& content, const std::string& name) {
  write_all(stream.get(), content, name);
  errno = 0;
  if (std::fclose(stream.release()) != 0) throw cannot_write(name, last_error());
}

void write_directly(const fs::path& file, std::string_view text) {
  Stream stream(std::fopen(file.string().c_str(), "wb"));
  if (!stream) throw cannot_write(file.string(), last_error());
  write_and_close(
      std::move(stream), [&](Writer& out) { out << text; }, file.string());
}

// The size of a file of which the system knows one, so that it is read in one go.
std::size_t expected_size(const fs::path& file) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(file, error);
  return error ? 0 : static_cast<std::size_t>(size);
}

struct ErrorWord {
  std::errc error;
  Word word;
};

constexpr ErrorWord error_words[] = {
    {std::errc::no_such_file_or_directory, words::no_such_file},
    {std::errc::permission_denied, words::permission_denied},
    {std::errc::is_a_directory, words::is_a_folder},
    {std::errc::not_a_directory, words::not_a_folder},
    {std::errc::no_space_on_device, words::no_space},
    {std::errc::file_too_large, words::file_too_large},
    {std::errc::io_error, words::input_output_error},
    {std::errc::read_only_file_system, words::read_only},
};

}  // namespace

// A file that did not exist before. It goes away unless it takes another name.
class Replacement::Partial {
 public:
  explicit Partial(const fs::path& beside) : final_(beside) {
    for (int attempt = 0; !stream_ && attempt < 100; ++attempt) {
      path_ = beside;
      path_ += ".partial" + std::to_string(attempt);
      stream_.reset(std::fopen(path_.string().c_str(), "wbx"));
      if (!stream_ && errno != EEXIST) break;
    }
    if (!stream_) throw cannot_write(final_.string(), last_error());
  }
  Partial(const Partial&) = delete;
  Partial& operator=(const Partial&) = delete;
  ~Partial() {
    stream_.reset();
    std::error_code ignored;
    if (!renamed_) fs::remove(path_, ignored);
  }

  void write(const Content& content) {
    write_and_close(std::move(stream_), content, final_.string());
  }

  // Who may read the file stays as it was.
  void take_permissions(fs::perms permissions) const {
    std::error_code ignored;
    fs::permissions(path_, permissions, ignored);
  }

  void take_final_name() {
    std::error_code error;
    fs::rename(path_, final_, error);
    if (error) throw cannot_write(final_.string(), error);
    renamed_ = true;
  }

 private:
  fs::path final_;
  fs::path path_;
  Stream stream_;
  bool renamed_ = false;
};

std::string words_of(const std::error_code& error) {
  for (const ErrorWord& known : error_words) {
    if (error == known.error) return known.word.text();
  }
  return error.message();
}

std::string load(const fs::path& file) {
  std::error_code error;
  if (fs::is_directory(file, error)) {
    throw cannot_read(file, std::make_error_code(std::errc::is_a_directory));
  }
  const Stream stream(std::fopen(file.string().c_str(), "rb"));
  if (!stream) throw cannot_read(file, last_error());
  std::string bytes(expected_size(file), '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), stream.get()));
  std::array<char, 65536> room;
  while (const std::size_t count = std::fread(room.data(), 1, room.size(), stream.get())) {
    bytes.append(room.data(), count);
  }
  if (std::ferror(stream.get()) != 0) throw cannot_read(file, last_error());
  return bytes;
}

Replacement::Replacement(const fs::path& file, const Content& content) : file_(file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (fs::is_directory(status)) {
    throw cannot_write(file.string(), std::make_error_code(std::errc::is_a_directory));
  }
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    text_ = text_of(content);
    return;
  }
  hold_interruptions();
  const bool is_link = fs::is_symlink(file, error);
  partial_ = std::make_unique<Partial>(is_link ? fs::weakly_canonical(file) : file);
  partial_->write(content);
  if (fs::exists(status)) partial_->take_permissions(status.permissions());
}

Replacement::~Replacement() = default;

void Replacement::commit() {
  if (!partial_) return write_directly(file_, text_);
  partial_->take_final_name();
}

Folder::Folder(fs::path folder) {
  std::error_code error;
  if (fs::is_directory(folder, error)) return;
  fs::create_directories(folder, error);
  if (error) throw cannot_write(folder.string(), error);
  made_ = std::move(folder);
}

Folder::~Folder() {
  std::error_code ignored;
  if (!made_.empty()) fs::remove(made_, ignored);
}

void print(const Content& content) { write_all(stdout, content, words::standard_output.text()); }

}  // namespace survey_report
