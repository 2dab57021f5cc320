// recorder.h: a surface and a progress indicator in one, which writes down what it is told.
#pragma once

#include <oaidl.h>

#include <string>
#include <vector>

#include "tests/vectors/values.h"

namespace orv2_geo::early_bound {

// An interface ends its object by counting: none has a virtual destructor.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

class Recorder final : public IDispatch {
 public:
  Recorder() = default;
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  std::vector<vectors::Told> told;

  /// References to it; the maker's own is the first.
  LONG references() const { return references_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** interface_) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* numbers) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID number, REFIID, LCID, WORD kind, DISPPARAMS* given,
                                   VARIANT*, EXCEPINFO*, UINT*) override;

 private:
  LONG references_ = 1;
  std::vector<std::string> names_;
};

#pragma GCC diagnostic pop

}  // namespace orv2_geo::early_bound
