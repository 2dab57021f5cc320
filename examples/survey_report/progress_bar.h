// progress_bar.h: a bar on a terminal.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "survey_report/progress.h"

namespace survey_report {

/// Draws a bar with what is being done on one line of a terminal, once a run takes longer than
/// half a second, and takes it away at the end.
class ProgressBar final : public Progress {
 public:
  using Write = std::function<void(std::string_view text)>;
  using Clock = std::function<double()>;  ///< in seconds

  ProgressBar(Write write, Clock clock);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar() override;

 private:
  void show(double part, std::string_view what) override;

  Write write_;
  Clock clock_;
  double next_;  // when it is drawn again
  bool drawn_ = false;
  std::string what_;
};

}  // namespace survey_report
