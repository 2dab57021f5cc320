// interruption.h: being told to end while files are on their way.
#pragma once

#include <stdexcept>

namespace survey_report {

/// The program was told to end. What is half written goes away on the way out.
class Interruption : public std::runtime_error {
 public:
  explicit Interruption(int signal) : std::runtime_error("interrupted"), signal_(signal) {}

  /// Ends the program as the signal would have.
  [[noreturn]] void end() const;

 private:
  int signal_;
};

/// From now on the interrupt key and a request to end wait for check_interruption(),
/// except those that the program was started to ignore.
void hold_interruptions();

/// Throws Interruption when the program was told to end.
void check_interruption();

}  // namespace survey_report
