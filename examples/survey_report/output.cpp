#include "survey_report/output.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

namespace survey_report {

namespace fs = std::filesystem;

namespace {

struct Close {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, Close>;

std::string because(const std::error_code& error) { return ": " + error.message(); }

std::error_code last_error() { return {errno, std::generic_category()}; }

FileFault cannot_read(const fs::path& file, const std::error_code& error) {
  return FileFault("cannot read " + file.string() + because(error));
}

FileFault cannot_write(const std::string& name, const std::error_code& error) {
  return FileFault("cannot write " + name + because(error));
}

// Writes everything and empties the buffer, which is when a full disk shows.
void write_all(std::FILE* stream, std::string_view text, const std::string& name) {
  errno = 0;
  const bool taken = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
  if (!taken || std::fflush(stream) != 0) throw cannot_write(name, last_error());
}

void write_and_close(Stream stream, std::string_view text, const std::string& name) {
  write_all(stream.get(), text, name);
  errno = 0;
  if (std::fclose(stream.release()) != 0) throw cannot_write(name, last_error());
}

void write_directly(const fs::path& file, std::string_view text) {
  Stream stream(std::fopen(file.string().c_str(), "wb"));
  if (!stream) throw cannot_write(file.string(), last_error());
  write_and_close(std::move(stream), text, file.string());
}

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

  void write(std::string_view text) { write_and_close(std::move(stream_), text, final_.string()); }

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

std::string load(const fs::path& file) {
  std::error_code error;
  if (fs::is_directory(file, error)) {
    throw cannot_read(file, std::make_error_code(std::errc::is_a_directory));
  }
  const Stream stream(std::fopen(file.string().c_str(), "rb"));
  if (!stream) throw cannot_read(file, last_error());
  std::string bytes;
  std::array<char, 65536> room;
  while (const std::size_t count = std::fread(room.data(), 1, room.size(), stream.get())) {
    bytes.append(room.data(), count);
  }
  if (std::ferror(stream.get()) != 0) throw cannot_read(file, last_error());
  return bytes;
}

Replacement::Replacement(const fs::path& file, std::string_view text) : file_(file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    text_ = text;
    return;
  }
  const bool is_link = fs::is_symlink(file, error);
  partial_ = std::make_unique<Partial>(is_link ? fs::weakly_canonical(file) : file);
  partial_->write(text);
  if (fs::exists(status)) partial_->take_permissions(status.permissions());
}

Replacement::~Replacement() = default;

void Replacement::commit() {
  if (!partial_) return write_directly(file_, text_);
  partial_->take_final_name();
}

void save(const fs::path& file, std::string_view text) { Replacement(file, text).commit(); }

void print(std::string_view text) { write_all(stdout, text, "standard output"); }

}  // namespace survey_report
