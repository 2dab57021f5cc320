#include "survey_report/interruption.h"

#include <csignal>
#include <cstdlib>

namespace survey_report {

namespace {

volatile std::sig_atomic_t told_to_end = 0;

extern "C" void note_signal(int signal) { told_to_end = signal; }

}  // namespace

void Interruption::end() const {
  std::signal(signal_, SIG_DFL);
  std::raise(signal_);
  std::abort();  // not reached: the signal ends the program
}

void hold_interruptions() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    if (std::signal(signal, note_signal) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
}

void check_interruption() {
  if (told_to_end != 0) throw Interruption(told_to_end);
}

}  // namespace survey_report
