// failures.h: failures as component hosts see them, and theirs as the library's.
#pragma once

#include <utility>

#include "orv2_geo/com/system.h"
#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo::com {

/// A failure's status: 0x800A0000 and its number; a host's own number below zero, which is
/// a status already, as it is; any other as 440.
HRESULT status_of(const RunFailure& failure) noexcept;

/// The status of a failure, which is told to the thread's caller with description and
/// source.
HRESULT told(const RunFailure& failure) noexcept;

/// The same in the place that a late-bound call gives; with none it is told as above.
HRESULT told_in(EXCEPINFO* place, const RunFailure& failure) noexcept;

/// The failure that a host's object answered a late-bound call with. `raised` is filled in
/// and freed.
RunFailure failure_of(HRESULT status, EXCEPINFO& raised) noexcept;

/// Runs work that answers with a status, for a caller that is told no more than that.
template <class Work>
HRESULT status_of_work(Work&& work) noexcept {
  try {
    return std::forward<Work>(work)();
  } catch (...) {
    return status_of(failure_in_flight()) == static_cast<HRESULT>(0x800A0007) ? E_OUTOFMEMORY
                                                                              : E_FAIL;
  }
}

}  // namespace orv2_geo::com
