#include "survey_report/writer.h"

#include <utility>

namespace survey_report {

Writer::Writer(Drain drain) : drain_(std::move(drain)) { buffer_.reserve(enough + enough / 8); }

void Writer::flush() {
  if (!drain_ || buffer_.empty()) return;
  drain_(buffer_);
  buffer_.clear();
}

std::string text_of(const Content& content) {
  Writer out;
  content(out);
  return out.take();
}

}  // namespace survey_report
