// progress.h: how far a long run is.
#pragma once

#include <string>

#include "survey_report/word.h"

namespace survey_report {

/// A stage of a run: what is being done, and the part of the whole that is done with it.
struct Stage {
  Word what;
  double until;
};

/// Is told what is being done. This one shows it to nobody.
class Progress {
 public:
  Progress() = default;
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  virtual ~Progress() = default;

  /// A stage begins, where the one before it ends.
  void begin(const Stage& stage) {
    from_ = until_;
    until_ = stage.until;
    show(from_, stage.what.view());
  }

  /// So much of the stage is done, from 0 to 1.
  void reach(double part) { show(from_ + part * (until_ - from_), {}); }

 private:
  /// `what` is empty where it is what it was.
  virtual void show(double, std::string_view) {}

  double from_ = 0.0;
  double until_ = 0.0;
};

/// Progress that nobody sees.
inline Progress& unseen_progress() {
  static Progress unseen;
  return unseen;
}

}  // namespace survey_report
